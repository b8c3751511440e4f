// A command of the program: its name, its options, what it does.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "cli/console.h"
#include "cli/failure.h"
#include "cli/messages.h"

namespace CLI {  // NOLINT(readability-identifier-naming): the library's own
class App;
class Option;
}  // namespace CLI

namespace exportifc::cli {

/// One that the program knows. Its file in cli/commands/ makes it.
struct Command {
  const CLI::App* parser;
  std::function<ExitCode(Console& console)> run;  ///< with the options that were parsed
};

/// Makes one, with its options, on the program's parser.
using MakeCommand = Command(CLI::App& program);

/// Of every command: to be read by a program.
inline constexpr const char* jsonOption = "--json";

/// A command without options of its own yet.
CLI::App& addCommand(CLI::App& program, const char* name, const Text& help);

/// What stands behind the command without an option; of the second kind as many as the user gives.
CLI::Option& addArgument(CLI::App& command, const Text& name, std::string& value, const Text& help);
CLI::Option& addArguments(CLI::App& command, const Text& name, std::vector<std::string>& values,
                          const Text& help);

/// An option that takes the name of a file or a folder.
CLI::Option& addName(CLI::App& command, const char* names, std::string& value, const Text& help,
                     const Text& kind);

/// An option that is given or not.
CLI::Option& addFlag(CLI::App& command, const char* names, bool& value, const Text& help);

/// An option that takes a number, from 1 to `most`; all else is said by `wrong`.
CLI::Option& addCount(CLI::App& command, const char* names, std::size_t& value, std::size_t most,
                      const Text& help, const Text& wrong);

// What holds between options.
void require(CLI::Option& option);
void exclude(CLI::Option& option, CLI::Option& other);
void excludeJson(CLI::App& command, CLI::Option& option);

/// The number that the whole text is, not below 0, with a decimal point or comma; none otherwise.
std::optional<double> numberIn(std::string text);

}  // namespace exportifc::cli
