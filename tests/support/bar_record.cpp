#include "tests/support/bar_record.h"

#include <algorithm>
#include <cstring>

namespace exportifc::test {

BarRecord recordOf(std::string_view section, std::int32_t quarterTurns) {
  BarRecord record;
  std::memset(&record, 0xA5, sizeof(record));
  std::memset(record.sectionName, 0, sizeof(record.sectionName));
  section.copy(record.sectionName, sizeof(record.sectionName));
  record.quarterTurns = quarterTurns;
  return record;
}

std::uint32_t LowRecords::put(std::size_t index, const BarRecord& record) {
  BarRecord& place = static_cast<BarRecord*>(memory_.address())[index];
  place = record;
  return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(&place));
}

}  // namespace exportifc::test
