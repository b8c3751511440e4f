// What a model loses on its way into a file format.
#pragma once

#include <string>
#include <vector>

namespace exportifc {

/// Texts are in the user's language.
struct Losses {
  std::string obstacle{};            ///< why nothing can be written; empty when something can
  std::vector<std::string> lines{};  ///< one for each kind of loss
};

}  // namespace exportifc
