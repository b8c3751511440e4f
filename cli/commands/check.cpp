// exportifc check: what would go wrong, without writing a file.
#include <algorithm>
#include <memory>
#include <utility>

#include <nlohmann/json.hpp>

#include "cli/commands/commands.h"
#include "cli/console.h"
#include "cli/failure.h"
#include "cli/file_plan.h"
#include "cli/json_report.h"
#include "cli/messages.h"
#include "cli/model_file.h"
#include "cli/problem_report.h"
#include "library/frame/model_check.h"
#include "library/frame/plausibility.h"
#include "library/frame/problem_json.h"
#include "library/frame/problem_text.h"

namespace exportifc::cli {

namespace {

struct CheckOptions {
  std::vector<std::string> models;
  bool visibleOnly = false;
  bool boundingRectangles = false;
  bool notes = true;  ///< also say what is only unusual
};

/// "no problems", "2 problems, 1 note".
std::string countText(const std::vector<Problem>& problems) {
  const auto notes = std::count_if(problems.begin(), problems.end(), isNote);
  const auto others = static_cast<std::int64_t>(problems.size()) - notes;
  const std::string text = others == 0 ? std::string(say(texts::checkNoProblems))
                                       : say(texts::checkProblems, {numberText(others)});
  return notes == 0 ? text : say(texts::checkNotes, {text, numberText(notes)});
}

ExitCode checkOne(const std::string& name, const CheckOptions& options, Console& console) {
  Model model = readModel(name);
  if (options.boundingRectangles) {
    drawBounds(model);
  }
  console.addFact("bars", model.bars.size());
  std::vector<Problem> problems = checkEverything(model, options.visibleOnly, options.notes);
  locate(name, model, problems);
  for (const Problem& problem : problems) {
    if (console.isForPrograms()) {
      console.addProblem(factsOf(problemJson(name, model, problem)));
    } else {
      console.printLine(problemLine(name, model, problem));
    }
  }
  console.printLine(
      displayName(name) + ": " +
      say(texts::checkSummary,
          {numberText(static_cast<std::int64_t>(model.bars.size())), countText(problems)}));
  return std::all_of(problems.begin(), problems.end(), isNote) ? exitOk : exitProblems;
}

ExitCode run(const CheckOptions& options, Console& console) {
  FilePlan files;
  for (const std::string& model : options.models) {
    files.reads(model);
  }
  ExitCode code = exitOk;
  for (const std::string& model : options.models) {
    const ExitCode itsCode = reportModel(console, model, [&](Console& modelConsole) {
      return guarded(modelConsole, displayName(model),
                     [&] { return checkOne(model, options, modelConsole); });
    });
    code = std::max(code, itsCode);
  }
  return code;
}

}  // namespace

Command addCheck(CLI::App& program) {
  const auto options = std::make_shared<CheckOptions>();
  CLI::App& command = addCommand(program, "check", texts::helpCheck);
  require(addArguments(command, texts::wordModel, options->models, texts::helpModels));
  addFlag(command, "--visible-only", options->visibleOnly, texts::helpVisibleOnly);
  addFlag(command, "--bounding-rectangle", options->boundingRectangles,
          texts::helpBoundingRectangle);
  addFlag(command, "!--no-notes", options->notes, texts::helpNoNotes);
  return {&command, [options](Console& console) { return run(*options, console); }};
}

}  // namespace exportifc::cli
