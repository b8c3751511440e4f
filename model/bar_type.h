// The kinds of bar that hosts tell apart, and what becomes of each.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "exportifc/plugin.h"

namespace exportifc {

/// Where the elements of a bar are gathered.
enum class BarGroup : std::uint8_t {
  storey,  ///< in no assembly, directly in the storey
  frame,
  truss,
};

struct BarType {
  std::int32_t number;    ///< the host's type code
  std::string_view name;  ///< in model documents
  BarGroup group;
  bool mayBeColumn;  ///< written as a column when it stands upright
  bool isExported;
};

// clang-format off
inline constexpr BarType barTypes[] = {
    {EXPORTIFC_MEMBER,        "member",       BarGroup::storey, false, true},
    {EXPORTIFC_FRAME_BEAM,    "frame-beam",   BarGroup::frame,  false, true},
    {EXPORTIFC_FLOOR_BEAM,    "floor-beam",   BarGroup::frame,  false, true},
    {EXPORTIFC_TRUSS_CHORD,   "truss-chord",  BarGroup::truss,  false, true},
    {EXPORTIFC_COLUMN,        "column",       BarGroup::frame,  true,  true},
    {EXPORTIFC_BRACING,       "bracing",      BarGroup::storey, false, true},
    {EXPORTIFC_CRANE_BEAM,    "crane-beam",   BarGroup::frame,  false, true},
    {EXPORTIFC_WIND_COLUMN,   "wind-column",  BarGroup::frame,  true,  true},
    {EXPORTIFC_STAIR,         "stair",        BarGroup::frame,  false, true},
    {EXPORTIFC_TRUSS_WEB,     "truss-web",    BarGroup::truss,  false, true},
    {EXPORTIFC_NOT_EXPORTED,  "not-exported", BarGroup::storey, false, false},
    {EXPORTIFC_OTHER,         "other",        BarGroup::storey, false, true},
};
// clang-format on
inline constexpr std::size_t barTypeCount = sizeof(barTypes) / sizeof(barTypes[0]);

constexpr bool barTypesStandByNumber() {
  for (std::size_t i = 0; i < barTypeCount; ++i) {
    if (barTypes[i].number != static_cast<std::int32_t>(i)) {
      return false;
    }
  }
  return true;
}
static_assert(barTypesStandByNumber());

/// The row of a type code; codes outside the table are as the last row.
constexpr const BarType& barTypeOf(std::int32_t number) {
  return number >= 0 && static_cast<std::size_t>(number) < barTypeCount
             ? barTypes[static_cast<std::size_t>(number)]
             : barTypes[barTypeCount - 1];
}

}  // namespace exportifc
