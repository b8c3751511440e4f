// A model made ready for its export.
#pragma once

#include <string>
#include <vector>

#include "cli/console.h"
#include "library/frame/model.h"
#include "library/frame/problem.h"

namespace CLI {  // NOLINT(readability-identifier-naming): the library's own
class App;
}

namespace exportifc::cli {

/// How a model is taken in, in every command that makes an exchange file of one.
struct LoadOptions {
  bool visibleOnly = false;
  bool transliterate = false;
  bool boundingRectangles = false;  ///< for shapes that no family draws
  bool strict = false;              ///< refuse whatever `check` finds
  bool quiet = false;               ///< do not say what else is wrong
};

/// Adds the options that all such commands have.
void addLoadOptions(CLI::App& command, LoadOptions& options);

/// A model that can be exported, and what `check` finds in it all the same.
struct LoadedModel {
  Model model;
  std::vector<Problem> problems;
};

/// Reads a model and makes it ready for an export: references sound, no character that would end
/// the file, no problem at all with `strict`. Throws a Failure, after having reported each problem.
/// Problems that do not stop the export are reported as warnings, unless `quiet`.
LoadedModel loadForExport(const std::string& name, const LoadOptions& options, Console& console);

}  // namespace exportifc::cli
