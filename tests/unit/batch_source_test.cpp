#include "model/batch_source.h"

#include <cmath>
#include <cstring>
#include <limits>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "support.h"

namespace exportifc {
namespace {

using test::headerLines;
using test::Lines;
using test::textOf;
using test::operator+;  // NOLINT(misc-unused-using-decls): of two lists of lines

/// A bar in which each number is another.
Lines barLines(const std::string& section = "W 200 100") {
  return test::barLines(
      {.section = section, .start = {"1", "2", "3"}, .end = {"4", "5", "6"}, .angle = "0.5"});
}

class BatchSourceTest : public testing::Test {
 protected:
  BatchSource& open(std::string_view bytes) {
    test::writeFile(path, bytes);
    return source.emplace(path);
  }
  BatchSource& open(const Lines& lines) { return open(textOf(lines, "\r\n")); }

  /// The next bar, in a record whose old values must not survive.
  bool next() {
    bar.typeCode = 9.0F;
    bar.visible = 0;
    bar.angle = 9.0F;
    bar.start.fill(9.0F);
    bar.end.fill(9.0F);
    bar.dims.fill(9.0F);
    return source->next(0, bar);
  }

  SourceBar bar;
  test::TemporaryFolder folder;
  std::string path = folder.file("model.txt");
  std::optional<BatchSource> source;
};

// ---- Header ------------------------------------------------------------------------------------

TEST_F(BatchSourceTest, UnitTexts) {
  const auto unitOf = [&](const std::string& unit) {
    return open(headerLines(unit, "0")).unitCode();
  };
  EXPECT_EQ(unitOf("m"), 0);
  EXPECT_EQ(unitOf("cm"), 1);
  EXPECT_EQ(unitOf("mm"), 2);
}

TEST_F(BatchSourceTest, AnUnknownUnitConvertsNothing) {
  for (const std::string unit : {"MM", "M", "mm ", " mm", "m ", "km", "", "metro", "m\r"}) {
    EXPECT_EQ(millimetresPer(open(headerLines(unit, "0")).unitCode()), 1.0) << unit;
  }
}

TEST_F(BatchSourceTest, BarCountIsReadAsTheRuntimeDoes) {
  const auto countOf = [&](const std::string& count) {
    return open(headerLines("mm", count)).barCount();
  };
  EXPECT_EQ(countOf("3"), 3);
  EXPECT_EQ(countOf(" 3 bars"), 3);
  EXPECT_EQ(countOf("-3"), -3);
  EXPECT_EQ(countOf("abc"), 0);
  EXPECT_EQ(countOf(""), 0);
  EXPECT_EQ(countOf("1e3"), 1);
  EXPECT_EQ(countOf("99999999999"), 2147483647);
}

TEST_F(BatchSourceTest, AMissingFileIsAModelWithoutBars) {
  BatchSource source(folder.file("missing.txt"));
  EXPECT_EQ(millimetresPer(source.unitCode()), 1.0);
  EXPECT_EQ(source.barCount(), 0);
  SourceBar none;
  EXPECT_FALSE(source.next(0, none));
}

TEST_F(BatchSourceTest, AnEmptyFileIsAModelWithoutBars) {
  BatchSource& source = open("");
  EXPECT_EQ(millimetresPer(source.unitCode()), 1.0);
  EXPECT_EQ(source.barCount(), 0);
  EXPECT_FALSE(next());
}

// ---- Bars --------------------------------------------------------------------------------------

TEST_F(BatchSourceTest, ABarFromItsTwelveLines) {
  for (const std::string_view ending : {"\n", "\r\n"}) {
    open(textOf(
        headerLines("m", "2") +
            Lines{"", "1.5", "-2,5", "3e1", "4", "", "abc", "0,25", "I 200 100 5 8", "", "", ""} +
            barLines("L 50"),
        ending));
    ASSERT_TRUE(next());
    EXPECT_EQ(bar.start, (std::array<float, 3>{1.5F, -2.5F, 30.0F}));
    EXPECT_EQ(bar.end, (std::array<float, 3>{4.0F, 0.0F, 0.0F}));
    EXPECT_EQ(bar.angle, 0.25F);
    EXPECT_EQ(bar.typeCode, 0.0F);
    EXPECT_EQ(bar.visible, 1);
    ASSERT_NE(bar.record, nullptr);
    EXPECT_STREQ(bar.record->sectionName, "I 200 100 5 8");
    EXPECT_EQ(bar.record->quarterTurns, 0);
    EXPECT_EQ(bar.dims, (SectionDims{200, 100, 5, 8}));
    ASSERT_TRUE(next());
    EXPECT_STREQ(bar.record->sectionName, "L 50");
    EXPECT_EQ(bar.start, (std::array<float, 3>{1.0F, 2.0F, 3.0F}));
    EXPECT_EQ(bar.end, (std::array<float, 3>{4.0F, 5.0F, 6.0F}));
    EXPECT_FALSE(next());
  }
}

TEST_F(BatchSourceTest, NumbersOfTheList) {
  // The texts that bad files are known to hold, as coordinates.
  const auto read = [&](const std::string& number) {
    Lines lines = barLines();
    lines[1] = number;
    open(headerLines("mm", "1") + lines);
    EXPECT_TRUE(next());
    return bar.start[0];
  };
  EXPECT_EQ(read("1.5"), 1.5F);
  EXPECT_EQ(read("1,5"), 1.5F);
  EXPECT_EQ(read("abc"), 0.0F);
  EXPECT_EQ(read(""), 0.0F);
  EXPECT_EQ(read("1e3"), 1000.0F);
  EXPECT_EQ(read("-0"), 0.0F);
  EXPECT_TRUE(std::signbit(read("-0")));
  EXPECT_EQ(read("1e999"), std::numeric_limits<float>::infinity());
}

TEST_F(BatchSourceTest, SoManySectionsAreKnownAtATime) {
  // Those of other tests are among them: what is counted begins where one of ours is forgotten.
  constexpr int mostKnown = 4096;
  Lines lines = headerLines("mm", std::to_string(4 * mostKnown));
  for (int i = 0; i < 2 * mostKnown; ++i) {
    lines = std::move(lines) + barLines("W 1 7") + barLines("W 2 " + std::to_string(i));
  }
  open(lines);
  const BarRecord* known = nullptr;
  std::vector<int> forgottenAt;
  for (int i = 0; i < 2 * mostKnown; ++i) {
    ASSERT_TRUE(next());
    if (bar.record != known) {
      known = bar.record;
      forgottenAt.push_back(i);
    }
    ASSERT_TRUE(next());
  }
  // At the start, by the first test's sections, after as many as are known with this one.
  ASSERT_GE(forgottenAt.size(), 3U);
  EXPECT_EQ(forgottenAt[2] - forgottenAt[1], mostKnown - 1);
}

TEST_F(BatchSourceTest, RecordsOutliveTheSource) {
  open(headerLines("mm", "2") + barLines("W 1") + barLines("W 2"));
  ASSERT_TRUE(next());
  const BarRecord* const first = bar.record;
  ASSERT_TRUE(next());
  source.reset();
  EXPECT_STREQ(first->sectionName, "W 1");
  EXPECT_STREQ(bar.record->sectionName, "W 2");
}

TEST_F(BatchSourceTest, RecordsAreZeroButForTheName) {
  open(headerLines("mm", "1") + barLines("W 1"));
  ASSERT_TRUE(next());
  BarRecord expected{};
  expected.sectionName[0] = 'W';
  expected.sectionName[1] = ' ';
  expected.sectionName[2] = '1';
  EXPECT_EQ(std::memcmp(bar.record, &expected, sizeof(expected)), 0);
}

TEST_F(BatchSourceTest, SectionTextsAtTheFieldsLimit) {
  const auto sectionOf = [](std::size_t length) {
    return std::string("W ").append(std::string(length - 2, '7'));
  };
  open(headerLines("mm", "5") + barLines(sectionOf(47)) + barLines(sectionOf(48)) +
       barLines(sectionOf(500)) + barLines("W 9"));
  ASSERT_TRUE(next());
  ASSERT_NE(bar.record, nullptr);
  EXPECT_EQ(bar.record->sectionName, sectionOf(47));
  ASSERT_TRUE(next());
  EXPECT_EQ(bar.record, nullptr) << "48 bytes leave no room for the terminator";
  ASSERT_TRUE(next());
  EXPECT_EQ(bar.record, nullptr);
  ASSERT_TRUE(next()) << "the lines of the bars before were consumed";
  ASSERT_NE(bar.record, nullptr);
  EXPECT_STREQ(bar.record->sectionName, "W 9");
}

TEST_F(BatchSourceTest, ASectionTextEndsAtItsFirstNul) {
  const std::string hidden = std::string("W 1\0", 4) + std::string(500, 'x');
  open(headerLines("mm", "1") + barLines(hidden));
  ASSERT_TRUE(next());
  ASSERT_NE(bar.record, nullptr);
  EXPECT_STREQ(bar.record->sectionName, "W 1");
}

TEST_F(BatchSourceTest, NumbersBehindAnEarlyEndCountAndAreTheBarsOwn) {
  const std::string shown = "W 1";
  const std::string hidden = std::string("W 1\0 2", 6);
  open(headerLines("mm", "3") + barLines(hidden) + barLines(shown) + barLines(hidden));
  for (const SectionDims& dims : {SectionDims{1, 2}, SectionDims{1}, SectionDims{1, 2}}) {
    ASSERT_TRUE(next());
    ASSERT_NE(bar.record, nullptr);
    EXPECT_STREQ(bar.record->sectionName, "W 1");
    EXPECT_EQ(bar.dims, dims);
  }
}

TEST_F(BatchSourceTest, EqualSectionsShareARecord) {
  open(headerLines("mm", "4") + barLines("W 1") + barLines("W 2") + barLines("W 3") +
       barLines("W 1"));
  std::vector<const BarRecord*> records;
  for (int i = 0; i < 4; ++i) {
    ASSERT_TRUE(next());
    records.push_back(bar.record);
  }
  EXPECT_EQ(records[3], records[0]) << "also when others stand between";
  EXPECT_NE(records[1], records[0]);
  EXPECT_NE(records[2], records[1]);
}

TEST_F(BatchSourceTest, AnyNumberOfSections) {
  // More than are known at a time, then the first ones again.
  constexpr int count = 9000;
  Lines lines = headerLines("mm", std::to_string(2 * count));
  for (int i = 0; i < 2 * count; ++i) {
    lines = std::move(lines) + barLines("W " + std::to_string(i % count));
  }
  open(lines);
  std::vector<const BarRecord*> records;
  for (int i = 0; i < 2 * count; ++i) {
    ASSERT_TRUE(next());
    ASSERT_EQ(bar.dims, SectionDims{static_cast<float>(i % count)});
    records.push_back(bar.record);
  }
  for (std::size_t i = 0; i < records.size(); ++i) {
    ASSERT_EQ(records[i]->sectionName, "W " + std::to_string(i % count)) << "none is released";
  }
}

TEST_F(BatchSourceTest, Byte1AEndsTheModel) {
  open(textOf(headerLines("mm", "2") + barLines("W 1")) + "\x1A" + textOf(barLines("W 2")));
  ASSERT_TRUE(next());
  EXPECT_FALSE(next());
}

TEST_F(BatchSourceTest, ABarIsThereOnceItsFirstLineIs) {
  // Cut after any line of the bar: what is missing reads as nothing.
  const Lines whole = barLines("W 1");
  for (std::size_t count = 1; count <= whole.size(); ++count) {
    const Lines cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(count));
    open(headerLines("mm", "9") + cut);
    ASSERT_TRUE(next());
    for (std::size_t i = 0; i < 3; ++i) {
      EXPECT_EQ(bar.start[i], count > 1 + i ? static_cast<float>(1 + i) : 0.0F) << count;
      EXPECT_EQ(bar.end[i], count > 4 + i ? static_cast<float>(4 + i) : 0.0F) << count;
    }
    EXPECT_EQ(bar.angle, count > 7 ? 0.5F : 0.0F) << count;
    ASSERT_NE(bar.record, nullptr);
    EXPECT_STREQ(bar.record->sectionName, count > 8 ? "W 1" : "") << count;
    EXPECT_EQ(bar.visible, 1);
    EXPECT_FALSE(next()) << count;
  }
}

TEST_F(BatchSourceTest, AFileCutInItsHeaderHasNoBars) {
  const Lines whole = headerLines("m", "5");
  for (std::size_t count = 0; count < whole.size(); ++count) {
    BatchSource& source =
        open(Lines(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(count)));
    EXPECT_EQ(source.barCount(), 0) << count;
    EXPECT_EQ(source.unitCode(), count >= 4 ? 0 : -1) << count;
    EXPECT_FALSE(next()) << count;
  }
}

TEST(BatchReader, ReadsTextFromAStream) {
  std::istringstream bytes(textOf(headerLines("cm", "1") + barLines("W 1")));
  BatchReader reader(bytes);
  EXPECT_TRUE(reader.isOpen());
  EXPECT_EQ(reader.title(), "Modelo");
  EXPECT_EQ(reader.unitCode(), 1);
  EXPECT_EQ(reader.barCount(), 1);
  BatchBar bar;
  ASSERT_TRUE(reader.next(bar));
  EXPECT_EQ(bar.start, (std::array<float, 3>{1, 2, 3}));
  EXPECT_EQ(bar.end, (std::array<float, 3>{4, 5, 6}));
  EXPECT_EQ(bar.angle, 0.5F);
  EXPECT_EQ(bar.sectionText, "W 1");
  EXPECT_FALSE(reader.next(bar));
  EXPECT_EQ(bar.sectionText, "W 1") << "left alone at the end";
}

TEST(BatchReader, AMissingFileIsNotOpen) {
  const test::TemporaryFolder folder;
  EXPECT_FALSE(BatchReader(folder.file("missing.txt")).isOpen());
}

// ---- Dimensions in the section text ------------------------------------------------------------

TEST(ParseSectionDims, WordsAreNumbers) {
  EXPECT_EQ(parseSectionDims("I 200 100 5 8"), (SectionDims{200, 100, 5, 8}));
  EXPECT_EQ(parseSectionDims("I 20.5 10,25"), (SectionDims{20.5F, 10.25F}));
  EXPECT_EQ(parseSectionDims("  I \t 20\v30\f40\r50"), (SectionDims{20, 30, 40, 50}));
}

TEST(ParseSectionDims, TheFamilyWordCountsForNothing) {
  EXPECT_EQ(parseSectionDims("20x30"), SectionDims{});
  EXPECT_EQ(parseSectionDims("20x30 5"), SectionDims{5});
  EXPECT_EQ(parseSectionDims("I"), SectionDims{});
  EXPECT_EQ(parseSectionDims(""), SectionDims{});
  EXPECT_EQ(parseSectionDims("   "), SectionDims{});
}

TEST(ParseSectionDims, AWordWithCrossesLosesItsLastPiece) {
  EXPECT_EQ(parseSectionDims("I 200x100x5x8"), (SectionDims{200, 100, 5}));
  EXPECT_EQ(parseSectionDims("I 200x"), SectionDims{200});
  EXPECT_EQ(parseSectionDims("I x200"), SectionDims{0}) << "the piece before the x is no number";
  EXPECT_EQ(parseSectionDims("I x200 7"), (SectionDims{0, 7}));
  EXPECT_EQ(parseSectionDims("I 1xx2 7"), (SectionDims{1, 0, 7}));
  EXPECT_EQ(parseSectionDims("I xx 7"), (SectionDims{0, 0, 7}));
}

TEST(ParseSectionDims, PiecesBeforeACrossTakeOnlyTheComma) {
  EXPECT_EQ(parseSectionDims("I 20.5x10 3"), (SectionDims{20, 3}));
  EXPECT_EQ(parseSectionDims("I 20,5x10,5x3"), (SectionDims{20.5F, 10.5F}));
}

TEST(ParseSectionDims, ALoneCrossIsNothing) {
  EXPECT_EQ(parseSectionDims("I 200 x 100 x 5"), (SectionDims{200, 100, 5}));
  EXPECT_EQ(parseSectionDims("I X 100"), (SectionDims{0, 100})) << "the capital letter is a word";
  EXPECT_EQ(parseSectionDims("I 200X100 5"), (SectionDims{200, 5}));
}

TEST(ParseSectionDims, WordsThatAreNoNumbersAreZero) {
  EXPECT_EQ(parseSectionDims("I abc 5"), (SectionDims{0, 5}));
  EXPECT_EQ(parseSectionDims("I 1e3 1e999 -0,5"),
            (SectionDims{1000, std::numeric_limits<float>::infinity(), -0.5F}));
}

TEST(ParseSectionDims, KeepsTen) {
  EXPECT_EQ(parseSectionDims("I 1 2 3 4 5 6 7 8 9 10 11 12"),
            (SectionDims{1, 2, 3, 4, 5, 6, 7, 8, 9, 10}));
  EXPECT_EQ(parseSectionDims("I 1x2x3x4x5x6x7x8x9x10x11x12x13"),
            (SectionDims{1, 2, 3, 4, 5, 6, 7, 8, 9, 10}));
  EXPECT_EQ(parseSectionDims("I 1 2 3 4 5 6 7 8 9x10x11x12 13"),
            (SectionDims{1, 2, 3, 4, 5, 6, 7, 8, 9, 10}));
  std::string longest = "I ";
  for (int i = 0; i < 1000; ++i) {
    longest.append("1x");
  }
  EXPECT_EQ(parseSectionDims(longest), (SectionDims{1, 1, 1, 1, 1, 1, 1, 1, 1, 1}));
}

}  // namespace
}  // namespace exportifc
