// The shape of a section as an IFC reader draws it from the module's entities.
#pragma once

#include <vector>

#include "elements/polyline.h"
#include "profiles/profile_dispatch.h"

namespace exportifc {

struct Point2 {
  double x = 0.0;
  double y = 0.0;
};

/// The closed rings of one profile (a hollow one has two), in its own coordinates, and where it
/// stands in the section.
struct PlacedShape {
  std::vector<std::vector<Point2>> rings;
  bool isRound = false;  ///< the rings stand for circles; the first point of each is at (radius, 0)
  Point2 position;
  Point2 xAxis{.x = 1.0, .y = 0.0};  ///< unit vector

  Point2 placed(const Point2& local) const {
    return {.x = position.x + local.x * xAxis.x - local.y * xAxis.y,
            .y = position.y + local.x * xAxis.y + local.y * xAxis.x};
  }
};

/// What `row` writes for the dimensions.
PlacedShape shapeOf(const FamilyRow& row, const SectionDims& sectionDims, int flangeSide);

}  // namespace exportifc
