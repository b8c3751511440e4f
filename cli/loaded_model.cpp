#include "cli/loaded_model.h"

#include <algorithm>
#include <utility>

#include "cli/command.h"
#include "cli/failure.h"
#include "cli/messages.h"
#include "cli/model_file.h"
#include "cli/problem_report.h"
#include "library/frame/model_check.h"

namespace exportifc::cli {

namespace {

/// What `check` finds, in a few lines; the file is written all the same.
void reportFindings(Console& console, const std::string& name, const Model& model,
                    std::vector<Problem> problems) {
  if (console.isForPrograms()) {
    reportProblems(console, name, model, std::move(problems));
    return;
  }
  // Of a long list, the problems of the whole model are not to be missed, nor errors.
  const auto rank = [](const Problem& problem) {
    return std::pair(problem.bars > 0, problem.severity);
  };
  std::stable_sort(problems.begin(), problems.end(),
                   [&](const Problem& a, const Problem& b) { return rank(a) < rank(b); });
  constexpr std::size_t mostLines = 10;
  const std::size_t found = problems.size();
  problems.resize(std::min(found, mostLines));
  for (Problem& problem : problems) {
    problem.severity = Severity::warning;
  }
  reportProblems(console, name, model, std::move(problems));
  constexpr const char* countCode = "";  // only people are told
  const std::string count = numberText(static_cast<std::int64_t>(found));
  if (found > mostLines) {
    reportModelWarning(console, name, countCode, say(texts::exportProblemsMore, {count}));
  } else if (found > 1) {
    reportModelWarning(console, name, countCode, say(texts::checkProblems, {count}));
  }
}

}  // namespace

void addLoadOptions(CLI::App& command, LoadOptions& options) {
  addFlag(command, "--visible-only", options.visibleOnly, texts::helpVisibleOnly);
  addFlag(command, "--transliterate", options.transliterate, texts::helpTransliterate);
  addFlag(command, "--bounding-rectangle", options.boundingRectangles,
          texts::helpBoundingRectangle);
}

LoadedModel loadForExport(const std::string& name, const LoadOptions& options, Console& console) {
  Model model = readModel(name);
  const auto refuse = [&](const std::vector<Problem>& problems) {
    if (std::all_of(problems.begin(), problems.end(), isNote)) {
      return;
    }
    reportProblems(console, name, model, problems);
    throw Failure(exitProblems, say(texts::nothingWritten, {displayName(name)}));
  };
  if (options.boundingRectangles) {
    drawBounds(model);
  }
  refuse(checkReferences(model));
  if (options.transliterate) {
    transliterate(model);
  }
  refuse(options.strict ? checkModel(model, options.visibleOnly)
                        : checkCharacters(model, options.visibleOnly));
  std::vector<Problem> problems = checkModel(model, options.visibleOnly);
  std::erase_if(problems, isNote);
  if (!options.quiet) {
    reportProblems(console, name, model, notRead(model));
    reportFindings(console, name, model, problems);
  }
  return {.model = std::move(model), .problems = std::move(problems)};
}

}  // namespace exportifc::cli
