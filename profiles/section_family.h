// The section families: how each is written, and what its dimensions measure.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <variant>

#include "profiles/outlines.h"
#include "profiles/parametric.h"

namespace exportifc {

/// What a dimension measures.
enum class Meaning : std::uint8_t {
  depth,
  width,
  leg,
  diameter,
  thickness,
  webThickness,
  flangeThickness,
  topFlangeThickness,
  bottomFlangeThickness,
  flangeWidth,
  topFlangeWidth,
  bottomFlangeWidth,
  lip,
  topLip,
  bottomLip,
  brim,
  overWebs,
  hatHeight,
  gap,
  overBoth,
  overCorners,
  betweenCentres,
};

/// Which of a bar's dimensions d0 to d6 becomes an argument.
enum class Dimension : std::uint8_t {
  d0,
  d1,
  d2,
  d3,
  d4,
  d5,
  d6,
  zero,           ///< none: the argument is 0
  rectangleSide,  ///< d3, or d2, or d1: the first that counts
};

/// One argument of a family's profile.
struct FamilyArgument {
  Dimension from = Dimension::zero;
  Meaning meaning = Meaning::depth;
  bool mayBeZero = false;  ///< otherwise the dimension must be positive
};

/// Which profile is written.
using ProfileWriter = std::variant<Parametric, Outline>;

/// One family word that section texts begin with.
struct SectionFamily {
  std::wstring_view word;
  bool isBuiltUp;  ///< of two halves, each a profile and an element of its own
  /// The profile, or those of the first and the second half; none: the stand-in is written.
  std::array<std::optional<ProfileWriter>, 2> profiles;
  std::span<const FamilyArgument> arguments;  ///< a1, a2, ..., the same for both halves
};

/// All families; of two with one word the first decides.
std::span<const SectionFamily> sectionFamilies();

}  // namespace exportifc
