#include "library/frame/problem_text.h"

#include <gtest/gtest.h>

#include "tests/library/library_test.h"

namespace exportifc {
namespace {

using test::InLanguage;

Model modelIn(ModelFormat format) {
  Model model;
  model.format = format;
  return model;
}

const Model json = modelIn(ModelFormat::json);
const Model batch = modelIn(ModelFormat::batch);

TEST(BarText, CountsFromOneAndPointsFromZero) {
  EXPECT_EQ(barText(json, 0), "bar 1 (/bars/0)");
  EXPECT_EQ(barText(json, 1233), "bar 1,234 (/bars/1233)");
  EXPECT_EQ(barText(batch, 6), "bar 7");
  const InLanguage portuguese(Language::portuguese);
  EXPECT_EQ(barText(json, 1233), "barra 1.234 (/bars/1233)");
}

TEST(WithPointer, PutsThePointerBefore) {
  EXPECT_EQ(withPointer({.pointer = "/unit"}, "is wrong"), "/unit: is wrong");
  EXPECT_EQ(withPointer({}, "is wrong"), "is wrong");
}

TEST(ProblemText, OfTheModelAsAWhole) {
  EXPECT_EQ(problemText(json, {.message = "is wrong"}), "is wrong");
  EXPECT_EQ(problemText(json, {.message = "is wrong", .pointer = "/unit"}), "/unit: is wrong");
}

TEST(ProblemText, OfBars) {
  const Problem one{.message = "is wrong", .pointer = "/sections/a", .bars = 1, .firstBar = 3};
  EXPECT_EQ(problemText(json, one), "/sections/a: bar 4 (/bars/3): is wrong");
  EXPECT_EQ(problemText(batch, one), "/sections/a: bar 4: is wrong");
  const Problem more{.message = "is wrong", .pointer = "/sections/a", .bars = 2, .firstBar = 3};
  EXPECT_EQ(problemText(json, more), "/sections/a: 2 bars, first: bar 4 (/bars/3): is wrong");
  const Problem nowhere{.message = "is wrong", .bars = 2000, .firstBar = 3};
  EXPECT_EQ(problemText(batch, nowhere), "2,000 bars, first: bar 4: is wrong");
}

TEST(ProblemText, SaysThePointerOfABarOnce) {
  const Problem one{.message = "is wrong", .pointer = "/bars/3/nodes", .bars = 1, .firstBar = 3};
  EXPECT_EQ(problemText(json, one), "/bars/3/nodes: bar 4: is wrong");
  const Problem all{.message = "is wrong", .pointer = "/bars", .bars = 1, .firstBar = 3};
  EXPECT_EQ(problemText(json, all), "/bars: bar 4 (/bars/3): is wrong");
}

TEST(IsNote, IsOfNotesAlone) {
  EXPECT_FALSE(isNote({.severity = Severity::error}));
  EXPECT_FALSE(isNote({.severity = Severity::warning}));
  EXPECT_TRUE(isNote({.severity = Severity::note}));
}

TEST(SeverityText, IsForPeopleAndTheCodeForPrograms) {
  EXPECT_EQ(severityText(Severity::error), "error");
  EXPECT_EQ(severityText(Severity::warning), "warning");
  EXPECT_EQ(severityText(Severity::note), "note");
  const InLanguage portuguese(Language::portuguese);
  EXPECT_EQ(severityText(Severity::error), "erro");
  EXPECT_EQ(severityText(Severity::warning), "aviso");
  EXPECT_EQ(severityText(Severity::note), "nota");
  EXPECT_STREQ(severityCode(Severity::error), "error");
  EXPECT_STREQ(severityCode(Severity::warning), "warning");
  EXPECT_STREQ(severityCode(Severity::note), "note");
}

TEST(PlacedLine, NamesTheFileInItsFolder) {
  const InLanguage english(Language::english);
  const Problem problem{.message = "x", .place = {.line = 3, .column = 2}, .file = "bars.csv"};
  EXPECT_EQ(placedLine("hall", problem, problem.message), "hall/bars.csv:3:2: error: x");
  EXPECT_EQ(placedLine("hall/", problem, problem.message), "hall/bars.csv:3:2: error: x");
  EXPECT_EQ(placedLine("", problem, problem.message), "bars.csv:3:2: error: x");
}

}  // namespace
}  // namespace exportifc
