// The tables that people start from.
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "library/formats/tables/columns.h"
#include "library/formats/tables/tables.h"
#include "library/sections/section_catalogue.h"
#include "library/text/messages.h"

namespace exportifc {

namespace {

/// One value of the example.
struct Example {
  Column column;
  std::string_view text;
  bool isNumber = false;
};
using ExampleRow = std::vector<Example>;

ExampleRow node(std::string_view name, std::string_view x, std::string_view z) {
  return {{Column::node, name}, {Column::x, x, true}, {Column::y, "0", true}, {Column::z, z, true}};
}

ExampleRow bar(std::string_view name, std::string_view start, std::string_view end,
               std::string_view section, std::string_view type) {
  return {{Column::bar, name},
          {Column::start, start},
          {Column::end, end},
          {Column::section, section},
          {Column::type, type}};
}

/// A portal with a brace; its sections are given in the three ways.
std::vector<ExampleRow> exampleOf(Table table) {
  switch (table) {
    case Table::nodes:
      return {node("N1", "0", "0"), node("N2", "0", "3000"), node("N3", "5000", "3000"),
              node("N4", "5000", "0")};
    case Table::sections:
      return {{{Column::section, "P1"},
               {Column::catalogue, "HEB 180"},
               {Column::material, "A36"},
               {Column::density, "7850", true}},
              {{Column::section, "V1"}, {Column::text, "W 200 100 8 6"}, {Column::material, "A36"}},
              {{Column::section, "C1"},
               {Column::family, "L"},
               {Column::d0, "50", true},
               {dimensionColumn(1), "50", true},
               {dimensionColumn(2), "5", true},
               {dimensionColumn(3), "5", true}}};
    case Table::bars: break;
  }
  return {bar("B1", "N1", "N2", "P1", "column"), bar("B2", "N4", "N3", "P1", "column"),
          bar("B3", "N2", "N3", "V1", "frame-beam"), bar("B4", "N1", "N3", "C1", "bracing")};
}

std::string headerText(const ColumnRow& row) {
  std::string word(headerWord(row));
  switch (row.unit) {
    case ColumnUnit::length: return word + " [mm]";
    case ColumnUnit::angle: return word + " [deg]";
    case ColumnUnit::density: return word + " [kg/m\xC2\xB3]";
    case ColumnUnit::none: break;
  }
  return word;
}

std::vector<std::string> wordsOf(Column column) {
  if (column == Column::type) {
    return {barTypeNames.begin(), barTypeNames.end()};
  }
  if (column == Column::visible) {
    return {say(texts::yes), say(texts::no)};
  }
  std::vector<std::string> words;
  if (column == Column::family) {
    for (const Family& family : families()) {
      words.push_back(family.word);
    }
  }
  return words;
}

WrittenSheet templateOf(Table table) {
  WrittenSheet written{.sheet = {.name = std::string(tableName(table))}};
  std::vector<ExampleRow> example = exampleOf(table);
  std::vector<Row>& rows = written.sheet.rows;
  for (std::size_t i = 0; i <= example.size(); ++i) {
    rows.push_back({.number = static_cast<std::int32_t>(i) + 1});
  }
  std::int32_t place = 0;
  for (const ColumnRow& row : tableColumns()) {
    if (row.table != table) {
      continue;
    }
    rows[0].cells.push_back({.column = place, .kind = Cell::Kind::text, .text = headerText(row)});
    written.notes.push_back({.column = place, .text = say(row.note)});
    if (std::vector<std::string> words = wordsOf(row.column); !words.empty()) {
      written.lists.push_back({.column = place, .words = std::move(words)});
    }
    for (std::size_t i = 0; i < example.size(); ++i) {
      for (const Example& value : example[i]) {
        if (value.column == row.column) {
          rows[i + 1].cells.push_back(
              {.column = place,
               .kind = value.isNumber ? Cell::Kind::number : Cell::Kind::text,
               .text = std::string(value.text)});
        }
      }
    }
    ++place;
  }
  return written;
}

}  // namespace

std::vector<WrittenSheet> templateTables() {
  return {templateOf(Table::nodes), templateOf(Table::sections), templateOf(Table::bars)};
}

}  // namespace exportifc
