// What files need of the operating system beyond the standard library.
#pragma once

#include <cerrno>
#include <cstddef>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

namespace exportifc::files {

/// The same file under a name that the system takes at any length.
std::filesystem::path anyLength(const std::filesystem::path& path);

/// The `errno` of an error; EIO for one of the system's own that has none.
inline int errorNumber(const std::error_code& error) {
  const std::error_condition condition = error.default_error_condition();
  return condition.category() == std::generic_category() ? condition.value() : EIO;
}

/// Which file a path leads to.
struct FileIdentity {
  bool exists = false;
  std::string text;  ///< different for each file; empty for a device or a pipe
};
FileIdentity identityOf(const std::filesystem::path& path);

/// The text of a file that is open; empty for a device, a pipe or none.
std::string identityOfOpen(int file);

/// A relative path such that two that the system takes for one are equal.
std::filesystem::path comparable(const std::filesystem::path& path);

/// The part of a path under which the system knows a device where a file is meant, such as CON in
/// "CON.ifc"; empty when there is none. NUL alone is what it says.
std::string deviceIn(const std::filesystem::path& path);

/// The names in a folder, in any order; none when it cannot be read. The standard library's way
/// ends the process when memory runs out.
std::vector<std::filesystem::path> namesIn(const std::filesystem::path& folder);

int processId();

// Files by descriptor; -1 or false, with errno set, when the system refuses.
int createFile(const std::filesystem::path& path);      ///< fails when it exists
int openForWriting(const std::filesystem::path& path);  ///< one that exists: a device, a pipe
/// A write that a signal cut short goes on, unless `isInterrupted` is given and says otherwise.
bool writeAll(int file, const char* bytes, std::size_t size, bool (*isInterrupted)());
bool flushToDisk(int file);
bool closeFile(int file);
bool isWritable(const std::filesystem::path& path);

}  // namespace exportifc::files
