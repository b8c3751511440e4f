// What the program needs of the operating system beyond the core's platform layer.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "library/files/file_system.h"

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

/// The text of a standard stream that is redirected to a file; otherwise empty.
enum class StandardStream : std::uint8_t { input, output, error };
inline std::string identityOf(StandardStream stream) {
  return files::identityOfOpen(static_cast<int>(stream));  // in the order of their descriptors
}

int standardOutput();

}  // namespace exportifc::cli::system
