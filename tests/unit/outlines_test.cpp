#include "profiles/outlines.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support.h"

namespace exportifc {
namespace {

using Points = std::vector<OutlinePoint>;

constexpr Outline every[] = {Outline::cart, Outline::icarFirst, Outline::icarSecond, Outline::z,
                             Outline::zs,   Outline::pc,        Outline::psa};

double area(const Points& points) {
  double twice = 0;
  for (std::size_t i = 0; i + 1 < points.size(); ++i) {
    twice += points[i].x * points[i + 1].y - points[i + 1].x * points[i].y;
  }
  return std::fabs(twice) / 2;
}

struct Box {
  double left;
  double right;
  double bottom;
  double top;
};

Box boxOf(const Points& points) {
  const auto [left, right] =
      std::minmax_element(points.begin(), points.end(),
                          [](const OutlinePoint& a, const OutlinePoint& b) { return a.x < b.x; });
  const auto [bottom, top] =
      std::minmax_element(points.begin(), points.end(),
                          [](const OutlinePoint& a, const OutlinePoint& b) { return a.y < b.y; });
  return {left->x, right->x, bottom->y, top->y};
}

void expectBox(Outline outline, const ProfileArguments& arguments, const Box& expected) {
  const Box box = boxOf(outlinePoints(outline, arguments));
  EXPECT_NEAR(box.left, expected.left, 1e-9);
  EXPECT_NEAR(box.right, expected.right, 1e-9);
  EXPECT_NEAR(box.bottom, expected.bottom, 1e-9);
  EXPECT_NEAR(box.top, expected.top, 1e-9);
}

TEST(OutlinePoints, TheHatHangsFromItsHighestEdge) {
  // Before moving: x from 0 to 86, y from 0 to 100.
  const ProfileArguments hat = {0, 100, 50, 20, 2};
  expectBox(Outline::cart, hat, {-43, 43, -100, 0});
  EXPECT_EQ(outlinePoints(Outline::cart, hat).size(), 13U);
}

TEST(OutlinePoints, HalvesOfABuiltUpHatStandOnBothSides) {
  // Height 200, width 100: each lies on its side, 100 deep, half the gap of 10 from the axis.
  const ProfileArguments arguments = {0, 200, 100, 40, 4, 10};
  // Over the brims: (200 + 40) - 8 + 40.
  expectBox(Outline::icarFirst, arguments, {5, 105, -136, 136});
  expectBox(Outline::icarSecond, arguments, {-105, -5, -136, 136});
}

TEST(OutlinePoints, TheTurnIsTheLibrarysAndNotExact) {
  // A quarter turn by the library's cosine leaves a trace of the other coordinate.
  const Points points = outlinePoints(Outline::icarFirst, {0, 1e15, 0, 0, 0, 0});
  EXPECT_NE(points[0].x, 0.0);
  EXPECT_NEAR(points[0].x, -0.5e15 * 6.123233995736766e-17, 1e-4);
}

TEST(OutlinePoints, Boxes) {
  expectBox(Outline::z, {0, 200, 70, 60, 20, 25, 2}, {-64, 64, -100, 100});
  expectBox(Outline::zs, {0, 200, 60, 20, 2}, {-59, 59, -100, 100});
  expectBox(Outline::pc, {0, 400, 300, 20, 10, 200}, {-150, 150, -200, 200});
  expectBox(Outline::psa, {0, 400, 200, 20, 300, 25, 10}, {-150, 150, -200, 200});
  expectBox(Outline::psa, {0, 400, 300, 20, 200, 25, 10}, {-150, 150, -200, 200});
}

// ---- Random dimensions -------------------------------------------------------------------------

/// Sensible dimensions a1 to a6 in random sizes.
struct Dimensions {
  explicit Dimensions(test::Random& random)
      : thickness(random.number(1, 10)),
        height(random.number(100, 800)),
        width(random.number(80, 400)),
        lip(random.number(20, 45)),
        gap(random.number(0, 40)) {}

