// exportifc view: one page that shows the structure, from a model or from an exchange file.
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "cli/commands/commands.h"
#include "cli/console.h"
#include "cli/exchange_file.h"
#include "cli/failure.h"
#include "cli/file_plan.h"
#include "cli/loaded_model.h"
#include "cli/messages.h"
#include "cli/model_file.h"
#include "cli/output_file.h"
#include "cli/output_format.h"
#include "cli/problem_report.h"
#include "cli/progress.h"
#include "cli/viewer_page.h"
#include "library/files/paths.h"
#include "library/frame/model_export.h"
#include "library/frame/plausibility.h"
#include "library/frame/problem_text.h"

namespace exportifc::cli {

namespace {

struct ViewOptions {
  std::string input;   ///< a model or an exchange file
  std::string output;  ///< empty: beside the input, .html
  std::string viewerTemplate;
  LoadOptions load;
  bool notes = true;  ///< of a model, the page also shows what is only unusual
};

std::vector<std::string> notesOn(const Model& model, bool visibleOnly) {
  std::vector<std::string> notes;
  for (const Problem& problem : checkPlausibility(model, visibleOnly)) {
    notes.push_back(problemText(model, problem));
  }
  return notes;
}

/// The exchange file of a model; when the output refuses it, whoever owns that says so.
void writeExchangeFile(const Model& model, bool visibleOnly, ByteSink& sink,
                       const Console& console) {
  Progress progress(console.isWatched(), static_cast<std::int64_t>(model.bars.size()));
  const ExportResult result =
      exportModel(model, visibleOnly, sink, [&](std::int32_t bar) { return progress.at(bar); });
  if (result.interrupted || !result.failure.empty()) {
    throw Failure(exitNotWritten, result.interrupted ? say(texts::stoppedByUser) : result.failure);
  }
}

ExitCode run(const ViewOptions& options, Console& console) {
  std::filesystem::path shown = pathOf(options.input);
  std::string output = options.output;
  if (output.empty()) {
    output = isStandardStream(options.input)
                 ? options.input
                 : textOf(std::filesystem::path(shown).replace_extension(".html"));
  }
  console.addFact("input", options.input);
  const std::string templatePath = viewerTemplatePath(options.viewerTemplate);
  FilePlan files(console);
  files.reads(options.input);
  if (!templatePath.empty()) {
    files.reads(templatePath, texts::fileTemplate);
  }
  const std::string role = say(texts::filePageOf, {displayName(options.input)});
  options.output.empty() ? files.writesDerived(output, role, OwnFile::page, texts::replaceByOutput)
                         : files.writes(output, role);
  requireExtension(output, pageKind);
  requireReadable(options.input);  // a page that is missing is the smaller trouble
  const std::string page = readViewerTemplate(templatePath);
  const std::string name = isStandardStream(options.input)
                               ? displayName(options.input)
                               : textOf(shown.filename().replace_extension(".ifc"));
  if (!isStandardStream(options.input) && isExchangeFile(options.input)) {
    writeViewerPage(
        page,
        {.name = name,
         .writeExchangeFile = [&](ByteSink& sink) { copyExchangeFile(options.input, sink); }},
        output);
  } else {
    const bool visibleOnly = options.load.visibleOnly;
    const Model model = loadForExport(options.input, options.load, console).model;
    console.addFact("bars", model.bars.size());
    writeViewerPage(
        page,
        {.name = name,
         .writeExchangeFile =
             [&](ByteSink& sink) { writeExchangeFile(model, visibleOnly, sink, console); },
         .notes = options.notes ? notesOn(model, visibleOnly) : std::vector<std::string>{}},
        output);
  }
  if (!isStandardStream(output)) {
    console.printLine(displayName(options.input) + " -> " + output);
    console.addItem("files", output);
  }
  return exitOk;
}

}  // namespace

Command addView(CLI::App& program) {
  const auto options = std::make_shared<ViewOptions>();
  CLI::App& command = addCommand(program, "view", texts::helpView);
  require(addArgument(command, texts::wordInput, options->input, texts::helpViewInput));
  addName(command, "-o,--output", options->output, texts::helpViewOutput, texts::wordFile);
  addName(command, "--template", options->viewerTemplate, texts::helpTemplate, texts::wordFile);
  addLoadOptions(command, options->load);
  addFlag(command, "!--no-notes", options->notes, texts::helpNoNotes);
  return {&command, [options](Console& console) { return run(*options, console); }};
}

}  // namespace exportifc::cli
