#include "model/line_reader.h"

#include <cstddef>
#include <cstring>

namespace exportifc {

namespace {

constexpr char endOfText = '\x1A';

}  // namespace

bool LineReader::next(std::string_view& line) {
  if (!takeToFeed(line)) {
    // The line goes on in the next buffer, or the text ends.
    pieces_.clear();
    do {
      pieces_.append(at_, end_);
      if (!fill()) {
        line = pieces_;
        return !line.empty();
      }
    } while (!takeToFeed(line));
    line = pieces_.append(line);
  }
  if (line.ends_with('\r')) {
    line.remove_suffix(1);
  }
  return true;
}

bool LineReader::takeToFeed(std::string_view& text) {
  const auto left = static_cast<std::size_t>(end_ - at_);
  const auto* const feed = static_cast<const char*>(std::memchr(at_, '\n', left));
  if (feed == nullptr) {
    return false;
  }
  text = {at_, feed};
  at_ = feed + 1;
  return true;
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
