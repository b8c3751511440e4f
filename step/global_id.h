// IFC GlobalIds: a GUID in 22 characters.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

#include "platform/platform.h"

namespace exportifc {

/// The text of a GlobalId: 22 characters, or none when the system gives no GUID.
struct GlobalId {
  std::array<char, 22> characters{};
  std::size_t size = 0;

  operator std::string_view() const { return {characters.data(), size}; }
  friend bool operator==(const GlobalId& id, std::string_view text) {
    return std::string_view(id) == text;
  }
};

/// The text of a GUID, base 64 with the alphabet 0-9 A-Z a-z _ $ (the GlobalId compression of the
/// IFC implementation guide). The first character is 0 to 3.
GlobalId compressGuid(const platform::Guid& guid);

/// A fresh identifier; empty when the system gives no GUID.
GlobalId createGlobalId();

}  // namespace exportifc
