// A host without a person: exports a batch model file through the module and keeps the model.
//
//   run_host MODULE MODEL OUT
//
// Exit codes: 0 the file was written, 1 it was not, 2 bad use or a module that cannot be loaded.
#include <clocale>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <string>

#include "examples/box_answerer.h"
#include "exportifc/plugin.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace {

PlugInExportIfcFileFunction loadExport(const char* modulePath) {
#ifdef _WIN32
  const HMODULE module = LoadLibraryA(modulePath);
  if (module == nullptr) {
    return nullptr;
  }
  // Every FARPROC is called through the type it really has.
  return reinterpret_cast<PlugInExportIfcFileFunction>(
      reinterpret_cast<void*>(GetProcAddress(module, "PlugInExportIfcFile")));
#else
  void* const module = dlopen(modulePath, RTLD_NOW);
  if (module == nullptr) {
    std::fprintf(stderr, "run_host: %s\n", dlerror());
    return nullptr;
  }
  return reinterpret_cast<PlugInExportIfcFileFunction>(dlsym(module, "PlugInExportIfcFile"));
#endif
}

/// The module takes narrow paths, in the encoding of the system that the arguments come in.
std::filesystem::path widened(const char* narrow) {
#ifdef _WIN32
  const int size = MultiByteToWideChar(CP_ACP, 0, narrow, -1, nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(size), L'\0');
  MultiByteToWideChar(CP_ACP, 0, narrow, -1, wide.data(), size);
  wide.resize(wide.size() - 1);
  return wide;
#else
  return narrow;
#endif
}

bool isExchangeFile(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  std::string first;
  std::getline(file, first);
  return first.rfind("ISO-10303-21;", 0) == 0;
}

int run(const char* modulePath, const char* model, const char* output) {
  namespace fs = std::filesystem;
  const PlugInExportIfcFileFunction exportFile = loadExport(modulePath);
  if (exportFile == nullptr) {
    std::fprintf(stderr, "run_host: cannot load the module %s\n", modulePath);
    return 2;
  }
  // The module replaces its input by the exchange file: it gets a copy, under the output's name.
  const fs::path outputPath = widened(output);
  fs::copy_file(widened(model), outputPath, fs::copy_options::overwrite_existing);
#ifdef _WIN32
  std::setlocale(LC_ALL, "");  // by which the runtime widens the path, in the module too
#endif
  const BoxAnswerer answerer;
  try {
    exportFile(output);
  } catch (const char*) {  // Windows-1252; the text is fixed
    std::fprintf(stderr, "run_host: the module cannot create %stemp\n", output);
    fs::remove(outputPath);
    return 1;
  }
  if (!isExchangeFile(outputPath)) {
    std::fprintf(stderr, "run_host: the export failed, %s was not written\n", output);
    return 1;
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) {
    std::fprintf(stderr, "usage: run_host MODULE MODEL OUT\n");
    return 2;
  }
  try {
    return run(argv[1], argv[2], argv[3]);
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "run_host: %s\n", failure.what());
    return 1;
  }
}
