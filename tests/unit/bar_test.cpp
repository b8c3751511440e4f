#include "model/bar.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "model/bar_type.h"
#include "model/length_unit.h"
#include "support.h"

namespace exportifc {
namespace {

std::wstring widened(std::string_view section) {
  const BarRecord record = test::recordOf(section);
  std::wstring name = L"old";
  widenSectionName(record, name);
  return name;
}

TEST(BarGeometry, FurtherNumbersAreZeroAndStandBetweenRotationAndKind) {
  const BarGeometry bar;
  EXPECT_EQ(bar.unused1, 0U);
  EXPECT_EQ(bar.unused2, 0U);
  EXPECT_EQ(bar.unused3, (std::array<std::uint64_t, 2>{}));
  static_assert(sizeof(bar.unused1) == 8 && sizeof(bar.unused2) == 8 && sizeof(bar.unused3) == 16);
  const auto place = [&bar](const void* field) {
    return static_cast<const char*>(field) -
           static_cast<const char*>(static_cast<const void*>(&bar));
  };
  EXPECT_EQ(place(&bar.unused1), place(&bar.rotation) + 8);
  EXPECT_EQ(place(&bar.unused2), place(&bar.rotation) + 16);
  EXPECT_EQ(place(&bar.unused3), place(&bar.rotation) + 24);
  EXPECT_EQ(place(&bar.elementKind), place(&bar.rotation) + 40);
}

TEST(WidenSectionName, KeepsAscii) {
  EXPECT_EQ(widened("W 310x38,7"), L"W 310x38,7");
  EXPECT_EQ(widened(""), L"");
}

TEST(WidenSectionName, BytesAbove127AreSignExtendedTo16Bits) {
  EXPECT_EQ(widened("A\xE7"), test::units({'A', 0xFFE7}));
  EXPECT_EQ(widened("\x7F\x80\xFF"), test::units({0x7F, 0xFF80, 0xFFFF}));
}

TEST(WidenSectionName, TakesAFullFieldWithItsTerminator) {
  const std::string longest(47, 'x');
  EXPECT_EQ(widened(longest), test::wide(longest));
}

TEST(WidenSectionName, ReadsAFieldWithoutTerminatorToItsEnd) {
  // The bytes behind the field are not zero: nothing else ends the text.
  const std::string full(48, 'y');
  EXPECT_EQ(widened(full), test::wide(full));
}

TEST(WidenSectionName, StopsAtTheFirstNul) {
  EXPECT_EQ(widened(std::string_view("W 1\0hidden", 10)), L"W 1");
}

TEST(MillimetresPer, UnitCodes) {
  EXPECT_EQ(millimetresPer(0), 1000.0);
  EXPECT_EQ(millimetresPer(1), 10.0);
  EXPECT_EQ(millimetresPer(2), 1.0);
  EXPECT_EQ(millimetresPer(3), 1.0);
  EXPECT_EQ(millimetresPer(-1), 1.0);
}

TEST(BarTypes, CodesOutsideTheTableAreAsOther) {
  for (const std::int32_t code : {-1, 12, 1000, std::numeric_limits<std::int32_t>::min()}) {
    EXPECT_EQ(&barTypeOf(code), &barTypeOf(EXPORTIFC_OTHER)) << code;
  }
  EXPECT_EQ(barTypeOf(EXPORTIFC_OTHER).group, BarGroup::storey);
  EXPECT_TRUE(barTypeOf(EXPORTIFC_OTHER).isExported);
}

TEST(LengthUnits, NamesAreComparedWhole) {
  EXPECT_EQ(lengthUnitNamed("cm")->code, EXPORTIFC_CENTIMETRES);
  for (const std::string_view name : {"", "M", "mm ", " mm", "km", "c"}) {
    EXPECT_EQ(lengthUnitNamed(name), nullptr) << name;
  }
}

}  // namespace
}  // namespace exportifc
