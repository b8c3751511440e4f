#include "host/command_line.h"

#include <algorithm>
#include <sstream>

#include <CLI/CLI.hpp>

#include "host/check_command.h"
#include "host/console.h"
#include "host/convert_command.h"
#include "host/export_command.h"
#include "host/failure.h"
#include "host/manual.h"
#include "host/messages.h"
#include "host/profiles_command.h"
#include "host/view_command.h"

namespace exportifc::host {

namespace {

constexpr const char* hidden = "";

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
    constexpr std::size_t optionColumn = 28;
    formatter->column_width(optionColumn);
    app_.formatter(formatter);
    app_.option_defaults()->group(say(texts::helpOptions));
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
    // The library takes the last argument first.
    std::vector<std::string> reversed(arguments.rbegin(), arguments.rend());
    try {
      app_.parse(std::move(reversed));
    } catch (const CLI::ParseError& error) {
      return explain(error);
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
    for (const CLI::Option* const option : chosen.front()->get_options()) {
      const std::vector<std::string>& values = option->results();
      if (std::find(values.begin(), values.end(), "") != values.end()) {
        reportError(say(texts::emptyName, {option->get_name(false, true)}));
        return exitBadUse;
      }
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

  void addExport() {
    CLI::App* const command = add("export", texts::helpExport);
    command->add_option("MODEL", export_.models, say(texts::helpModels))->required()->type_name("");
    auto* const output = command->add_option("-o,--output", export_.output, say(texts::helpOutput))
                             ->type_name("FILE");
    command->add_option("--out-dir", export_.directory, say(texts::helpOutDir))
        ->type_name("DIR")
        ->excludes(output);
    command->add_flag("--visible-only", export_.visibleOnly, say(texts::helpVisibleOnly));
    command->add_flag("--strict", export_.strict, say(texts::helpStrict));
    command->add_flag("--transliterate", export_.transliterate, say(texts::helpTransliterate));
    command->add_flag("--html", export_.html, say(texts::helpHtml));
    command->add_option("--template", export_.viewerTemplate, say(texts::helpTemplate))
        ->type_name("FILE");
    command->add_option("-j,--jobs", export_.jobs, say(texts::helpJobs))->type_name("N");
    command->add_flag("-q,--quiet", export_.quiet, say(texts::helpQuiet));
  }

  void addCheck() {
    CLI::App* const command = add("check", texts::helpCheck);
    command->add_option("MODEL", check_.models, say(texts::helpModels))->required()->type_name("");
    command->add_flag("--visible-only", check_.visibleOnly, say(texts::helpVisibleOnly));
    command->add_flag("--json", check_.json, say(texts::helpJson));
  }

  void addProfiles() {
    CLI::App* const command = add("profiles", texts::helpProfiles);
    command->add_option("FAMILY", profiles_.family, say(texts::helpFamily))->type_name("");
    command->add_option("--svg", profiles_.drawings, say(texts::helpSvg))->type_name("DIR");
    command->add_flag("--markdown", profiles_.markdown, say(texts::helpMarkdown));
  }

  void addConvert() {
    CLI::App* const command = add("convert", texts::helpConvert);
    command->add_option("MODEL", convert_.model, say(texts::helpModel))->required()->type_name("");
    command->add_option("-o,--output", convert_.output, say(texts::helpConvertOutput))
        ->required()
        ->type_name("FILE");
    command->add_flag("--strict", convert_.strict, say(texts::helpConvertStrict));
  }

  void addView() {
    CLI::App* const command = add("view", texts::helpView);
    command->add_option("INPUT", view_.input, say(texts::helpViewInput))->required()->type_name("");
    command->add_option("-o,--output", view_.output, say(texts::helpViewOutput))->type_name("FILE");
    command->add_option("--template", view_.viewerTemplate, say(texts::helpTemplate))
        ->type_name("FILE");
    command->add_flag("--visible-only", view_.visibleOnly, say(texts::helpVisibleOnly));
    command->add_flag("--transliterate", view_.transliterate, say(texts::helpTransliterate));
  }

  static int print(std::string text) {
    while (!text.empty() && text.back() == '\n') {
      text.pop_back();
    }
    printLine(text);
    return exitOk;
  }

  /// Help and version are not errors; the others are told in the user's language.
  int explain(const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) {
      std::ostringstream out;
      std::ostringstream ignored;
      app_.exit(error, out, ignored);
      return print(out.str());
    }
    const std::string what = error.what();
    std::string detail;
    switch (static_cast<CLI::ExitCodes>(error.get_exit_code())) {
      case CLI::ExitCodes::RequiredError:  // "MODEL is required"
        detail = say(texts::useMissing, {what.substr(0, what.find(' '))});
        break;
      case CLI::ExitCodes::ExtrasError:  // "The following argument was not expected: frob"
        detail = say(texts::useUnknown, {what.substr(what.rfind(": ") + 2)});
        break;
      case CLI::ExitCodes::ExcludesError: detail = say(texts::useExcluded, {what}); break;
      default: detail = say(texts::useWrong, {what});
    }
    const auto chosen = app_.get_subcommands();
    const std::string command = chosen.empty() ? "" : chosen.front()->get_name() + " ";
    reportError(say(texts::useHelp, {detail, command}));
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

}  // namespace exportifc::host
