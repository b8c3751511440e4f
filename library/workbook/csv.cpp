#include "library/workbook/csv.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

#include "library/frame/model_error.h"
#include "library/text/messages.h"
#include "library/text/text.h"
#include "library/text/text_encoding.h"

namespace exportifc {

namespace {

constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";

/// The one that the first line has outside of quotes; a comma in it may be a decimal sign.
char separatorOf(std::string_view text) {
  bool isQuoted = false;
  bool hasTab = false;
  for (const char letter : text) {
    if (letter == '"') {
      isQuoted = !isQuoted;
    } else if (!isQuoted && letter == ';') {
      return ';';
    } else if (!isQuoted && (letter == '\n' || letter == '\r')) {
      break;
    }
    hasTab = hasTab || (!isQuoted && letter == '\t');
  }
  return hasTab ? '\t' : ',';
}

/// Takes the rows off a text, value by value.
class CsvText {
 public:
  CsvText(std::string_view text, const std::string& file) : text_(text), file_(file) {
    // Some spreadsheet programs ask for the separator in a line of its own.
    constexpr std::string_view said = "sep=";
    if (text_.starts_with(said) && text_.size() > said.size()) {
      separator_ = text_[said.size()];
      text_.remove_prefix(said.size() + 1);
      lineEnd();
    } else {
      separator_ = separatorOf(text_);
    }
  }

  Sheet read(const std::string& name) {
    Sheet sheet{.name = name};
    while (!text_.empty()) {
      Row row{.number = line_};
      for (std::int32_t column = 0;; ++column) {
        std::string text = value(column);
        if (!text.empty()) {
          row.cells.push_back(
              {.column = column, .kind = Cell::Kind::text, .text = std::move(text)});
        }
        if (text_.empty() || text_.front() != separator_) {
          break;
        }
        text_.remove_prefix(1);
      }
      lineEnd();
      if (!row.cells.empty()) {
        sheet.rows.push_back(std::move(row));
      }
    }
    return sheet;
  }

 private:
  bool atLineEnd() const { return text_.empty() || text_.front() == '\n' || text_.front() == '\r'; }
  void lineEnd() {
    if (text_.empty()) {
      return;
    }
    text_.remove_prefix(text_.starts_with("\r\n") ? 2 : 1);
    ++line_;
  }

  std::string value(std::int32_t column) {
    if (!text_.starts_with('"')) {
      const std::array<char, 3> ends{separator_, '\n', '\r'};
      const std::size_t size =
          std::min(text_.find_first_of(std::string_view(ends.data(), ends.size())), text_.size());
      std::string plain(text_.substr(0, size));
      text_.remove_prefix(size);
      return plain;
    }
    const TextPlace begin{.line = line_, .column = column + 1};
    std::string quoted;
    text_.remove_prefix(1);
    for (;;) {
      if (text_.empty()) {
        fail(texts::csvNotClosed, begin);
      }
      const char letter = text_.front();
      text_.remove_prefix(1);
      if (letter == '"') {
        if (!text_.starts_with('"')) {
          break;
        }
        text_.remove_prefix(1);
      }
      line_ += letter == '\n' || (letter == '\r' && !text_.starts_with('\n')) ? 1 : 0;
      quoted += letter;
    }
    if (!atLineEnd() && text_.front() != separator_) {
      fail(texts::csvBehindQuote, begin);
    }
    return quoted;
  }

  [[noreturn]] void fail(const Text& message, TextPlace place) const {
    throw ModelError(
        {.code = "csv-quote", .message = exportifc::say(message), .place = place, .file = file_});
  }

  std::string_view text_;
  const std::string& file_;
  char separator_ = ',';
  std::int32_t line_ = 1;
};

std::string writtenText(const Cell& cell, CsvStyle style) {
  if (cell.kind == Cell::Kind::boolean) {
    return exportifc::say(cell.number != 0.0 ? texts::yes : texts::no);
  }
  std::string text = cell.text;
  if (cell.kind == Cell::Kind::number) {
    if (text.empty()) {
      std::array<char, 32> buffer{};
      text.assign(buffer.data(),
                  std::to_chars(buffer.data(), buffer.data() + buffer.size(), cell.number).ptr);
    }
    std::replace(text.begin(), text.end(), '.', style.decimalSign);
  }
  return text;
}

/// In quotes where the value could be taken for something else without them.
void appendQuoted(std::string& line, std::string_view text, CsvStyle style) {
  const std::string special = {style.separator, '"', '\n', '\r', ' ', '\t'};
  if (text.find_first_of(special) == std::string_view::npos) {
    line += text;
    return;
  }
  line += '"';
  for (const char letter : text) {
    line.append(letter == '"' ? 2 : 1, letter);
  }
  line += '"';
}

}  // namespace

CsvStyle csvStyle() {
  return language() == Language::portuguese ? CsvStyle{.separator = ';', .decimalSign = ','}
                                            : CsvStyle{};
}

Sheet readCsv(std::string_view text, const std::string& name, const std::string& file) {
  if (text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF")) {
    throw ModelError({.code = "utf-16", .message = say(texts::utf16File), .file = file});
  }
  if (text.starts_with(utf8Mark)) {
    text.remove_prefix(utf8Mark.size());
  }
  const std::string utf8 = toUtf8(text);
  return CsvText(utf8, file).read(name);
}

bool writeCsv(const Sheet& sheet, CsvStyle style, ByteSink& output) {
  std::string line(utf8Mark);
  bool goesOn = true;
  for (const Row& row : sheet.rows) {
    std::int32_t column = 0;
    for (const Cell& cell : row.cells) {
      for (; column < cell.column; ++column) {
        line += style.separator;
      }
      appendQuoted(line, writtenText(cell, style), style);
    }
    line += "\r\n";
    goesOn = goesOn && output.write(line.data(), line.size());
    line.clear();
  }
  return goesOn;
}

}  // namespace exportifc
