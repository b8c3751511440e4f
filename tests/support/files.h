// Whole files.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace exportifc::test {

// A narrow path is opened as it stands, which on Windows is not what a path made of it would be.
// Throw std::runtime_error, which fails the test that did not expect it.
std::string readFile(const std::string& path);
std::string readFile(const std::filesystem::path& path);
void writeFile(const std::string& path, std::string_view bytes);
void writeFile(const std::filesystem::path& path, std::string_view bytes);

}  // namespace exportifc::test
