// What is wrong with a text that is no JSON, in words for the person who typed it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <streambuf>
#include <string>
#include <vector>

#include "library/frame/problem.h"

namespace exportifc {

/// A bracket that is open, and where.
struct OpenBracket {
  char character = '{';
  TextPlace place{};
};

/// The text around the place where the parser stopped.
struct JsonSurroundings {
  std::string text;               ///< begins behind a bracket or with the file
  TextPlace start{};              ///< of its first character
  std::size_t stop = 0;           ///< index of the first character that the parser did not read
  bool begun = false;             ///< a bracket stands before the text
  bool behindClosing = false;     ///< and it is a closing one
  bool ended = false;             ///< behind the text there is nothing
  std::vector<OpenBracket> open;  ///< at its beginning, outermost first
};

/// Looks for the first fault up to the stop. Place, message and, where it is one word, the value
/// and how it is written right; nothing for a fault without a name of its own.
std::optional<Problem> nameFault(const JsonSurroundings& around);

/// The text of a model as the parser reads it, which knows where the parser is and what stands
/// around it. Holds one piece of the text and the end of the one before.
class JsonText final : public std::streambuf {
 public:
  /// `text` must outlive it.
  explicit JsonText(std::streambuf& text) : text_(text) { setg(piece(), piece(), piece()); }

  /// The mark that some editors put before UTF-8 is no character.
  void skipMark();

  /// Of the last character that the parser read.
  TextPlace place() const { return placeOf(gptr()); }

  /// The parser has just read a bracket. Inner brackets cost a few instructions: a model has
  /// millions.
  void opened(char bracket);
  void closed() {
    --depth_;
    markBracket(true);
  }

  /// May read on: nothing can be parsed afterwards.
  JsonSurroundings surroundings();

 private:
  static constexpr std::size_t keptSize = 4096;
  static constexpr std::size_t pieceSize = 16384;
  static constexpr std::size_t mostDepth = 4;   // of a model: a bar's nodes
  static constexpr std::size_t outerDepth = 2;  // few brackets, perhaps far back

  struct Opened {
    char character;
    std::int64_t offset;  // in the file, of what follows the bracket
    TextPlace place;      // of an outer bracket
  };

  int_type underflow() override;
  char* piece() { return buffer_.data() + keptSize; }
  const char* kept() const { return buffer_.data() + keptSize - keptNow_; }
  std::int64_t offset() const { return pieceOffset_ + (gptr() - eback()); }
  /// Of the character before `end`. Counted when it is asked for and once a piece: counting each
  /// character as it is read took a third of the time.
  TextPlace placeOf(const char* end) const;
  /// The text held from that place in the file on; null when it is no longer held.
  const char* heldFrom(std::int64_t offset) const {
    const std::int64_t back = pieceOffset_ - offset;
    return back > static_cast<std::int64_t>(keptNow_) ? nullptr : eback() - back;
  }
  void markBracket(bool isClosing) {
    bracketOffset_ = offset();
    behindClosing_ = isClosing;
  }

  std::streambuf& text_;
  std::array<char, keptSize + pieceSize> buffer_{};
  std::size_t keptNow_ = 0;
  std::int64_t pieceOffset_ = 0;                 // in the file, of the piece
  TextPlace keptPlace_{.line = 1, .column = 0};  // before the kept text
  std::array<Opened, mostDepth> open_{};
  std::size_t depth_ = 0;
  std::int64_t bracketOffset_ = 0;  // behind the last bracket
  bool behindClosing_ = false;
};

}  // namespace exportifc
