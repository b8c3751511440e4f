#include "cli/language.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>

#include "cli/failure.h"
#include "cli/messages.h"
#include "cli/system.h"
#include "library/text/text_encoding.h"

namespace exportifc::cli {

namespace {

/// The language that a name begins with: "pt", "PT", "pt_BR.UTF-8", "português".
std::optional<Language> languageNamed(const std::string& name) {
  std::string word = transliterated(toUtf8(name));
  word.resize(std::min(word.find_first_of("_-.@ "), word.size()));
  std::transform(word.begin(), word.end(), word.begin(), [](char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  });
  for (std::size_t i = 0; i < languageCount && !word.empty(); ++i) {
    const std::string names = std::string(" ") + texts::languageNames.in[i] + " ";
    if (names.find(" " + word + " ") != std::string::npos) {
      return static_cast<Language>(i);
    }
  }
  return std::nullopt;
}

/// That of the system: any that the program does not have is English.
Language systemLanguage() {
  for (const char* const variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    const std::string value = system::variable(variable);
    if (!value.empty()) {
      return languageNamed(value).value_or(Language::english);
    }
  }
  return languageNamed(system::userLanguage()).value_or(Language::english);
}

}  // namespace

void chooseLanguage() {
  setLanguage(systemLanguage());
  const std::string wanted = system::variable("EXPORTIFC_LANG");
  if (wanted.empty()) {
    return;
  }
  const std::optional<Language> language = languageNamed(wanted);
  if (!language) {
    throw Failure(exitBadUse, say(texts::languageUnknown, {wanted}));
  }
  setLanguage(*language);
}

}  // namespace exportifc::cli
