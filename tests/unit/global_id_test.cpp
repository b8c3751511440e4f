#include "step/global_id.h"

#include <algorithm>
#include <cstdint>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "platform/platform.h"
#include "support.h"

namespace exportifc {
namespace {

using platform::Guid;

constexpr std::string_view alphabet =
    "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz_$";

/// The reverse, digit by digit over the 128 bits of the GUID as one number.
Guid expandGuid(std::string_view text) {
  std::array<std::uint8_t, 16> bytes{};
  for (const char digit : text) {
    // bytes = bytes * 64 + digit
    auto carry = static_cast<unsigned>(alphabet.find(digit));
    for (std::size_t i = bytes.size(); i-- > 0;) {
      carry += bytes[i] * 64U;
      bytes[i] = static_cast<std::uint8_t>(carry & 0xFFU);
      carry >>= 8;
    }
  }
  Guid guid;
  guid.data1 = bytes[0] * 0x1000000U + bytes[1] * 0x10000U + bytes[2] * 0x100U + bytes[3];
  guid.data2 = static_cast<std::uint16_t>(bytes[4] * 0x100U + bytes[5]);
  guid.data3 = static_cast<std::uint16_t>(bytes[6] * 0x100U + bytes[7]);
  std::copy(bytes.begin() + 8, bytes.end(), guid.data4.begin());
  return guid;
}

std::string compressed(const Guid& guid) {
  std::string text(maxLength(GlobalId{}), '?');
  EXPECT_EQ(compressGuid(text.data(), guid), text.data() + text.size());
  return text;
}

TEST(CompressGuid, AllBitsSet) {
  const Guid guid{.data1 = 0xFFFFFFFF,
                  .data2 = 0xFFFF,
                  .data3 = 0xFFFF,
                  .data4 = {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}};
  EXPECT_EQ(compressed(guid), "3" + std::string(21, '$'));
}

TEST(CompressGuid, TheLastBit) {
  const Guid guid{.data4 = {0, 0, 0, 0, 0, 0, 0, 1}};
  EXPECT_EQ(compressed(guid), std::string(21, '0') + "1");
}

TEST(CompressGuid, EachFieldHasItsDigits) {
  // One digit value in each place of the six groups: 1 to 22, but the first digit holds two bits.
  EXPECT_EQ(compressed({.data1 = 0x01000000}), "01" + std::string(20, '0'));
  EXPECT_EQ(compressed({.data1 = 0xC0000000}), "30" + std::string(20, '0'));
  EXPECT_EQ(compressed({.data1 = 0x00FC0000}), "00$" + std::string(19, '0'));
  EXPECT_EQ(compressed({.data1 = 1}), "000001" + std::string(16, '0'));
  EXPECT_EQ(compressed({.data2 = 1}), "0000000040" + std::string(12, '0'));
  EXPECT_EQ(compressed({.data3 = 0x0100}), "0000000001" + std::string(12, '0'));
  EXPECT_EQ(compressed({.data3 = 1}), "00000000000G" + std::string(10, '0'));
  EXPECT_EQ(compressed({.data4 = {0, 1}}), "00000000000001" + std::string(8, '0'));
  EXPECT_EQ(compressed({.data4 = {0, 0, 0, 0, 10}}), std::string(17, '0') + "A0000");
}

TEST(CompressGuid, TheOrderOfTheAlphabet) {
  std::string digits;
  for (std::uint8_t value = 0; value < 64; ++value) {
    const Guid guid{.data4 = {0, 0, 0, 0, 0, 0, 0, value}};
    digits += compressed(guid).back();
  }
  EXPECT_EQ(digits, alphabet);
}

TEST(CompressGuid, LosesNothing) {
  test::Random random(1);
  for (int round = 0; round < test::rounds(100000); ++round) {
    Guid guid;
    guid.data1 = static_cast<std::uint32_t>(random.bits());
    guid.data2 = static_cast<std::uint16_t>(random.bits());
    guid.data3 = static_cast<std::uint16_t>(random.bits());
    for (auto& byte : guid.data4) {
      byte = static_cast<std::uint8_t>(random.bits());
    }
    const std::string text = compressed(guid);
    ASSERT_EQ(text.size(), 22U);
    ASSERT_EQ(expandGuid(text), guid) << text;
  }
}

TEST(CreateGlobalId, IsAFreshVersion4Guid) {
  std::set<std::string> seen;
  for (int i = 0; i < 20000; ++i) {
    const std::string id = compressed(createGlobalId().guid);
    ASSERT_EQ(id.size(), 22U);
    ASSERT_GE(id.front(), '0');
    ASSERT_LE(id.front(), '3');
    ASSERT_EQ(id.find_first_not_of(alphabet), std::string::npos) << id;
    const Guid guid = expandGuid(id);
    ASSERT_EQ(guid.data3 >> 12, 4) << "version";
    ASSERT_EQ(guid.data4[0] >> 6, 2) << "variant";
    ASSERT_TRUE(seen.insert(id).second) << "twice the same";
  }
}

TEST(GlobalId, WithoutAGuidItIsEmpty) {
  std::string text(maxLength(GlobalId{}), '?');
  const LineCursor line = put(LineCursor{.at = text.data()}, GlobalId{});
  EXPECT_EQ(line.at, text.data());
}

}  // namespace
}  // namespace exportifc
