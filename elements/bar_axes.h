// The local axes of a bar in model coordinates.
#pragma once

#include <array>

namespace exportifc {

/// Row-major: row 0 the axis along the bar, row 1 the section's reference direction, row 2 the
/// third axis of the right-handed system.
using Matrix3 = std::array<std::array<double, 3>, 3>;

/// Fills `out` with the axes of a bar from the origin to (dx, dy, dz) whose section is turned by
/// `angle` radians about the bar: roll about the first axis times elevation about the third times
/// heading about the second. Differences strictly below `tolerance` (a length) count as zero, so a
/// bar of no length lies along +X. Always returns false; nothing can fail.
/// Fixed shape: axes.
bool barAxesMatrix(double angle, double dx, double dy, double dz, double tolerance, Matrix3& out);

}  // namespace exportifc
