#include "host/messages.h"

#include <charconv>

namespace exportifc::host {

namespace {

Language current = Language::english;

}  // namespace

void setLanguage(Language language) { current = language; }

Language language() { return current; }

const char* say(const Text& text) {
  return current == Language::portuguese ? text.portuguese : text.english;
}

std::string say(const Text& text, std::initializer_list<std::string_view> values) {
  std::string filled;
  const std::string_view pattern = say(text);
  for (std::size_t at = 0; at < pattern.size(); ++at) {
    // "{0}" to "{9}"; every other character stands for itself.
    if (pattern[at] == '{' && at + 2 < pattern.size() && pattern[at + 2] == '}') {
      const auto index = static_cast<std::size_t>(pattern[at + 1] - '0');
      if (index < values.size()) {
        filled.append(*(values.begin() + index));
      }
      at += 2;
    } else {
      filled.push_back(pattern[at]);
    }
  }
  return filled;
}

std::string numberText(std::int64_t value) {
  const bool negative = value < 0;
  std::string digits = std::to_string(value);
  const char separator = current == Language::portuguese ? '.' : ',';
  for (std::size_t at = digits.size(); at > 3 + (negative ? 1U : 0U);) {
    at -= 3;
    digits.insert(at, 1, separator);
  }
  return digits;
}

std::string decimalText(double value, int decimals) {
  char buffer[350];
  const auto end =
      std::to_chars(buffer, buffer + sizeof(buffer), value, std::chars_format::fixed, decimals);
  std::string text(buffer, end.ptr);
  if (current == Language::portuguese) {
    if (const auto point = text.find('.'); point != std::string::npos) {
      text[point] = ',';
    }
  }
  return text;
}

}  // namespace exportifc::host
