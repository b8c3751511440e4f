#include "library/formats/saf/saf_table.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>
#include <numbers>
#include <utility>

#include "library/frame/model_error.h"
#include "library/text/messages.h"

namespace exportifc::saf {

namespace {

struct Unit {
  Quantity quantity;
  std::string_view name;
  double factor;
};

// Of each quantity the first is what metric workbooks mean without a word, the second what
// imperial ones do.
constexpr Unit units[] = {
    {Quantity::coordinate, "m", 1.0},
    {Quantity::coordinate, "ft", 0.3048},
    {Quantity::coordinate, "cm", 0.01},
    {Quantity::coordinate, "mm", 0.001},
    {Quantity::coordinate, "in", 0.0254},
    {Quantity::dimension, "mm", 1.0},
    {Quantity::dimension, "in", 25.4},
    {Quantity::dimension, "cm", 10.0},
    {Quantity::dimension, "m", 1000.0},
    {Quantity::dimension, "ft", 304.8},
    {Quantity::angle, "deg", std::numbers::pi / 180.0},
    {Quantity::angle, "deg", std::numbers::pi / 180.0},
    {Quantity::angle, "\xC2\xB0", std::numbers::pi / 180.0},
    {Quantity::angle, "rad", 1.0},
    {Quantity::density, "kg/m3", 1.0},
    {Quantity::density, "lb/ft3", 0.45359237 / (0.3048 * 0.3048 * 0.3048)},
    {Quantity::density, "kg/m\xC2\xB3", 1.0},
    {Quantity::density, "t/m3", 1000.0},
    {Quantity::area, "m2", 1e6},
    {Quantity::area, "ft2", 304.8 * 304.8},
    {Quantity::area, "cm2", 100.0},
    {Quantity::area, "mm2", 1.0},
    {Quantity::area, "in2", 25.4 * 25.4},
};

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && isBlank(text.front())) {
    text.remove_prefix(1);
  }
  while (!text.empty() && isBlank(text.back())) {
    text.remove_suffix(1);
  }
  return text;
}

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

std::string unitIn(std::string_view header) {
  const std::size_t open = header.find('[');
  if (open == std::string_view::npos) {
    return {};
  }
  const std::size_t close = header.find(']', open);
  std::string unit(trimmed(header.substr(open + 1, close - open - 1)));
  std::transform(unit.begin(), unit.end(), unit.begin(), lower);
  return unit;
}

bool holdsNothing(const Row& row) {
  return std::all_of(row.cells.begin(), row.cells.end(), [](const Cell& cell) {
    return cell.kind == Cell::Kind::empty || trimmed(cell.text).empty();
  });
}

std::string unitNames(Quantity quantity) {
  std::string names;
  for (const Unit& unit : units) {
    if (unit.quantity == quantity && names.find(unit.name) == std::string::npos) {
      names.append(names.empty() ? "" : ", ").append(unit.name);
    }
  }
  return names;
}

}  // namespace

Table::Table(const Sheet& sheet, bool imperial)
    : sheet_(sheet), imperial_(imperial), rows_(sheet.rows) {
  while (!rows_.empty() && holdsNothing(rows_.front())) {
    rows_ = rows_.subspan(1);
  }
  if (rows_.empty()) {
    return;
  }
  headerRow_ = rows_.front().number;
  for (const Cell& cell : rows_.front().cells) {
    headers_.push_back(
        {.name = comparable(cell.text), .unit = unitIn(cell.text), .column = cell.column});
  }
  rows_ = rows_.subspan(1);
  while (!rows_.empty() && holdsNothing(rows_.back())) {
    rows_ = rows_.first(rows_.size() - 1);
  }
}

Column Table::column(std::string_view header, Quantity quantity) const {
  const std::string name = comparable(header);
  const auto found = std::find_if(headers_.begin(), headers_.end(),
                                  [&](const Header& known) { return known.name == name; });
  if (found == headers_.end()) {
    return {};
  }
  return {.index = found->column, .factor = factorOf(*found, quantity)};
}

Column Table::requiredColumn(std::string_view header, Quantity quantity) const {
  const Column found = column(header, quantity);
  if (found.index < 0) {
    throw ModelError({.code = "missing-column",
                      .message = say(texts::sheetNoColumn, {sheet_.name, header}),
                      .cell = sheet_.name});
  }
  return found;
}

