// The JSON model: docs/model-format.md is its description, docs/model.schema.json its schema.
#pragma once

#include <streambuf>
#include <vector>

#include "library/frame/model.h"
#include "library/frame/model_error.h"
#include "library/frame/problem.h"
#include "platform/byte_sink.h"

namespace exportifc {

/// Reads a model in one pass; the text is never held in memory. Throws ModelError.
///
/// References (node indexes, section names) are not checked here: bars may stand before what they
/// refer to.
Model readJsonModel(std::streambuf& text);

/// Writes a model so that reading it gives the same one.
void writeJsonModel(const Model& model, ByteSink& output);

/// Fills in the places of problems by their pointers, going through the text once more. Without
/// the text pointers have to do; those of a reading that ended at `readTo` get that line at least.
void locateInJson(std::streambuf* text, std::vector<Problem>& problems, TextPlace readTo);

}  // namespace exportifc
