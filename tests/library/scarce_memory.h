// Memory that runs out at a chosen moment: this program's `operator new`.
#pragma once

#include <cstddef>

namespace exportifc::test {

/// While it lives, allocations of this thread fail: that after so many which go well, and, as one
/// chooses, none or all that follow. One at a time.
class ScarceMemory {
 public:
  enum class Then : bool { plenty, none };

  ScarceMemory(std::size_t allocations, Then then);
  ScarceMemory(const ScarceMemory&) = delete;
  ScarceMemory& operator=(const ScarceMemory&) = delete;
  ~ScarceMemory();

  /// Whether that moment has come.
  [[nodiscard]] static bool ranOut();
};

}  // namespace exportifc::test
