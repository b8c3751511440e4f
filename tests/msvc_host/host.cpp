// A host of the DLL that needs no header but the module's own, and so builds for Microsoft's binary
// interface on a system without Microsoft's headers. Built for mingw-w64 it is the same host.
//
//   host DLL caught      the text of a file that cannot be created, in every way to catch it
//   host DLL uncaught    ... and nobody does
//   host DLL thread      ... nor in a second thread
//   host DLL callback    the callback throws
//
// Works in the current folder, on "modelo.txt" there. One line a check: "ok: ..." or "FAILED: ...".
#include "exportifc/plugin.h"

#ifdef _MSC_VER
// What each compiler's library would bring.
extern "C" {
int _fltused = 0;
extern const void* const typeInfoTable[1];
const void* const typeInfoTable[1] __asm__("??_7type_info@@6B@") = {nullptr};
}
void operator delete(void*) noexcept {}
void operator delete(void*, size_t) noexcept {}
namespace std {
class exception {
 public:
  virtual ~exception() = default;
  virtual const char* what() const { return "what"; }
};
}  // namespace std
#else
#include <exception>
#endif

// ---- The system ------------------------------------------------------------------------------

struct ExceptionRecord {
  uint32_t code;
  uint32_t flags;
  ExceptionRecord* next;
  void* address;
  uint32_t count;
  uint64_t information[15];
};
struct ExceptionPointers {
  ExceptionRecord* record;
  void* context;
};
using Filter = int32_t (*)(ExceptionPointers*);

extern "C" {
#define SYSTEM __declspec(dllimport)
SYSTEM int32_t CloseHandle(void* handle);
SYSTEM void* CreateFileA(const char* path, uint32_t access, uint32_t share, void* security,
                         uint32_t disposition, uint32_t flags, void* like);
SYSTEM void* CreateThread(void* security, size_t stack, uint32_t (*run)(void*), void* argument,
                          uint32_t flags, uint32_t* id);
[[noreturn]] SYSTEM void ExitProcess(uint32_t code);
SYSTEM char* GetCommandLineA();
SYSTEM uint32_t GetLastError();
SYSTEM void* GetProcAddress(void* module, const char* name);
SYSTEM void* GetStdHandle(uint32_t which);
SYSTEM void* LoadLibraryA(const char* path);
SYSTEM uint32_t SetErrorMode(uint32_t mode);
SYSTEM Filter SetUnhandledExceptionFilter(Filter filter);
SYSTEM void* VirtualAlloc(void* address, size_t size, uint32_t kind, uint32_t protection);
SYSTEM int32_t VirtualProtect(void* address, size_t size, uint32_t protection, uint32_t* before);
SYSTEM uint32_t WaitForSingleObject(void* handle, uint32_t milliseconds);
SYSTEM int32_t WriteFile(void* file, const void* bytes, uint32_t size, uint32_t* written, void*);
}

