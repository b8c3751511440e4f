#include "library/workbook/sheet_reader.h"

#include <charconv>
#include <cmath>
#include <string_view>
#include <utility>

#include "library/frame/model_error.h"
#include "library/text/messages.h"
#include "library/text/text_encoding.h"

namespace exportifc {

namespace {

constexpr std::int32_t mostRows = 1'048'576;
constexpr std::int32_t mostColumns = 16'384;
constexpr std::size_t mostStrings = 1'000'000;

/// "_x000D_": a character that XML cannot hold, or not as it is.
std::string withoutEscapes(std::string text) {
  constexpr std::string_view start = "_x";
  constexpr std::size_t length = 7;
  for (std::size_t at = text.find(start); at != std::string::npos; at = text.find(start, at + 1)) {
    unsigned character = 0;
    const char* const digits = text.data() + at + start.size();
    const char* const end = text.data() + text.size();
    if (end - digits >= 5 && digits[4] == '_' &&
        std::from_chars(digits, digits + 4, character, 16).ptr == digits + 4) {
      text.replace(at, length, utf8Of(static_cast<char32_t>(character)));
    }
  }
  return text;
}

/// Collects the runs of a text, but not how it is spoken.
class TextRuns {
 public:
  void begin(std::string_view element) {
    if (element == "rPh") {
      isSpoken_ = true;
    }
    isText_ = element == "t" && !isSpoken_;
  }
  void end(std::string_view element) {
    if (element == "rPh") {
      isSpoken_ = false;
    }
    isText_ = false;
  }
  void text(std::string_view piece) {
    if (isText_) {
      text_ += piece;
    }
  }
  std::string take() { return withoutEscapes(std::exchange(text_, {})); }

 private:
  bool isText_ = false;
  bool isSpoken_ = false;
  std::string text_;
};

class SharedStringHandler final : public XmlHandler {
 public:
  std::vector<std::string> take() { return std::move(strings_); }

  void begin(std::string_view element, const XmlAttributes& /*attributes*/) override {
    runs_.begin(element);
  }
  void end(std::string_view element) override {
    runs_.end(element);
    if (element == "si") {
      if (strings_.size() == mostStrings) {
        throw ModelError({.code = "workbook-too-large",
                          .message = say(texts::workbookManyTexts, {numberText(mostStrings)})});
      }
      strings_.push_back(runs_.take());
    }
  }
  void text(std::string_view piece) override { runs_.text(piece); }

 private:
  TextRuns runs_;
  std::vector<std::string> strings_;
};

/// Builds the rows of one sheet from the events of its XML.
class SheetHandler final : public XmlHandler {
 public:
  SheetHandler(const std::string& name, const std::vector<std::string>& strings, CellBudget& budget)
      : strings_(strings), budget_(budget) {
    sheet_.name = name;
  }

  Sheet take() { return std::move(sheet_); }

  void begin(std::string_view element, const XmlAttributes& attributes) override {
    if (element == "row") {
      beginRow(attributes["r"]);
    } else if (element == "c") {
      beginCell(attributes);
    } else if (element == "v") {
      isValue_ = hasValue_ = inCell_;
    } else if (element == "f") {
      isFormula_ = inCell_;
    } else if (inCell_) {
      runs_.begin(element);
    }
  }
  void end(std::string_view element) override {
    if (element == "c") {
      endCell();
    } else if (element == "row") {
      if (!row_.cells.empty()) {
        sheet_.rows.push_back(std::exchange(row_, {.number = row_.number}));
      }
    } else {
      runs_.end(element);
    }
    isValue_ = isFormula_ = false;
  }
  void text(std::string_view piece) override {
    if (isValue_) {
      value_ += piece;
    } else if (isFormula_) {
      formula_ += piece;
    } else if (inCell_) {
      runs_.text(piece);
    }
  }

 private:
  std::string place() const { return cellName(sheet_.name, row_.number, column_); }
  [[noreturn]] void fail(std::string message, std::string value = {}) const {
    throw ModelError({.code = "damaged-workbook",
                      .message = std::move(message),
                      .cell = place(),
                      .value = std::move(value)});
  }
  [[noreturn]] void failTooLarge(std::string message) const {
    throw ModelError(
        {.code = "workbook-too-large", .message = std::move(message), .cell = place()});
  }

  void beginRow(std::string_view number) {
    const std::int32_t before = std::exchange(row_.number, row_.number + (begun_ ? 1 : 0));
    column_ = -1;
    row_.cells.clear();
    if (!number.empty()) {
      const auto [end, error] =
          std::from_chars(number.data(), number.data() + number.size(), row_.number);
      if (error != std::errc() || end != number.data() + number.size()) {
        row_.number = before;
        column_ = 0;
        fail(say(texts::workbookBadRow, {excerpt(number)}), std::string(number));
      }
    }
    if (row_.number < 1 || row_.number > mostRows || (begun_ && row_.number <= before)) {
      const std::string wrong = std::to_string(row_.number);
      row_.number = before;
      column_ = 0;
      fail(say(texts::workbookBadRow, {wrong}), wrong);
    }
    begun_ = true;
  }

