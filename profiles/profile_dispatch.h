// From a section's name to its profile.
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/user_interface.h"
#include "step/step_writer.h"

namespace exportifc {

/// `flangeSide` of a simple section and of each half of a built-up one.
inline constexpr int simpleFlangeSide = -1;
inline constexpr int halfFlangeSide = 0;

/// Writes the profile definition of the section called `name` (a whole section text, or the name
/// of a half) and returns its number. `sectionDims` are the bar's dimensions d0 to d6. A family
/// that nobody knows is shown to the user and becomes `writeUnknownProfile`.
std::int32_t writeProfile(StepWriter& writer, std::wstring_view name, const float* sectionDims,
                          int flangeSide, UserInterface& ui);

}  // namespace exportifc
