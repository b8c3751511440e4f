// exportifc convert: a model in another format, and what is lost on the way.
#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "cli/commands/commands.h"
#include "cli/console.h"
#include "cli/failure.h"
#include "cli/file_plan.h"
#include "cli/messages.h"
#include "cli/model_file.h"
#include "cli/output_file.h"
#include "cli/output_format.h"
#include "cli/problem_report.h"
#include "library/formats/format.h"
#include "library/frame/model_check.h"

namespace exportifc::cli {

namespace {

struct ConvertOptions {
  std::string model;
  std::string output;
  bool strict = false;  ///< refuse when something is lost
};

ExitCode run(const ConvertOptions& options, Console& console) {
  FilePlan files;
  files.reads(options.model);
  files.writes(options.output);
  const Model model = readModel(options.model);
  const std::vector<Problem> problems = checkReferences(model);
  if (!problems.empty()) {
    reportProblems(console, options.model, model, problems);
    throw Failure(exitProblems, say(texts::nothingWritten, {displayName(options.model)}));
  }
  const Format& format = convertedFormat(options.model, formatOf(model.format), options.output);
  const Losses losses = format.losses(model);
  if (!losses.obstacle.empty()) {
    throw Failure(exitProblems, losses.obstacle);
  }
  // Values that the reader takes otherwise look sound in the other format.
  std::vector<Problem> changed = model.found;
  std::erase_if(changed, isNote);
  const bool isLossless = changed.empty() && losses.lines.empty();
  reportProblems(console, options.model, model, std::move(changed));
  for (const std::string& loss : losses.lines) {
    reportModelWarning(console, options.model, loss);
  }
  if (options.strict && !isLossless) {
    throw Failure(exitProblems, say(texts::nothingWritten, {displayName(options.model)}));
  }
  OutputFile output(options.output);
  format.write(model, output);
  output.commit();
  return exitOk;
}

}  // namespace

Command addConvert(CLI::App& program) {
  const auto options = std::make_shared<ConvertOptions>();
  CLI::App& command = addCommand(program, "convert", texts::helpConvert);
  addArgument(command, texts::wordModel, options->model, texts::helpModel).required();
  addName(command, "-o,--output", options->output, texts::helpConvertOutput, texts::wordFile)
      .required();
  addFlag(command, "--strict", options->strict, texts::helpConvertStrict);
  return {&command, [options](Console& console) { return run(*options, console); }};
}

}  // namespace exportifc::cli
