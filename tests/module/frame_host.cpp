#include "tests/module/frame_host.h"

#include <cstring>

namespace exportifc::module_tests {

namespace {

FrameHost* current = nullptr;

template <typename Value>
void put(void* slot, const Value& value) {
  std::memcpy(slot, &value, sizeof(value));
}

}  // namespace

FrameHost::FrameHost() { current = this; }

FrameHost::~FrameHost() { current = nullptr; }

void FrameHost::connect(PlugInModule& record) const {
  record.hostQuery = &FrameHost::answer;
  record.hostHandle = handle;
}

std::int32_t FrameHost::answer(std::uint64_t handle, std::int32_t index, std::int32_t code,
                               void* out) {
  const Query query{.handle = handle, .index = index, .code = code, .hasSlot = out != nullptr};
  current->queries.push_back(query);
  if (current->before) {
    current->before(query);
  }
  if (!current->ignores || !current->ignores(query)) {
    current->fill(query, out);
  }
  return -1;  // nobody looks at it
}

void FrameHost::fill(const Query& query, void* out) {
  switch (query.code) {
    case EXPORTIFC_LENGTH_UNIT: put(out, unit); return;
    case EXPORTIFC_BAR_COUNT:
      put(out, barCount.value_or(static_cast<std::int32_t>(bars.size())));
      return;
    case EXPORTIFC_NODE_COORDINATES: put(out, nodes.at(query.index)); return;
    default: break;
  }
  const auto index = static_cast<std::size_t>(query.index);
  const FrameBar& bar = bars.at(index);
  switch (query.code) {
    case EXPORTIFC_BAR_TYPE: put(out, bar.type); break;
    case EXPORTIFC_BAR_VISIBLE: put(out, bar.visible); break;
    case EXPORTIFC_BAR_RECORD: {
      constexpr std::uint64_t garbage = 0xDEADBEEF00000000;
      const std::uint32_t address =
          bar.hasRecord ? records_.put(index, test::recordOf(bar.section, bar.quarterTurns)) : 0;
      writesWholePointers ? put(out, garbage | address) : put(out, address);
      break;
    }
    case EXPORTIFC_BAR_ANGLE: put(out, bar.angle); break;
    case EXPORTIFC_SECTION_DIMS: put(out, bar.dims); break;
    case EXPORTIFC_BAR_START_NODE: put(out, bar.startNode); break;
    case EXPORTIFC_BAR_END_NODE: put(out, bar.endNode); break;
    default: break;
  }
}

}  // namespace exportifc::module_tests
