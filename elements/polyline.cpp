#include "elements/polyline.h"

namespace exportifc {

namespace {

/// Widens a range to a value; a NaN never widens it.
void widen(double& smallest, double& largest, double value) {
  if (value < smallest) {
    smallest = value;
  }
  if (value > largest) {
    largest = value;
  }
}

}  // namespace

std::vector<std::int32_t> writePointList(StepWriter& writer, std::span<const OutlinePoint> points) {
  std::vector<std::int32_t> numbers;
  numbers.reserve(points.size());
  for (const OutlinePoint& point : points) {
    numbers.push_back(writer.writeEntity("IFCCARTESIANPOINT((", point.x, ", ", point.y, "))"));
  }
  return numbers;
}

std::int32_t writePolyline(StepWriter& writer, std::span<const OutlinePoint> points) {
  const std::vector<std::int32_t> numbers = writePointList(writer, points);
  return writer.writeEntity("IFCPOLYLINE((", RefList{numbers}, "))");
}

OutlinePoint boundingBoxCentre(std::span<const OutlinePoint> points) {
  if (points.empty()) {
    throw "bad argument";
  }
  OutlinePoint smallest = points.front();
  OutlinePoint largest = points.front();
  for (const OutlinePoint& point : points.subspan(1)) {
    widen(smallest.x, largest.x, point.x);
    widen(smallest.y, largest.y, point.y);
    widen(smallest.z, largest.z, point.z);
  }
  return {.x = (smallest.x + largest.x) * 0.5,
          .y = (smallest.y + largest.y) * 0.5,
          .z = (smallest.z + largest.z) * 0.5};
}

}  // namespace exportifc
