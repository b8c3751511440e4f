// Zips as they are written: from start to end, the sizes behind the data.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "library/packing/deflate_sink.h"
#include "platform/byte_sink.h"

namespace exportifc {

/// Writes a zip into another sink, one file after the other. The same data under the same names are
/// the same bytes.
class ZipWriter {
 public:
  /// Bytes that a member can have, its packed data, and all that stands before the directory.
  static constexpr std::uint64_t mostBytes = 0xFFFFFFFE;

  /// `next` must outlive it.
  explicit ZipWriter(ByteSink& next) : next_(next) {}

  /// Begins the next member, a file of that name.
  void begin(std::string name);
  /// The bytes of the member. False when no more are taken.
  bool write(const char* bytes, std::size_t size);
  void end();

  /// Writes the end, behind which nothing may be written. False when the zip is not whole: the
  /// other sink has refused something, or there is more than `mostBytes`.
  bool finish();
  bool isTooLarge() const { return isTooLarge_; }

 private:
  struct Member {
    std::string name;
    std::uint16_t flags = 0;
    std::uint64_t start = 0;
    std::uint32_t checksum = 0;
    std::uint64_t packedSize = 0;
    std::uint64_t size = 0;
  };

  void put(const std::string& record);

  ByteSink& next_;
  std::vector<Member> members_;
  std::optional<DeflateSink> packed_;
  std::uint64_t written_ = 0;
  bool goesOn_ = true;  // until the other sink refuses something
  bool isTooLarge_ = false;
};

/// A zip with one file in it, as .ifczip is.
class ZipSink final : public ByteSink {
 public:
  /// `member` is the name of the file in the zip.
  ZipSink(ByteSink& next, std::string member);

  bool write(const char* bytes, std::size_t size) override { return zip_.write(bytes, size); }

  bool finish();
  bool isTooLarge() const { return zip_.isTooLarge(); }

 private:
  ZipWriter zip_;
};

}  // namespace exportifc
