#include "cli/command.h"

#include <algorithm>
#include <charconv>
#include <system_error>

#include <CLI/CLI.hpp>

namespace exportifc::cli {

namespace {

/// A name that may not be empty; `option` is what the message calls it.
CLI::Validator someName(const std::string& option) {
  return {[option](std::string& value) {
            return value.empty() ? say(texts::useEmptyName, {option}) : std::string();
          },
          ""};
}

/// A number from 1 to `most`.
CLI::Validator someCount(std::size_t most, const Text& wrong) {
  return {[most, &wrong](std::string& value) {
            std::size_t count = 0;
            const char* const end = value.data() + value.size();
            const auto read = std::from_chars(value.data(), end, count);
            const bool isGood =
                read.ec == std::errc() && read.ptr == end && count > 0 && count <= most;
            return isGood ? std::string() : fill(wrong, {value});
          },
          ""};
}

}  // namespace

CLI::App& addCommand(CLI::App& program, const char* name, const Text& help) {
  CLI::App* const command = program.add_subcommand(name, say(help));
  command->group(say(texts::helpCommands));
  command->set_help_flag("-h,--help", say(texts::helpHelp))->group(say(texts::helpOptions));
  // Who reads the arguments looks for it before they are parsed.
  const std::string jsonHelp = say(texts::helpJson);
  command->add_flag(jsonOption, jsonHelp);
  return *command;
}

CLI::Option& addArgument(CLI::App& command, const Text& name, std::string& value,
                         const Text& help) {
  CLI::Option* const option = command.add_option(say(name), value, say(help));
  return *option->type_name("")->check(someName(say(name)));
}

CLI::Option& addArguments(CLI::App& command, const Text& name, std::vector<std::string>& values,
                          const Text& help) {
  CLI::Option* const option = command.add_option(say(name), values, say(help));
  return *option->type_name("")->check(someName(say(name)));
}

CLI::Option& addName(CLI::App& command, const char* names, std::string& value, const Text& help,
                     const Text& kind) {
  CLI::Option* const option = command.add_option(names, value, say(help));
  return *option->type_name(say(kind))->check(someName(option->get_name()));
}

CLI::Option& addFlag(CLI::App& command, const char* names, bool& value, const Text& help) {
  return *command.add_flag(names, value, say(help));
}

CLI::Option& addCount(CLI::App& command, const char* names, std::size_t& value, std::size_t most,
                      const Text& help, const Text& wrong) {
  CLI::Option* const option = command.add_option(names, value, say(help));
  return *option->type_name(say(texts::wordNumber))->check(someCount(most, wrong));
}

void require(CLI::Option& option) { option.required(); }

void exclude(CLI::Option& option, CLI::Option& other) { option.excludes(&other); }

void excludeJson(CLI::App& command, CLI::Option& option) {
  option.excludes(command.get_option(jsonOption));
}

std::optional<double> numberIn(std::string text) {
  std::replace(text.begin(), text.end(), ',', '.');
  double value = 0.0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  const bool whole = error == std::errc() && end == text.data() + text.size();
  return whole && value >= 0.0 ? std::optional(value) : std::nullopt;
}

}  // namespace exportifc::cli
