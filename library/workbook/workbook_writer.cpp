#include "library/workbook/workbook_writer.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>

#include "library/packing/zip_sink.h"

namespace exportifc {

namespace {

constexpr std::string_view declaration =
    R"(<?xml version="1.0" encoding="UTF-8" standalone="yes"?>)";
#define EXPORTIFC_FORMATS "http://schemas.openxmlformats.org/"
constexpr std::string_view mainSpace = EXPORTIFC_FORMATS "spreadsheetml/2006/main";
constexpr std::string_view linkSpace = EXPORTIFC_FORMATS "officeDocument/2006/relationships";
constexpr std::string_view packageSpace = EXPORTIFC_FORMATS "package/2006/relationships";
constexpr std::string_view typeSpace = EXPORTIFC_FORMATS "package/2006/content-types";
#undef EXPORTIFC_FORMATS
constexpr std::string_view sheetType =
    "application/vnd.openxmlformats-officedocument.spreadsheetml.";
constexpr std::string_view listSheet = "lists";

/// Text in XML; what XML cannot hold, or a reader would take for such, becomes "_x001F_".
std::string xmlText(std::string_view text) {
  std::string xml;
  const auto escape = [&](unsigned char character) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    xml += "_x00";
    xml += digits[character >> 4];
    xml += digits[character & 0xF];
    xml += '_';
  };
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char letter = text[i];
    switch (letter) {
      case '&': xml += "&amp;"; break;
      case '<': xml += "&lt;"; break;
      case '>': xml += "&gt;"; break;
      case '"': xml += "&quot;"; break;
      case '\t':
      case '\n': xml += letter; break;
      case '_':
        if (text.substr(i).starts_with("_x")) {
          escape('_');
        } else {
          xml += letter;
        }
        break;
      default:
        if (static_cast<unsigned char>(letter) < ' ') {
          escape(static_cast<unsigned char>(letter));
        } else {
          xml += letter;
        }
    }
  }
  return xml;
}

std::string shortest(double value) {
  std::array<char, 32> buffer{};
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
  return {buffer.data(), end.ptr};
}

/// One part of the workbook, handed on in large pieces.
class Part {
 public:
  Part(ZipWriter& zip, const std::string& name) : zip_(zip) {
    zip_.begin(name);
    *this << declaration;
  }
  Part(const Part&) = delete;
  Part& operator=(const Part&) = delete;
  ~Part() {
    flush();
    zip_.end();
  }

  Part& operator<<(std::string_view text) {
    held_ += text;
    if (held_.size() >= pieceSize) {
      flush();
    }
    return *this;
  }
  Part& operator<<(std::size_t number) { return *this << std::to_string(number); }

 private:
  static constexpr std::size_t pieceSize = std::size_t{1} << 16;

  void flush() {
    zip_.write(held_.data(), held_.size());
    held_.clear();
  }

  ZipWriter& zip_;
  std::string held_;
};

std::string cellXml(const Cell& cell, std::int32_t row, bool isHeader) {
  const std::string start = "<c r=\"" + columnName(cell.column) + std::to_string(row) + "\"" +
                            (isHeader ? " s=\"1\"" : "");
  switch (cell.kind) {
    case Cell::Kind::empty: return {};
    case Cell::Kind::number:
      return start + "><v>" + (cell.text.empty() ? shortest(cell.number) : cell.text) + "</v></c>";
    case Cell::Kind::boolean:
      return start + " t=\"b\"><v>" + (cell.number != 0.0 ? "1" : "0") + "</v></c>";
    case Cell::Kind::text:
    case Cell::Kind::error: break;
  }
  return start + " t=\"inlineStr\"><is><t xml:space=\"preserve\">" + xmlText(cell.text) +
         "</t></is></c>";
}

/// As wide as its longest text, in characters; of bytes a few more.
std::vector<std::size_t> widthsOf(const Sheet& sheet) {
  constexpr std::size_t least = 8;
  constexpr std::size_t most = 40;
  std::vector<std::size_t> widths;
  for (const Row& row : sheet.rows) {
    for (const Cell& cell : row.cells) {
      const auto column = static_cast<std::size_t>(cell.column);
      widths.resize(std::max(widths.size(), column + 1), least);
      widths[column] = std::clamp(cell.text.size() + 2, widths[column], most);
    }
  }
  return widths;
}

/// All of a workbook; its sheets are known by their numbers, from 1.
class WorkbookParts {
 public:
  WorkbookParts(std::span<const WrittenSheet> sheets, ZipWriter& zip) : sheets_(sheets), zip_(zip) {
    std::int32_t column = 0;
    for (const WrittenSheet& sheet : sheets) {
      for (const WordList& list : sheet.lists) {
        addList(list, column++);
      }
    }
  }

