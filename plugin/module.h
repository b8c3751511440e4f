// The loaded module: the record that it shares with the host, and its mode.
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

  /// Narrow output paths of all exports, kept for hosts that hold on to one.
  std::vector<std::unique_ptr<char[]>> narrowPaths;
};

}  // namespace exportifc
