#include "library/workbook/workbook.h"

#include <array>
#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "cli/problem_report.h"
#include "library/formats/format.h"
#include "library/frame/model_error.h"
#include "library/frame/problem_json.h"
#include "library/frame/text_sink.h"
#include "library/workbook/workbook_writer.h"
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
  EXPECT_NE(problemJson("a.xlsx", problem).text().find("\"cell\":\"bars!C12\""), std::string::npos);
  EXPECT_EQ(problemJson("a.xlsx", {.message = "is wrong"}).text().find("cell"), std::string::npos);
}

TEST(WorkbookWriter, WritesWhatTheReaderReads) {
  const std::string odd = "a<b>&\"c\"_x0041_\x01\r\n\t \xC3\xA7";
  const std::vector<Cell> cells = {
      {.column = 0, .kind = Cell::Kind::text, .text = odd},
      {.column = 1, .kind = Cell::Kind::empty},
      {.column = 2, .kind = Cell::Kind::number, .number = 0.1},
      {.column = 3, .kind = Cell::Kind::number, .text = "1.500", .number = 1.5},
      {.column = 4, .kind = Cell::Kind::boolean, .number = 1},
      {.column = 27, .kind = Cell::Kind::error, .text = "#N/A"},
  };
  const std::array sheets = {
      WrittenSheet{.sheet = {.name = "P & L", .rows = {{.number = 3, .cells = cells}}}},
      WrittenSheet{.sheet = {.name = "none"}}};
  std::string bytes;
  TextSink sink(bytes);
  EXPECT_TRUE(writeWorkbook(sheets, sink));
  std::stringbuf file(bytes, std::ios::in);
  const Workbook book(file);
  EXPECT_EQ(book.sheetNames(), (std::vector<std::string>{"P & L", "none"}));
  EXPECT_TRUE(book.sheet("none").rows.empty());
  ASSERT_EQ(book.sheet("P & L").rows.size(), 1U);
  const Row& row = book.sheet("P & L").rows.front();
  EXPECT_EQ(row.number, 3);
  EXPECT_EQ(cellAt(row, 0)->text, odd);
  EXPECT_EQ(cellAt(row, 1), nullptr);
  EXPECT_EQ(cellAt(row, 2)->number, 0.1);
  EXPECT_EQ(cellAt(row, 3)->text, "1.500");
  EXPECT_EQ(cellAt(row, 4)->kind, Cell::Kind::boolean);
  EXPECT_EQ(cellAt(row, 4)->number, 1);
  EXPECT_EQ(cellAt(row, 27)->text, "#N/A") << "an error is kept as a text";
}

TEST(WorkbookWriter, WritesSheetsOfManyRows) {
  WrittenSheet written{.sheet = {.name = "bars"}};
  constexpr std::int32_t count = 5000;
  for (std::int32_t i = 1; i <= count; ++i) {
    written.sheet.rows.push_back(
        {.number = i, .cells = {{.kind = Cell::Kind::number, .number = static_cast<double>(i)}}});
  }
  std::string bytes;
  TextSink sink(bytes);
  EXPECT_TRUE(writeWorkbook({&written, 1}, sink));
  std::stringbuf file(bytes, std::ios::in);
  const Workbook book(file);
  const Sheet& sheet = book.sheet("bars");
  ASSERT_EQ(sheet.rows.size(), std::size_t{count});
  EXPECT_EQ(sheet.rows.back().cells.front().number, count);
}

TEST(WorkbookFormat, NeedsTheSheetsOfAModel) {
  const WrittenSheet written{.sheet = {.name = "prices"}};
  std::string bytes;
  TextSink sink(bytes);
  writeWorkbook({&written, 1}, sink);
  std::stringbuf file(bytes, std::ios::in);
  try {
    recognisedFormat(bytes, ".xlsx").read(file);
    FAIL();
  } catch (const ModelError& error) {
    EXPECT_STREQ(error.problem().code, "missing-sheet");
  }
}

}  // namespace
}  // namespace exportifc
