#include "profiles/section_name.h"

#include <algorithm>
#include <iterator>
#include <string>

#include <gtest/gtest.h>

#include "profiles/section_family.h"
#include "tests/support/section_words.h"

namespace exportifc {
namespace {

TEST(ProfileFamilyOf, IsTheTextBeforeTheFirstBlank) {
  EXPECT_EQ(profileFamilyOf(L"W 310 x 38.7"), L"W");
  EXPECT_EQ(profileFamilyOf(L"][ 100"), L"][");
  EXPECT_EQ(profileFamilyOf(L"2L_ASSIMETRICO 1 2"), L"2L_ASSIMETRICO");
}

TEST(ProfileFamilyOf, IsTheWholeNameWithoutABlank) {
  EXPECT_EQ(profileFamilyOf(L"IENR100"), L"IENR100");
  EXPECT_EQ(profileFamilyOf(L""), L"");
}

TEST(ProfileFamilyOf, OnlyTheBlankCutsAndNothingIsTrimmed) {
  EXPECT_EQ(profileFamilyOf(L" W 1"), L"");
  EXPECT_EQ(profileFamilyOf(L"W\t1 2"), L"W\t1");
  EXPECT_EQ(profileFamilyOf(L"W\u00A01 2"), L"W\u00A01");
}

constexpr const wchar_t* builtUp[] = {
    L"][",   L"[]",   L"UUE",  L"IENR", L"CA",   L"2L",   L"2L_ASSIMETRICO",
    L"LL",   L"><",   L"<>",   L"LX",   L"LZ",   L"ICAR", L"2LLM",
    L"LLLM", L"VVLM", L"LVLM", L"LXLM", L"LZLM", L"UULM", L"2ULM"};

class BuiltUpFamily : public testing::TestWithParam<const wchar_t*> {};

TEST_P(BuiltUpFamily, HasTwoHalves) {
  std::wstring first;
  std::wstring second;
  EXPECT_TRUE(splitBuiltUpProfile(GetParam(), first, second));
  EXPECT_EQ(first, std::wstring(GetParam()) + L"_1");
  EXPECT_EQ(second, std::wstring(GetParam()) + L"_2");
}

INSTANTIATE_TEST_SUITE_P(Families, BuiltUpFamily, testing::ValuesIn(builtUp),
                         [](const auto& info) { return test::testNameOf(info.param); });

TEST(SplitBuiltUpProfile, ItsFamiliesAreThoseAbove) {
  const auto isBuiltUp = [](const SectionFamily& family) { return family.isBuiltUp; };
  const auto families = sectionFamilies();
  EXPECT_EQ(static_cast<std::size_t>(std::count_if(families.begin(), families.end(), isBuiltUp)),
            std::size(builtUp));
}

TEST(SplitBuiltUpProfile, ASimpleSectionStillGetsItsHalfNames) {
  for (const std::wstring family : {L"W", L"[", L"L", L"CART", L"", L"2L_1", L"IENR100", L" 2L"}) {
    std::wstring first = L"old";
    std::wstring second = L"old";
    EXPECT_FALSE(splitBuiltUpProfile(family, first, second));
    EXPECT_EQ(first, family + L"_1");
    EXPECT_EQ(second, family + L"_2");
  }
}

TEST(SplitBuiltUpProfile, MatchesWholeWordsInTheirOwnCase) {
  std::wstring first;
  std::wstring second;
  EXPECT_FALSE(splitBuiltUpProfile(L"ienr", first, second));
  EXPECT_EQ(first, L"ienr_1");
  EXPECT_FALSE(splitBuiltUpProfile(L"2LL", first, second));
  EXPECT_FALSE(splitBuiltUpProfile(L"2LLMX", first, second));
  EXPECT_FALSE(splitBuiltUpProfile(L"]", first, second));
}

}  // namespace
}  // namespace exportifc
