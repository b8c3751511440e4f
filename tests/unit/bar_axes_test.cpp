#include "elements/bar_axes.h"

#include <cmath>
#include <limits>
#include <numbers>

#include <gtest/gtest.h>

#include "support.h"

namespace exportifc {
namespace {

constexpr double tolerance = 0.009999999776482582;  // as the element writer passes it
constexpr double quarter = std::numbers::pi / 2;

Matrix3 axes(double angle, double dx, double dy, double dz) {
  Matrix3 out{};
  EXPECT_FALSE(barAxesMatrix(angle, dx, dy, dz, tolerance, out)) << "there is nothing to report";
  return out;
}

void expectRow(const std::array<double, 3>& row, double x, double y, double z) {
  EXPECT_NEAR(row[0], x, 1e-15);
  EXPECT_NEAR(row[1], y, 1e-15);
  EXPECT_NEAR(row[2], z, 1e-15);
}

TEST(BarAxes, AlongX) {
  const Matrix3 m = axes(0, 1000, 0, 0);
  expectRow(m[0], 1, 0, 0);
  expectRow(m[1], 0, 1, 0);
  expectRow(m[2], 0, 0, 1);
}

TEST(BarAxes, AgainstX) {
  const Matrix3 m = axes(0, -1000, 0, 0);
  expectRow(m[0], -1, 0, 0);
  expectRow(m[1], 0, 1, 0);
  expectRow(m[2], 0, 0, -1);
}

TEST(BarAxes, AlongZ) {
  const Matrix3 m = axes(0, 0, 0, 1000);
  expectRow(m[0], 0, 0, 1);
  expectRow(m[1], 0, 1, 0);
  expectRow(m[2], -1, 0, 0);
}

TEST(BarAxes, AlongY) {
  const Matrix3 up = axes(0, 0, 1000, 0);
  expectRow(up[0], 0, 1, 0);
  expectRow(up[1], -1, 0, 0);
  expectRow(up[2], 0, 0, 1);
  const Matrix3 down = axes(0, 0, -1000, 0);
  expectRow(down[0], 0, -1, 0);
  expectRow(down[1], 1, 0, 0);
}

TEST(BarAxes, TheAngleTurnsTheReferenceAboutTheBar) {
  for (const double a : {0.0, 0.5, quarter, 3.0, -1.0, 7.0}) {
    expectRow(axes(a, 1000, 0, 0)[1], 0, std::cos(a), std::sin(a));
    expectRow(axes(a, 0, 0, 1000)[1], -std::sin(a), std::cos(a), 0);
    expectRow(axes(a, 1000, 0, 0)[0], 1, 0, 0);
  }
}

TEST(BarAxes, ABarOfNoLengthLiesAlongX) {
  const Matrix3 m = axes(0.5, 0, 0, 0);
  expectRow(m[0], 1, 0, 0);
  expectRow(m[1], 0, std::cos(0.5), std::sin(0.5));
}

TEST(BarAxes, DifferencesBelowTheToleranceCountAsZero) {
  const double below = std::nextafter(tolerance, 0.0);
  expectRow(axes(0, 0, 0, below)[0], 1, 0, 0);
  expectRow(axes(0, 0, 0, -below)[0], 1, 0, 0);
  expectRow(axes(0, 0, below, 0)[0], 1, 0, 0);
  expectRow(axes(0, 0, 0, tolerance)[0], 0, 0, 1);
  expectRow(axes(0, 0, tolerance, 0)[0], 0, 1, 0);
  expectRow(axes(0, 0, -tolerance, 0)[0], 0, -1, 0);
}

TEST(BarAxes, SmallHorizontalDifferencesOfASteepBarGiveNoHeading) {
  // The heading is that of +X, though the bar leans a little to -Z.
  const Matrix3 m = axes(0, 0, 1000, -0.009);
  EXPECT_NEAR(m[0][2], 0.0, 1e-15);
  EXPECT_GT(m[0][0], 0.0);
}

TEST(BarAxes, OneLargeDifferenceIsEnoughForAHeading) {
  // dz is small but dx is not, and the other way round.
  const double heading = std::atan2(0.005, 1.0);
  expectRow(axes(0, 1.0, 0, 0.005)[0], std::cos(heading), 0, std::sin(heading));
  expectRow(axes(0, 0.005, 0, 1.0)[0], std::cos(quarter - heading), 0, std::sin(quarter - heading));
}

TEST(BarAxes, EntriesAreTheProductOfTheThreeTurns) {
  const double a = 0.3;
  const double dx = 3;
  const double dy = -4;
  const double dz = 12;
  const double beta = std::atan2(dz, dx);
  const double gamma = std::atan2(dy, std::hypot(dx, dz));
  const Matrix3 m = axes(a, dx, dy, dz);
  expectRow(m[0], std::cos(gamma) * std::cos(beta), std::sin(gamma),
            std::cos(gamma) * std::sin(beta));
  const double r1[] = {-std::sin(gamma) * std::cos(beta), std::cos(gamma),
                       -std::sin(gamma) * std::sin(beta)};
  const double r2[] = {-std::sin(beta), 0.0, std::cos(beta)};
  expectRow(m[1], std::cos(a) * r1[0] + std::sin(a) * r2[0],
            std::cos(a) * r1[1] + std::sin(a) * r2[1], std::cos(a) * r1[2] + std::sin(a) * r2[2]);
  expectRow(m[2], std::cos(a) * r2[0] - std::sin(a) * r1[0],
            std::cos(a) * r2[1] - std::sin(a) * r1[1], std::cos(a) * r2[2] - std::sin(a) * r1[2]);
}

TEST(BarAxes, AreOrthonormalAndAlongTheBar) {
  test::Random random(1);
  for (int round = 0; round < test::rounds(200000); ++round) {
    // Lengths from a hundredth of a millimetre to kilometres, some differences zero.
    const double scale = std::ldexp(1.0, static_cast<int>(random.integer(-6, 20)));
    const auto difference = [&] {
      return random.integer(0, 4) == 0 ? 0.0 : scale * double{random.number(-4, 4)};
    };
    const double dx = difference();
    const double dy = difference();
    const double dz = difference();
    const double angle = random.number(-10, 10);
    const Matrix3 m = axes(angle, dx, dy, dz);
    for (std::size_t i = 0; i < 3; ++i) {
      for (std::size_t j = i; j < 3; ++j) {
        const double dot = m[i][0] * m[j][0] + m[i][1] * m[j][1] + m[i][2] * m[j][2];
        ASSERT_NEAR(dot, i == j ? 1.0 : 0.0, 1e-12) << dx << ' ' << dy << ' ' << dz;
      }
    }
    const double determinant = m[0][0] * (m[1][1] * m[2][2] - m[1][2] * m[2][1]) -
                               m[0][1] * (m[1][0] * m[2][2] - m[1][2] * m[2][0]) +
                               m[0][2] * (m[1][0] * m[2][1] - m[1][1] * m[2][0]);
    ASSERT_NEAR(determinant, 1.0, 1e-12);
    // Below the tolerance the horizontal part is dropped; that is another test's.
    if (std::fabs(dx) >= tolerance || std::fabs(dz) >= tolerance || (dx == 0.0 && dz == 0.0)) {
      const double length = std::sqrt(dx * dx + dy * dy + dz * dz);
      if (length >= 2 * tolerance) {
        ASSERT_NEAR(m[0][0], dx / length, 1e-12) << dx << ' ' << dy << ' ' << dz;
        ASSERT_NEAR(m[0][1], dy / length, 1e-12) << dx << ' ' << dy << ' ' << dz;
        ASSERT_NEAR(m[0][2], dz / length, 1e-12) << dx << ' ' << dy << ' ' << dz;
      }
    }
  }
}

TEST(BarAxes, WhatIsNotANumberStaysInside) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double infinity = std::numeric_limits<double>::infinity();
  EXPECT_TRUE(std::isnan(axes(0, nan, 0, 0)[0][0]));
  EXPECT_TRUE(std::isnan(axes(infinity, 1, 0, 0)[1][1]));
  expectRow(axes(0, 0, 0, infinity)[0], 0, 0, 1);
}

}  // namespace
}  // namespace exportifc
