#include "plugin/known_sections.h"

#include <string>

#include <gtest/gtest.h>

#include "tests/support/bar_record.h"

namespace exportifc {
namespace {

constexpr int mostKept = 4096;

class KnownSectionsTest : public testing::Test {
 protected:
  BarGeometry& barOf(const std::string& section) {
    return sections.partsOf(test::recordOf(section)).front().bar;
  }

  /// Whether the section was known, with what a bar left in its parts.
  bool isKnown(const std::string& section) {
    BarGeometry& bar = barOf(section);
    const bool known = bar.start.x == mark;
    bar.start.x = mark;
    return known;
  }

  static constexpr double mark = 77.0;
  KnownSections sections;
};

TEST_F(KnownSectionsTest, ASectionIsWorkedOutOnce) {
  EXPECT_FALSE(isKnown("W 1"));
  EXPECT_TRUE(isKnown("W 1"));
  EXPECT_FALSE(isKnown("W 2"));
  EXPECT_TRUE(isKnown("W 1"));
}

TEST_F(KnownSectionsTest, BothHalvesOfABuiltUpSectionAreKept) {
  EXPECT_EQ(sections.partsOf(test::recordOf("2L 50 50 5 5")).size(), 2U);
  EXPECT_EQ(sections.partsOf(test::recordOf("2L 50 50 5 5")).size(), 2U);
  EXPECT_EQ(sections.partsOf(test::recordOf("L 50 50 5 5")).size(), 1U);
}

TEST_F(KnownSectionsTest, SoManyAreKeptAndThenAllAreForgotten) {
  EXPECT_FALSE(isKnown("W 0"));
  for (int other = 1; other < mostKept; ++other) {
    EXPECT_FALSE(isKnown("W " + std::to_string(other)));
  }
  EXPECT_TRUE(isKnown("W 0"));
  EXPECT_TRUE(isKnown("W " + std::to_string(mostKept - 1)));
  EXPECT_FALSE(isKnown("W " + std::to_string(mostKept)));
  EXPECT_TRUE(isKnown("W " + std::to_string(mostKept)));
  EXPECT_FALSE(isKnown("W 0"));
  EXPECT_FALSE(isKnown("W 1"));
}

}  // namespace
}  // namespace exportifc
