// IFC GlobalIds: a GUID in 22 characters.
#pragma once

#include <cstddef>

#include "platform/platform.h"
#include "step/line_pieces.h"

namespace exportifc {

/// Writes a GUID as 22 characters, base 64 with the alphabet 0-9 A-Z a-z _ $ (the GlobalId
/// compression of the IFC implementation guide), and returns their end. The first is 0 to 3.
char* compressGuid(char* at, const platform::Guid& guid);

/// A piece of a line: the compressed GUID, or nothing when it is zero.
struct GlobalId {
  platform::Guid guid;
};

constexpr std::size_t maxLength(const GlobalId&) { return 22; }

inline LineCursor put(LineCursor line, const GlobalId& id) {
  return {id.guid == platform::Guid{} ? line.at : compressGuid(line.at, id.guid), line.cut};
}

/// A fresh identifier; an empty one when the system gives no GUID.
inline GlobalId createGlobalId() { return {platform::newGuid()}; }

}  // namespace exportifc
