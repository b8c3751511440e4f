#include "cli/command_line.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include "cli/arguments.h"
#include "cli/failure.h"
#include "cli/manual.h"
#include "cli/messages.h"

namespace exportifc::cli {

namespace {

constexpr const char* hidden = "";

/// The words that the parser's library puts into a help text.
std::shared_ptr<CLI::Formatter> helpFormatter() {
  auto formatter = std::make_shared<CLI::Formatter>();
  formatter->label("Usage", say(texts::helpUsage));
  formatter->label("Positionals", say(texts::helpPositionals));
  formatter->label("SUBCOMMAND", say(texts::helpCommand));
  formatter->label("OPTIONS", say(texts::helpOptionsWord));
  formatter->label("REQUIRED", say(texts::helpRequired));
  formatter->label("Excludes", say(texts::helpExcludes));
  constexpr std::size_t optionColumn = 28;
  formatter->column_width(optionColumn);
  return formatter;
}

/// The program's options and commands.
class CommandLine {
 public:
  CommandLine(std::span<MakeCommand* const> commands, Console& console) : console_(console) {
    app_.formatter(helpFormatter());
    app_.option_defaults()->group(say(texts::helpOptions))->disable_flag_override();
    app_.set_help_flag("-h,--help", say(texts::helpHelp))->group(say(texts::helpOptions));
    app_.set_version_flag("--version", "exportifc " EXPORTIFC_VERSION, say(texts::helpVersion));
    app_.add_flag("--man", man_)->group(hidden);
    app_.add_flag("--completion", completion_)->group(hidden);
    app_.footer(say(texts::helpExitCodes));
    app_.require_subcommand(0, 1);
    app_.allow_windows_style_options(false);  // "/tmp/x" is a path
    for (MakeCommand* const add : commands) {
      commands_.push_back(add(app_));
    }
  }

  ExitCode run(const Arguments& arguments) {
    const CLI::App& command = chosenCommand(app_, arguments);
    if (&command != &app_) {
      console_.addFact("command", command.get_name());
    }
    if (askForHelp(arguments)) {
      return print("help", &command == &app_ ? app_.help() : command.help("exportifc"));
    }
    if (askForVersion(arguments)) {
      return print("version", app_.version());
    }
    if (const std::string text = misleadingArgument(command, arguments); !text.empty()) {
      return refuse(command, text);
    }
    try {
      app_.parse(Arguments(arguments.rbegin(), arguments.rend()));  // takes the last one first
    } catch (const CLI::ParseError& error) {
      return refuse(command, refusalText(app_, command, error));
    }
    if (man_) {
      return print(manualPage(app_));
    }
    if (completion_) {
      return print(bashCompletion(app_));
    }
    const auto chosen =
        std::find_if(commands_.begin(), commands_.end(),
                     [](const Command& candidate) { return candidate.parser->parsed(); });
    if (chosen == commands_.end()) {
      print("help", app_.help());
      return exitBadUse;
    }
    return chosen->run(console_);
  }

 private:
  ExitCode print(std::string text) const {
    text.erase(text.find_last_not_of('\n') + 1);
    console_.printLine(text);
    return exitOk;
  }

  /// What is asked for in place of a command.
  ExitCode print(const char* kind, const std::string& text) const {
    console_.addFact("command", kind);
    console_.addFact("text", text);
    return print(text);
  }

  /// Says what is wrong and where the right use stands.
  ExitCode refuse(const CLI::App& command, const std::string& text) const {
    console_.reportError(
        badUseCode, say(texts::useHelp, {text, &command == &app_ ? "" : command.get_name() + " "}));
    return exitBadUse;
  }

  Console& console_;
  CLI::App app_{say(texts::helpProgram), "exportifc"};
  bool man_ = false;
  bool completion_ = false;
  std::vector<Command> commands_;
};

}  // namespace

ExitCode runCommandLine(std::span<MakeCommand* const> commands, const Arguments& arguments,
                        Console& console) {
  return CommandLine(commands, console).run(arguments);
}

}  // namespace exportifc::cli
