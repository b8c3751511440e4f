// Where in a model something stands, as a JSON pointer; batch text files count their lines from it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "library/frame/model.h"

namespace exportifc {

/// One piece of a JSON pointer: "~" and "/" as "~0" and "~1".
std::string pointerPiece(std::string_view name);

/// "/bars/6".
std::string barPointer(std::int32_t index);

/// "/sections/Viga".
std::string sectionPointer(const ModelSection& section);

}  // namespace exportifc
