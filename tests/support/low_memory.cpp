#include "tests/support/low_memory.h"

#include <cstdint>
#include <new>

#ifdef _WIN32
#include <windows.h>
#else
#include <sys/mman.h>
#endif

namespace exportifc::test {

#ifdef _WIN32

LowMemory::LowMemory(std::size_t size) : size_(size) {
  // Windows has no call for it: free addresses are tried one by one.
  for (std::uintptr_t address = 0x10000000; address_ == nullptr && address < 0x70000000;
       address += 0x10000) {
    address_ = VirtualAlloc(reinterpret_cast<void*>(address), size_, MEM_RESERVE | MEM_COMMIT,
                            PAGE_READWRITE);
  }
  if (address_ == nullptr) {
    throw std::bad_alloc();
  }
}

void LowMemory::forbid() {
  DWORD before = 0;
  VirtualProtect(address_, size_, PAGE_NOACCESS, &before);
}

LowMemory::~LowMemory() { VirtualFree(address_, 0, MEM_RELEASE); }

#else

LowMemory::LowMemory(std::size_t size) : size_(size) {
  address_ = ::mmap(nullptr, size_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_32BIT,
                    -1, 0);
  if (address_ == MAP_FAILED) {
    throw std::bad_alloc();
  }
}

void LowMemory::forbid() { ::mprotect(address_, size_, PROT_NONE); }

LowMemory::~LowMemory() { ::munmap(address_, size_); }

#endif

}  // namespace exportifc::test
