#include "library/formats/saf/saf_sections.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

#include "library/formats/saf/saf_table.h"
#include "library/sections/rolled_sections.h"
#include "library/text/messages.h"
#include "library/text/nearest.h"
#include "model/batch_source.h"

namespace exportifc::saf {

namespace {

constexpr std::string_view sheetName = "StructuralCrossSection";

std::string nearestIn(const NameIndex& names, std::string_view name) {
  std::vector<std::string> known;
  for (const auto& [text, index] : names) {
    known.push_back(text);
  }
  return nearest(name, known);
}

NameIndex readMaterials(const Workbook& book, const Project& project, Model& model) {
  NameIndex names;
  if (!book.has("StructuralMaterial")) {
    return names;
  }
  const Table table(book.sheet("StructuralMaterial"), project.imperial);
  const Column name = table.requiredColumn("Name");
  const Column density = table.column("Unit mass", Quantity::density);
  for (const Row& row : table.rows()) {
    const std::string text(table.requiredText(row, name));
    if (!names.emplace(text, static_cast<std::int32_t>(model.materials.size())).second) {
      table.refuse(row, name, say(texts::cellTwice, {text}));
    }
    model.materials.push_back({.name = text, .density = table.number(row, density).value_or(0.0)});
  }
  return names;
}

/// Bounds of the polygons that workbooks draw sections with, by the names of the sections.
std::map<std::string, Bounds, std::less<>> readPolygons(const Workbook& book,
                                                        const Project& project) {
  std::map<std::string, Bounds, std::less<>> polygons;
  if (!book.has("CompositeShapeDef")) {
    return polygons;
  }
  const Table table(book.sheet("CompositeShapeDef"), project.imperial);
  const Column name = table.requiredColumn("Name");
  const double factor = project.imperial ? 25.4 : 1.0;
  for (const Row& row : table.rows()) {
    double low[2] = {1e30, 1e30};
    double high[2] = {-1e30, -1e30};
    constexpr int mostPolygons = 99;
    for (int i = 1; i <= mostPolygons; ++i) {
      const Column contour = table.column("Polygon contour " + std::to_string(i));
      for (const std::string_view point : pieces(table.text(row, contour), '|')) {
        const auto values = pieces(point);
        for (std::size_t axis = 0; axis < std::size(low); ++axis) {
          const auto value = axis < values.size() ? numberIn(values[axis]) : std::nullopt;
          if (!value) {
            table.refuse(row, contour, say(texts::cellNoNumber, {point}));
          }
          low[axis] = std::min(low[axis], *value * factor);
          high[axis] = std::max(high[axis], *value * factor);
        }
      }
    }
    if (high[0] > low[0]) {
      polygons[std::string(table.requiredText(row, name))] = {.height = high[1] - low[1],
                                                              .width = high[0] - low[0]};
    }
  }
  return polygons;
}

/// Reads one row after another.
class SectionRows {
 public:
  SectionRows(const Workbook& book, const Project& project)
      : table_(book.sheet(sheetName), project.imperial), polygons_(readPolygons(book, project)) {}

  const Table& table() const { return table_; }

  FoundShape shapeOf(const Row& row) const {
    const std::string_view given = table_.requiredText(row, type_);
    const std::string type = comparable(given);
    if (type == "parametric") {
      return parametric(row);
    }
    if (type == "manufactured") {
      return manufactured(row);
    }
    if (type == "compound") {
      const auto values = parameters(row);
      const RolledSection* const rolled = findRolledSection(table_.requiredText(row, profile_));
      return rolled == nullptr || values.empty()
                 ? FoundShape{}
                 : compoundShape(table_.requiredText(row, shape_), sectionText(*rolled), values[0]);
    }
    if (type != "general") {
      constexpr std::string_view allowed = "Parametric, Manufactured, Compound, General";
      table_.refuse(row, type_, say(texts::cellNotAllowed, {given, allowed}), std::string(allowed));
    }
    return {.text = {}, .mark = 0.0, .bounds = polygon(row)};
  }

  /// For people: what no family draws.
  std::string description(const Row& row) const {
    std::string text;
    for (const Column column : {shape_, profile_, parameters_}) {
      const std::string_view piece = table_.text(row, column);
      text.append(text.empty() || piece.empty() ? "" : " ").append(piece);
    }
    return text.empty() ? std::string(table_.text(row, type_)) : text;
  }

 private:
  std::vector<double> parameters(const Row& row) const {
    std::vector<double> values;
    for (const std::string_view piece : pieces(table_.text(row, parameters_))) {
      const std::optional<double> value = numberIn(piece);
      if (!value || !(*value >= 0.0)) {
        table_.refuse(row, parameters_, say(texts::cellNoNumber, {piece}));
      }
      values.push_back(*value * parameters_.factor);
    }
    return values;
  }

