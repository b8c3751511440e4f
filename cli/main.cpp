// exportifc: the export for people who work without the host.
#include "cli/command_line.h"
#include "cli/commands/commands.h"
#include "cli/console.h"
#include "cli/language.h"
#include "cli/system.h"

int main(int argc, char** argv) {
  using namespace exportifc::cli;
  system::prepareProcess();
  StandardConsole console;
  return guarded(console, "", [&] {
    chooseLanguage();
    Arguments arguments = system::arguments(argc, argv);
    arguments.erase(arguments.begin());
    return runCommandLine(allCommands, arguments, console);
  });
}
