// Problems for programs.
#pragma once

#include <string>

#include <nlohmann/json_fwd.hpp>

#include "library/frame/model.h"
#include "library/frame/problem.h"

namespace exportifc {

/// The facts that `problemText` puts in words; an empty one is left out. `name` is the model's.
/// Without a model: of a problem that ended the reading.
nlohmann::ordered_json problemJson(const std::string& name, const Problem& problem);
nlohmann::ordered_json problemJson(const std::string& name, const Model& model,
                                   const Problem& problem);

}  // namespace exportifc
