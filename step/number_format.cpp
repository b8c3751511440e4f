#include "step/number_format.h"

#include <charconv>
#include <cmath>
#include <cstring>

namespace exportifc {

namespace {

constexpr std::uint32_t scale = 100000;   // five decimals
constexpr double exactIntegers = 0x1p53;  // below it the fraction of a double is exact
constexpr std::uint64_t low32 = 0xFFFFFFFFU;

/// A fraction in [0, 1) times 100,000, rounded to the nearest integer, ties to even. Exact: the
/// fraction is taken as a 64-bit binary fraction and `lost` says whether bits fell off below it.
std::uint32_t scaledFraction(double fraction) {
  const double shifted = fraction * 0x1p64;  // a power of two: no rounding
  const auto bits = static_cast<std::uint64_t>(shifted);
  const bool lost = static_cast<double>(bits) != shifted;
  // bits * 100000 as a 96-bit product: whole part above bit 64, remainder below.
  const std::uint64_t lowProduct = (bits & low32) * scale;
  const std::uint64_t highProduct = (bits >> 32) * scale + (lowProduct >> 32);
  const std::uint64_t remainder = (highProduct << 32) | (lowProduct & low32);
  const auto whole = static_cast<std::uint32_t>(highProduct >> 32);
  constexpr std::uint64_t half = 1ULL << 63;
  const bool up = remainder > half || (remainder == half && (lost || (whole & 1U) != 0));
  return whole + (up ? 1U : 0U);
}

char* putText(char* at, const char* text, std::size_t size) {
  std::memcpy(at, text, size);
  return at + size;
}

char* putNan(char* at) { return putText(at, "nan", 3); }

}  // namespace

char* putFixed5(char* at, double value) {
  const double magnitude = std::fabs(value);
  if (!(magnitude < exactIntegers)) {
    if (std::isnan(value)) {
      return putNan(at);
    }
    return std::to_chars(at, at + fixed5Capacity, value, std::chars_format::fixed, 5).ptr;
  }
  if (std::signbit(value)) {
    *at++ = '-';
  }
  auto whole = static_cast<std::uint64_t>(magnitude);
  std::uint32_t decimals = scaledFraction(magnitude - static_cast<double>(whole));
  if (decimals == scale) {
    decimals = 0;
    ++whole;
  }
  at = std::to_chars(at, at + fixed5Capacity, whole).ptr;
  *at = '.';
  for (int place = 5; place > 0; --place) {
    at[place] = static_cast<char>('0' + decimals % 10);
    decimals /= 10;
  }
  return at + 6;
}

char* putGeneral6(char* at, double value) {
  if (std::isnan(value)) {
    return putNan(at);
  }
  return std::to_chars(at, at + general6Capacity, value, std::chars_format::general, 6).ptr;
}

char* putInteger(char* at, std::int32_t value) {
  return std::to_chars(at, at + integerCapacity, value).ptr;
}

}  // namespace exportifc
