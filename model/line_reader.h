// Reads a text file line by line as the Windows runtime does in text mode, on every platform.
#pragma once

#include <array>
#include <cstddef>
#include <cstring>
#include <fstream>
#include <istream>
#include <string>
#include <string_view>

namespace exportifc {

/// A carriage return before a line feed is dropped and the byte 0x1A ends the file.
class LineReader {
 public:
  /// `path` is narrow. A file that cannot be opened has no lines.
  explicit LineReader(const std::string& path) : file_(path, std::ios::binary), text_(&file_) {}
  /// Reads `text`, opened in binary mode, which must outlive the reader.
  explicit LineReader(std::istream& text) : text_(&text) {}
  LineReader(const LineReader&) = delete;
  LineReader& operator=(const LineReader&) = delete;
  ~LineReader() = default;

  bool isOpen() const { return text_ != &file_ || file_.is_open(); }

  /// Closes the file that the path named; a stream of the caller's stays as it is.
  void close() { file_.close(); }

  /// Reads the next line, without its end; `line` holds until the next call. False, with `line`
  /// empty, when there is none; the last line need not end with a line feed.
  bool next(std::string_view& line) {
    return takeToFeed(line) ? dropReturn(line) : nextOfPieces(line);
  }

 private:
  /// Takes what stands before the next line feed in the buffer; false when there is none.
  bool takeToFeed(std::string_view& text) {
    const auto left = static_cast<std::size_t>(end_ - at_);
    const auto* const feed = static_cast<const char*>(std::memchr(at_, '\n', left));
    if (feed == nullptr) {
      return false;
    }
    text = {at_, static_cast<std::size_t>(feed - at_)};
    at_ = feed + 1;
    return true;
  }

  static bool dropReturn(std::string_view& line) {
    if (line.ends_with('\r')) {
      line.remove_suffix(1);
    }
    return true;
  }

  /// As `next`, for a line that goes on in the next buffer, or the end of the text.
  bool nextOfPieces(std::string_view& line);
  /// Drops what is in the buffer and reads more; false at the end of the text.
  bool fill();

  std::ifstream file_;
  std::istream* text_;
  std::array<char, 16384> buffer_{};  // half of a first-level cache: a bar touches other memory too
  std::string pieces_;                // of a line that lies in two buffers or more
  const char* at_ = buffer_.data();
  const char* end_ = buffer_.data();
  bool ended_ = false;
};

}  // namespace exportifc
