#include "library/sections/section_shape.h"

#include <charconv>
#include <cmath>
#include <numbers>
#include <string_view>
#include <variant>

#include "profiles/outlines.h"

namespace exportifc {

namespace {

using Ring = std::vector<Point2>;

/// The pieces of "(a, b, c)" or "a, b", without blanks.
std::vector<std::string_view> pieces(std::string_view text) {
  std::vector<std::string_view> found;
  std::size_t from = 0;
  for (std::size_t at = 0; at <= text.size(); ++at) {
    const bool separator = at == text.size() || text[at] == ',' || text[at] == '(' ||
                           text[at] == ')' || text[at] == ' ';
    if (separator) {
      if (at > from) {
        found.push_back(text.substr(from, at - from));
      }
      from = at + 1;
    }
  }
  return found;
}

/// The value of a piece of a pattern: "x", "a2", "h1" or a number.
double valueOf(std::string_view piece, const ProfileArguments& a, double x) {
  if (piece == "x") {
    return x;
  }
  if (piece[0] == 'a' || piece[0] == 'h') {
    return a[static_cast<std::size_t>(piece[1] - '0')] * (piece[0] == 'h' ? 0.5 : 1.0);
  }
  double value = 0.0;
  std::from_chars(piece.data(), piece.data() + piece.size(), value);
  return value;
}

Ring rectangle(double xDim, double yDim) {
  const double x = 0.5 * xDim;
  const double y = 0.5 * yDim;
  return {{-x, -y}, {x, -y}, {x, y}, {-x, y}};
}

Ring circle(double radius) {
  constexpr int segments = 72;
  Ring ring;
  for (int i = 0; i < segments; ++i) {
    const double angle = 2 * std::numbers::pi * i / segments;
    ring.push_back({radius * std::cos(angle), radius * std::sin(angle)});
  }
  return ring;
}

// The shapes of the IFC entities, each centred on its bounding box, by their attributes in the
// entity's order.

std::vector<Ring> iShape(const std::vector<double>& v) {
  const double w = 0.5 * v[0];
  const double h = 0.5 * v[1];
  const double web = 0.5 * v[2];
  const double flange = h - v[3];
  return {{{-w, -h},
           {w, -h},
           {w, -flange},
           {web, -flange},
           {web, flange},
           {w, flange},
           {w, h},
           {-w, h},
           {-w, flange},
           {-web, flange},
           {-web, -flange},
           {-w, -flange}}};
}

std::vector<Ring> uShape(const std::vector<double>& v) {
  const double h = 0.5 * v[0];
  const double w = 0.5 * v[1];
  const double web = -w + v[2];
  const double flange = h - v[3];
  return {{{-w, -h},
           {w, -h},
           {w, -flange},
           {web, -flange},
           {web, flange},
           {w, flange},
           {w, h},
           {-w, h}}};
}

std::vector<Ring> cShape(const std::vector<double>& v) {
  const double h = 0.5 * v[0];
  const double w = 0.5 * v[1];
  const double wall = v[2];
  const double lip = h - v[3];
  return {{{-w, -h},
           {w, -h},
           {w, -lip},
           {w - wall, -lip},
           {w - wall, -h + wall},
           {-w + wall, -h + wall},
           {-w + wall, h - wall},
           {w - wall, h - wall},
           {w - wall, lip},
           {w, lip},
           {w, h},
           {-w, h}}};
}

std::vector<Ring> lShape(const std::vector<double>& v) {
  const double h = 0.5 * v[0];
  const double w = 0.5 * v[1];
  const double wall = v[2];
  return {{{-w, -h}, {w, -h}, {w, -h + wall}, {-w + wall, -h + wall}, {-w + wall, h}, {-w, h}}};
}

std::vector<Ring> tShape(const std::vector<double>& v) {
  const double h = 0.5 * v[0];
  const double w = 0.5 * v[1];
  const double web = 0.5 * v[2];
  const double flange = h - v[3];
  return {{{-web, -h},
           {web, -h},
           {web, flange},
           {w, flange},
           {w, h},
           {-w, h},
           {-w, flange},
           {-web, flange}}};
}

std::vector<Ring> hollowRectangle(const std::vector<double>& v) {
  return {rectangle(v[0], v[1]), rectangle(v[0] - 2 * v[2], v[1] - 2 * v[2])};
}

std::vector<Ring> solidRectangle(const std::vector<double>& v) { return {rectangle(v[0], v[1])}; }

std::vector<Ring> hollowCircle(const std::vector<double>& v) {
  return {circle(v[0]), circle(v[0] - v[1])};
}

std::vector<Ring> solidCircle(const std::vector<double>& v) { return {circle(v[0])}; }

struct EntityShape {
  std::string_view keyword;
  std::vector<Ring> (*rings)(const std::vector<double>& attributes);
  bool isRound = false;
};

constexpr EntityShape entityShapes[] = {
    {"IFCISHAPEPROFILEDEF", iShape},
    {"IFCUSHAPEPROFILEDEF", uShape},
    {"IFCCSHAPEPROFILEDEF", cShape},
    {"IFCLSHAPEPROFILEDEF", lShape},
    {"IFCTSHAPEPROFILEDEF", tShape},
    {"IFCRECTANGLEHOLLOWPROFILEDEF", hollowRectangle},
    {"IFCRECTANGLEPROFILEDEF", solidRectangle},
    {"IFCCIRCLEHOLLOWPROFILEDEF", hollowCircle, true},
    {"IFCCIRCLEPROFILEDEF", solidCircle, true},
};

PlacedShape parametricShape(const ParametricRow& row, const ProfileArguments& arguments) {
  PlacedShape shape;
  const double x = row.offset == nullptr ? 0.0 : row.offset(arguments);
  const auto point = pieces(row.point);
  shape.position = {.x = valueOf(point[0], arguments, x), .y = valueOf(point[1], arguments, x)};
  const auto direction = pieces(row.direction);
  const Point2 axis{.x = valueOf(direction[0], arguments, x),
                    .y = valueOf(direction[1], arguments, x)};
  const double length = std::hypot(axis.x, axis.y);
  shape.xAxis = {.x = axis.x / length, .y = axis.y / length};
  std::vector<double> attributes;
  for (const std::string_view piece : pieces(row.attributes)) {
    attributes.push_back(piece == "$" ? 0.0 : valueOf(piece, arguments, x));
  }
  for (const EntityShape& entity : entityShapes) {
    if (entity.keyword == row.keyword) {
      shape.rings = entity.rings(attributes);
      shape.isRound = entity.isRound;
    }
  }
  return shape;
}

}  // namespace

PlacedShape shapeOf(const FamilyRow& row, const SectionDims& sectionDims, int flangeSide) {
  const ProfileArguments arguments = profileArguments(row, sectionDims, flangeSide);
  if (const auto* const variant = std::get_if<Parametric>(&row.writer)) {
    return parametricShape(parametricRow(*variant), arguments);
  }
  PlacedShape shape;
  Ring& ring = shape.rings.emplace_back();
  for (const OutlinePoint& point : outlinePoints(std::get<Outline>(row.writer), arguments)) {
    ring.push_back({.x = point.x, .y = point.y});
  }
  return shape;
}

}  // namespace exportifc
