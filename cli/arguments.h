// What is wrong with arguments, and how they are written right.
#pragma once

#include <string>
#include <vector>

namespace CLI {  // NOLINT(readability-identifier-naming): the library's own
class App;
class ParseError;
}  // namespace CLI

namespace exportifc::cli {

/// Arguments of the program, without its name.
using Arguments = std::vector<std::string>;

/// The command that the arguments name first; the program itself when they name none.
const CLI::App& chosenCommand(const CLI::App& program, const Arguments& arguments);

/// Whether help was asked for, wherever it stands: it then matters more than what is wrong.
bool askForHelp(const Arguments& arguments);

/// Whether the version was asked for.
bool askForVersion(const Arguments& arguments);

/// Whether a program reads what is said; then also what is wrong with the arguments.
bool askForJson(const Arguments& arguments);

/// What the parser would take in a sense that is not meant, and therefore must not see: `-o -q`,
/// `-output x`, `-html`. Empty when there is nothing of the kind.
std::string misleadingArgument(const CLI::App& command, const Arguments& arguments);

/// A message for what the parser refuses.
std::string refusalText(const CLI::App& program, const CLI::App& command,
                        const CLI::ParseError& error);

/// How the command is called: "exportifc convert [OPTIONS] MODEL -o FILE".
std::string synopsis(const CLI::App& command);

}  // namespace exportifc::cli
