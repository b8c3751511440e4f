// exportifc: the export for people who work without the host.
#include <exception>
#include <new>

#include "host/command_line.h"
#include "host/console.h"
#include "host/failure.h"
#include "host/language.h"
#include "host/messages.h"
#include "host/system.h"

int main(int argc, char** argv) {
  using namespace exportifc::host;
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
