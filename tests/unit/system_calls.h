// Linux: functions of the C library that tests listen to or answer themselves.
#pragma once

#include <cstddef>
#include <functional>

namespace exportifc::test {

/// While it lives, calls of these functions are told to it. One at a time.
struct SystemCalls {
  SystemCalls();
  SystemCalls(const SystemCalls&) = delete;
  SystemCalls& operator=(const SystemCalls&) = delete;
  ~SystemCalls();

  /// Before the locale is changed; not for questions.
  std::function<void(int category, const char* name)> changesLocale;
  /// Instead of the system's random bytes; false when there are none.
  std::function<bool(unsigned char* bytes, std::size_t size)> randomBytes;
};

}  // namespace exportifc::test
