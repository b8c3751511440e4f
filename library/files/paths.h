// Paths as the user types and reads them: UTF-8.
#pragma once

#include <filesystem>
#include <string>

namespace exportifc {

// By way of char8_t, which a system whose paths are bytes takes as they are, UTF-8 or not.
inline std::filesystem::path pathOf(const std::string& utf8) {
  return {std::u8string(utf8.begin(), utf8.end())};
}

inline std::string textOf(const std::filesystem::path& path) {
  const std::u8string utf8 = path.u8string();
  return {utf8.begin(), utf8.end()};
}

}  // namespace exportifc
