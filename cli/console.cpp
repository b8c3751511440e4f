#include "cli/console.h"

#include <cerrno>
#include <cstdio>
#include <exception>
#include <new>

#include "cli/output_file.h"
#include "cli/system.h"

namespace exportifc::cli {

void Console::reportError(const std::string& message) {
  printError("exportifc: " + std::string(say(texts::error)) + ": " + message);
}

void Console::reportFailure(const Failure& failure) {
  failure.line() == FailureLine::whole ? printError(failure.what()) : reportError(failure.what());
}

ExitCode guarded(Console& console, const std::string& model,
                 const std::function<ExitCode()>& action) {
  const auto fail = [&](const std::string& reason) {
    console.reportError(model.empty() ? reason : model + ": " + reason);
    return exitNotWritten;
  };
  try {
    return action();
  } catch (const Interrupted&) {
    throw;
  } catch (const Failure& failure) {
    console.reportFailure(failure);
    return failure.code();
  } catch (const std::bad_alloc&) {
    return fail(say(texts::outOfMemory));
  } catch (const std::exception& failure) {
    return fail(say(texts::unexpected, {failure.what()}));
  }
}

void StandardConsole::printLine(const std::string& line) {
  errno = 0;
  const bool written = std::fputs((line + "\n").c_str(), stdout) >= 0 && std::fflush(stdout) == 0;
  if (!written) {
    throw Failure(exitNotWritten,
                  say(texts::cannotWrite, {say(texts::standardOutput), systemErrorText(errno)}));
  }
}

void StandardConsole::printError(const std::string& line) {
  std::fputs((line + "\n").c_str(), stderr);
}

bool StandardConsole::isWatched() const { return system::errorIsTerminal(); }

void KeptConsole::repeat(Console& console) const {
  for (const auto& [print, line] : lines_) {
    (console.*print)(line);
  }
}

}  // namespace exportifc::cli
