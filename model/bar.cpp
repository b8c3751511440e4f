#include "model/bar.h"

#include <array>
#include <cstddef>

namespace exportifc {

void widenSectionName(const BarRecord& record, std::wstring& name) {
  std::array<wchar_t, sizeof(record.sectionName)> units{};
  std::size_t size = 0;
  for (const char c : record.sectionName) {
    if (c == '\0') {
      break;
    }
    // Through 16 bits, since wchar_t has 32 on some platforms.
    units[size++] = static_cast<wchar_t>(static_cast<char16_t>(static_cast<signed char>(c)));
  }
  name.assign(units.data(), size);
}

}  // namespace exportifc
