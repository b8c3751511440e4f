#include "library/sections/section_catalogue.h"

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/library/library_test.h"

namespace exportifc {
namespace {

using test::InLanguage;

const Family& familyOf(std::string_view word) {
  const Family* const family = findFamilyWord(word);
  if (family == nullptr) {
    throw std::runtime_error("no family " + std::string(word));
  }
  return *family;
}

/// "d0 depth, d4 gap (or 0)".
std::string dimensionsOf(std::string_view word) {
  std::string text;
  for (const DimensionUse& use : familyOf(word).dimensions) {
    text += (text.empty() ? "d" : ", d") + std::to_string(use.index) + " " +
            meaningText(use.meaning) + (use.mayBeZero ? " (or 0)" : "");
  }
  return text;
}

TEST(Families, HaveEachWordOnce) {
  std::set<std::string> words;
  for (const Family& family : families()) {
    EXPECT_TRUE(words.insert(family.word).second) << family.word;
  }
  // One row of the module's table never decides.
  EXPECT_EQ(families().size(), sectionFamilies().size() - 1);
}

TEST(Families, StandInTheOrderOfTheTable) {
  const auto all = families();
  EXPECT_EQ(all.front().word, "ILAM");
  EXPECT_EQ(all[1].word, "CS");
  EXPECT_EQ(all[2].word, "][");
  EXPECT_EQ(all.back().word, "2L_ASSIMETRICO");
}

TEST(Families, HaveAPartForEachHalf) {
  EXPECT_EQ(familyOf("W").parts.size(), 1U);
  EXPECT_EQ(familyOf("2L").parts.size(), 2U);
  EXPECT_EQ(familyOf("2L").parts[0]->name, L"2L_1");
  EXPECT_EQ(familyOf("2L").parts[1]->name, L"2L_2");
  EXPECT_TRUE(familyOf("2L_ASSIMETRICO").parts.empty());
  for (const Family& family : families()) {
    EXPECT_LE(family.parts.size(), 2U) << family.word;
    EXPECT_EQ(family.parts.empty(), family.dimensions.empty()) << family.word;
  }
}

TEST(Families, SayWhatEachDimensionMeasures) {
  EXPECT_EQ(dimensionsOf("W"), "d0 depth, d1 width, d2 flange thickness, d3 web thickness");
  EXPECT_EQ(dimensionsOf("ULAM"), "d0 depth, d1 width, d2 web thickness, d3 flange thickness");
  EXPECT_EQ(dimensionsOf("2L"), "d0 leg, d3 thickness, d4 gap between the halves (or 0)");
  EXPECT_EQ(dimensionsOf("CA"), "d0 depth, d1 width, d2 lip, d3 thickness");  // its gap is always 0
  EXPECT_EQ(dimensionsOf("ZSI"), "d0 depth, d1 flange width, d2 lip, d3 thickness");  // each once
  EXPECT_EQ(dimensionsOf("RED"), "d0 diameter");
  EXPECT_EQ(dimensionsOf("PSA"),
            "d0 depth, d1 top flange width, d2 top flange thickness, d3 bottom flange width, d4 "
            "bottom flange thickness, d5 web thickness");
  EXPECT_EQ(dimensionsOf("LL"), "d0 leg, d3 thickness, d4 distance of the halves' centres");
  EXPECT_EQ(dimensionsOf("ICAR"),
            "d0 distance over the webs, d1 height of one hat, d2 brim width, d3 thickness, d4 gap "
            "between the halves (or 0)");
}

TEST(Families, OfARectangleTheSecondSideMayStandAnywhere) {
  EXPECT_EQ(dimensionsOf("RET"), "d0 depth, d3 width");
  for (const Family& family : families()) {
    EXPECT_EQ(family.secondSideAnywhere, family.word == "RET") << family.word;
  }
}

TEST(Families, ReadTheirDimensionsInOrder) {
  for (const Family& family : families()) {
    EXPECT_TRUE(std::is_sorted(
        family.dimensions.begin(), family.dimensions.end(),
        [](const DimensionUse& a, const DimensionUse& b) { return a.index <= b.index; }))
        << family.word;
    for (const DimensionUse& use : family.dimensions) {
      EXPECT_EQ(use.from == Dimension::rectangleSide, family.secondSideAnywhere && use.index == 3)
          << family.word;
      if (use.from != Dimension::rectangleSide) {
        EXPECT_EQ(static_cast<int>(use.from), use.index) << family.word;
      }
      // Only where nothing is may be nothing.
      EXPECT_EQ(use.mayBeZero, use.meaning == Meaning::gap) << family.word;
    }
  }
}

TEST(FindFamilyWord, KnowsWordsAndHalves) {
  for (const Family& family : families()) {
    EXPECT_EQ(findFamilyWord(family.word), &family);
    for (const FamilyRow* const part : family.parts) {
      const std::string name(part->name.begin(), part->name.end());
      EXPECT_EQ(findFamilyWord(name), &family) << name;
    }
  }
}

TEST(FindFamilyWord, KnowsNothingElse) {
  for (const std::string_view word :
       {"", " ", "w", "W ", "W_1", "2L_3", "2L_ASSIMETRICO_1", "HEA"}) {
    EXPECT_EQ(findFamilyWord(word), nullptr) << word;
  }
}

TEST(NearestFamily, IsTheWordThatWasProbablyMeant) {
  EXPECT_EQ(nearestFamily("tubos"), "TUBO");
  EXPECT_EQ(nearestFamily("ULMA"), "ULAM");
  EXPECT_EQ(nearestFamily("QQQQ"), "");
}

struct MeaningCase {
  Meaning meaning;
  const char* english;
  const char* portuguese;
  bool isWhole;
};

constexpr MeaningCase meaningCases[] = {
    {Meaning::depth, "depth", "altura", true},
    {Meaning::width, "width", "largura", true},
    {Meaning::leg, "leg", "aba", true},
    {Meaning::diameter, "diameter", "diâmetro", true},
    {Meaning::thickness, "thickness", "espessura", false},
    {Meaning::webThickness, "web thickness", "espessura da alma", false},
    {Meaning::flangeThickness, "flange thickness", "espessura da mesa", false},
    {Meaning::topFlangeThickness, "top flange thickness", "espessura da mesa superior", false},
    {Meaning::bottomFlangeThickness, "bottom flange thickness", "espessura da mesa inferior",
     false},
    {Meaning::flangeWidth, "flange width", "largura da mesa", true},
    {Meaning::topFlangeWidth, "top flange width", "largura da mesa superior", true},
    {Meaning::bottomFlangeWidth, "bottom flange width", "largura da mesa inferior", true},
    {Meaning::lip, "lip", "enrijecedor", false},
    {Meaning::topLip, "top lip", "enrijecedor superior", false},
    {Meaning::bottomLip, "bottom lip", "enrijecedor inferior", false},
    {Meaning::brim, "brim width", "largura da aba", false},
    {Meaning::overWebs, "distance over the webs", "distância externa das almas", true},
    {Meaning::hatHeight, "height of one hat", "altura de uma cartola", true},
    {Meaning::gap, "gap between the halves", "afastamento das metades", false},
    {Meaning::overBoth, "width over both halves", "largura das duas metades", true},
    {Meaning::overCorners, "width over the corners", "largura entre os vértices", true},
    {Meaning::betweenCentres, "distance of the halves' centres",
     "distância dos centros das metades", true},
};

TEST(Meanings, HaveWordsInEveryLanguage) {
  for (const MeaningCase& row : meaningCases) {
    EXPECT_EQ(meaningText(row.meaning), row.english);
    EXPECT_EQ(measuresWhole(row.meaning), row.isWhole) << row.english;
    const InLanguage portuguese(Language::portuguese);
    EXPECT_EQ(meaningText(row.meaning), row.portuguese);
  }
}

TEST(Meanings, AllOfThemAreLookedAtHere) {
  for (const Family& family : families()) {
    for (const DimensionUse& use : family.dimensions) {
      EXPECT_TRUE(std::any_of(std::begin(meaningCases), std::end(meaningCases),
                              [&](const MeaningCase& row) { return row.meaning == use.meaning; }))
          << family.word << " d" << use.index;
    }
  }
}

TEST(ProfileEntity, IsThatOfTheFile) {
  EXPECT_EQ(profileEntity(familyOf("W")), "IFCISHAPEPROFILEDEF");
  EXPECT_EQ(profileEntity(familyOf("2L")), "IFCLSHAPEPROFILEDEF");
  EXPECT_EQ(profileEntity(familyOf("PC")), "IFCARBITRARYCLOSEDPROFILEDEF");
  EXPECT_EQ(profileEntity(familyOf("2L_ASSIMETRICO")), "IFCARBITRARYCLOSEDPROFILEDEF");
}

TEST(DrawingName, IsAFileNameForEachFamily) {
  EXPECT_EQ(drawingName(familyOf("W")), "W.svg");
  EXPECT_EQ(drawingName(familyOf("LLM_EN")), "LLM_EN.svg");
  EXPECT_EQ(drawingName(familyOf("[")), "open.svg");
  EXPECT_EQ(drawingName(familyOf("[]")), "open-close.svg");
  EXPECT_EQ(drawingName(familyOf("][")), "close-open.svg");
  EXPECT_EQ(drawingName(familyOf("><")), "greater-less.svg");
  EXPECT_EQ(drawingName(familyOf("<>")), "less-greater.svg");
  std::set<std::string> names;
  for (const Family& family : families()) {
    const std::string name = drawingName(family);
    EXPECT_EQ(name.find_first_of("<>[]:\"/\\|?* "), std::string::npos) << name;
    EXPECT_TRUE(names.insert(name).second) << name;
  }
}

}  // namespace
}  // namespace exportifc
