// exportifc: the export for people who work without the host.
#include "cli/command_line.h"
#include "cli/commands/commands.h"
#include "cli/console.h"
#include "cli/json_report.h"
#include "cli/language.h"
#include "cli/system.h"

int main(int argc, char** argv) {
  using namespace exportifc::cli;
  system::prepareProcess();
  StandardConsole console;
  return guarded(console, "", [&] {
    Arguments arguments = system::arguments(argc, argv);
    arguments.erase(arguments.begin());
    const ReportedAction run = [&](Console& itsConsole) {
      chooseLanguage();
      return runCommandLine(allCommands, arguments, itsConsole);
    };
    return askForJson(arguments) ? reportAsJson(console, run) : run(console);
  });
}
