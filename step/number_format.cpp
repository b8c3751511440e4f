#include "step/number_format.h"

#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>

namespace exportifc {

namespace {

constexpr std::int32_t eightDigitLimit = 100000000;
constexpr int wordDigits = 8;
constexpr std::uint64_t zeros = 0x3030303030303030U;  // eight characters '0'

/// A word holds several numbers side by side. Each of them is divided by `divisor`: its quotient,
/// which is given, takes its place, and its remainder goes `bits` above the quotient.
constexpr std::uint64_t split(std::uint64_t parts, std::uint64_t quotients, std::uint64_t divisor,
                              int bits) {
  // quotients + ((parts - divisor * quotients) << bits), in fewer steps
  return (parts << bits) - quotients * ((divisor << bits) - 1);
}

/// The eight decimal digits of `value`, which is below 1e8, one a byte (0 to 9), the first digit in
/// the lowest byte. Each step divides all numbers of the word at once: one of 8 digits, two of 4,
/// four of 2, eight of 1 (P. Khuong, "How to print integers really fast", 2017).
///
/// Division by multiplication: 5243 / 2^19 is 1/100 and 2.3e-7 more, which for n below 1e4 adds
/// less than 0.0024 to n/100, whose fraction is at most 0.99; 103 / 2^10 is 1/10 and 5.9e-4 more,
/// which for n below 100 adds less than 0.06 to a fraction of at most 0.9. So both give the
/// quotient rounded down. The masks take what belongs to the number above out of it: quotients lie
/// below 128 and below 16. bench/fixed5_exactness compares all 10^8 values.
std::uint64_t eightDigits(std::uint32_t value) {
  const std::uint64_t fours = split(value, value / 10000, 10000, 32);
  const std::uint64_t twos = split(fours, ((fours * 5243) >> 19) & 0x0000007F0000007FU, 100, 16);
  return split(twos, ((twos * 103) >> 10) & 0x000F000F000F000FU, 10, 8);
}

/// Writes the digits of `eightDigits` but for the first `skipped`. Eight characters of room are
/// needed.
char* putDigits(char* at, std::uint64_t digits, int skipped) {
  static_assert(std::endian::native == std::endian::little, "the lowest byte comes first");
  const std::uint64_t text = (digits | zeros) >> (8 * skipped);
  std::memcpy(at, &text, sizeof(text));
  return at + (wordDigits - skipped);
}

/// How many of the digits are leading zeros; the last digit is none.
int leadingZeros(std::uint64_t digits) {
  constexpr std::uint64_t lastDigit = 1ULL << 56;
  return std::countr_zero(digits | lastDigit) / 8;
}

char* putUnsigned(char* at, std::uint32_t value) {
  if (value < 10) {
    *at = static_cast<char>('0' + value);
    return at + 1;
  }
  if (value >= std::uint32_t{eightDigitLimit}) {
    return std::to_chars(at, at + integerCapacity, value).ptr;
  }
  const std::uint64_t digits = eightDigits(value);
  return putDigits(at, digits, leadingZeros(digits));
}

char* putText(char* at, const char* text, std::size_t size) {
  std::memcpy(at, text, size);
  return at + size;
}

char* putNan(char* at) { return putText(at, "nan", 3); }

char* putMinus(char* at, double value) {
  *at = '-';
  return at + (std::signbit(value) ? 1 : 0);
}

/// 1 when `value` is below `limit`, else 0, without a branch: the sign bit of their difference,
/// which 32 bits hold for the values from 0 to 1e8 that come here.
int oneIfBelow(std::int32_t value, std::int32_t limit) {
  return static_cast<int>(static_cast<std::uint32_t>(value - limit) >> 31);
}

constexpr std::int32_t tooClose = -1;

/// A number from 0 to 1e8 rounded to the nearest integer, or `tooClose` when it lies so near a tie
/// that this is not sure: it is a rounded product, off by half the distance of two doubles at 1e8,
/// which is 7.5e-9.
std::int32_t nearest(double scaled) {
  constexpr double sure = 0.5 - 1e-6;
  constexpr double integers = 0x1.8p52;  // from 2^52 to 2^53 doubles are 1 apart: no fractions
  const double shifted = scaled + integers;
  if (std::fabs(scaled - (shifted - integers)) > sure) {  // in any rounding mode
    return tooClose;
  }
  return static_cast<std::int32_t>(std::bit_cast<std::uint64_t>(shifted));
}

/// The digits of `putGeneral6` for a magnitude from 1 to below 1e6; null when it is too close to a
/// tie or would round up to 1e6.
char* putSixDigits(char* at, double magnitude) {
  constexpr std::array<double, 6> powers = {1e0, 1e1, 1e2, 1e3, 1e4, 1e5};
  int wholeDigits = 0;
  for (const double power : powers) {  // all of them: a loop that ends early is mispredicted
    wholeDigits += magnitude >= power ? 1 : 0;
  }
  const std::int32_t rounded =
      nearest(magnitude * powers[powers.size() - static_cast<std::size_t>(wholeDigits)]);
  if (rounded == tooClose || rounded == 1000000) {
    return nullptr;
  }
  const std::uint64_t digits = eightDigits(static_cast<std::uint32_t>(rounded));
  constexpr int unused = wordDigits - 6;
  putDigits(at, digits, unused);
  at += wholeDigits;
  const int zerosBehind = std::countl_zero(digits) / 8;
  const int decimals = 6 - wholeDigits - zerosBehind;
  if (decimals <= 0) {
    return at;
  }
  *at = '.';
  putDigits(at + 1, digits, unused + wholeDigits);
  return at + 1 + decimals;
}

}  // namespace

char* putFixed5(char* at, double value) {
  constexpr std::int32_t scale = 100000;  // five decimals
  constexpr int decimalDigits = 5;
  constexpr int wholeDigits = wordDigits - decimalDigits;
  const double magnitude = std::fabs(value);
  if (magnitude < 999.5) {
    // Eight digits in all: converted at once.
    const std::int32_t scaled = nearest(magnitude * scale);
    if (scaled != tooClose) {
      const std::uint64_t digits = eightDigits(static_cast<std::uint32_t>(scaled));
      // By comparing, which is ready before the digits are: the place of the next piece of the line
      // depends on this count.
      const int zerosBefore = oneIfBelow(scaled, 10 * scale) + oneIfBelow(scaled, 100 * scale);
      at = putDigits(putMinus(at, value), digits, zerosBefore) - decimalDigits;
      *at = '.';
      return putDigits(at + 1, digits, wholeDigits);
    }
  }
  if (magnitude < eightDigitLimit - 1) {
    auto whole = static_cast<std::uint32_t>(magnitude);
    std::int32_t decimals = nearest((magnitude - whole) * scale);
    if (decimals != tooClose) {
      if (decimals == scale) {
        decimals = 0;
        ++whole;
      }
      const std::uint64_t digits = eightDigits(whole);
      at = putDigits(putMinus(at, value), digits, leadingZeros(digits));
      *at = '.';
      return putDigits(at + 1, eightDigits(static_cast<std::uint32_t>(decimals)), wholeDigits);
    }
  }
  if (std::isnan(value)) {
    return putNan(at);
  }
  return std::to_chars(at, at + fixed5Capacity, value, std::chars_format::fixed, 5).ptr;
}

char* putGeneral6(char* at, double value) {
  const double magnitude = std::fabs(value);
  if (magnitude < 1e6) {
    const auto whole = static_cast<std::uint32_t>(magnitude);
    if (magnitude == whole) {
      return putUnsigned(putMinus(at, value), whole);
    }
    if (magnitude >= 1.0) {
      if (char* const end = putSixDigits(putMinus(at, value), magnitude); end != nullptr) {
        return end;
      }
    }
  }
  if (std::isnan(value)) {
    return putNan(at);
  }
  return std::to_chars(at, at + general6Capacity, value, std::chars_format::general, 6).ptr;
}

char* putInteger(char* at, std::int32_t value) {
  if (value < 0) {
    *at++ = '-';
    return putUnsigned(at, 0U - static_cast<std::uint32_t>(value));
  }
  return putUnsigned(at, static_cast<std::uint32_t>(value));
}

std::uint64_t ReadyInteger::textOf(std::int32_t value) {
  if (value < 0 || value >= eightDigitLimit) {  // no model has such numbers
    return 0;
  }
  const std::uint64_t digits = eightDigits(static_cast<std::uint32_t>(value));
  return (digits | zeros) >> (8 * leadingZeros(digits));
}

}  // namespace exportifc
