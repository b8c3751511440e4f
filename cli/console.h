// What the program says on its two streams.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include "cli/failure.h"
#include "cli/messages.h"
#include "library/text/json_text.h"

namespace exportifc::cli {

using Json = nlohmann::ordered_json;

/// What the library says to programs, as a part of what this program says.
Json factsOf(const JsonObject& said);
Json factsOf(const JsonList& said);

/// Where a command says what it has to say: to people line by line, to programs in facts.
class Console {
 public:
  Console() = default;
  Console(const Console&) = delete;
  Console& operator=(const Console&) = delete;
  virtual ~Console() = default;

  /// One line on standard output. Throws a Failure when it takes none any more.
  virtual void printLine(const std::string& line) = 0;
  /// One line on standard error.
  virtual void printError(const std::string& line) = 0;
  /// Whether a person waits in front of standard error.
  virtual bool isWatched() const = 0;

  /// Whether a program listens. It hears no lines, and people hear no facts.
  virtual bool isForPrograms() const { return false; }
  virtual void addProblem(const Json& /*problem*/) {}
  /// Something that the command has done or found out; of the second kind one of a list.
  virtual void addFact(const char* /*key*/, const Json& /*value*/) {}
  virtual void addItem(const char* /*list*/, const Json& /*value*/) {}

  /// "exportifc: error: …" on standard error.
  void reportError(const char* code, const std::string& message);
  /// Why a command ended, on standard error.
  void reportFailure(const Failure& failure);
};

/// Runs `action`. What ends it early is said on `console`, and gives its exit code; of what has no
/// name in its message, `model` is put before it unless it is empty. Lets only `Interrupted` pass.
ExitCode guarded(Console& console, const std::string& model,
                 const std::function<ExitCode()>& action);

/// The streams of the process.
class StandardConsole final : public Console {
 public:
  void printLine(const std::string& line) override;
  void printError(const std::string& line) override;
  bool isWatched() const override;
};

/// Keeps what is said, in its order.
class KeptConsole final : public Console {
 public:
  /// For whoever listens at `end`, where it is to be said again.
  explicit KeptConsole(const Console& end) : isForPrograms_(end.isForPrograms()) {}

  void printLine(const std::string& line) override;
  void printError(const std::string& line) override;
  bool isWatched() const override { return false; }
  bool isForPrograms() const override { return isForPrograms_; }
  void addProblem(const Json& problem) override;
  void addFact(const char* key, const Json& value) override;
  void addItem(const char* list, const Json& value) override;

  /// Says it again, on `console`.
  void repeat(Console& console) const;

 private:
  bool isForPrograms_;
  std::vector<std::function<void(Console& console)>> said_;
};

}  // namespace exportifc::cli
