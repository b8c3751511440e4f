// The memory that the module asks for: counted, or refused.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>

#include "tests/module/loaded_module.h"

namespace exportifc::module_tests {

/// While it lives, what the module allocates on this thread is counted, and some of it refused.
/// One at a time.
class Allocations {
 public:
  static constexpr std::size_t none = std::numeric_limits<std::size_t>::max();

  /// What is refused: every allocation of more than `largest` bytes, and the one at the place
  /// `refused`, from 0.
  struct Limits {
    std::size_t largest = none;
    std::size_t refused = none;
  };

  explicit Allocations(const LoadedModule& module) : Allocations(module, Limits{}) {}
  Allocations(const LoadedModule& module, Limits limits);
  Allocations(const Allocations&) = delete;
  Allocations& operator=(const Allocations&) = delete;
  ~Allocations();

  /// Allocations so far.
  [[nodiscard]] std::size_t count() const;
  /// Bytes allocated and not released again.
  [[nodiscard]] std::int64_t kept() const;

 private:
  struct Replaced;
  std::unique_ptr<Replaced> replaced_;
};

}  // namespace exportifc::module_tests
