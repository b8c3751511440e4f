// The one exception that leaves the module.
//
// The DLL is built by GCC, its host as a rule by Microsoft's compiler, and neither's frames catch
// what the other's run-time library throws. So the text is raised as Microsoft's compiler would;
// when no frame takes it, it is thrown again as our own language does.
#include "platform/platform.h"

#if defined(__MINGW32__)

#include <cstddef>
#include <cstdint>

#include <windows.h>

namespace exportifc::platform {

namespace {

// ---- What Microsoft's library reads of a thrown object, on 64-bit systems --------------------

// Each `int32_t` that names a place counts from the base that is raised with the exception. A
// compiler takes its image's; ours is the description's own address, which makes them constants.

struct TypeName {
  const void* functions;  // of std::type_info; types are told apart by their names alone
  void* spare;
  char name[8];
};

struct CatchableType {
  std::uint32_t properties;
  std::int32_t type;
  std::int32_t
      baseOffset[3];  // of a base class: in the object, of its table, in that; -1: no table
  std::int32_t size;
  std::int32_t copyFunction;  // none: its bytes are copied
};

struct ThrownPointer {
  std::uint32_t attributes;
  std::int32_t destructor;
  std::int32_t compatibility;
  std::int32_t catchableTypes;

  std::int32_t typeCount;
  std::int32_t types[2];

  CatchableType characterPointer;
  CatchableType anyPointer;
  TypeName characterPointerName;
  TypeName anyPointerName;
};

// The library walks these structures by its own offsets.
static_assert(sizeof(TypeName) == 24 && offsetof(TypeName, name) == 16);
static_assert(sizeof(CatchableType) == 28 && offsetof(CatchableType, size) == 20);
static_assert(offsetof(ThrownPointer, catchableTypes) == 12);
static_assert(offsetof(ThrownPointer, typeCount) == 16);
static_assert(offsetof(ThrownPointer, types) == 20);
static_assert(sizeof(void*) == 8);

constexpr std::uint32_t pointsToConst = 1;  // of the thrown pointer; the names below leave it out
constexpr std::uint32_t simpleType = 1;

constexpr CatchableType pointerOfType(std::int32_t type) {
  return {.properties = simpleType,
          .type = type,
          .baseOffset = {0, -1, 0},
          .size = sizeof(void*),
          .copyFunction = 0};
}

constexpr ThrownPointer thrownText = {
    .attributes = pointsToConst,
    .destructor = 0,
    .compatibility = 0,
    .catchableTypes = offsetof(ThrownPointer, typeCount),
    .typeCount = 2,
    .types = {offsetof(ThrownPointer, characterPointer), offsetof(ThrownPointer, anyPointer)},
    .characterPointer = pointerOfType(offsetof(ThrownPointer, characterPointerName)),
    .anyPointer = pointerOfType(offsetof(ThrownPointer, anyPointerName)),
    .characterPointerName = {.functions = nullptr, .spare = nullptr, .name = ".PEAD"},  // char*
    .anyPointerName = {.functions = nullptr, .spare = nullptr, .name = ".PEAX"},        // void*
};

constexpr DWORD microsoftException = 0xE06D7363;
constexpr ULONG_PTR microsoftVersion = 0x19930520;
constexpr DWORD gccException = 0x20474343;

// ---- Raising -------------------------------------------------------------------------------

// The throw under way. There is one at most: exports do not overlap.
struct {
  const char* text;
  DWORD thread;
  LPTOP_LEVEL_EXCEPTION_FILTER hostFilter;
  EXCEPTION_RECORD microsoftForm;
} underway;

LONG askHost(EXCEPTION_POINTERS* unhandled) {
  return underway.hostFilter == nullptr ? EXCEPTION_CONTINUE_SEARCH
                                        : underway.hostFilter(unhandled);
}

/// The process's last-resort filter while the text is under way: it is called when no frame took
/// an exception, whichever.
LONG WINAPI whenUncaught(EXCEPTION_POINTERS* unhandled) {
  const EXCEPTION_RECORD& exception = *unhandled->ExceptionRecord;
  if (GetCurrentThreadId() == underway.thread) {
    if (exception.ExceptionCode == microsoftException && exception.NumberParameters == 4 &&
        exception.ExceptionInformation[1] == reinterpret_cast<ULONG_PTR>(&underway.text)) {
      underway.microsoftForm = exception;
      return EXCEPTION_CONTINUE_EXECUTION;  // RaiseException returns
    }
    if (exception.ExceptionCode == gccException) {
      // No frame takes either form. A host of Microsoft's compiler ends itself by its own form
      // only.
      EXCEPTION_POINTERS first = {&underway.microsoftForm, unhandled->ContextRecord};
      const LONG answer = askHost(&first);
      if (answer != EXCEPTION_CONTINUE_SEARCH) {
        return answer;
      }
    }
  }
  return askHost(unhandled);
}

/// The system calls this when a frame of the host has caught the text in either form, and the stack
/// unwinds to there.
EXCEPTION_DISPOSITION putHostFilterBack(EXCEPTION_RECORD*, void*, CONTEXT*, void*) {
  const auto replaced = SetUnhandledExceptionFilter(underway.hostFilter);
  if (replaced != &whenUncaught) {
    SetUnhandledExceptionFilter(replaced);  // set in between: the host's latest word
  }
  return ExceptionContinueSearch;
}

}  // namespace

[[gnu::noinline]] void throwToHost(const char* text) {
  // This frame's handler on unwinding. A destructor would not do: GCC's frames run theirs for
  // exceptions of their own only.
  asm volatile(".seh_handler %c0, @unwind" : : "i"(&putHostFilterBack));
  underway.text = text;
  underway.thread = GetCurrentThreadId();
  underway.hostFilter = SetUnhandledExceptionFilter(&whenUncaught);
  const auto description = reinterpret_cast<ULONG_PTR>(&thrownText);
  const ULONG_PTR parameters[4] = {microsoftVersion, reinterpret_cast<ULONG_PTR>(&underway.text),
                                   description, /* base: */ description};
  RaiseException(microsoftException, 0, 4, parameters);
  throw text;
}

}  // namespace exportifc::platform

#else

namespace exportifc::platform {

void throwToHost(const char* text) { throw text; }

}  // namespace exportifc::platform

#endif
