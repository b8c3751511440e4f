// The files in a zip.
#pragma once

#include <cstddef>
#include <cstdint>
#include <istream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "platform/byte_sink.h"

namespace exportifc {

/// Why a zip cannot be read.
enum class ZipTrouble : std::uint8_t {
  damaged,
  encrypted,
  unknown,  ///< packed by another method than deflating, or larger than 4 GiB
};

class ZipFault final : public std::runtime_error {
 public:
  explicit ZipFault(ZipTrouble trouble) : std::runtime_error("zip"), trouble_(trouble) {}
  ZipTrouble trouble() const { return trouble_; }

 private:
  ZipTrouble trouble_;
};

/// A file in a zip, as the zip's directory has it.
struct ZipMember {
  std::string name;
  std::uint16_t flags = 0;
  std::uint16_t method = 0;
  std::uint32_t checksum = 0;
  std::uint32_t packedSize = 0;
  std::uint32_t size = 0;
  std::uint32_t start = 0;
};

/// Reads a zip; every function throws a ZipFault when it cannot. Knows no zip of more than 4 GiB.
class ZipReader {
 public:
  /// A whole zip that can be read from any place; outlives the reader.
  explicit ZipReader(std::istream& zip);

  const std::vector<ZipMember>& members() const { return members_; }

  /// Hands a member on, piece by piece: never more than the size that the zip says, so whoever
  /// wants less refuses. Stops when the sink refuses something, whose owner tells why.
  void unpack(const ZipMember& member, ByteSink& sink);

 private:
  /// Bytes from a place on. They hold until the next call.
  std::string_view read(std::uint64_t place, std::size_t size);
  void readDirectory(std::uint64_t place, unsigned count);

  std::istream& zip_;
  std::uint64_t size_ = 0;
  std::string bytes_;
  std::vector<ZipMember> members_;
};

/// Whether a file that begins so is a zip, with at least one member.
bool isZip(std::string_view start);

}  // namespace exportifc
