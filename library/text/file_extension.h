// What the name of a file says of its format.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace exportifc {

/// The extension with its point, in lower case; empty when there is none, as in ".profile".
/// Folders end with either system's separator: names come from pages and programs of both.
inline std::string extensionOf(std::string_view name) {
  name.remove_prefix(name.find_last_of("/\\") + 1);  // 0 without a folder
  const std::size_t point = name.rfind('.');
  if (point == std::string_view::npos || point == 0 || name == "..") {
    return {};
  }
  std::string extension(name.substr(point));
  std::transform(extension.begin(), extension.end(), extension.begin(), [](char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
  });
  return extension;
}

}  // namespace exportifc
