// GUIDs out of random bytes, for systems that have no call for them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "platform/platform.h"

namespace exportifc::platform {

/// Random bytes that a GUID is made of.
inline constexpr std::size_t guidSize = 16;

/// The GUID of `guidSize` random bytes; of null, which stands for none, all zero.
inline Guid guidOf(const std::uint8_t* bytes) {
  if (bytes == nullptr) {
    return {};
  }
  Guid guid;
  std::memcpy(&guid.data1, bytes, 4);
  std::memcpy(&guid.data2, bytes + 4, 2);
  std::memcpy(&guid.data3, bytes + 6, 2);
  std::memcpy(guid.data4.data(), bytes + 8, 8);
  // RFC 4122, section 4.4: version 4 in the top bits of data3, variant 10 in those of data4[0].
  guid.data3 = static_cast<std::uint16_t>((guid.data3 & 0x0FFF) | 0x4000);
  guid.data4[0] = static_cast<std::uint8_t>((guid.data4[0] & 0x3F) | 0x80);
  return guid;
}

}  // namespace exportifc::platform
