#include "library/takeoff/takeoff_tables.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <span>
#include <utility>

#include "library/text/aligned_lines.h"
#include "library/text/messages.h"

namespace exportifc {

namespace {

// ---- what each column shows of a line

/// One line of a table: what it is about, and the bars.
struct Line {
  std::string name;    ///< of a section, a group, a layer
  std::string code{};  ///< of a group, in every language
  std::string text{};
  std::string material{};
  const SectionTakeoff* section = nullptr;
  bool isTotal = false;
  Quantities sum{};
};

/// A measure in units of its column's last decimal.
std::int64_t scaled(double value, int decimals) {
  return std::llround(value * std::pow(10.0, decimals));
}

TakeoffCell textCell(const std::string& text) {
  return text.empty() ? TakeoffCell{} : TakeoffCell{text};
}

struct Column {
  std::string_view key;
  const Text& title;
  int decimals;
  TakeoffCell (*cell)(const Line& line, int decimals);
};

bool isUndrawn(const Line& line) { return line.section != nullptr && !line.section->isDrawn; }

/// A measure of a section; one that is not drawn has none.
template <auto measure>
TakeoffCell ofSection(const Line& line, int decimals) {
  return line.section == nullptr || isUndrawn(line) ? TakeoffCell{}
                                                    : scaled(measure(*line.section), decimals);
}

/// What adds up.
template <std::int64_t Quantities::*quantity>
TakeoffCell ofBars(const Line& line, int /*decimals*/) {
  return line.sum.*quantity;
}

/// What follows from such a measure and adds up.
template <std::int64_t Quantities::*quantity>
TakeoffCell ofDrawnBars(const Line& line, int /*decimals*/) {
  return isUndrawn(line) ? TakeoffCell{} : line.sum.*quantity;
}

template <std::string Line::*word>
TakeoffCell ofWords(const Line& line, int /*decimals*/) {
  return textCell(line.*word);
}

double areaCm2(const SectionTakeoff& section) { return section.area * 1e-2; }
double kilogramsPerMetre(const SectionTakeoff& section) { return section.massPerMetre(); }
double paintPerMetre(const SectionTakeoff& section) { return section.perimeter * 1e-3; }

constexpr int isText = -1;
constexpr std::string_view codeKey = "group";

// Lengths and masses of `Quantities` are whole millimetres and grams: as metres and kilograms they
// have three decimals.
constexpr Column sectionColumns[] = {
    {"section", texts::takeoffSection, isText, ofWords<&Line::name>},
    {"text", texts::takeoffText, isText, ofWords<&Line::text>},
    {"material", texts::takeoffMaterial, isText, ofWords<&Line::material>},
    {"bars", texts::takeoffBars, 0, ofBars<&Quantities::bars>},
    {"pieces", texts::takeoffPieces, 0, ofBars<&Quantities::pieces>},
    {"lengthM", texts::takeoffLength, 3, ofBars<&Quantities::length>},
    {"areaCm2", texts::takeoffArea, 2, ofSection<areaCm2>},
    {"massPerMetreKg", texts::takeoffMassPerMetre, 3, ofSection<kilogramsPerMetre>},
    {"massKg", texts::takeoffMass, 3, ofDrawnBars<&Quantities::mass>},
    {"paintPerMetreM2", texts::takeoffPaintPerMetre, 3, ofSection<paintPerMetre>},
    {"paintM2", texts::takeoffPaint, 3, ofDrawnBars<&Quantities::paint>},
    {"shortestMm", texts::takeoffShortest, 0, ofBars<&Quantities::shortest>},
    {"longestMm", texts::takeoffLongest, 0, ofBars<&Quantities::longest>},
};

template <const Text& title>
constexpr Column groupColumns[] = {
    {codeKey, title, isText, ofWords<&Line::code>},
    {"name", title, isText, ofWords<&Line::name>},
    {"bars", texts::takeoffBars, 0, ofBars<&Quantities::bars>},
    {"pieces", texts::takeoffPieces, 0, ofBars<&Quantities::pieces>},
    {"lengthM", texts::takeoffLength, 3, ofBars<&Quantities::length>},
    {"massKg", texts::takeoffMass, 3, ofDrawnBars<&Quantities::mass>},
    {"paintM2", texts::takeoffPaint, 3, ofDrawnBars<&Quantities::paint>},
};

TakeoffCell cutLength(const Line& line, int /*decimals*/) {
  // Of the line of totals, the bars have many lengths.
  return line.sum.shortest == line.sum.longest && !line.text.empty() ? TakeoffCell{line.sum.longest}
                                                                     : TakeoffCell{};
}

constexpr Column cutColumns[] = {
    {"section", texts::takeoffSection, isText, ofWords<&Line::name>},
    {"text", texts::takeoffText, isText, ofWords<&Line::text>},
    {"cutMm", texts::takeoffCut, 0, cutLength},
    {"bars", texts::takeoffBars, 0, ofBars<&Quantities::bars>},
    {"pieces", texts::takeoffPieces, 0, ofBars<&Quantities::pieces>},
    {"lengthM", texts::takeoffLength, 3, ofBars<&Quantities::length>},
    {"massKg", texts::takeoffMass, 3, ofDrawnBars<&Quantities::mass>},
};

// ---- the lines

Line sectionLine(const Model& model, const SectionTakeoff& figures, const Quantities& sum) {
  const ModelSection& section = model.sections[static_cast<std::size_t>(figures.section)];
  Line line{.name = section.name, .text = section.text, .section = &figures, .sum = sum};
  if (section.material >= 0) {
    line.material = model.materials[static_cast<std::size_t>(section.material)].name;
  }
  return line;
}

std::vector<Line> sectionLines(const Model& model, const Takeoff& takeoff) {
  std::vector<Line> lines;
  for (const SectionTakeoff& section : takeoff.sections) {
    lines.push_back(sectionLine(model, section, section.sum));
  }
  return lines;
}

std::vector<Line> cutLines(const Model& model, const Takeoff& takeoff) {
  std::vector<Line> lines;
  auto section = takeoff.sections.begin();
  for (const CutLength& cut : takeoff.cuts) {
    section = std::find_if(section, takeoff.sections.end(),
                           [&](const SectionTakeoff& one) { return one.section == cut.section; });
    lines.push_back(sectionLine(model, *section, cut.sum));
  }
  return lines;
}

std::vector<Line> groupLines(const Takeoff& takeoff) {
  struct Name {
    const char* code;
    const Text& text;
  };
  // By the numbers of `BarGroup`.
  const Name names[] = {{"direct", texts::takeoffDirect},
                        {"frames", texts::takeoffFrames},
                        {"trusses", texts::takeoffTrusses}};
  static_assert(std::size(names) == static_cast<std::size_t>(BarGroup::truss) + 1);
  std::vector<Line> lines;
  for (const GroupTakeoff& group : takeoff.groups) {
    const Name& name = names[static_cast<std::size_t>(group.group)];
    lines.push_back({.name = say(name.text), .code = name.code, .sum = group.sum});
  }
  return lines;
}

std::vector<Line> layerLines(const Model& model, const Takeoff& takeoff) {
  std::vector<Line> lines;
  for (const LayerTakeoff& layer : takeoff.layers) {
    lines.push_back({.name = layer.layer < 0 ? std::string(say(texts::takeoffNoLayer))
                                             : model.layers[static_cast<std::size_t>(layer.layer)],
                     .sum = layer.sum});
  }
  return lines;
}

TakeoffTable tableOf(std::string_view key, const Text& title, std::span<const Column> columns,
                     const std::vector<Line>& lines, const Quantities& total) {
  TakeoffTable table{.key = key, .title = say(title)};
  const auto cellsOf = [&](const Line& line) {
    std::vector<TakeoffCell> cells;
    for (const Column& column : columns) {
      cells.push_back(column.cell(line, column.decimals));
    }
    return cells;
  };
  for (const Column& column : columns) {
    table.columns.push_back({.key = column.key,
                             .title = say(column.title),
                             .isText = column.decimals == isText,
                             .decimals = std::max(column.decimals, 0)});
  }
  for (const Line& line : lines) {
    table.rows.push_back(cellsOf(line));
  }
  table.total = cellsOf({.name = say(texts::takeoffTotal), .isTotal = true, .sum = total});
  return table;
}

bool isEmpty(const TakeoffCell& cell) { return std::holds_alternative<std::monostate>(cell); }

// ---- as text

/// Quoted where it must be. Spreadsheets take a text that begins so for a formula.
std::string csvText(std::string text) {
  if (!text.empty() && std::string_view("=+-@").find(text.front()) != std::string_view::npos) {
    text.insert(0, 1, '\'');
  }
  if (text.find_first_of("\";,\r\n") == std::string::npos) {
    return text;
  }
  std::string quoted = "\"";
  for (const char letter : text) {
    quoted += letter;
    if (letter == '"') {
      quoted += letter;
    }
  }
  return quoted + '"';
}

std::string csvCell(const TakeoffCell& cell, const TakeoffColumn& column) {
  if (const auto* const text = std::get_if<std::string>(&cell)) {
    return csvText(*text);
  }
  const auto* const number = std::get_if<std::int64_t>(&cell);
  return number == nullptr ? std::string() : withDecimalSign(plainNumber(*number, column.decimals));
}

// In sheets texts are texts, whatever they begin with, and numbers have no language.
Cell sheetCell(const TakeoffCell& cell, const TakeoffColumn& column) {
  if (const auto* const text = std::get_if<std::string>(&cell)) {
    return {.kind = Cell::Kind::text, .text = *text};
  }
  const auto* const number = std::get_if<std::int64_t>(&cell);
  return number == nullptr
             ? Cell{}
             : Cell{.kind = Cell::Kind::number, .text = plainNumber(*number, column.decimals)};
}

std::string cellForPeople(const TakeoffCell& cell, const TakeoffColumn& column) {
  if (const auto* const text = std::get_if<std::string>(&cell)) {
    return *text;
  }
  const auto* const number = std::get_if<std::int64_t>(&cell);
  if (number == nullptr) {
    return column.isText ? "" : "-";
  }
  return decimalText(static_cast<double>(*number) / std::pow(10.0, column.decimals),
                     column.decimals);
}

}  // namespace

std::vector<TakeoffTable> takeoffTables(const Model& model, const Takeoff& takeoff) {
  std::vector<TakeoffTable> tables = {
      tableOf("sections", texts::takeoffSections, sectionColumns, sectionLines(model, takeoff),
              takeoff.total),
      tableOf("groups", texts::takeoffGroups, groupColumns<texts::takeoffGroup>,
              groupLines(takeoff), takeoff.total),
      tableOf("layers", texts::takeoffLayers, groupColumns<texts::takeoffLayer>,
              layerLines(model, takeoff), takeoff.total),
      tableOf("cuts", texts::takeoffCuts, cutColumns, cutLines(model, takeoff), takeoff.total),
  };
  std::erase_if(tables, [](const TakeoffTable& table) { return table.rows.empty(); });
  return tables;
}

void keepColumnsForPeople(TakeoffTable& table) {
  for (std::size_t i = table.columns.size(); i-- > 0;) {
    const std::string_view key = table.columns[i].key;
    const bool repeats = key == "text";
    const bool useless =
        key == codeKey || std::all_of(table.rows.begin(), table.rows.end(), [&](const auto& cells) {
          return isEmpty(cells[i]) || (repeats && cells[i] == cells.front());
        });
    if (useless) {
      const auto at = static_cast<std::ptrdiff_t>(i);
      table.columns.erase(table.columns.begin() + at);
      table.total.erase(table.total.begin() + at);
      for (auto& cells : table.rows) {
        cells.erase(cells.begin() + at);
      }
    }
  }
}

std::string plainNumber(std::int64_t value, int decimals) {
  std::string digits = std::to_string(value);
  const auto behind = static_cast<std::size_t>(decimals);
  if (behind == 0) {
    return digits;
  }
  if (digits.size() <= behind) {
    digits.insert(0, behind + 1 - digits.size(), '0');
  }
  return digits.insert(digits.size() - behind, 1, '.');
}

void writeTakeoffCsv(const std::vector<TakeoffTable>& tables, ByteSink& output) {
  // The comma is the decimal sign where it does not separate.
  const char* const separator = *say(texts::decimalSign) == ',' ? ";" : ",";
  std::string text;
  const auto addLine = [&](const TakeoffTable& table, const auto& cellText) {
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
      text += (i == 0 ? "" : separator) + cellText(i);
    }
    text += "\r\n";
  };
  for (const TakeoffTable& table : tables) {
    text += (&table == &tables.front() ? "" : "\r\n") + csvText(table.title) + "\r\n";
    addLine(table, [&](std::size_t i) { return csvText(table.columns[i].title); });
    const auto addCells = [&](const std::vector<TakeoffCell>& cells) {
      addLine(table, [&](std::size_t i) { return csvCell(cells[i], table.columns[i]); });
      output.write(text.data(), text.size());
      text.clear();
    };
    std::for_each(table.rows.begin(), table.rows.end(), addCells);
    addCells(table.total);
  }
  output.write(text.data(), text.size());
}

