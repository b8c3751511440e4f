#include "library/frame/pointer.h"

namespace exportifc {

std::string pointerPiece(std::string_view name) {
  std::string piece;
  for (const char c : name) {
    piece += c == '~' ? std::string("~0") : c == '/' ? std::string("~1") : std::string(1, c);
  }
  return piece;
}

std::string barPointer(std::int32_t index) { return "/bars/" + std::to_string(index); }

std::string sectionPointer(const ModelSection& section) {
  return "/sections/" + pointerPiece(section.name);
}

}  // namespace exportifc
