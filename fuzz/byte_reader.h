// Turns a fuzzer's bytes into values, front to back, so that inputs can be written by hand.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>

namespace exportifc::fuzz {

/// Past the end every byte reads as 0.
class ByteReader {
 public:
  ByteReader(const std::uint8_t* data, std::size_t size) : bytes_(data, size) {}

  bool atEnd() const { return at_ >= bytes_.size(); }

  std::uint8_t byte() { return atEnd() ? std::uint8_t{0} : bytes_[at_++]; }

  std::int32_t int32() {
    std::uint32_t value = 0;
    for (int shift = 0; shift < 32; shift += 8) {
      value |= std::uint32_t{byte()} << shift;
    }
    return static_cast<std::int32_t>(value);
  }

  /// A small number in one byte (eighths, -16 to 15.75; or whole hundreds), or any float at all in
  /// a selector byte and four more.
  float real() {
    const std::uint8_t selector = byte();
    if (selector == 0xFF) {
      return std::bit_cast<float>(int32());
    }
    if (selector >= 0xF0) {
      return static_cast<float>((selector - 0xF0) * 100);
    }
    return static_cast<float>(selector - 0x78) / 8.0F;
  }

  /// `size` bytes, zeros past the end.
  std::string text(std::size_t size) {
    std::string result(size, '\0');
    const std::size_t available = std::min(size, bytes_.size() - std::min(at_, bytes_.size()));
    if (available > 0) {
      std::memcpy(result.data(), bytes_.data() + at_, available);
    }
    at_ += available;
    return result;
  }

 private:
  std::span<const std::uint8_t> bytes_;
  std::size_t at_ = 0;
};

}  // namespace exportifc::fuzz
