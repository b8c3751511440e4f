// Puts a function of the test's in the place of a system function that the module calls (Windows).
#pragma once

#include <string>

#include "tests/module/loaded_module.h"

namespace exportifc::module_tests {

/// While it lives, the module's calls of the system's `function` reach `replacement`, which must
/// have the same type. The module must stay loaded that long.
class ReplacedImport {
 public:
  template <typename Function>
  ReplacedImport(const LoadedModule& module, const std::string& function, Function* replacement)
      : ReplacedImport(module, function, reinterpret_cast<void*>(replacement)) {}
  /// Throws std::runtime_error when the module does not import the function.
  ReplacedImport(const LoadedModule& module, const std::string& function, void* replacement);
  ReplacedImport(const ReplacedImport&) = delete;
  ReplacedImport& operator=(const ReplacedImport&) = delete;
  ~ReplacedImport();

 private:
  void put(void* function) const;

  void** slot_;
  void* before_;
};

}  // namespace exportifc::module_tests
