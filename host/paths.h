// Paths as the user types and reads them: UTF-8.
#pragma once

#include <filesystem>
#include <string>

namespace exportifc::host {

inline std::filesystem::path pathOf(const std::string& utf8) {
#ifdef _WIN32
  return {std::u8string(utf8.begin(), utf8.end())};
#else
  return {utf8};  // paths are bytes
#endif
}

inline std::string textOf(const std::filesystem::path& path) {
#ifdef _WIN32
  const std::u8string utf8 = path.u8string();
  return {utf8.begin(), utf8.end()};
#else
  return path.string();
#endif
}

}  // namespace exportifc::host
