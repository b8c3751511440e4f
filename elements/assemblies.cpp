#include "elements/assemblies.h"

#include "step/global_id.h"

namespace exportifc {

std::int32_t writeElementAssembly(StepWriter& writer, std::span<const std::int32_t> elements,
                                  std::string_view groupName) {
  if (elements.empty()) {
    return 0;
  }
  const Ref owner{writer.ownerHistoryId};
  // Fixed shape: literal numbers.
  // Fixed shape: one placement.
  const Ref assembly{writer.writeEntity("IFCELEMENTASSEMBLY('", createGlobalId(), "', ", owner,
                                        ", '", groupName,
                                        "', '', $, #111, $, $, $, .NOTDEFINED.)")};
  writer.writeEntity("IFCRELAGGREGATES('", createGlobalId(), "', ", owner, ", '", groupName,
                     "', 'Assembly', ", assembly, ", (", RefList{elements}, "))");
  return assembly;
}

void writeStoreyContainment(StepWriter& writer, std::span<const std::int32_t> elements) {
  writer.writeEntity("IFCRELCONTAINEDINSPATIALSTRUCTURE('", createGlobalId(), "', ",
                     Ref{writer.ownerHistoryId}, ", 'Pavimento 1', '', (", RefList{elements},
                     "), #113)");
}

}  // namespace exportifc
