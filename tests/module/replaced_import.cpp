#include "tests/module/replaced_import.h"

#include <cstddef>
#include <stdexcept>

#include <windows.h>

namespace exportifc::module_tests {

namespace {

template <typename Type>
Type* at(void* module, std::size_t offset) {
  return reinterpret_cast<Type*>(static_cast<unsigned char*>(module) + offset);
}

/// The place where the module keeps the address of an imported function.
void** importSlot(void* module, const std::string& function) {
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
        return reinterpret_cast<void**>(&slot->u1.Function);
      }
    }
  }
  throw std::runtime_error("the module does not import " + function);
}

}  // namespace

ReplacedImport::ReplacedImport(const LoadedModule& module, const std::string& function,
                               void* replacement)
    : slot_(importSlot(module.handle(), function)), before_(*slot_) {
  put(replacement);
}

ReplacedImport::~ReplacedImport() { put(before_); }

void ReplacedImport::put(void* function) const {
  DWORD protection = 0;
  VirtualProtect(slot_, sizeof(*slot_), PAGE_READWRITE, &protection);
  *slot_ = function;
  VirtualProtect(slot_, sizeof(*slot_), protection, &protection);
}

}  // namespace exportifc::module_tests
