#include "library/sections/section_text.h"

#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "library/sections/section_catalogue.h"
#include "model/batch_source.h"
#include "tests/library/library_test.h"

namespace exportifc {
namespace {

using Kind = SectionPiece::Kind;
using test::InLanguage;

// ---- pieces

/// "d0 200", "d1 8|mm cut", "d2 oito none", "d1 6 dropped", and the word around a glued one.
std::string shown(const SectionPiece& piece) {
  constexpr const char* kinds[] = {"", " none", " cut", " dropped"};
  std::string text = "d" + std::to_string(piece.index) + " ";
  if (piece.kind == Kind::cut) {
    text += piece.text.substr(0, piece.text.size() - piece.rest.size());
    text += "|";
    text += piece.rest;
  } else {
    text += piece.text;
  }
  text += kinds[static_cast<std::size_t>(piece.kind)];
  if (piece.isGlued()) {
    text += " in ";
    text += piece.word;
  }
  return text;
}

using Pieces = std::vector<std::string>;

Pieces piecesOf(const std::string& text) {
  Pieces shownPieces;
  for (const SectionPiece& piece : sectionPieces(text)) {
    shownPieces.push_back(shown(piece));
  }
  return shownPieces;
}

TEST(SectionPieces, AreTheWordsBehindTheFamily) {
  EXPECT_EQ(piecesOf(""), Pieces());
  EXPECT_EQ(piecesOf("W"), Pieces());
  EXPECT_EQ(piecesOf("W 200 8.5"), Pieces({"d0 200", "d1 8.5"}));
  EXPECT_EQ(piecesOf(" W  200\t100\n8\v6\f5\r4 "),
            Pieces({"d0 200", "d1 100", "d2 8", "d3 6", "d4 5", "d5 4"}));
}

TEST(SectionPieces, SayHowMuchIsRead) {
  EXPECT_EQ(piecesOf("W oito 8mm -5 +6 7,25 .5 5. 1e3 1E-3 2e 2e+ 1e+2x"),
            Pieces({"d0 oito none", "d1 8|mm cut", "d2 -5", "d3 +6", "d4 7,25", "d5 .5", "d6 5.",
                    "d7 1e3", "d8 1E-3", "d9 2|e cut", "d10 2|e+ cut", "d11 1e+2 in 1e+2x"}));
  EXPECT_EQ(piecesOf("W - . , -. 1.2.3 1,2,3 1.2,3 --5"),
            Pieces({"d0 - none", "d1 . none", "d2 , none", "d3 -. none", "d4 1.2|.3 cut",
                    "d5 1,2|,3 cut", "d6 1.2|,3 cut", "d7 --5 none"}));
}

TEST(SectionPieces, AWordIsCutByX) {
  EXPECT_EQ(piecesOf("W 200x100"), Pieces({"d0 200 in 200x100", "d1 100 dropped in 200x100"}));
  EXPECT_EQ(piecesOf("W 200x100x8 6"), Pieces({"d0 200 in 200x100x8", "d1 100 in 200x100x8",
                                               "d2 8 dropped in 200x100x8", "d2 6"}));
  EXPECT_EQ(piecesOf("W 200 x 100"), Pieces({"d0 200", "d1 100"}));
  EXPECT_EQ(piecesOf("W 200x 100"), Pieces({"d0 200 in 200x", "d1 100"}));
  EXPECT_EQ(piecesOf("W xx 100"), Pieces({"d0  none in xx", "d1  none in xx", "d2 100"}));
  // In such a word the comma alone is a decimal sign.
  EXPECT_EQ(piecesOf("W 8.5x8,5x1"), Pieces({"d0 8|.5 cut in 8.5x8,5x1", "d1 8,5 in 8.5x8,5x1",
                                             "d2 1 dropped in 8.5x8,5x1"}));
}

TEST(SectionPieces, AreWhatTheExportReads) {
  // Each number of a text, where it counts, has the value that the export gives it.
  const std::vector<std::pair<std::string, std::vector<float>>> cases = {
      {"W 200 100 8.5 6", {200, 100, 8.5F, 6}},
      {"W 200x100x8 6", {200, 100, 6}},
      {"W 200 x 100 x 8,5", {200, 100, 8.5F}},
      {"W 8.5x8,5x1", {8, 8.5F}},
      {"W oito 6mm", {0, 6}},
      {"W 1.2.3 1,2,3", {1.2F, 1.2F}},
      {"W xx 5", {0, 0, 5}},
      {"W 1e2 2e", {100, 2}},
  };
  for (const auto& [text, values] : cases) {
    const SectionDims dims = parseSectionDims(text);
    for (std::size_t i = 0; i < dims.size(); ++i) {
      EXPECT_EQ(dims[i], i < values.size() ? values[i] : 0.0F) << text << " d" << i;
    }
    int given = 0;
    for (const SectionPiece& piece : sectionPieces(text)) {
      given += piece.kind == Kind::dropped ? 0 : 1;
    }
    EXPECT_EQ(given, static_cast<int>(values.size())) << text;
  }
}

// ---- numbers

TEST(MillimetreText, HasNoDecimalsThatSayNothing) {
  EXPECT_EQ(millimetreText(200), "200");
  EXPECT_EQ(millimetreText(8.5), "8.5");
  EXPECT_EQ(millimetreText(0.0625), "0.062");
  EXPECT_EQ(millimetreText(0), "0");
  EXPECT_EQ(millimetreText(-8.25), "-8.25");
  EXPECT_EQ(millimetreText(12000), "12000");  // no grouped thousands
  EXPECT_EQ(millimetreText(1.0004), "1");
  EXPECT_EQ(millimetreText(1e30), "1000000000000000019884624838656");
}

TEST(MillimetreText, HasTheDecimalSignOfTheLanguage) {
  const InLanguage portuguese(Language::portuguese);
  EXPECT_EQ(millimetreText(8.5), "8,5");
  EXPECT_EQ(millimetreText(12000), "12000");
}

TEST(LooksGrouped, KnowsThousands) {
  for (const std::string number : {"1.200", "1,200", "2.999", "2,000", "3.000", "3,000"}) {
    EXPECT_TRUE(looksGrouped(number)) << number;
  }
}

TEST(LooksGrouped, LeavesDecimalsAlone) {
  for (const std::string number : {"", "1200", "1.20", "1.2000", "0.200", "3.001", "3.200", "4.000",
                                   "12.00", "1.2a0", "1.20a", "1;200", "1/200", "-1.20"}) {
    EXPECT_FALSE(looksGrouped(number)) << number;
  }
}

// ---- what was meant

struct Correction {
  const char* text;
  const char* meant;
};

constexpr Correction corrections[] = {
    // nothing to correct, or nothing that could be told
    {"", ""},
    {"  ", ""},
    {"W 200 100 8 6", ""},
    {"W 200 oito 8 6", ""},
    {"W 20cm 100 8 6", ""},
    {"QQQ 200 100", ""},
    {"200 100 8 6", ""},
    {"2L_ASSIMETRICO", ""},
    // letter case and blanks
    {"w 200 100 8 6", "W 200 100 8 6"},
    {" W 200 100 8 6", "W 200 100 8 6"},
    {"W  200 100\t8 6 ", "W 200 100 8 6"},
    {"W\u00A0"
     "200\u00A0"
     "100 8 6",
     "W 200 100 8 6"},
    {"ipe 240 120 10 6", "IPE 240 120 10 6"},
    {"2l 75 0 0 6 8", "2L 75 0 0 6 8"},
    {"2L_1 75 0 0 6 8", "2L 75 0 0 6 8"},
    // a family word without its blank
    {"W200", "W 200"},
    {"W200x100x8x6", "W 200 100 8 6"},
    {"w-200x100", "W 200 100"},
    {"W_200", "W 200"},
    {"W:200", "W 200"},
    {"W;200", "W 200"},
    {"W=200", "W 200"},
    {"W/200", "W 200"},
    {"W.200", ""},
    {"W-", ""},
    {"WT155x165x10x7", "WT 155 165 10 7"},  // the longest word that fits
    {"VSE260", "VSE 260"},
    {"2LLM76", "2LLM 76"},
    {"2L76x6", "2L 76 6"},
    {"Wa200", ""},
    {"W200a", ""},
    // signs between the dimensions
    {"W 200x100x8x6", "W 200 100 8 6"},
    {"W 200X100X8X6", "W 200 100 8 6"},
    {"W 200*100*8*6", "W 200 100 8 6"},
    {"W 200×100×8×6", "W 200 100 8 6"},
    {"W 200-100-8-6", "W 200 100 8 6"},
    {"W 200;100;8;6", "W 200 100 8 6"},
    {"W 200,100,8,6", "W 200 100 8 6"},
    {"W 200x 100x 8x 6", "W 200 100 8 6"},
    {"W 200 x 100 X 8 x 6", "W 200 100 8 6"},
    {"W 200x-100", "W 200 -100"},
    {"W 200xx100", ""},
    {"W 200x100xa", ""},
    {"W 8,5x100", "W 8,5 100"},
    // units and thousands
    {"W 200mm 100MM 8 6", "W 200 100 8 6"},
    {"W 200mmx100mm", "W 200 100"},
    {"W 1.200 100 8 6", "W 1200 100 8 6"},
    {"W 1,200 100 8 6", "W 1200 100 8 6"},
    {"W 1.2 100 8 6", ""},
    // words behind and before
    {"w 200 100 8 6 a remark", "W 200 100 8 6 a remark"},
    {"w 200 100 8 a remark", ""},
    {"L 50x0x0x5 rest 2x3", "L 50 0 0 5 rest 2x3"},
    {"2 L 75 0 0 6 8", "2L 75 0 0 6 8"},
    {"PERFIL W 200 100 8 6", "W 200 100 8 6"},
    {"PERFIL w 200 100 8 6", ""},
    {"200 100 8 6 W", "W 200 100 8 6"},
    {"200x100x8x6 W", "W 200 100 8 6"},
    {"200 W", "W 200"},
    {"200 100 QQQ", ""},
    {"PERFIL W", ""},
};

TEST(CorrectedText, IsWhatWasProbablyMeant) {
  for (const Correction& row : corrections) {
    EXPECT_EQ(correctedText(row.text), row.meant) << row.text;
  }
}

TEST(CorrectedText, NeedsNoOtherCorrection) {
  for (const Correction& row : corrections) {
    EXPECT_EQ(correctedText(row.meant), "") << row.text;
  }
}

TEST(StillMissing, NamesWhatACorrectedTextLacks) {
  EXPECT_EQ(stillMissing("W 200 100 8 6"), "");
  EXPECT_EQ(stillMissing("W 200 100 8"), ", and also d3 (web thickness)");
  EXPECT_EQ(stillMissing("W 200 100"), ", and also d2 (flange thickness), d3 (web thickness)");
  EXPECT_EQ(stillMissing("2L 75 0 0 6"), "");  // a gap may be left out
  EXPECT_EQ(stillMissing("RET 90 15"), "");
}

// ---- advice

TEST(FamilyAdvice, SaysWhatToDo) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"QQQ 200", ""},
      {" W 200 100 8 6", "; it begins with a blank, so the word is empty; write \"W 200 100 8 6\""},
      {" QQQ 200", "; it begins with a blank, so the word is empty"},
      {"W\t200 100 8 6", "; a tab or a no-break space is no blank; write \"W 200 100 8 6\""},
      {"W\u00A0"
       "200 100 8 6",
       "; a tab or a no-break space is no blank; write \"W 200 100 8 6\""},
      {"w 200 100 8 6", "; it must be in capitals; write \"W 200 100 8 6\""},
      {"W200 100 8 6", "; a blank is missing behind \"W\"; write \"W 200 100 8 6\""},
      {"IPE240",
       "; a blank is missing behind \"IPE\"; write \"IPE 240\", and also d1 (width), d2 (flange "
       "thickness), d3 (web thickness)"},
      {"PERFIL W 200 100 8 6", "; write \"W 200 100 8 6\""},
      {"ipe", "; did you mean IPE?"},
      {"IPN 200", "; families of this shape: ILAM, CS, W, HP, PS, VS, VSE, CSE, CVS, HE, IPE"},
      {"ipn200", "; families of this shape: ILAM, CS, W, HP, PS, VS, VSE, CSE, CVS, HE, IPE"},
      {"C 100 50 3", "; families of this shape: UENR, [, ULAM, UAP"},
      {"UPN 100", "; families of this shape: [, ULAM, UAP"},
      {"RHS 100 50 3", "; families of this shape: BOX"},
      {"PIPE 50 3", "; families of this shape: TUBO"},
      {"D 20", "; families of this shape: RED, FRED"},
      {"PL 100 10", "; families of this shape: EC, RET"},
      {"HEA 200", "; did you mean HE?"},
      {"TUBOS 60 3", "; did you mean TUBO?"},
      {"ULMA100 50", "; did you mean ULAM?"},
  };
  for (const auto& [text, advice] : cases) {
    EXPECT_EQ(familyAdvice(text), advice) << text;
  }
}

TEST(DimensionText, SaysWhatItMeasures) {
  const Family* const family = findFamilyWord("L");
  ASSERT_NE(family, nullptr);
  EXPECT_EQ(dimensionText(*family, 0), "d0 (leg)");
  EXPECT_EQ(dimensionText(*family, 3), "d3 (thickness)");
  EXPECT_EQ(dimensionText(*family, 1), "d1");
}

}  // namespace
}  // namespace exportifc
