#include "cli/manual.h"

#include <string_view>

#include <CLI/CLI.hpp>

#include "cli/arguments.h"
#include "cli/messages.h"
#include "library/sections/rolled_sections.h"
#include "library/sections/section_catalogue.h"

namespace exportifc::cli {

namespace {

/// Text as roff takes it: hyphens that stay, no control line by accident.
std::string roff(std::string_view text) {
  std::string safe;
  for (const char c : text) {
    if (c == '\\') {
      safe += "\\e";
    } else if (c == '-') {
      safe += "\\-";
    } else {
      safe.push_back(c);
    }
  }
  return safe.empty() || (safe[0] != '.' && safe[0] != '\'') ? safe : "\\&" + safe;
}

bool isHidden(const CLI::Option& option) { return option.get_group().empty(); }

std::string optionTitle(const CLI::Option& option) {
  std::string title;
  for (const std::string& name : option.get_snames()) {
    title += (title.empty() ? "" : ", ") + ("-" + name);
  }
  for (const std::string& name : option.get_lnames()) {
    title += (title.empty() ? "" : ", ") + ("--" + name);
  }
  if (title.empty()) {
    return option.get_name();
  }
  const std::string type = option.get_type_name();
  return type.empty() ? title : title + " " + type;
}

std::string optionList(const CLI::App& app) {
  std::string text;
  for (const CLI::Option* const option : app.get_options()) {
    if (!isHidden(*option)) {
      text +=
          ".TP\n.B " + roff(optionTitle(*option)) + "\n" + roff(option->get_description()) + "\n";
    }
  }
  return text;
}

std::string section(std::string_view title, const std::string& body) {
  return ".SH " + std::string(title) + "\n" + body;
}

/// Preceded by a blank each.
std::string seriesNames() {
  std::string text;
  for (const RolledSeriesFacts& series : rolledSeries()) {
    text.append(" ").append(series.name);
  }
  return text;
}

}  // namespace

std::string manualPage(const CLI::App& app) {
  std::string commands;
  for (const CLI::App* const command : app.get_subcommands({})) {
    commands += ".SS " + roff(command->get_name()) + "\n" + roff(command->get_description()) +
                ".\n.PP\n.B " + roff(synopsis(*command)) + "\n" + optionList(*command);
  }
  const auto variable = [](const char* names, const Text& text) {
    return ".TP\n.B " + std::string(names) + "\n" + roff(say(text)) + "\n";
  };
  return ".\\\" " + roff(say(texts::manualMade)) +
         "\n.TH EXPORTIFC 1 \"\" \"exportifc " EXPORTIFC_VERSION "\"\n" +
         section(say(texts::manualName),
                 std::string("exportifc \\- ") + say(texts::manualTitle) + "\n") +
         section(say(texts::manualSynopsis), std::string(".B exportifc ") +
                                                 say(texts::helpCommand) + " [" +
                                                 say(texts::helpOptionsWord) + "]\n") +
         section(say(texts::manualDescription), roff(app.get_description()) + "\n" +
                                                    roff(say(texts::manualModels)) + "\n" +
                                                    optionList(app)) +
         section(say(texts::manualCommands), commands) +
         section(say(texts::manualExitStatus), roff(app.get_footer()) + ".\n") +
         section(say(texts::manualEnvironment),
                 variable("EXPORTIFC_LANG", texts::manualLanguage) +
                     variable("LC_ALL, LC_MESSAGES, LANG", texts::manualLocale) +
                     variable("EXPORTIFC_VIEWER", texts::manualViewer)) +
         section(say(texts::manualExamples),
                 ".nf\nexportifc export samples/galpao.json \\-o galpao.ifc\n"
                 "exportifc check \\-\\-json model.json\n"
                 "exportifc export \\-\\-jobs 4 \\-\\-out\\-dir ifc models/*.json\n"
                 "exportifc view model.json \\-o model.html\n.fi\n");
}

/// Families as words of a shell, where brackets and arrows need quotes.
std::string quotedFamilies() {
  std::string text;
  for (const Family& family : families()) {
    text += " '" + family.word + "'";
  }
  return text;
}

std::string bashCompletion(const CLI::App& app) {
  const auto words = [](const CLI::App& from) {
    std::string text;
    for (const CLI::Option* const option : from.get_options()) {
      if (!isHidden(*option)) {
        for (const std::string& name : option->get_snames()) {
          text += " -" + name;
        }
        for (const std::string& name : option->get_lnames()) {
          text += " --" + name;
        }
      }
    }
    return text.substr(1);
  };
  std::string commands;
  std::string cases;
  for (const CLI::App* const command : app.get_subcommands({})) {
    commands += command->get_name() + " ";
    const std::string& name = command->get_name();
    cases += "    " + command->get_name() + ") words=\"" + words(*command) +
             (name == "profiles"   ? quotedFamilies()
              : name == "sections" ? seriesNames()
                                   : "") +
             "\" ;;\n";
  }
  return std::string("# ") + say(texts::completionMade) +
         "\n_exportifc() {\n"
         "  local current=${COMP_WORDS[COMP_CWORD]} words\n"
         "  case ${COMP_WORDS[1]} in\n" +
         cases + "    *) words=\"" + commands + words(app) +
         "\" ;;\n"
         "  esac\n"
         "  if [[ $COMP_CWORD -gt 1 && $current != -* && "
         "${COMP_WORDS[1]} != profiles && ${COMP_WORDS[1]} != sections ]]; then\n"
         "    mapfile -t COMPREPLY < <(compgen -f -- \"$current\")\n"
         "  else\n"
         "    mapfile -t COMPREPLY < <(compgen -W \"$words\" -- \"$current\")\n"
         "  fi\n"
         "}\n"
         "complete -o filenames -F _exportifc exportifc\n";
}

}  // namespace exportifc::cli
