// The records of a zip. Debian has no zip library for Windows, and around zlib's data there are
// only these; all numbers begin with their lowest byte.
#pragma once

#include <cstddef>
#include <cstdint>

#include <zlib.h>

namespace exportifc::zip {

inline constexpr std::uint32_t memberMark = 0x04034b50;     // before a member
inline constexpr std::uint32_t sizesMark = 0x08074b50;      // behind it
inline constexpr std::uint32_t directoryMark = 0x02014b50;  // of each member, in the directory
inline constexpr std::uint32_t endMark = 0x06054b50;        // behind the directory

// Bytes of these before their texts.
inline constexpr std::size_t memberSize = 30;
inline constexpr std::size_t directorySize = 46;
inline constexpr std::size_t endSize = 22;

// Flags and methods of a member.
inline constexpr std::uint16_t isEncrypted = 1U << 0;
inline constexpr std::uint16_t sizesFollow = 1U << 3;
inline constexpr std::uint16_t nameIsUtf8 = 1U << 11;
inline constexpr std::uint16_t stored = 0;
inline constexpr std::uint16_t deflated = 8;

/// In the place of a number that needs more than 32 bits and stands elsewhere.
inline constexpr std::uint32_t elsewhere = 0xFFFFFFFF;

inline constexpr std::uint32_t checksumOfNothing = 0;

/// The checksum of what came before and these bytes.
inline std::uint32_t checksum(std::uint32_t before, const char* bytes, std::size_t size) {
  return static_cast<std::uint32_t>(
      crc32_z(before, reinterpret_cast<const unsigned char*>(bytes), size));
}

}  // namespace exportifc::zip
