// Bar records as hosts keep them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "exportifc/plugin.h"
#include "tests/support/low_memory.h"

namespace exportifc::test {

/// Bytes that the module must not look at carry something. The name may fill its field without a
/// terminator; what does not fit is cut off.
BarRecord recordOf(std::string_view section, std::int32_t quarterTurns = 0);

/// Records below 4 GiB, whose addresses fit into the 32 bits of a slot.
class LowRecords {
 public:
  explicit LowRecords(std::size_t count) : memory_(count * sizeof(BarRecord)) {}

  /// Writes a record; its address.
  std::uint32_t put(std::size_t index, const BarRecord& record);

  /// Whoever touches one from now on crashes.
  void forbid() { memory_.forbid(); }

 private:
  LowMemory memory_;
};

}  // namespace exportifc::test
