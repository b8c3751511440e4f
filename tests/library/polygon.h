// Areas and middles of drawn sections.
#pragma once

#include <algorithm>
#include <vector>

#include "library/sections/section_shape.h"

namespace exportifc::test {

using Ring = std::vector<Point2>;
using Rings = std::vector<Ring>;

struct Box {
  double left = 1e30, right = -1e30, bottom = 1e30, top = -1e30;
};

inline Box boxOf(const Rings& rings) {
  Box box;
  for (const Ring& ring : rings) {
    for (const Point2& point : ring) {
      box.left = std::min(box.left, point.x);
      box.right = std::max(box.right, point.x);
      box.bottom = std::min(box.bottom, point.y);
      box.top = std::max(box.top, point.y);
    }
  }
  return box;
}

/// Area, centre of gravity, and the means of x², y² and xy about the origin: what two shapes must
/// have in common to be the same.
struct Moments {
  double area = 0, x = 0, y = 0, xx = 0, yy = 0, xy = 0;
};

/// Of all rings together; a ring that lies inside of one before it is a hole.
inline Moments momentsOf(const Rings& rings) {
  Moments sum;
  for (std::size_t i = 0; i < rings.size(); ++i) {
    const Ring& ring = rings[i];
    Moments own;
    for (std::size_t j = 0; j < ring.size(); ++j) {
      const Point2& a = ring[j];
      const Point2& b = ring[(j + 1) % ring.size()];
      const double cross = a.x * b.y - b.x * a.y;
      own.area += cross / 2;
      own.x += (a.x + b.x) * cross / 6;
      own.y += (a.y + b.y) * cross / 6;
      own.xx += (a.x * a.x + a.x * b.x + b.x * b.x) * cross / 12;
      own.yy += (a.y * a.y + a.y * b.y + b.y * b.y) * cross / 12;
      own.xy += (2 * a.x * a.y + 2 * b.x * b.y + a.x * b.y + b.x * a.y) * cross / 24;
    }
    const Box box = boxOf({ring});
    const bool isHole = std::any_of(rings.begin(), rings.begin() + static_cast<std::ptrdiff_t>(i),
                                    [&](const Ring& other) {
                                      const Box around = boxOf({other});
                                      return around.left < box.left && around.right > box.right &&
                                             around.bottom < box.bottom && around.top > box.top;
                                    });
    const double sign = (own.area < 0) == isHole ? 1 : -1;
    sum.area += sign * own.area;
    sum.x += sign * own.x;
    sum.y += sign * own.y;
    sum.xx += sign * own.xx;
    sum.yy += sign * own.yy;
    sum.xy += sign * own.xy;
  }
  return {sum.area,          sum.x / sum.area,  sum.y / sum.area,
          sum.xx / sum.area, sum.yy / sum.area, sum.xy / sum.area};
}

}  // namespace exportifc::test
