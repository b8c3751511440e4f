#include "cli/command_line.h"

#include <algorithm>
#include <charconv>

#include <CLI/CLI.hpp>

#include "cli/arguments.h"
#include "cli/commands/check.h"
#include "cli/commands/convert.h"
#include "cli/commands/export.h"
#include "cli/commands/profiles.h"
#include "cli/commands/view.h"
#include "cli/console.h"
#include "cli/failure.h"
#include "cli/manual.h"
#include "cli/messages.h"

namespace exportifc::cli {

namespace {

constexpr const char* hidden = "";

/// A name that may not be empty; `option` is what the message calls it.
CLI::Validator someName(const std::string& option) {
  return {[option](std::string& value) {
            return value.empty() ? say(texts::useEmptyName, {option}) : std::string();
          },
          ""};
}

/// A number of processes.
CLI::Validator jobCount() {
  return {[](std::string& value) {
            constexpr int most = 64;
            int count = 0;
            const char* const end = value.data() + value.size();
            const auto read = std::from_chars(value.data(), end, count);
            const bool isGood =
                read.ec == std::errc() && read.ptr == end && count > 0 && count <= most;
            return isGood ? std::string() : say(texts::useJobs, {value});
          },
          ""};
}

/// The program's commands and options, and the values they are given.
class CommandLine {
 public:
  CommandLine() {
    const auto formatter = std::make_shared<CLI::Formatter>();
    formatter->label("Usage", say(texts::helpUsage));
    formatter->label("Positionals", say(texts::helpPositionals));
    formatter->label("SUBCOMMAND", say(texts::helpCommand));
    formatter->label("OPTIONS", say(texts::helpOptionsWord));
    formatter->label("REQUIRED", say(texts::helpRequired));
    formatter->label("Excludes", say(texts::helpExcludes));
    constexpr std::size_t optionColumn = 28;
    formatter->column_width(optionColumn);
    app_.formatter(formatter);
    app_.option_defaults()->group(say(texts::helpOptions))->disable_flag_override();
    app_.set_help_flag("-h,--help", say(texts::helpHelp))->group(say(texts::helpOptions));
    app_.set_version_flag("--version", "exportifc " EXPORTIFC_VERSION, say(texts::helpVersion));
    app_.add_flag("--man", man_)->group(hidden);
    app_.add_flag("--completion", completion_)->group(hidden);
    app_.footer(say(texts::helpExitCodes));
    app_.require_subcommand(0, 1);
    app_.allow_windows_style_options(false);  // "/tmp/x" is a path
    addExport();
    addCheck();
    addProfiles();
    addConvert();
    addView();
  }

  int run(const std::vector<std::string>& arguments) {
    const CLI::App& command = chosenCommand(app_, arguments);
    if (askForHelp(arguments)) {
      return print(&command == &app_ ? app_.help() : command.help("exportifc"));
    }
    if (askForVersion(arguments)) {
      return print(app_.version());
    }
    if (const std::string text = misleadingArgument(command, arguments); !text.empty()) {
      return refuse(command, text);
    }
    // The library takes the last argument first.
    std::vector<std::string> reversed(arguments.rbegin(), arguments.rend());
    try {
      app_.parse(std::move(reversed));
    } catch (const CLI::ParseError& error) {
      return refuse(command, refusalText(app_, command, error));
    }
    if (man_) {
      return print(manualPage(app_));
    }
    if (completion_) {
      return print(bashCompletion(app_));
    }
    const auto chosen = app_.get_subcommands();
    if (chosen.empty()) {
      print(app_.help());
      return exitBadUse;
    }
    const std::string& name = chosen.front()->get_name();
    if (name == "export") return runExportCommand(export_);
    if (name == "check") return runCheckCommand(check_);
    if (name == "profiles") return runProfilesCommand(profiles_);
    if (name == "convert") return runConvertCommand(convert_);
    return runViewCommand(view_);
  }

 private:
  CLI::App* add(const char* name, const Text& help) {
    CLI::App* const command = app_.add_subcommand(name, say(help));
    command->group(say(texts::helpCommands));
    command->set_help_flag("-h,--help", say(texts::helpHelp))->group(say(texts::helpOptions));
    return command;
  }

