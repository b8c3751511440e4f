#include "step/number_format.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstring>

namespace exportifc {

namespace {

/// "00" "01" ... "99"
constexpr auto digitPairs = [] {
  std::array<char, 200> pairs{};
  for (std::size_t i = 0; i < 100; ++i) {
    pairs[2 * i] = static_cast<char>('0' + i / 10);
    pairs[2 * i + 1] = static_cast<char>('0' + i % 10);
  }
  return pairs;
}();

/// Writes two digits; `value` below 100.
void putPair(char* at, std::uint32_t value) { std::memcpy(at, &digitPairs[2 * value], 2); }

int digitCount(std::uint32_t value) {
  int count = 1;
  for (; value >= 100000; value /= 100000) {
    count += 5;
  }
  return count + (value >= 10) + (value >= 100) + (value >= 1000) + (value >= 10000);
}

char* putUnsigned(char* at, std::uint32_t value) {
  char* const end = at + digitCount(value);
  char* front = end;
  for (; value >= 100; value /= 100) {
    front -= 2;
    putPair(front, value % 100);
  }
  if (value >= 10) {
    putPair(front - 2, value);
  } else {
    front[-1] = static_cast<char>('0' + value);
  }
  return end;
}

/// Writes exactly five digits; `value` below 100,000.
void putFiveDigits(char* at, std::uint32_t value) {
  at[0] = static_cast<char>('0' + value / 10000);
  putPair(at + 1, value / 100 % 100);
  putPair(at + 3, value % 100);
}

char* putText(char* at, const char* text, std::size_t size) {
  std::memcpy(at, text, size);
  return at + size;
}

char* putNan(char* at) { return putText(at, "nan", 3); }

/// A number from 0 to 1e6 rounded to the nearest integer, or -1 when it is too close to a tie to
/// be sure: it may be a product that is off by half a unit in its last place (1e-10 at most).
std::int32_t nearest(double scaled) {
  constexpr double unsure = 1e-6;
  const auto whole = static_cast<std::int32_t>(scaled);
  const double pastTie = scaled - whole - 0.5;
  if (std::fabs(pastTie) < unsure) {
    return -1;
  }
  return pastTie > 0.0 ? whole + 1 : whole;
}

}  // namespace

char* putFixed5(char* at, double value) {
  constexpr double scale = 100000.0;  // five decimals
  constexpr double largest = 0x1p32;  // whole parts of 32 bits; models know no others
  const double magnitude = std::fabs(value);
  if (magnitude < largest) {
    auto whole = static_cast<std::uint32_t>(static_cast<std::int64_t>(magnitude));
    std::int32_t decimals = nearest((magnitude - whole) * scale);
    if (decimals == scale) {
      decimals = ++whole == 0 ? -1 : 0;
    }
    if (decimals >= 0) {
      *at = '-';
      at += std::signbit(value);
      at = putUnsigned(at, whole);
      *at = '.';
      putFiveDigits(at + 1, static_cast<std::uint32_t>(decimals));
      return at + 6;
    }
  }
  if (std::isnan(value)) {
    return putNan(at);
  }
  return std::to_chars(at, at + fixed5Capacity, value, std::chars_format::fixed, 5).ptr;
}

char* putGeneral6(char* at, double value) {
  const double magnitude = std::fabs(value);
  // Most coordinates in comments are whole millimetres.
  if (magnitude < 1e6 && magnitude == std::floor(magnitude)) {
    *at = '-';
    return putUnsigned(at + std::signbit(value), static_cast<std::uint32_t>(magnitude));
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

}  // namespace exportifc
