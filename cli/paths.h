// Paths as the user types and reads them: UTF-8.
#pragma once

#include <algorithm>
#include <filesystem>
#include <string>

namespace exportifc::cli {

// By way of char8_t, which a system whose paths are bytes takes as they are, UTF-8 or not.
inline std::filesystem::path pathOf(const std::string& utf8) {
  return {std::u8string(utf8.begin(), utf8.end())};
}

inline std::string textOf(const std::filesystem::path& path) {
  const std::u8string utf8 = path.u8string();
  return {utf8.begin(), utf8.end()};
}

/// The extension of a file's name with its point, in lower case.
inline std::string extensionOf(const std::string& name) {
  std::string extension = textOf(pathOf(name).extension());
  std::transform(extension.begin(), extension.end(), extension.begin(), [](char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
  });
  return extension;
}

}  // namespace exportifc::cli
