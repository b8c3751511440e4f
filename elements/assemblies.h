// How elements are grouped and placed in the storey.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "step/step_writer.h"

namespace exportifc {

/// Writes an element assembly and its aggregation of `elements` (instance numbers, in order);
/// returns the assembly's number, or 0 with nothing written when there are no elements.
std::int32_t writeElementAssembly(StepWriter& writer, std::span<const std::int32_t> elements,
                                  std::string_view groupName);

/// Writes the containment of `elements` in the storey, also when there are none.
void writeStoreyContainment(StepWriter& writer, std::span<const std::int32_t> elements);

}  // namespace exportifc
