#include "step/host_text.h"

#include <algorithm>

namespace exportifc {

HostText::HostText(std::wstring_view wide)
    : wide_(wide), bytes_(std::max(usual, maxLength(wide)), '\0') {
  const LineCursor end = exportifc::put(LineCursor{.at = bytes_.data()}, wide);
  size_ = static_cast<std::size_t>(end.at - bytes_.data());
  isCut_ = end.cut != nullptr;
}

}  // namespace exportifc
