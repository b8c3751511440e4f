// IFC GlobalIds: a GUID in 22 characters.
#pragma once

#include <string>

#include "platform/platform.h"

namespace exportifc {

/// The 22-character text of a GUID, base 64 with the alphabet 0-9 A-Z a-z _ $ (the GlobalId
/// compression of the IFC implementation guide). The first character is 0 to 3.
std::string compressGuid(const platform::Guid& guid);

/// A fresh identifier of 22 characters; empty when the system gives no GUID.
std::wstring createGlobalId();

}  // namespace exportifc
