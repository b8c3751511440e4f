#include "cli/language.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "cli/failure.h"
#include "cli/messages.h"
#include "cli/system.h"
#include "library/text/text_encoding.h"

namespace exportifc::cli {

namespace {

struct LanguageName {
  std::string_view name;  ///< small letters without accents
  Language language;
};

constexpr std::array names = {
    LanguageName{"pt", Language::portuguese},
    LanguageName{"por", Language::portuguese},
    LanguageName{"portugues", Language::portuguese},
    LanguageName{"portuguese", Language::portuguese},
    LanguageName{"en", Language::english},
    LanguageName{"eng", Language::english},
    LanguageName{"english", Language::english},
    LanguageName{"ingles", Language::english},
    LanguageName{"c", Language::english},
    LanguageName{"posix", Language::english},
};

/// The language that a name begins with: "pt", "PT", "pt_BR.UTF-8", "português".
std::optional<Language> languageNamed(const std::string& name) {
  std::string word = transliterated(toUtf8(name));
  word.resize(std::min(word.find_first_of("_-.@ "), word.size()));
  std::transform(word.begin(), word.end(), word.begin(), [](char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  });
  const auto* const row = std::find_if(
      names.begin(), names.end(), [&](const LanguageName& known) { return known.name == word; });
  return row != names.end() ? std::optional(row->language) : std::nullopt;
}

/// That of the system: any that the program does not have is English.
Language systemLanguage() {
  for (const char* const variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    const std::string value = system::variable(variable);
    if (!value.empty()) {
      return languageNamed(value).value_or(Language::english);
    }
  }
  return system::userLanguage();
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
