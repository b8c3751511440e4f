#include "library/text/text_encoding.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace exportifc {

namespace {

/// Bytes of the sequence that `lead` begins; 0 when none begins so.
std::size_t sequenceLength(unsigned char lead) {
  if (lead < 0x80) return 1;
  if (lead >= 0xC2 && lead < 0xE0) return 2;
  if (lead >= 0xE0 && lead < 0xF0) return 3;
  if (lead >= 0xF0 && lead < 0xF5) return 4;
  return 0;
}

/// Whether the byte goes on with a sequence that another one began.
bool isInside(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

// Windows-1252 from 0x80 to 0x9F; 0 where it has no character.
constexpr std::array<char32_t, 32> windows1252 = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178,
};

struct Plain {
  char32_t character;
  std::string_view ascii;
};

// What is not a letter of U+00C0 to U+00FF.
constexpr Plain plainForms[] = {
    {0x00A0, " "},   {0x00AA, "a"},   {0x00B0, "o"},   {0x00B2, "2"}, {0x00B3, "3"},
    {0x00B4, "'"},   {0x00B7, "."},   {0x00B9, "1"},   {0x00BA, "o"}, {0x00BC, "1/4"},
    {0x00BD, "1/2"}, {0x00BE, "3/4"}, {0x00D8, "O"},   {0x00F8, "o"}, {0x00D7, "x"},
    {0x00F7, "/"},   {0x0152, "OE"},  {0x0153, "oe"},  {0x0160, "S"}, {0x0161, "s"},
    {0x017D, "Z"},   {0x017E, "z"},   {0x2013, "-"},   {0x2014, "-"}, {0x2018, "'"},
    {0x2019, "'"},   {0x201C, "\""},  {0x201D, "\""},  {0x2022, "."}, {0x2026, "..."},
    {0x2205, "O"},   {0x2300, "O"},   {0x20AC, "EUR"},
};

// U+00C0 to U+00FF, one letter each; "*" where the table above decides or two letters are needed.
constexpr std::string_view latinLetters =
    "AAAAAA*CEEEEIIIIDNOOOOO*OUUUUY**aaaaaa*ceeeeiiiidnooooo*ouuuuy*y";

std::string_view plainForm(char32_t character) {
  if (character == 0xC6) return "AE";
  if (character == 0xE6) return "ae";
  if (character == 0xDF) return "ss";
  if (character == 0xDE) return "Th";
  if (character == 0xFE) return "th";
  for (const Plain& form : plainForms) {
    if (form.character == character) return form.ascii;
  }
  if (character >= 0xC0 && character <= 0xFF) {
    return latinLetters.substr(character - 0xC0, 1);
  }
  return "?";
}

// The halves of UTF-16, each of ten bits.
bool isFirstHalf(char32_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
bool isSecondHalf(char32_t unit) { return unit >= 0xDC00 && unit < 0xE000; }

bool isCombiningMark(char32_t character) { return character >= 0x300 && character <= 0x36F; }

}  // namespace

bool isUtf8(std::string_view bytes) {
  while (!bytes.empty()) {
    const auto lead = static_cast<unsigned char>(bytes[0]);
    const std::size_t length = sequenceLength(lead);
    if (length == 0 || length > bytes.size()) return false;
    for (std::size_t i = 1; i < length; ++i) {
      if (!isInside(bytes[i])) return false;
    }
    // Overlong forms, surrogates and what lies above U+10FFFF.
    const auto second = length > 1 ? static_cast<unsigned char>(bytes[1]) : 0U;
    if ((lead == 0xE0 && second < 0xA0) || (lead == 0xED && second > 0x9F) ||
        (lead == 0xF0 && second < 0x90) || (lead == 0xF4 && second > 0x8F)) {
      return false;
    }
    bytes.remove_prefix(length);
  }
  return true;
}

std::string toUtf8(std::string_view bytes) {
  if (isUtf8(bytes)) {
    return std::string(bytes);
  }
  std::string text;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    char32_t character = byte;
    if (byte >= 0x80 && byte < 0xA0 && windows1252[byte - 0x80] != 0) {
      character = windows1252[byte - 0x80];
    }
    text += utf8Of(character);
  }
  return text;
}

