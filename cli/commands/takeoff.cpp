// exportifc takeoff: what the structure of a model is made of, as lists.
#include "library/takeoff/takeoff.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
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
#include "library/frame/model_check.h"
#include "library/takeoff/takeoff_tables.h"
#include "library/text/file_extension.h"
#include "library/workbook/workbook_writer.h"

namespace exportifc::cli {

namespace {

/// What programs know the bars by that have no mass in the lists.
constexpr const char* weightlessCode = "without-mass";

struct TakeoffCommand {
  std::string model;
  std::string output;   ///< empty: lists on standard output
  std::string density;  ///< as the user writes it; empty: not given
  bool visibleOnly = false;
  bool boundingRectangles = false;
  bool cuts = false;   ///< the cut list on standard output, too
  bool quiet = false;  ///< do not say what else is wrong
};

/// The density that the user gives, with a decimal sign of either kind.
std::optional<double> densityOf(const std::string& text) {
  if (text.empty()) {
    return {};
  }
  // Nothing is built of what is lighter or heavier: another unit is meant.
  constexpr double lightest = 100.0;
  constexpr double heaviest = 25000.0;
  const auto density = numberIn(text);
  if (!density || *density < lightest || *density > heaviest) {
    throw Failure(exitBadUse, say(texts::takeoffDensity, {text}));
  }
  return density;
}

/// By which spreadsheets tell that a file is in UTF-8.
constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";

/// Whether the lists are to be the sheets of a workbook, instead of CSV.
bool isWorkbook(const std::string& output) { return extensionOf(output) == ".xlsx"; }

/// Whoever asks for .pdf or .ods would get CSV under that name.
void requireLists(const std::string& output) {
  const std::string extension = extensionOf(output);
  if (!isStandardStream(output) && !extension.empty() && extension != takeoffKind.extension) {
    throw Failure(exitBadUse, say(texts::takeoffName, {output}));
  }
}

void printLists(Console& console, const std::vector<TakeoffTable>& tables, bool withCuts) {
  bool first = true;
  for (const TakeoffTable& table : tables) {
    if (table.key == "cuts" && !withCuts) {
      continue;
    }
    console.printLine((first ? "" : "\n") + table.title);
    for (const std::string& line : takeoffLines(table)) {
      console.printLine(line);
    }
    first = false;
  }
}

/// The model with problems that do not stop an export said on the way.
Model loadedModel(const TakeoffCommand& options, Console& console) {
  Model model = readModel(options.model);
  if (options.boundingRectangles) {
    drawBounds(model);
  }
  const std::vector<Problem> broken = checkReferences(model);
  if (!broken.empty()) {
    reportProblems(console, options.model, model, broken);
    throw Failure(exitProblems, say(texts::nothingWritten, {displayName(options.model)}));
  }
  if (!options.quiet) {
    reportProblems(console, options.model, model, checkModel(model, options.visibleOnly));
  }
  return model;
}

/// Bars in the lists that are not drawn, and so have no mass there.
std::int64_t weightlessBars(const Takeoff& takeoff) {
  std::int64_t bars = 0;
  for (const SectionTakeoff& section : takeoff.sections) {
    bars += section.isDrawn ? 0 : section.sum.bars;
  }
  return bars;
}

ExitCode run(const TakeoffCommand& options, Console& console) {
  const std::optional<double> density = densityOf(options.density);
  FilePlan files(console);
  console.addFact("model", options.model);
  files.reads(options.model);
  if (!options.output.empty()) {
    files.writes(options.output);
    if (!isWorkbook(options.output)) {
      requireExtension(options.output, takeoffKind);
      requireLists(options.output);
    }
  }
  const Model model = loadedModel(options, console);
  const Takeoff takeoff =
      takeoffOf(model, {.visibleOnly = options.visibleOnly, .density = density});
  std::vector<TakeoffTable> tables = takeoffTables(model, takeoff);
  if (console.isForPrograms()) {
    const Json lists = factsOf(takeoffJson(tables));
    for (const auto& [key, list] : lists.items()) {
      console.addFact(key.c_str(), list);
    }
  }
  std::for_each(tables.begin(), tables.end(), keepColumnsForPeople);
  if (!options.output.empty()) {
    OutputFile output(options.output);
    if (isWorkbook(options.output)) {
      writeWorkbook(takeoffSheets(tables), output);
    } else {
      if (!isStandardStream(options.output)) {
        output.write(utf8Mark);
      }
      writeTakeoffCsv(tables, output);
    }
    output.commit();
    console.addItem("files", options.output);
  } else {
    printLists(console, tables, options.cuts);
  }
  const std::int64_t weightless = weightlessBars(takeoff);
  if (weightless > 0 && !options.quiet) {
    reportModelWarning(console, options.model, weightlessCode,
                       say(texts::takeoffWeightless, {numberText(weightless)}));
  }
  return weightless > 0 ? exitProblems : exitOk;
}

}  // namespace

Command addTakeoff(CLI::App& program) {
  const auto options = std::make_shared<TakeoffCommand>();
  CLI::App& command = addCommand(program, "takeoff", texts::helpTakeoff);
  require(addArgument(command, texts::wordModel, options->model, texts::helpModel));
  addName(command, "-o,--output", options->output, texts::helpTakeoffOutput, texts::wordFile);
  addName(command, "--density", options->density, texts::helpDensity, texts::wordNumber);
  addFlag(command, "--visible-only", options->visibleOnly, texts::helpVisibleOnly);
  addFlag(command, "--bounding-rectangle", options->boundingRectangles,
          texts::helpBoundingRectangle);
  addFlag(command, "--cuts", options->cuts, texts::helpCuts);
  addFlag(command, "-q,--quiet", options->quiet, texts::helpQuiet);
  return {&command, [options](Console& console) { return run(*options, console); }};
}

}  // namespace exportifc::cli
