#include "cli/console.h"

#include <cerrno>
#include <cstdio>
#include <exception>
#include <new>

#include <nlohmann/json.hpp>

#include "cli/output_file.h"
#include "cli/system.h"
#include "library/files/file_names.h"
#include "library/text/text_encoding.h"

namespace exportifc::cli {

namespace {

std::string errorLine(const std::string& message) {
  return "exportifc: " + std::string(say(texts::error)) + ": " + message;
}

}  // namespace

Json factsOf(const JsonObject& said) { return Json::parse(said.text()); }
Json factsOf(const JsonList& said) { return Json::parse(said.text()); }

void Console::reportError(const char* code, const std::string& message) {
  addProblem(failureJson(code, message));
  printError(errorLine(message));
}

void Console::reportFailure(const Failure& failure) {
  addProblem(failure.facts());
  failure.line() == FailureLine::whole ? printError(failure.what())
                                       : printError(errorLine(failure.what()));
}

ExitCode guarded(Console& console, const std::string& model,
                 const std::function<ExitCode()>& action) {
  const auto end = [&](const char* code, const std::string& reason) {
    console.reportError(code, model.empty() ? reason : model + ": " + reason);
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
    return end(outOfMemoryCode, say(texts::outOfMemory));
  } catch (const std::exception& failure) {
    return end(unexpectedCode, say(texts::unexpected, {failure.what()}));
  }
}

void StandardConsole::printLine(const std::string& line) {
  errno = 0;
  const bool written = std::fputs((withVisibleControls(line) + "\n").c_str(), stdout) >= 0 &&
                       std::fflush(stdout) == 0;
  if (!written) {
    throw Failure(exitNotWritten,
                  say(texts::cannotWrite, {say(texts::standardOutput), systemErrorText(errno)}));
  }
}

void StandardConsole::printError(const std::string& line) {
  std::fputs((withVisibleControls(line) + "\n").c_str(), stderr);
}

bool StandardConsole::isWatched() const { return system::errorIsTerminal(); }

void KeptConsole::printLine(const std::string& line) {
  said_.emplace_back([line](Console& console) { console.printLine(line); });
}

void KeptConsole::printError(const std::string& line) {
  said_.emplace_back([line](Console& console) { console.printError(line); });
}

void KeptConsole::addProblem(const Json& problem) {
  said_.emplace_back([problem](Console& console) { console.addProblem(problem); });
}

void KeptConsole::addFact(const char* key, const Json& value) {
  said_.emplace_back([key, value](Console& console) { console.addFact(key, value); });
}

void KeptConsole::addItem(const char* list, const Json& value) {
  said_.emplace_back([list, value](Console& console) { console.addItem(list, value); });
}

void KeptConsole::repeat(Console& console) const {
  for (const auto& say : said_) {
    say(console);
  }
}

}  // namespace exportifc::cli
