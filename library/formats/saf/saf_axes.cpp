#include "library/formats/saf/saf_axes.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <iterator>
#include <numbers>
#include <string>

#include "elements/bar_axes.h"
#include "library/formats/saf/saf_table.h"

namespace exportifc::saf {

namespace {

constexpr LcsRule lcsRules[] = {
    {.name = "y by vector", .isZ = false, .byPoint = false},
    {.name = "z by vector", .isZ = true, .byPoint = false},
    {.name = "y by point", .isZ = false, .byPoint = true},
    {.name = "z by point", .isZ = true, .byPoint = true},
};

// Turns, not mirrors: a right-handed system stays one.
constexpr GlobalSystem globalSystems[] = {
    {"Z vertical", {1, 2, 3}},        {"Y vertical", {1, -3, 2}},
    {"X vertical", {2, 3, 1}},        {"minus Z vertical", {1, -2, -3}},
    {"minus Y vertical", {1, 3, -2}}, {"minus X vertical", {2, -3, -1}},
};

// The names say the axis that is up, the one to the left, and the one that leads away from who
// looks at the section.
constexpr SectionSystem sectionSystems[] = {
    {.name = "ZYX", .up = 3, .left = 2, .along = 1},
    {.name = "MinusYZX", .up = -2, .left = 3, .along = 1},
    {.name = "MinusZMinusYX", .up = -3, .left = -2, .along = 1},
    {.name = "YMinusZX", .up = 2, .left = -3, .along = 1},
    {.name = "YZMinusX", .up = 2, .left = 3, .along = -1},
    {.name = "MinusZYMinusX", .up = -3, .left = 2, .along = -1},
    {.name = "MinusYMinusZMinusX", .up = -2, .left = -3, .along = -1},
    {.name = "ZMinusYMinusX", .up = 3, .left = -2, .along = -1},
};

template <class Named, std::size_t Count>
const Named* find(const Named (&rows)[Count], std::string_view name) {
  const std::string wanted = comparable(name);
  const auto* const found = std::find_if(std::begin(rows), std::end(rows), [&](const Named& row) {
    return comparable(row.name) == wanted;
  });
  return found == std::end(rows) ? nullptr : found;
}

template <class Named, std::size_t Count>
std::string namesOf(const Named (&rows)[Count]) {
  std::string names;
  for (const Named& row : rows) {
    names.append(names.empty() ? "" : ", ").append(row.name);
  }
  return names;
}

Vector unit(const Vector& a) { return 1.0 / lengthOf(a) * a; }

/// What of `a` stands across the unit vector `x`.
Vector across(const Vector& a, const Vector& x) { return a - dot(a, x) * x; }

Axes turned(const Axes& axes, double rotation) {
  const double c = std::cos(rotation);
  const double s = std::sin(rotation);
  return {.x = axes.x, .y = c * axes.y + s * axes.z, .z = c * axes.z - s * axes.y};
}

/// A vector nearer to the member than that, in radians, does not say how the member is turned.
constexpr double leastSlope = 1e-6;

bool saysSide(const Vector& given, const Vector& x) {
  return lengthOf(across(given, x)) > leastSlope * lengthOf(given);
}

Axes withY(const Vector& x, const Vector& y) {
  const Vector side = unit(across(y, x));
  return {.x = x, .y = side, .z = cross(x, side)};
}

Axes withZ(const Vector& x, const Vector& z) {
  const Vector up = unit(across(z, x));
  return {.x = x, .y = cross(up, x), .z = up};
}

Vector memberAxis(std::int8_t axis, const Axes& member) {
  const Vector& named = std::abs(axis) == 2 ? member.y : member.z;
  return axis < 0 ? -1.0 * named : named;
}

}  // namespace

Vector cross(const Vector& a, const Vector& b) {
  return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

double lengthOf(const Vector& a) { return std::hypot(a[0], a[1], a[2]); }

const LcsRule* findLcsRule(std::string_view name) { return find(lcsRules, name); }
std::string lcsRuleNames() { return namesOf(lcsRules); }

std::optional<Axes> axesBy(const LcsRule& rule, const Vector& start, const Vector& end,
                           const Vector& given, double rotation) {
  const Vector x = unit(end - start);
  const Vector direction = rule.byPoint ? given - start : given;
  if (!saysSide(direction, x)) {
    return std::nullopt;
  }
  return turned(rule.isZ ? withZ(x, direction) : withY(x, direction), rotation);
}

Axes defaultAxes(const Vector& start, const Vector& end, double rotation) {
  const Vector x = unit(end - start);
  constexpr Vector up = {0, 0, 1};
  constexpr Vector globalY = {0, 1, 0};
  return turned(saysSide(up, x) ? withZ(x, up) : withY(x, globalY), rotation);
}

std::optional<Axes> axesWithZ(const Vector& start, const Vector& end, const Vector& z) {
  const Vector x = unit(end - start);
  return saysSide(z, x) ? std::optional(withZ(x, z)) : std::nullopt;
}

const GlobalSystem* findGlobalSystem(std::string_view name) { return find(globalSystems, name); }
std::string globalSystemNames() { return namesOf(globalSystems); }

Vector turnedUpright(const GlobalSystem& system, const Vector& point) {
  Vector turnedPoint{};
  for (std::size_t i = 0; i < turnedPoint.size(); ++i) {
    const double value = point[static_cast<std::size_t>(std::abs(system.from[i]) - 1)];
    turnedPoint[i] = system.from[i] < 0 ? 0.0 - value : value;  // no negative zero
  }
  return turnedPoint;
}

const SectionSystem* findSectionSystem(std::string_view name) { return find(sectionSystems, name); }
std::string sectionSystemNames() { return namesOf(sectionSystems); }

SectionAxes sectionAxes(const SectionSystem& system, const Axes& member) {
  return {.left = memberAxis(system.left, member), .up = memberAxis(system.up, member)};
}

// At angle 0 the export lays the drawn x and y of a section along rows 1 and 2 of the bar's axes,
// e1 and e2. A bar angle a turns x towards y: x = cos a · e1 + sin a · e2. So the angle of a wanted
// x is atan2(x · e2, x · e1), whatever the direction of the bar, upright ones included. The export
// takes 3.1415 for half a turn: whole quarter turns are counted, for they come out exactly, and the
// rest is given in its measure.
BarAngle barAngle(const Vector& startMm, const Vector& endMm, const Vector& xAxis) {
  constexpr double tolerance = 0.01F;  // of the export, in millimetres
  constexpr double halfTurn = 3.1415;
  constexpr double nothing = 1e-7;
  const auto single = [](double value) { return double{static_cast<float>(value)}; };
  const Vector along = endMm - startMm;
  Matrix3 axes{};
  barAxesMatrix(0.0, single(along[0]), single(along[1]), single(along[2]), tolerance, axes);
  const double angle = std::atan2(dot(xAxis, axes[2]), dot(xAxis, axes[1]));
  const double quarters = std::round(angle / (std::numbers::pi / 2));
  const double rest = angle - quarters * (std::numbers::pi / 2);
  // Half a turn to the left is half a turn to the right: one of them, for equal models.
  const auto turns = static_cast<std::int32_t>(quarters);
  return {.angle = std::fabs(rest) < nothing
                       ? 0.0F
                       : static_cast<float>(rest * halfTurn / std::numbers::pi),
          .quarterTurns = turns == -2 ? 2 : turns};
}

}  // namespace exportifc::saf
