#include "library/text/text.h"

#include <limits>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "library/text/messages.h"
#include "tests/library/library_test.h"

namespace exportifc {
namespace {

using test::InLanguage;

// ---- places for values

TEST(TakePlaceholder, TakesAValueOffTheFront) {
  std::string_view text = "{3} of";
  Placeholder place{};
  ASSERT_TRUE(takePlaceholder(text, place));
  EXPECT_EQ(place.value, 3U);
  EXPECT_FALSE(place.isWord);
  EXPECT_EQ(text, " of");
}

TEST(TakePlaceholder, TakesTheTwoFormsOfAWord) {
  std::string_view text = "{9:bar is|bars are}|}";
  Placeholder place{};
  ASSERT_TRUE(takePlaceholder(text, place));
  EXPECT_EQ(place.value, 9U);
  EXPECT_TRUE(place.isWord);
  EXPECT_EQ(place.singular, "bar is");
  EXPECT_EQ(place.plural, "bars are");
  EXPECT_EQ(text, "|}");
}

TEST(TakePlaceholder, AFormMayBeEmpty) {
  std::string_view text = "{0:|s}";
  Placeholder place{};
  ASSERT_TRUE(takePlaceholder(text, place));
  EXPECT_EQ(place.singular, "");
  EXPECT_EQ(place.plural, "s");
  text = "{0:s|}";
  ASSERT_TRUE(takePlaceholder(text, place));
  EXPECT_EQ(place.singular, "s");
  EXPECT_EQ(place.plural, "");
}

TEST(TakePlaceholder, LeavesWhatIsNone) {
  for (const std::string_view given :
       {"", "{", "0", "x{0}", "{}", "{x}", "{ 0}", "[0]", "{/}", "{:}", "{\"nodes\": [0, 1]}"}) {
    std::string_view text = given;
    Placeholder place{};
    EXPECT_FALSE(takePlaceholder(text, place)) << given;
    EXPECT_EQ(text, given);
  }
}

TEST(TakePlaceholder, RefusesOneThatIsWrittenWrong) {
  for (const std::string_view wrong :
       {"{0", "{0:bar|bars", "{0:bar}", "{0:bar}s|", "{0;bar|bars}", "{00}"}) {
    std::string_view text = wrong;
    Placeholder place{};
    EXPECT_THROW(takePlaceholder(text, place), const char*) << wrong;
  }
}

TEST(ValueCount, IsThatOfTheDifferentValues) {
  EXPECT_EQ(valueCount(""), 0U);
  EXPECT_EQ(valueCount("an object {…}"), 0U);
  EXPECT_EQ(valueCount("{0}"), 1U);
  EXPECT_EQ(valueCount("{0} {0:bar|bars}, {0}"), 1U);
  EXPECT_EQ(valueCount("{1} before {0}"), 2U);
  EXPECT_EQ(valueCount("{2:a|b}{1}{0}"), 3U);
}

TEST(ValueCount, RefusesAGap) {
  EXPECT_THROW(valueCount("{1}"), const char*);
  EXPECT_THROW(valueCount("{0} {2}"), const char*);
}

// ---- texts with their values

constexpr Text plain{"plain", "simples"};
constexpr Text two{"{1}, then {0}; {1} again", "{0} e {1}"};
constexpr Text counted{"{0} {0:bar is|bars are} here", "{0} {0:barra está|barras estão} aqui"};

TEST(Say, SpeaksTheLanguageThatIsSet) {
  EXPECT_STREQ(say(plain), "plain");
  const InLanguage portuguese(Language::portuguese);
  EXPECT_EQ(language(), Language::portuguese);
  EXPECT_STREQ(say(plain), "simples");
}

TEST(Say, PutsEachValueInItsPlaces) {
  EXPECT_EQ(say(two, {"a", "b"}), "b, then a; b again");
  const InLanguage portuguese(Language::portuguese);
  EXPECT_EQ(say(two, {"a", "b"}), "a e b");
}

TEST(Say, TheWordGoesWithTheNumber) {
  EXPECT_EQ(say(counted, {"1"}), "1 bar is here");
  for (const std::string number : {"0", "2", "11", "1,000", ""}) {
    EXPECT_EQ(say(counted, {number}), number + " bars are here");
  }
  const InLanguage portuguese(Language::portuguese);
  EXPECT_EQ(say(counted, {"1"}), "1 barra está aqui");
  EXPECT_EQ(say(counted, {"3"}), "3 barras estão aqui");
}

TEST(Say, AValueIsNoPattern) {
  EXPECT_EQ(say(two, {"{1}", "{0:x|y}"}), "{0:x|y}, then {1}; {0:x|y} again");
}

TEST(Fill, RefusesAnotherNumberOfValues) {
  EXPECT_EQ(fill(plain, {}), "plain");
  EXPECT_THROW(fill(plain, {"a"}), std::logic_error);
  EXPECT_THROW(fill(two, {"a"}), std::logic_error);
  EXPECT_THROW(fill(two, {"a", "b", "c"}), std::logic_error);
}

// ---- numbers

struct NumberCase {
  std::int64_t value;
  const char* english;
  const char* portuguese;
};

constexpr NumberCase numberCases[] = {
    {0, "0", "0"},
    {7, "7", "7"},
    {999, "999", "999"},
    {1000, "1,000", "1.000"},
    {12345, "12,345", "12.345"},
    {999999, "999,999", "999.999"},
    {1000000, "1,000,000", "1.000.000"},
    {-1, "-1", "-1"},
    {-999, "-999", "-999"},
    {-1000, "-1,000", "-1.000"},
    {-123456, "-123,456", "-123.456"},
    {std::numeric_limits<std::int64_t>::max(), "9,223,372,036,854,775,807",
     "9.223.372.036.854.775.807"},
    {std::numeric_limits<std::int64_t>::min(), "-9,223,372,036,854,775,808",
     "-9.223.372.036.854.775.808"},
};

TEST(NumberText, GroupsThousands) {
  for (const NumberCase& row : numberCases) {
    EXPECT_EQ(numberText(row.value), row.english);
    const InLanguage portuguese(Language::portuguese);
    EXPECT_EQ(numberText(row.value), row.portuguese);
  }
}

TEST(DecimalText, HasTheDecimalsThatAreAskedFor) {
  EXPECT_EQ(decimalText(1234.5, 1), "1,234.5");
  EXPECT_EQ(decimalText(1234.5, 3), "1,234.500");
  EXPECT_EQ(decimalText(999.96, 1), "1,000.0");
  EXPECT_EQ(decimalText(1234567.0, 0), "1,234,567");
  EXPECT_EQ(decimalText(0.05, 2), "0.05");
  EXPECT_EQ(decimalText(-1234.25, 2), "-1,234.25");
  const InLanguage portuguese(Language::portuguese);
  EXPECT_EQ(decimalText(1234.5, 1), "1.234,5");
  EXPECT_EQ(decimalText(-1234567.0, 0), "-1.234.567");
  EXPECT_EQ(decimalText(0.05, 2), "0,05");
}

TEST(DecimalText, TakesAnyNumber) {
  const std::string largest = decimalText(std::numeric_limits<double>::max(), 9);
  EXPECT_EQ(largest.substr(0, 7), "179,769");
  EXPECT_EQ(largest.substr(largest.size() - 10), ".000000000");
  EXPECT_EQ(decimalText(std::numeric_limits<double>::denorm_min(), 2), "0.00");
}

TEST(BarsText, CountsThem) {
  EXPECT_EQ(barsText(0), "0 bars");
  EXPECT_EQ(barsText(1), "1 bar");
  EXPECT_EQ(barsText(2), "2 bars");
  EXPECT_EQ(barsText(1001), "1,001 bars");
  const InLanguage portuguese(Language::portuguese);
  EXPECT_EQ(barsText(1), "1 barra");
  EXPECT_EQ(barsText(1001), "1.001 barras");
}

}  // namespace
}  // namespace exportifc