std::vector<WrittenSheet> takeoffSheets(const std::vector<TakeoffTable>& tables) {
  std::vector<WrittenSheet> sheets;
  for (const TakeoffTable& table : tables) {
    Sheet sheet{.name = table.title};
    const auto addRow = [&](const auto& cellOf) {
      Row& row =
          sheet.rows.emplace_back(Row{.number = static_cast<std::int32_t>(sheet.rows.size()) + 1});
      for (std::size_t i = 0; i < table.columns.size(); ++i) {
        Cell cell = cellOf(i);
        cell.column = static_cast<std::int32_t>(i);
        row.cells.push_back(std::move(cell));
      }
    };
    const auto addCells = [&](const std::vector<TakeoffCell>& cells) {
      addRow([&](std::size_t i) { return sheetCell(cells[i], table.columns[i]); });
    };
    addRow([&](std::size_t i) {
      return Cell{.kind = Cell::Kind::text, .text = table.columns[i].title};
    });
    std::for_each(table.rows.begin(), table.rows.end(), addCells);
    addCells(table.total);
    sheets.push_back({.sheet = std::move(sheet)});
  }
  return sheets;
}

std::vector<std::string> takeoffLines(const TakeoffTable& table) {
  std::vector<std::vector<std::string>> lines(1);
  for (const TakeoffColumn& column : table.columns) {
    lines.front().push_back(column.title);
  }
  const auto add = [&](const std::vector<TakeoffCell>& cells) {
    auto& line = lines.emplace_back();
    for (std::size_t i = 0; i < cells.size(); ++i) {
      line.push_back(cellForPeople(cells[i], table.columns[i]));
    }
  };
  std::for_each(table.rows.begin(), table.rows.end(), add);
  add(table.total);
  return alignedLines(lines, [&](std::size_t column) { return table.columns[column].isText; });
}

JsonObject takeoffJson(const std::vector<TakeoffTable>& tables) {
  const auto objectOf = [](const TakeoffTable& table, const std::vector<TakeoffCell>& cells,
                           std::size_t first = 0) {
    JsonObject object;
    for (std::size_t i = first; i < cells.size(); ++i) {
      const TakeoffColumn& column = table.columns[i];
      const auto* const text = std::get_if<std::string>(&cells[i]);
      const auto* const number = std::get_if<std::int64_t>(&cells[i]);
      if (text != nullptr) {
        object.addText(column.key, *text);
      } else if (number != nullptr && column.decimals == 0) {
        object.addInteger(column.key, *number);
      } else if (number != nullptr) {
        object.addReal(column.key, static_cast<double>(*number) / std::pow(10.0, column.decimals));
      }
    }
    return object;
  };
  JsonObject json;
  for (const TakeoffTable& table : tables) {
    JsonList rows;
    for (const auto& cells : table.rows) {
      rows.add(objectOf(table, cells));
    }
    json.add(table.key, rows);
    if (&table == &tables.front()) {
      json.add("total", objectOf(table, table.total, 1));  // but for the word "Total"
    }
  }
  return json;
}

}  // namespace exportifc
