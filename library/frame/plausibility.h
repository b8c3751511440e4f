// What is unusual in a model, though it may be meant so.
#pragma once

#include <vector>

#include "library/frame/model_check.h"

namespace exportifc {

/// Notes on the bars that are exported, their sections, the model as a whole, and on sections and
/// nodes that no bar uses. Takes time in proportion to the model. Bars with references that lead
/// nowhere are left aside.
std::vector<Problem> checkPlausibility(const Model& model, bool visibleOnly);

/// The notes on one section, none when it has problems; each has the section and the bars of
/// `place`.
std::vector<Problem> sectionNotes(const ModelSection& section, const Problem& place);

/// All that there is to say of a model: what `checkModel` finds, and the notes if they are wanted.
std::vector<Problem> checkEverything(const Model& model, bool visibleOnly, bool withNotes);

}  // namespace exportifc
