#include "library/text/text.h"

#include <algorithm>
#include <charconv>
#include <stdexcept>
#include <utility>

#include "library/text/messages.h"

namespace exportifc {

namespace {

Language ofProcess = Language::english;
thread_local std::optional<Language> ofThread;

/// Digits as a program writes them ("-1234.5") as people of the language do ("-1,234.5").
std::string inLanguage(std::string digits) {
  const std::size_t whole = std::min(digits.find('.'), digits.size());
  digits = withDecimalSign(std::move(digits));
  const std::size_t first = digits.starts_with('-') ? 1 : 0;
  constexpr std::size_t group = 3;
  for (std::size_t at = whole; at > first + group;) {
    at -= group;
    digits.insert(at, say(texts::thousandsSign));
  }
  return digits;
}

}  // namespace

void setLanguage(Language language) { ofProcess = language; }

Language language() { return ofThread.value_or(ofProcess); }

SpokenLanguage::SpokenLanguage(Language language) : before_(ofThread) { ofThread = language; }

SpokenLanguage::~SpokenLanguage() { ofThread = before_; }

const char* say(const Text& text) { return text.in[static_cast<std::size_t>(language())]; }

std::string fill(const Text& text, std::span<const std::string_view> values) {
  if (values.size() != text.values) {
    throw std::logic_error(std::string("wrong number of values for: ") + say(text));
  }
  std::string filled;
  std::string_view rest = say(text);
  Placeholder place{};
  while (!rest.empty()) {
    if (takePlaceholder(rest, place)) {
      const std::string_view value = values[place.value];
      filled.append(!place.isWord ? value : value == "1" ? place.singular : place.plural);
    } else {
      filled.push_back(rest.front());
      rest.remove_prefix(1);
    }
  }
  return filled;
}

std::string withDecimalSign(std::string digits) {
  std::replace(digits.begin(), digits.end(), '.', *say(texts::decimalSign));
  return digits;
}

std::string numberText(std::int64_t value) { return inLanguage(std::to_string(value)); }

std::string barsText(std::int64_t count) { return say(texts::manyBars, {numberText(count)}); }

std::string decimalText(double value, int decimals) {
  char buffer[350];
  const auto end =
      std::to_chars(buffer, buffer + sizeof(buffer), value, std::chars_format::fixed, decimals);
  return inLanguage(std::string(buffer, end.ptr));
}

}  // namespace exportifc
