// The batch text file as a model.
#pragma once

#include <istream>

#include "host/model.h"

namespace exportifc::host {

/// Reads the file as the module does. Ends that lie at the same coordinates become one node, equal
/// section texts one section. Throws ModelError when the header shows that it is something else.
Model readBatchModel(std::istream& text);

}  // namespace exportifc::host
