// The entities written for one bar: axes, placement, extruded solid, element, properties.
#pragma once

#include <array>
#include <cstdint>

#include "model/bar.h"
#include "step/step_writer.h"

namespace exportifc {

/// A direction in model coordinates.
using Direction = std::array<float, 3>;

/// How a bar lies in the model.
struct BarPlacement {
  Vec3 first;                ///< where it begins
  Vec3 second;               ///< where it ends
  Direction axis{};          ///< along the bar
  Direction refDirection{};  ///< the section's local X
};

/// From the bar's ends, its rotation and its section, which may turn it end for end.
BarPlacement placementOf(const BarGeometry& bar);

/// Writes a comment and the fourteen entities of a bar whose profile definition has the number
/// `profileId`; returns the number of the element (beam, column or member).
std::int32_t writeBar(StepWriter& writer, const BarGeometry& bar, std::int32_t profileId);

/// The same with the bar's placement, which is that of each half of a built-up section.
std::int32_t writeBar(StepWriter& writer, const BarGeometry& bar, const BarPlacement& placement,
                      std::int32_t profileId);

/// The entities without the comment.
std::int32_t writeBarElement(StepWriter& writer, const BarGeometry& bar,
                             const BarPlacement& placement, std::int32_t profileId);

}  // namespace exportifc
