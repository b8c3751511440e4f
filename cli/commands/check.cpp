// exportifc check: what would go wrong, without writing a file.
#include <algorithm>
#include <memory>
#include <utility>

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include "cli/commands/commands.h"
#include "cli/console.h"
#include "cli/failure.h"
#include "cli/file_plan.h"
#include "cli/messages.h"
#include "cli/model_file.h"
#include "cli/problem_report.h"
#include "library/frame/plausibility.h"
#include "library/frame/problem_json.h"
#include "library/frame/problem_text.h"

namespace exportifc::cli {

namespace {

using Json = nlohmann::ordered_json;

struct CheckOptions {
  std::vector<std::string> models;
  bool visibleOnly = false;
  bool notes = true;  ///< also say what is only unusual
  bool json = false;  ///< for programs
};

struct Finding {
  ExitCode code = exitOk;
  Json json;
};

/// "no problems", "2 problems, 1 note".
std::string countText(const std::vector<Problem>& problems) {
  const auto notes = std::count_if(problems.begin(), problems.end(), isNote);
  const auto others = static_cast<std::int64_t>(problems.size()) - notes;
  const std::string text = others == 0 ? std::string(say(texts::checkNoProblems))
                                       : say(texts::checkProblems, {numberText(others)});
  return notes == 0 ? text : say(texts::checkNotes, {text, numberText(notes)});
}

Finding checkOne(const std::string& name, const CheckOptions& options, Console& console) {
  Finding finding{.json = {{"model", name}}};
  Json list = Json::array();
  try {
    const Model model = readModel(name);
    finding.json["bars"] = model.bars.size();
    std::vector<Problem> problems = checkEverything(model, options.visibleOnly, options.notes);
    locate(name, model, problems);
    for (const Problem& problem : problems) {
      list.push_back(problemJson(name, model, problem));
      if (!options.json) {
        console.printLine(problemLine(name, model, problem));
      }
    }
    finding.code = std::all_of(problems.begin(), problems.end(), isNote) ? exitOk : exitProblems;
    if (!options.json) {
      console.printLine(
          displayName(name) + ": " +
          say(texts::checkSummary,
              {numberText(static_cast<std::int64_t>(model.bars.size())), countText(problems)}));
    }
  } catch (const Failure& failure) {
    finding.code = failure.code();
    const auto* const unreadable = dynamic_cast<const ModelFailure*>(&failure);
    list.push_back(problemJson(
        name, unreadable != nullptr ? unreadable->problem()
                                    : Problem{.code = "unreadable", .message = failure.what()}));
    if (!options.json) {
      console.reportFailure(failure);
    }
  }
  finding.json["problems"] = std::move(list);
  return finding;
}

ExitCode run(const CheckOptions& options, Console& console) {
  FilePlan files;
  for (const std::string& model : options.models) {
    files.reads(model);
  }
  ExitCode code = exitOk;
  Json all = Json::array();
  for (const std::string& model : options.models) {
    Finding finding = checkOne(model, options, console);
    code = std::max(code, finding.code);
    all.push_back(std::move(finding.json));
  }
  if (options.json) {
    constexpr int indent = 2;
    // Names of files are bytes: what is not UTF-8 is replaced.
    console.printLine(all.dump(indent, ' ', false, Json::error_handler_t::replace));
  }
  return code;
}

}  // namespace

Command addCheck(CLI::App& program) {
  const auto options = std::make_shared<CheckOptions>();
  CLI::App& command = addCommand(program, "check", texts::helpCheck);
  addArguments(command, texts::wordModel, options->models, texts::helpModels).required();
  addFlag(command, "--visible-only", options->visibleOnly, texts::helpVisibleOnly);
  addFlag(command, "!--no-notes", options->notes, texts::helpNoNotes);
  addFlag(command, "--json", options->json, texts::helpJson);
  return {&command, [options](Console& console) { return run(*options, console); }};
}

}  // namespace exportifc::cli
