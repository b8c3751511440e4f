#include "model/bar.h"

namespace exportifc {

void widenSectionName(const BarRecord& record, std::wstring& name) {
  name.clear();
  for (const char c : record.sectionName) {
    if (c == '\0') {
      return;
    }
    // Through 16 bits, since wchar_t has 32 on some platforms.
    name.push_back(static_cast<wchar_t>(static_cast<char16_t>(static_cast<signed char>(c))));
  }
}

}  // namespace exportifc
