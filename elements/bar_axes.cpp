#include "elements/bar_axes.h"

#include <cmath>
#include <cstddef>

namespace exportifc {

namespace {

Matrix3 product(const Matrix3& a, const Matrix3& b) {
  Matrix3 result{};
  for (std::size_t row = 0; row < 3; ++row) {
    for (std::size_t column = 0; column < 3; ++column) {
      result[row][column] =
          a[row][0] * b[0][column] + a[row][1] * b[1][column] + a[row][2] * b[2][column];
    }
  }
  return result;
}

}  // namespace

bool barAxesMatrix(double angle, double dx, double dy, double dz, double tolerance, Matrix3& out) {
  const auto isSmall = [tolerance](double value) { return std::fabs(value) < tolerance; };

  const double cosAngle = std::cos(angle);
  const double sinAngle = std::sin(angle);
  const Matrix3 roll{{{1.0, 0.0, 0.0}, {0.0, cosAngle, sinAngle}, {0.0, -sinAngle, cosAngle}}};

  Matrix3 heading{{{1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, 1.0}}};
  if (!(isSmall(dx) && isSmall(dz))) {
    const double beta = std::atan2(dz, dx);
    const double cosBeta = std::cos(beta);
    const double sinBeta = std::sin(beta);
    heading = {{{cosBeta, 0.0, sinBeta}, {0.0, 1.0, 0.0}, {-sinBeta, 0.0, cosBeta}}};
  }

  const double horizontal = std::hypot(dx, dz);
  const double gamma = isSmall(dy) && isSmall(horizontal) ? 0.0 : std::atan2(dy, horizontal);
  const double cosGamma = std::cos(gamma);
  const double sinGamma = std::sin(gamma);
  const Matrix3 elevation{{{cosGamma, sinGamma, 0.0}, {-sinGamma, cosGamma, 0.0}, {0.0, 0.0, 1.0}}};

  out = product(roll, product(elevation, heading));
  return false;
}

}  // namespace exportifc
