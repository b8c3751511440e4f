// Everything the module needs of the operating system; windows.cpp and posix.cpp implement it, for
// the page wasm.cpp, throw_to_host.cpp the exception that leaves the module.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/byte_sink.h"

namespace exportifc::platform {

/// The system's 16-byte globally unique identifier.
struct Guid {
  std::uint32_t data1 = 0;
  std::uint16_t data2 = 0;
  std::uint16_t data3 = 0;
  std::array<std::uint8_t, 8> data4{};

  friend bool operator==(const Guid&, const Guid&) = default;
};

/// A new random (version 4) GUID; all zero when the system gives none.
Guid newGuid();

/// The size, in bytes, that a large page has where there are any.
inline constexpr std::size_t largePage = std::size_t{1} << 21;

/// Asks the system to back memory that will be filled from its start with large pages, which cost
/// less to touch first. Windows gives them to privileged accounts only: nothing is asked there.
void preferLargePages(void* memory, std::size_t size);

/// Creates or truncates the file at `path`, unbuffered. Null when it cannot be opened.
std::unique_ptr<ByteSink> openForWriting(const std::wstring& path);

/// Whether the file at `path` can be opened for reading.
bool canRead(const std::wstring& path);

/// Narrow path to wide path. Windows: the runtime's conversion under the current locale, nothing
/// when a byte has no character. Linux: one byte to one unit, since paths are bytes there.
std::optional<std::wstring> widenPath(const std::string& path);

/// Wide path to narrow path, the reverse of `widenPath`; nothing when a unit has no byte or the
/// result is longer than `path`.
std::optional<std::string> narrowPath(const std::wstring& path);

/// Throws `text`, of static life, to a host of any compiler: it catches it as `const char*`. The
/// frames between must have nothing left to destroy, for they may not be asked to.
[[noreturn]] void throwToHost(const char* text);

// Dialogs; on Linux the terminal, with messages on standard error. Narrow texts are Windows-1252,
// wide ones UTF-16 code units.

/// Asks where to save the exchange file; nothing when the user gives up.
std::optional<std::wstring> chooseSaveFile();

/// A Yes/No question: false when the answer is No, true also when there is none.
bool askYesNo(const char* text, const char* caption);

/// A message with an OK button. Needs no memory of ours.
void showBox(const char* text, const char* caption);
void showBox(const wchar_t* text, const wchar_t* caption);

/// One line on the process's standard output.
void printLine(std::wstring_view line);

}  // namespace exportifc::platform
