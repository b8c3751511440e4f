/* The shortest host: loads the module, answers its ten queries for a small frame, runs an export.
 *
 *   minimal_host MODULE     exports interactively: the module asks for the file
 */
#define _GNU_SOURCE /* MAP_32BIT, MAP_ANONYMOUS; NOLINT(bugprone-reserved-identifier) */
#include <stdio.h>
#include <string.h>

#include "exportifc/plugin.h"

#ifdef _WIN32
#include <windows.h>
static void* load(const char* path) { return (void*)LoadLibraryA(path); }
static void (*find(void* module, const char* name))(void) {
  return (void (*)(void))GetProcAddress((HMODULE)module, name);
}
/* Memory below 4 GiB, where 32 bits reach it: tried address by address. */
static void* allocateLow(size_t size) {
  size_t address;
  void* memory = NULL;
  for (address = 0x10000000; memory == NULL && address < 0x70000000; address += 0x100000) {
    memory = VirtualAlloc((void*)address, size, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
  }
  return memory;
}
#else
#include <sys/mman.h>
#include <dlfcn.h>
static void* load(const char* path) { return dlopen(path, RTLD_NOW); }
static void (*find(void* module, const char* name))(void) {
  void (*function)(void) = NULL;
  void* symbol = dlsym(module, name);
  memcpy(&function, &symbol, sizeof function);
  return function;
}
static void* allocateLow(size_t size) {
  void* memory =
      mmap(NULL, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_32BIT, -1, 0);
  return memory == MAP_FAILED ? NULL : memory;
}
#endif

/* A portal frame with a truss bar and a tie, in metres; sections in millimetres. */
static const float nodes[4][3] = {{0, 0, 0}, {0, 0, 4}, {6, 0, 4}, {6, 0, 0}};
static const struct {
  int start, end;
  float type; /* 4 column, 1 beam, 3 truss bar, 0 no group */
  const char* section;
  float dims[10];
} bars[] = {
    {0, 1, 4, "W 200x22.5", {206, 102, 8, 6.2F}},
    {3, 2, 4, "W 200x22.5", {206, 102, 8, 6.2F}},
    {1, 2, 1, "][ 150 50 3", {150, 50, 3, 8}},
    {0, 2, 3, "2L 50 5", {50, 50, 5, 5, 8}},
    {0, 3, 0, "RED 16", {16}},
};
enum { barCount = sizeof bars / sizeof bars[0] };

static BarRecord* records; /* one a bar, below 4 GiB */

static int32_t answer(uint64_t hostHandle, int32_t index, int32_t code, void* out) {
  (void)hostHandle;
  switch (code) {
    case EXPORTIFC_LENGTH_UNIT: *(int32_t*)out = 0; break; /* metres */
    case EXPORTIFC_BAR_COUNT: *(int32_t*)out = barCount; break;
    case EXPORTIFC_BAR_TYPE: *(float*)out = bars[index].type; break;
    case EXPORTIFC_BAR_VISIBLE: *(int32_t*)out = 1; break;
    case EXPORTIFC_BAR_RECORD: *(uint32_t*)out = (uint32_t)(uintptr_t)&records[index]; break;
    case EXPORTIFC_BAR_ANGLE: *(float*)out = 0; break;
    case EXPORTIFC_SECTION_DIMS: memcpy(out, bars[index].dims, sizeof bars[index].dims); break;
    case EXPORTIFC_BAR_START_NODE: *(int32_t*)out = bars[index].start; break;
    case EXPORTIFC_BAR_END_NODE: *(int32_t*)out = bars[index].end; break;
    case EXPORTIFC_NODE_COORDINATES: memcpy(out, nodes[index], sizeof nodes[index]); break;
    default: break;
  }
  return 0;
}

int main(int argc, char** argv) {
  void* library = argc == 2 ? load(argv[1]) : NULL;
  if (library == NULL) {
    fprintf(stderr, "usage: minimal_host MODULE (exportIFC.dll or ./libexportIFC.so)\n");
    return 2;
  }
  GetPlugInModuleFunction getModule = (GetPlugInModuleFunction)find(library, "GetPlugInModule");
  records = allocateLow(barCount * sizeof(BarRecord)); /* zero-filled by the system */
  if (getModule == NULL || records == NULL) {
    fprintf(stderr, "minimal_host: %s\n", records == NULL ? "no memory" : "not such a module");
    return 2;
  }
  for (int i = 0; i < barCount; ++i) {
    snprintf(records[i].sectionName, sizeof records[i].sectionName, "%s", bars[i].section);
  }

  PlugInModule* module = getModule();
  module->hostQuery = answer;
  if (module->execute() != 1) {
    printf("%s: no file was chosen\n", module->caption);
    return 1;
  }
  printf("%s: %s\n", module->caption, module->outputPath);
  return 0;
}
