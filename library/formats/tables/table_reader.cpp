#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <numbers>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "library/formats/tables/columns.h"
#include "library/formats/tables/tables.h"
#include "library/frame/model_error.h"
#include "library/frame/pointer.h"
#include "library/sections/rolled_sections.h"
#include "library/text/messages.h"
#include "library/text/nearest.h"
#include "library/text/text_encoding.h"
#include "model/batch_source.h"

namespace exportifc {

namespace {

/// The columns of one table, found by their headers.
class TableLayout {
 public:
  TableLayout(Table table, const Sheet* sheet, TableKind kind)
      : table_(table), sheet_(sheet), kind_(kind) {
    if (sheet == nullptr || sheet->rows.empty()) {
      throw ModelError({.code = "table-missing",
                        .message = say(texts::tableMissing, {tableName(table)}),
                        .file = kind == TableKind::files ? std::string(tableName(table)) + ".csv"
                                                         : std::string()});
    }
    for (const Cell& cell : sheet->rows.front().cells) {
      takeHeader(sheet->rows.front(), cell);
    }
    // A value in a column without a header would be lost.
    for (const Row& row : sheet->rows) {
      for (const Cell& cell : row.cells) {
        if (cellAt(sheet->rows.front(), cell.column) == nullptr) {
          throw fault(row, cell.column, say(texts::headerNone),
                      {.code = "header-none", .value = cell.text});
        }
      }
    }
    for (const ColumnRow& row : tableColumns()) {
      if (row.table == table && row.isRequired && !has(row.column)) {
        throw fault(sheet->rows.front(), -1, say(texts::headerMissing, {headerWord(row)}),
                    {.code = "header-missing", .allowed = headers()});
      }
    }
  }

  bool has(Column column) const { return places_[index(column)] >= 0; }
  const std::string& unit(Column column) const { return units_[index(column)]; }
  const Cell* cell(const Row& row, Column column) const {
    return has(column) ? cellAt(row, places_[index(column)]) : nullptr;
  }
  /// Those below the header.
  std::size_t rowCount() const { return sheet_->rows.size() - 1; }
  const Row& row(std::size_t i) const { return sheet_->rows[i + 1]; }
  const Row& header() const { return sheet_->rows.front(); }

  /// Gives a problem its place: the cell, or the whole row.
  void place(Problem& problem, const Row& row, std::int32_t column) const {
    if (kind_ == TableKind::files) {
      problem.file = std::string(tableName(table_)) + ".csv";
      problem.place = {.line = row.number, .column = column < 0 ? 0 : column + 1};
    } else {
      problem.cell = cellName(sheet_->name, row.number, std::max(column, 0));
    }
  }
  void place(Problem& problem, const Row& row, Column column) const {
    place(problem, row, places_[index(column)]);
  }

  ModelError fault(const Row& row, std::int32_t column, std::string message, Problem facts) const {
    facts.message = std::move(message);
    place(facts, row, column);
    return ModelError(std::move(facts));
  }
  ModelError fault(const Row& row, Column column, std::string message, Problem facts) const {
    return fault(row, places_[index(column)], std::move(message), std::move(facts));
  }

 private:
  static std::size_t index(Column column) { return static_cast<std::size_t>(column); }

  std::string headers() const {
    std::vector<std::string_view> words;
    for (const ColumnRow& row : tableColumns()) {
      if (row.table == table_) {
        words.push_back(headerWord(row));
      }
    }
    return joined(words);
  }

  void takeHeader(const Row& row, const Cell& cell) {
    const Header header = splitHeader(cell.text);
    const ColumnRow* const column = findColumn(table_, header.word);
    if (column == nullptr) {
      std::vector<std::string_view> words;
      for (const ColumnRow& known : tableColumns()) {
        if (known.table == table_) {
          words.insert(words.end(), {known.english, known.portuguese});
        }
      }
      const std::string near = nearest(header.word, words);
      throw fault(
          row, cell.column,
          say(texts::unknownHeader, {excerpt(cell.text), headers()}) +
              (near.empty() ? "" : say(texts::didYouMean, {near})),
          {.code = "unknown-header", .value = cell.text, .allowed = headers(), .suggestion = near});
    }
    if (has(column->column)) {
      throw fault(row, cell.column, say(texts::headerTwice, {headerWord(*column)}),
                  {.code = "header-twice", .value = cell.text});
    }
    places_[index(column->column)] = cell.column;
    units_[index(column->column)] = header.unit;
  }

