// Point lists of closed profile outlines.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "step/step_writer.h"

namespace exportifc {

/// A corner of a section drawing, in millimetres: x to the right, y up. Files hold no z of it.
struct OutlinePoint {
  double x = 0.0;
  double y = 0.0;
  double z = 0.0;
};

/// Writes each point as an entity; returns their numbers in point order.
std::vector<std::int32_t> writePointList(StepWriter& writer, std::span<const OutlinePoint> points);

/// Writes the points and the polyline through them; returns the polyline's number. Points are
/// written as given: a closed outline repeats its first point at the end.
std::int32_t writePolyline(StepWriter& writer, std::span<const OutlinePoint> points);

/// The middle of the points' bounding box. An empty list throws the text "bad argument"
/// (const char*).
OutlinePoint boundingBoxCentre(std::span<const OutlinePoint> points);

}  // namespace exportifc
