// The open exchange file, one complete line at a time.
#pragma once

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

#include "platform/byte_sink.h"
#include "step/line_pieces.h"

namespace exportifc {

/// Writes lines that end with CR LF, each handed to the sink in one call as soon as it is complete,
/// so that a crash of the host loses at most the line being composed.
///
/// Once something could not be written (no sink, no room left, a character that is no byte) the
/// stream has failed and drops everything that follows, without a message.
class StepStream {
 public:
  /// A null sink is a file that could not be opened: the stream has failed from the start.
  explicit StepStream(std::unique_ptr<ByteSink> sink);

  bool failed() const { return failed_; }

  /// Writes one line of the given pieces (line_pieces.h).
  template <class... Pieces>
  void line(const Pieces&... pieces) {
    if (failed_) {
      return;
    }
    LineCursor cursor{.at = reserve((std::size_t{0} + ... + maxLength(pieces)))};
    ((cursor = put(cursor, pieces)), ...);
    finish(cursor);
  }

 private:
  static constexpr std::size_t lineEnd = 2;

  /// A buffer for `size` characters and the line end.
  char* reserve(std::size_t size) {
    if (buffer_.size() < size + lineEnd) {
      grow(size + lineEnd);
    }
    return buffer_.data();
  }
  void grow(std::size_t size);
  void finish(LineCursor line);

  std::unique_ptr<ByteSink> sink_;
  std::vector<char> buffer_;
  bool failed_;
};

}  // namespace exportifc