  Table table_;
  const Sheet* sheet_;
  TableKind kind_;
  static constexpr std::size_t count = static_cast<std::size_t>(Column::layer) + 1;
  std::array<std::int32_t, count> places_ = [] {
    std::array<std::int32_t, count> none{};
    none.fill(-1);
    return none;
  }();
  std::array<std::string, count> units_{};
};

const Sheet* findSheet(const Workbook& workbook, Table table) {
  for (const std::string& name : workbook.sheetNames()) {
    if (findTable(name) == table) {
      return &workbook.sheet(name);
    }
  }
  return nullptr;
}

/// A number that people typed, with one decimal sign of either kind.
std::optional<double> numberIn(std::string text) {
  std::replace(text.begin(), text.end(), ',', '.');
  const std::size_t first = text.find_first_not_of(" +");
  const std::size_t last = text.find_last_not_of(' ');
  if (first == std::string::npos) {
    return std::nullopt;
  }
  double value = 0.0;
  const auto [end, error] = std::from_chars(text.data() + first, text.data() + last + 1, value);
  if (error != std::errc() || end != text.data() + last + 1 || !std::isfinite(value)) {
    return std::nullopt;
  }
  return value;
}

/// The words of a truth in both languages.
struct TruthWord {
  std::string_view word;
  bool value;
};
constexpr TruthWord truthWords[] = {{"true", true},   {"yes", true}, {"sim", true},
                                    {"s", true},      {"1", true},   {"verdadeiro", true},
                                    {"false", false}, {"no", false}, {"nao", false},
                                    {"n", false},     {"0", false},  {"falso", false}};

struct UnitFactor {
  std::string_view unit;
  double factor;
};
constexpr UnitFactor angleUnits[] = {{"deg", std::numbers::pi / 180},
                                     {"\xC2\xB0", std::numbers::pi / 180},
                                     {"grau", std::numbers::pi / 180},
                                     {"graus", std::numbers::pi / 180},
                                     {"rad", 1.0}};

/// Fills the model from the three tables, row by row.
class TableModel {
 public:
  TableModel(const Workbook& workbook, TableKind kind)
      : nodes_(Table::nodes, findSheet(workbook, Table::nodes), kind),
        sections_(Table::sections, findSheet(workbook, Table::sections), kind),
        bars_(Table::bars, findSheet(workbook, Table::bars), kind) {
    model_.format = kind == TableKind::sheets ? ModelFormat::tables : ModelFormat::csv;
  }

  Model read() {
    readUnit();
    for (std::size_t i = 0; i < nodes_.rowCount(); ++i) {
      readNode(nodes_.row(i));
    }
    for (std::size_t i = 0; i < sections_.rowCount(); ++i) {
      readSection(sections_.row(i));
    }
    const double angleFactor = readAngleUnit();
    for (std::size_t i = 0; i < bars_.rowCount(); ++i) {
      readBar(bars_.row(i), angleFactor);
    }
    model_.announcedBars = static_cast<std::int32_t>(model_.bars.size());
    if (!hasNames_) {
      model_.barNames.clear();
    }
    if (model_.layers.empty()) {
      model_.barLayers.clear();
    }
    return std::move(model_);
  }

 private:
  using Names = std::unordered_map<std::string, std::int32_t>;

