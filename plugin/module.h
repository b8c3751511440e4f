// The state that outlives an export.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "exportifc/plugin.h"

namespace exportifc {

/// One loaded module: the record shared with the host, and the mode.
struct Module {
  /// A record as the host first sees it; `execute` and `idle` are the module's entry points.
  Module(PlugInExecuteFunction execute, PlugInExecuteFunction idle);

  PlugInModule record{};

  /// The switch between the modes: empty is interactive, otherwise the narrow path of the batch
  /// model file. Every completed export leaves its output path here, and nothing clears it.
  std::string batchPath;

  /// Narrow output paths of all exports: whoever was given one may keep it.
  std::vector<std::unique_ptr<char[]>> narrowPaths;
};

}  // namespace exportifc
