// The content of an export: every bar, the assemblies, the storey.
#pragma once

#include <cstdint>

#include "model/bar_source.h"
#include "plugin/user_interface.h"
#include "step/step_writer.h"

namespace exportifc {

/// Rotation of a section about its bar, in radians: its quarter turns, each the host's own
/// approximation of one, and its angle.
float sectionAngle(std::int32_t quarterTurns, float angle);

/// Writes the model's bars with their profiles and elements, then the two assemblies and the
/// containment in the storey. `messages` hears of bars without a record, which are skipped, and of
/// unknown profiles; exceptions of the source and the writers pass through.
void exportBars(StepWriter& writer, BarChoice choice, BarSource& model, MessageReceiver& messages);

}  // namespace exportifc