  /// "x [mm]" says the unit; y and z may repeat it.
  void readUnit() {
    for (const Column column : {Column::x, Column::y, Column::z}) {
      const std::string& unit = nodes_.unit(column);
      const auto found = std::find(unitNames.begin(), unitNames.end(), unit);
      const auto code = static_cast<std::int32_t>(found - unitNames.begin());
      const bool isLeftOut = unit.empty() && column != Column::x;
      if (!isLeftOut &&
          (found == unitNames.end() || (column != Column::x && code != model_.unitCode))) {
        const std::string allowed =
            column == Column::x ? joined(unitNames)
                                : std::string(unitNames[static_cast<std::size_t>(model_.unitCode)]);
        throw nodes_.fault(nodes_.header(), column, say(texts::headerUnit, {allowed}),
                           {.code = "header-unit", .value = unit, .allowed = allowed});
      }
      if (column == Column::x) {
        model_.unitCode = code;
      }
    }
  }

  double readAngleUnit() const {
    if (!bars_.has(Column::angle)) {
      return 1.0;
    }
    const std::string& unit = bars_.unit(Column::angle);
    const auto* const found = std::find_if(std::begin(angleUnits), std::end(angleUnits),
                                           [&](const UnitFactor& row) { return row.unit == unit; });
    if (found == std::end(angleUnits)) {
      throw bars_.fault(bars_.header(), Column::angle, say(texts::headerUnit, {"deg, rad"}),
                        {.code = "header-unit", .value = unit, .allowed = "deg, rad"});
    }
    return found->factor;
  }

  void readNode(const Row& row) {
    const std::string name = required(nodes_, row, Column::node);
    const auto [known, isNew] =
        nodeIndexes_.emplace(name, static_cast<std::int32_t>(model_.nodes.size()));
    if (!isNew) {
      throw nodes_.fault(row, Column::node, say(texts::nodeTwice, {excerpt(name)}),
                         {.code = "name-twice", .value = name});
    }
    model_.nodes.push_back({number(nodes_, row, Column::x), number(nodes_, row, Column::y),
                            number(nodes_, row, Column::z)});
  }

  void readSection(const Row& row) {
    ModelSection section;
    section.name = required(sections_, row, Column::section);
    const auto [known, isNew] =
        sectionIndexes_.emplace(section.name, static_cast<std::int32_t>(model_.sections.size()));
    if (!isNew) {
      throw sections_.fault(row, Column::section, say(texts::sectionTwice, {excerpt(section.name)}),
                            {.code = "name-twice", .value = section.name});
    }
    readShape(row, section);
    section.material = readMaterial(row);
    model_.sections.push_back(std::move(section));
  }

  /// A section is given by its text, by its family with dimensions, or by a name of the catalogue.
  void readShape(const Row& row, ModelSection& section) {
    const std::string text = optional(sections_, row, Column::text);
    const std::string family = optional(sections_, row, Column::family);
    const std::string catalogue = optional(sections_, row, Column::catalogue);
    const int given =
        (text.empty() ? 0 : 1) + (family.empty() ? 0 : 1) + (catalogue.empty() ? 0 : 1);
    if (given != 1) {
      throw sections_.fault(row, Column::section,
                            say(texts::sectionOneWay, {excerpt(section.name)}),
                            {.code = "section-shape", .value = section.name});
    }
    SectionDims dims{};
    int count = 0;
    std::string digits;
    for (int i = 0; i < static_cast<int>(dims.size()); ++i) {
      const Column column = dimensionColumn(i);
      const Cell* const cell = sections_.cell(row, column);
      if (cell == nullptr) {
        continue;
      }
      for (; count < i; ++count) {
        digits += " 0";  // one that is left out between others
      }
      dims[static_cast<std::size_t>(i)] = number(sections_, row, column);
      digits += " " + shortest(dims[static_cast<std::size_t>(i)]);
      ++count;
    }
    if (!catalogue.empty()) {
      readCatalogue(row, catalogue, section);
      return;
    }
    section.text = text.empty() ? family + digits : text;
    section.dims = parseSectionDims(section.text);
    if (!text.empty() && count > 0) {
      section.dims = dims;
      section.givenDims = count;
    }
  }