std::string utf8Of(char32_t character) {
  const auto byte = [](char32_t value) { return static_cast<char>(value); };
  if (character < 0x80) {
    return {byte(character)};
  }
  if (character < 0x800) {
    return {byte(0xC0 | (character >> 6)), byte(0x80 | (character & 0x3F))};
  }
  if (character < 0x10000) {
    return {byte(0xE0 | (character >> 12)), byte(0x80 | ((character >> 6) & 0x3F)),
            byte(0x80 | (character & 0x3F))};
  }
  return {byte(0xF0 | (character >> 18)), byte(0x80 | ((character >> 12) & 0x3F)),
          byte(0x80 | ((character >> 6) & 0x3F)), byte(0x80 | (character & 0x3F))};
}

std::string utf8Of(std::wstring_view text) {
  std::string utf8;
  for (std::size_t i = 0; i < text.size(); ++i) {
    auto character = static_cast<char32_t>(text[i]);
    const char32_t next = i + 1 < text.size() ? static_cast<char32_t>(text[i + 1]) : 0;
    if (isFirstHalf(character) && isSecondHalf(next)) {
      character = 0x10000 + ((character - 0xD800) << 10) + (next - 0xDC00);
      ++i;
    }
    utf8 += utf8Of(character);
  }
  return utf8;
}

char32_t takeCharacter(std::string_view& utf8) {
  const auto lead = static_cast<unsigned char>(utf8[0]);
  const std::size_t length = std::min(std::max<std::size_t>(sequenceLength(lead), 1), utf8.size());
  char32_t character = length == 1 ? lead : lead & (0xFFU >> (length + 1));
  for (std::size_t i = 1; i < length; ++i) {
    character = (character << 6) | (static_cast<unsigned char>(utf8[i]) & 0x3F);
  }
  utf8.remove_prefix(length);
  return character;
}

namespace {

/// "<U+00A0>"
std::string numberOf(char32_t character) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string text = "<U+";
  for (int shift = 12; shift >= 0; shift -= 4) {
    text += digits[(character >> shift) & 0xFU];
  }
  return text + '>';
}

}  // namespace

std::string withVisibleBlanks(std::string_view utf8) {
  constexpr auto isHidden = [](char32_t c) {
    return c < ' ' || (c >= 0x7F && c <= 0xA0) || c == 0xAD || (c >= 0x2000 && c <= 0x200F) ||
           c == 0x2028 || c == 0x2029 || c == 0x202F || c == 0x205F || c == 0x2060 || c == 0x3000 ||
           c == 0xFEFF;
  };
  std::string text;
  while (!utf8.empty()) {
    const char32_t character = takeCharacter(utf8);
    text += isHidden(character) ? numberOf(character) : utf8Of(character);
  }
  return text;
}

std::string withVisibleControls(std::string_view text) {
  const auto byteAt = [&](std::size_t i) {
    return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U;
  };
  std::string visible;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const unsigned byte = byteAt(i);
    const unsigned following = byteAt(i + 1);
    if ((byte < ' ' && byte != '\t' && byte != '\n') || byte == 0x7F) {
      visible += numberOf(byte);
    } else if (byte == 0xC2 && following >= 0x80 && following < 0xA0) {
      visible += numberOf(following);
      ++i;
    } else {
      visible += text[i];
    }
  }
  return visible;
}

std::string firstUnwritable(std::string_view utf8) {
  while (!utf8.empty()) {
    const char32_t character = takeCharacter(utf8);
    if (character > 0x7F) {
      return utf8Of(character);
    }
  }
  return {};
}

std::string transliterated(std::string_view utf8) {
  std::string ascii;
  while (!utf8.empty()) {
    const char32_t character = takeCharacter(utf8);
    if (character <= 0x7F) {
      ascii.push_back(static_cast<char>(character));
    } else if (!isCombiningMark(character)) {
      ascii += plainForm(character);
    }
  }
  return ascii;
}

std::string_view firstCharacters(std::string_view utf8, std::size_t count) {
  std::string_view rest = utf8;
  for (; count > 0 && !rest.empty(); --count) {
    takeCharacter(rest);
  }
  return utf8.substr(0, utf8.size() - rest.size());
}

std::string excerpt(std::string_view utf8) {
  constexpr std::size_t longest = 60;
  if (utf8.size() <= longest) {
    return std::string(utf8);
  }
  std::size_t end = longest;
  while (isInside(utf8[end])) {
    --end;
  }
  return std::string(utf8.substr(0, end)) + "…";
}

std::size_t characterCount(std::string_view utf8) {
  std::size_t count = 0;
  for (; !utf8.empty(); takeCharacter(utf8)) {
    ++count;
  }
  return count;
}

}  // namespace exportifc
