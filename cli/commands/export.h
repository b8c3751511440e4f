// exportifc export
#pragma once

#include <string>
#include <vector>

#include "library/frame/model.h"
#include "library/frame/model_check.h"

namespace exportifc::cli {

struct ExportOptions {
  std::vector<std::string> models;
  std::string output;     ///< empty: beside the model; "-": standard output
  std::string directory;  ///< empty: none
  bool visibleOnly = false;
  bool strict = false;
  bool transliterate = false;
  bool quiet = false;
  int jobs = 1;
  bool html = false;
  std::string viewerTemplate;
};

/// Exports every model; goes on after one that fails. Returns the exit code.
int runExportCommand(const ExportOptions& options);

/// A model that can be exported, and what `check` finds in it all the same.
struct LoadedModel {
  Model model;
  std::vector<Problem> problems;
};

/// Reads a model and makes it ready for an export: references sound, no character that would end
/// the file, no problem at all with `strict`. Throws a Failure, after having reported each problem.
/// Problems that do not stop the export are reported as warnings, unless `quiet`.
LoadedModel loadForExport(const std::string& name, const ExportOptions& options);

}  // namespace exportifc::cli