  void beginCell(const XmlAttributes& attributes) {
    const std::int32_t before = column_;
    const std::string_view reference = attributes["r"];
    column_ = reference.empty() ? before + 1 : columnOf(reference);
    if (!begun_ || column_ <= before || column_ >= mostColumns) {
      column_ = before + 1;
      fail(say(texts::workbookBadCell, {excerpt(reference)}), std::string(reference));
    }
    type_ = attributes["t"];
    value_.clear();
    formula_.clear();
    hasValue_ = false;
    inCell_ = true;
  }

  /// Of "C12"; -1 when it is none of this row.
  std::int32_t columnOf(std::string_view reference) const {
    std::int32_t column = 0;
    std::size_t letters = 0;
    for (; letters < reference.size() && letters < 3; ++letters) {
      const char letter = reference[letters];
      if (letter < 'A' || letter > 'Z') {
        break;
      }
      column = column * 26 + (letter - 'A' + 1);
    }
    return reference.substr(letters) == std::to_string(row_.number) ? column - 1 : -1;
  }

  void endCell() {
    inCell_ = false;
    Cell cell{.column = column_};
    std::string inlined = runs_.take();
    if (type_ == "inlineStr") {
      setText(cell, std::move(inlined));
    } else if (type_ == "str" || type_ == "d") {
      setText(cell, withoutEscapes(value_));
    } else if (!formula_.empty() && !hasValue_) {
      cell.kind = Cell::Kind::error;
      cell.text = "=" + formula_;
    } else if (value_.empty()) {
      return;  // only formatted
    } else if (type_ == "s") {
      setText(cell, sharedString());
    } else if (type_ == "e") {
      cell.kind = Cell::Kind::error;
      cell.text = value_;
    } else if (type_ == "b") {
      cell.kind = Cell::Kind::boolean;
      cell.number = value_ == "1" || value_ == "true" ? 1.0 : 0.0;
      cell.text = value_;
    } else {
      setNumber(cell);
    }
    if (cell.kind != Cell::Kind::empty) {
      keep(std::move(cell));
    }
  }

  static void setText(Cell& cell, std::string text) {
    cell.kind = text.empty() ? Cell::Kind::empty : Cell::Kind::text;
    cell.text = std::move(text);
  }

  const std::string& sharedString() const {
    std::size_t index = 0;
    const auto [end, error] = std::from_chars(value_.data(), value_.data() + value_.size(), index);
    if (error != std::errc() || end != value_.data() + value_.size() || index >= strings_.size()) {
      fail(say(texts::workbookNoText, {excerpt(value_)}), excerpt(value_));
    }
    return strings_[index];
  }

  void setNumber(Cell& cell) const {
    const auto [end, error] =
        std::from_chars(value_.data(), value_.data() + value_.size(), cell.number);
    if (error != std::errc() || end != value_.data() + value_.size() ||
        !std::isfinite(cell.number)) {
      fail(say(texts::workbookNoNumber, {excerpt(value_)}), excerpt(value_));
    }
    cell.kind = Cell::Kind::number;
    cell.text = value_;
  }

  void keep(Cell cell) {
    budget_.text += cell.text.size();
    if (++budget_.cells > CellBudget::mostCells) {
      failTooLarge(say(texts::workbookManyCells, {numberText(CellBudget::mostCells)}));
    }
    if (budget_.text > CellBudget::mostText) {
      failTooLarge(say(texts::workbookMuchText, {std::to_string(CellBudget::mostText >> 20)}));
    }
    row_.cells.push_back(std::move(cell));
  }

  const std::vector<std::string>& strings_;
  CellBudget& budget_;
  Sheet sheet_;
  Row row_;
  bool begun_ = false;  // a row
  std::int32_t column_ = -1;
  bool inCell_ = false;
  std::string type_;
  std::string value_;
  std::string formula_;
  bool isValue_ = false;
  bool hasValue_ = false;
  bool isFormula_ = false;
  TextRuns runs_;
};

}  // namespace

std::vector<std::string> readSharedStrings(Package& package, std::string_view part) {
  SharedStringHandler handler;
  package.read(part, {}, handler);
  return handler.take();
}

Sheet readSheet(Package& package, std::string_view part, const std::string& name,
                const std::vector<std::string>& sharedStrings, CellBudget& budget) {
  SheetHandler handler(name, sharedStrings, budget);
  package.read(part, name, handler);
  return handler.take();
}

}  // namespace exportifc
