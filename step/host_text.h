// A text of the host's, made ready for the file once.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>

#include "step/line_pieces.h"

namespace exportifc {

/// A wide text and its bytes in the file. The names of a section stand in several lines of each of
/// its bars, and are not narrowed again for each.
class HostText {
 public:
  HostText() = default;
  HostText(std::wstring_view wide);
  HostText(const std::wstring& wide) : HostText(std::wstring_view(wide)) {}
  HostText(const wchar_t* wide) : HostText(std::wstring_view(wide)) {}

  operator std::wstring_view() const { return wide_; }
  bool empty() const { return wide_.empty(); }
  std::size_t size() const { return wide_.size(); }

  /// Room that `put` needs.
  std::size_t room() const { return bytes_.size(); }

  LineCursor put(LineCursor line) const {
    if (size_ <= usual) [[likely]] {
      std::memcpy(line.at, bytes_.data(), usual);  // of a known length: a few moves
    } else {
      std::memcpy(line.at, bytes_.data(), size_);
    }
    line.at += size_;
    if (isCut_ && line.cut == nullptr) {
      line.cut = line.at;
    }
    return line;
  }

 private:
  static constexpr std::size_t usual = 64;  // characters copied at once: most names are shorter

  std::wstring wide_;
  std::string bytes_ = std::string(usual, '\0');  // only the first `size_` count
  std::size_t size_ = 0;
  bool isCut_ = false;  // by a character that the file cannot hold
};

// Constrained, since a wide text is a piece itself.
template <std::same_as<HostText> Text>
std::size_t maxLength(const Text& text) {
  return text.room();
}
template <std::same_as<HostText> Text>
LineCursor put(LineCursor line, const Text& text) {
  return text.put(line);
}

}  // namespace exportifc
