// A page in a browser, or node. It opens no file and shows no dialog: what needs these is not
// linked there.
#include <array>
#include <cstddef>
#include <cstdint>

#include <unistd.h>

#include "platform/platform.h"
#include "platform/random_guid.h"

namespace exportifc::platform {

namespace {

/// Fetched in blocks: leaving the page's memory costs more than the bytes.
class RandomBytes {
 public:
  /// The next 16; null when the system gives none.
  const std::uint8_t* take() {
    if (used_ == block_.size()) {
      if (getentropy(block_.data(), block_.size()) != 0) {
        return nullptr;
      }
      used_ = 0;
    }
    used_ += guidSize;
    return block_.data() + used_ - guidSize;
  }

 private:
  std::array<std::uint8_t, 256> block_{};  // as much as one call gives
  std::size_t used_ = block_.size();
};

}  // namespace

Guid newGuid() {
  static RandomBytes random;
  return guidOf(random.take());
}

void preferLargePages(void* /*memory*/, std::size_t /*size*/) {}

}  // namespace exportifc::platform