  void readCatalogue(const Row& row, const std::string& name, ModelSection& section) {
    const RolledSection* const rolled = findRolledSection(name);
    if (rolled == nullptr) {
      const std::vector<std::string> near = nearestRolledSections(name);
      throw sections_.fault(row, Column::catalogue,
                            say(texts::sectionNotRolled, {excerpt(name)}) +
                                (near.empty() ? "" : say(texts::didYouMean, {near.front()})),
                            {.code = "catalogue",
                             .value = name,
                             .suggestion = near.empty() ? std::string() : near.front()});
    }
    section.text = sectionText(*rolled);
    section.catalogue = rolled->name;
    section.dims = parseSectionDims(section.text);
  }

  /// Of materials with one name the first row with a density says it.
  std::int32_t readMaterial(const Row& row) {
    const std::string name = optional(sections_, row, Column::material);
    const Cell* const cell = sections_.cell(row, Column::density);
    const double density = cell == nullptr ? 0.0 : wide(sections_, row, Column::density);
    if (cell != nullptr && density <= 0.0) {
      throw sections_.fault(row, Column::density, say(texts::positiveNumber, {excerpt(cell->text)}),
                            {.code = "unreadable", .value = cell->text});
    }
    if (name.empty()) {
      if (cell != nullptr) {
        throw sections_.fault(row, Column::density, say(texts::densityAlone),
                              {.code = "density-alone"});
      }
      return -1;
    }
    const auto found =
        std::find_if(model_.materials.begin(), model_.materials.end(),
                     [&](const ModelMaterial& material) { return material.name == name; });
    if (found == model_.materials.end()) {
      model_.materials.push_back({.name = name, .density = density});
      return static_cast<std::int32_t>(model_.materials.size()) - 1;
    }
    if (cell != nullptr && found->density > 0.0 && found->density != density) {
      throw sections_.fault(row, Column::density, say(texts::otherDensity, {name}),
                            {.code = "density-twice", .value = cell->text});
    }
    found->density = std::max(found->density, density);
    return static_cast<std::int32_t>(found - model_.materials.begin());
  }

  void readBar(const Row& row, double angleFactor) {
    ModelBar bar{.start = reference(row, Column::start, nodeIndexes_, texts::noSuchNode),
                 .end = reference(row, Column::end, nodeIndexes_, texts::noSuchNode),
                 .section = reference(row, Column::section, sectionIndexes_, texts::noSuchSection)};
    bar.type = type(row);
    bar.visible = truth(row, Column::visible);
    if (bars_.cell(row, Column::angle) != nullptr) {
      const double value = wide(bars_, row, Column::angle);
      bar.angle = static_cast<float>(value * angleFactor);
    }
    bar.quarterTurns = whole(row, Column::quarterTurns);
    model_.bars.push_back(bar);
    model_.barNames.push_back(optional(bars_, row, Column::bar));
    hasNames_ = hasNames_ || !model_.barNames.back().empty();
    model_.barLayers.push_back(layer(optional(bars_, row, Column::layer)));
  }

  std::int32_t layer(const std::string& name) {
    if (name.empty()) {
      return -1;
    }
    const auto [known, isNew] =
        layerIndexes_.emplace(name, static_cast<std::int32_t>(model_.layers.size()));
    if (isNew) {
      model_.layers.push_back(name);
    }
    return known->second;
  }

  std::int32_t reference(const Row& row, Column column, const Names& names, const Text& message) {
    const std::string name = required(bars_, row, column);
    const auto found = names.find(name);
    if (found == names.end()) {
      std::vector<std::string> known;
      if (names.size() <= mostSuggested) {
        for (const auto& entry : names) {
          known.push_back(entry.first);
        }
        std::sort(known.begin(), known.end());
      }
      const std::string near = nearest(name, known);
      throw bars_.fault(
          row, column,
          fill(message, {excerpt(name)}) + (near.empty() ? "" : say(texts::didYouMean, {near})),
          {.code = "reference", .value = name, .suggestion = near});
    }
    return found->second;
  }

