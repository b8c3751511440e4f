// Cross-sections that IFC2X3 knows as parametric profiles.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "step/host_text.h"
#include "step/step_writer.h"

namespace exportifc {

/// The variants of parametric profiles: type, position and attributes differ. Each is a row of the
/// table in parametric.cpp, in this order.
enum class Parametric : std::uint8_t {
  I1,
  U1,
  U2,
  U3,
  U4,
  U5,
  U6,
  U7,
  U8,
  U9,
  U10,
  C1,
  C2,
  C3,
  C4,
  C5,
  RH,
  L1,
  L2,
  L3,
  L4,
  L5,
  L6,
  L7,
  L8,
  L9,
  L10,
  L11,
  L12,
  L13,
  L14,
  L15,
  T1,
  T2,
  CI,
  CH,
  R,
};

/// The dimensions that a profile writer takes, in millimetres: a1 to a7 at their own index;
/// index 0 holds k, the flange side.
using ProfileArguments = std::array<double, 8>;

/// How one variant is written.
struct ParametricRow {
  Parametric variant;
  std::string_view keyword;
  PatternText point;           // as written; "x" stands for the value of `offset`
  std::string_view direction;  // of the profile's local X axis
  PatternText attributes;      // as written; "a2" stands for argument 2, "h1" for half of 1
  double (*offset)(const ProfileArguments& a);
};

const ParametricRow& parametricRow(Parametric variant);

/// Writes the four entities of a parametric profile (point, direction, placement, profile
/// definition) and returns the number of the profile definition. Dimensions are not checked.
std::int32_t writeParametricProfile(StepWriter& writer, Parametric variant, const HostText& name,
                                    const ProfileArguments& arguments);

}  // namespace exportifc
