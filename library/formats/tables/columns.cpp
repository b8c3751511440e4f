#include "library/formats/tables/columns.h"

#include <algorithm>
#include <iterator>

#include "library/text/messages.h"
#include "library/text/text_encoding.h"

namespace exportifc {

namespace {

constexpr auto dimension = dimensionColumn;

// clang-format off
constexpr ColumnRow columns[] = {
    {Column::node,         Table::nodes,    "node",          "nó",        true,  ColumnUnit::none,    texts::columnNode},
    {Column::x,            Table::nodes,    "x",             "x",         true,  ColumnUnit::length,  texts::columnCoordinate},
    {Column::y,            Table::nodes,    "y",             "y",         true,  ColumnUnit::length,  texts::columnCoordinate},
    {Column::z,            Table::nodes,    "z",             "z",         true,  ColumnUnit::length,  texts::columnCoordinate},
    {Column::section,      Table::sections, "section",       "seção",     true,  ColumnUnit::none,    texts::columnSectionName},
    {Column::text,         Table::sections, "text",          "texto",     false, ColumnUnit::none,    texts::columnText},
    {Column::family,       Table::sections, "family",        "família",   false, ColumnUnit::none,    texts::columnFamily},
    {Column::catalogue,    Table::sections, "catalogue",     "catálogo",  false, ColumnUnit::none,    texts::columnCatalogue},
    {dimension(0),         Table::sections, "d0",            "d0",        false, ColumnUnit::none,    texts::columnDimension},
    {dimension(1),         Table::sections, "d1",            "d1",        false, ColumnUnit::none,    texts::columnDimension},
    {dimension(2),         Table::sections, "d2",            "d2",        false, ColumnUnit::none,    texts::columnDimension},
    {dimension(3),         Table::sections, "d3",            "d3",        false, ColumnUnit::none,    texts::columnDimension},
    {dimension(4),         Table::sections, "d4",            "d4",        false, ColumnUnit::none,    texts::columnDimension},
    {dimension(5),         Table::sections, "d5",            "d5",        false, ColumnUnit::none,    texts::columnDimension},
    {dimension(6),         Table::sections, "d6",            "d6",        false, ColumnUnit::none,    texts::columnDimension},
    {dimension(7),         Table::sections, "d7",            "d7",        false, ColumnUnit::none,    texts::columnDimension},
    {dimension(8),         Table::sections, "d8",            "d8",        false, ColumnUnit::none,    texts::columnDimension},
    {dimension(9),         Table::sections, "d9",            "d9",        false, ColumnUnit::none,    texts::columnDimension},
    {Column::material,     Table::sections, "material",      "material",  false, ColumnUnit::none,    texts::columnMaterial},
    {Column::density,      Table::sections, "density",       "densidade", false, ColumnUnit::density, texts::columnDensity},
    {Column::bar,          Table::bars,     "bar",           "barra",     false, ColumnUnit::none,    texts::columnBar},
    {Column::start,        Table::bars,     "start",         "início",    true,  ColumnUnit::none,    texts::columnEnd},
    {Column::end,          Table::bars,     "end",           "fim",       true,  ColumnUnit::none,    texts::columnEnd},
    {Column::section,      Table::bars,     "section",       "seção",     true,  ColumnUnit::none,    texts::columnBarSection},
    {Column::type,         Table::bars,     "type",          "tipo",      false, ColumnUnit::none,    texts::columnType},
    {Column::visible,      Table::bars,     "visible",       "visível",   false, ColumnUnit::none,    texts::columnVisible},
    {Column::angle,        Table::bars,     "angle",         "ângulo",    false, ColumnUnit::angle,   texts::columnAngle},
    {Column::quarterTurns, Table::bars,     "quarter turns", "quartos",   false, ColumnUnit::none,    texts::columnQuarterTurns},
    {Column::layer,        Table::bars,     "layer",         "camada",    false, ColumnUnit::none,    texts::columnLayer},
};

struct TableWord {
  Table table;
  std::string_view english, portuguese;
};
constexpr TableWord tables[] = {
    {Table::nodes,    "nodes",    "nós"},
    {Table::sections, "sections", "seções"},
    {Table::bars,     "bars",     "barras"},
};
// clang-format on

/// Words are the same with and without accents, capitals and blanks.
std::string plain(std::string_view word) {
  std::string letters;
  for (const char letter : transliterated(word)) {
    if (letter >= 'A' && letter <= 'Z') {
      letters += static_cast<char>(letter - 'A' + 'a');
    } else if (letter != ' ' && letter != '_') {
      letters += letter;
    }
  }
  return letters;
}

template <class Row>
bool isCalled(const Row& row, const std::string& word) {
  return plain(row.english) == word || plain(row.portuguese) == word;
}

std::string_view trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t\r\n");
  if (first == std::string_view::npos) {
    return {};
  }
  return text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

}  // namespace

std::span<const ColumnRow> tableColumns() { return columns; }

std::string_view tableName(Table table) { return tables[static_cast<std::size_t>(table)].english; }

std::optional<Table> findTable(std::string_view name) {
  const auto* const found =
      std::find_if(std::begin(tables), std::end(tables),
                   [word = plain(name)](const TableWord& row) { return isCalled(row, word); });
  return found == std::end(tables) ? std::nullopt : std::optional(found->table);
}

Header splitHeader(std::string_view text) {
  const std::size_t bracket = text.find_first_of("[(");
  Header header{.word = std::string(trimmed(text.substr(0, bracket))), .unit = {}};
  if (bracket != std::string_view::npos) {
    const std::string_view rest = text.substr(bracket + 1);
    header.unit = trimmed(rest.substr(0, rest.find_first_of("])")));
  }
  return header;
}

const ColumnRow* findColumn(Table table, std::string_view word) {
  const auto* const found = std::find_if(std::begin(columns), std::end(columns),
                                         [table, name = plain(word)](const ColumnRow& row) {
                                           return row.table == table && isCalled(row, name);
                                         });
  return found == std::end(columns) ? nullptr : found;
}

std::string_view headerWord(const ColumnRow& row) {
  return language() == Language::portuguese ? row.portuguese : row.english;
}

}  // namespace exportifc
