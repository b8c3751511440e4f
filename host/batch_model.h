// The batch text file as a model.
#pragma once

#include <streambuf>

#include "host/model.h"

namespace exportifc::host {

/// Reads the file as the module does. Ends that lie at the same coordinates become one node, equal
/// section texts one section. What its lines say wrongly is in `Model::found`. Throws ModelError
/// when the header shows that it is something else.
Model readBatchModel(std::streambuf& text);

}  // namespace exportifc::host
