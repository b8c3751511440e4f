// The columns of plain tables: one row each.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "library/text/text.h"

namespace exportifc {

enum class Table : std::uint8_t { nodes, sections, bars };
inline constexpr std::size_t tableCount = 3;

enum class Column : std::uint8_t {
  node,
  x,
  y,
  z,
  section,  // in two tables
  text,
  family,
  catalogue,
  d0,  // the other nine follow
  d9 = d0 + 9,
  material,
  density,
  bar,
  start,
  end,
  type,
  visible,
  angle,
  quarterTurns,
  layer,
};

/// "d0" to "d9".
constexpr Column dimensionColumn(int index) {
  return static_cast<Column>(static_cast<int>(Column::d0) + index);
}

/// What may stand in brackets behind a header.
enum class ColumnUnit : std::uint8_t { none, length, angle, density };

struct ColumnRow {
  Column column;
  Table table;
  std::string_view english;  ///< the word of headers, as the program writes it
  std::string_view portuguese;
  bool isRequired;
  ColumnUnit unit;
  const Text& note;  ///< what stands in it
};

std::span<const ColumnRow> tableColumns();

/// "nodes", as sheets and files are called; also found in Portuguese and in any case.
std::string_view tableName(Table table);
std::optional<Table> findTable(std::string_view name);

/// A header of two parts: "angle [deg]".
struct Header {
  std::string word;
  std::string unit;
};
Header splitHeader(std::string_view text);

/// The column of a header in that table; null when there is none.
const ColumnRow* findColumn(Table table, std::string_view word);

/// The word of headers in the user's language.
std::string_view headerWord(const ColumnRow& row);

}  // namespace exportifc
