#include "step/global_id.h"

#include <cstdint>

namespace exportifc {

namespace {

constexpr char alphabet[] = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz_$";

char digit(std::uint32_t value) { return alphabet[value & 63U]; }

/// Writes 24 bits as four digits.
char* putFour(char* at, std::uint32_t value) {
  at[0] = digit(value >> 18);
  at[1] = digit(value >> 12);
  at[2] = digit(value >> 6);
  at[3] = digit(value);
  return at + 4;
}

constexpr std::uint32_t threeBytes(std::uint32_t high, std::uint32_t middle, std::uint32_t low) {
  return high << 16 | middle << 8 | low;
}

}  // namespace

char* compressGuid(char* at, const platform::Guid& guid) {
  const auto& tail = guid.data4;
  *at++ = digit(guid.data1 >> 30);
  *at++ = digit(guid.data1 >> 24);
  at = putFour(at, guid.data1);
  at = putFour(at, std::uint32_t{guid.data2} << 8 | guid.data3 >> 8);
  at = putFour(at, threeBytes(guid.data3 & 0xFFU, tail[0], tail[1]));
  at = putFour(at, threeBytes(tail[2], tail[3], tail[4]));
  return putFour(at, threeBytes(tail[5], tail[6], tail[7]));
}

}  // namespace exportifc
