#include "step/global_id.h"

#include <cstdint>

namespace exportifc {

namespace {

constexpr char alphabet[] = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz_$";

struct Group {
  std::uint32_t value;
  int digits;
};

}  // namespace

GlobalId compressGuid(const platform::Guid& guid) {
  const auto& tail = guid.data4;
  const auto threeBytes = [](std::uint32_t high, std::uint32_t middle, std::uint32_t low) {
    return high * 65536U + middle * 256U + low;
  };
  const std::array<Group, 6> groups{{
      {guid.data1 >> 24, 2},
      {guid.data1 & 0xFFFFFFU, 4},
      {guid.data2 * 256U + (guid.data3 >> 8), 4},
      {threeBytes(guid.data3 & 0xFFU, tail[0], tail[1]), 4},
      {threeBytes(tail[2], tail[3], tail[4]), 4},
      {threeBytes(tail[5], tail[6], tail[7]), 4},
  }};
  GlobalId id;
  for (const Group& group : groups) {
    for (int digit = group.digits - 1; digit >= 0; --digit) {
      id.characters[id.size++] = alphabet[(group.value >> (6 * digit)) & 63U];
    }
  }
  return id;
}

GlobalId createGlobalId() {
  const platform::Guid guid = platform::newGuid();
  return guid == platform::Guid{} ? GlobalId{} : compressGuid(guid);
}

}  // namespace exportifc
