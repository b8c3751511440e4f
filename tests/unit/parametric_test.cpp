#include "profiles/parametric.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support.h"

namespace exportifc {
namespace {

using Lines = std::vector<std::string>;

/// What one variant writes for the dimensions a1 = 200.25, a2 = 100.5, a3 = 12.125, a4 = 8.75 and
/// a5 = 30.375: computed by hand, not by the table of the code.
struct Row {
  Parametric variant;
  int flangeSide;
  const char* point;
  const char* direction;
  const char* profile;
};

// clang-format off
const std::vector<Row>& rows() {
  static const std::vector<Row> list = {
    {Parametric::I1, 0, "(0., 0.)", "(-1.0, 0.0)",
     "IFCISHAPEPROFILEDEF(.AREA., 'N', #3, 100.50000,200.25000,8.75000,12.12500, $)"},
    {Parametric::U1, 0, "(-54.62500, 0.0)", "(-1.0, 0.0)",
     "IFCUSHAPEPROFILEDEF(.AREA., 'N', #3, 200.25000,100.50000,12.12500,12.12500, $, $, $, $)"},
    {Parametric::U2, 0, "(54.62500, 0.0)", "(1.0, 0.0)",
     "IFCUSHAPEPROFILEDEF(.AREA., 'N', #3, 200.25000,100.50000,12.12500,12.12500, $, $, $, $)"},
    {Parametric::U3, 0, "(45.87500, 0.0)", "(1.0, 0.0)",
     "IFCUSHAPEPROFILEDEF(.AREA., 'N', #3, 200.25000,100.50000,12.12500,12.12500, $, $, $, $)"},
    {Parametric::U4, 0, "(-45.87500, 0.0)", "(-1.0, 0.0)",
     "IFCUSHAPEPROFILEDEF(.AREA., 'N', #3, 200.25000,100.50000,12.12500,12.12500, $, $, $, $)"},
    {Parametric::U5, -1, "(-50.25000, 0.)", "(-1.0, 0.0)",
     "IFCUSHAPEPROFILEDEF(.AREA., 'N', #3, 200.25000, 100.50000, 12.12500, 12.12500, $, $, $, $)"},
    {Parametric::U5, 0, "(0.00000, 0.)", "(-1.0, 0.0)",
     "IFCUSHAPEPROFILEDEF(.AREA., 'N', #3, 200.25000, 100.50000, 12.12500, 12.12500, $, $, $, $)"},
    {Parametric::U6, 0, "(0., 0.)", "(-1.0, 0.0)",
     "IFCUSHAPEPROFILEDEF(.AREA., 'N', #3, 200.25000,100.50000,12.12500,8.75000, $, $, $, $)"},
    {Parametric::U7, 0, "(35.06250, 0.0)", "(1.0, 0.0)",
     "IFCUSHAPEPROFILEDEF(.AREA., 'N', #3, 200.25000,100.50000,12.12500,8.75000, $, $, $, $)"},
    {Parametric::U8, 0, "(-35.06250, 0.0)", "(-1.0, 0.0)",
     "IFCUSHAPEPROFILEDEF(.AREA., 'N', #3, 200.25000,100.50000,12.12500,8.75000, $, $, $, $)"},
    {Parametric::U9, 0, "(-65.43750, 0.0)", "(-1.0, 0.0)",
     "IFCUSHAPEPROFILEDEF(.AREA., 'N', #3, 200.25000,100.50000,12.12500,8.75000, $, $, $, $)"},
    {Parametric::U10, 0, "(65.43750, 0.0)", "(1.0, 0.0)",
     "IFCUSHAPEPROFILEDEF(.AREA., 'N', #3, 200.25000,100.50000,12.12500,8.75000, $, $, $, $)"},
    {Parametric::C1, -1, "(-50.25000, 0.)", "(-1.0, 0.0)",
     "IFCCSHAPEPROFILEDEF(.AREA., 'N', #3, 200.25000,100.50000,8.75000,12.12500, $, $)"},
    {Parametric::C1, 0, "(0.00000, 0.)", "(-1.0, 0.0)",
     "IFCCSHAPEPROFILEDEF(.AREA., 'N', #3, 200.25000,100.50000,8.75000,12.12500, $, $)"},
    {Parametric::C2, 0, "(-65.43750, 0.0)", "(1.0, 0.0)",
     "IFCCSHAPEPROFILEDEF(.AREA., 'N', #3, 200.25000,100.50000,8.75000,12.12500, $, $)"},
    {Parametric::C3, 0, "(65.43750, 0.0)", "(-1.0, 0.0)",
     "IFCCSHAPEPROFILEDEF(.AREA., 'N', #3, 200.25000,100.50000,8.75000,12.12500, $, $)"},
    {Parametric::C4, 0, "(-65.43750, 0.0)", "(-1.0, 0.0)",
     "IFCCSHAPEPROFILEDEF(.AREA., 'N', #3, 200.25000,100.50000,8.75000,12.12500, $, $)"},
    {Parametric::C5, 0, "(65.43750, 0.0)", "(1.0, 0.0)",
     "IFCCSHAPEPROFILEDEF(.AREA., 'N', #3, 200.25000,100.50000,8.75000,12.12500, $, $)"},
    {Parametric::RH, 0, "(0.0, 0.0)", "(1.0, 0.0)",
     "IFCRECTANGLEHOLLOWPROFILEDEF(.AREA., 'N', #3, 100.50000,200.25000,12.12500, $, $)"},
    {Parametric::L1, 0, "(0.0, 0.0)", "(0.5, 0.5)",
     "IFCLSHAPEPROFILEDEF(.AREA., 'N', #3, 200.25000, 200.25000,100.50000, $, $, $, $, $)"},
    {Parametric::L2, 0, "(0.0, 0.0)", "(-0.5, 0.5)",
     "IFCLSHAPEPROFILEDEF(.AREA., 'N', #3, 200.25000, 200.25000,100.50000, $, $, $, $, $)"},
    {Parametric::L3, 0, "(0.0, 0.0)", "(0.0, 1.0)",
     "IFCLSHAPEPROFILEDEF(.AREA., 'N', #3, 200.25000, 200.25000,100.50000, $, $, $, $, $)"},
    {Parametric::L4, 0, "(-106.18750, 0.0)", "(-1.0, 0.0)",
     "IFCLSHAPEPROFILEDEF(.AREA., 'N', #3, 200.25000, 200.25000,100.50000, $, $, $, $, $)"},
    {Parametric::L5, 0, "(106.18750, 0.0)", "(1.0, 0.0)",
     "IFCLSHAPEPROFILEDEF(.AREA., 'N', #3, 200.25000, 200.25000,100.50000, $, $, $, $, $)"},
    {Parametric::L6, 0, "(6.06250,0.0)", "(-1.0, 0.0)",
     "IFCLSHAPEPROFILEDEF(.AREA., 'N', #3, 200.25000, 200.25000,100.50000, $, $, $, $, $)"},
    {Parametric::L7, 0, "(-6.06250,0.0)", "(0.0, -1.0)",
     "IFCLSHAPEPROFILEDEF(.AREA., 'N', #3, 200.25000, 200.25000,100.50000, $, $, $, $, $)"},
    {Parametric::L8, 0, "(147.66063, 0.0)", "(0.5, 0.5)",
     "IFCLSHAPEPROFILEDEF(.AREA., 'N', #3, 200.25000, 200.25000,100.50000, $, $, $, $, $)"},
    {Parametric::L9, 0, "(-147.66063, 0.0)", "(-0.5, -0.5)",
     "IFCLSHAPEPROFILEDEF(.AREA., 'N', #3, 200.25000, 200.25000,100.50000, $, $, $, $, $)"},
    {Parametric::L10, 0, "(-135.53563, 0.0)", "(-0.5, -0.5)",
     "IFCLSHAPEPROFILEDEF(.AREA., 'N', #3, 200.25000, 200.25000,100.50000, $, $, $, $, $)"},
    {Parametric::L11, 0, "(135.53563, 0.0)", "(0.5, 0.5)",
     "IFCLSHAPEPROFILEDEF(.AREA., 'N', #3, 200.25000, 200.25000,100.50000, $, $, $, $, $)"},
    {Parametric::L12, 0, "(106.18750, 106.18750)", "(1.0, 0.0)",
     "IFCLSHAPEPROFILEDEF(.AREA., 'N', #3, 200.25000, 200.25000,100.50000, $, $, $, $, $)"},
    {Parametric::L13, 0, "(-106.18750, -106.18750)", "(-1.0, 0.0)",
     "IFCLSHAPEPROFILEDEF(.AREA., 'N', #3, 200.25000, 200.25000,100.50000, $, $, $, $, $)"},
    {Parametric::L14, 0, "(106.18750, 106.18750)", "(0.0, -1.0)",
     "IFCLSHAPEPROFILEDEF(.AREA., 'N', #3, 200.25000, 200.25000,100.50000, $, $, $, $, $)"},
    {Parametric::L15, 0, "(-106.18750, -106.18750)", "(0.0, 1.0)",
     "IFCLSHAPEPROFILEDEF(.AREA., 'N', #3, 200.25000, 200.25000,100.50000, $, $, $, $, $)"},
    {Parametric::T1, 0, "(0., 0.)", "(0.0, -1.0)",
     "IFCTSHAPEPROFILEDEF(.AREA., 'N', #3, 200.25000,200.25000,100.50000,100.50000, $, $, $, $, $, $)"},
    {Parametric::T2, 0, "(0., 0.)", "(-1.0, 0.0)",
     "IFCTSHAPEPROFILEDEF(.AREA., 'N', #3, 200.25000,100.50000,8.75000,12.12500, $, $, $, $, $, $)"},
    {Parametric::CI, 0, "(0.0, 0.0)", "(0.0, 1.0)",
     "IFCCIRCLEPROFILEDEF(.AREA., 'N', #3, 100.12500)"},
    {Parametric::CH, 0, "(0.0, 0.0)", "(0.0, 1.0)",
     "IFCCIRCLEHOLLOWPROFILEDEF(.AREA., 'N', #3, 100.12500,100.50000)"},
    {Parametric::R, 0, "(0.0, 0.0)", "(0.0, 1.0)",
     "IFCRECTANGLEPROFILEDEF(.AREA., 'N', #3, 200.25000,100.50000)"},
  };
  return list;
}
// clang-format on

Lines expectedLines(const Row& row) {
  return {std::string("#1= IFCCARTESIANPOINT(") + row.point + ");",
          std::string("#2= IFCDIRECTION(") + row.direction + ");",
          "#3= IFCAXIS2PLACEMENT2D(#1, #2);", std::string("#4= ") + row.profile + ";"};
}

Lines written(Parametric variant, const ProfileArguments& arguments,
              std::wstring_view name = L"N") {
  return test::exportedLines([&](StepWriter& writer) {
    EXPECT_EQ(writeParametricProfile(writer, variant, name, arguments), 4);
    EXPECT_EQ(writer.entities.size(), 4);
  });
}

TEST(WriteParametricProfile, EveryVariant) {
  ASSERT_EQ(rows().size(), 39U) << "37 variants, two of them with both flange sides";
  for (const Row& row : rows()) {
    const auto side = static_cast<double>(row.flangeSide);
    EXPECT_EQ(written(row.variant, {side, 200.25, 100.5, 12.125, 8.75, 30.375}),
              expectedLines(row));
  }
}

TEST(WriteParametricProfile, EveryVariantIsInTheTable) {
  std::vector<bool> seen(37);
  for (const Row& row : rows()) {
    seen.at(static_cast<std::size_t>(row.variant)) = true;
  }
  EXPECT_EQ(seen, std::vector<bool>(37, true));
}

TEST(WriteParametricProfile, FlangeSideZeroPutsOneChannelOnTheAxis) {
  for (const Parametric variant : {Parametric::U5, Parametric::C1}) {
    EXPECT_EQ(written(variant, {0, 100, 50, 3, 4})[0], "#1= IFCCARTESIANPOINT((0.00000, 0.));");
    EXPECT_EQ(written(variant, {-1, 100, 50, 3, 4})[0], "#1= IFCCARTESIANPOINT((-25.00000, 0.));");
    EXPECT_EQ(written(variant, {2, 100, 50, 3, 4})[0], "#1= IFCCARTESIANPOINT((50.00000, 0.));");
    EXPECT_EQ(written(variant, {0, 100, -50, 3, 4})[0], "#1= IFCCARTESIANPOINT((-0.00000, 0.));");
  }
}

TEST(WriteParametricProfile, OnlyL6AndL7HaveNoBlankInThePoint) {
  for (const Row& row : rows()) {
    const bool tight = std::string_view(row.point).find(", ") == std::string_view::npos;
    EXPECT_EQ(tight, row.variant == Parametric::L6 || row.variant == Parametric::L7) << row.profile;
  }
  EXPECT_EQ(written(Parametric::L6, {0, 50, 5, 10})[0], "#1= IFCCARTESIANPOINT((5.00000,0.0));");
  EXPECT_EQ(written(Parametric::L7, {0, 50, 5, 10})[0], "#1= IFCCARTESIANPOINT((-5.00000,0.0));");
}

TEST(WriteParametricProfile, TheNameStandsAsItIs) {
  EXPECT_EQ(written(Parametric::R, {0, 1, 2}, L"d'Agua 'x1' a2 \u00E7")[3],
            "#4= IFCRECTANGLEPROFILEDEF(.AREA., 'd'Agua 'x1' a2 \xE7', #3, 1.00000,2.00000);");
  EXPECT_EQ(written(Parametric::CI, {0, 1}, L"")[3],
            "#4= IFCCIRCLEPROFILEDEF(.AREA., '', #3, 0.50000);");
}

TEST(WriteParametricProfile, DimensionsAreNotChecked) {
  EXPECT_EQ(written(Parametric::CH, {0, 0, -3})[3],
            "#4= IFCCIRCLEHOLLOWPROFILEDEF(.AREA., 'N', #3, 0.00000,-3.00000);");
  EXPECT_EQ(written(Parametric::U1, {})[0], "#1= IFCCARTESIANPOINT((-0.00000, 0.0));")
      << "minus one half of zero";
  const double infinite = 1e300 * 1e300;
  EXPECT_EQ(written(Parametric::R, {0, infinite, -infinite})[3],
            "#4= IFCRECTANGLEPROFILEDEF(.AREA., 'N', #3, inf,-inf);");
  EXPECT_EQ(written(Parametric::U3, {0, 1, infinite, 1, infinite})[0],
            "#1= IFCCARTESIANPOINT((nan, 0.0));");
}

TEST(WriteParametricProfile, OffsetsAreComputedInOrder) {
  // The distance less a2 twice is rounded, then a2 is added: 0.5 (distance - a2) would give
  // ...495.50000.
  const double large = 0x1p53;
  const std::string left = "#1= IFCCARTESIANPOINT((-4503599627370495.00000, 0.0));";
  const std::string right = "#1= IFCCARTESIANPOINT((4503599627370495.00000, 0.0));";
  EXPECT_EQ(written(Parametric::U3, {0, 1, 1.4, 1, large})[0], left);
  EXPECT_EQ(written(Parametric::U4, {0, 1, 1.4, 1, large})[0], right);
  EXPECT_EQ(written(Parametric::U7, {0, 1, 1.4, 1, 1, large})[0], left);
  EXPECT_EQ(written(Parametric::U8, {0, 1, 1.4, 1, 1, large})[0], right);
}

TEST(WriteParametricProfile, NumbersGoOn) {
  const Lines lines = test::exportedLines([](StepWriter& writer) {
    EXPECT_EQ(writeParametricProfile(writer, Parametric::R, L"A", {0, 1, 2}), 4);
    EXPECT_EQ(writeParametricProfile(writer, Parametric::R, L"B", {0, 1, 2}), 8);
  });
  EXPECT_EQ(lines[6], "#7= IFCAXIS2PLACEMENT2D(#5, #6);");
  EXPECT_EQ(lines[7], "#8= IFCRECTANGLEPROFILEDEF(.AREA., 'B', #7, 1.00000,2.00000);");
}

}  // namespace
}  // namespace exportifc
