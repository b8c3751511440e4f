// What the program needs of the operating system beyond the core's platform layer.
#pragma once

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include "cli/messages.h"

namespace exportifc::cli::system {

/// The arguments of `main` as UTF-8, the program's name first.
std::vector<std::string> arguments(int argc, char** argv);

/// Standard streams in binary and UTF-8, a closed pipe as an error of the write, Ctrl-C and
/// termination as `interrupted()`.
void prepareProcess();

/// Whether the user asked the program to end.
bool interrupted();

/// A variable of the environment as UTF-8; empty when it is not set.
std::string variable(const char* name);

/// The language that the user has chosen for the system, apart from variables: "pt-BR"; empty
/// when it has none.
std::string userLanguage();

bool outputIsTerminal();
bool errorIsTerminal();

/// Columns of the terminal on standard error, 80 when unknown.
int terminalColumns();

/// Where the program itself lies.
std::filesystem::path programPath();

int processId();

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

/// The text of a standard stream that is redirected to a file; otherwise empty.
enum class StandardStream : std::uint8_t { input, output, error };
std::string identityOf(StandardStream stream);

/// A relative path such that two that the system takes for one are equal.
std::filesystem::path comparable(const std::filesystem::path& path);

// Files by descriptor; -1 or false, with errno set, when the system refuses.
int createFile(const std::filesystem::path& path);      ///< fails when it exists
int openForWriting(const std::filesystem::path& path);  ///< one that exists: a device, a pipe
int standardOutput();
bool writeAll(int file, const char* bytes, std::size_t size);
bool flushToDisk(int file);
bool closeFile(int file);
bool isWritable(const std::filesystem::path& path);

}  // namespace exportifc::cli::system
