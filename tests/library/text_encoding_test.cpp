#include "library/text/text_encoding.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace exportifc {
namespace {

std::string bytes(std::initializer_list<int> values) {
  std::string text;
  for (const int value : values) {
    text.push_back(static_cast<char>(value));
  }
  return text;
}

// ---- what is UTF-8

/// Well-formed sequences as the Unicode standard lists them: ranges of their first two bytes, and
/// how many more follow.
struct Sequences {
  int firstFrom, firstTo;
  int secondFrom, secondTo;
  int more;
};

constexpr Sequences wellFormed[] = {
    {0xC2, 0xDF, 0x80, 0xBF, 0}, {0xE0, 0xE0, 0xA0, 0xBF, 1}, {0xE1, 0xEC, 0x80, 0xBF, 1},
    {0xED, 0xED, 0x80, 0x9F, 1}, {0xEE, 0xEF, 0x80, 0xBF, 1}, {0xF0, 0xF0, 0x90, 0xBF, 2},
    {0xF1, 0xF3, 0x80, 0xBF, 2}, {0xF4, 0xF4, 0x80, 0x8F, 2},
};

/// How many bytes must follow these two; -1: they begin no character.
int moreBehind(int first, int second) {
  for (const Sequences& row : wellFormed) {
    if (first >= row.firstFrom && first <= row.firstTo && second >= row.secondFrom &&
        second <= row.secondTo) {
      return row.more;
    }
  }
  return -1;
}

TEST(IsUtf8, KnowsEachFirstByte) {
  EXPECT_TRUE(isUtf8(""));
  for (int first = 0; first < 256; ++first) {
    EXPECT_EQ(isUtf8(bytes({first})), first < 0x80) << first;
  }
}

TEST(IsUtf8, KnowsEachPairOfBytesAndWhatFollows) {
  for (int first = 0x80; first < 256; ++first) {
    for (int second = 0; second < 256; ++second) {
      const int more = moreBehind(first, second);
      for (int given = 0; given <= 3; ++given) {
        std::string text = bytes({first, second});
        text.append(static_cast<std::size_t>(given), '\x80');
        ASSERT_EQ(isUtf8(text), given == more) << first << " " << second << " +" << given;
      }
      for (int at = 0; at < more; ++at) {
        for (const char wrong : {'\x7F', '\xC0'}) {
          std::string text = bytes({first, second});
          text.append(static_cast<std::size_t>(more), '\xBF');
          ASSERT_TRUE(isUtf8(text));
          text[2 + static_cast<std::size_t>(at)] = wrong;
          ASSERT_FALSE(isUtf8(text)) << first << " " << second;
        }
      }
    }
  }
}

TEST(IsUtf8, LooksAtTheWholeText) {
  EXPECT_TRUE(isUtf8("aç€😀z"));
  EXPECT_FALSE(isUtf8("aç€😀\xE7"));
  EXPECT_FALSE(isUtf8("\xE7 a"));
}

// ---- characters

TEST(Utf8Of, WritesEachLength) {
  EXPECT_EQ(utf8Of(U'A'), "A");
  EXPECT_EQ(utf8Of(char32_t{0x7F}), "\x7F");
  EXPECT_EQ(utf8Of(char32_t{0x80}), "\xC2\x80");
  EXPECT_EQ(utf8Of(U'ç'), "ç");
  EXPECT_EQ(utf8Of(char32_t{0x7FF}), "\xDF\xBF");
  EXPECT_EQ(utf8Of(char32_t{0x800}), "\xE0\xA0\x80");
  EXPECT_EQ(utf8Of(U'€'), "€");
  EXPECT_EQ(utf8Of(char32_t{0xFFFF}), "\xEF\xBF\xBF");
  EXPECT_EQ(utf8Of(char32_t{0x10000}), "\xF0\x90\x80\x80");
  EXPECT_EQ(utf8Of(U'😀'), "😀");
  EXPECT_EQ(utf8Of(char32_t{0x10FFFF}), "\xF4\x8F\xBF\xBF");
}

TEST(TakeCharacter, ReadsWhatIsWritten) {
  for (char32_t character = 0; character <= 0x10FFFF; ++character) {
    const std::string written = utf8Of(character) + "x";
    std::string_view rest = written;
    ASSERT_EQ(takeCharacter(rest), character);
    ASSERT_EQ(rest, "x");
  }
}

TEST(TakeCharacter, StaysInsideOfACutText) {
  for (const std::string& cut : {bytes({0xE2, 0x82}), bytes({0xE2}), bytes({0xF0, 0x9F, 0x98})}) {
    std::string_view rest = cut;
    takeCharacter(rest);
    EXPECT_TRUE(rest.empty());
  }
  const std::string stray = bytes({0x80, 'a'});
  std::string_view rest = stray;
  EXPECT_EQ(takeCharacter(rest), char32_t{0x80});
  EXPECT_EQ(rest, "a");
}

TEST(CharacterCount, CountsCharacters) {
  EXPECT_EQ(characterCount(""), 0U);
  EXPECT_EQ(characterCount("viga"), 4U);
  EXPECT_EQ(characterCount("aç€😀z"), 5U);
}

TEST(FirstCharacters, CutsBetweenCharacters) {
  const std::string text = "aç€😀z";
  EXPECT_EQ(firstCharacters(text, 0), "");
  EXPECT_EQ(firstCharacters(text, 1), "a");
  EXPECT_EQ(firstCharacters(text, 3), "aç€");
  EXPECT_EQ(firstCharacters(text, 5), text);
  EXPECT_EQ(firstCharacters(text, 6), text);
}

TEST(Excerpt, IsTheTextAsFarAsItFits) {
  const std::string sixty(60, 'x');
  EXPECT_EQ(excerpt(""), "");
  EXPECT_EQ(excerpt(sixty), sixty);
  EXPECT_EQ(excerpt(sixty + "y"), sixty + "…");
}

TEST(Excerpt, CutsBetweenCharacters) {
  for (const std::string character : {"ç", "€", "😀"}) {
    for (std::size_t outside = 0; outside <= character.size(); ++outside) {
      const std::string before(60 - character.size() + outside, 'x');
      const std::string fitting = outside == 0 ? before + character : before;
      EXPECT_EQ(excerpt(before + character + "y"), fitting + "…");
    }
  }
}

// ---- wide text

TEST(Utf8OfWideText, IsTheSameText) {
  EXPECT_EQ(utf8Of(std::wstring_view(L"")), "");
  EXPECT_EQ(utf8Of(std::wstring_view(L"aç€😀z")), "aç€😀z");
}

TEST(Utf8OfWideText, PutsTheHalvesOfACharacterTogether) {
  // Units, as Windows has them.
  EXPECT_EQ(utf8Of(std::wstring{L'a', 0xD83D, 0xDE00, L'z'}), "a😀z");
  EXPECT_EQ(utf8Of(std::wstring{0xD800, 0xDC00}), utf8Of(char32_t{0x10000}));
  EXPECT_EQ(utf8Of(std::wstring{0xDBFF, 0xDFFF}), utf8Of(char32_t{0x10FFFF}));
}

TEST(Utf8OfWideText, AHalfAloneStaysOne) {
  EXPECT_EQ(utf8Of(std::wstring{L'a', 0xD83D}), "a\xED\xA0\xBD");
  EXPECT_EQ(utf8Of(std::wstring{0xD83D, L'a'}), "\xED\xA0\xBD\x61");
  EXPECT_EQ(utf8Of(std::wstring{0xD83D, 0xD83D, 0xDE00}), "\xED\xA0\xBD😀");
  EXPECT_EQ(utf8Of(std::wstring{0xD83D, 0xE000}), "\xED\xA0\xBD\xEE\x80\x80");
  EXPECT_EQ(utf8Of(std::wstring{0xDE00, 0xD83D}), "\xED\xB8\x80\xED\xA0\xBD");
}

// ---- Windows-1252

TEST(ToUtf8, LeavesUtf8AsItIs) {
  EXPECT_EQ(toUtf8(""), "");
  EXPECT_EQ(toUtf8("Viga 1"), "Viga 1");
  EXPECT_EQ(toUtf8("Pórtico Ø 20"), "Pórtico Ø 20");
}

TEST(ToUtf8, ReadsAnythingElseAsWindows1252) {
  const std::u32string_view upper =
      U"€\u0081‚ƒ„…†‡ˆ‰Š‹Œ\u008DŽ\u008F\u0090‘’“”•–—˜™š›œ\u009Dž\u0178\u00A0¡¢£¤¥¦§¨©ª«¬\u00AD®¯°±²"
      U"³´µ¶·"
      U"¸¹º»¼½¾¿ÀÁÂÃÄÅÆÇÈÉÊËÌÍÎÏÐÑÒÓÔÕÖ×ØÙÚÛÜÝÞßàáâãäåæçèéêëìíîïðñòóôõö÷øùúûüýþÿ";
  ASSERT_EQ(upper.size(), 128U);
  for (int byte = 0x80; byte < 256; ++byte) {
    // The last byte makes sure that it is no UTF-8.
    const std::string text = bytes({'a', byte, 'z', 0xFF});
    EXPECT_EQ(toUtf8(text), "a" + utf8Of(upper[static_cast<std::size_t>(byte - 0x80)]) + "zÿ")
        << byte;
  }
  EXPECT_EQ(toUtf8("P\xF3rtico \x7F"), "Pórtico \x7F");
}

// ---- blanks

TEST(WithVisibleBlanks, ShowsWhatLooksLikeNothing) {
  EXPECT_EQ(withVisibleBlanks(""), "");
  EXPECT_EQ(withVisibleBlanks("W 200 ç €😀~"), "W 200 ç €😀~");
  EXPECT_EQ(withVisibleBlanks("W\t200\x1F\x7F"), "W<U+0009>200<U+001F><U+007F>");
  EXPECT_EQ(withVisibleBlanks("\u0080\u00A0\u00A1\u00AC\u00AD\u00AE"),
            "<U+0080><U+00A0>\u00A1\u00AC<U+00AD>\u00AE");
  // NOLINTBEGIN(misc-misleading-bidirectional): the marks are what is tested
  EXPECT_EQ(withVisibleBlanks("\u1FFF\u2000\u200F\u2010\u2027\u2028\u2029\u202A"),
            "\u1FFF<U+2000><U+200F>\u2010\u2027<U+2028><U+2029>\u202A");
  EXPECT_EQ(withVisibleBlanks("\u202E\u202F\u2030\u205E\u205F\u2060\u2061"),
            "\u202E<U+202F>\u2030\u205E<U+205F><U+2060>\u2061");
  // NOLINTEND(misc-misleading-bidirectional)
  EXPECT_EQ(withVisibleBlanks("\u2FFF\u3000\u3001\uFEFE\uFEFF\uFF00"),
            "\u2FFF<U+3000>\u3001\uFEFE<U+FEFF>\uFF00");
}

// ---- control characters

TEST(WithVisibleControls, ShowsWhatATerminalWouldObey) {
  EXPECT_EQ(withVisibleControls(""), "");
  EXPECT_EQ(withVisibleControls("a\tb\nç €😀\u00A0~"), "a\tb\nç €😀\u00A0~");
  EXPECT_EQ(withVisibleControls("\x1B[31mred\r\x7F"), "<U+001B>[31mred<U+000D><U+007F>");
  EXPECT_EQ(withVisibleControls(std::string_view("a\0b", 3)), "a<U+0000>b");
  EXPECT_EQ(withVisibleControls("\u0080\u009F\u00A0"), "<U+0080><U+009F>\u00A0");
}

TEST(WithVisibleControls, LeavesBytesThatAreNoText) {
  EXPECT_EQ(withVisibleControls("\xFF\x80\xC2"), "\xFF\x80\xC2");
  EXPECT_EQ(withVisibleControls("\xC2\x1B"), "\xC2<U+001B>");
}

// ---- plain letters

TEST(FirstUnwritable, IsTheFirstCharacterBeyondAscii) {
  EXPECT_EQ(firstUnwritable(""), "");
  EXPECT_EQ(firstUnwritable("W 200\t\x7F"), "");
  EXPECT_EQ(firstUnwritable("Viga é ç"), "é");
  EXPECT_EQ(firstUnwritable("\xC2\x80"), "\xC2\x80");
  EXPECT_EQ(firstUnwritable("200×100"), "×");
}

TEST(Transliterated, LeavesAsciiAlone) {
  std::string ascii;
  for (int c = 0; c < 0x80; ++c) {
    ascii.push_back(static_cast<char>(c));
  }
  EXPECT_EQ(transliterated(ascii), ascii);
}

TEST(Transliterated, WritesLatinLettersAsPeopleReadThem) {
  EXPECT_EQ(transliterated("ÀÁÂÃÄÅÆÇÈÉÊËÌÍÎÏÐÑÒÓÔÕÖ×ØÙÚÛÜÝÞß"),
            "AAAAAAAECEEEEIIIIDNOOOOOxOUUUUYThss");
  EXPECT_EQ(transliterated("àáâãäåæçèéêëìíîïðñòóôõö÷øùúûüýþÿ"),
            "aaaaaaaeceeeeiiiidnooooo/ouuuuythy");
}

TEST(Transliterated, WritesSignsAsPeopleReadThem) {
  EXPECT_EQ(transliterated("\u00A0ª°²³´·¹º¼½¾"), " ao23'.1o1/41/23/4");
  EXPECT_EQ(transliterated("ŒœŠšŽž–—‘’“”•…∅⌀€"), "OEoeSsZz--''\"\"....OOEUR");
}

TEST(Transliterated, DropsAccentsOfTheirOwn) {
  EXPECT_EQ(transliterated("Viga e\u0301 c\u0327"), "Viga e c");
  EXPECT_EQ(transliterated("a\u0300b\u036Fc"), "abc");
  EXPECT_EQ(transliterated("a\u02FFb\u0370c"), "a?b?c");
}

TEST(Transliterated, HasAMarkForAllElse) { EXPECT_EQ(transliterated("漢😀§\u00BF\u0100"), "?????"); }

TEST(Transliterated, IsAlwaysWritable) {
  for (char32_t character = 0; character <= 0x10FFFF; ++character) {
    ASSERT_EQ(firstUnwritable(transliterated(utf8Of(character))), "");
  }
}

}  // namespace
}  // namespace exportifc
