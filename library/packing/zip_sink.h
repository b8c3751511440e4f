// A zip with one file in it, as .ifczip is.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "library/packing/deflate_sink.h"
#include "platform/byte_sink.h"

namespace exportifc {

/// Zips what is written into another sink, from start to end: the sizes stand behind the data.
/// The same data under the same name are the same bytes.
class ZipSink final : public ByteSink {
 public:
  /// Bytes that a member can have, and its packed data.
  static constexpr std::uint64_t mostBytes = 0xFFFFFFFE;

  /// `member` is the name of the file in the zip.
  ZipSink(ByteSink& next, std::string member);

  bool write(const char* bytes, std::size_t size) override;

  /// Writes the end, behind which nothing may be written. False when the zip is not whole: the
  /// other sink has refused something, or there is more than `mostBytes`.
  bool finish();
  bool isTooLarge() const { return packed_.taken() > mostBytes || packed_.given() > mostBytes; }

 private:
  std::string member_;
  std::uint16_t flags_;
  ByteSink& next_;
  DeflateSink packed_;
  std::uint32_t checksum_;
  bool goesOn_ = true;  // until the other sink refuses something
};

}  // namespace exportifc
