#include "library/frame/section_check.h"

#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "library/sections/section_catalogue.h"
#include "tests/library/library_test.h"

namespace exportifc {
namespace {

using test::brief;
using test::briefs;
using test::InLanguage;
using test::sectionOf;
using test::sectionWith;

using Briefs = std::vector<std::string>;

std::vector<Problem> problemsOf(const std::string& text) {
  return checkSection(sectionOf(text), {});
}

std::string messageOf(const std::string& text) {
  const auto problems = problemsOf(text);
  return problems.empty() ? "" : problems.front().message;
}

// ---- which problems a text has

struct TextCase {
  const char* text;
  Briefs found;
};

void PrintTo(const TextCase& row, std::ostream* stream) { *stream << '"' << row.text << '"'; }

class SectionTexts : public testing::TestWithParam<TextCase> {};

TEST_P(SectionTexts, HaveTheseProblems) {
  EXPECT_EQ(briefs(problemsOf(GetParam().text)), GetParam().found);
}

INSTANTIATE_TEST_SUITE_P(Sound, SectionTexts,
                         testing::ValuesIn(std::vector<TextCase>{
                             {"W 200 100 8 6", {}},
                             {"W 200 x 100 x 8 x 6", {}},
                             {"W 200 100 8 6 a remark of 8mm and 2x3", {}},
                             {"W +200 1e2 8. ,6", {}},
                             {"2L 75 0 0 6 8", {}},
                             {"2L_1 75 0 0 6 8", {}},
                             {"L 50 oito 6mm 5", {}},  // d1 and d2 are not read
                             {"EC 80 0 0 12", {}},
                             {"][ 100 50 5 0", {}},  // a gap may be 0,
                             {"][ 100 50 5", {}},    // and be left out
                             {"2L 75 0 0 6", {}},
                             {"CA 140 50 18 3", {}},
                             {"RET 90 0 0 15", {}},
                             {"RET 90 0 20", {}},
                             {"RET 90 40", {}},
                             {"W 200 100 0,00001 6", {}},
                             {"W 200 100 1.200 6", {}},  // a plate of 1.2 mm is none too many
                             {"W 3.200 100 8 6", {}},    // grouped, it would be more than 3 m
                         }));

INSTANTIATE_TEST_SUITE_P(FamilyWord, SectionTexts,
                         testing::ValuesIn(std::vector<TextCase>{
                             {"", {"error empty-section"}},
                             {"   ", {"error empty-section"}},
                             {"\t", {"error control-character", "error unknown-family"}},
                             {"QQQ 200", {"error unknown-family"}},
                             {"w 200 100 8 6", {"error unknown-family"}},
                             {" W 200 100 8 6", {"error unknown-family"}},
                             {"W200x100x8x6", {"error unknown-family"}},
                             {"2L_ASSIMETRICO 100 75 8 8 10", {"error family-without-profile"}},
                         }));

INSTANTIATE_TEST_SUITE_P(
    Characters, SectionTexts,
    testing::ValuesIn(std::vector<TextCase>{
        {"W 200 100 8 6 d'agua", {"error quote-character"}},
        {"W 200 100 8 6 a\\b", {"error quote-character"}},
        {"W 200 100 8 6 */", {"error comment-end"}},
        {"W 200 100 8 6 * /", {}},
        {"W 200 100 8 6 \x1F", {"error control-character"}},
        {"W 200 100 8 6 \x7F", {"error control-character"}},
        {"W 200 100 8 6 ~ \xC3\xA7", {}},
        {"W 200 100 8 6 a'b*/c\n",
         {"error quote-character", "error comment-end", "error control-character"}},
        {"W 200 100 8 6 123456789012345678901234567890123", {}},
        {"W 200 100 8 6 1234567890123456789012345678901234", {"error text-too-long"}},
    }));

INSTANTIATE_TEST_SUITE_P(Missing, SectionTexts,
                         testing::ValuesIn(std::vector<TextCase>{
                             {"W",
                              {"error missing-dimension d0", "error missing-dimension d1",
                               "error missing-dimension d2", "error missing-dimension d3"}},
                             {"W 200 100 8", {"error missing-dimension d3"}},
                             {"EC 80", {"error missing-dimension d3"}},
                             {"BOX 150 90 5", {"error missing-dimension d3"}},
                             {"RET 90", {"error missing-dimension d3"}},
                             {"[] 160 55 0 4",
                              {"error missing-dimension d4"}},  // the width over both is no gap
                         }));

INSTANTIATE_TEST_SUITE_P(NotPositive, SectionTexts,
                         testing::ValuesIn(std::vector<TextCase>{
                             {"W 0 100 8 6", {"error not-positive d0"}},
                             {"W 200 100 -8 6", {"error not-positive d2"}},
                             {"W 200 100 0,000001 6",
                              {"error not-positive d2"}},  // the file says 0
                             {"][ 100 50 5 -1", {"error not-positive d3"}},
                             {"RET 90 0 0 0", {"error not-positive d3"}},
                             {"RET 90 0", {"error not-positive d3"}},
                         }));

INSTANTIATE_TEST_SUITE_P(Numbers, SectionTexts,
                         testing::ValuesIn(std::vector<TextCase>{
                             {"W oito 100 8 6", {"error not-a-number d0"}},
                             {"W 200 100 8 seis", {"error not-a-number d3"}},
                             {"W 200mm 100 8 6mm",
                              {"warning number-cut d0", "warning number-cut d3"}},
                             {"W 200 100 8 6; remark", {"warning number-cut d3"}},
                             {"W 20cm 100 8 6", {"error number-cut d0"}},
                             {"W 1.200,5 100 8 6", {"error number-cut d0"}},
                             {"W 1e40 100 8 6", {"error not-finite d0"}},
                             {"W 1.200 100 8 6", {"warning grouped-thousands d0"}},
                             {"W 200 3,000 8 6", {"warning grouped-thousands d1"}},
                             {"RET 90 oito", {"error not-a-number d1", "error not-positive d3"}},
                             {"RET 90 0 0 oito", {"error not-a-number d3"}},
                         }));

INSTANTIATE_TEST_SUITE_P(Glued, SectionTexts,
                         testing::ValuesIn(std::vector<TextCase>{
                             {"W 200x100x8x6", {"error glued-dimensions d3"}},
                             {"W 200x100x8 6", {"error glued-dimensions d2"}},
                             {"W 200X100X8X6", {"error glued-dimensions d0"}},
                             {"W 200*100*8*6", {"error glued-dimensions d0"}},
                             {"W 200\xC3\x97"
                              "100\xC3\x97"
                              "8\xC3\x97"
                              "6",
                              {"error glued-dimensions d0"}},
                             {"W 200-100-8-6", {"error glued-dimensions d0"}},
                             {"W 200;100;8;6", {"error glued-dimensions d0"}},
                             {"W 200,100,8,6", {"error glued-dimensions d0"}},
                             {"RET 90x15", {"error glued-dimensions d1"}},
                             {"L 50x0x0x5", {"error glued-dimensions d3"}},
                             {"W 200 100 8 6x2", {}},  // behind what is read
                             {"W 200 100x8 6", {"error glued-dimensions d2"}},
                             {"W oito,5,2x 100", {"error glued-dimensions d0"}},
                             {"W 200Xa 100 8 6", {"error number-cut d0"}},
                             {"W 200X 100 8 6", {"error number-cut d0"}},
                         }));

TEST(SectionProblems, EveryFamilyHasASoundText) {
  for (const Family& family : families()) {
    if (!family.parts.empty()) {
      EXPECT_EQ(briefs(problemsOf(family.word + " 200 90 13 8 230 9")), Briefs()) << family.word;
    }
  }
}

TEST(SectionProblems, EveryDimensionIsMissed) {
  for (const Family& family : families()) {
    Briefs missing;
    for (const DimensionUse& use : family.dimensions) {
      if (!use.mayBeZero) {
        missing.push_back("error missing-dimension d" + std::to_string(use.index));
      }
    }
    if (!family.parts.empty()) {
      EXPECT_EQ(briefs(problemsOf(family.word)), missing) << family.word;
    }
  }
}

// ---- what is said of them

TEST(SectionMessages, SayWhatTheFamilyReads) {
  EXPECT_EQ(
      messageOf("W 200 100"),
      "section \"W 200 100\": dimension d2 (flange thickness) is missing; W reads d0 (depth), "
      "d1 (width), d2 (flange thickness), d3 (web thickness)");
  EXPECT_EQ(problemsOf("W 200 100").back().message,
            "section \"W 200 100\": dimension d3 (web thickness) is missing");  // once is enough
  EXPECT_EQ(
      messageOf("RET 90"),
      "section \"RET 90\": dimension d3 (width) is missing; the width is d3, or d2, or d1: the "
      "first of at least 0.001");
}

TEST(SectionMessages, SayWhatIsNotPositive) {
  EXPECT_EQ(messageOf("W 200 100 -8,5 6"),
            "section \"W 200 100 -8,5 6\": dimension d2 (flange thickness) is -8.5, it must be "
            "positive");
  EXPECT_EQ(
      messageOf("RET 90 0 0 0"),
      "section \"RET 90 0 0 0\": dimension d3 (width) is 0, it must be positive; the width is "
      "d3, or d2, or d1: the first of at least 0.001");
}

TEST(SectionMessages, SayHowAPieceIsRead) {
  EXPECT_EQ(messageOf("W oito 100 8 6"),
            "section \"W oito 100 8 6\": \"oito\" for d0 (depth) is no number and is read as 0");
  EXPECT_EQ(messageOf("W 20cm 100 8 6"),
            "section \"W 20cm 100 8 6\": \"20cm\" for d0 (depth) is read as 20; write the number "
            "alone, in millimetres");
  // NOLINTBEGIN(performance-inefficient-string-concatenation): a message as it reads
  for (const std::string cut : {"1.200,5", "1,200.5"}) {
    EXPECT_EQ(
        messageOf("W " + cut + " 100 8 6"),
        "section \"W " + cut + " 100 8 6\": \"" + cut +
            "\" for d0 (depth) is read as 1.2; a number has one decimal sign and no separator "
            "of thousands, and blanks stand between two dimensions");
  }
  // NOLINTEND(performance-inefficient-string-concatenation)
  EXPECT_EQ(
      messageOf("W 1.200 100 8 6"),
      "section \"W 1.200 100 8 6\": \"1.200\" for d0 (depth) is read as 1.2; if 1200 is meant, "
      "write it without the separator");
}

TEST(SectionMessages, SayWhereBlanksAreMissing) {
  EXPECT_EQ(messageOf("W 200x100x8x6"),
            "section \"W 200x100x8x6\": in \"200x100x8x6\" the piece behind the last x, \"6\", is "
            "not read; write blanks: \"W 200 100 8 6\"");
  EXPECT_EQ(
      messageOf("W 200X100 8"),
      "section \"W 200X100 8\": in \"200X100\", \"200X100\" is read as 200; write blanks: \"W "
      "200 100 8\", and also d3 (web thickness)");
  EXPECT_EQ(messageOf("W 200x100 oito 6"),
            "section \"W 200x100 oito 6\": in \"200x100\" the piece behind the last x, \"100\", is "
            "not read; write blanks between the dimensions");
}

TEST(SectionMessages, SayWhatStandsInTheWay) {
  EXPECT_EQ(messageOf("QQQ 200"),
            "family word \"QQQ\" is not known; its bars become squares of 4 mm");
  EXPECT_EQ(messageOf("w 200 100 8 6"),
            "family word \"w\" is not known; its bars become squares of 4 mm; it must be in "
            "capitals; write \"W 200 100 8 6\"");
  EXPECT_EQ(messageOf("2L_ASSIMETRICO 100"),
            "family \"2L_ASSIMETRICO\" has no profile; both halves of its bars become squares of 4 "
            "mm");
  EXPECT_EQ(messageOf("W 200 100 8 6 1234567890123456789012345678901234"),
            "section text \"W 200 100 8 6 1234567890123456789012345678901234\" has 48 bytes, at "
            "most 47 are possible; its bars are left out");
  EXPECT_EQ(messageOf("W 1e40 100 8 6"), "dimension d0 (depth) is not a finite number");
}

TEST(SectionMessages, StandInTheLanguageOfTheUser) {
  const InLanguage portuguese(Language::portuguese);
  EXPECT_EQ(messageOf("W 200 100 -8,5 6"),
            "seção \"W 200 100 -8,5 6\": a dimensão d2 (espessura da mesa) é -8,5, mas deve ser "
            "positiva");
}

// ---- sections with dimensions of their own

TEST(SectionsWithDims, AreCheckedByThem) {
  EXPECT_EQ(briefs(checkSection(sectionWith("W200x100", {200, 100, 8, 6}), {})),
            Briefs({"error unknown-family"}));
  EXPECT_EQ(briefs(checkSection(sectionWith("W oito 8mm", {200, 100, 8, 6}), {})), Briefs());
  EXPECT_EQ(briefs(checkSection(sectionWith("W 200 100 8 6", {200, 100, 8}), {})),
            Briefs({"error missing-dimension d3"}));
  EXPECT_EQ(briefs(checkSection(sectionWith("W 200 100 8 6", {200, 0, 8, 6}), {})),
            Briefs({"error not-positive d1"}));
  EXPECT_EQ(briefs(checkSection(sectionWith("W", {}), {})).size(), 4U);
  const float infinity = std::numeric_limits<float>::infinity();
  EXPECT_EQ(briefs(checkSection(sectionWith("2L", {-infinity, 0, 0, 6, infinity}), {})),
            Briefs({"error not-finite d0", "error not-finite d4"}));
  // What nobody reads may be anything.
  EXPECT_EQ(briefs(checkSection(sectionWith("L", {50, -1, infinity, 5}), {})), Briefs());
}

TEST(SectionsWithDims, PointToTheDimension) {
  const Problem place{.pointer = "/sections/a~1b/text"};
  ModelSection section = sectionWith("W 200", {200, 0, 8});
  section.name = "a/b";
  const auto problems = checkSection(section, place);
  ASSERT_EQ(briefs(problems), Briefs({"error not-positive d1", "error missing-dimension d3"}));
  EXPECT_EQ(problems[0].pointer, "/sections/a~1b/dims/1");
  EXPECT_EQ(problems[1].pointer, "/sections/a~1b/dims");  // there is no value to point to
}

TEST(SectionsWithDims, OfATextThePointerStays) {
  const Problem place{.pointer = "/sections/a/text"};
  EXPECT_EQ(checkSection(sectionOf("W 0 100 8 6"), place).front().pointer, "/sections/a/text");
  EXPECT_EQ(checkSection(sectionWith("W' 200", {}), place).front().pointer, "/sections/a/text");
  EXPECT_EQ(checkSection(sectionWith("W 200", {}), {}).front().pointer, "");
}

TEST(SectionProblems, HaveTheBarsOfTheirPlace) {
  const Problem place{.pointer = "/sections/a/text", .section = 3, .bars = 7, .firstBar = 5};
  for (const Problem& problem : checkSection(sectionOf("W' 0 -1"), place)) {
    EXPECT_EQ(problem.section, 3) << brief(problem);
    EXPECT_EQ(problem.bars, 7) << brief(problem);
    EXPECT_EQ(problem.firstBar, 5) << brief(problem);
  }
}

TEST(FitsRecord, LeavesRoomForTheEnd) {
  EXPECT_TRUE(fitsRecord(sectionOf(std::string(47, 'A'))));
  EXPECT_FALSE(fitsRecord(sectionOf(std::string(48, 'A'))));
}

}  // namespace
}  // namespace exportifc
