#include "model/host_number.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "runtime_locale.h"
#include "support.h"

namespace exportifc {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

TEST(ParseHostNumber, PointAndCommaAreTheSame) {
  EXPECT_EQ(parseHostNumber("1.5"), 1.5F);
  EXPECT_EQ(parseHostNumber("1,5"), 1.5F);
  EXPECT_EQ(parseHostNumber("-2.5"), -2.5F);
  EXPECT_EQ(parseHostNumber("-2,5"), -2.5F);
  EXPECT_EQ(parseHostNumber(".25"), 0.25F);
  EXPECT_EQ(parseHostNumber("3."), 3.0F);
}

TEST(ParseHostNumber, TheSecondCommaEndsTheNumber) {
  EXPECT_EQ(parseHostNumber("1.5,5"), 1.5F);
  EXPECT_EQ(parseHostNumber("1,5.5"), 1.5F);
  EXPECT_EQ(parseHostNumber("1.000,5"), 1.0F);
  EXPECT_EQ(parseHostNumber("..5"), 0.0F);
}

TEST(ParseHostNumber, WhatIsNoNumberIsZero) {
  for (const std::string text :
       {"", "abc", "-", "+", ".", ",", "-,", "e5", ",e5", " ", "x1", "--1"}) {
    EXPECT_EQ(parseHostNumber(text), 0.0F) << text;
    EXPECT_FALSE(std::signbit(parseHostNumber(text))) << text;
  }
}

TEST(ParseHostNumber, KeepsTheSignOfZero) {
  EXPECT_EQ(parseHostNumber("-0"), 0.0F);
  EXPECT_TRUE(std::signbit(parseHostNumber("-0")));
  EXPECT_TRUE(std::signbit(parseHostNumber("-0,000")));
  EXPECT_TRUE(std::signbit(parseHostNumber("-1e-999")));
  EXPECT_FALSE(std::signbit(parseHostNumber("+0")));
}

TEST(ParseHostNumber, ReadsExponents) {
  EXPECT_EQ(parseHostNumber("1e3"), 1000.0F);
  EXPECT_EQ(parseHostNumber("1E+3"), 1000.0F);
  EXPECT_EQ(parseHostNumber("1,5e-1"), 0.15F);
  EXPECT_EQ(parseHostNumber("2e"), 2.0F);
  EXPECT_EQ(parseHostNumber("2e+"), 2.0F);
  EXPECT_EQ(parseHostNumber("2ex"), 2.0F);
  EXPECT_EQ(parseHostNumber("2e1,5"), 20.0F);
}

TEST(ParseHostNumber, OverflowIsInfinite) {
  EXPECT_EQ(parseHostNumber("1e999"), std::numeric_limits<float>::infinity());
  EXPECT_EQ(parseHostNumber("-1e999"), -std::numeric_limits<float>::infinity());
  EXPECT_EQ(parseHostNumber("1e39"), std::numeric_limits<float>::infinity());
  EXPECT_EQ(parseHostNumber("1e99999999999999999999"), std::numeric_limits<float>::infinity());
  EXPECT_EQ(parseHostNumber("0e99999999999999999999"), 0.0F);
  EXPECT_EQ(parseHostNumber("1e-99999999999999999999"), 0.0F);
  EXPECT_EQ(parseHostNumber(std::string(5000, '9')), std::numeric_limits<float>::infinity());
}

TEST(ParseHostNumber, ManyDigitsBalanceTheExponent) {
  EXPECT_EQ(parseCommaDecimal(std::string(5000, '9') + "e-4999"), 10.0);
  EXPECT_EQ(parseCommaDecimal("0," + std::string(4000, '0') + "1e4001"), 1.0);
}

TEST(ParseHostNumber, SkipsBlanksInFrontOnly) {
  EXPECT_EQ(parseHostNumber(" \t\n\v\f\r\xA0"
                            "7"),
            7.0F);
  EXPECT_EQ(parseHostNumber("7 8"), 7.0F);
  EXPECT_EQ(parseHostNumber("- 7"), 0.0F);
}

TEST(ParseHostNumber, KnowsNoOtherSpellings) {
  for (const std::string text : {"inf", "-inf", "infinity", "nan", "NaN", "INF"}) {
    EXPECT_EQ(parseHostNumber(text), 0.0F) << text;
  }
  EXPECT_EQ(parseHostNumber("0x10"), 0.0F) << "x ends a number";
  EXPECT_EQ(parseHostNumber("1x10"), 1.0F);
  EXPECT_EQ(parseHostNumber("1d3"), 1.0F);
  EXPECT_EQ(parseHostNumber("1D3"), 1.0F);
  EXPECT_EQ(parseHostNumber("0x1p3"), 0.0F);
}

TEST(ParseHostNumber, RoundsThroughDoublePrecision) {
  // Halfway between two singles, and a little above it only beyond double precision.
  EXPECT_EQ(parseHostNumber("16777217"), 16777216.0F);
  EXPECT_EQ(parseHostNumber("16777217,00000000000000000001"), 16777216.0F);
  EXPECT_EQ(parseHostNumber("0,1"), 0.1F);
}

TEST(ParseHostNumber, TheEndOfTheTextEndsTheNumber) {
  // Views of a longer text: what stands behind them is not theirs.
  const std::string_view text = "12,345e67";
  EXPECT_EQ(parseHostNumber(text.substr(0, 5)), 12.34F);
  EXPECT_EQ(parseHostNumber(text.substr(0, 6)), 12.345F);
  EXPECT_EQ(parseHostNumber(text.substr(0, 7)), 12.345F);
  EXPECT_EQ(parseCommaDecimal(text.substr(0, 2)), 12.0);
  EXPECT_EQ(parseHostInteger(text.substr(0, 1)), 1);
  EXPECT_EQ(parseHostInteger(text.substr(0, 0)), 0);
}

TEST(ParseHostNumber, ANulEndsTheNumber) {
  EXPECT_EQ(parseHostNumber(std::string_view("12\0003", 4)), 12.0F);
}

TEST(ParseCommaDecimal, StopsAtAPoint) {
  EXPECT_EQ(parseCommaDecimal("20.5"), 20.0);
  EXPECT_EQ(parseCommaDecimal("20,5"), 20.5);
  EXPECT_EQ(parseCommaDecimal(".5"), 0.0);
  EXPECT_EQ(parseCommaDecimal("1,5.5"), 1.5);
}

TEST(ParseHostInteger, ReadsWhatTheRuntimeReads) {
  EXPECT_EQ(parseHostInteger("12"), 12);
  EXPECT_EQ(parseHostInteger("-3"), -3);
  EXPECT_EQ(parseHostInteger("+3"), 3);
  EXPECT_EQ(parseHostInteger(" \t\n\v\f\r\xA0"
                             "4 5"),
            4);
  EXPECT_EQ(parseHostInteger("5.9"), 5);
  EXPECT_EQ(parseHostInteger("6e3"), 6);
  for (const std::string text : {"", "abc", "-", "+-1", "- 1", ".5", "x"}) {
    EXPECT_EQ(parseHostInteger(text), 0) << text;
  }
}

TEST(ParseHostInteger, ClampsTo32Bits) {
  EXPECT_EQ(parseHostInteger("2147483647"), 2147483647);
  EXPECT_EQ(parseHostInteger("2147483648"), 2147483647);
  EXPECT_EQ(parseHostInteger("-2147483648"), -2147483647 - 1);
  EXPECT_EQ(parseHostInteger("-2147483649"), -2147483647 - 1);
  EXPECT_EQ(parseHostInteger("-21474836470"), -2147483647 - 1);
  EXPECT_EQ(parseHostInteger("99999999999999999999999999"), 2147483647);
  EXPECT_EQ(parseHostInteger("-99999999999999999999999999"), -2147483647 - 1);
  EXPECT_EQ(parseHostInteger("00000000000000000000000012"), 12);
}

// ---- Against the real runtime ------------------------------------------------------------------

/// A text of number characters. Runtimes disagree about "d" exponents, "0x" and exponents that do
/// not fit 32 bits: none of them comes up.
std::string randomNumberText(test::Random& random) {
  constexpr std::string_view plain = "0123456789";
  constexpr std::string_view odd = " \t+-,,eE.;a";
  std::string text;
  const bool mostlyDigits = random.integer(0, 3) != 0;
  if (random.integer(0, 2) == 0) {
    text += random.integer(0, 1) == 0 ? '-' : '+';
  }
  for (auto left = random.integer(0, 24); left > 0; --left) {
    const bool digit = random.integer(0, mostlyDigits ? 7 : 1) != 0;
    text += random.pick(digit ? plain : odd);
  }
  if (random.integer(0, 2) == 0) {
    text.append("e").append(std::to_string(random.integer(-330, 320)));
  }
  for (std::size_t at = text.find_first_of("eE"); at != std::string::npos;
       at = text.find_first_of("eE", at + 1)) {
    const std::size_t digits = text.find_first_of("0123456789", at);
    if (digits <= at + 2) {
      const std::size_t end = std::min(text.find_first_not_of("0123456789", digits), text.size());
      text.erase(std::min(digits + 6, end), end - std::min(digits + 6, end));
    }
  }
  return text;
}

#if defined(_WIN32)

/// Under the locale that the export sets.
double runtimeNumber(const std::string& text) { return std::atof(text.c_str()); }

#else

/// The classic locale's conversion, with the comma turned into the point it takes, the point, which
/// ends a number here, into something else and the no-break space into a blank.
double runtimeNumber(std::string text) {
  std::replace(text.begin(), text.end(), '\xA0', ' ');
  std::replace(text.begin(), text.end(), '.', ';');
  std::replace(text.begin(), text.end(), ',', '.');
  return std::strtod(text.c_str(), nullptr);
}

#endif

/// Not `atoi`: the oldest runtimes wrap around where newer ones clamp.
std::int64_t runtimeInteger(const std::string& text) {
  constexpr long long largest = std::numeric_limits<std::int32_t>::max();
  return std::clamp(std::strtoll(text.c_str(), nullptr, 10), -largest - 1, largest);
}

class AgainstTheRuntime : public testing::Test {
 protected:
  AgainstTheRuntime() {
#if defined(_WIN32)
    const char* const name = std::setlocale(LC_ALL, "Portuguese");
#else
    const char* const name = std::setlocale(LC_ALL, "C");
#endif
    EXPECT_NE(name, nullptr);
  }

