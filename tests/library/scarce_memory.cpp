#include "tests/library/scarce_memory.h"

#include <cstdint>
#include <cstdlib>
#include <new>

namespace {

constexpr std::size_t plenty = SIZE_MAX;
thread_local constinit std::size_t left = plenty;
thread_local constinit bool failed = false;
thread_local constinit bool failsAgain = false;

// NOLINTBEGIN(misc-new-delete-overloads, cppcoreguidelines-no-malloc)

void* memoryOrNull(std::size_t size) {
  if (left != plenty && left-- == 0) {
    left = failsAgain ? 0 : plenty;
    failed = true;
    return nullptr;
  }
  return std::malloc(size == 0 ? 1 : size);
}

void* allocate(std::size_t size) {
  void* const memory = memoryOrNull(size);
  if (memory == nullptr) {
    throw std::bad_alloc();
  }
  return memory;
}

}  // namespace

void* operator new(std::size_t size) { return allocate(size); }
void* operator new[](std::size_t size) { return allocate(size); }
void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return memoryOrNull(size);
}
void* operator new[](std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return memoryOrNull(size);
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t /*size*/) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t /*size*/) noexcept { std::free(memory); }
// NOLINTEND(misc-new-delete-overloads, cppcoreguidelines-no-malloc)

namespace exportifc::test {

ScarceMemory::ScarceMemory(std::size_t allocations, Then then) {
  left = allocations;
  failsAgain = then == Then::none;
  failed = false;
}

ScarceMemory::~ScarceMemory() { left = plenty; }

bool ScarceMemory::ranOut() { return failed; }

}  // namespace exportifc::test