  double thickness;
  double height;
  double width;
  double lip;
  double gap;
};

template <class Check>
void forRandomDimensions(std::uint64_t seed, Check check) {
  test::Random random(seed);
  for (int round = 0; round < test::rounds(20000); ++round) {
    check(Dimensions(random));
    if (testing::Test::HasFatalFailure()) {
      return;
    }
  }
}

TEST(OutlinePoints, AreClosedAndCentred) {
  forRandomDimensions(1, [](const Dimensions& d) {
    const ProfileArguments arguments = {-1,          d.height, d.width,    d.lip,
                                        d.thickness, d.gap,    d.thickness};
    for (const Outline outline : every) {
      const Points points = outlinePoints(outline, arguments);
      ASSERT_GE(points.size(), 13U);
      ASSERT_EQ(points.front().x, points.back().x);
      ASSERT_EQ(points.front().y, points.back().y);
      for (const OutlinePoint& point : points) {
        ASSERT_EQ(point.z, 0.0);
      }
      const Box box = boxOf(points);
      double x = 0;
      double y = 0;
      if (outline == Outline::cart) {
        y = -0.5 * d.height;
      } else if (outline == Outline::icarFirst) {
        x = 0.5 * (d.width + d.gap);
      } else if (outline == Outline::icarSecond) {
        x = -0.5 * (d.width + d.gap);
      }
      ASSERT_NEAR((box.left + box.right) / 2, x, 1e-9);
      ASSERT_NEAR((box.bottom + box.top) / 2, y, 1e-9);
    }
  });
}

TEST(OutlinePoints, AreasOfHats) {
  // Two brims, two webs, one top: the sheet is one strip, corners counted once.
  forRandomDimensions(2, [](const Dimensions& d) {
    const double t = d.thickness;
    const auto hat = [&](double height, double width) {
      return 2 * d.lip * t + 2 * (height - 2 * t) * t + width * t;
    };
    ASSERT_NEAR(area(outlinePoints(Outline::cart, {0, d.height, d.width, d.lip, t})),
                hat(d.height, d.width), 1e-6);
    for (const Outline half : {Outline::icarFirst, Outline::icarSecond}) {
      ASSERT_NEAR(area(outlinePoints(half, {0, d.height, d.width, d.lip, t, d.gap})),
                  hat(d.width, d.height), 1e-6);
    }
  });
}

TEST(OutlinePoints, AreasOfLippedZs) {
  forRandomDimensions(3, [](const Dimensions& d) {
    const double t = d.thickness;
    const double top = d.width;
    const double bottom = d.width + d.gap;
    const double topLip = d.lip;
    const double bottomLip = d.lip / 2;
    // Each flange without the web's thickness, each lip without the flange's, the web whole.
    const double z = d.height * t + (top - t + bottom - t) * t + (topLip - t + bottomLip - t) * t;
    ASSERT_NEAR(area(outlinePoints(Outline::z, {0, d.height, top, bottom, topLip, bottomLip, t})),
                z, 1e-6);
    const double symmetric = d.height * t + 2 * (d.width - t) * t + 2 * (d.lip - t) * t;
    ASSERT_NEAR(area(outlinePoints(Outline::zs, {0, d.height, d.width, d.lip, t})), symmetric,
                1e-6);
  });
}

TEST(OutlinePoints, AreasOfWeldedSections) {
  forRandomDimensions(4, [](const Dimensions& d) {
    const double web = d.thickness;
    const double top = d.thickness + 2;
    const double bottom = d.thickness + 5;
    const double box = 2 * d.width * top + 2 * web * (d.height - 2 * top);
    ASSERT_NEAR(area(outlinePoints(Outline::pc, {0, d.height, d.width, top, web, 0.75 * d.width})),
                box, 1e-6);
    const double wide = d.width + d.gap;
    const double beam = d.width * top + wide * bottom + web * (d.height - top - bottom);
    ASSERT_NEAR(area(outlinePoints(Outline::psa, {0, d.height, d.width, top, wide, bottom, web})),
                beam, 1e-6);
  });
}

TEST(OutlinePoints, DegenerateDimensionsGiveDegenerateOutlines) {
  for (const Outline outline : every) {
    for (const OutlinePoint& point : outlinePoints(outline, {})) {
      EXPECT_EQ(point.x, 0.0);
      EXPECT_EQ(point.y, 0.0);
    }
    const double nan = std::nan("");
    EXPECT_GE(outlinePoints(outline, {0, nan, nan, nan, nan, nan, nan, nan}).size(), 13U);
  }
}

// ---- Every bit, the sign of a zero included -----------------------------------------------------

struct Extent {
  double least;
  double most;

