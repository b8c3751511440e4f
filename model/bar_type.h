// The types of bar that hosts know, and what becomes of the bars of each.
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
  std::string_view name;  ///< in model documents
  std::int32_t number;    ///< the host's type code
  BarGroup group;
  bool mayBeColumn;  ///< written as a column when it stands upright
  bool isExported;
};

// clang-format off
inline constexpr BarType barTypes[] = {
    {"member",       EXPORTIFC_MEMBER,       BarGroup::storey, false, true},
    {"frame-beam",   EXPORTIFC_FRAME_BEAM,   BarGroup::frame,  false, true},
    {"floor-beam",   EXPORTIFC_FLOOR_BEAM,   BarGroup::frame,  false, true},
    {"truss-chord",  EXPORTIFC_TRUSS_CHORD,  BarGroup::truss,  false, true},
    {"column",       EXPORTIFC_COLUMN,       BarGroup::frame,  true,  true},
    {"bracing",      EXPORTIFC_BRACING,      BarGroup::storey, false, true},
    {"crane-beam",   EXPORTIFC_CRANE_BEAM,   BarGroup::frame,  false, true},
    {"wind-column",  EXPORTIFC_WIND_COLUMN,  BarGroup::frame,  true,  true},
    {"stair",        EXPORTIFC_STAIR,        BarGroup::frame,  false, true},
    {"truss-web",    EXPORTIFC_TRUSS_WEB,    BarGroup::truss,  false, true},
    {"not-exported", EXPORTIFC_NOT_EXPORTED, BarGroup::storey, false, false},
    {"other",        EXPORTIFC_OTHER,        BarGroup::storey, false, true},
};
// clang-format on
inline constexpr std::size_t barTypeCount = sizeof(barTypes) / sizeof(barTypes[0]);

consteval bool barTypesStandByNumber() {
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
