#include "tests/module/allocations.h"

#include <cstdlib>
#include <new>

#ifdef _WIN32
#include <windows.h>
// windows.h first.
#include <malloc.h>

#include "tests/module/replaced_import.h"
#else
#include <malloc.h>
#endif

namespace {

struct Tally {
  bool counts = false;
  exportifc::module_tests::Allocations::Limits limits;
  std::size_t count = 0;
  std::int64_t kept = 0;
};

// Of this thread: the person's allocates, too.
thread_local constinit Tally tally;

/// Whether an allocation of so many bytes is to be refused.
bool refuses(std::size_t size) {
  return tally.counts && (tally.count++ == tally.limits.refused || size > tally.limits.largest);
}

void* taken(void* memory, std::size_t size) {
  if (tally.counts && memory != nullptr) {
    tally.kept += static_cast<std::int64_t>(size);
  }
  return memory;
}

void released(std::size_t size) {
  if (tally.counts) {
    tally.kept -= static_cast<std::int64_t>(size);
  }
}

}  // namespace

// NOLINTBEGIN(misc-new-delete-overloads, cppcoreguidelines-no-malloc)

#ifdef _WIN32

// The module carries its own operators, over these functions of the system's runtime.

namespace {

void* countedMalloc(std::size_t size) {
  if (refuses(size)) {
    return nullptr;
  }
  void* const memory = std::malloc(size);
  return taken(memory, memory == nullptr ? 0 : _msize(memory));
}

void countedFree(void* memory) {
  released(memory == nullptr ? 0 : _msize(memory));
  std::free(memory);
}

void* countedAligned(std::size_t size, std::size_t alignment) {
  if (refuses(size)) {
    return nullptr;
  }
  return _aligned_malloc(size, alignment);  // not weighed: nobody tells its size afterwards
}

}  // namespace

namespace exportifc::module_tests {

struct Allocations::Replaced {
  explicit Replaced(const LoadedModule& module)
      : malloc(module, "malloc", &countedMalloc),
        alignedMalloc(module, "_aligned_malloc", &countedAligned),
        free(module, "free", &countedFree) {}

  ReplacedImport malloc;
  ReplacedImport alignedMalloc;
  ReplacedImport free;
};

}  // namespace exportifc::module_tests

#else

// The module uses the operators of the program that loads it, as every shared library does.

namespace {

void* allocate(std::size_t size, std::size_t alignment) {
  void* const memory =
      refuses(size) ? nullptr
      : alignment == 0
          ? std::malloc(size)
          : std::aligned_alloc(alignment, (size + alignment - 1) / alignment * alignment);
  if (memory == nullptr) {
    throw std::bad_alloc();
  }
  return taken(memory, ::malloc_usable_size(memory));
}

void release(void* memory) {
  released(::malloc_usable_size(memory));
  std::free(memory);
}

}  // namespace

void* operator new(std::size_t size) { return allocate(size, 0); }
void* operator new[](std::size_t size) { return allocate(size, 0); }
void* operator new(std::size_t size, std::align_val_t alignment) {
  return allocate(size, static_cast<std::size_t>(alignment));
}
void operator delete(void* memory) noexcept { release(memory); }
void operator delete[](void* memory) noexcept { release(memory); }
void operator delete(void* memory, std::size_t) noexcept { release(memory); }
void operator delete[](void* memory, std::size_t) noexcept { release(memory); }
void operator delete(void* memory, std::align_val_t) noexcept { release(memory); }
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept { release(memory); }

namespace exportifc::module_tests {

struct Allocations::Replaced {
  explicit Replaced(const LoadedModule& /*module*/) {}
};

}  // namespace exportifc::module_tests

#endif

// NOLINTEND(misc-new-delete-overloads, cppcoreguidelines-no-malloc)

namespace exportifc::module_tests {

Allocations::Allocations(const LoadedModule& module, Limits limits)
    : replaced_(std::make_unique<Replaced>(module)) {
  tally = {.counts = true, .limits = limits};
}

Allocations::~Allocations() { tally.counts = false; }

// Not static: the tally, which the replaced functions must reach, is this object's while it lives.
// NOLINTNEXTLINE(readability-convert-member-functions-to-static)
std::size_t Allocations::count() const { return tally.count; }

// NOLINTNEXTLINE(readability-convert-member-functions-to-static)
std::int64_t Allocations::kept() const { return tally.kept; }

}  // namespace exportifc::module_tests