double Table::factorOf(const Header& header, Quantity quantity) const {
  if (quantity == Quantity::none) {
    return 1.0;
  }
  const Unit* const first = std::find_if(std::begin(units), std::end(units), [&](const Unit& unit) {
    return unit.quantity == quantity;
  });
  if (header.unit.empty()) {
    return imperial_ ? first[1].factor : first->factor;
  }
  const Unit* const found = std::find_if(first, std::end(units), [&](const Unit& unit) {
    return unit.quantity == quantity && unit.name == header.unit;
  });
  if (found == std::end(units)) {
    const std::string allowed = unitNames(quantity);
    throw ModelError({.code = "bad-value",
                      .message = say(texts::cellNotAllowed, {header.unit, allowed}),
                      .cell = cellName(sheet_.name, headerRow_, header.column),
                      .value = header.unit,
                      .allowed = allowed});
  }
  return found->factor;
}

std::string_view Table::text(const Row& row, Column column) const {
  const Cell* const cell = column.index < 0 ? nullptr : cellAt(row, column.index);
  if (cell == nullptr || cell->kind == Cell::Kind::empty) {
    return {};
  }
  const std::string_view text = trimmed(cell->text);
  if (cell->kind == Cell::Kind::error) {
    refuse(row, column, say(texts::cellError, {text}));
  }
  return text;
}

std::string_view Table::requiredText(const Row& row, Column column) const {
  const std::string_view found = text(row, column);
  if (found.empty()) {
    refuse(row, column, say(texts::cellEmpty));
  }
  return found;
}

std::optional<double> Table::number(const Row& row, Column column) const {
  const std::string_view found = text(row, column);
  if (found.empty()) {
    return std::nullopt;
  }
  const Cell* const cell = cellAt(row, column.index);
  const std::optional<double> value =
      cell->kind == Cell::Kind::number ? cell->number : numberIn(found);
  if (!value || !std::isfinite(static_cast<float>(*value * column.factor))) {
    refuse(row, column, say(texts::cellNoNumber, {found}));
  }
  return *value * column.factor;
}

double Table::requiredNumber(const Row& row, Column column) const {
  const std::optional<double> value = number(row, column);
  if (!value) {
    refuse(row, column, say(texts::cellEmpty));
  }
  return *value;
}

std::string Table::cell(const Row& row, Column column) const {
  return cellName(sheet_.name, row.number, std::max(column.index, std::int32_t{0}));
}

void Table::refuse(const Row& row, Column column, std::string message, std::string allowed,
                   std::string suggestion) const {
  const Cell* const here = column.index < 0 ? nullptr : cellAt(row, column.index);
  throw ModelError({.code = "bad-value",
                    .message = std::move(message),
                    .cell = cell(row, column),
                    .value = here == nullptr ? std::string() : here->text,
                    .allowed = std::move(allowed),
                    .suggestion = std::move(suggestion)});
}

std::string comparable(std::string_view text) {
  std::string result;
  for (const char c : text.substr(0, text.find('['))) {
    const char letter = lower(c);
    if ((letter >= 'a' && letter <= 'z') || (letter >= '0' && letter <= '9')) {
      result += letter;
    }
  }
  return result;
}

std::vector<std::string_view> pieces(std::string_view text, char separator) {
  std::vector<std::string_view> found;
  while (!text.empty()) {
    const std::size_t end = text.find(separator);
    const std::string_view piece = trimmed(text.substr(0, end));
    if (!piece.empty()) {
      found.push_back(piece);
    }
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  }
  return found;
}

std::optional<double> numberIn(std::string_view text) {
  std::string digits(trimmed(text));
  std::replace(digits.begin(), digits.end(), ',', '.');
  const std::size_t sign = digits.starts_with('+') ? 1 : 0;
  double value = 0.0;
  const char* const end = digits.data() + digits.size();
  const auto read = std::from_chars(digits.data() + sign, end, value);
  return read.ec == std::errc() && read.ptr == end ? std::optional(value) : std::nullopt;
}

}  // namespace exportifc::saf
