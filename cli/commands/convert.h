// exportifc convert
#pragma once

#include <string>

namespace exportifc::cli {

struct ConvertOptions {
  std::string model;
  std::string output;
  bool strict = false;  ///< refuse when something is lost
};

/// Turns a JSON model into a batch text file or the other way round, and says what is lost.
int runConvertCommand(const ConvertOptions& options);

}  // namespace exportifc::cli
