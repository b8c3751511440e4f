#include "profiles/parametric.h"

#include <cmath>
#include <cstddef>

#include "profiles/table_order.h"

namespace exportifc {

namespace {

using A = ProfileArguments;

/// How far an angle on its corner reaches sideways.
double diagonal(const A& a) { return std::sqrt(0.5 * a[1] * a[1]); }

// Halves of built-up sections stand at an offset from the section's axis. The blanks differ from
// row to row and are part of the file's text. Fixed shape: no blank. Offsets are computed in the
// order written here, so that the last printed digit agrees everywhere.
// clang-format off
constexpr ParametricRow table[] = {
    {Parametric::I1, "IFCISHAPEPROFILEDEF", "(0., 0.)", "(-1.0, 0.0)", "a2,a1,a4,a3, $", nullptr},
    {Parametric::U1, "IFCUSHAPEPROFILEDEF", "(x, 0.0)", "(-1.0, 0.0)", "a1,a2,a3,a3, $, $, $, $",
     [](const A& a) { return -0.5 * (a[4] + a[2]); }},
    {Parametric::U2, "IFCUSHAPEPROFILEDEF", "(x, 0.0)", "(1.0, 0.0)", "a1,a2,a3,a3, $, $, $, $",
     [](const A& a) { return 0.5 * (a[4] + a[2]); }},
    {Parametric::U3, "IFCUSHAPEPROFILEDEF", "(x, 0.0)", "(1.0, 0.0)", "a1,a2,a3,a3, $, $, $, $",
     [](const A& a) { return -0.5 * (a[2] + (a[4] - 2.0 * a[2])); }},
    {Parametric::U4, "IFCUSHAPEPROFILEDEF", "(x, 0.0)", "(-1.0, 0.0)", "a1,a2,a3,a3, $, $, $, $",
     [](const A& a) { return 0.5 * (a[2] + (a[4] - 2.0 * a[2])); }},
    {Parametric::U5, "IFCUSHAPEPROFILEDEF", "(x, 0.)", "(-1.0, 0.0)", "a1, a2, a3, a3, $, $, $, $",
     [](const A& a) { return a[0] * a[2] * 0.5; }},
    {Parametric::U6, "IFCUSHAPEPROFILEDEF", "(0., 0.)", "(-1.0, 0.0)", "a1,a2,a3,a4, $, $, $, $", nullptr},
    {Parametric::U7, "IFCUSHAPEPROFILEDEF", "(x, 0.0)", "(1.0, 0.0)", "a1,a2,a3,a4, $, $, $, $",
     [](const A& a) { return -0.5 * (a[2] + (a[5] - 2.0 * a[2])); }},
    {Parametric::U8, "IFCUSHAPEPROFILEDEF", "(x, 0.0)", "(-1.0, 0.0)", "a1,a2,a3,a4, $, $, $, $",
     [](const A& a) { return 0.5 * (a[2] + (a[5] - 2.0 * a[2])); }},
    {Parametric::U9, "IFCUSHAPEPROFILEDEF", "(x, 0.0)", "(-1.0, 0.0)", "a1,a2,a3,a4, $, $, $, $",
     [](const A& a) { return -0.5 * (a[5] + a[2]); }},
    {Parametric::U10, "IFCUSHAPEPROFILEDEF", "(x, 0.0)", "(1.0, 0.0)", "a1,a2,a3,a4, $, $, $, $",
     [](const A& a) { return 0.5 * (a[5] + a[2]); }},
    {Parametric::C1, "IFCCSHAPEPROFILEDEF", "(x, 0.)", "(-1.0, 0.0)", "a1,a2,a4,a3, $, $",
     [](const A& a) { return a[0] * a[2] * 0.5; }},
    {Parametric::C2, "IFCCSHAPEPROFILEDEF", "(x, 0.0)", "(1.0, 0.0)", "a1,a2,a4,a3, $, $",
     [](const A& a) { return -0.5 * (a[5] + a[2]); }},
    {Parametric::C3, "IFCCSHAPEPROFILEDEF", "(x, 0.0)", "(-1.0, 0.0)", "a1,a2,a4,a3, $, $",
     [](const A& a) { return 0.5 * (a[5] + a[2]); }},
    {Parametric::C4, "IFCCSHAPEPROFILEDEF", "(x, 0.0)", "(-1.0, 0.0)", "a1,a2,a4,a3, $, $",
     [](const A& a) { return -0.5 * (a[5] + a[2]); }},
    {Parametric::C5, "IFCCSHAPEPROFILEDEF", "(x, 0.0)", "(1.0, 0.0)", "a1,a2,a4,a3, $, $",
     [](const A& a) { return 0.5 * (a[5] + a[2]); }},
    {Parametric::RH, "IFCRECTANGLEHOLLOWPROFILEDEF", "(0.0, 0.0)", "(1.0, 0.0)", "a2,a1,a3, $, $", nullptr},
    {Parametric::L1, "IFCLSHAPEPROFILEDEF", "(0.0, 0.0)", "(0.5, 0.5)", "a1, a1,a2, $, $, $, $, $", nullptr},
    {Parametric::L2, "IFCLSHAPEPROFILEDEF", "(0.0, 0.0)", "(-0.5, 0.5)", "a1, a1,a2, $, $, $, $, $", nullptr},
    {Parametric::L3, "IFCLSHAPEPROFILEDEF", "(0.0, 0.0)", "(0.0, 1.0)", "a1, a1,a2, $, $, $, $, $", nullptr},
    {Parametric::L4, "IFCLSHAPEPROFILEDEF", "(x, 0.0)", "(-1.0, 0.0)", "a1, a1,a2, $, $, $, $, $",
     [](const A& a) { return -0.5 * (a[3] + a[1]); }},
    {Parametric::L5, "IFCLSHAPEPROFILEDEF", "(x, 0.0)", "(1.0, 0.0)", "a1, a1,a2, $, $, $, $, $",
     [](const A& a) { return 0.5 * (a[3] + a[1]); }},
    {Parametric::L6, "IFCLSHAPEPROFILEDEF", "(x,0.0)", "(-1.0, 0.0)", "a1, a1,a2, $, $, $, $, $",
     [](const A& a) { return 0.5 * a[3]; }},
    {Parametric::L7, "IFCLSHAPEPROFILEDEF", "(x,0.0)", "(0.0, -1.0)", "a1, a1,a2, $, $, $, $, $",
     [](const A& a) { return -0.5 * a[3]; }},
    {Parametric::L8, "IFCLSHAPEPROFILEDEF", "(x, 0.0)", "(0.5, 0.5)", "a1, a1,a2, $, $, $, $, $",
     [](const A& a) { return 0.5 * a[3] + diagonal(a); }},
    {Parametric::L9, "IFCLSHAPEPROFILEDEF", "(x, 0.0)", "(-0.5, -0.5)", "a1, a1,a2, $, $, $, $, $",
     [](const A& a) { return -diagonal(a) - 0.5 * a[3]; }},
    {Parametric::L10, "IFCLSHAPEPROFILEDEF", "(x, 0.0)", "(-0.5, -0.5)", "a1, a1,a2, $, $, $, $, $",
     [](const A& a) { return 0.5 * (a[3] - 2.0 * diagonal(a)); }},
    {Parametric::L11, "IFCLSHAPEPROFILEDEF", "(x, 0.0)", "(0.5, 0.5)", "a1, a1,a2, $, $, $, $, $",
     [](const A& a) { return -0.5 * (a[3] - 2.0 * diagonal(a)); }},
    {Parametric::L12, "IFCLSHAPEPROFILEDEF", "(x, x)", "(1.0, 0.0)", "a1, a1,a2, $, $, $, $, $",
     [](const A& a) { return 0.5 * (a[3] + a[1]); }},
    {Parametric::L13, "IFCLSHAPEPROFILEDEF", "(x, x)", "(-1.0, 0.0)", "a1, a1,a2, $, $, $, $, $",
     [](const A& a) { return -0.5 * (a[3] + a[1]); }},
    {Parametric::L14, "IFCLSHAPEPROFILEDEF", "(x, x)", "(0.0, -1.0)", "a1, a1,a2, $, $, $, $, $",
     [](const A& a) { return 0.5 * (a[3] + a[1]); }},
    {Parametric::L15, "IFCLSHAPEPROFILEDEF", "(x, x)", "(0.0, 1.0)", "a1, a1,a2, $, $, $, $, $",
     [](const A& a) { return -0.5 * (a[3] + a[1]); }},
    {Parametric::T1, "IFCTSHAPEPROFILEDEF", "(0., 0.)", "(0.0, -1.0)", "a1,a1,a2,a2, $, $, $, $, $, $", nullptr},
    {Parametric::T2, "IFCTSHAPEPROFILEDEF", "(0., 0.)", "(-1.0, 0.0)", "a1,a2,a4,a3, $, $, $, $, $, $", nullptr},
    {Parametric::CI, "IFCCIRCLEPROFILEDEF", "(0.0, 0.0)", "(0.0, 1.0)", "h1", nullptr},
    {Parametric::CH, "IFCCIRCLEHOLLOWPROFILEDEF", "(0.0, 0.0)", "(0.0, 1.0)", "h1,a2", nullptr},
    {Parametric::R, "IFCRECTANGLEPROFILEDEF", "(0.0, 0.0)", "(0.0, 1.0)", "a1,a2", nullptr},
};
// clang-format on

static_assert(standsInOrder(table, &ParametricRow::variant, Parametric::R));

}  // namespace

const ParametricRow& parametricRow(Parametric variant) {
  return table[static_cast<std::size_t>(variant)];
}

std::int32_t writeParametricProfile(StepWriter& writer, Parametric variant, const HostText& name,
                                    const ProfileArguments& arguments) {
  const ParametricRow& row = parametricRow(variant);
  const double offset = row.offset == nullptr ? 0.0 : row.offset(arguments);
  const Ref point{
      writer.writeEntity("IFCCARTESIANPOINT(",
                         NumberPattern{.text = row.point, .values = arguments, .x = offset}, ")")};
  const Ref direction{writer.writeEntity("IFCDIRECTION(", row.direction, ")")};
  const Ref placement{writer.writeEntity("IFCAXIS2PLACEMENT2D(", point, ", ", direction, ")")};
  return writer.writeEntity(row.keyword, "(.AREA., '", name, "', ", placement, ", ",
                            NumberPattern{.text = row.attributes, .values = arguments}, ")");
}

}  // namespace exportifc
