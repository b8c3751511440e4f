#include "library/formats/saf/saf_ribs.h"

#include <cmath>
#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "library/formats/saf/saf_axes.h"
#include "library/formats/saf/saf_table.h"

namespace exportifc::saf {

namespace {

/// What ribs take of the slab that they belong to.
struct Slab {
  Vector normal{};
  double thicknessMm = 0.0;  // 0: not one for the whole slab
};

/// The z of a slab is the side that looks up; of an upright one the side that looks along X, or
/// else along Y.
Vector slabNormal(const std::vector<Vector>& outline) {
  Vector normal{};
  for (std::size_t i = 0; i < outline.size(); ++i) {
    normal = normal + cross(outline[i], outline[(i + 1) % outline.size()]);
  }
  constexpr double level = 1e-6;
  const double size = lengthOf(normal);
  for (const std::size_t axis : {std::size_t{2}, std::size_t{0}, std::size_t{1}}) {
    if (std::fabs(normal[axis]) > level * size) {
      return (normal[axis] < 0 ? -1.0 : 1.0) * normal;
    }
  }
  return normal;
}

std::map<std::string, Slab, std::less<>> readSlabs(const Workbook& book, const Project& project,
                                                   const Nodes& nodes) {
  std::map<std::string, Slab, std::less<>> slabs;
  if (!book.has("StructuralSurfaceMember")) {
    return slabs;
  }
  const Table table(book.sheet("StructuralSurfaceMember"), project.imperial);
  const Column name = table.requiredColumn("Name");
  const Column list = table.requiredColumn("Nodes");
  const Column thickness = table.column("Thickness", Quantity::dimension);
  for (const Row& row : table.rows()) {
    std::vector<Vector> outline;
    for (const std::string_view node : pieces(table.text(row, list))) {
      outline.push_back(
          nodes.point(indexOf(table, row, list, node, nodes.names(), "StructuralPointConnection")));
    }
    slabs[std::string(table.requiredText(row, name))] = {
        .normal = slabNormal(outline),
        .thicknessMm = numberIn(table.text(row, thickness)).value_or(0.0) * thickness.factor};
  }
  return slabs;
}

}  // namespace

void readRibs(const Workbook& book, const Project& project, const Sections& sections,
              const Nodes& nodes, Model& model, Remarks& remarks, Bars& bars) {
  constexpr std::string_view sheet = "StructuralCurveMemberRib";
  if (!book.has(sheet) || Table(book.sheet(sheet), false).rows().empty()) {
    return;
  }
  const auto slabs = readSlabs(book, project, nodes);
  MemberRows rows(book, sheet, project, sections, nodes, model);
  const Table& table = rows.table();
  const Column slabName = table.column("2D member");
  const Column alignment = table.column("Alignment");
  const Column offset = table.column("Eccentricity ez", Quantity::dimension);
  for (const Row& row : table.rows()) {
    Member member = rows.read(row);
    const auto slab = slabs.find(table.text(row, slabName));
    const Vector& start = nodes.point(member.nodes.front());
    const Vector& end = nodes.point(member.nodes.back());
    if (rows.isCurved(row)) {
      remarks.curved.add(member.name, member.cell);
      continue;
    }
    if (slab == slabs.end() || !axesWithZ(start, end, slab->second.normal)) {
      remarks.noSlab.add(member.name, member.cell);
      continue;
    }
    // Under a slab the rib's top is on the line, moved by half the slab; on it, the bottom is.
    const std::string place = comparable(table.text(row, alignment));
    const int side = place == "top" ? 1 : place == "bottom" ? -1 : 0;
    const double half = slab->second.thicknessMm / 2;
    const bool canMove = side == 0 || (half > 0.0 && project.sections->up == 3);
    if (canMove) {
      member.line.height = -side;
      member.startOffset = member.endOffset = {0.0, side * half};
    }
    if (!canMove || table.number(row, offset).value_or(0.0) != 0.0) {
      remarks.ribOffset.add(member.name, member.cell);
    }
    member.type = barTypeOfMember("PlateRib");
    bars.add(member, [&](const Vector& from, const Vector& to) {
      return axesWithZ(from, to, slab->second.normal).value_or(defaultAxes(from, to, 0.0));
    });
  }
}

}  // namespace exportifc::saf
