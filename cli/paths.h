// Paths as the user types and reads them: UTF-8.
#pragma once

#include <algorithm>
#include <filesystem>
#include <string>

namespace exportifc::cli {

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

/// The extension of a file's name with its point, in lower case.
inline std::string extensionOf(const std::string& name) {
  std::string extension = textOf(pathOf(name).extension());
  std::transform(extension.begin(), extension.end(), extension.begin(), [](char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
  });
  return extension;
}

}  // namespace exportifc::cli
