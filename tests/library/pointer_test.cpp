#include "library/frame/pointer.h"

#include <gtest/gtest.h>

namespace exportifc {
namespace {

TEST(PointerPiece, SpellsOutItsTwoSigns) {
  EXPECT_EQ(pointerPiece(""), "");
  EXPECT_EQ(pointerPiece("Viga 1"), "Viga 1");
  EXPECT_EQ(pointerPiece("a/b~c//~"), "a~1b~0c~1~1~0");
  EXPECT_EQ(pointerPiece("~1"), "~01");
}

TEST(Pointers, SayWhereSomethingStands) {
  EXPECT_EQ(barPointer(0), "/bars/0");
  EXPECT_EQ(barPointer(12345), "/bars/12345");  // no grouped thousands
  EXPECT_EQ(sectionPointer({.name = "1/2", .text = "W"}), "/sections/1~12");
}

}  // namespace
}  // namespace exportifc
