// One sheet of a SAF workbook: a header, and under it a row for each thing.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "library/frame/problem.h"
#include "library/workbook/workbook.h"

namespace exportifc::saf {

/// What the numbers of a column measure, and so which units its header may name. They come out in
/// metres, millimetres, radians, kg/m³ and mm².
enum class Quantity : std::uint8_t { none, coordinate, dimension, angle, density, area };

/// A column found by its header.
struct Column {
  std::int32_t index = -1;  ///< below 0: the sheet does not have it
  double factor = 1.0;      ///< from the unit of the header
};

class Table {
 public:
  /// `sheet` must outlive it. `imperial`: the units of headers that name none.
  Table(const Sheet& sheet, bool imperial);

  /// Headers are compared without their units, blanks, signs and case, as programs write them in
  /// many ways.
  Column column(std::string_view header, Quantity quantity = Quantity::none) const;
  /// The same; a sheet without it is refused.
  Column requiredColumn(std::string_view header, Quantity quantity = Quantity::none) const;

  /// Those that hold something, without the header.
  std::span<const Row> rows() const { return rows_; }

  /// Without blanks around it; empty for an empty cell or a column that is not there.
  std::string_view text(const Row& row, Column column) const;
  /// The same; an empty cell is refused.
  std::string_view requiredText(const Row& row, Column column) const;
  std::optional<double> number(const Row& row, Column column) const;
  double requiredNumber(const Row& row, Column column) const;

  std::string cell(const Row& row, Column column) const;
  /// Ends the reading for the value of a cell.
  [[noreturn]] void refuse(const Row& row, Column column, std::string message,
                           std::string allowed = {}, std::string suggestion = {}) const;

 private:
  struct Header {
    std::string name;  // comparable
    std::string unit;
    std::int32_t column;
  };

  double factorOf(const Header& header, Quantity quantity) const;

  const Sheet& sheet_;
  bool imperial_;
  std::int32_t headerRow_ = 1;
  std::vector<Header> headers_;
  std::span<const Row> rows_;
};

/// A header or an option as it is compared: letters and digits in lower case, no unit.
std::string comparable(std::string_view text);

/// "N1; N2; N3" as its pieces, without blanks.
std::vector<std::string_view> pieces(std::string_view text, char separator = ';');

/// A number with a point or a comma; nothing where anything else stands beside it.
std::optional<double> numberIn(std::string_view text);

}  // namespace exportifc::saf
