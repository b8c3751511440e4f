// exportifc convert: a model in another format, and what is lost on the way.
#include <memory>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "cli/commands/commands.h"
#include "cli/console.h"
#include "cli/failure.h"
#include "cli/file_plan.h"
#include "cli/messages.h"
#include "cli/model_file.h"
#include "cli/output_file.h"
#include "cli/output_format.h"
#include "cli/problem_report.h"
#include "cli/table_folder.h"
#include "library/formats/format.h"
#include "library/formats/tables/tables.h"
#include "library/frame/model_check.h"

namespace exportifc::cli {

namespace {

/// What programs know a warning by that names something left behind.
constexpr const char* lostCode = "lost";

struct ConvertOptions {
  std::string model;
  std::string output;
  bool strict = false;  ///< refuse when something is lost
  bool boundingRectangles = false;
};

ExitCode run(const ConvertOptions& options, Console& console) {
  FilePlan files(console);
  console.addFact("model", options.model);
  files.reads(options.model);
  files.writes(options.output);
  Model model = readModel(options.model);
  console.addFact("bars", model.bars.size());
  if (options.boundingRectangles) {
    drawBounds(model);
  }
  const std::vector<Problem> problems = checkReferences(model);
  if (!problems.empty()) {
    reportProblems(console, options.model, model, problems);
    throw Failure(exitProblems, say(texts::nothingWritten, {displayName(options.model)}));
  }
  const bool isFolder = !isStandardStream(options.output) && isFolderName(options.output);
  const Format& format =
      isFolder ? formatOf(ModelFormat::csv)
               : convertedFormat(options.model, formatOf(model.format), options.output);
  const Losses losses = format.losses(model);
  if (!losses.obstacle.empty()) {
    throw Failure(exitProblems, losses.obstacle);
  }
  // Values that the reader takes otherwise look sound in the other format.
  std::vector<Problem> changed = model.found;
  std::erase_if(changed, isNote);
  const bool isLossless = changed.empty() && losses.lines.empty();
  reportProblems(console, options.model, model, notRead(model));
  reportProblems(console, options.model, model, std::move(changed));
  for (const std::string& loss : losses.lines) {
    reportModelWarning(console, options.model, lostCode, loss);
  }
  if (options.strict && !isLossless) {
    throw Failure(exitProblems, say(texts::nothingWritten, {displayName(options.model)}));
  }
  if (isFolder) {
    console.addFact("files", writeTableFolder(tablesOf(model), options.output));
    return exitOk;
  }
  OutputFile output(options.output);
  format.write(model, output);
  output.commit();
  console.addItem("files", options.output);
  return exitOk;
}

}  // namespace

Command addConvert(CLI::App& program) {
  const auto options = std::make_shared<ConvertOptions>();
  CLI::App& command = addCommand(program, "convert", texts::helpConvert);
  require(addArgument(command, texts::wordModel, options->model, texts::helpModel));
  require(
      addName(command, "-o,--output", options->output, texts::helpConvertOutput, texts::wordFile));
  addFlag(command, "--strict", options->strict, texts::helpConvertStrict);
  addFlag(command, "--bounding-rectangle", options->boundingRectangles,
          texts::helpBoundingRectangle);
  return {&command, [options](Console& console) { return run(*options, console); }};
}

}  // namespace exportifc::cli