  template <typename Value>
  static CLI::Option* addArgument(CLI::App* command, const Text& name, Value& value,
                                  const Text& help) {
    return command->add_option(say(name), value, say(help))
        ->type_name("")
        ->check(someName(say(name)));
  }

  /// An option that names a file or a folder.
  static CLI::Option* addName(CLI::App* command, const std::string& names, std::string& value,
                              const Text& help, const Text& kind) {
    CLI::Option* const option = command->add_option(names, value, say(help));
    return option->type_name(say(kind))->check(someName(option->get_name()));
  }

  void addExport() {
    CLI::App* const command = add("export", texts::helpExport);
    addArgument(command, texts::wordModel, export_.models, texts::helpModels)->required();
    auto* const output =
        addName(command, "-o,--output", export_.output, texts::helpOutput, texts::wordFile);
    addName(command, "--out-dir", export_.directory, texts::helpOutDir, texts::wordFolder)
        ->excludes(output);
    command->add_flag("--visible-only", export_.visibleOnly, say(texts::helpVisibleOnly));
    command->add_flag("--strict", export_.strict, say(texts::helpStrict));
    command->add_flag("--transliterate", export_.transliterate, say(texts::helpTransliterate));
    command->add_flag("--html", export_.html, say(texts::helpHtml));
    addName(command, "--template", export_.viewerTemplate, texts::helpTemplate, texts::wordFile);
    command->add_option("-j,--jobs", export_.jobs, say(texts::helpJobs))
        ->type_name(say(texts::wordNumber))
        ->check(jobCount());
    command->add_flag("-q,--quiet", export_.quiet, say(texts::helpQuiet));
  }

  void addCheck() {
    CLI::App* const command = add("check", texts::helpCheck);
    addArgument(command, texts::wordModel, check_.models, texts::helpModels)->required();
    command->add_flag("--visible-only", check_.visibleOnly, say(texts::helpVisibleOnly));
    command->add_flag("!--no-notes", check_.notes, say(texts::helpNoNotes));
    command->add_flag("--json", check_.json, say(texts::helpJson));
  }

  void addProfiles() {
    CLI::App* const command = add("profiles", texts::helpProfiles);
    addArgument(command, texts::wordFamily, profiles_.words, texts::helpFamily);
    addName(command, "--svg", profiles_.drawings, texts::helpSvg, texts::wordFolder);
    command->add_flag("--markdown", profiles_.markdown, say(texts::helpMarkdown));
  }

  void addConvert() {
    CLI::App* const command = add("convert", texts::helpConvert);
    addArgument(command, texts::wordModel, convert_.model, texts::helpModel)->required();
    addName(command, "-o,--output", convert_.output, texts::helpConvertOutput, texts::wordFile)
        ->required();
    command->add_flag("--strict", convert_.strict, say(texts::helpConvertStrict));
  }

  void addView() {
    CLI::App* const command = add("view", texts::helpView);
    addArgument(command, texts::wordInput, view_.input, texts::helpViewInput)->required();
    addName(command, "-o,--output", view_.output, texts::helpViewOutput, texts::wordFile);
    addName(command, "--template", view_.viewerTemplate, texts::helpTemplate, texts::wordFile);
    command->add_flag("--visible-only", view_.visibleOnly, say(texts::helpVisibleOnly));
    command->add_flag("--transliterate", view_.transliterate, say(texts::helpTransliterate));
    command->add_flag("!--no-notes", view_.notes, say(texts::helpNoNotes));
  }

  static int print(std::string text) {
    while (!text.empty() && text.back() == '\n') {
      text.pop_back();
    }
    printLine(text);
    return exitOk;
  }

  /// Says what is wrong and where the right use stands.
  int refuse(const CLI::App& command, const std::string& text) const {
    reportError(say(texts::useHelp, {text, &command == &app_ ? "" : command.get_name() + " "}));
    return exitBadUse;
  }

  CLI::App app_{say(texts::helpProgram), "exportifc"};
  bool man_ = false;
  bool completion_ = false;
  ExportOptions export_;
  CheckOptions check_;
  ProfilesOptions profiles_;
  ConvertOptions convert_;
  ViewOptions view_;
};

}  // namespace

int runCommandLine(const std::vector<std::string>& arguments) {
  return CommandLine().run(arguments);
}

}  // namespace exportifc::cli
