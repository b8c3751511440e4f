// Texts in the languages of the users: values in their places, words that go with a number.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>

namespace exportifc {

enum class Language : std::uint8_t { english, portuguese };
inline constexpr std::size_t languageCount = 2;

/// A place in a text for a value: "{0}" stands for the first one, "{0:bar|bars}" for the word
/// that goes with it. No other brace is a place.
struct Placeholder {
  std::size_t value;
  bool isWord;
  std::string_view singular, plural;  ///< the two words
};

/// Takes a placeholder off the front of the text; false, and nothing taken, when it has none.
/// Throws when one is not closed, so that such a text does not compile.
constexpr bool takePlaceholder(std::string_view& text, Placeholder& place) {
  if (text.size() < 2 || text[0] != '{' || text[1] < '0' || text[1] > '9') {
    return false;
  }
  const std::size_t end = text.find('}');
  if (end == std::string_view::npos) {
    throw "a placeholder is not closed";  // NOLINT(hicpp-exception-baseclass): for the compiler
  }
  place = {static_cast<std::size_t>(text[1] - '0'), end > 2, {}, {}};
  if (place.isWord) {
    const std::size_t bar = text.find('|');
    if (text[2] != ':' || bar > end) {
      throw "a placeholder is {0} or {0:singular|plural}";  // NOLINT: as above
    }
    place.singular = text.substr(3, bar - 3);
    place.plural = text.substr(bar + 1, end - bar - 1);
  }
  text.remove_prefix(end + 1);
  return true;
}

/// Number of values that a text takes. Throws when it leaves one out.
constexpr std::size_t valueCount(std::string_view text) {
  unsigned used = 0;  // one bit for each value
  Placeholder place{};
  while (!text.empty()) {
    if (takePlaceholder(text, place)) {
      used |= 1U << place.value;
    } else {
      text.remove_prefix(1);
    }
  }
  std::size_t count = 0;
  for (; (used & 1U) != 0; used >>= 1) {
    ++count;
  }
  if (used != 0) {
    throw "a text leaves out a value before its last one";  // NOLINT: as above
  }
  return count;
}

/// One text in each language; those that do not take the same values do not compile.
struct Text {
  consteval Text(const char* english, const char* portuguese)
      : in{english, portuguese}, values(valueCount(english)) {
    for (const char* const text : in) {
      if (valueCount(text) != values) {
        throw "the languages of a text take different values";  // NOLINT: as above
      }
    }
  }

  const char* in[languageCount];  ///< in the order of `Language`
  std::size_t values;
};

/// A text that takes so many values; any other does not compile.
template <std::size_t Count>
struct TextWith {
  // NOLINTNEXTLINE(google-explicit-constructor,hicpp-explicit-conversions): texts are passed as
  // such
  consteval TextWith(const Text& given) : text(given) {
    if (given.values != Count) {
      throw "this text takes another number of values";  // NOLINT: as above
    }
  }

  const Text& text;
};

/// The language of the process, in which every thread speaks that has none of its own.
void setLanguage(Language language);
Language language();

/// A language of this thread's own while this lives. One inside another is put back.
class SpokenLanguage {
 public:
  explicit SpokenLanguage(Language language);
  SpokenLanguage(const SpokenLanguage&) = delete;
  SpokenLanguage& operator=(const SpokenLanguage&) = delete;
  ~SpokenLanguage();

 private:
  std::optional<Language> before_;
};

/// The text in the user's language.
const char* say(const Text& text);

/// The same with its values in place. A word stands in the singular beside the value "1". Throws
/// std::logic_error when the number of values is not the text's.
std::string fill(const Text& text, std::span<const std::string_view> values);
inline std::string fill(const Text& text, std::initializer_list<std::string_view> values) {
  return fill(text, std::span(values.begin(), values.size()));
}

/// `fill` for a text known when this is compiled, with the number of values checked there:
/// `say(texts::cannotRead, {name, reason})`.
template <std::size_t Count>
std::string say(std::type_identity_t<TextWith<Count>> text,
                const std::string_view (&values)[Count]) {
  return fill(text.text, values);
}

/// A whole number with its thousands grouped, a number with decimals.
std::string numberText(std::int64_t value);
std::string decimalText(double value, int decimals);

/// Digits as programs write them, "-1234.5", with the decimal sign of the language.
std::string withDecimalSign(std::string digits);

/// "1 bar", "2 bars".
std::string barsText(std::int64_t count);

}  // namespace exportifc
