#include "cli/console.h"

#include <cerrno>
#include <cstdio>

#include "cli/failure.h"
#include "cli/output_file.h"

namespace exportifc::cli {

void printLine(const std::string& line) {
  errno = 0;
  const bool written = std::fputs((line + "\n").c_str(), stdout) >= 0 && std::fflush(stdout) == 0;
  if (!written) {
    throw Failure(exitNotWritten,
                  say(texts::cannotWrite, {say(texts::standardOutput), systemErrorText(errno)}));
  }
}

void printError(const std::string& line) { std::fputs((line + "\n").c_str(), stderr); }

void reportError(const std::string& message) {
  printError("exportifc: " + std::string(say(texts::error)) + ": " + message);
}

void reportWarning(const std::string& message) {
  printError("exportifc: " + std::string(say(texts::warning)) + ": " + message);
}

void reportFailure(const Failure& failure) {
  failure.line() == FailureLine::whole ? printError(failure.what()) : reportError(failure.what());
}

}  // namespace exportifc::cli
