#include "cli/arguments.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <string_view>
#include <system_error>

#include <CLI/CLI.hpp>

#include "cli/messages.h"
#include "library/files/paths.h"
#include "library/text/nearest.h"

namespace exportifc::cli {

namespace {

constexpr std::string_view endOfOptions = "--";

bool looksLikeOption(std::string_view word) { return word.size() > 1 && word[0] == '-'; }

bool isVisible(const CLI::Option& option) { return !option.get_group().empty(); }

bool takesValue(const CLI::Option& option) { return option.get_expected_min() > 0; }  // not a flag

std::string_view withoutDashes(std::string_view word) {
  return word.substr(std::min(word.find_first_not_of('-'), word.size()));
}

/// "--out=x" as "--out".
std::string withoutValue(const std::string& word) { return word.substr(0, word.find('=')); }

std::vector<std::string> longNames(const CLI::App& command) {
  std::vector<std::string> names;
  for (const CLI::Option* const option : command.get_options()) {
    if (isVisible(*option)) {
      names.insert(names.end(), option->get_lnames().begin(), option->get_lnames().end());
    }
  }
  return names;
}

std::vector<std::string> commandNames(const CLI::App& program) {
  std::vector<std::string> names;
  for (const CLI::App* const command : program.get_subcommands({})) {
    names.push_back(command->get_name());
  }
  return names;
}

/// The option's long name that was probably meant; empty when none comes close.
std::string nearestOption(const CLI::App& command, const std::string& word) {
  const std::string_view wanted = withoutDashes(word);
  const std::vector<std::string> names = longNames(command);
  const auto begun = std::find_if(names.begin(), names.end(), [&](const std::string& name) {
    return wanted.size() > 1 && name.starts_with(wanted);
  });
  const std::string near = begun != names.end() ? *begun : nearest(wanted, names);
  return near.empty() ? near : "--" + near;
}

/// Names that people try for the commands.
constexpr std::array<std::pair<std::string_view, const char*>, 19> otherNames = {{
    {"exportar", "export"},   {"verificar", "check"},    {"conferir", "check"},
    {"checar", "check"},      {"validate", "check"},     {"perfis", "profiles"},
    {"familias", "profiles"}, {"families", "profiles"},  {"secoes", "sections"},
    {"seções", "sections"},   {"catalogue", "sections"}, {"catalogo", "sections"},
    {"converter", "convert"}, {"ver", "view"},           {"visualizar", "view"},
    {"show", "view"},         {"version", "--version"},  {"versao", "--version"},
    {"versão", "--version"},
}};

/// Options that people try for what stands behind the command without one.
constexpr std::array<std::string_view, 6> triedForArguments = {
    "--family", "--familia", "--model", "--modelo", "--input", "--entrada"};

std::string nearestCommand(const CLI::App& program, const std::string& word) {
  for (const auto& [name, command] : otherNames) {
    if (name == word) {
      return command;
    }
  }
  return nearest(word, commandNames(program));
}

bool isFile(const std::string& name) {
  std::error_code ignored;
  return std::filesystem::exists(pathOf(name), ignored);
}

bool looksLikeFile(const std::string& word) {
  return word.find_first_of("./\\") != std::string::npos || isFile(word);
}

/// A word as it must be typed.
std::string typed(const std::string& word) {
  return word.find(' ') == std::string::npos ? word : '"' + word + '"';
}

/// The first command that has such an option; null when none has.
const CLI::App* ownerOf(const CLI::App& program, const std::string& option) {
  for (const CLI::App* const command : program.get_subcommands({})) {
    if (command->get_option_no_throw(option) != nullptr) {
      return command;
    }
  }
  return nullptr;
}

/// The option that a word means with one dash before a long name, whose letters the parser would
/// read as short options; empty for other words.
std::string behindOneDash(const CLI::App& command, const std::string& word) {
  const std::string name = withoutValue(word);
  constexpr std::size_t shortest = 4;
  if (word[1] == '-' || name.size() < shortest ||
      name.find_first_not_of("abcdefghijklmnopqrstuvwxyz-") != std::string::npos) {
    return {};
  }
  for (const std::string& known : longNames(command)) {
    if (editDistance(name, "-" + known) < 2) {
      return "--" + known;
    }
  }
  return {};
}

/// The option that a word means with another sign in place of its hyphens: the dashes that word
/// processors make of them, the stroke of Windows. Empty for other words.
std::string behindOtherSign(const CLI::App& command, const std::string& word) {
  constexpr std::array<std::string_view, 4> signs = {"\u2013", "\u2014", "\u2212", "/"};
  for (const std::string_view sign : signs) {
    if (!word.starts_with(sign) || isFile(word)) {
      continue;
    }
    const std::string name = word.substr(sign.size());
    for (const std::string& option : {"-" + name, "--" + name}) {
      if (command.get_option_no_throw(option) != nullptr) {
        return option;
      }
    }
  }
  return {};
}

/// What is wrong with a word that is no option and no value of one; empty when nothing is.
std::string misleadingWord(const CLI::App& command, const std::string& word) {
  if (const std::string meant = behindOtherSign(command, word); !meant.empty()) {
    return say(texts::useDash, {word, meant});
  }
  if (!looksLikeOption(word)) {
    return {};
  }
  if (isFile(word)) {
    return say(texts::useNameWithDash, {word});
  }
  if (word.size() > 3 && word[1] != '-' && word[2] == ' ' &&
      command.get_option_no_throw(word.substr(0, 2)) != nullptr) {
    return say(texts::useOneWord, {word, word.substr(0, 2), word.substr(3)});
  }
  if (const std::string meant = behindOneDash(command, word); !meant.empty()) {
    return say(texts::useNoOption, {command.get_name(), withoutValue(word)}) +
           say(texts::didYouMean, {meant});
  }
  return {};
}

/// "exportifc view INPUT -o b.html".
std::string callWithOutput(const CLI::App& command, const std::string& output) {
  std::string text = "exportifc " + command.get_name();
  for (const CLI::Option* const option : command.get_options()) {
    text += option->get_positional() ? " " + option->get_name() : "";
  }
  return text + " -o " + typed(output);
}

std::string unknownOption(const CLI::App& program, const CLI::App& command,
                          const std::string& word) {
  const std::string option = withoutValue(word);
  if (&command != &program && command.get_option_no_throw(option) != nullptr) {
    return say(texts::useOrder, {option, command.get_name()});
  }
  if (option == "--lang" || option == "--language") {
    return say(texts::useLanguage, {option});
  }
  if (&command != &program && std::find(triedForArguments.begin(), triedForArguments.end(),
                                        option) != triedForArguments.end()) {
    return say(texts::useNoOptionBut, {option, synopsis(command)});
  }
  const std::string near =
      option == "-v" || option == "-V" ? "--version" : nearestOption(command, option);
  const CLI::App* const owner = ownerOf(program, option);
  if (owner != nullptr) {
    return say(texts::useOptionOf, {option, owner->get_name()});
  }
  const std::string text = say(texts::useNoOption, {command.get_name(), option});
  return near.empty() ? text : text + say(texts::didYouMean, {near});
}

std::string unknownWord(const CLI::App& program, const CLI::App& command, const std::string& word) {
  if (looksLikeOption(word)) {
    return unknownOption(program, command, word);
  }
  if (&command != &program) {
    const bool hasOutput = command.get_option_no_throw("--output") != nullptr;
    return say(texts::useTooMany,
               {word, hasOutput ? callWithOutput(command, word) : synopsis(command)});
  }
  if (looksLikeFile(word)) {
    const bool isPage = word.ends_with(".ifc") || word.ends_with(".IFC");
    return say(texts::useCommandFirst, {isPage ? "view" : "export", typed(word)});
  }
  const std::string near = nearestCommand(program, word);
  if (!near.empty()) {
    return say(texts::useNoCommand, {word}) + say(texts::didYouMean, {near});
  }
  const std::vector<std::string> names = commandNames(program);
  const std::vector<std::string_view> views(names.begin(), names.end());
  return say(texts::useNoCommand, {word}) + say(texts::useCommands, {joined(views)});
}

/// The option that a message of the parser is about: the first word of it that names one.
const CLI::Option* optionIn(const CLI::App& command, const std::string& message) {
  constexpr std::string_view ends = " :,";
  for (std::size_t at = 0; at < message.size();) {
    const std::size_t end = std::min(message.find_first_of(ends, at), message.size());
    const std::string word = message.substr(at, end - at);
    for (const std::string& name : {word, "--" + word}) {
      if (const auto* const option = command.get_option_no_throw(name)) {
        return option;
      }
    }
    at = end + 1;
  }
  return nullptr;
}

std::string valuesOf(const CLI::Option& option) {
  const std::vector<std::string>& values = option.results();
  return joined(std::vector<std::string_view>(values.begin(), values.end()));
}

/// Too many values, too few, or one where none is taken.
std::string wrongCount(const CLI::App& command, const std::string& message) {
  const CLI::Option* const option = optionIn(command, message);
  if (option == nullptr) {
    return message;
  }
  const std::string name = option->get_name();
  if (!takesValue(*option)) {
    return say(texts::useNoValue, {name});
  }
  if (option->count() > 1) {
    return say(texts::useTwice,
               {name, numberText(static_cast<std::int64_t>(option->count())), valuesOf(*option)});
  }
  return say(texts::useNeedsValue, {name, option->get_type_name()});
}

}  // namespace

const CLI::App& chosenCommand(const CLI::App& program, const Arguments& arguments) {
  for (const std::string& word : arguments) {
    for (const CLI::App* const command : program.get_subcommands({})) {
      if (command->get_name() == word) {
        return *command;
      }
    }
  }
  return program;
}

bool askForHelp(const Arguments& arguments) {
  const auto end = std::find(arguments.begin(), arguments.end(), endOfOptions);
  return std::any_of(arguments.begin(), end,
                     [](const std::string& word) {
                       return word == "-h" || word == "--help" || word == "-help" || word == "-?" ||
                              word == "/?";
                     }) ||
         (!arguments.empty() && (arguments[0] == "help" || arguments[0] == "ajuda"));
}

bool askForVersion(const Arguments& arguments) {
  const auto end = std::find(arguments.begin(), arguments.end(), endOfOptions);
  return std::find(arguments.begin(), end, "--version") != end;
}

bool askForJson(const Arguments& arguments) {
  const auto end = std::find(arguments.begin(), arguments.end(), endOfOptions);
  return std::any_of(arguments.begin(), end,
                     [](const std::string& word) { return withoutValue(word) == "--json"; });
}

std::string misleadingArgument(const CLI::App& command, const Arguments& arguments) {
  for (std::size_t i = 0; i < arguments.size() && arguments[i] != endOfOptions; ++i) {
    const std::string& word = arguments[i];
    const CLI::Option* const option =
        looksLikeOption(word) ? command.get_option_no_throw(word) : nullptr;
    if (option == nullptr) {
      if (std::string text = misleadingWord(command, word); !text.empty()) {
        return text;
      }
    } else if (takesValue(*option)) {
      if (i + 1 == arguments.size()) {
        return say(texts::useNeedsValue, {word, option->get_type_name()});
      }
      const std::string& value = arguments[++i];
      if (looksLikeOption(value) && (value[1] < '0' || value[1] > '9')) {
        return say(texts::useValueIsOption, {word, value, option->get_type_name()});
      }
    }
  }
  return {};
}

std::string refusalText(const CLI::App& program, const CLI::App& command,
                        const CLI::ParseError& error) {
  const std::string what = error.what();
  const std::vector<std::string> unknown = program.remaining(true);
  if (!unknown.empty()) {
    // What is missing may well be what is not understood.
    return unknownWord(program, command, unknown.front());
  }
  switch (static_cast<CLI::ExitCodes>(error.get_exit_code())) {
    case CLI::ExitCodes::RequiredError: {  // "MODEL is required"
      const std::string name = what.substr(0, what.find(" is required"));
      return say(texts::useMissing, {name, synopsis(command)});
    }
    case CLI::ExitCodes::ExcludesError: {  // "--out-dir excludes --output"
      constexpr std::string_view verb = " excludes ";
      const std::size_t at = what.find(verb);
      return say(texts::useExcluded, {what.substr(0, at), what.substr(at + verb.size())});
    }
    case CLI::ExitCodes::ArgumentMismatch: return wrongCount(command, what);
    case CLI::ExitCodes::ValidationError:  // "--jobs: " and what the check of the value says
      return what.substr(std::min(what.find(": ") + 2, what.size()));
    default: return say(texts::useWrong, {what});
  }
}

std::string synopsis(const CLI::App& command) {
  std::string text = "exportifc " + command.get_name() + " [" + say(texts::helpOptionsWord) + "]";
  for (const CLI::Option* const option : command.get_options()) {
    if (option->get_positional()) {
      const std::string name = option->get_name() + (option->get_expected_max() > 1 ? "..." : "");
      text += option->get_required() ? " " + name : " [" + name + "]";
    } else if (option->get_required()) {
      text += " -" + option->get_snames().front() + " " + option->get_type_name();
    }
  }
  return text;
}

}  // namespace exportifc::cli
