// What the program says on its two streams.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "cli/failure.h"
#include "cli/messages.h"

namespace exportifc::cli {

/// Where a command says what it has to say, line by line.
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

  /// "exportifc: error: …" on standard error.
  void reportError(const std::string& message);
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
  void printLine(const std::string& line) override {
    lines_.emplace_back(&Console::printLine, line);
  }
  void printError(const std::string& line) override {
    lines_.emplace_back(&Console::printError, line);
  }
  bool isWatched() const override { return false; }

  /// Says it again, on `console`.
  void repeat(Console& console) const;

 private:
  using Print = void (Console::*)(const std::string& line);
  std::vector<std::pair<Print, std::string>> lines_;
};

}  // namespace exportifc::cli
