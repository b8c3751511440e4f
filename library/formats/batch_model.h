// The batch text file as a model: five lines of header, twelve a bar.
#pragma once

#include <streambuf>
#include <vector>

#include "library/frame/losses.h"
#include "library/frame/model.h"
#include "library/frame/model_error.h"
#include "library/frame/problem.h"
#include "platform/byte_sink.h"

namespace exportifc {

/// Reads a batch text file in one pass, as the module does: nodes and sections that are equal
/// become one. Throws ModelError.
Model readBatchModel(std::streambuf& text);

/// What a batch text file of the model cannot hold, one line for each kind of loss.
Losses lossesInBatch(const Model& model);

/// Writes the bars that an export writes. Undefined where `lossesInBatch` knows an obstacle.
void writeBatchModel(const Model& model, ByteSink& output);

/// Fills in lines, counted from the pointers that the values would have in a JSON model, and takes
/// those pointers away. The text is not needed.
void locateInBatch(std::streambuf* text, std::vector<Problem>& problems, TextPlace readTo);

}  // namespace exportifc