  FoundShape parametric(const Row& row) const {
    const ParametricShape* const shape = findParametricShape(table_.requiredText(row, shape_));
    if (shape == nullptr) {
      return {};
    }
    const std::vector<double> values = parameters(row);
    const auto needed =
        values.begin() + static_cast<std::ptrdiff_t>(std::min(values.size(), shape->needed));
    if (values.size() < shape->needed ||
        std::any_of(values.begin(), needed, [](double value) { return value <= 0.0; })) {
      const std::string names(shape->parameters);
      table_.refuse(row, parameters_,
                    say(texts::safParameters, {table_.text(row, parameters_), names}), names);
    }
    return shape->find(values);
  }

  FoundShape manufactured(const Row& row) const {
    const RolledSection* const rolled = findRolledSection(table_.requiredText(row, profile_));
    if (rolled == nullptr) {
      return {.text = {}, .mark = 0.0, .bounds = polygon(row)};
    }
    const double code = table_.number(row, formCode_).value_or(0.0);
    constexpr double mostCode = 1000;
    FoundShape shape = rolledShape(sectionText(*rolled),
                                   code >= 0 && code < mostCode ? static_cast<int>(code) : 0);
    shape.catalogue = rolled->name;
    return shape;
  }

  Bounds polygon(const Row& row) const {
    for (const Column column : {profile_, name_}) {
      const auto found = polygons_.find(table_.text(row, column));
      if (found != polygons_.end()) {
        return found->second;
      }
    }
    return {};
  }

  Table table_;
  std::map<std::string, Bounds, std::less<>> polygons_;
  Column name_ = table_.requiredColumn("Name");
  Column type_ = table_.requiredColumn("Cross-section type");
  Column shape_ = table_.column("Shape");
  Column parameters_ = table_.column("Parameters", Quantity::dimension);
  Column profile_ = table_.column("Profile");
  Column formCode_ = table_.column("Form code");
};

/// A drawn area that is so far from the one given beside it shows other dimensions than meant;
/// fillets explain less.
constexpr double mostAreaError = 0.1;

}  // namespace

Sections::Sections(const Workbook& book, const Project& project, Model& model) {
  const NameIndex materials = readMaterials(book, project, model);
  const SectionRows rows(book, project);
  const Table& table = rows.table();
  const Column name = table.requiredColumn("Name");
  const Column material = table.column("Material");
  const Column area = table.column("A", Quantity::area);
  const bool seenFromEnd = project.sections->along < 0;
  for (const Row& row : table.rows()) {
    const std::string own(table.requiredText(row, name));
    if (!names_.emplace(own, static_cast<std::int32_t>(model.sections.size())).second) {
      table.refuse(row, name, say(texts::cellTwice, {own}));
    }
    ModelSection section{.name = own, .text = {}};
    const auto materialNames = pieces(table.text(row, material));
    if (!materialNames.empty()) {
      const auto found = materials.find(materialNames[0]);
      if (found == materials.end()) {
        const std::string near = nearestIn(materials, materialNames[0]);
        table.refuse(row, material,
                     say(texts::cellUnknown, {materialNames[0], "StructuralMaterial"}) +
                         (near.empty() ? near : say(texts::didYouMean, {near})),
                     {}, near);
      }
      section.material = found->second;
    }
    const FoundShape shape = rows.shapeOf(row);
    section.isDrawn = !shape.text.empty();
    if (section.isDrawn) {
      section.text = shape.text;
      section.catalogue = shape.catalogue;
      section.dims = parseSectionDims(shape.text);
      standings_.push_back(standingOf(section.text, section.dims, shape.mark, seenFromEnd));
      const double given = table.number(row, area).value_or(0.0);
      const double drawn = standings_.back().area;
      if (given > 0.0 && std::fabs(drawn - given) > mostAreaError * given) {
        constexpr double mm2PerCm2 = 100.0;
        model.found.push_back(
            {.code = "section-area",
             .severity = Severity::warning,
             .message = say(texts::safArea, {own, section.text, decimalText(drawn / mm2PerCm2, 2),
                                             decimalText(given / mm2PerCm2, 2)}),
             .cell = table.cell(row, area)});
      }
    } else {
      section.text = rows.description(row);
      section.bounds = {static_cast<float>(shape.bounds.height),
                        static_cast<float>(shape.bounds.width)};
      const double dims[] = {shape.bounds.height, shape.bounds.width};
      const std::string rectangle = sectionTextOf("RET", dims);
      standings_.push_back(standingOf(rectangle, parseSectionDims(rectangle), 0.0, seenFromEnd));
    }
    cells_.push_back(table.cell(row, name));
    model.sections.push_back(std::move(section));
  }
}

}  // namespace exportifc::saf
