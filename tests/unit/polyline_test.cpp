#include "elements/polyline.h"

#include <bit>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support.h"

namespace exportifc {
namespace {

using Lines = std::vector<std::string>;
using Points = std::vector<OutlinePoint>;

/// The sign of a zero counts.
void expectPoint(const OutlinePoint& point, double x, double y, double z) {
  EXPECT_EQ(std::bit_cast<std::uint64_t>(point.x), std::bit_cast<std::uint64_t>(x)) << point.x;
  EXPECT_EQ(std::bit_cast<std::uint64_t>(point.y), std::bit_cast<std::uint64_t>(y)) << point.y;
  EXPECT_EQ(std::bit_cast<std::uint64_t>(point.z), std::bit_cast<std::uint64_t>(z)) << point.z;
}

TEST(WritePointList, OneEntityAPointInOrder) {
  const auto lines = test::exportedLines([](StepWriter& writer) {
    writer.writeEntity("A()");
    const Points points = {{-2, 2, 99}, {0.5, -0.000001, 0}};
    EXPECT_EQ(writePointList(writer, points), (std::vector<std::int32_t>{2, 3}));
  });
  EXPECT_EQ(lines, (Lines{"#1= A();", "#2= IFCCARTESIANPOINT((-2.00000, 2.00000));",
                          "#3= IFCCARTESIANPOINT((0.50000, -0.00000));"}));
}

TEST(WritePointList, NoPointsNoLines) {
  EXPECT_EQ(test::exportedLines(
                [](StepWriter& writer) { EXPECT_TRUE(writePointList(writer, {}).empty()); }),
            Lines{});
}

TEST(WritePolyline, PointsThenTheLineThroughThem) {
  const auto lines = test::exportedLines([](StepWriter& writer) {
    const Points square = {{-2, -2, 0}, {2, -2, 0}, {2, 2, 0}, {-2, 2, 0}, {-2, -2, 0}};
    EXPECT_EQ(writePolyline(writer, square), 6);
  });
  EXPECT_EQ(lines, (Lines{"#1= IFCCARTESIANPOINT((-2.00000, -2.00000));",
                          "#2= IFCCARTESIANPOINT((2.00000, -2.00000));",
                          "#3= IFCCARTESIANPOINT((2.00000, 2.00000));",
                          "#4= IFCCARTESIANPOINT((-2.00000, 2.00000));",
                          "#5= IFCCARTESIANPOINT((-2.00000, -2.00000));",
                          "#6= IFCPOLYLINE((#1, #2, #3, #4, #5));"}));
}

TEST(WritePolyline, OneOrNoPoint) {
  EXPECT_EQ(test::exportedLines([](StepWriter& writer) {
              EXPECT_EQ(writePolyline(writer, Points{{1, 2, 3}}), 2);
              EXPECT_EQ(writePolyline(writer, {}), 3);
            }),
            (Lines{"#1= IFCCARTESIANPOINT((1.00000, 2.00000));", "#2= IFCPOLYLINE((#1));",
                   "#3= IFCPOLYLINE(());"}));
}

TEST(BoundingBoxCentre, OfThreePoints) {
  expectPoint(boundingBoxCentre(Points{{0, 0, 0}, {4, 2, 0}, {1, -6, 0}}), 2, -2, 0);
}

TEST(BoundingBoxCentre, OfOnePointIsThePoint) {
  expectPoint(boundingBoxCentre(Points{{3.5, -1, 7}}), 3.5, -1, 7);
}

TEST(BoundingBoxCentre, CountsZ) {
  expectPoint(boundingBoxCentre(Points{{0, 0, 5}, {0, 0, -1}, {0, 0, 2}}), 0, 0, 2);
}

TEST(BoundingBoxCentre, TheFirstOfTwoZerosStays) {
  expectPoint(boundingBoxCentre(Points{{-0.0, 0.0, -0.0}, {0.0, -0.0, -0.0}}), -0.0, 0.0, -0.0);
  expectPoint(boundingBoxCentre(Points{{0.0, -0.0, 0.0}, {-0.0, 0.0, 5.0}}), 0.0, -0.0, 2.5);
}

TEST(BoundingBoxCentre, ANanWidensNothing) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  expectPoint(boundingBoxCentre(Points{{0, 0, 0}, {nan, 2, nan}, {4, nan, 6}}), 2, 1, 3);
  const OutlinePoint first = boundingBoxCentre(Points{{nan, 0, 0}, {1, 1, 1}});
  EXPECT_NE(first.x, first.x) << "a NaN in the first point is never replaced";
  EXPECT_EQ(first.y, 0.5);
}

TEST(BoundingBoxCentre, OfNothingIsABadArgument) {
  try {
    (void)boundingBoxCentre({});
    FAIL() << "nothing was thrown";
  } catch (const char* text) {
    EXPECT_STREQ(text, "bad argument");
  }
}

}  // namespace
}  // namespace exportifc
