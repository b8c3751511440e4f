// Deflated data, the compression of gzip and zip.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "platform/byte_sink.h"

struct z_stream_s;

namespace exportifc {

/// What stands around the deflated data.
enum class DeflateFrame : std::uint8_t {
  none,
  gzip,  ///< one member, the same bytes on every system
};

/// Deflates what is written and hands it on to another sink. The last bytes come with `finish`.
class DeflateSink final : public ByteSink {
 public:
  DeflateSink(ByteSink& next, DeflateFrame frame);
  DeflateSink(const DeflateSink&) = delete;
  DeflateSink& operator=(const DeflateSink&) = delete;
  ~DeflateSink() override;

  bool write(const char* bytes, std::size_t size) override;

  /// Nothing may be written after it.
  bool finish();

  /// Bytes taken in, and bytes handed on.
  std::uint64_t taken() const { return taken_; }
  std::uint64_t given() const { return given_; }

 private:
  void run(int flush);

  ByteSink& next_;
  std::unique_ptr<z_stream_s> stream_;
  std::vector<unsigned char> packed_;
  std::uint64_t taken_ = 0;
  std::uint64_t given_ = 0;
  bool goesOn_ = true;  // until the other sink refuses something
};

}  // namespace exportifc
