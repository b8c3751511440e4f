#include "model/line_reader.h"

#include <cstddef>
#include <cstring>

namespace exportifc {

namespace {

constexpr char endOfText = '\x1A';

}  // namespace

bool LineReader::nextOfPieces(std::string_view& line) {
  pieces_.clear();
  do {
    pieces_.append(at_, end_);
    if (!fill()) {
      line = pieces_;
      return !line.empty();
    }
  } while (!takeToFeed(line));
  line = pieces_.append(line);
  return dropReturn(line);
}

bool LineReader::fill() {
  at_ = end_;
  if (ended_) {
    return false;
  }
  text_->read(buffer_.data(), static_cast<std::streamsize>(buffer_.size()));
  const auto size = static_cast<std::size_t>(text_->gcount());
  const auto* const endMark =
      static_cast<const char*>(std::memchr(buffer_.data(), endOfText, size));
  at_ = buffer_.data();
  end_ = endMark != nullptr ? endMark : at_ + size;
  ended_ = endMark != nullptr || !*text_;
  return at_ != end_;
}

}  // namespace exportifc