  std::uint8_t type(const Row& row) const {
    const Cell* const cell = bars_.cell(row, Column::type);
    if (cell == nullptr) {
      return 0;
    }
    const std::string word = textOf(bars_, row, *cell);
    for (std::size_t i = 0; i < barTypeNames.size(); ++i) {
      if (word == barTypeNames[i] || word == std::to_string(i)) {
        return static_cast<std::uint8_t>(i);
      }
    }
    failValue(bars_, row, Column::type, *cell, say(texts::allowedType, {joined(barTypeNames)}),
              nearest(word, barTypeNames));
  }

  bool truth(const Row& row, Column column) const {
    const Cell* const cell = bars_.cell(row, column);
    if (cell == nullptr) {
      return true;
    }
    if (cell->kind == Cell::Kind::boolean) {
      return cell->number != 0.0;
    }
    std::string word = transliterated(textOf(bars_, row, *cell));
    std::transform(word.begin(), word.end(), word.begin(), [](char letter) {
      return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    });
    const auto* const found =
        std::find_if(std::begin(truthWords), std::end(truthWords),
                     [&](const TruthWord& known) { return known.word == word; });
    if (found == std::end(truthWords)) {
      failValue(bars_, row, column, *cell, say(texts::allowedYesNo));
    }
    return found->value;
  }

  std::int32_t whole(const Row& row, Column column) const {
    const Cell* const cell = bars_.cell(row, column);
    if (cell == nullptr) {
      return 0;
    }
    const double value = wide(bars_, row, column);
    if (value != std::floor(value) || std::fabs(value) > std::numeric_limits<std::int32_t>::max()) {
      failValue(bars_, row, column, *cell, say(texts::allowedQuarterTurns));
    }
    return static_cast<std::int32_t>(value);
  }

  static double wide(const TableLayout& table, const Row& row, Column column) {
    const Cell* const cell = table.cell(row, column);
    if (cell == nullptr) {
      throw table.fault(row, column, say(texts::cellEmpty), {.code = "unreadable"});
    }
    const auto value = cell->kind == Cell::Kind::number ? std::optional(cell->number)
                       : cell->kind == Cell::Kind::text ? numberIn(cell->text)
                                                        : std::nullopt;
    if (!value) {
      failValue(table, row, column, *cell, say(texts::allowedNumber));
    }
    if (std::fabs(*value) > double{std::numeric_limits<float>::max()}) {
      throw table.fault(row, column, say(texts::numberTooLarge, {excerpt(cell->text)}),
                        {.code = "unreadable", .value = cell->text});
    }
    return *value;
  }
  static float number(const TableLayout& table, const Row& row, Column column) {
    return static_cast<float>(wide(table, row, column));
  }

  /// The cell as a name: a number without what spreadsheet programs put behind it.
  static std::string textOf(const TableLayout& table, const Row& row, const Cell& cell) {
    if (cell.kind == Cell::Kind::error) {
      throw table.fault(row, cell.column, say(texts::cellError, {excerpt(cell.text)}),
                        {.code = "unreadable", .value = cell.text});
    }
    constexpr double exact = 9007199254740992.0;
    if (cell.kind == Cell::Kind::number && cell.number == std::floor(cell.number) &&
        std::fabs(cell.number) < exact) {
      return std::to_string(static_cast<std::int64_t>(cell.number));
    }
    return cell.text;
  }
  static std::string optional(const TableLayout& table, const Row& row, Column column) {
    const Cell* const cell = table.cell(row, column);
    return cell == nullptr ? std::string() : textOf(table, row, *cell);
  }
  static std::string required(const TableLayout& table, const Row& row, Column column) {
    std::string text = optional(table, row, column);
    if (text.empty()) {
      throw table.fault(row, column, say(texts::cellEmpty), {.code = "unreadable"});
    }
    return text;
  }

