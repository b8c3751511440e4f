#include <algorithm>
#include <array>
#include <charconv>
#include <string>
#include <string_view>
#include <utility>

#include "library/formats/tables/columns.h"
#include "library/formats/tables/tables.h"
#include "library/frame/section_check.h"
#include "library/text/messages.h"
#include "library/workbook/workbook_writer.h"
#include "model/batch_source.h"

namespace exportifc {

namespace {

Cell textCell(std::string text) {
  return {.kind = text.empty() ? Cell::Kind::empty : Cell::Kind::text, .text = std::move(text)};
}

/// The shortest digits that read back as the same number.
template <class Number>
Cell numberCell(Number value) {
  std::array<char, 32> buffer{};
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
  return {.kind = Cell::Kind::number,
          .text = {buffer.data(), end.ptr},
          .number = static_cast<double>(value)};
}

Cell noCell() { return {}; }

/// A table column by column, of which those without a value in any row are left out.
class TableBuilder {
 public:
  explicit TableBuilder(Table table) : sheet_{.name = std::string(tableName(table))} {}

  void begin(std::vector<std::string> headers) { headers_ = std::move(headers); }
  void optionalFrom(std::size_t column) { firstOptional_ = column; }
  void row(std::vector<Cell> cells) {
    used_.resize(headers_.size(), false);
    Row row{.number = static_cast<std::int32_t>(sheet_.rows.size()) + 2};
    for (std::size_t i = 0; i < cells.size(); ++i) {
      if (cells[i].kind != Cell::Kind::empty) {
        used_[i] = true;
        cells[i].column = static_cast<std::int32_t>(i);
        row.cells.push_back(std::move(cells[i]));
      }
    }
    sheet_.rows.push_back(std::move(row));
  }

  Sheet take() {
    used_.resize(headers_.size(), false);
    std::vector<std::int32_t> places(headers_.size(), -1);
    Row header;
    for (std::size_t i = 0; i < headers_.size(); ++i) {
      if (i < firstOptional_ || used_[i]) {
        places[i] = static_cast<std::int32_t>(header.cells.size());
        header.cells.push_back(
            {.column = places[i], .kind = Cell::Kind::text, .text = headers_[i]});
      }
    }
    for (Row& row : sheet_.rows) {
      for (Cell& cell : row.cells) {
        cell.column = places[static_cast<std::size_t>(cell.column)];
      }
    }
    sheet_.rows.insert(sheet_.rows.begin(), std::move(header));
    return std::move(sheet_);
  }

 private:
  Sheet sheet_;
  std::vector<std::string> headers_;
  std::vector<bool> used_;
  std::size_t firstOptional_ = static_cast<std::size_t>(-1);
};

/// Nodes are named by their places, counted from 1.
Sheet nodeTable(const Model& model) {
  TableBuilder table(Table::nodes);
  const auto unit =
      static_cast<std::size_t>(model.unitCode >= 0 && model.unitCode <= 2 ? model.unitCode : 2);
  const auto header = [&](const char* axis) {
    return axis + (" [" + std::string(unitNames[unit]) + "]");
  };
  table.begin({"node", header("x"), header("y"), header("z")});
  for (std::size_t i = 0; i < model.nodes.size(); ++i) {
    const auto& node = model.nodes[i];
    table.row({numberCell(static_cast<std::int32_t>(i) + 1), numberCell(node[0]),
               numberCell(node[1]), numberCell(node[2])});
  }
  return table.take();
}

Sheet sectionTable(const Model& model) {
  TableBuilder table(Table::sections);
  std::vector<std::string> headers{"section", "text", "catalogue", "material",
                                   "density [kg/m\xC2\xB3]"};
  for (std::size_t i = 0; i < SectionDims{}.size(); ++i) {
    headers.push_back("d" + std::to_string(i));
  }
  table.begin(std::move(headers));
  table.optionalFrom(2);
  for (const ModelSection& section : model.sections) {
    const bool isRolled = isFromCatalogue(section);
    std::vector<Cell> cells{textCell(section.name), isRolled ? noCell() : textCell(section.text),
                            isRolled ? textCell(section.catalogue) : noCell(), noCell(), noCell()};
    if (section.material >= 0) {
      const ModelMaterial& material = model.materials[static_cast<std::size_t>(section.material)];
      cells[3] = textCell(material.name);
      cells[4] = material.density > 0.0 ? numberCell(material.density) : noCell();
    }
    if (!isRolled && section.dims != parseSectionDims(section.text)) {
      const auto last = std::find_if(section.dims.rbegin(), section.dims.rend(),
                                     [](float dim) { return dim != 0.0F; });
      for (auto dim = section.dims.begin(); dim != last.base(); ++dim) {
        cells.push_back(numberCell(*dim));
      }
      if (last == section.dims.rend()) {
        cells.push_back(numberCell(0.0F));  // the text would say others
      }
    }
    table.row(std::move(cells));
  }
  return table.take();
}

Sheet barTable(const Model& model) {
  TableBuilder table(Table::bars);
  table.begin({"start", "end", "section", "type", "visible", "angle [rad]", "quarter turns", "bar",
               "layer"});
  table.optionalFrom(3);
  for (std::size_t i = 0; i < model.bars.size(); ++i) {
    const ModelBar& bar = model.bars[i];
    const std::int32_t layer = i < model.barLayers.size() ? model.barLayers[i] : -1;
    table.row({numberCell(bar.start + 1), numberCell(bar.end + 1),
               textCell(model.sections[static_cast<std::size_t>(bar.section)].name),
               bar.type != 0 ? textCell(std::string(barTypeNames[bar.type])) : noCell(),
               bar.visible ? noCell() : textCell("no"),
               bar.angle != 0.0F ? numberCell(bar.angle) : noCell(),
               bar.quarterTurns != 0 ? numberCell(bar.quarterTurns) : noCell(),
               i < model.barNames.size() ? textCell(model.barNames[i]) : noCell(),
               layer >= 0 ? textCell(model.layers[static_cast<std::size_t>(layer)]) : noCell()});
  }
  return table.take();
}

}  // namespace

std::vector<Sheet> tablesOf(const Model& model) {
  std::vector<Sheet> tables;
  tables.push_back(nodeTable(model));
  tables.push_back(sectionTable(model));
  tables.push_back(barTable(model));
  return tables;
}

Losses lossesInTables(const Model& model) {
  Losses losses;
  if (std::any_of(model.sections.begin(), model.sections.end(),
                  [](const ModelSection& section) { return section.name.empty(); })) {
    losses.obstacle = say(texts::tablesNoName);
  }
  const auto most = static_cast<std::int64_t>(std::max(model.nodes.size(), model.bars.size())) + 1;
  if (most > mostSheetRows) {
    losses.obstacle = say(texts::tablesTooLong, {numberText(mostSheetRows), numberText(most)});
  }
  if (!model.title.empty()) {
    losses.lines.push_back(say(texts::lossTitle, {model.title}));
  }
  return losses;
}

void writeTableWorkbook(const Model& model, ByteSink& output) {
  std::vector<WrittenSheet> sheets;
  for (Sheet& sheet : tablesOf(model)) {
    sheets.push_back({.sheet = std::move(sheet)});
  }
  writeWorkbook(sheets, output);
}

}  // namespace exportifc