  double middle() const { return (least + most) * 0.5; }
};

Extent extentOf(const Points& points, double OutlinePoint::*coordinate) {
  Extent extent{points[0].*coordinate, points[0].*coordinate};
  for (const OutlinePoint& point : points) {
    if (point.*coordinate < extent.least) extent.least = point.*coordinate;
    if (point.*coordinate > extent.most) extent.most = point.*coordinate;
  }
  return extent;
}

/// `points` less the middle of their box; the hat that hangs is lowered by `more` besides.
Points lessMiddle(Points points, const double* more = nullptr) {
  const double x = extentOf(points, &OutlinePoint::x).middle();
  const double middle = extentOf(points, &OutlinePoint::y).middle();
  const double y = more == nullptr ? middle : middle + *more;
  for (OutlinePoint& point : points) {
    point.x = point.x - x;
    point.y = point.y - y;
  }
  return points;
}

/// Depth, width, brim, thickness.
Points plainHat(double a1, double a2, double a3, double a4) {
  const double x4 = (a2 + a3) - 2 * a4;
  const double x8 = (a2 + a3) - a4;
  return {{0, 0},   {a3, 0},  {a3, a1 - a4}, {x4, a1 - a4}, {x4, 0}, {x4 + a3, 0}, {x4 + a3, a4},
          {x8, a4}, {x8, a1}, {a3 - a4, a1}, {a3 - a4, a4}, {0, a4}, {0, 0}};
}

Points turnedHalf(const ProfileArguments& a, double angle, double shift) {
  Points points = lessMiddle(plainHat(a[2], a[1], a[3], a[4]));
  for (OutlinePoint& point : points) {
    const double x = point.x * std::cos(angle) - point.y * std::sin(angle);
    const double y = point.x * std::sin(angle) + point.y * std::cos(angle);
    point.x = x + shift;
    point.y = y;
  }
  return points;
}

/// Each outline once more, one point after the other from the dimensions.
Points expectedPoints(Outline outline, const ProfileArguments& a) {
  const double h = 0.5 * a[1];
  switch (outline) {
    case Outline::cart: return lessMiddle(plainHat(a[1], a[2], a[3], a[4]), &h);
    case Outline::icarFirst: return turnedHalf(a, 1.5707963267948966, 0.5 * (a[2] + a[5]));
    case Outline::icarSecond: return turnedHalf(a, 4.71238898038469, -0.5 * (a[2] + a[5]));
    case Outline::z: {
      const double x5 = a[3] - a[6];
      const double x6 = x5 + a[2];
      return lessMiddle({{0, a[5]},
                         {a[6], a[5]},
                         {a[6], a[6]},
                         {x5, a[6]},
                         {x5, a[1]},
                         {x6, a[1]},
                         {x6, a[1] - a[4]},
                         {x6 - a[6], a[1] - a[4]},
                         {x6 - a[6], a[1] - a[6]},
                         {a[3], a[1] - a[6]},
                         {a[3], 0},
                         {0, 0},
                         {0, a[5]}});
    }
    case Outline::zs: {
      const double x5 = a[2] - a[4];
      const double x6 = a[2] + x5;
      return lessMiddle({{0, a[3]},
                         {a[4], a[3]},
                         {a[4], a[4]},
                         {x5, a[4]},
                         {x5, a[1]},
                         {x6, a[1]},
                         {x6, a[1] - a[3]},
                         {x6 - a[4], a[1] - a[3]},
                         {x6 - a[4], a[1] - a[4]},
                         {a[2], a[1] - a[4]},
                         {a[2], 0},
                         {0, 0},
                         {0, a[3]}});
    }
    case Outline::pc: {
      const double w = 0.5 * a[2];
      const double g = 0.5 * a[5];
      return lessMiddle({{0, h},
                         {w, h},
                         {w, h - a[3]},
                         {g, h - a[3]},
                         {g, a[3] - h},
                         {w, a[3] - h},
                         {w, -0.5 * a[1]},
                         {-0.5 * a[2], -0.5 * a[1]},
                         {-0.5 * a[2], a[3] - h},
                         {-0.5 * a[5], a[3] - h},
                         {-0.5 * a[5], h - a[3]},
                         {a[4] - g, h - a[3]},
                         {a[4] - g, a[3] - h},
                         {g - a[4], a[3] - h},
                         {g - a[4], h - a[3]},
                         {-0.5 * a[2], h - a[3]},
                         {-0.5 * a[2], h},
                         {0, h}});
    }
    case Outline::psa:
      return lessMiddle({{0, h},
                         {0.5 * a[2], h},
                         {0.5 * a[2], h - a[3]},
                         {0.5 * a[6], h - a[3]},
                         {0.5 * a[6], a[5] - h},
                         {0.5 * a[4], a[5] - h},
                         {0.5 * a[4], -0.5 * a[1]},
                         {-0.5 * a[4], -0.5 * a[1]},
                         {-0.5 * a[4], a[5] - h},
                         {-0.5 * a[6], a[5] - h},
                         {-0.5 * a[6], h - a[3]},
                         {-0.5 * a[2], h - a[3]},
                         {-0.5 * a[2], h},
                         {0, h}});
  }
  return {};
}

void expectSameBits(Outline outline, const ProfileArguments& a) {
  const auto shown = [&] {
    std::string text = "outline " + std::to_string(static_cast<int>(outline)) + ":";
    for (const double value : a) {
      text += std::signbit(value) ? " -" : " ";
      text += std::to_string(std::fabs(value));
    }
    return text;
  };
  const Points expected = expectedPoints(outline, a);
  const Points points = outlinePoints(outline, a);
  ASSERT_EQ(points.size(), expected.size());
  for (std::size_t i = 0; i < points.size(); ++i) {
    ASSERT_EQ(std::bit_cast<std::uint64_t>(points[i].x),
              std::bit_cast<std::uint64_t>(expected[i].x))
        << shown() << ", x of point " << i + 1 << ": " << points[i].x;
    ASSERT_EQ(std::bit_cast<std::uint64_t>(points[i].y),
              std::bit_cast<std::uint64_t>(expected[i].y))
        << shown() << ", y of point " << i + 1 << ": " << points[i].y;
    ASSERT_EQ(std::bit_cast<std::uint64_t>(points[i].z), std::uint64_t{0}) << shown();
  }
}

TEST(OutlinePoints, EveryBitOfSensibleDimensions) {
  forRandomDimensions(5, [](const Dimensions& d) {
    for (const Outline outline : every) {
      ASSERT_NO_FATAL_FAILURE(expectSameBits(outline, {-1, d.height, d.width, d.lip, d.thickness,
                                                       d.gap, d.thickness / 3, d.height / 7}));
    }
  });
}

TEST(OutlinePoints, EveryBitWhereZerosHaveSigns) {
  // A centre of -0 is left as it is: the difference of -0 and -0 is 0, that of -0 and 0 is -0.
  const std::vector<double> values = {0.0, -0.0, 0.0, -0.0, 5.0, -5.0, 50.0, 100.0};
  test::Random random(6);
  for (int round = 0; round < test::rounds(20000); ++round) {
    ProfileArguments arguments{};
    for (double& value : arguments) {
      value = random.pick(values);
    }
    for (const Outline outline : every) {
      ASSERT_NO_FATAL_FAILURE(expectSameBits(outline, arguments));
    }
  }
}

TEST(WriteOutlineProfile, ABoxOfDepthMinusZeroHasNoOtherMinusZero) {
  const auto lines = test::exportedLines([](StepWriter& writer) {
    writeOutlineProfile(writer, Outline::pc, L"PC -0 100 0 5 50", {-1, -0.0, 100, 0, 5, 50});
  });
  ASSERT_EQ(lines.size(), 20U);
  EXPECT_EQ(lines[0], "#1= IFCCARTESIANPOINT((0.00000, 0.00000));");
  EXPECT_EQ(lines[1], "#2= IFCCARTESIANPOINT((50.00000, 0.00000));");
  for (const std::string& line : lines) {
    EXPECT_EQ(line.find("-0.00000"), std::string::npos) << line;
  }
}

// ---- In the file -------------------------------------------------------------------------------

TEST(WriteOutlineProfile, PointsPolylineProfile) {
  const auto lines = test::exportedLines([](StepWriter& writer) {
    EXPECT_EQ(writeOutlineProfile(writer, Outline::cart, L"CART 1'x", {0, 100, 50, 20, 2}), 15);
  });
  ASSERT_EQ(lines.size(), 15U);
  EXPECT_EQ(lines[0], "#1= IFCCARTESIANPOINT((-43.00000, -100.00000));");
  EXPECT_EQ(lines[8], "#9= IFCCARTESIANPOINT((25.00000, 0.00000));");
  EXPECT_EQ(lines[12], "#13= IFCCARTESIANPOINT((-43.00000, -100.00000));");
  EXPECT_EQ(lines[13],
            "#14= IFCPOLYLINE((#1, #2, #3, #4, #5, #6, #7, #8, #9, #10, #11, #12, #13));");
  EXPECT_EQ(lines[14], "#15= IFCARBITRARYCLOSEDPROFILEDEF(.AREA., 'CART 1'x', #14);");
}

TEST(WriteUnknownProfile, ASquare) {
  const auto lines =
      test::exportedLines([](StepWriter& writer) { EXPECT_EQ(writeUnknownProfile(writer), 7); });
  ASSERT_EQ(lines.size(), 7U);
  EXPECT_EQ(lines[5], "#6= IFCPOLYLINE((#1, #2, #3, #4, #5));");
  EXPECT_EQ(lines[6], "#7= IFCARBITRARYCLOSEDPROFILEDEF(.AREA., 'UnknownProfile', #6);");
}

}  // namespace
}  // namespace exportifc
