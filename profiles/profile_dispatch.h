// From a section's name to its profile.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>
#include <variant>

#include "platform/user_interface.h"
#include "profiles/outlines.h"
#include "profiles/parametric.h"
#include "step/host_text.h"
#include "step/step_writer.h"

namespace exportifc {

/// `flangeSide` of a simple section and of each half of a built-up one.
inline constexpr int simpleFlangeSide = -1;
inline constexpr int halfFlangeSide = 0;

/// Which dimension becomes an argument of the profile writer.
enum class Argument : std::uint8_t {
  none,
  d0,
  d1,
  d2,
  d3,
  d4,
  d5,
  d6,
  zero,
  rectangleSide,  ///< d3, or d2, or d1: the first that counts
};

/// How the sections of one family are written.
struct FamilyRow {
  std::wstring_view family;
  std::variant<Parametric, Outline> writer;
  std::array<Argument, 7> arguments;  // a1, a2, ...
};

/// All families and halves of built-up ones; the first row with a family word decides.
std::span<const FamilyRow> familyTable();

/// The row that decides for a family word; null for a family that nobody knows.
const FamilyRow* findFamily(std::wstring_view family);

/// What the row's writer is given for a section of dimensions d0 to d6.
ProfileArguments profileArguments(const FamilyRow& row, const float* sectionDims, int flangeSide);

/// Writes the profile definition of the section called `name` (a whole section text, or the name
/// of a half) and returns its number. `sectionDims` are the bar's dimensions d0 to d6. A family
/// that nobody knows is shown to the user and becomes `writeUnknownProfile`.
std::int32_t writeProfile(StepWriter& writer, const HostText& name, const float* sectionDims,
                          int flangeSide, UserInterface& ui);

/// The same when the row of the name's family is known; null: nobody knows the family.
std::int32_t writeProfile(StepWriter& writer, const FamilyRow* row, const HostText& name,
                          const float* sectionDims, int flangeSide, UserInterface& ui);

}  // namespace exportifc
