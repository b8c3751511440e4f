#include "library/packing/base64_sink.h"

namespace exportifc {

namespace {

constexpr std::string_view alphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::size_t groupSize = 3;

}  // namespace

/// The group's bytes as four letters, padded when there are less than three.
void Base64Sink::addGroup(std::size_t count) {
  for (std::size_t i = 0; i <= groupSize; ++i) {
    letters_.push_back(i <= count ? alphabet[(group_ >> (18 - 6 * i)) & 0x3F] : '=');
  }
  group_ = 0;
  held_ = 0;
}

bool Base64Sink::write(const char* bytes, std::size_t size) {
  letters_.clear();
  for (std::size_t i = 0; i < size; ++i) {
    group_ |= static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[i])) << (16 - 8 * held_);
    if (++held_ == groupSize) {
      addGroup(groupSize);
    }
  }
  return next_.write(letters_.data(), letters_.size());
}

bool Base64Sink::finish() {
  letters_.clear();
  if (held_ > 0) {
    addGroup(held_);
  }
  return next_.write(letters_.data(), letters_.size());
}

}  // namespace exportifc