 private:
  test::KeepRuntimeLocale keep_;
};

TEST_F(AgainstTheRuntime, NumbersAreTheSame) {
  test::Random random(2);
  for (int round = 0; round < test::rounds(200000); ++round) {
    const std::string text = randomNumberText(random);
    const double ours = parseCommaDecimal(text);
    const double theirs = runtimeNumber(text);
    ASSERT_EQ(ours, theirs) << '"' << text << '"';
    ASSERT_EQ(std::signbit(ours), std::signbit(theirs)) << '"' << text << '"';
    std::string commas = text;
    std::replace(commas.begin(), commas.end(), '.', ',');
    ASSERT_EQ(parseHostNumber(text), static_cast<float>(runtimeNumber(commas)))
        << '"' << text << '"';
  }
}

/// As `parseHostNumber` is defined: every point is a comma.
float runtimeHostNumber(std::string text) {
  std::replace(text.begin(), text.end(), '.', ',');
  return static_cast<float>(runtimeNumber(text));
}

void expectTheRuntimes(const std::string& text) {
  const float ours = parseHostNumber(text);
  const float theirs = runtimeHostNumber(text);
  ASSERT_EQ(ours, theirs) << '"' << text << '"';
  ASSERT_EQ(std::signbit(ours), std::signbit(theirs)) << '"' << text << '"';
}

TEST_F(AgainstTheRuntime, AllShortTexts) {
  constexpr std::string_view characters = "019.,-+e :/\xA0";  // ":" and "/" stand beside the digits
  std::vector<std::string> texts = {""};
  for (std::size_t length = 1, first = 0; length <= 4; ++length) {
    const std::size_t end = texts.size();
    for (; first < end; ++first) {
      for (const char c : characters) {
        texts.push_back(texts[first] + c);
        ASSERT_NO_FATAL_FAILURE(expectTheRuntimes(texts.back()));
      }
    }
  }
}

/// Runtimes disagree about "d" exponents and hexadecimal numbers, and know "inf" and "nan".
bool isAgreedUpon(char c) {
  return c != '\0' && std::string_view("xXdDiInN").find(c) == std::string_view::npos;
}

char anyByte(test::Random& random) {
  for (;;) {
    const char c = static_cast<char>(random.integer(-128, 127));
    if (isAgreedUpon(c)) {
      return c;
    }
  }
}

TEST_F(AgainstTheRuntime, DigitsWithASeparatorAnywhere) {
  test::Random random(4);
  for (int round = 0; round < test::rounds(200000); ++round) {
    std::string text = random.integer(0, 3) == 0 ? "-" : "";
    for (auto left = random.integer(1, 10); left > 0; --left) {
      text += static_cast<char>('0' + random.integer(0, 9));
    }
    if (random.integer(0, 4) != 0) {
      const auto digits = static_cast<std::int64_t>(text.find_first_not_of('-'));
      text[static_cast<std::size_t>(
          random.integer(digits, static_cast<std::int64_t>(text.size()) - 1))] =
          random.integer(0, 1) == 0 ? '.' : ',';
    }
    ASSERT_NO_FATAL_FAILURE(expectTheRuntimes(text));
    // One byte of all that there are.
    text[static_cast<std::size_t>(random.integer(0, static_cast<std::int64_t>(text.size()) - 1))] =
        anyByte(random);
    ASSERT_NO_FATAL_FAILURE(expectTheRuntimes(text));
  }
}

TEST_F(AgainstTheRuntime, AnyBytes) {
  test::Random random(5);
  for (int round = 0; round < test::rounds(400000); ++round) {
    // Bytes that are near each other, so that all of them differ from digits alike.
    const char first = anyByte(random);
    std::string text;
    for (auto left = random.integer(1, 9); left > 0; --left) {
      const char near = static_cast<char>(first ^ random.integer(0, 7));
      text += isAgreedUpon(near) ? near : first;
    }
    ASSERT_NO_FATAL_FAILURE(expectTheRuntimes(text));
  }
}

TEST_F(AgainstTheRuntime, IntegersAreTheSame) {
  test::Random random(3);
  for (int round = 0; round < test::rounds(200000); ++round) {
    const std::string text = randomNumberText(random);
    ASSERT_EQ(parseHostInteger(text), runtimeInteger(text)) << '"' << text << '"';
  }
}

TEST_F(AgainstTheRuntime, LimitsOfTheRange) {
  for (const std::string text :
       {"4,9406564584124654e-324", "2,4703282292062327e-324", "2,4703282292062328e-324",
        "2,2250738585072011e-308", "2,2250738585072014e-308", "1,7976931348623157e308",
        "1,7976931348623159e308", "1e309", "-1e309", "0,1", "123456789012345678901234567890",
        "1e23", "8,5e22", "9007199254740993", "0e999", "-0", "1e-400"}) {
    EXPECT_EQ(parseCommaDecimal(text), runtimeNumber(text)) << text;
  }
}

TEST(RuntimeNumbers, InfinityIsOverflow) { EXPECT_EQ(parseCommaDecimal("1e309"), infinity); }

}  // namespace
}  // namespace exportifc