  void write() {
    writeTypes();
    writePackage();
    writeStyles();
    std::int32_t firstList = 0;
    for (std::size_t i = 0; i < sheets_.size(); ++i) {
      writeSheet(sheets_[i], i + 1, firstList);
      firstList += static_cast<std::int32_t>(sheets_[i].lists.size());
      if (!sheets_[i].notes.empty()) {
        writeNotes(sheets_[i].notes, i + 1);
      }
    }
    if (hasLists()) {
      writeSheet({.sheet = lists_}, sheets_.size() + 1, 0);
    }
  }

 private:
  bool hasLists() const { return !lists_.rows.empty(); }
  std::size_t count() const { return sheets_.size() + (hasLists() ? 1 : 0); }

  void addList(const WordList& list, std::int32_t column) {
    while (lists_.rows.size() < list.words.size()) {
      lists_.rows.push_back({.number = static_cast<std::int32_t>(lists_.rows.size()) + 1});
    }
    for (std::size_t i = 0; i < list.words.size(); ++i) {
      lists_.rows[i].cells.push_back(
          {.column = column, .kind = Cell::Kind::text, .text = list.words[i]});
    }
  }

  void writeTypes() {
    Part part(zip_, "[Content_Types].xml");
    part << "<Types xmlns=\"" << typeSpace << "\"><Default Extension=\"rels\" ContentType=\""
         << "application/vnd.openxmlformats-package.relationships+xml\"/>"
         << "<Default Extension=\"xml\" ContentType=\"application/xml\"/>"
         << "<Default Extension=\"vml\" ContentType=\""
         << "application/vnd.openxmlformats-officedocument.vmlDrawing\"/>";
    const auto add = [&](std::string_view name, std::string_view type) {
      part << "<Override PartName=\"/xl/" << name << "\" ContentType=\"" << sheetType << type
           << "+xml\"/>";
    };
    add("workbook.xml", "sheet.main");
    add("styles.xml", "styles");
    for (std::size_t i = 1; i <= count(); ++i) {
      add("worksheets/sheet" + std::to_string(i) + ".xml", "worksheet");
    }
    for (std::size_t i = 1; i <= sheets_.size(); ++i) {
      if (!sheets_[i - 1].notes.empty()) {
        add("comments" + std::to_string(i) + ".xml", "comments");
      }
    }
    part << "</Types>";
  }

  static void link(Part& part, std::string_view id, std::string_view type,
                   std::string_view target) {
    part << "<Relationship Id=\"" << id << "\" Type=\"" << linkSpace << "/" << type
         << "\" Target=\"" << target << "\"/>";
  }

  void writePackage() {
    {
      Part part(zip_, "_rels/.rels");
      part << "<Relationships xmlns=\"" << packageSpace << "\">";
      link(part, "r1", "officeDocument", "xl/workbook.xml");
      part << "</Relationships>";
    }
    {
      Part part(zip_, "xl/workbook.xml");
      part << "<workbook xmlns=\"" << mainSpace << "\" xmlns:r=\"" << linkSpace << "\"><sheets>";
      for (std::size_t i = 1; i <= count(); ++i) {
        const bool isList = i > sheets_.size();
        part << "<sheet name=\""
             << (isList ? std::string(listSheet) : xmlText(sheets_[i - 1].sheet.name))
             << "\" sheetId=\"" << i << (isList ? "\" state=\"hidden" : "") << "\" r:id=\"r" << i
             << "\"/>";
      }
      part << "</sheets></workbook>";
    }
    Part part(zip_, "xl/_rels/workbook.xml.rels");
    part << "<Relationships xmlns=\"" << packageSpace << "\">";
    for (std::size_t i = 1; i <= count(); ++i) {
      const std::string number = std::to_string(i);
      link(part, "r" + number, "worksheet", "worksheets/sheet" + number + ".xml");
    }
    link(part, "styles", "styles", "styles.xml");
    part << "</Relationships>";
  }

  /// Two formats: that of all cells, and bold.
  void writeStyles() {
    Part part(zip_, "xl/styles.xml");
    part
        << "<styleSheet xmlns=\"" << mainSpace << "\"><fonts count=\"2\">"
        << R"(<font><sz val="11"/><name val="Calibri"/></font>)"
        << R"(<font><b/><sz val="11"/><name val="Calibri"/></font></fonts>)"
        << R"(<fills count="2"><fill><patternFill patternType="none"/></fill>)"
        << R"(<fill><patternFill patternType="gray125"/></fill></fills>)"
        << R"(<borders count="1"><border><left/><right/><top/><bottom/><diagonal/></border></borders>)"
        << R"(<cellStyleXfs count="1"><xf numFmtId="0" fontId="0" fillId="0" borderId="0"/></cellStyleXfs>)"
        << R"(<cellXfs count="2"><xf numFmtId="0" fontId="0" fillId="0" borderId="0" xfId="0"/>)"
        << R"(<xf numFmtId="0" fontId="1" fillId="0" borderId="0" xfId="0" applyFont="1"/></cellXfs>)"
        << R"(<cellStyles count="1"><cellStyle name="Normal" xfId="0" builtinId="0"/></cellStyles>)"
        << "</styleSheet>";
  }

