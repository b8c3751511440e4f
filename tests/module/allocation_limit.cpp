#include "tests/module/allocation_limit.h"

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <new>
#include <stdexcept>

#ifdef _WIN32
#include <windows.h>
#endif

namespace {

std::atomic<std::size_t> largestAllocation = std::numeric_limits<std::size_t>::max();

}  // namespace

#ifdef _WIN32

// The module carries its own operator new, over malloc of the system's runtime: its import of
// malloc is pointed here.

namespace {

void* limitedMalloc(std::size_t size) {
  return size > largestAllocation ? nullptr : std::malloc(size);
}

template <typename Type>
Type* at(void* module, std::size_t offset) {
  return reinterpret_cast<Type*>(static_cast<unsigned char*>(module) + offset);
}

/// The place where the module keeps the address of an imported function.
ULONGLONG* importSlot(void* module, const std::string& function) {
  const auto* const dos = at<IMAGE_DOS_HEADER>(module, 0);
  const auto* const headers =
      at<IMAGE_NT_HEADERS64>(module, static_cast<std::size_t>(dos->e_lfanew));
  const auto& table = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
  for (const auto* library = at<IMAGE_IMPORT_DESCRIPTOR>(module, table.VirtualAddress);
       library->Name != 0; ++library) {
    const auto* name = at<IMAGE_THUNK_DATA64>(module, library->OriginalFirstThunk);
    auto* slot = at<IMAGE_THUNK_DATA64>(module, library->FirstThunk);
    for (; name->u1.AddressOfData != 0; ++name, ++slot) {
      const bool byNumber = IMAGE_SNAP_BY_ORDINAL64(name->u1.Ordinal);
      if (!byNumber && at<IMAGE_IMPORT_BY_NAME>(module, name->u1.AddressOfData)->Name == function) {
        return &slot->u1.Function;
      }
    }
  }
  throw std::runtime_error("the module does not import " + function);
}

}  // namespace

namespace exportifc::module_tests {

AllocationLimit::AllocationLimit(const LoadedModule& module, std::size_t largest) {
  largestAllocation = largest;
  ULONGLONG* const slot = importSlot(module.handle(), "malloc");
  DWORD protection = 0;
  VirtualProtect(slot, sizeof(*slot), PAGE_READWRITE, &protection);
  *slot = reinterpret_cast<ULONGLONG>(&limitedMalloc);
  VirtualProtect(slot, sizeof(*slot), protection, &protection);
}

}  // namespace exportifc::module_tests

#else

// The module uses the operators of the program that loads it, as every shared library does.

// These are the operators that manage memory by hand.
// NOLINTBEGIN(misc-new-delete-overloads, cppcoreguidelines-no-malloc)
void* operator new(std::size_t size) {
  void* const memory = size > largestAllocation ? nullptr : std::malloc(size);
  if (memory == nullptr) {
    throw std::bad_alloc();
  }
  return memory;
}
void* operator new[](std::size_t size) { return operator new(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }
// NOLINTEND(misc-new-delete-overloads, cppcoreguidelines-no-malloc)

namespace exportifc::module_tests {

AllocationLimit::AllocationLimit(const LoadedModule& /*module*/, std::size_t largest) {
  largestAllocation = largest;
}

}  // namespace exportifc::module_tests

#endif

namespace exportifc::module_tests {

AllocationLimit::~AllocationLimit() { largestAllocation = std::numeric_limits<std::size_t>::max(); }

}  // namespace exportifc::module_tests
