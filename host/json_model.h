// The JSON model: docs/model-format.md is its description, docs/model.schema.json its schema.
#pragma once

#include <streambuf>

#include "host/model.h"
#include "host/model_error.h"
#include "host/output_file.h"

namespace exportifc::host {

/// Reads a model in one pass; the text is never held in memory. Throws ModelError.
///
/// References (node indexes, section names) are not checked here: bars may stand before what they
/// refer to.
Model readJsonModel(std::streambuf& text);

/// Writes a model so that reading it gives the same one.
void writeJsonModel(const Model& model, OutputFile& output);

}  // namespace exportifc::host
