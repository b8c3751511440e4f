// exportifc export: models as exchange files.
#include <algorithm>
#include <chrono>
#include <filesystem>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "cli/commands/commands.h"
#include "cli/commands/jobs.h"
#include "cli/console.h"
#include "cli/exchange_file.h"
#include "cli/failure.h"
#include "cli/file_plan.h"
#include "cli/json_report.h"
#include "cli/loaded_model.h"
#include "cli/messages.h"
#include "cli/model_file.h"
#include "cli/output_format.h"
#include "cli/problem_report.h"
#include "cli/progress.h"
#include "cli/system.h"
#include "cli/viewer_page.h"
#include "library/files/paths.h"
#include "library/frame/model_check.h"
#include "library/frame/model_export.h"
#include "library/frame/pointer.h"
#include "library/text/text_encoding.h"

namespace fs = std::filesystem;

namespace exportifc::cli {

namespace {

using Clock = std::chrono::steady_clock;

struct ExportOptions {
  std::vector<std::string> models;
  std::string output;     ///< empty: beside the model; "-": standard output
  std::string directory;  ///< empty: none
  LoadOptions load;
  std::size_t jobs = 1;
  bool html = false;
  std::string viewerTemplate;
};

std::string outputFor(const std::string& model, const ExportOptions& options) {
  if (!options.output.empty()) {
    return options.output;
  }
  if (isStandardStream(model)) {
    return model;
  }
  fs::path path = pathOf(model);
  if (!path.has_filename()) {
    path = path.parent_path();  // "tables/": beside the folder, not in it
  }
  path.replace_extension(exchangeExtension);
  return textOf(options.directory.empty() ? path : pathOf(options.directory) / path.filename());
}

std::string pageFor(const std::string& output) {
  return textOf(pathOf(output).replace_extension(".html"));
}

/// Whether a problem of the section says what the module's message says.
bool isAmong(const ModuleMessage& message, const std::vector<Problem>& found) {
  constexpr std::string_view same[] = {"empty-section", "unknown-family", "family-without-profile",
                                       "text-too-long"};
  return std::any_of(found.begin(), found.end(), [&](const Problem& problem) {
    return problem.section == message.section &&
           std::find(std::begin(same), std::end(same), problem.code) != std::end(same);
  });
}

/// What the module's box says; for people who do not read its language with the meaning behind.
const Text& moduleText(MessageId id) {
  return id == MessageId::unknownProfile ? texts::moduleUnknownProfile
                                         : texts::moduleBarWithoutRecord;
}

void reportMessages(Console& console, const std::string& name, const Model& model,
                    const ExportResult& result, const std::vector<Problem>& found) {
  std::vector<Problem> problems;
  for (const ModuleMessage& message : result.messages) {
    if (isAmong(message, found)) {
      continue;
    }
    const ModelSection& section = model.sections[static_cast<std::size_t>(message.section)];
    problems.push_back(
        {.code = "module-message",
         .severity = Severity::warning,
         .message = say(texts::moduleMessage, {say(moduleText(message.id)), section.text}),
         .pointer = sectionPointer(section) + "/text",
         .section = message.section,
         .bars = message.bars,
         .firstBar = message.firstBar});
  }
  reportProblems(console, name, model, std::move(problems));
}

std::string skippedText(const SkippedBars& skipped) {
  std::string text;
  const auto add = [&](const Text& pattern, std::int32_t count) {
    if (count > 0) {
      text += (text.empty() ? "" : ", ") + fill(pattern, {numberText(count)});
    }
  };
  add(texts::sumInvisible, skipped.invisible);
  add(texts::sumType10, skipped.notExportedType);
  add(texts::sumTooLong, skipped.withoutRecord);
  return text.empty() ? say(texts::noneBars) : text;
}

std::string elementsText(const ExportResult& result) {
  std::string text;
  for (std::size_t i = 0; i < elementKeywords.size(); ++i) {
    if (result.elements[i] > 0) {
      text += (text.empty() ? "" : ", ") + numberText(result.elements[i]) + " " +
              std::string(elementKeywords[i]);
    }
  }
  return text.empty() ? say(texts::none) : text;
}

std::int64_t writtenBars(const Model& model, const SkippedBars& skipped) {
  return static_cast<std::int64_t>(model.bars.size()) - skipped.invisible -
         skipped.notExportedType - skipped.withoutRecord;
}

/// The summary for programs.
void addSummary(Console& console, const Model& model, const ExportResult& result, double seconds) {
  console.addFact("bars", model.bars.size());
  console.addFact("written", writtenBars(model, result.skipped));
  console.addFact("skipped", {{"invisible", result.skipped.invisible},
                              {"notExportedType", result.skipped.notExportedType},
                              {"textTooLong", result.skipped.withoutRecord}});
  Json elements = Json::object();
  for (std::size_t i = 0; i < elementKeywords.size(); ++i) {
    elements[std::string(elementKeywords[i])] = result.elements[i];
  }
  console.addFact("elements", elements);
  Json unknown = Json::array();
  for (const ModuleMessage& message : result.messages) {
    if (message.id == MessageId::unknownProfile) {
      unknown.push_back({{"text", model.sections[static_cast<std::size_t>(message.section)].text},
                         {"bars", message.bars},
                         {"firstBar", message.firstBar + 1}});
    }
  }
  console.addFact("unknownProfiles", unknown);
  console.addFact("bytes", result.bytes);
  console.addFact("lines", result.lines);
  console.addFact("seconds", seconds);
}

/// The summary for people; on standard error when the file itself goes to standard output.
void printSummary(Console& console, const Model& model, const std::string& name,
                  const std::string& output, const ExportResult& result, double seconds) {
  const auto print = [&](const std::string& line) {
    isStandardStream(output) ? console.printError(line) : console.printLine(line);
  };
  constexpr std::size_t labelWidth = 22;
  const auto row = [&](const Text& label, const std::string& value) {
    const std::size_t width = characterCount(say(label));
    const std::string space(width < labelWidth ? labelWidth - width : 1, ' ');
    print("  " + std::string(say(label)) + space + value);
  };
  print(displayName(name) + " -> " +
        (isStandardStream(output) ? std::string(say(texts::standardOutput)) : output));
  row(texts::sumBars,
      say(texts::sumOf, {numberText(writtenBars(model, result.skipped)),
                         numberText(static_cast<std::int64_t>(model.bars.size()))}));
  row(texts::sumSkipped, skippedText(result.skipped));
  row(texts::sumElements, elementsText(result));
  bool anyUnknown = false;
  for (const ModuleMessage& message : result.messages) {
    if (message.id == MessageId::unknownProfile) {
      const auto& section = model.sections[static_cast<std::size_t>(message.section)];
      row(texts::sumUnknown, say(texts::sumUnknownRow, {section.text, barsText(message.bars),
                                                        numberText(message.firstBar + 1)}));
      anyUnknown = true;
    }
  }
  if (!anyUnknown) {
    row(texts::sumUnknown, say(texts::none));
  }
  row(texts::sumSize, say(texts::sumBytes, {numberText(result.bytes), numberText(result.lines)}));
  row(texts::sumTime, say(texts::sumSeconds, {decimalText(seconds, 2)}));
}

/// Why the export of a model stopped.
std::string stopText(const ExportResult& result, const ExchangeOutput& file, std::size_t bars) {
  const std::string reason = file.failed()             ? file.failureText()
                             : !result.failure.empty() ? result.failure
                                                       : std::string(say(texts::fileIncomplete));
  return say(texts::stoppedAtBar, {say(texts::bar, {numberText(result.lastBar)}),
                                   numberText(static_cast<std::int64_t>(bars)), reason});
}

void exportOne(const std::string& name, const std::string& output, const ExportOptions& options,
               Console& console) {
  const auto started = Clock::now();
  // Before the model: a page that is missing must not cost a long export.
  const std::string page =
      options.html ? readViewerTemplate(viewerTemplatePath(options.viewerTemplate)) : "";
  const auto [model, problems] = loadForExport(name, options.load, console);
  ExchangeOutput file(output);
  ExportResult result;
  {
    Progress progress(!options.load.quiet && console.isWatched(),
                      static_cast<std::int64_t>(model.bars.size()));
    result = exportModel(model, options.load.visibleOnly, file,
                         [&](std::int32_t bar) { return progress.at(bar); });
  }
  if (result.interrupted) {
    throw Interrupted();
  }
  if (!result.complete) {
    throw Failure(exitNotWritten, stopText(result, file, model.bars.size()));
  }
  file.commit();
  console.addItem("files", output);
  if (options.html) {
    writeViewerPage(page,
                    {.name = exchangeName(output),
                     .writeExchangeFile = [&](ByteSink& sink) { copyExchangeFile(output, sink); }},
                    pageFor(output));
    console.addItem("files", pageFor(output));
  }
  const double seconds = std::chrono::duration<double>(Clock::now() - started).count();
  addSummary(console, model, result, seconds);
  if (!options.load.quiet) {
    reportMessages(console, name, model, result, problems);
    printSummary(console, model, name, output, result, seconds);
  }
}

void checkUse(const ExportOptions& options, const std::vector<std::string>& outputs) {
  if (!options.output.empty() && outputs.size() > 1) {
    throw Failure(exitBadUse, say(texts::useOneOutput,
                                  {numberText(static_cast<std::int64_t>(outputs.size()))}));
  }
  for (const std::string& output : outputs) {
    if (isStandardStream(output) && options.html) {
      throw Failure(exitBadUse, say(texts::useHtmlOutput));
    }
    if (isStandardStream(output) && system::outputIsTerminal()) {
      throw Failure(exitBadUse, say(texts::useTerminal));
    }
  }
}

void planFiles(const ExportOptions& options, const std::vector<std::string>& outputs,
               const Console& console) {
  FilePlan files(console);
  for (const std::string& model : options.models) {
    files.reads(model);
  }
  if (const std::string page = viewerTemplatePath(options.viewerTemplate); !page.empty()) {
    files.reads(page, texts::fileTemplate);
  }
  for (std::size_t i = 0; i < outputs.size(); ++i) {
    const std::string model = displayName(options.models[i]);
    const std::string role = say(texts::fileIfcOf, {model});
    options.output.empty()
        ? files.writesDerived(outputs[i], role, OwnFile::exchangeFile,
                              outputs.size() > 1 ? texts::replaceByHand : texts::replaceByOutput)
        : files.writes(outputs[i], role);
    if (options.html) {
      files.writesDerived(pageFor(outputs[i]), say(texts::filePageOf, {model}), OwnFile::page,
                          texts::replaceByView);
    }
  }
  for (const std::string& output : outputs) {
    requireExtension(output, exchangeFileKind);
  }
}

/// Standard streams are for one model at a time.
bool canRunBeside(const ExportOptions& options, const std::vector<std::string>& outputs) {
  return options.jobs > 1 && outputs.size() > 1 &&
         std::none_of(options.models.begin(), options.models.end(), isStandardStream) &&
         std::none_of(outputs.begin(), outputs.end(), isStandardStream);
}

ExitCode run(const ExportOptions& options, Console& console) {
  std::vector<std::string> outputs;
  for (const std::string& model : options.models) {
    outputs.push_back(outputFor(model, options));
  }
  checkUse(options, outputs);
  planFiles(options, outputs, console);
  std::optional<MadeFolder> folder;
  if (!options.directory.empty()) {
    folder.emplace(options.directory);
  }
  const Job job = [&](std::size_t i, Console& itsConsole) {
    const std::string& model = options.models[i];
    return reportModel(itsConsole, model, [&](Console& modelConsole) {
      return guarded(modelConsole, displayName(model), [&] {
        exportOne(model, outputs[i], options, modelConsole);
        return exitOk;
      });
    });
  };
  return canRunBeside(options, outputs)
             ? runSideBySide(outputs.size(), options.jobs, job,
                             !options.load.quiet && console.isWatched(), console)
             : runInTurn(outputs.size(), job, console);
}

constexpr std::size_t mostJobs = 64;

}  // namespace

Command addExport(CLI::App& program) {
  const auto options = std::make_shared<ExportOptions>();
  CLI::App& command = addCommand(program, "export", texts::helpExport);
  require(addArguments(command, texts::wordModel, options->models, texts::helpModels));
  CLI::Option& output =
      addName(command, "-o,--output", options->output, texts::helpOutput, texts::wordFile);
  exclude(addName(command, "--out-dir", options->directory, texts::helpOutDir, texts::wordFolder),
          output);
  addLoadOptions(command, options->load);
  addFlag(command, "--strict", options->load.strict, texts::helpStrict);
  addFlag(command, "--html", options->html, texts::helpHtml);
  addName(command, "--template", options->viewerTemplate, texts::helpTemplate, texts::wordFile);
  addCount(command, "-j,--jobs", options->jobs, mostJobs, texts::helpJobs, texts::useJobs);
  addFlag(command, "-q,--quiet", options->load.quiet, texts::helpQuiet);
  return {&command, [options](Console& console) { return run(*options, console); }};
}

}  // namespace exportifc::cli
