#include "system_calls.h"

#include <cerrno>
#include <clocale>

#include <sys/random.h>
#include <sys/syscall.h>
#include <dlfcn.h>
#include <unistd.h>

namespace exportifc::test {

namespace {

SystemCalls* listener = nullptr;

}  // namespace

SystemCalls::SystemCalls() { listener = this; }

SystemCalls::~SystemCalls() { listener = nullptr; }

}  // namespace exportifc::test

using exportifc::test::listener;

// The program's own functions stand before those of the library.

// The library declares them with names reserved to it.
// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name)
extern "C" char* setlocale(int category, const char* name) noexcept {
  static auto* const systems =
      reinterpret_cast<decltype(&setlocale)>(dlsym(RTLD_NEXT, "setlocale"));
  if (name != nullptr && listener != nullptr && listener->changesLocale) {
    listener->changesLocale(category, name);
  }
  return systems(category, name);
}

extern "C" ssize_t getrandom(void* bytes, std::size_t size, unsigned flags) {
  if (listener == nullptr || !listener->randomBytes) {
    return ::syscall(SYS_getrandom, bytes, size, flags);
  }
  if (!listener->randomBytes(static_cast<unsigned char*>(bytes), size)) {
    errno = ENOSYS;
    return -1;
  }
  return static_cast<ssize_t>(size);
}
// NOLINTEND(readability-inconsistent-declaration-parameter-name)
