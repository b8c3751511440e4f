// Problems for programs.
#pragma once

#include <string>

#include "library/frame/model.h"
#include "library/frame/problem.h"
#include "library/text/json_text.h"

namespace exportifc {

/// The facts that `problemText` puts in words; an empty one is left out. `name` is the model's.
/// Without a model: of a problem that ended the reading.
JsonObject problemJson(const std::string& name, const Problem& problem);
JsonObject problemJson(const std::string& name, const Model& model, const Problem& problem);

}  // namespace exportifc
