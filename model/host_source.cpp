#include "model/host_source.h"

#include <array>

namespace exportifc {

namespace {

/// A host's record address travels in 32 bits.
/// Fixed shape: low record.
const BarRecord* recordAt(std::uint32_t address) {
  // The address is the host's: there is no object of ours to point to.
  return reinterpret_cast<const BarRecord*>(static_cast<std::uintptr_t>(address));
}

}  // namespace

std::int32_t HostSource::unitCode() {
  std::int32_t code = 0;
  ask(0, EXPORTIFC_LENGTH_UNIT, &code);
  return code;
}

std::int32_t HostSource::barCount() {
  std::int32_t count = 0;
  ask(0, EXPORTIFC_BAR_COUNT, &count);
  return count;
}

// Fixed shape: last bar's values.
bool HostSource::next(std::int32_t index, SourceBar& bar) {
  ask(index, EXPORTIFC_BAR_TYPE, &bar.typeCode);
  ask(index, EXPORTIFC_BAR_VISIBLE, &bar.visible);
  // Eight bytes, since some hosts write a whole pointer; only the first four are read.
  std::array<std::uint32_t, 2> recordSlot{};
  ask(index, EXPORTIFC_BAR_RECORD, recordSlot.data());
  bar.record = recordAt(recordSlot[0]);
  ask(index, EXPORTIFC_BAR_ANGLE, &bar.angle);
  ask(index, EXPORTIFC_SECTION_DIMS, bar.dims.data());
  ask(index, EXPORTIFC_BAR_START_NODE, &startNode_);
  ask(index, EXPORTIFC_BAR_END_NODE, &endNode_);
  ask(startNode_, EXPORTIFC_NODE_COORDINATES, bar.start.data());
  ask(endNode_, EXPORTIFC_NODE_COORDINATES, bar.end.data());
  return true;
}

}  // namespace exportifc
