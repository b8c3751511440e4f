#include "library/formats/saf/saf_bars.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "library/formats/saf/saf_table.h"
#include "library/text/messages.h"

namespace exportifc::saf {

namespace {

constexpr double mmPerM = 1000.0;

struct MemberType {
  std::string_view name;
  std::string_view bar;  // of `barTypes`
};

constexpr MemberType memberTypes[] = {
    {"General", "member"},
    {"Beam", "frame-beam"},
    {"Column", "column"},
    {"GableColumn", "wind-column"},
    {"SecondaryColumn", "column"},
    {"Rafter", "frame-beam"},
    {"Purlin", "other"},
    {"RoofBracing", "bracing"},
    {"WallBracing", "bracing"},
    {"Girt", "other"},
    {"TrussChord", "truss-chord"},
    {"TrussDiagonal", "truss-web"},
    {"PlateRib", "floor-beam"},
    {"BeamSlab", "floor-beam"},
    {"HollowCoreSlab", "other"},
    {"CompositePlateRib", "floor-beam"},
    {"CompositeBeamRib", "floor-beam"},
};

constexpr SystemLine systemLines[] = {
    {"Centre", 0, 0},       {"Center", 0, 0},         {"Top", 0, 1},      {"Bottom", 0, -1},
    {"Left", 1, 0},         {"Right", -1, 0},         {"Top left", 1, 1}, {"Top right", -1, 1},
    {"Bottom left", 1, -1}, {"Bottom right", -1, -1},
};

double onSide(int side, double positive, double negative, double middle) {
  return side > 0 ? positive : side < 0 ? negative : middle;
}

std::array<float, 3> single(const Vector& point) {
  return {static_cast<float>(point[0]), static_cast<float>(point[1]), static_cast<float>(point[2])};
}

}  // namespace

int barTypeOfMember(std::string_view type) {
  const std::string wanted = comparable(type);
  const auto* const found =
      std::find_if(std::begin(memberTypes), std::end(memberTypes),
                   [&](const MemberType& row) { return comparable(row.name) == wanted; });
  return found == std::end(memberTypes)
             ? -1
             : static_cast<int>(std::find(barTypeNames.begin(), barTypeNames.end(), found->bar) -
                                barTypeNames.begin());
}

const SystemLine* findSystemLine(std::string_view name) {
  const std::string wanted = comparable(name);
  const auto* const found =
      std::find_if(std::begin(systemLines), std::end(systemLines),
                   [&](const SystemLine& line) { return comparable(line.name) == wanted; });
  return found == std::end(systemLines) ? nullptr : found;
}

Nodes::Nodes(const Workbook& book, const Project& project, Model& model) : model_(model) {
  const Table table(book.sheet("StructuralPointConnection"), project.imperial);
  const Column name = table.requiredColumn("Name");
  const std::array<Column, 3> axes = {table.requiredColumn("Coordinate X", Quantity::coordinate),
                                      table.requiredColumn("Coordinate Y", Quantity::coordinate),
                                      table.requiredColumn("Coordinate Z", Quantity::coordinate)};
  for (const Row& row : table.rows()) {
    const std::string own(table.requiredText(row, name));
    if (!names_.emplace(own, static_cast<std::int32_t>(points_.size())).second) {
      table.refuse(row, name, say(texts::cellTwice, {own}));
    }
    Vector point{};
    std::transform(axes.begin(), axes.end(), point.begin(),
                   [&](Column column) { return table.requiredNumber(row, column); });
    points_.push_back(turnedUpright(*project.global, point));
  }
  inModel_.assign(points_.size(), -1);
}

std::int32_t Nodes::of(std::int32_t node) {
  std::int32_t& index = inModel_[static_cast<std::size_t>(node)];
  if (index < 0) {
    index = add(point(node));
  }
  return index;
}

std::int32_t Nodes::at(const Vector& point) {
  const auto [found, isNew] = between_.emplace(single(point), -1);
  if (isNew) {
    found->second = add(point);
  }
  return found->second;
}

Vector Nodes::millimetres(std::int32_t index) const {
  const auto& node = model_.nodes[static_cast<std::size_t>(index)];
  return mmPerM * Vector{node[0], node[1], node[2]};
}

std::int32_t Nodes::add(const Vector& point) {
  model_.nodes.push_back(single(point));
  return static_cast<std::int32_t>(model_.nodes.size() - 1);
}

void Bars::add(const Member& member, const AxesOf& axesOf) {
  const std::size_t segments = member.nodes.size() - 1;
  double total = 0.0;
  for (std::size_t i = 0; i < segments; ++i) {
    total += length(member, i);
  }
  double before = 0.0;
  const bool isWhole = segments == 1 && member.spans.size() == 1;
  int piece = 0;
  for (std::size_t i = 0; i < segments; ++i) {
    const double share = total > 0.0 ? length(member, i) / total : 1.0;
    const Ends ends{.nodes = {member.nodes[i], member.nodes[i + 1]},
                    .points = {nodes_.point(member.nodes[i]), nodes_.point(member.nodes[i + 1])},
                    .from = before,
                    .to = before + share};
    before += share;
    for (const Span& span : member.spans) {
      const std::string name = isWhole ? member.name : member.name + "." + std::to_string(++piece);
      addBar(member, ends, span, name, axesOf);
    }
  }
}

double Bars::length(const Member& member, std::size_t segment) const {
  return lengthOf(nodes_.point(member.nodes[segment + 1]) - nodes_.point(member.nodes[segment]));
}

void Bars::addBar(const Member& member, const Ends& ends, const Span& span, const std::string& name,
                  const AxesOf& axesOf) {
  ModelBar bar{.section = span.section, .type = static_cast<std::uint8_t>(member.type)};
  constexpr double shortest = 1e-9;  // metres; a bar of no length has no axes
  if (lengthOf(ends.points[1] - ends.points[0]) < shortest) {
    bar.start = nodes_.of(ends.nodes[0]);
    bar.end = nodes_.of(ends.nodes[1]);
  } else {
    stand(bar, member, ends, span, axesOf(ends.points[0], ends.points[1]));
  }
  model_.bars.push_back(bar);
  model_.barNames.push_back(name);
  model_.barLayers.push_back(member.layer);
  cells_.push_back(member.cell);
}

// The body lies so that the section's point that the member's line names (centroid, or a side of
// the box around the section) is on the line between the nodes, moved by the eccentricities. The
// export draws some families beside the bar, so the bar moves by what is left.
void Bars::stand(ModelBar& bar, const Member& member, const Ends& ends, const Span& span,
                 const Axes& axes) {
  const Standing& standing = sections_.standing(span.section);
  const SectionAxes section = sectionAxes(*project_.sections, axes);
  const Vector side =
      onSide(member.line.side, standing.left, standing.right, standing.centroid.x) * section.left;
  const Vector height =
      onSide(member.line.height, standing.top, standing.bottom, standing.centroid.y) * section.up;
  std::array<std::int32_t, 2> nodes{};
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    const double onBar = i == 0 ? span.from : span.to;
    const double onMember = ends.from + (ends.to - ends.from) * onBar;
    const auto offset = [&](std::size_t axis) {
      return (1.0 - onMember) * member.startOffset[axis] + onMember * member.endOffset[axis];
    };
    constexpr double nothing = 1e-6;
    Vector moveMm = offset(0) * axes.y + offset(1) * axes.z - side - height;
    for (double& move : moveMm) {  // of what the sine of a quarter turn leaves
      move = std::fabs(move) < nothing ? 0.0 : move;
    }
    const bool isEnd = onBar == (i == 0 ? 0.0 : 1.0);
    nodes[i] = isEnd && moveMm == Vector{}
                   ? nodes_.of(ends.nodes[i])
                   : nodes_.at((1.0 - onBar) * ends.points[0] + onBar * ends.points[1] +
                               1.0 / mmPerM * moveMm);
  }
  bar.start = nodes[0];
  bar.end = nodes[1];
  const Vector xAxis = standing.xAxis.x * section.left + standing.xAxis.y * section.up;
  const BarAngle angle =
      barAngle(nodes_.millimetres(bar.start), nodes_.millimetres(bar.end), xAxis);
  bar.angle = angle.angle;
  bar.quarterTurns = angle.quarterTurns;
}

}  // namespace exportifc::saf
