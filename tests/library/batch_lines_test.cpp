#include "library/formats/batch_lines.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "tests/library/library_test.h"
#include "tests/support/batch_text.h"
#include "tests/support/random.h"

namespace exportifc {
namespace {

using test::InLanguage;
using test::Lines;
using test::operator+;  // NOLINT(misc-unused-using-decls): of two lists of lines

using Said = std::vector<std::string>;

/// "7: error: bar 1: …" as the program says it.
Said shown(const std::vector<Problem>& problems) {
  Said said;
  for (const Problem& problem : problems) {
    std::string text = problem.place.line > 0 ? std::to_string(problem.place.line) + ": " : "";
    text += problem.severity == Severity::error     ? "error: "
            : problem.severity == Severity::warning ? "warning: "
                                                    : "note: ";
    if (problem.bars > 0) {
      EXPECT_EQ(problem.bars, 1);
      text += "bar " + std::to_string(problem.firstBar + 1) + ": ";
    }
    said.push_back(text + problem.message);
  }
  return said;
}

BatchLines linesOf(std::string_view text) {
  BatchLines lines;
  lines.feed(text);
  lines.finish();
  return lines;
}

Said said(const Lines& lines) { return shown(linesOf(test::textOf(lines)).problems()); }

/// A file of so many bars that is as it should be.
Lines soundFile(int bars) {
  Lines lines = test::headerLines("mm", std::to_string(bars));
  for (int i = 0; i < bars; ++i) {
    lines = lines + test::barLines({.end = {"5000", "0", "0"}});
  }
  return lines;
}

/// Line `line` of the bar `bar`, both from 1, as an index.
std::size_t at(int bar, int line) {
  return 5 + 12 * static_cast<std::size_t>(bar - 1) + static_cast<std::size_t>(line) - 1;
}

Lines without(Lines lines, std::size_t index, std::size_t count = 1) {
  const auto first = lines.begin() + static_cast<std::ptrdiff_t>(index);
  lines.erase(first, first + static_cast<std::ptrdiff_t>(count));
  return lines;
}

Lines inserted(Lines lines, std::size_t index, const std::string& line) {
  lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(index), line);
  return lines;
}

Lines changed(Lines lines, std::size_t index, const std::string& line) {
  lines.at(index) = line;
  return lines;
}

TEST(BatchLines, OfASoundFileSayNothing) {
  EXPECT_EQ(said(soundFile(0)), Said());
  EXPECT_EQ(said(soundFile(3)), Said());
  EXPECT_EQ(shown(linesOf(test::textOf(soundFile(3), "\r\n")).problems()), Said());
  EXPECT_EQ(linesOf(test::textOf(soundFile(3))).barsPresent(), 3);
  EXPECT_EQ(linesOf(test::textOf(soundFile(3))).strayUnitLine(), 0);
  EXPECT_EQ(linesOf(test::textOf(soundFile(3))).soundBars(), static_cast<std::size_t>(-1));
}

// ---- the header

TEST(BatchLines, NameTheMark) {
  EXPECT_EQ(said(changed(soundFile(1), 0,
                         "\xEF\xBB\xBF"
                         "226")),
            Said({"1: note: the file begins with the mark of UTF-8 (BOM), which is not read"}));
  // It is one in the first line alone.
  EXPECT_EQ(said(changed(soundFile(1), 1,
                         "\xEF\xBB\xBF"
                         "32"))
                .size(),
            1U);
}

TEST(BatchLines, NameCountsThatAreNone) {
  const auto perhaps = [](const std::string& line, const std::string& text) {
    return line + ": warning: \"" + text +
           "\" stands where a count should; it is not read, but perhaps a line is missing or too "
           "many";
  };
  EXPECT_EQ(said(changed(soundFile(1), 0, "two")), Said({perhaps("1", "two")}));
  EXPECT_EQ(said(changed(soundFile(1), 1, "3.5")), Said({perhaps("2", "3.5")}));
  EXPECT_EQ(said(changed(soundFile(1), 1, "")), Said({perhaps("2", "")}));
  EXPECT_EQ(said(changed(soundFile(1), 0, " +226\t")), Said());
  EXPECT_EQ(said(changed(soundFile(1), 2, "anything")), Said());
}

TEST(BatchLines, NameABarCountThatIsNone) {
  EXPECT_EQ(said(changed(soundFile(2), 4, "2,5")),
            Said({"5: error: \"2,5\" is not a number of bars; it is read as 2"}));
  EXPECT_EQ(said(changed(soundFile(0), 4, "three")),
            Said({"5: error: \"three\" is not a number of bars; it is read as 0"}));
  EXPECT_EQ(said(changed(soundFile(0), 4, "-1")),
            Said({"5: error: \"-1\" is not a number of bars; it is read as 0"}));
  EXPECT_EQ(said(changed(soundFile(0), 4, "-0")), Said());
}

TEST(BatchLines, NameAnUnknownUnit) {
  const auto unit = [](const std::string& text) { return said(changed(soundFile(1), 3, text)); };
  const std::string taken = " is not m, cm or mm; coordinates are taken as millimetres";
  EXPECT_EQ(unit("m"), Said());
  EXPECT_EQ(unit("cm"), Said());
  EXPECT_EQ(unit("in"), Said({"4: warning: the unit \"in\"" + taken}));
  EXPECT_EQ(unit(""), Said({"4: warning: the unit \"\"" + taken}));
  EXPECT_EQ(unit("CM"), Said({"4: warning: the unit \"CM\"" + taken + "; did you mean cm?"}));
  EXPECT_EQ(unit(" Mm"), Said({"4: warning: the unit \" Mm\"" + taken + "; did you mean mm?"}));
  EXPECT_EQ(unit("mm "),
            Said({"4: warning: a blank makes the unit \"mm \" unknown; coordinates are taken as "
                  "millimetres; write mm alone"}));
  EXPECT_EQ(
      unit("\t\v\fm"),
      Said({"4: warning: a blank makes the unit \"\t\v\fm\" unknown; coordinates are taken as "
            "millimetres; write m alone"}));
  const auto problems = linesOf(test::textOf(changed(soundFile(1), 3, "MM"))).problems();
  EXPECT_EQ(problems[0].value, "MM");
  EXPECT_EQ(problems[0].allowed, "m, cm, mm");
  EXPECT_EQ(problems[0].suggestion, "mm");
}

TEST(BatchLines, KnowAUnitInAnotherLine) {
  const auto stray = [](const Lines& lines) {
    return linesOf(test::textOf(lines)).strayUnitLine();
  };
  EXPECT_EQ(stray(without(soundFile(1), 0)), 3);
  EXPECT_EQ(stray(inserted(soundFile(1), 0, "")), 5);
  EXPECT_EQ(stray(inserted(inserted(soundFile(1), 0, ""), 0, "")), 6);
  EXPECT_EQ(stray(changed(soundFile(1), at(1, 2), "mm")), 0);  // too far away to be the one
  EXPECT_EQ(stray(changed(soundFile(1), 0, " cm ")), 1);
}

// ---- numbers

TEST(BatchLines, TakeTheNumbersOfHosts) {
  for (const std::string number :
       {"0", "-5", "+5", "1.5", "1,5", ".5", ",5", "5.", "1e3", "1E-3", "-1,5e+03", " 12\t"}) {
    EXPECT_EQ(said(changed(soundFile(1), at(1, 4), number)), Said()) << number;
  }
}

TEST(BatchLines, NameValuesThatAreNone) {
  struct Value {
    const char* text;
    const char* readAs;
  };
  for (const Value& value :
       {Value{"abc", "0"}, Value{"1.200,5", "1.2"}, Value{"12 m", "12"}, Value{"1,2,3", "1.2"},
        Value{"-", "0"}, Value{".", "0"}, Value{"1e", "1"}, Value{"--5", "0"}, Value{"5x", "5"},
        Value{"1e+", "1"}, Value{"1;5", "1"}, Value{"1/5", "1"}, Value{"1:5", "1"}}) {
    EXPECT_EQ(said(changed(soundFile(2), at(2, 3), value.text)),
              Said({"20: error: bar 2: \"" + std::string(value.text) +
                    "\" is not a number; it is read as " + value.readAs}));
  }
  EXPECT_EQ(said(changed(soundFile(1), at(1, 8), "")),
            Said({"13: error: bar 1: a number should stand in this line; it is read as 0"}));
  EXPECT_EQ(said(changed(soundFile(1), at(1, 8), " \t")),
            Said({"13: error: bar 1: a number should stand in this line; it is read as 0"}));
}

TEST(BatchLines, NameValuesInTheLanguageOfTheUser) {
  const InLanguage portuguese(Language::portuguese);
  const auto problems =
      linesOf(test::textOf(changed(soundFile(1), at(1, 3), "1.200,5"))).problems();
  ASSERT_EQ(problems.size(), 1U);
  EXPECT_EQ(problems[0].message, "\"1.200,5\" não é um número; é lido como 1,2");
}

TEST(BatchLines, LookAtTheLinesThatAreRead) {
  for (int line = 1; line <= 12; ++line) {
    const bool isRead = line >= 2 && line <= 8;
    EXPECT_EQ(said(changed(soundFile(2), at(2, line), "abc")).size(), isRead ? 1U : 0U) << line;
  }
}

TEST(BatchLines, SayWhatProgramsNeed) {
  const auto problems = linesOf(test::textOf(changed(soundFile(1), at(1, 2), "abc"))).problems();
  ASSERT_EQ(problems.size(), 1U);
  EXPECT_STREQ(problems[0].code, "not-a-number");
  EXPECT_EQ(problems[0].value, "abc");
  EXPECT_EQ(problems[0].allowed, "a number");
  EXPECT_EQ(problems[0].firstBar, 0);
}

TEST(BatchLines, ShowLongValuesShortened) {
  const std::string sixty(60, 'x');
  const auto valueOf = [](const std::string& text) {
    return linesOf(test::textOf(changed(soundFile(1), at(1, 2), text))).problems()[0].value;
  };
  EXPECT_EQ(valueOf(sixty), sixty);
  EXPECT_EQ(valueOf(sixty + "y"), sixty + "…");
  EXPECT_EQ(valueOf("caf\xE9"), "café");
  EXPECT_EQ(valueOf(sixty.substr(1) + "çy"), sixty.substr(1) + "…");
}

TEST(BatchLines, NameTwentyValuesOneByOne) {
  Lines lines = soundFile(4);
  for (int bar = 1; bar <= 3; ++bar) {
    for (int line = 2; line <= 8; ++line) {
      lines = changed(lines, at(bar, line), "x");
    }
  }
  Said found = said(lines);
  ASSERT_EQ(found.size(), 21U);
  EXPECT_EQ(found[19], "36: error: bar 3: \"x\" is not a number; it is read as 0");
  EXPECT_EQ(found[20], "error: 1 more value is no number");
  lines = changed(lines, at(4, 8), "x");
  EXPECT_EQ(said(lines).back(), "error: 2 more values are no number");
  lines = changed(changed(lines, at(4, 8), "0"), at(3, 8), "0");
  EXPECT_EQ(said(lines).size(), 20U);
}

// ---- lines that are missing or too many

TEST(BatchLines, NameTheBarWhereTheTwelveNoLongerFit) {
  const std::string noLonger =
      "the twelve lines of the bars no longer fit: the section text \"W 200 100 8 6\" is line ";
  const std::string from = "; from here on bars are not checked";
  EXPECT_EQ(said(without(soundFile(3), at(2, 3))),
            Said({"25: error: bar 2: " + noLonger +
                  "8 of its bar, not 9; above it 1 line is missing" + from}));
  EXPECT_EQ(said(without(soundFile(3), at(2, 3), 2)),
            Said({"24: error: bar 2: " + noLonger +
                  "7 of its bar, not 9; above it 2 lines are missing" + from}));
  EXPECT_EQ(said(inserted(soundFile(3), at(2, 3), "0")),
            Said({"27: error: bar 2: " + noLonger +
                  "10 of its bar, not 9; above it 1 line is too many" + from}));
  EXPECT_EQ(said(inserted(inserted(soundFile(3), at(2, 3), "0"), at(2, 3), "0")),
            Said({"28: error: bar 2: " + noLonger +
                  "11 of its bar, not 9; above it 2 lines are too many" + from}));
  const BatchLines lines = linesOf(test::textOf(without(soundFile(3), at(2, 3))));
  EXPECT_EQ(lines.soundBars(), 1U);
  EXPECT_STREQ(lines.problems()[0].code, "lines-shifted");
  EXPECT_EQ(lines.problems()[0].value, "W 200 100 8 6");
}

TEST(BatchLines, ASectionWithoutNumbersBeforeItIsNoShift) {
  // Line 10 looks like a section, but line 9 is no angle.
  Lines lines = changed(soundFile(1), at(1, 3), "abc");
  lines = changed(lines, at(1, 10), "A 36");
  EXPECT_EQ(said(lines), Said({"8: error: bar 1: \"abc\" is not a number; it is read as 0"}));
  // The section text is missing, or a word without numbers.
  lines = changed(changed(soundFile(1), at(1, 3), "abc"), at(1, 9), "nada");
  EXPECT_EQ(said(lines), Said({"8: error: bar 1: \"abc\" is not a number; it is read as 0"}));
}

TEST(BatchLines, KnowSectionsByTheirLook) {
  // In place of the angle: a shift if it looks like a section.
  const auto isShift = [](const std::string& text) {
    Lines lines = changed(soundFile(1), at(1, 8), text);
    const Said found = said(changed(lines, at(1, 9), "A36"));
    return !found.empty() && found[0].find("no longer fit") != std::string::npos;
  };
  EXPECT_TRUE(isShift("W 200"));
  EXPECT_TRUE(isShift("2L 75x6"));
  EXPECT_TRUE(isShift("w 2"));
  EXPECT_FALSE(isShift("W200"));
  EXPECT_FALSE(isShift("W x"));
  EXPECT_FALSE(isShift("200 100"));
  EXPECT_FALSE(isShift(" 1e5 "));
  EXPECT_FALSE(isShift("@ [ 5"));
  EXPECT_FALSE(isShift("` { 5"));
  EXPECT_TRUE(isShift("A 9"));
  EXPECT_TRUE(isShift("Z 0"));
  EXPECT_TRUE(isShift("a 1"));
  EXPECT_TRUE(isShift("z 1"));
}

TEST(BatchLines, AnEmptySectionIsSaidElsewhere) {
  EXPECT_EQ(said(changed(soundFile(2), at(1, 9), "")), Said());
  EXPECT_EQ(said(changed(soundFile(2), at(1, 9), "5")), Said());
}

// ---- the end

TEST(BatchLines, NameABarThatIsCut) {
  for (int kept = 1; kept <= 12; ++kept) {
    Lines lines = soundFile(2);
    lines.resize(at(2, kept) + 1);
    const Said cut = {std::to_string(17 + kept) +
                      ": error: bar 2: the file ends in the middle of the bar, behind " +
                      std::to_string(kept) + " of its 12 lines"};
    EXPECT_EQ(said(lines), kept <= 8 ? cut : Said()) << kept;
    EXPECT_EQ(linesOf(test::textOf(lines)).soundBars(),
              kept <= 8 ? 1U : static_cast<std::size_t>(-1))
        << kept;
    EXPECT_EQ(linesOf(test::textOf(lines)).barsPresent(), 2) << kept;
  }
}

TEST(BatchLines, OfTheLastBarLookAtWhatIsThere) {
  Lines lines = changed(soundFile(1), at(1, 3), "abc");
  lines.resize(at(1, 9) + 1);
  EXPECT_EQ(said(lines), Said({"8: error: bar 1: \"abc\" is not a number; it is read as 0"}));
  std::string text = test::textOf(lines);
  text.pop_back();  // and without the end of its last line
  EXPECT_EQ(shown(linesOf(text).problems()),
            Said({"8: error: bar 1: \"abc\" is not a number; it is read as 0"}));
}

TEST(BatchLines, EmptyLinesAtTheEndAreNone) {
  EXPECT_EQ(said(soundFile(2) + Lines{"", "", ""}), Said());
  Lines lines = soundFile(2);
  lines.resize(at(2, 4) + 1);
  EXPECT_EQ(said(lines + Lines{"", "", ""}),
            Said({"21: error: bar 2: the file ends in the middle of the bar, behind 4 of its 12 "
                  "lines"}));
  EXPECT_EQ(linesOf("").barsPresent(), 0);
  EXPECT_EQ(linesOf("2\n1\n").barsPresent(), 0);
}

TEST(BatchLines, NameBarsThatNobodyAnnounced) {
  Lines lines = changed(soundFile(3), 4, "2");
  EXPECT_EQ(said(lines),
            Said({"5: warning: the file announces 2 bars, but holds 3; the others are left out"}));
  const auto problems = linesOf(test::textOf(lines)).problems();
  EXPECT_EQ(problems[0].value, "2");
  EXPECT_EQ(problems[0].suggestion, "3");
  // What stands in them is not looked at.
  EXPECT_EQ(said(changed(lines, at(3, 3), "abc")).size(), 1U);
  EXPECT_EQ(said(changed(lines, at(2, 3), "abc")).size(), 2U);
  // One that is cut counts.
  lines.resize(at(3, 2) + 1);
  EXPECT_EQ(said(lines),
            Said({"5: warning: the file announces 2 bars, but holds 3; the others are left out"}));
  EXPECT_EQ(said(changed(soundFile(1), 4, "0")),
            Said({"5: warning: the file announces 0 bars, but holds 1; the others are left out"}));
}

TEST(BatchLines, BehindAShiftTheCountSaysNothing) {
  Lines lines = without(soundFile(3), at(1, 3));
  EXPECT_EQ(said(lines).size(), 1U);
  lines = inserted(soundFile(3), at(1, 3), "0");
  EXPECT_EQ(said(lines).size(), 1U);
}

TEST(BatchLines, ATextEndsAtItsEndByte) {
  const std::string text = test::textOf(soundFile(2));
  EXPECT_EQ(shown(linesOf(text + "\x1A"
                                 "rest\nof\nthe disk")
                      .problems()),
            Said());
  BatchLines lines;
  lines.feed(text + "\x1A");
  lines.feed("more\nlines\n");
  lines.finish();
  EXPECT_EQ(shown(lines.problems()), Said());
  EXPECT_EQ(lines.barsPresent(), 2);
  EXPECT_EQ(shown(linesOf(test::textOf(soundFile(1)) + "\x1A\x1A").problems()), Said());
}

TEST(BatchLines, PiecesMayEndAnywhere) {
  const std::string text =
      test::textOf(inserted(changed(soundFile(4), at(2, 3), "abc"), at(3, 5), ""), "\r\n");
  const Said whole = shown(linesOf(text).problems());
  ASSERT_EQ(whole.size(), 2U);
  test::Random random(3);
  for (int round = 0; round < test::rounds(200); ++round) {
    BatchLines lines;
    for (std::string_view rest = text; !rest.empty();) {
      const auto size = static_cast<std::size_t>(random.integer(0, 9));
      lines.feed(rest.substr(0, size));
      rest.remove_prefix(std::min(size, rest.size()));
    }
    lines.finish();
    ASSERT_EQ(shown(lines.problems()), whole);
  }
}

}  // namespace
}  // namespace exportifc