  void writeSheet(const WrittenSheet& written, std::size_t number, std::int32_t firstList) {
    const Sheet& sheet = written.sheet;
    const bool isList = number > sheets_.size();
    Part part(zip_, "xl/worksheets/sheet" + std::to_string(number) + ".xml");
    part << "<worksheet xmlns=\"" << mainSpace << "\" xmlns:r=\"" << linkSpace << "\">";
    if (!isList) {
      part << R"(<sheetViews><sheetView workbookViewId="0"><pane ySplit="1" topLeftCell="A2" )"
           << R"(activePane="bottomLeft" state="frozen"/></sheetView></sheetViews>)";
    }
    writeWidths(part, sheet);
    part << "<sheetData>";
    for (const Row& row : sheet.rows) {
      part << "<row r=\"" << static_cast<std::size_t>(row.number) << "\">";
      for (const Cell& cell : row.cells) {
        part << cellXml(cell, row.number, !isList && row.number == 1);
      }
      part << "</row>";
    }
    part << "</sheetData>";
    writeLists(part, written.lists, firstList);
    if (!written.notes.empty()) {
      part << "<legacyDrawing r:id=\"r1\"/>";
    }
    part << "</worksheet>";
  }

  static void writeWidths(Part& part, const Sheet& sheet) {
    const std::vector<std::size_t> widths = widthsOf(sheet);
    if (widths.empty()) {
      return;
    }
    part << "<cols>";
    for (std::size_t i = 0; i < widths.size(); ++i) {
      part << "<col min=\"" << i + 1 << "\" max=\"" << i + 1 << "\" width=\"" << widths[i]
           << "\" customWidth=\"1\"/>";
    }
    part << "</cols>";
  }

  static void writeLists(Part& part, const std::vector<WordList>& lists, std::int32_t firstList) {
    if (lists.empty()) {
      return;
    }
    part << "<dataValidations count=\"" << lists.size() << "\">";
    for (std::size_t i = 0; i < lists.size(); ++i) {
      const std::string column = columnName(lists[i].column);
      const std::string source = columnName(firstList + static_cast<std::int32_t>(i));
      part << R"(<dataValidation type="list" allowBlank="1" showErrorMessage="0" sqref=")" << column
           << "2:" << column << static_cast<std::size_t>(mostSheetRows) << "\"><formula1>"
           << listSheet << "!$" << source << "$1:$" << source << "$" << lists[i].words.size()
           << "</formula1></dataValidation>";
    }
    part << "</dataValidations>";
  }

  /// A comment is a text, and a box that an older language draws.
  void writeNotes(const std::vector<HeaderNote>& notes, std::size_t number) {
    const std::string file = std::to_string(number);
    {
      Part part(zip_, "xl/worksheets/_rels/sheet" + file + ".xml.rels");
      part << "<Relationships xmlns=\"" << packageSpace << "\">";
      link(part, "r1", "vmlDrawing", "../drawings/vmlDrawing" + file + ".vml");
      link(part, "r2", "comments", "../comments" + file + ".xml");
      part << "</Relationships>";
    }
    {
      Part part(zip_, "xl/comments" + file + ".xml");
      part << "<comments xmlns=\"" << mainSpace
           << "\"><authors><author>exportIFC</author></authors><commentList>";
      for (const HeaderNote& note : notes) {
        part << "<comment ref=\"" << columnName(note.column)
             << "1\" authorId=\"0\"><text><t xml:space=\"preserve\">" << xmlText(note.text)
             << "</t></text></comment>";
      }
      part << "</commentList></comments>";
    }
    Part part(zip_, "xl/drawings/vmlDrawing" + file + ".vml");
    part
        << R"(<xml xmlns:v="urn:schemas-microsoft-com:vml" xmlns:o="urn:schemas-microsoft-com:office:office" )"
        << R"(xmlns:x="urn:schemas-microsoft-com:office:excel">)"
        << R"(<v:shapetype id="note" coordsize="21600,21600" o:spt="202" path="m,l,21600r21600,l21600,xe"/>)";
    for (const HeaderNote& note : notes) {
      const auto column = static_cast<std::size_t>(note.column);
      part
          << R"(<v:shape type="#note" style="position:absolute;width:240pt;height:60pt;visibility:hidden" )"
          << R"(fillcolor="#ffffe1" o:insetmode="auto"><v:textbox/><x:ClientData ObjectType="Note">)"
          << "<x:Anchor>" << column + 1 << ",15,1,2," << column + 4
          << ",15,5,4</x:Anchor><x:AutoFill>False</x:AutoFill><x:Row>0</x:Row><x:Column>" << column
          << "</x:Column></x:ClientData></v:shape>";
    }
    part << "</xml>";
  }

  std::span<const WrittenSheet> sheets_;
  ZipWriter& zip_;
  Sheet lists_;
};

}  // namespace

bool writeWorkbook(std::span<const WrittenSheet> sheets, ByteSink& output) {
  ZipWriter zip(output);
  WorkbookParts(sheets, zip).write();
  return zip.finish();
}

}  // namespace exportifc
