// Workbooks as files: what spreadsheet programs write, and what hostile hands do.
#include <algorithm>
#include <optional>
#include <sstream>
#include <streambuf>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "library/frame/model_error.h"
#include "library/workbook/package.h"
#include "library/workbook/sheet_reader.h"
#include "library/workbook/workbook.h"
#include "tests/library/library_test.h"
#include "tests/library/zip_bytes.h"

namespace exportifc {
namespace {

using test::workbookParts;
using test::zipOf;
using test::ZipParts;

Workbook workbookOf(const std::string& bytes) {
  std::stringbuf file(bytes, std::ios::in);
  return Workbook(file);
}

Sheet barsOf(const std::string& rows, const std::string& strings = "") {
  return workbookOf(zipOf(workbookParts(rows, strings))).sheet("bars");
}

/// The cell's kind and content in short: "text a", "number 5".
std::string shown(const Cell& cell) {
  const char* const kinds[] = {"empty", "text", "number", "boolean", "error"};
  std::ostringstream line;
  line << columnName(cell.column) << " " << kinds[static_cast<std::size_t>(cell.kind)] << " "
       << (cell.kind == Cell::Kind::text || cell.kind == Cell::Kind::error
               ? cell.text
               : std::to_string(cell.number));
  return line.str();
}

using Lines = std::vector<std::string>;

Lines shown(const Sheet& sheet) {
  Lines lines;
  for (const Row& row : sheet.rows) {
    for (const Cell& cell : row.cells) {
      lines.push_back(std::to_string(row.number) + " " + shown(cell));
    }
  }
  return lines;
}

Problem faultOf(const std::string& bytes) {
  try {
    const Workbook book = workbookOf(bytes);
    for (const std::string& name : book.sheetNames()) {
      book.sheet(name);
    }
  } catch (const ModelError& error) {
    return error.problem();
  }
  ADD_FAILURE() << "the workbook was read";
  return {};
}

Problem faultIn(const std::string& rows, const std::string& strings = "") {
  return faultOf(zipOf(workbookParts(rows, strings)));
}

/// The parts with another content in one of them.
ZipParts with(ZipParts parts, const std::string& name, const std::string& content) {
  for (auto& part : parts) {
    if (part.first == name) {
      part.second = content;
      return parts;
    }
  }
  parts.emplace_back(name, content);
  return parts;
}

ZipParts without(ZipParts parts, const std::string& name) {
  std::erase_if(parts, [&](const auto& part) { return part.first == name; });
  return parts;
}

TEST(WorkbookFile, HasCellsOfEveryKind) {
  EXPECT_EQ(shown(barsOf("<row r='2'><c r='A2' t='s'><v>1</v></c><c r='B2'><v>2.5</v></c>"
                         "<c r='C2' t='b'><v>1</v></c><c r='D2' t='e'><v>#N/A</v></c>"
                         "<c r='E2' t='inlineStr'><is><t>a</t></is></c><c r='F2' s='3'/>"
                         "<c r='G2' t='n'><v>-1E-3</v></c></row>",
                         "<si><t>no</t></si><si><t>yes</t></si>")),
            (Lines{"2 A text yes", "2 B number 2.500000", "2 C boolean 1.000000", "2 D error #N/A",
                   "2 E text a", "2 G number -0.001000"}));
}

TEST(WorkbookFile, HasResultsOfFormulas) {
  EXPECT_EQ(
      shown(barsOf("<row r='1'><c r='A1'><f>B1*2</f><v>6</v></c>"
                   "<c r='B1' t='str'><f>\"a\"&amp;\"b\"</f><v>ab</v></c>"
                   "<c r='C1'><f>A1+1</f></c><c r='D1' t='str'><f>\"\"</f><v></v></c></row>")),
      (Lines{"1 A number 6.000000", "1 B text ab", "1 C error =A1+1"}));
}

TEST(WorkbookFile, JoinsTheRunsOfRichText) {
  EXPECT_EQ(
      shown(barsOf("<row r='1'><c r='A1' t='s'><v>0</v></c><c r='B1' t='inlineStr'><is><r><t>p"
                   "</t></r><r><t>q</t></r></is></c></row>",
                   "<si><r><rPr><b/></rPr><t>HE</t></r><r><t xml:space='preserve'> 180</t></r>"
                   "<rPh sb='0' eb='1'><t>spoken</t></rPh></si>")),
      (Lines{"1 A text HE 180", "1 B text pq"}));
}

TEST(WorkbookFile, HasEscapedCharacters) {
  EXPECT_EQ(
      shown(barsOf("<row r='1'><c r='A1' t='inlineStr'><is><t>a_x000D_b_x00E7_ _xyz _x12</t>"
                   "</is></c><c r='B1' t='inlineStr'><is><t>&lt;\xC3\xA7&gt;</t></is></c></row>")),
      (Lines{"1 A text a\rb\xC3\xA7 _xyz _x12", "1 B text <\xC3\xA7>"}));
}

TEST(WorkbookFile, CountsRowsAndCellsWithoutNames) {
  EXPECT_EQ(
      shown(barsOf("<row><c><v>1</v></c><c><v>2</v></c></row><row/><row><c><v>3</v></c></row>"
                   "<row r='9'><c r='C9'><v>4</v></c><c><v>5</v></c></row><row><c><v>6</v></c>"
                   "</row>")),
      (Lines{"1 A number 1.000000", "1 B number 2.000000", "3 A number 3.000000",
             "9 C number 4.000000", "9 D number 5.000000", "10 A number 6.000000"}));
}

TEST(WorkbookFile, HasPrefixesAndOtherNamesOfParts) {
  ZipParts parts = workbookParts("");
  for (auto& part : parts) {
    std::replace(part.first.begin(), part.first.end(), '/', '\\');
  }
  const std::string bytes =
      zipOf(with(parts, "xl\\worksheets\\sheet1.xml",
                 "<?xml version='1.0'?><x:worksheet xmlns:x='y'><x:sheetData><x:row r='1'><x:c "
                 "r='A1'><x:v>7</x:v></x:c></x:row></x:sheetData></x:worksheet>"));
  EXPECT_EQ(shown(workbookOf(bytes).sheet("bars")), (Lines{"1 A number 7.000000"}));
}

TEST(WorkbookFile, HasItsSheetsInTheirOrderAndReadsThoseAskedFor) {
  const std::string type = "' Type='x/worksheet' Target='";
  ZipParts parts = with(workbookParts(""), "xl/workbook.xml",
                        "<workbook xmlns:r='x'><sheets><sheet name='two' r:id='b'/>"
                        "<sheet name='diagram' r:id='d'/>"
                        "<sheet name='one' state='hidden' r:id='a'/></sheets></workbook>");
  parts = with(parts, "xl/_rels/workbook.xml.rels",
               "<Relationships><Relationship Id='a" + type + "./../xl/worksheets/sheet1.xml'/>" +
                   "<Relationship Id='b" + type +
                   "sheet2.xml'/><Relationship Id='d' Type='x/chartsheet' "
                   "Target='c.xml'/></Relationships>");
  parts = with(parts, "xl/worksheets/sheet1.xml",
               "<worksheet><sheetData><row><c><v>1</v></c></row>"
               "</sheetData></worksheet>");
  const Workbook book = workbookOf(zipOf(parts));
  EXPECT_EQ(book.sheetNames(), (Lines{"two", "one"}));
  EXPECT_EQ(shown(book.sheet("one")), (Lines{"1 A number 1.000000"}));
  EXPECT_EQ(&book.sheet("one"), &book.sheet("one"));
  EXPECT_THROW(book.sheet("two"), ModelError);  // there is no sheet2.xml
}

// ---- faults

TEST(WorkbookFault, NamesTheCell) {
  EXPECT_EQ(faultIn("<row r='3'><c r='B3'><v>1,5</v></c></row>").cell, "bars!B3");
  EXPECT_EQ(faultIn("<row r='3'><c r='B3'><v>1,5</v></c></row>").value, "1,5");
  EXPECT_EQ(faultIn("<row r='3'><c r='B3'><v>inf</v></c></row>").cell, "bars!B3");
  EXPECT_EQ(faultIn("<row r='3'><c r='B3' t='s'><v>1</v></c></row>", "<si/>").cell, "bars!B3");
  EXPECT_EQ(faultIn("<row r='3'><c r='B3' t='s'><v>-1</v></c></row>", "<si/>").cell, "bars!B3");
  EXPECT_EQ(faultIn("<row r='3'><c r='B4'><v>1</v></c></row>").cell, "bars!A3");
  EXPECT_EQ(faultIn("<row r='3'><c r='B3'/><c r='B3'/></row>").cell, "bars!C3");
  EXPECT_EQ(faultIn("<row r='3'><c r='XFE3'><v>1</v></c></row>").cell, "bars!A3");
  EXPECT_EQ(faultIn("<row r='3'/><row r='3'/>").cell, "bars!A3");
  EXPECT_EQ(faultIn("<row r='3'/><row r='1048577'/>").value, "1048577");
  EXPECT_EQ(faultIn("<row r='0'/>").value, "0");
  EXPECT_EQ(faultIn("<row r='x'/>").value, "x");
  EXPECT_EQ(faultIn("<c r='A1'><v>1</v></c>").cell, "bars!A1");
}

TEST(WorkbookFault, OfAZip) {
  const std::string whole = zipOf(workbookParts("<row r='1'><c r='A1'><v>1</v></c></row>"));
  for (std::size_t size = 0; size < whole.size(); size += 7) {
    EXPECT_STREQ(faultOf(whole.substr(0, size)).code, "damaged-workbook") << size;
  }
  const std::string damaged = "the workbook is damaged: its zip does not unpack";
  EXPECT_EQ(faultOf("PK\x03\x04").message, damaged);
  EXPECT_STREQ(faultOf(zipOf({{"mimetype", "text"}})).code, "not-a-workbook");
  const ZipParts parts = workbookParts("");
  for (const char* const part : {"_rels/.rels", "xl/workbook.xml", "xl/worksheets/sheet1.xml"}) {
    EXPECT_NE(faultOf(zipOf(without(parts, part))).message, "") << part;
  }
  EXPECT_EQ(faultOf(zipOf(without(parts, "xl/worksheets/sheet1.xml"))).cell, "bars");
}

TEST(WorkbookFault, OfAZipThatIsNotReadSo) {
  // In the directory, behind the mark and both versions: the flags, then the method.
  const std::string mark = "PK\x01\x02";
  const auto changed = [&](std::size_t place, char value) {
    std::string bytes = zipOf(workbookParts(""));
    for (std::size_t at = bytes.find(mark); at != std::string::npos;
         at = bytes.find(mark, at + 1)) {
      bytes[at + place] = value;
    }
    return faultOf(bytes).message;
  };
  EXPECT_EQ(changed(8, 1), "the workbook is encrypted; save it without a password");
  EXPECT_EQ(
      changed(10, 99),
      "the workbook is packed in a way that this program does not read; save it as .xlsx again");
}

TEST(WorkbookFault, OfAFileWithoutEnd) {
  class Endless final : public std::streambuf {
   protected:
    int_type underflow() override {
      setg(piece_.data(), piece_.data(), piece_.data() + piece_.size());
      return 0;
    }

   private:
    std::string piece_ = std::string(std::size_t{1} << 16, '\0');
  } endless;
  EXPECT_THROW(Workbook{endless}, ModelError);
}

TEST(WorkbookFault, OfTooManyTexts) {
  std::string strings;
  for (int i = 0; i <= 1'000'000; ++i) {
    strings += "<si/>";
  }
  EXPECT_EQ(faultIn("", strings).message, "the workbook has more than 1,000,000 different texts");
}

TEST(Workbook, CanBeMoved) {
  Workbook first = workbookOf(zipOf(workbookParts("")));
  Workbook second(std::move(first));
  EXPECT_TRUE(second.has("bars"));
  second = Workbook(std::vector<Sheet>{{.name = "nodes"}});
  EXPECT_TRUE(second.has("nodes"));
}

TEST(WorkbookFault, OfABinaryWorkbook) {
  const ZipParts parts = with(workbookParts(""), "_rels/.rels",
                              "<Relationships>\n<Relationship Id='r' Type='x/officeDocument' "
                              "Target='xl/workbook.bin'/>\n</Relationships>");
  EXPECT_EQ(faultOf(zipOf(parts)).message, "a binary workbook (.xlsb); save it as .xlsx");
}

TEST(WorkbookFile, HasBlanksBetweenItsElements) {
  const ZipParts parts =
      with(workbookParts("\n<row>\n<c>\n<v>1</v>\n</c>\n</row>\n"), "xl/workbook.xml",
           "<workbook xmlns:r='x'>\n<sheets>\n<sheet name='bars' r:id='a'/>\n"
           "</sheets>\n</workbook>");
  EXPECT_EQ(shown(workbookOf(zipOf(parts)).sheet("bars")), (Lines{"1 A number 1.000000"}));
}

TEST(WorkbookFault, OfTheXml) {
  const ZipParts parts = workbookParts("");
  const auto sheet = [&](const std::string& xml) {
    return faultOf(zipOf(with(parts, "xl/worksheets/sheet1.xml", xml)));
  };
  EXPECT_EQ(sheet("<worksheet>").message,
            "the workbook is damaged: \"xl/worksheets/sheet1.xml\" is not sound XML");
  EXPECT_EQ(sheet("").cell, "bars");
  EXPECT_EQ(sheet("<worksheet>\xFF</worksheet>").cell, "bars");
}

TEST(WorkbookFault, OfDeclarations) {
  const std::string laughs =
      "<!DOCTYPE a [<!ENTITY b 'ha'><!ENTITY c '&b;&b;'>]><worksheet>&c;</worksheet>";
  const Problem fault = faultOf(zipOf(with(workbookParts(""), "xl/worksheets/sheet1.xml", laughs)));
  EXPECT_EQ(fault.message,
            "the workbook is refused: \"xl/worksheets/sheet1.xml\" declares a document type, as no "
            "spreadsheet program does");
}

TEST(WorkbookFault, OfDepthAndOfLongTags) {
  std::string nested = "<worksheet>";
  for (int i = 0; i < 64; ++i) {
    nested += "<a>";
  }
  const auto refused = [](const std::string& sheet) {
    return faultOf(zipOf(with(workbookParts(""), "xl/worksheets/sheet1.xml", sheet)))
        .message.starts_with("the workbook is refused");
  };
  EXPECT_TRUE(refused(nested));
  EXPECT_TRUE(refused("<worksheet a='" + std::string(std::size_t{2} << 20, 'x') + "'/>"));
}

TEST(WorkbookFault, OfTooMuch) {
  CellBudget budget{.cells = CellBudget::mostCells - 1};
  const auto read = [&](const std::string& rows) -> std::optional<Problem> {
    Package package(zipOf(workbookParts(rows)));
    try {
      readSheet(package, "xl/worksheets/sheet1.xml", "bars", {std::string(1000, 'x')}, budget);
    } catch (const ModelError& error) {
      return error.problem();
    }
    return std::nullopt;
  };
  EXPECT_EQ(read("<row><c><v>1</v></c></row>"), std::nullopt);
  const auto cells = read("<row><c><v>1</v></c></row>");
  ASSERT_TRUE(cells);
  EXPECT_STREQ(cells->code, "workbook-too-large");
  EXPECT_EQ(cells->cell, "bars!A1");
  budget = {.text = CellBudget::mostText - 1500};
  const auto text = read("<row><c t='s'><v>0</v></c><c t='s'><v>0</v></c></row>");
  ASSERT_TRUE(text);
  EXPECT_EQ(text->cell, "bars!B1");
}

TEST(WorkbookFault, OfABomb) {
  // A part that says how large it is, and is too large with the others.
  constexpr std::size_t size = std::size_t{1} << 20;
  Package package(zipOf(workbookParts(std::string(size, ' '))), 3 * size);
  class Nothing final : public XmlHandler {
   public:
    void begin(std::string_view /*element*/, const XmlAttributes& /*attributes*/) override {}
    void end(std::string_view /*element*/) override {}
    void text(std::string_view /*piece*/) override {}
  } nothing;
  package.read("xl/worksheets/sheet1.xml", "bars", nothing);
  package.read("xl/worksheets/sheet1.xml", "bars", nothing);
  try {
    package.read("xl/worksheets/sheet1.xml", "bars", nothing);
    FAIL() << "more than the limit was unpacked";
  } catch (const ModelError& error) {
    EXPECT_EQ(error.problem().message, "the workbook is refused: it unpacks to more than 512 MB");
    EXPECT_EQ(error.problem().cell, "bars");
  }
}

TEST(LooksLikeWorkbook, ByNameOrMembers) {
  EXPECT_TRUE(looksLikeWorkbook("PK\x03\x04...", ".xlsx"));
  EXPECT_TRUE(looksLikeWorkbook("PK\x03\x04...[Content_Types].xml", ""));
  EXPECT_TRUE(looksLikeWorkbook("PK\x03\x04...xl/workbook.xml", ".zip"));
  EXPECT_FALSE(looksLikeWorkbook("PK\x03\x04...galpao.ifc", ".ifczip"));
  EXPECT_FALSE(looksLikeWorkbook("{}", ".xlsx"));
}

}  // namespace
}  // namespace exportifc
