// Numbers as the exchange file writes them, straight into a buffer.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace exportifc {

// Room that each function needs, in characters: all of it may be written to, also behind the end
// of the text that is returned.

/// Sign, 309 digits of the largest double, point, five digits.
inline constexpr std::size_t fixed5Capacity = 320;
/// For instance "-1.23457e-308".
inline constexpr std::size_t general6Capacity = 16;
/// For instance "-2147483648".
inline constexpr std::size_t integerCapacity = 11;

/// Writes `value` in fixed notation with five decimals, ties to even, as the C conversion "%.5f"
/// does under the classic locale; infinities and NaN as "inf", "-inf", "nan".
/// Returns the end of the text; `at` must have room for `fixed5Capacity` characters.
char* putFixed5(char* at, double value);

/// Writes `value` as "%.6g" does under the classic locale; room for `general6Capacity`.
char* putGeneral6(char* at, double value);

/// Writes `value` in plain decimal; room for `integerCapacity`.
char* putInteger(char* at, std::int32_t value);

/// An integer that is written more than once: its text is kept ready.
class ReadyInteger {
 public:
  explicit ReadyInteger(std::int32_t value) : text_(textOf(value)), value_(value) {}

  std::int32_t value() const { return value_; }

  /// The integer that follows; must not be called for the largest one. Nine times in ten only the
  /// last character changes.
  ReadyInteger next() const {
    if (text_ == 0 || (text_ >> (8 * lastIndex())) == '9') [[unlikely]] {
      return ReadyInteger(value_ + 1);
    }
    return {text_ + (std::uint64_t{1} << (8 * lastIndex())), value_ + 1};
  }

  /// As `putInteger`.
  char* put(char* at) const {
    if (text_ == 0) [[unlikely]] {
      return putInteger(at, value_);
    }
    std::memcpy(at, &text_, sizeof(text_));
    return at + lastIndex() + 1;
  }

 private:
  ReadyInteger(std::uint64_t text, std::int32_t value) : text_(text), value_(value) {}

  /// The `text_` of a value.
  static std::uint64_t textOf(std::int32_t value);

  /// Where the last character of `text_` is, which has one.
  std::size_t lastIndex() const {
    return (static_cast<std::size_t>(std::bit_width(text_)) - 1) / 8;
  }

  std::uint64_t
      text_;  // the characters, the first in the lowest byte; 0: more than eight, or a sign
  std::int32_t value_;
};

}  // namespace exportifc
