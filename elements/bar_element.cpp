#include "elements/bar_element.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <string_view>
#include <utility>

#include "elements/bar_axes.h"
#include "step/global_id.h"

namespace exportifc {

namespace {

// Lengths below it, in millimetres, count as zero in the axes; a 32-bit constant, widened.
constexpr double axesTolerance = 0.01F;
// Differences up to it, in millimetres, keep a beam horizontal and a column vertical.
constexpr double typeTolerance = 0.01;

/// Section texts, without any dimension, whose bars run from their second node to their first. The
/// halves of built-up sections carry such names in their label, which does not count.
/// Fixed shape: whole text reverses.
constexpr std::array<std::wstring_view, 12> reversedSections = {
    L"2L_2",   L"2LLM_2", L"LXLM_1", L"LXLM_2", L"LX_1", L"LX_2",
    L"LZLM_1", L"LZLM_2", L"LZ_1",   L"LZ_2",   L"ZS",   L"ZI",
};

bool isReversed(std::wstring_view sectionName) {
  return std::find(reversedSections.begin(), reversedSections.end(), sectionName) !=
         reversedSections.end();
}

/// Rounded to single precision, as the axes take their input.
double single(double value) { return static_cast<float>(value); }

Direction direction(const std::array<double, 3>& row) {
  return {static_cast<float>(row[0]), static_cast<float>(row[1]), static_cast<float>(row[2])};
}

/// Only the X difference makes a bar too slanting for a column: one that leans in Y still is one.
/// Fixed shape: column by X.
std::string_view elementKeyword(const Vec3& first, const Vec3& second, ElementKind kind) {
  if (std::fabs(second.z - first.z) <= typeTolerance) {
    return "IFCBEAM";
  }
  if (std::fabs(second.x - first.x) <= typeTolerance && kind == ElementKind::columnIfUpright) {
    return "IFCCOLUMN";
  }
  return "IFCMEMBER";
}

double distance(const Vec3& first, const Vec3& second) {
  const double x = second.x - first.x;
  const double y = second.y - first.y;
  const double z = second.z - first.z;
  return std::sqrt(y * y + x * x + z * z);
}

}  // namespace

BarPlacement placementOf(const BarGeometry& bar) {
  Vec3 first = bar.start;
  Vec3 second = bar.end;
  if (isReversed(bar.sectionName)) {
    std::swap(first, second);
  }
  const double angle = single(bar.rotation * std::numbers::pi / 180.0);
  Matrix3 axes{};
  barAxesMatrix(angle, single(second.x - first.x), single(second.y - first.y),
                single(second.z - first.z), axesTolerance, axes);
  return {.first = first,
          .second = second,
          .axis = direction(axes[0]),
          .refDirection = direction(axes[1])};
}

std::int32_t writeBar(StepWriter& writer, const BarGeometry& bar, std::int32_t profileId) {
  return writeBar(writer, bar, placementOf(bar), profileId);
}

std::int32_t writeBar(StepWriter& writer, const BarGeometry& bar, const BarPlacement& placement,
                      std::int32_t profileId) {
  const Vec3& first = placement.first;
  const Vec3& second = placement.second;

  // "IfcBeam" for every bar: the comment names the bar, not the element type chosen below.
  writer.stream.line();
  writer.stream.line("/* IfcBeam (", General{first.x}, ",", General{first.y}, ",", General{first.z},
                     "), (", General{second.x}, ",", General{second.y}, ",", General{second.z},
                     ")");
  writer.stream.line("angulo: ", General{bar.rotation}, ", perfil: ", bar.sectionName);
  writer.stream.line(" */");

  return writeBarElement(writer, bar, placement, profileId);
}

std::int32_t writeBarElement(StepWriter& writer, const BarGeometry& bar,
                             const BarPlacement& placement, std::int32_t profileId) {
  const auto& [first, second, axis, refDirection] = placement;
  static const HostText blank(L" ");
  const HostText& description = bar.sectionName.size() < 2 ? blank : bar.sectionName;
  const HostText& name = bar.sectionLabel.empty() ? description : bar.sectionLabel;
  const Ref owner{writer.ownerHistoryId};

  const Ref zAxis{writer.writeEntity("IFCDIRECTION((", double{axis[0]}, ", ", double{axis[1]}, ", ",
                                     double{axis[2]}, "))")};
  const Ref xAxis{writer.writeEntity("IFCDIRECTION((", double{refDirection[0]}, ", ",
                                     double{refDirection[1]}, ", ", double{refDirection[2]}, "))")};
  const Ref location{
      writer.writeEntity("IFCCARTESIANPOINT((", first.x, ", ", first.y, ", ", first.z, "))")};
  const Ref axisPlacement{
      writer.writeEntity("IFCAXIS2PLACEMENT3D(", location, ", ", zAxis, ", ", xAxis, ")")};
  // Fixed shape: literal numbers.
  const Ref localPlacement{writer.writeEntity("IFCLOCALPLACEMENT(#111, ", axisPlacement, ")")};
  const Ref origin{writer.writeEntity("IFCCARTESIANPOINT((0., 0., 0.))")};
  const Ref solidPlacement{writer.writeEntity("IFCAXIS2PLACEMENT3D(", origin, ", $, $)")};
  const Ref solid{writer.writeEntity("IFCEXTRUDEDAREASOLID(", Ref{profileId}, ", ", solidPlacement,
                                     ", #19, ", distance(first, second), ")")};
  const Ref shape{
      writer.writeEntity("IFCSHAPEREPRESENTATION(#88, 'Body', 'SweptSolid', (", solid, "))")};
  const Ref productShape{writer.writeEntity("IFCPRODUCTDEFINITIONSHAPE($, $, (", shape, "))")};
  // Behind "$,": Fixed shape: no blank. The tag "418198": Fixed shape: time stamp.
  const Ref element{writer.writeEntity(
      elementKeyword(first, second, bar.elementKind), "('", createGlobalId(), "', ", owner, ", '",
      name, "', '", description, "', $,", localPlacement, ", ", productShape, ", '418198')")};
  const Ref property{writer.writeEntity("IFCPROPERTYSINGLEVALUE('Reference', $, IFCIDENTIFIER('",
                                        description, "'), $)")};
  const Ref propertySet{writer.writeEntity("IFCPROPERTYSET('", createGlobalId(), "', ", owner,
                                           ",'Propriedades do Perfil', '', (", property, "))")};
  writer.writeEntity("IFCRELDEFINESBYPROPERTIES('", createGlobalId(), "', ", owner,
                     ", 'Perfil', $, (", element, "), ", propertySet, ")");
  return element;
}

}  // namespace exportifc
