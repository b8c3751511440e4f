// Memory for records whose addresses travel in 32 bits.
#pragma once

#include <cstddef>

namespace exportifc::test {

/// Zero-filled memory below 4 GiB, released with the object.
class LowMemory {
 public:
  explicit LowMemory(std::size_t size);
  LowMemory(const LowMemory&) = delete;
  LowMemory& operator=(const LowMemory&) = delete;
  ~LowMemory();

  [[nodiscard]] void* address() const { return address_; }

  /// Whoever touches it from now on crashes.
  void forbid();

 private:
  void* address_ = nullptr;
  std::size_t size_;
};

}  // namespace exportifc::test
