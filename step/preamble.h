// The entities with which every exchange file begins, the same in all.
#pragma once

#include "step/step_writer.h"

namespace exportifc {

/// Writes the ownership entities, units, representation contexts, project, building and storey.
/// Afterwards `writer.ownerHistoryId` is set and the next generated number is 5006.
///
/// Element writers refer to these numbers of the preamble: #19 the z direction, #88 the body
/// subcontext, #111 the storey's placement, #113 the storey.
void writePreamble(StepWriter& writer);

}  // namespace exportifc
