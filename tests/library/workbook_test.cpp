#include "library/workbook/workbook.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "cli/problem_report.h"
#include "library/frame/problem_json.h"
#include "tests/library/library_test.h"

namespace exportifc {
namespace {

TEST(ColumnName, CountsInLetters) {
  EXPECT_EQ(columnName(0), "A");
  EXPECT_EQ(columnName(25), "Z");
  EXPECT_EQ(columnName(26), "AA");
  EXPECT_EQ(columnName(701), "ZZ");
  EXPECT_EQ(columnName(702), "AAA");
  EXPECT_EQ(columnName(16383), "XFD");
}

TEST(CellName, HasSheetColumnAndRow) { EXPECT_EQ(cellName("bars", 12, 2), "bars!C12"); }

TEST(CellAt, FindsByColumn) {
  const Row row{.number = 3,
                .cells = {{.column = 1, .kind = Cell::Kind::text, .text = "b"},
                          {.column = 4, .kind = Cell::Kind::number, .text = "5", .number = 5}}};
  EXPECT_EQ(cellAt(row, 0), nullptr);
  ASSERT_NE(cellAt(row, 1), nullptr);
  EXPECT_EQ(cellAt(row, 1)->text, "b");
  EXPECT_EQ(cellAt(row, 2), nullptr);
  ASSERT_NE(cellAt(row, 4), nullptr);
  EXPECT_EQ(cellAt(row, 4)->number, 5);
  EXPECT_EQ(cellAt(row, 5), nullptr);
}

TEST(Workbook, OfSheetsInMemory) {
  const Workbook book({{.name = "nodes", .rows = {{.number = 2, .cells = {}}}}, {.name = "bars"}});
  EXPECT_EQ(book.sheetNames(), (std::vector<std::string>{"nodes", "bars"}));
  EXPECT_TRUE(book.has("bars"));
  EXPECT_FALSE(book.has("Bars"));
  EXPECT_EQ(book.sheet("nodes").rows.size(), 1U);
  EXPECT_EQ(book.sheet("nodes").rows[0].number, 2);
  EXPECT_TRUE(book.sheet("bars").rows.empty());
}

TEST(ProblemOfACell, SaysItInsteadOfTheLine) {
  const Problem problem{.message = "is wrong", .place = {.line = 7}, .cell = "bars!C12"};
  const test::InLanguage english(Language::english);
  EXPECT_EQ(cli::problemLine("a.xlsx", problem, problem.message),
            "a.xlsx:bars!C12: error: is wrong");
  EXPECT_EQ(problemJson("a.xlsx", problem).at("cell"), "bars!C12");
  EXPECT_FALSE(problemJson("a.xlsx", {.message = "is wrong"}).contains("cell"));
}

}  // namespace
}  // namespace exportifc
