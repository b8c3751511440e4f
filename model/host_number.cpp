#include "model/host_number.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cstddef>
#include <cstring>
#include <iterator>
#include <limits>
#include <optional>
#include <string>

namespace exportifc {

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

/// White space, to which the host's runtime adds the no-break space of Windows-1252.
bool isBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r') || c == '\xA0'; }

/// Reads the characters of a text one after the other; '\0' stands for the end.
class Cursor {
 public:
  explicit Cursor(std::string_view text) : at_(text.data()), end_(at_ + text.size()) {}

  char peek() const { return at_ != end_ ? *at_ : '\0'; }
  void advance() { ++at_; }
  const char* position() const { return at_; }
  void moveTo(const char* position) { at_ = position; }

  void skipBlanks() {
    while (isBlank(peek())) {
      advance();
    }
  }

  /// Consumes a sign if there is one; true for a minus.
  bool takeMinus() {
    const char sign = peek();
    if (sign == '-' || sign == '+') {
      advance();
    }
    return sign == '-';
  }

 private:
  const char* at_;
  const char* end_;
};

// An exponent does not grow beyond ten times this: no text has so many digits that they could bring
// a number with such an exponent back into range, and the sum of both stays within 64 bits.
constexpr std::int64_t largestExponent = 1000000000;

/// The exponent behind an e or E, or 0 (and nothing consumed) when no digits follow.
std::int64_t takeExponent(Cursor& cursor) {
  const char* const before = cursor.position();
  if (cursor.peek() != 'e' && cursor.peek() != 'E') {
    return 0;
  }
  cursor.advance();
  const bool minus = cursor.takeMinus();
  if (!isDigit(cursor.peek())) {
    cursor.moveTo(before);
    return 0;
  }
  std::int64_t exponent = 0;
  for (; isDigit(cursor.peek()); cursor.advance()) {
    if (exponent < largestExponent) {
      exponent = exponent * 10 + (cursor.peek() - '0');
    }
  }
  return minus ? -exponent : exponent;
}

// Integers of up to 15 digits (below 2^53) and the powers of ten up to 10^22 (5^22 is below 2^53)
// are exact doubles, so that one multiplication or division rounds once, as the conversion must
// (W. D. Clinger, "How to read floating point numbers accurately", 1990).
constexpr std::size_t exactDigits = 15;
constexpr std::array exactPowers = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                    1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                    1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

/// Any number: `digits` with whatever stands between them, times a power of ten.
double scaledByLibrary(std::string_view digits, std::int64_t power) {
  std::string text;
  digits.remove_prefix(std::min(digits.find_first_of("123456789"), digits.size()));
  std::copy_if(digits.begin(), digits.end(), std::back_inserter(text), isDigit);
  if (text.empty()) {
    return 0.0;  // whatever the exponent
  }
  const std::int64_t magnitude = static_cast<std::int64_t>(text.size()) + power;
  text += 'e';
  text += std::to_string(power);
  double value = 0.0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  if (result.ec != std::errc{}) {  // out of range: `value` was left alone
    return magnitude > 0 ? std::numeric_limits<double>::infinity() : 0.0;
  }
  return value;
}

/// The digits of a number, with one comma among them.
struct Digits {
  std::uint64_t integer = 0;  // without the comma; means nothing when there are too many
  std::size_t count = 0;
  std::int64_t power = 0;  // of ten, for the digits behind the comma
};

Digits takeDigits(Cursor& cursor, bool pointIsComma) {
  Digits digits;
  const auto takeRun = [&] {
    const char* const start = cursor.position();
    for (; isDigit(cursor.peek()); cursor.advance()) {
      digits.integer = digits.integer * 10 + static_cast<std::uint64_t>(cursor.peek() - '0');
    }
    return static_cast<std::size_t>(cursor.position() - start);
  };
  digits.count = takeRun();
  if (cursor.peek() == ',' || (pointIsComma && cursor.peek() == '.')) {
    cursor.advance();
    const std::size_t decimals = takeRun();
    digits.count += decimals;
    digits.power = -static_cast<std::int64_t>(decimals);
  }
  return digits;
}

double parseDecimal(std::string_view text, bool pointIsComma) {
  Cursor cursor(text);
  cursor.skipBlanks();
  const bool minus = cursor.takeMinus();
  const char* const start = cursor.position();
  const Digits digits = takeDigits(cursor, pointIsComma);
  if (digits.count == 0) {
    return 0.0;
  }
  const std::string_view digitText(start, static_cast<std::size_t>(cursor.position() - start));
  const std::int64_t power = digits.power + takeExponent(cursor);
  const auto shift = static_cast<std::size_t>(power < 0 ? -power : power);
  double value = 0.0;
  if (digits.count <= exactDigits && shift < exactPowers.size()) {
    value = static_cast<double>(digits.integer);
    value = power < 0 ? value / exactPowers[shift] : value * exactPowers[shift];
  } else {
    value = scaledByLibrary(digitText, power);
  }
  return minus ? -value : value;
}

constexpr std::size_t wordSize = sizeof(std::uint64_t);

constexpr std::uint64_t inEachByte(std::uint64_t byte) { return 0x0101010101010101U * byte; }

/// The characters of `text`, one to eight, the first in the lowest byte; zeros above.
std::uint64_t wordOf(std::string_view text) {
  static_assert(std::endian::native == std::endian::little, "the lowest byte comes first");
  const char* const at = text.data();
  const std::size_t size = text.size();
  if (size >= wordSize / 2) {
    std::uint32_t first = 0;
    std::uint32_t last = 0;  // the same ones in part
    std::memcpy(&first, at, sizeof(first));
    std::memcpy(&last, at + size - sizeof(last), sizeof(last));
    return first | std::uint64_t{last} << (8 * (size - sizeof(last)));
  }
  const auto byte = [&](std::size_t i) {
    return std::uint64_t{static_cast<unsigned char>(at[i])} << (8 * i);
  };
  return byte(0) | byte(size / 2) | byte(size - 1);
}

/// The integer whose digits are the eight bytes (0 to 9), the first in the lowest byte. First each
/// byte and the one above it become a number of two digits; then one multiplication adds up the
/// first and third of these, times 1000000 and 100, another the second and fourth, times 10000 and
/// 1, both in the upper half of the word. No sum reaches 2^32 (D. Lemire, "Quickly parsing eight
/// digits", 2018).
std::uint64_t ofEightDigits(std::uint64_t digits) {
  const std::uint64_t pairs = digits * 10 + (digits >> 8);
  const std::uint64_t firstPairs = pairs & 0x000000FF000000FFU;           // first and third
  const std::uint64_t secondPairs = (pairs >> 16) & 0x000000FF000000FFU;  // second and fourth
  return (firstPairs * (100 + (std::uint64_t{1000000} << 32)) +
          secondPairs * (1 + (std::uint64_t{10000} << 32))) >>
         32;
}

/// A number of up to eight characters, digits with a comma or point among them, as nearly all are;
/// nothing when it is another. All characters are looked at together: a loop over them would end at
/// another place for each number, and the processor would mispredict where.
std::optional<double> shortNumber(std::string_view text) {
  if (text.empty() || text.size() > wordSize) {
    return {};
  }
  const std::uint64_t word = wordOf(text);
  // A byte of `others` is 0 where a comma or point stands, which differ in one bit. Taking 1 from
  // each byte sets the top bit of those; a borrow can set more, but only above the first, and all
  // after it must be digits (H. S. Warren, "Hacker's Delight", 2013, 6-1).
  const std::uint64_t others = (word | inEachByte(',' ^ '.')) ^ inEachByte('.');
  const std::uint64_t separator = (others - inEachByte(1)) & ~others & inEachByte(0x80);
  const std::size_t whole =
      separator == 0 ? text.size() : static_cast<std::size_t>(std::countr_zero(separator)) / 8;
  const std::size_t count = text.size() - (separator == 0 ? 0 : 1);
  if (count == 0) {
    return {};
  }
  const std::uint64_t behind = whole == wordSize ? 0 : ~std::uint64_t{0} << (8 * whole);
  const std::uint64_t characters = (word & ~behind) | ((word >> 8) & behind);
  const std::uint64_t digits = (characters ^ inEachByte('0')) << (8 * (wordSize - count));
  if (((digits + inEachByte(0x7F - 9)) | digits) & inEachByte(0x80)) {
    return {};  // a byte above 9 has, or gets, its top bit: not all are digits
  }
  return static_cast<double>(ofEightDigits(digits)) / exactPowers[count - whole];
}

}  // namespace

double parseCommaDecimal(std::string_view text) { return parseDecimal(text, false); }

float parseHostNumber(std::string_view text) {
  const bool minus = text.starts_with('-');
  if (const auto value = shortNumber(text.substr(minus ? 1 : 0))) {
    return static_cast<float>(minus ? -*value : *value);
  }
  return static_cast<float>(parseDecimal(text, true));
}

std::int32_t parseHostInteger(std::string_view text) {
  constexpr std::int64_t largest = std::numeric_limits<std::int32_t>::max();
  constexpr std::int64_t smallest = std::numeric_limits<std::int32_t>::min();
  Cursor cursor(text);
  cursor.skipBlanks();
  const bool minus = cursor.takeMinus();
  std::int64_t value = 0;
  for (; isDigit(cursor.peek()) && value <= largest + 1; cursor.advance()) {
    value = value * 10 + (cursor.peek() - '0');
  }
  value = minus ? -value : value;
  return static_cast<std::int32_t>(value > largest ? largest : value < smallest ? smallest : value);
}

}  // namespace exportifc
