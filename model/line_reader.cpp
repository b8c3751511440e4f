#include "model/line_reader.h"

#include <cstddef>
#include <cstring>

namespace exportifc {

namespace {

constexpr char endOfText = '\x1A';

}  // namespace

bool LineReader::next(std::string& line) {
  line.clear();
  bool any = false;
  while (at_ != end_ || fill()) {
    any = true;
    const auto left = static_cast<std::size_t>(end_ - at_);
    const auto* const feed = static_cast<const char*>(std::memchr(at_, '\n', left));
    line.append(at_, feed != nullptr ? feed : end_);
    if (feed != nullptr) {
      at_ = feed + 1;
      if (!line.empty() && line.back() == '\r') {
        line.pop_back();
      }
      return true;
    }
    at_ = end_;
  }
  return any;
}

bool LineReader::fill() {
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
