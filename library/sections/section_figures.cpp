#include "library/sections/section_figures.h"

#include <cmath>
#include <numbers>
#include <variant>

#include "library/sections/section_shape.h"

namespace exportifc {

namespace {

/// Area and length of a closed line of points.
SectionFigures ringFigures(const std::vector<Point2>& ring) {
  SectionFigures ringed;
  for (std::size_t i = 0; i < ring.size(); ++i) {
    const Point2& a = ring[i];
    const Point2& b = ring[(i + 1) % ring.size()];
    ringed.area += 0.5 * (a.x * b.y - b.x * a.y);
    ringed.perimeter += std::hypot(b.x - a.x, b.y - a.y);
  }
  ringed.area = std::abs(ringed.area);
  return ringed;
}

SectionFigures circleFigures(double radius) {
  return {.area = std::numbers::pi * radius * radius, .perimeter = 2.0 * std::numbers::pi * radius};
}

/// The outer faces of a box with two webs: its one outline also runs round the inside. Depth, width
/// and thickness of the flanges, thickness of the webs, width over them.
double boxPerimeter(const ProfileArguments& a) {
  const double tips = 4 * a[3];
  const double flanges = 2 * a[2] + 2 * (a[2] - a[5]);
  const double webs = 2 * (a[1] - 2 * a[3]);
  return tips + flanges + webs;
}

bool isTwoWebBox(const FamilyRow& row) {
  const auto* const outline = std::get_if<Outline>(&row.writer);
  return outline != nullptr && *outline == Outline::pc;
}

SectionFigures partFigures(const FamilyRow& row, const SectionDims& dims, int flangeSide) {
  const PlacedShape shape = shapeOf(row, dims, flangeSide);
  SectionFigures part;
  for (const auto& ring : shape.rings) {
    const SectionFigures own = shape.isRound ? circleFigures(ring.front().x) : ringFigures(ring);
    if (&ring == &shape.rings.front()) {
      part = own;
    } else {
      part.area -= own.area;
    }
  }
  if (isTwoWebBox(row)) {
    part.perimeter = boxPerimeter(profileArguments(row, dims, flangeSide));
  }
  return part;
}

}  // namespace

SectionFigures figuresOf(const Family& family, const SectionDims& dims) {
  const int flangeSide = family.parts.size() == 1 ? simpleFlangeSide : halfFlangeSide;
  SectionFigures whole;
  for (const FamilyRow* const row : family.parts) {
    const SectionFigures part = partFigures(*row, dims, flangeSide);
    if (!(part.area > 0.0) || !std::isfinite(part.area)) {
      return {};
    }
    whole.area += part.area;
    whole.perimeter += part.perimeter;
    ++whole.pieces;
  }
  return whole;
}

}  // namespace exportifc
