// exportifc: the export for people who work without the host.
#include <exception>
#include <new>

#include "cli/command_line.h"
#include "cli/console.h"
#include "cli/failure.h"
#include "cli/language.h"
#include "cli/messages.h"
#include "cli/system.h"

int main(int argc, char** argv) {
  using namespace exportifc::cli;
  system::prepareProcess();
  try {
    chooseLanguage();
    std::vector<std::string> arguments = system::arguments(argc, argv);
    arguments.erase(arguments.begin());
    return runCommandLine(arguments);
  } catch (const Failure& failure) {
    reportFailure(failure);
    return failure.code();
  } catch (const std::bad_alloc&) {
    reportError(say(texts::outOfMemory));
    return exitNotWritten;
  } catch (const std::exception& failure) {
    reportError(say(texts::unexpected, {failure.what()}));
    return exitNotWritten;
  }
}
