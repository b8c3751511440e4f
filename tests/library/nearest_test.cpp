#include "library/text/nearest.h"

#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace exportifc {
namespace {

struct DistanceCase {
  std::string_view a;
  std::string_view b;
  std::size_t distance;
};

constexpr DistanceCase distanceCases[] = {
    {"", "", 0},
    {"", "abc", 3},
    {"abc", "abc", 0},
    {"abc", "abcd", 1},  // a letter more at the end,
    {"bc", "abc", 1},    // at the beginning,
    {"ac", "abc", 1},    // in the middle
    {"abc", "abd", 1},
    {"abc", "xbc", 1},
    {"ab", "ba", 1},
    {"abcd", "badc", 2},  // two swaps
    {"xab", "xba", 1},
    {"abx", "bax", 1},
    {"ca", "abc", 3},  // swapped neighbours have nothing between them
    {"kitten", "sitting", 3},
    {"column", "colum", 1},
    {"abc", "def", 3},
    {"ab", "ab cd ef", 6},
    {"A", "a", 1},
};

TEST(EditDistance, CountsTheChanges) {
  for (const DistanceCase& row : distanceCases) {
    EXPECT_EQ(editDistance(row.a, row.b), row.distance) << row.a << " " << row.b;
    EXPECT_EQ(editDistance(row.b, row.a), row.distance) << row.b << " " << row.a;
  }
}

TEST(EditDistance, OneChangeOfAnyKindIsOne) {
  const std::string word = "frame-beam";
  for (std::size_t at = 0; at < word.size(); ++at) {
    std::string dropped = word;
    dropped.erase(at, 1);
    std::string changed = word;
    changed[at] = '#';
    EXPECT_EQ(editDistance(word, dropped), 1U) << dropped;
    EXPECT_EQ(editDistance(dropped, word), 1U) << dropped;
    EXPECT_EQ(editDistance(word, changed), 1U) << changed;
    if (at > 0) {
      std::string swapped = word;
      std::swap(swapped[at - 1], swapped[at]);
      EXPECT_EQ(editDistance(word, swapped), 1U) << swapped;
    }
  }
}

constexpr std::string_view words[] = {"column", "crane-beam", "frame-beam", "IPE", "HE"};

TEST(Nearest, KnowsWordsInTheirOwnSpelling) {
  EXPECT_EQ(nearest("colum", words), "column");
  EXPECT_EQ(nearest("COLUMN", words), "column");
  EXPECT_EQ(nearest("ipe", words), "IPE");
  EXPECT_EQ(nearest("iep", words), "IPE");
  EXPECT_EQ(nearest("frame beam", words), "frame-beam");
}

TEST(Nearest, ThereMayBeNone) {
  EXPECT_EQ(nearest("pilar", words), "");
  EXPECT_EQ(nearest("", words), "");
  EXPECT_EQ(nearest("column", std::vector<std::string>()), "");
}

TEST(Nearest, HalfOfTheWordMayChange) {
  const std::vector<std::string> known = {"abcd"};
  EXPECT_EQ(nearest("abxx", known), "abcd");
  EXPECT_EQ(nearest("axxx", known), "");
  EXPECT_EQ(nearest("abxxx", known), "");       // three of five
  EXPECT_EQ(nearest("abcxxx", known), "abcd");  // three of six
  EXPECT_EQ(nearest("a", std::vector<std::string>{"b"}), "");
}

TEST(Nearest, TheFirstOfEquallyNearOnesCounts) {
  EXPECT_EQ(nearest("abx", std::vector<std::string>{"aby", "abz"}), "aby");
  EXPECT_EQ(nearest("abz", std::vector<std::string>{"aby", "ABZ"}), "ABZ");
}

TEST(Joined, PutsACommaBetween) {
  EXPECT_EQ(joined({}), "");
  EXPECT_EQ(joined(std::vector<std::string_view>{"m"}), "m");
  EXPECT_EQ(joined(std::vector<std::string_view>{"m", "cm", "mm"}), "m, cm, mm");
}

}  // namespace
}  // namespace exportifc
