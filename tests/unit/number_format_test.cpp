#include "step/number_format.h"

#include <array>
#include <bit>
#include <cfenv>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <limits>
#include <locale>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "support.h"

namespace exportifc {
namespace {

/// Room behind a number, filled with a mark that must survive.
template <std::size_t capacity>
struct Field {
  static constexpr std::size_t margin = 8;
  std::array<char, capacity + margin> bytes;

  Field() { bytes.fill('~'); }

  std::string_view upTo(const char* end) const {
    EXPECT_LE(end, bytes.data() + capacity);
    for (std::size_t i = capacity; i < bytes.size(); ++i) {
      EXPECT_EQ(bytes[i], '~') << "written past the promised room";
    }
    return {bytes.data(), end};
  }
};

std::string fixed5(double value) {
  Field<fixed5Capacity> field;
  return std::string(field.upTo(putFixed5(field.bytes.data(), value)));
}

std::string general6(double value) {
  Field<general6Capacity> field;
  return std::string(field.upTo(putGeneral6(field.bytes.data(), value)));
}

std::string integer(std::int32_t value) {
  Field<integerCapacity> field;
  return std::string(field.upTo(putInteger(field.bytes.data(), value)));
}

/// 1 to 9 times each power of ten that a length may have, and what lies near: such numbers round up
/// to one digit more, end in zeros, and stand where one way of converting ends and another begins.
std::vector<double> roundNumbers() {
  std::vector<double> numbers;
  for (int exponent = -7; exponent <= 10; ++exponent) {
    for (int digit = 1; digit <= 9; ++digit) {
      const double number = digit * std::pow(10.0, exponent);
      for (const double step :
           {0.0, 1e-16, 1e-12, 1e-9, 1e-8, 1e-7, 3e-7, 6e-7, 4e-6, 6e-6, 1e-3}) {
        numbers.push_back(number * (1.0 + step));
        numbers.push_back(-number * (1.0 - step));
      }
      for (const double away : {4e-6, 6e-6, 0.25, 0.4, 0.5, 0.75, 1.0}) {
        numbers.push_back(number + away);
        numbers.push_back(number - away);
      }
    }
  }
  return numbers;
}

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

// ---- Fixed notation ----------------------------------------------------------------------------

TEST(PutFixed5, HasFiveDecimals) {
  EXPECT_EQ(fixed5(0), "0.00000");
  EXPECT_EQ(fixed5(1.5), "1.50000");
  EXPECT_EQ(fixed5(-2.25), "-2.25000");
  EXPECT_EQ(fixed5(123456.789), "123456.78900");
  EXPECT_EQ(fixed5(150), "150.00000");
  EXPECT_EQ(fixed5(1e15), "1000000000000000.00000") << "never an exponent, never grouped";
}

TEST(PutFixed5, RoundsTheDoublesOwnValue) {
  EXPECT_EQ(fixed5(0.000004), "0.00000");
  EXPECT_EQ(fixed5(0.000005), "0.00001") << "the double lies a little above";
  EXPECT_EQ(fixed5(0.000035), "0.00003") << "the double lies a little below";
  EXPECT_EQ(fixed5(0.999995), "0.99999") << "the double lies a little below";
  EXPECT_EQ(fixed5(0.9999951), "1.00000");
  EXPECT_EQ(fixed5(9.999999), "10.00000");
  EXPECT_EQ(fixed5(99999.999999), "100000.00000");
}

TEST(PutFixed5, KeepsTheSignOfZero) {
  EXPECT_EQ(fixed5(-0.0), "-0.00000");
  EXPECT_EQ(fixed5(-0.000001), "-0.00000");
  EXPECT_EQ(fixed5(-4e-08), "-0.00000");
}

TEST(PutFixed5, TiesGoToEven) {
  EXPECT_EQ(fixed5(0.015625), "0.01562");
  EXPECT_EQ(fixed5(0.046875), "0.04688");
  EXPECT_EQ(fixed5(-0.015625), "-0.01562");
  EXPECT_EQ(fixed5(1024.015625), "1024.01562");
  EXPECT_EQ(fixed5(0.984375), "0.98438");
}

TEST(PutFixed5, WhatIsNotANumber) {
  EXPECT_EQ(fixed5(infinity), "inf");
  EXPECT_EQ(fixed5(-infinity), "-inf");
  EXPECT_EQ(fixed5(nan), "nan");
  EXPECT_EQ(fixed5(-nan), "nan");
}

TEST(PutFixed5, LargestAndSmallest) {
  const std::string largest = fixed5(-std::numeric_limits<double>::max());
  EXPECT_EQ(largest.size(), 1U + 309U + 6U);
  EXPECT_EQ(largest.substr(0, 18), "-17976931348623157");
  EXPECT_EQ(largest.substr(largest.size() - 6), ".00000");
  EXPECT_EQ(fixed5(std::numeric_limits<double>::denorm_min()), "0.00000");
  EXPECT_EQ(fixed5(-std::numeric_limits<double>::min()), "-0.00000");
}

/// The standard library's conversion.
std::string fixed5ByTheLibrary(double value) {
  if (std::isnan(value)) {
    return "nan";
  }
  std::array<char, fixed5Capacity> text{};
  const auto end =
      std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed, 5);
  return {text.data(), end.ptr};
}

TEST(PutFixed5, EqualsTheLibraryOnRandomBits) {
  test::Random random(1);
  for (int round = 0; round < test::rounds(1000000); ++round) {
    const auto value = std::bit_cast<double>(random.bits());
    ASSERT_EQ(fixed5(value), fixed5ByTheLibrary(value)) << std::hexfloat << value;
  }
}

TEST(PutFixed5, EqualsTheLibraryOnLengths) {
  // Random bits are hardly ever of the size that a model has: 2^-24 to 2^56.
  test::Random random(2);
  for (int round = 0; round < test::rounds(2000000); ++round) {
    const double fraction = static_cast<double>(random.bits() >> 11) * 0x1p-52;
    const double value = std::ldexp(fraction, static_cast<int>(random.integer(-24, 56)));
    ASSERT_EQ(fixed5(value), fixed5ByTheLibrary(value)) << std::hexfloat << value;
  }
}

TEST(PutFixed5, EqualsTheLibraryOnSinglePrecision) {
  test::Random random(3);
  for (int round = 0; round < test::rounds(1000000); ++round) {
    const auto value = std::bit_cast<float>(static_cast<std::uint32_t>(random.bits()));
    ASSERT_EQ(fixed5(value), fixed5ByTheLibrary(value)) << std::hexfloat << value;
  }
}

TEST(PutFixed5, EqualsTheLibraryOnTiesAndBesideThem) {
  // Exact ties are the odd multiples of 1/64: five decimals times 1/64 leave a half.
  test::Random random(4);
  for (int round = 0; round < test::rounds(250000); ++round) {
    const auto odd = 2 * random.integer(0, std::int64_t{1} << random.integer(0, 45)) + 1;
    const double tie = static_cast<double>(odd) / 64.0;
    for (const double value :
         {tie, -tie, std::nextafter(tie, 0.0), std::nextafter(tie, infinity)}) {
      ASSERT_EQ(fixed5(value), fixed5ByTheLibrary(value)) << std::hexfloat << value;
    }
  }
}

TEST(PutFixed5, EqualsTheLibraryBesideEveryDecimal) {
  test::Random random(5);
  for (int round = 0; round < test::rounds(250000); ++round) {
    const double decimal =
        static_cast<double>(random.integer(0, std::int64_t{1} << random.integer(0, 50))) / 200000.0;
    for (const double value :
         {decimal, std::nextafter(decimal, 0.0), std::nextafter(decimal, infinity)}) {
      ASSERT_EQ(fixed5(value), fixed5ByTheLibrary(value)) << std::hexfloat << value;
    }
  }
}

TEST(PutFixed5, EqualsTheLibraryAtEveryPowerOfTwo) {
  for (int exponent = -1074; exponent <= 1023; ++exponent) {
    const double power = std::ldexp(1.0, exponent);
    for (const double value :
         {power, -power, std::nextafter(power, 0.0), std::nextafter(power, infinity)}) {
      ASSERT_EQ(fixed5(value), fixed5ByTheLibrary(value)) << std::hexfloat << value;
    }
  }
}

TEST(PutFixed5, EqualsTheLibraryBesideRoundNumbers) {
  for (const double value : roundNumbers()) {
    ASSERT_EQ(fixed5(value), fixed5ByTheLibrary(value)) << std::hexfloat << value;
  }
}

// ---- General notation --------------------------------------------------------------------------

TEST(PutGeneral6, IsTheShorterNotation) {
  EXPECT_EQ(general6(0), "0");
  EXPECT_EQ(general6(-0.0), "-0");
  EXPECT_EQ(general6(5000), "5000");
  EXPECT_EQ(general6(0.5), "0.5");
  EXPECT_EQ(general6(1e6), "1e+06");
  EXPECT_EQ(general6(999999), "999999");
  EXPECT_EQ(general6(1234567), "1.23457e+06");
  EXPECT_EQ(general6(999999.5), "1e+06");
  EXPECT_EQ(general6(999999.7), "1e+06") << "rounded up to a digit more";
  EXPECT_EQ(general6(9.9999997), "10");
  EXPECT_EQ(general6(8.0000001), "8") << "no zeros at the end";
  EXPECT_EQ(general6(0.0001), "0.0001");
  EXPECT_EQ(general6(0.00001), "1e-05");
  EXPECT_EQ(general6(1500.125), "1500.12") << "a tie goes to even";
  EXPECT_EQ(general6(-1.234568e-308), "-1.23457e-308");
  EXPECT_EQ(general6(1e100), "1e+100");
}

TEST(PutGeneral6, WhatIsNotANumber) {
  EXPECT_EQ(general6(infinity), "inf");
  EXPECT_EQ(general6(-infinity), "-inf");
  EXPECT_EQ(general6(nan), "nan");
  EXPECT_EQ(general6(-nan), "nan");
}

std::string general6ByTheLibrary(double value) {
  std::array<char, 64> text{};
  const int length = std::snprintf(text.data(), text.size(), "%.6g", value);
  return {text.data(), static_cast<std::size_t>(length)};
}

TEST(PutGeneral6, EqualsTheLibraryOnRandomBits) {
  test::Random random(6);
  for (int round = 0; round < test::rounds(400000); ++round) {
    const auto value = std::bit_cast<double>(random.bits());
    if (!std::isnan(value)) {
      ASSERT_EQ(general6(value), general6ByTheLibrary(value)) << std::hexfloat << value;
    }
  }
}

TEST(PutGeneral6, EqualsTheLibraryOnLengths) {
  test::Random random(7);
  for (int round = 0; round < test::rounds(400000); ++round) {
    const double value = static_cast<double>(random.integer(-100000000, 100000000)) /
                         static_cast<double>(random.integer(1, 4096));
    ASSERT_EQ(general6(value), general6ByTheLibrary(value)) << std::hexfloat << value;
  }
}

TEST(PutGeneral6, EqualsTheLibraryBesideRoundNumbers) {
  for (const double value : roundNumbers()) {
    ASSERT_EQ(general6(value), general6ByTheLibrary(value)) << std::hexfloat << value;
  }
}

TEST(PutGeneral6, EqualsAStreamAsItIsByDefault) {
  test::Random random(8);
  for (int round = 0; round < test::rounds(100000); ++round) {
    const double value = static_cast<double>(random.integer(-100000000, 100000000)) / 1024.0;
    std::ostringstream stream;
    stream.imbue(std::locale::classic());
    stream << value;
    ASSERT_EQ(general6(value), stream.str()) << std::hexfloat << value;
  }
}

TEST(Reals, NoRoundingModeShows) {
  // A host may have set one.
  const int before = std::fegetround();
  test::Random random(12);
  for (int round = 0; round < test::rounds(100000); ++round) {
    const double value = static_cast<double>(random.integer(-1000000000, 1000000000)) *
                         std::pow(10.0, static_cast<double>(random.integer(-12, -1)));
    const std::string fixed = fixed5(value);
    const std::string general = general6(value);
    for (const int mode : {FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO}) {
      std::fesetround(mode);
      const std::string otherFixed = fixed5(value);
      const std::string otherGeneral = general6(value);
      std::fesetround(before);
      ASSERT_EQ(otherFixed, fixed) << value;
      ASSERT_EQ(otherGeneral, general) << value;
    }
  }
}

// ---- Integers ----------------------------------------------------------------------------------

TEST(PutInteger, IsPlainDecimal) {
  EXPECT_EQ(integer(0), "0");
  EXPECT_EQ(integer(5006), "5006");
  EXPECT_EQ(integer(1234567), "1234567");
  EXPECT_EQ(integer(-7), "-7");
  EXPECT_EQ(integer(std::numeric_limits<std::int32_t>::max()), "2147483647");
  EXPECT_EQ(integer(std::numeric_limits<std::int32_t>::min()), "-2147483648");
}

std::string ready(std::int32_t value) {
  Field<integerCapacity> field;
  const ReadyInteger number(value);
  EXPECT_EQ(number.value(), value);
  std::string once(field.upTo(number.put(field.bytes.data())));
  EXPECT_EQ(field.upTo(number.put(field.bytes.data())), once) << "any number of times";
  return once;
}

TEST(ReadyInteger, CountsOn) {
  // Every number of digits, and beyond those that are kept.
  for (const std::int32_t first : {0, 90, 990, 9990, 99990, 999990, 9999990, 99999990, 999999990,
                                   -30, std::numeric_limits<std::int32_t>::max() - 20}) {
    ReadyInteger number(first);
    for (std::int32_t i = 1; i <= 20; ++i) {
      number = number.next();
      ASSERT_EQ(number.value(), first + i);
      Field<integerCapacity> field;
      ASSERT_EQ(field.upTo(number.put(field.bytes.data())), std::to_string(first + i));
    }
  }
}

TEST(ReadyInteger, IsPlainDecimal) {
  for (const std::int32_t value :
       {0, 1, 9, 10, 99, 100, 5006, 9999999, 10000000, 99999999, 100000000, 999999999, 1000000000,
        -1, -7, -99999999, std::numeric_limits<std::int32_t>::max(),
        std::numeric_limits<std::int32_t>::min()}) {
    EXPECT_EQ(ready(value), std::to_string(value));
    EXPECT_EQ(integer(value), std::to_string(value));
  }
  test::Random random(9);
  for (int round = 0; round < test::rounds(400000); ++round) {
    const auto value = static_cast<std::int32_t>(static_cast<std::uint32_t>(random.bits()) >>
                                                 random.integer(0, 31));
    ASSERT_EQ(ready(value), std::to_string(value));
    ASSERT_EQ(integer(value), std::to_string(value));
  }
}

}  // namespace
}  // namespace exportifc
