// Which file a name leads to, and why the system does not open it.
#pragma once

#include <filesystem>
#include <fstream>
#include <string>

namespace exportifc {

/// The file that a path leads to, there or not: a link keeps pointing to what is replaced.
std::filesystem::path behindLinks(const std::filesystem::path& path);

/// What tells one file from all others, there or not, by whatever name it is reached; empty for
/// what cannot be lost, such as a device.
std::string identityOf(const std::filesystem::path& path);

/// Opens a file to read its bytes. Gives 0, or the `errno` of what the system says against it.
int openInput(std::filebuf& file, const std::string& name);

/// All bytes of a file. Gives the same.
int readAll(const std::string& name, std::string& bytes);

/// Why the system refuses to read or write the file `name`: a folder that is missing is named.
std::string readErrorText(const std::string& name, int error);
std::string writeErrorText(const std::string& name, int error);

/// The system's reason for an error number, in the user's language.
std::string systemErrorText(int error);

}  // namespace exportifc
