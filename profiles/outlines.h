// Cross-sections written as closed outlines, for which IFC2X3 has no parametric profile.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "elements/polyline.h"
#include "profiles/parametric.h"
#include "step/host_text.h"
#include "step/step_writer.h"

namespace exportifc {

/// The outlines; the dimensions of each stand at its generator in outlines.cpp.
enum class Outline : std::uint8_t { cart, icarFirst, icarSecond, z, zs, pc, psa };

/// The closed outline in its final place in the profile plane; the last point repeats the first.
std::vector<OutlinePoint> outlinePoints(Outline outline, const ProfileArguments& arguments);

/// Writes the outline's points, polyline and profile definition; returns the number of the profile
/// definition. Dimensions are not checked.
std::int32_t writeOutlineProfile(StepWriter& writer, Outline outline, const HostText& name,
                                 const ProfileArguments& arguments);

/// The stand-in for a section whose family is not known: a square of side 4 mm under the name
/// 'UnknownProfile'; returns the number of the profile definition.
std::int32_t writeUnknownProfile(StepWriter& writer);

}  // namespace exportifc