  [[noreturn]] static void failValue(const TableLayout& table, const Row& row, Column column,
                                     const Cell& cell, const std::string& allowed,
                                     const std::string& near = {}) {
    throw table.fault(
        row, column,
        say(texts::valueNotAllowed, {"\"" + excerpt(cell.text) + "\"", allowed}) +
            (near.empty() ? "" : say(texts::didYouMean, {near})),
        {.code = "unreadable", .value = cell.text, .allowed = allowed, .suggestion = near});
  }

  static std::string shortest(float value) {
    std::array<char, 32> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
    return {buffer.data(), end.ptr};
  }

  static constexpr std::size_t mostSuggested = 1000;

  TableLayout nodes_;
  TableLayout sections_;
  TableLayout bars_;
  Model model_;
  Names nodeIndexes_;
  Names sectionIndexes_;
  Names layerIndexes_;
  bool hasNames_ = false;
};

// ---- places

/// "/bars/6/section" as its pieces; of the second one, "~1" and "~0" are still as they are.
std::array<std::string_view, 4> piecesOf(std::string_view pointer) {
  std::array<std::string_view, 4> pieces{};
  for (std::string_view& piece : pieces) {
    if (pointer.empty()) {
      break;
    }
    pointer.remove_prefix(1);
    piece = pointer.substr(0, pointer.find('/'));
    pointer.remove_prefix(piece.size());
  }
  return pieces;
}

struct PointedColumn {
  std::string_view key;
  Column column;
};
constexpr PointedColumn barColumns[] = {
    {"type", Column::type},
    {"visible", Column::visible},
    {"angle", Column::angle},
    {"quarterTurns", Column::quarterTurns},
};

Column columnOfBar(std::string_view key, std::string_view index) {
  if (key == "nodes") {
    return index == "1" ? Column::end : Column::start;
  }
  const auto* const found =
      std::find_if(std::begin(barColumns), std::end(barColumns),
                   [key](const PointedColumn& row) { return row.key == key; });
  return found == std::end(barColumns) ? Column::section : found->column;
}

Column columnOf(Table table, const std::array<std::string_view, 4>& pieces) {
  const std::string_view key = pieces[2];
  switch (table) {
    case Table::nodes: return key == "1" ? Column::y : key == "2" ? Column::z : Column::x;
    case Table::sections: break;
    case Table::bars: return columnOfBar(key, pieces[3]);
  }
  return key == "text" ? Column::text : Column::section;
}

}  // namespace

bool hasTables(const Workbook& workbook) {
  return std::any_of(workbook.sheetNames().begin(), workbook.sheetNames().end(),
                     [](const std::string& name) { return findTable(name).has_value(); });
}

Model readTables(const Workbook& workbook, TableKind kind) {
  return TableModel(workbook, kind).read();
}

void locateInTables(const Workbook& workbook, TableKind kind, std::vector<Problem>& problems) {
  for (Problem& problem : problems) {
    const std::string pointer = std::exchange(problem.pointer, {});
    const auto pieces = piecesOf(pointer);
    const std::optional<Table> table = findTable(pieces[0]);
    if (!table || !problem.cell.empty() || !problem.file.empty()) {
      continue;
    }
    const TableLayout layout(*table, findSheet(workbook, *table), kind);
    std::size_t index = layout.rowCount();
    if (*table == Table::sections) {
      for (std::size_t i = 0; i < layout.rowCount(); ++i) {
        const Cell* const name = layout.cell(layout.row(i), Column::section);
        if (name != nullptr && pointerPiece(name->text) == pieces[1]) {
          index = i;
          break;
        }
      }
    } else {
      std::from_chars(pieces[1].data(), pieces[1].data() + pieces[1].size(), index);
    }
    if (index < layout.rowCount()) {
      const Row& row = layout.row(index);
      const Column column = columnOf(*table, pieces);
      layout.place(problem, row, layout.cell(row, column) != nullptr ? column : Column::section);
    }
  }
}

}  // namespace exportifc
