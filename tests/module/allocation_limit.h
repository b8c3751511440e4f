// Lets the module run out of memory at a chosen size.
#pragma once

#include <cstddef>

#include "tests/module/loaded_module.h"

namespace exportifc::module_tests {

/// While it lives, the module's allocations of more than `largest` bytes fail.
class AllocationLimit {
 public:
  AllocationLimit(const LoadedModule& module, std::size_t largest);
  AllocationLimit(const AllocationLimit&) = delete;
  AllocationLimit& operator=(const AllocationLimit&) = delete;
  ~AllocationLimit();
};

}  // namespace exportifc::module_tests
