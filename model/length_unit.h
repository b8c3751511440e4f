// The units that a model's coordinates may have.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "exportifc/plugin.h"

namespace exportifc {

struct LengthUnit {
  std::int32_t code;      ///< as hosts answer it
  std::string_view name;  ///< as model files spell it
  double millimetres;     ///< that one of it is
};

inline constexpr LengthUnit lengthUnits[] = {
    {EXPORTIFC_METRES, "m", 1000.0},
    {EXPORTIFC_CENTIMETRES, "cm", 10.0},
    {EXPORTIFC_MILLIMETRES, "mm", 1.0},
};

/// Code of a unit that a model file spells in no known way; as any code outside the table, its
/// coordinates are taken as millimetres.
inline constexpr std::int32_t unknownLengthUnit = -1;

/// Null when no unit has the code.
constexpr const LengthUnit* lengthUnitOf(std::int32_t code) {
  for (const LengthUnit& unit : lengthUnits) {
    if (unit.code == code) {
      return &unit;
    }
  }
  return nullptr;
}

/// Null when no unit is spelt so, in full and in small letters.
constexpr const LengthUnit* lengthUnitNamed(std::string_view name) {
  for (const LengthUnit& unit : lengthUnits) {
    if (unit.name == name) {
      return &unit;
    }
  }
  return nullptr;
}

/// Factor from the model's coordinates to millimetres.
constexpr double millimetresPer(std::int32_t code) {
  const LengthUnit* const unit = lengthUnitOf(code);
  return unit != nullptr ? unit->millimetres : 1.0;
}

}  // namespace exportifc