namespace {

size_t lengthOf(const char* text) {
  size_t length = 0;
  while (text[length] != '\0') {
    ++length;
  }
  return length;
}

bool same(const char* one, const char* other) {
  while (*one != '\0' && *one == *other) {
    ++one;
    ++other;
  }
  return *one == *other;
}

void print(const char* text) {
  constexpr uint32_t standardOutput = static_cast<uint32_t>(-11);
  uint32_t written = 0;
  WriteFile(GetStdHandle(standardOutput), text, static_cast<uint32_t>(lengthOf(text)), &written,
            nullptr);
}

const char* context = "";  // what the checks that follow are about

void check(bool holds, const char* name) {
  print(holds ? "ok: " : "FAILED: ");
  print(context);
  print(name);
  print("\n");
}

// ---- The module ------------------------------------------------------------------------------

// The bytes of "Erro na criação do arquivo".
constexpr const char* fileCreationFailed = "Erro na cria\xE7\xE3o do arquivo";

PlugInModule* record = nullptr;
PlugInExecuteFunction execute = nullptr;
PlugInExportIfcFileFunction exportFile = nullptr;
void* moduleImage = nullptr;

bool load(const char* path) {
  moduleImage = LoadLibraryA(path);
  if (moduleImage == nullptr) {
    return false;
  }
  const auto getModule =
      reinterpret_cast<GetPlugInModuleFunction>(GetProcAddress(moduleImage, "GetPlugInModule"));
  execute = reinterpret_cast<PlugInExecuteFunction>(GetProcAddress(moduleImage, "PlugInExecute"));
  exportFile = reinterpret_cast<PlugInExportIfcFileFunction>(
      GetProcAddress(moduleImage, "PlugInExportIfcFile"));
  record = getModule();
  return true;
}

int32_t ownFilter(ExceptionPointers* unhandled);

bool filterIsInPlace() { return SetUnhandledExceptionFilter(&ownFilter) == &ownFilter; }

// ---- Caught ----------------------------------------------------------------------------------

// What happened, one letter each: a destructor its own, a handler that caught 'C'.
char trail[64];
size_t trailLength = 0;

void note(char letter) {
  if (trailLength + 1 < sizeof trail) {
    trail[trailLength++] = letter;
    trail[trailLength] = '\0';
  }
}

bool trailIs(const char* expected) {
  const bool right = same(trail, expected);
  trailLength = 0;
  trail[0] = '\0';
  return right;
}

struct Noted {
  char letter;
  ~Noted() { note(letter); }
};

using Call = void (*)();

// Nothing can be created in a folder that is not there.
void batchEntry() { exportFile("nenhuma\\modelo.txt"); }
// The batch entry has left its path, and the menu command tries the same again.
void menuEntry() { execute(); }
void recordEntry() { record->execute(); }

__attribute__((noinline)) void inner(Call call) {
  const Noted first{'a'};
  const Noted second{'b'};
  call();
  note('!');
}

__attribute__((noinline)) void outer(Call call) {
  const Noted third{'c'};
  inner(call);
  note('!');
}

__attribute__((noinline)) void throwsAgain(Call call) {
  const Noted around{'d'};
  try {
    outer(call);
  } catch (...) {
    note('R');
    throw;
  }
}

void catchInEveryWay(Call call) {
  try {
    outer(call);
  } catch (const char* text) {
    note('C');
    check(same(text, fileCreationFailed), "caught as const char*, the text");
  }
  check(trailIs("bacC"), "the destructors between, each once, then the handler, once");
  check(filterIsInPlace(), "the host's own filter is in place");

// clang for mingw-w64 finds no pointer by reference, of its own throws neither.
#if !(defined(__clang__) && defined(__MINGW32__))
  try {
    outer(call);
  } catch (const char* const& text) {
    note('C');
    check(same(text, fileCreationFailed), "caught as a reference to const char*, the text");
  }
  check(trailIs("bacC"), "destructors, handler");
#endif

  try {
    outer(call);
  } catch (const void* text) {
    note('C');
    check(same(static_cast<const char*>(text), fileCreationFailed), "caught as const void*");
  }
  check(trailIs("bacC"), "destructors, handler");

  try {
    outer(call);
  } catch (...) {
    note('C');
  }
  check(trailIs("bacC"), "caught as anything: destructors, handler");

  try {
    try {
      outer(call);
    } catch (int) {
      note('1');
    } catch (const std::exception&) {
      note('2');
    } catch (char*) {
      note('3');
    } catch (void*) {
      note('4');
    } catch (const wchar_t*) {
      note('5');
    }
    note('!');
  } catch (const char*) {
    note('C');
  }
  check(trailIs("bacC"), "handlers of other types, char* and void* among them, let it pass");

  try {
    throwsAgain(call);
  } catch (const char* text) {
    note('C');
    check(same(text, fileCreationFailed), "thrown again by a handler of anything, the text");
  }
  check(trailIs("bacRdC"), "destructors, both handlers");

  try {
    try {
      throw 7;
    } catch (int) {
      try {
        outer(call);
      } catch (const char*) {
        note('C');
      }
      throw;
    }
  } catch (int number) {
    note(static_cast<char>('0' + number));
  }
  check(trailIs("bacC7"), "within a handler of the host's own exception, which then goes on");
  check(filterIsInPlace(), "the host's own filter is still in place");
}

void exportsOneFile(const char* path) {
  int64_t result = 0;
  try {
    result = exportFile(path);
  } catch (...) {
    note('!');
  }
  check(result == 1 && trailIs(""), "the next export returns 1");
}

uint32_t catchInASecondThread(void*) {
  context = "a second thread: ";
  catchInEveryWay(&batchEntry);
  return 0;
}

void caught() {
  for (int turn = 0; turn < 3; ++turn) {
    context = "PlugInExportIfcFile: ";
    catchInEveryWay(&batchEntry);
    context = "PlugInExecute: ";
    catchInEveryWay(&menuEntry);
    context = "the record's execute: ";
    catchInEveryWay(&recordEntry);
  }
  void* const thread = CreateThread(nullptr, 0, &catchInASecondThread, nullptr, 0, nullptr);
  WaitForSingleObject(thread, 0xFFFFFFFF);
  CloseHandle(thread);
  context = "";
  exportsOneFile("modelo.txt");
  check(filterIsInPlace(), "and leaves the host's own filter");
}

// ---- Uncaught --------------------------------------------------------------------------------

// As the filter that each compiler's library gives a host: Microsoft's ends the process when one of
// its own exceptions is left over.
int32_t ownFilter(ExceptionPointers* unhandled) {
  const ExceptionRecord& exception = *unhandled->record;
  if (exception.code == 0xE06D7363 && exception.count == 4 &&
      exception.information[0] == 0x19930520) {
    const char* const text = *reinterpret_cast<const char**>(exception.information[1]);
    check(same(text, fileCreationFailed), "the host's filter is given the text in its own form");
    ExitProcess(3);
  }
  print("FAILED: the host's filter is given something else\n");
  return 0;  // EXCEPTION_CONTINUE_SEARCH
}

void uncaught() {
  const Noted around{'x'};
  batchEntry();
  print("FAILED: the export returned\n");
}

uint32_t uncaughtInAThread(void*) {
  uncaught();
  return 0;
}

// ---- The callback throws ---------------------------------------------------------------------

// The dialog and the boxes, answered without a person.

int32_t chooseFile(uint8_t* dialog) {
  constexpr size_t fileField = 48;  // OPENFILENAMEW.lpstrFile
  wchar_t* const file = *reinterpret_cast<wchar_t**>(dialog + fileField);
  constexpr wchar_t name[] = L"saida.ifc";
  for (size_t i = 0; i < sizeof name / sizeof name[0]; ++i) {
    file[i] = name[i];
  }
  return 1;
}

char boxText[64];  // of the last report of a failed export

int32_t answerBox(void*, const char* text, const char* caption, uint32_t) {
  if (same(caption, "UNHANDLED EXCEPTION")) {
    for (size_t i = 0; i + 1 < sizeof boxText && (i == 0 || text[i - 1] != '\0'); ++i) {
      boxText[i] = text[i];
    }
  }
  return 6;  // IDYES
}

template <typename T>
T at(size_t offset) {
  return *reinterpret_cast<T*>(static_cast<uint8_t*>(moduleImage) + offset);
}

const char* nameAt(size_t offset) { return static_cast<const char*>(moduleImage) + offset; }

/// Puts a function of ours in the place of one that the module imports.
bool replaceImport(const char* function, void* ours) {
  const size_t optionalHeader = at<uint32_t>(60) + 24;
  for (size_t library = at<uint32_t>(optionalHeader + 120); at<uint32_t>(library) != 0;
       library += 20) {
    const size_t names = at<uint32_t>(library);
    const size_t addresses = at<uint32_t>(library + 16);
    for (size_t i = 0; at<uint64_t>(names + i) != 0; i += 8) {
      if (same(nameAt(at<uint64_t>(names + i) + 2), function)) {
        void** const slot =
            &reinterpret_cast<void*&>(static_cast<uint8_t*>(moduleImage)[addresses + i]);
        uint32_t before = 0;
        VirtualProtect(slot, sizeof *slot, 4, &before);  // PAGE_READWRITE
        *slot = ours;
        return true;
      }
    }
  }
  return false;
}

// The model: two bars. The callback throws, if it does, when it is asked for the second's section.

enum class Throws { nothing, text, standard, object };
Throws throws = Throws::nothing;

struct Fault {
  int code;
  explicit Fault(int number) : code(number) {}
  Fault(const Fault&) = default;
  ~Fault() { note('f'); }
};

BarRecord* bar = nullptr;

int32_t answer(uint64_t, int32_t index, int32_t code, void* out) {
  const Noted here{'q'};
  trailIs("");  // of the last call alone
  switch (code) {
    case EXPORTIFC_LENGTH_UNIT: *static_cast<int32_t*>(out) = 0; break;
    case EXPORTIFC_BAR_COUNT: *static_cast<int32_t*>(out) = 2; break;
    case EXPORTIFC_BAR_RECORD:
      *static_cast<uint32_t*>(out) = static_cast<uint32_t>(reinterpret_cast<uint64_t>(bar));
      break;
    case EXPORTIFC_BAR_START_NODE: *static_cast<int32_t*>(out) = 0; break;
    case EXPORTIFC_BAR_END_NODE: *static_cast<int32_t*>(out) = 1; break;
    case EXPORTIFC_NODE_COORDINATES:
      static_cast<float*>(out)[2] = static_cast<float>(3 * index);
      break;
    default: break;
  }
  if (index == 1 && code == EXPORTIFC_SECTION_DIMS) {
    switch (throws) {
      case Throws::nothing: break;
      case Throws::text: throw "parado";
      case Throws::standard: throw std::exception();
      case Throws::object: throw Fault(7);
    }
  }
  return 0;
}

bool outputIsOpen() {
  // Shared with nobody: refused while anyone holds the file.
  void* const file = CreateFileA("saida.ifc", 0x80000000, 0, nullptr, 3, 0, nullptr);
  if (file == reinterpret_cast<void*>(-1)) {
    return true;
  }
  CloseHandle(file);
  return false;
}

/// One export with a callback that throws: what the host caught, what a box told the user.
void exportWith(Throws what, const char* caughtAs, const char* boxed) {
  throws = what;
  boxText[0] = '\0';
  int64_t result = 0;
  const char* caught = "";
  try {
    result = execute();
  } catch (const char*) {
    caught = "text";
  } catch (const std::exception&) {
    caught = "standard";
  } catch (const Fault&) {
    caught = "object";
  }
  check(same(caught, caughtAs), "what the host catches");
  check(result == (*caughtAs == '\0' ? 1 : 0), "the result");
  check(same(boxText, boxed), "what the box says");
  check(trailIs(what == Throws::object ? "qf" : "q"),
        "destructors of the callback and of what it threw, each once");
}

void callbackThrows() {
  check(replaceImport("GetSaveFileNameW", reinterpret_cast<void*>(&chooseFile)) &&
            replaceImport("MessageBoxA", reinterpret_cast<void*>(&answerBox)),
        "the module's dialogs are answered");
  for (uint64_t low = 0x10000000; bar == nullptr && low < 0x70000000; low += 0x100000) {
    bar = static_cast<BarRecord*>(
        VirtualAlloc(reinterpret_cast<void*>(low), sizeof(BarRecord), 0x3000, 4));
  }
  bar->sectionName[0] = 'W';
  record->hostQuery = &answer;
  context = "the callback throws a text: ";
#ifdef _MSC_VER
  exportWith(Throws::text, "text", "");
  check(outputIsOpen(), "the output stays open");
  context = "the callback throws a standard exception: ";
  exportWith(Throws::standard, "standard", "");
#else
  exportWith(Throws::text, "", "parado");
  check(!outputIsOpen(), "the output is closed");
  context = "the callback throws a standard exception: ";
  exportWith(Throws::standard, "", "std::exception");
  check(!outputIsOpen(), "the output is closed");
#endif
  context = "the callback throws an object: ";
  exportWith(Throws::object, "object", "");
#ifndef _MSC_VER
  check(!outputIsOpen(), "the output is closed");
#endif
  context = "the callback throws no more: ";
  exportWith(Throws::nothing, "", "");
}

// ---- Start -----------------------------------------------------------------------------------

int run() {
  // PROGRAM DLL WHAT, none of them with a blank
  char* line = GetCommandLineA();
  const char* words[3] = {"", "", ""};
  for (const char*& word : words) {
    while (*line == ' ') {
      ++line;
    }
    word = line;
    while (*line != '\0' && *line != ' ') {
      ++line;
    }
    if (*line == ' ') {
      *line++ = '\0';
    }
  }
  if (!load(words[1])) {
    print("FAILED: the DLL cannot be loaded\n");
    return 2;
  }
  SetErrorMode(2);  // SEM_NOGPFAULTERRORBOX: end, and wait for no debugger
#ifndef _MSC_VER
  if (same(words[2],
           "caught"))  // mingw-w64's library has a filter, which ends the process likewise
#endif
    SetUnhandledExceptionFilter(&ownFilter);
  if (same(words[2], "caught")) {
    caught();
  } else if (same(words[2], "uncaught")) {
    uncaught();
  } else if (same(words[2], "thread")) {
    void* const thread = CreateThread(nullptr, 0, &uncaughtInAThread, nullptr, 0, nullptr);
    WaitForSingleObject(thread, 0xFFFFFFFF);
  } else if (same(words[2], "callback")) {
    callbackThrows();
  } else {
    print("FAILED: no such case\n");
    return 2;
  }
  print("end\n");
  return 0;
}

}  // namespace

#ifdef _MSC_VER
extern "C" [[noreturn]] void mainCRTStartup() { ExitProcess(static_cast<uint32_t>(run())); }
#else
int main() { return run(); }
#endif
