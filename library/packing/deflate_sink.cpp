#include "library/packing/deflate_sink.h"

#include <algorithm>
#include <new>

#include <zlib.h>

namespace exportifc {

namespace {

constexpr std::size_t packedSize = 1U << 16;
constexpr int largestWindow = 15;
constexpr int withGzip = 16;  // added to the window
constexpr int memoryLevel = 8;
constexpr std::size_t mostAtOnce = 1U << 30;  // zlib counts in 32 bits

}  // namespace

DeflateSink::DeflateSink(ByteSink& next, DeflateFrame frame)
    : next_(next), stream_(std::make_unique<z_stream_s>()), packed_(packedSize) {
  const int window = frame == DeflateFrame::gzip ? largestWindow + withGzip : -largestWindow;
  if (deflateInit2(stream_.get(), Z_DEFAULT_COMPRESSION, Z_DEFLATED, window, memoryLevel,
                   Z_DEFAULT_STRATEGY) != Z_OK) {
    throw std::bad_alloc();
  }
  if (frame == DeflateFrame::gzip) {
    static gz_header unknownSystem{};  // no name and no time either
    unknownSystem.os = 255;
    deflateSetHeader(stream_.get(), &unknownSystem);
  }
}

DeflateSink::~DeflateSink() { deflateEnd(stream_.get()); }

bool DeflateSink::write(const char* bytes, std::size_t size) {
  taken_ += size;
  while (goesOn_ && size > 0) {
    const std::size_t part = std::min(size, mostAtOnce);
    stream_->next_in = reinterpret_cast<const unsigned char*>(bytes);
    stream_->avail_in = static_cast<unsigned>(part);
    run(Z_NO_FLUSH);
    bytes += part;
    size -= part;
  }
  return goesOn_;
}

bool DeflateSink::finish() {
  if (goesOn_) {
    run(Z_FINISH);
  }
  return goesOn_;
}

void DeflateSink::run(int flush) {
  do {
    stream_->next_out = packed_.data();
    stream_->avail_out = static_cast<unsigned>(packed_.size());
    deflate(stream_.get(), flush);  // cannot fail with room for its output
    const std::size_t size = packed_.size() - stream_->avail_out;
    given_ += size;
    goesOn_ = size == 0 || next_.write(reinterpret_cast<const char*>(packed_.data()), size);
  } while (goesOn_ && stream_->avail_out == 0);
}

}  // namespace exportifc
