// Memory below 4 GiB, where 64-bit hosts keep what they pass by a 32-bit address.
#include <cstddef>
#include <cstdlib>
#include <cstring>

#include "support.h"

#if defined(_WIN32)
#include <windows.h>
#else
#include <sys/mman.h>
#endif

namespace exportifc::test {

namespace {

constexpr std::size_t blockSize = 0x10000;

char* newBlock() {
#if defined(_WIN32)
  // The system takes no limit: try one address after the other.
  for (std::uintptr_t address = 0x10000000; address < 0xF0000000; address += blockSize) {
    void* block = VirtualAlloc(reinterpret_cast<void*>(address), blockSize,
                               MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
    if (block != nullptr) {
      return static_cast<char*>(block);
    }
  }
#else
  void* block = mmap(nullptr, blockSize, PROT_READ | PROT_WRITE,
                     MAP_PRIVATE | MAP_ANONYMOUS | MAP_32BIT, -1, 0);
  if (block != MAP_FAILED) {
    return static_cast<char*>(block);
  }
#endif
  std::abort();
}

}  // namespace

std::uint32_t lowAddressOf(const BarRecord& record) {
  static char* free = nullptr;
  static std::size_t left = 0;
  if (free == nullptr || left < sizeof(record)) {
    free = newBlock();
    left = blockSize;
  }
  std::memcpy(free, &record, sizeof(record));
  const auto address = reinterpret_cast<std::uintptr_t>(free);
  free += sizeof(record);
  left -= sizeof(record);
  return static_cast<std::uint32_t>(address);
}

}  // namespace exportifc::test
