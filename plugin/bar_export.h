// The content of an export: every bar, the assemblies, the storey.
#pragma once

#include <cstdint>

#include "model/bar_source.h"
#include "platform/user_interface.h"
#include "step/step_writer.h"

namespace exportifc {

/// Which bars of a model are exported. Those without a record or of a type that never is are not.
enum class BarChoice : std::uint8_t { all, visibleOnly };

/// Rotation of a section about its bar, in radians: its quarter turns, each the host's own
/// approximation of one, and its angle.
float sectionAngle(std::int32_t quarterTurns, float angle);

/// Writes the model's bars with their profiles and elements, then the two assemblies and the
/// containment in the storey. A bar without a record is shown to the user and skipped; exceptions
/// of the source and the writers pass through.
void exportBars(StepWriter& writer, BarChoice choice, BarSource& model, UserInterface& ui);

}  // namespace exportifc
