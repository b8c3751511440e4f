// A page in a browser, or node. It opens no file and shows no dialog: what needs these is not
// linked there.
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include <unistd.h>

#include "platform/platform.h"

namespace exportifc::platform {

namespace {

/// Fetched in blocks: leaving the page's memory costs more than the bytes.
class RandomBytes {
 public:
  /// The next 16; null when the system gives none.
  const std::uint8_t* take() {
    constexpr std::size_t size = 16;
    if (used_ == block_.size()) {
      if (getentropy(block_.data(), block_.size()) != 0) {
        return nullptr;
      }
      used_ = 0;
    }
    used_ += size;
    return block_.data() + used_ - size;
  }

 private:
  std::array<std::uint8_t, 256> block_{};  // as much as one call gives
  std::size_t used_ = block_.size();
};

}  // namespace

Guid newGuid() {
  static RandomBytes random;
  const std::uint8_t* const bytes = random.take();
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

void preferLargePages(void* /*memory*/, std::size_t /*size*/) {}

}  // namespace exportifc::platform
