// Where a SAF member and its section stand: local axes, and the angle that gives the same in ours.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace exportifc::saf {

using Vector = std::array<double, 3>;

inline Vector operator+(const Vector& a, const Vector& b) {
  return {a[0] + b[0], a[1] + b[1], a[2] + b[2]};
}
inline Vector operator-(const Vector& a, const Vector& b) {
  return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}
inline Vector operator*(double factor, const Vector& a) {
  return {factor * a[0], factor * a[1], factor * a[2]};
}
inline double dot(const Vector& a, const Vector& b) {
  return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}
Vector cross(const Vector& a, const Vector& b);
double lengthOf(const Vector& a);

/// Right-handed unit vectors: x along the member.
struct Axes {
  Vector x, y, z;
};

/// How a member names one of its axes across.
struct LcsRule {
  std::string_view name;
  bool isZ;      ///< z, not y
  bool byPoint;  ///< towards a point, not along a vector
};

/// Null for a name that is none.
const LcsRule* findLcsRule(std::string_view name);
std::string lcsRuleNames();

/// The axes of a member between two points that do not coincide. `given` is the vector or the
/// point; one that says nothing across the member (it is zero, or lies along it) gives nothing.
/// `rotation`, in radians, turns y towards z.
std::optional<Axes> axesBy(const LcsRule& rule, const Vector& start, const Vector& end,
                           const Vector& given, double rotation);

/// What stands without any rule: y level, z up; in an upright member y along the Y of the model.
Axes defaultAxes(const Vector& start, const Vector& end, double rotation);

/// The axes with z turned to lie as near as it can to `z`. Nothing where that lies along the
/// member.
std::optional<Axes> axesWithZ(const Vector& start, const Vector& end, const Vector& z);

/// Which way is up in the model.
struct GlobalSystem {
  std::string_view name;
  /// The new x, y and z: 1 to 3 name an old axis, negative ones its opposite.
  std::array<std::int8_t, 3> from;
};

const GlobalSystem* findGlobalSystem(std::string_view name);
std::string globalSystemNames();
Vector turnedUpright(const GlobalSystem& system, const Vector& point);

/// How sections lie in members: which axis of the member is up in the picture of a section, and
/// which points to its left.
struct SectionSystem {
  std::string_view name;
  std::int8_t up;  ///< 2: y of the member, 3: z; negative: its opposite
  std::int8_t left;
  std::int8_t along;  ///< 1, or -1 when the picture is seen from the member's end
};

const SectionSystem* findSectionSystem(std::string_view name);
std::string sectionSystemNames();

/// "left" and "up" of section pictures in the model.
struct SectionAxes {
  Vector left, up;
};
SectionAxes sectionAxes(const SectionSystem& system, const Axes& member);

/// How a bar is turned.
struct BarAngle {
  float angle = 0.0F;
  std::int32_t quarterTurns = 0;
};

/// The angle at which the drawn x of a bar's section lies as `xAxis`, a unit vector across the bar.
/// Points are in millimetres.
BarAngle barAngle(const Vector& startMm, const Vector& endMm, const Vector& xAxis);

}  // namespace exportifc::saf
