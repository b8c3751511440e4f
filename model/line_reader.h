// Reads a text file line by line as the Windows runtime does in text mode, on every platform.
#pragma once

#include <array>
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

  /// Reads the next line, without its end; `line` holds until the next call. False, with `line`
  /// empty, when there is none; the last line need not end with a line feed.
  bool next(std::string_view& line);

 private:
  /// Takes what stands before the next line feed in the buffer; false when there is none.
  bool takeToFeed(std::string_view& text);
  /// Drops what is in the buffer and reads more; false at the end of the text.
  bool fill();

  std::ifstream file_;
  std::istream* text_;
  std::array<char, 65536> buffer_{};
  std::string pieces_;  // of a line that lies in two buffers or more
  const char* at_ = buffer_.data();
  const char* end_ = buffer_.data();
  bool ended_ = false;
};

}  // namespace exportifc
