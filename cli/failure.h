// How the program ends.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

#include <nlohmann/json_fwd.hpp>

namespace exportifc::cli {

/// Exit codes, for scripts; the help text lists them.
enum ExitCode : int {
  exitOk = 0,
  exitProblems = 1,    ///< `check`, `--strict`, or a section name that the file cannot hold
  exitBadUse = 2,      ///< arguments
  exitUnreadable = 3,  ///< an input that cannot be read (a model, the viewer's page) or is none
  exitNotWritten = 4,  ///< output, also after an interrupt
};

// What programs know the ends of a call by; the problems of models have codes of their own.
inline constexpr const char* nothingWrittenCode = "nothing-written";
inline constexpr const char* badUseCode = "bad-use";
inline constexpr const char* unreadableCode = "unreadable";
inline constexpr const char* notWrittenCode = "not-written";
inline constexpr const char* interruptedCode = "interrupted";
inline constexpr const char* outOfMemoryCode = "out-of-memory";
inline constexpr const char* unexpectedCode = "unexpected";

/// A problem as programs read it, of which only code and message are known.
nlohmann::ordered_json failureJson(const char* code, const std::string& message);

/// Whether a message says itself whose it is.
enum class FailureLine : std::uint8_t {
  message,  ///< the program puts its name and "error" before it
  whole,    ///< it begins with a file and its line
};

/// Ends one command with a message for the user and an exit code.
class Failure : public std::runtime_error {
 public:
  Failure(ExitCode code, const std::string& message, FailureLine line = FailureLine::message)
      : std::runtime_error(message), code_(code), line_(line) {}

  ExitCode code() const { return code_; }
  FailureLine line() const { return line_; }
  /// The same for programs.
  virtual nlohmann::ordered_json facts() const;

 private:
  ExitCode code_;
  FailureLine line_;
};

/// Ends one model of several when the user stops the program; it is said once for all of them.
struct Interrupted : std::runtime_error {
  Interrupted() : std::runtime_error("interrupted") {}
};

}  // namespace exportifc::cli
