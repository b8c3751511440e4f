// Compares putInteger with counting for every number of up to eight digits, putFixed5 and
// putGeneral6 with the standard library's conversions on many values: ends with "N passed, N
// failed" and prints the first values that differ.
//
//   fixed5_exactness [MILLIONS]      of reals, default 500, about a minute
#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <random>
#include <string_view>

#include "step/number_format.h"

namespace {

std::uint64_t passed = 0;
std::uint64_t failed = 0;

using Text = std::array<char, exportifc::fixed5Capacity>;

std::string_view expected(Text& text, double value, std::chars_format format, int precision) {
  if (std::isnan(value)) {
    return "nan";  // a NaN's sign is not shown
  }
  const auto end = std::to_chars(text.data(), text.data() + text.size(), value, format, precision);
  return {text.data(), end.ptr};
}

void compare(double value, std::string_view text, std::string_view wanted) {
  if (text == wanted) {
    ++passed;
  } else if (++failed <= 20) {
    std::printf("%a: \"%.*s\", not \"%.*s\"\n", value, static_cast<int>(text.size()), text.data(),
                static_cast<int>(wanted.size()), wanted.data());
  }
}

void checkFixed(double value) {
  Text ours{};
  Text theirs{};
  compare(value, {ours.data(), exportifc::putFixed5(ours.data(), value)},
          expected(theirs, value, std::chars_format::fixed, 5));
}

void checkGeneral(double value) {
  Text ours{};
  Text theirs{};
  compare(value, {ours.data(), exportifc::putGeneral6(ours.data(), value)},
          expected(theirs, value, std::chars_format::general, 6));
}

void check(double value) {
  checkFixed(value);
  checkGeneral(value);
}

/// The value, its neighbours, and all three with a minus.
void checkAround(double value) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  for (const double near :
       {value, std::nextafter(value, infinity), std::nextafter(value, -infinity)}) {
    check(near);
    check(-near);
  }
}

/// Every number of up to eight digits, against a counter that carries digit by digit.
void checkAllIntegers() {
  std::array<char, 8> counter{};
  counter.fill('0');
  std::size_t first = counter.size() - 1;  // of its digits; those before it are not written
  Text ours{};
  for (std::int32_t value = 0; value < 100000000; ++value) {
    const std::string_view wanted(counter.data() + first, counter.size() - first);
    compare(value, {ours.data(), exportifc::putInteger(ours.data(), value)}, wanted);
    std::size_t at = counter.size();
    while (at > 0 && counter[at - 1] == '9') {
      counter[--at] = '0';
    }
    if (at > 0) {
      ++counter[--at];
      first = std::min(first, at);
    }
  }
}

void checkSpecial() {
  using Limits = std::numeric_limits<double>;
  for (const double value : {0.0, Limits::denorm_min(), Limits::min(), Limits::epsilon(),
                             Limits::max(), Limits::infinity(), Limits::quiet_NaN()}) {
    checkAround(value);
  }
  // Every power of two: subnormals, the ends of the exact range, the largest magnitudes.
  for (int exponent = -1074; exponent <= 1023; ++exponent) {
    checkAround(std::ldexp(1.0, exponent));
    checkAround(std::ldexp(1.5, exponent));
  }
  for (double power = 1e-20; power < 1e300; power *= 10.0) {
    checkAround(power);
    checkAround(power - 5e-6);
  }
}

}  // namespace

int main(int argc, char** argv) {
  const std::uint64_t millions = argc > 1 ? std::strtoull(argv[1], nullptr, 10) : 500;
  checkAllIntegers();
  const std::uint64_t wanted = passed + failed + millions * 1000000;
  checkSpecial();
  std::mt19937_64 random(20120522);  // the same values at every run
  while (passed + failed < wanted) {
    const std::uint64_t bits = random();
    // Any bit pattern: all magnitudes, subnormals, infinities, NaN.
    check(std::bit_cast<double>(bits));
    // Magnitudes as models have them.
    check(std::ldexp(static_cast<double>(bits >> 11), -53) * 1e6);
    check(
        static_cast<double>(static_cast<float>(std::ldexp(static_cast<double>(bits >> 40), -10))));
    check(std::ldexp(static_cast<double>(bits >> 11), -53));
    // Every magnitude below 2^53, evenly by exponent.
    check(std::ldexp(static_cast<double>(bits >> 11), -static_cast<int>(bits % 128)));
    // Exact ties: odd multiples of 1/64 of every size.
    checkAround(static_cast<double>((bits >> (17 + bits % 47)) | 1U) / 64.0);
    // Next to ties: decimals that end in 5 at the sixth place, and multiples of the last place.
    const auto decimals = static_cast<double>(bits >> (24 + bits % 40));
    checkAround((decimals + 0.5) * 1e-5);
    checkAround((decimals + 0.5) / 100000.0);
    checkAround(decimals / 100000.0);
    // The same for six significant digits: halves of the last one, from 0.1 to beyond 1e6.
    const auto digits = static_cast<double>(bits % 1000000) + 0.5;
    checkAround(digits * 10.0);
    checkAround(digits / std::pow(10.0, static_cast<double>(bits >> 32 & 7U)));
  }
  std::printf("%llu passed, %llu failed\n", static_cast<unsigned long long>(passed),
              static_cast<unsigned long long>(failed));
  return failed == 0 ? 0 : 1;
}
