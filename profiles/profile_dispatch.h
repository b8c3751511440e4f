// Finds the profile of a section by its name, and writes it.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "model/bar.h"
#include "profiles/section_family.h"
#include "step/host_text.h"
#include "step/step_writer.h"

namespace exportifc {

/// `flangeSide` of a simple section and of each half of a built-up one.
inline constexpr int simpleFlangeSide = -1;
inline constexpr int halfFlangeSide = 0;

/// How the profile of one name is written: that of a simple family, or of one half.
struct FamilyRow {
  std::wstring name;  ///< the family word, with "_1" or "_2" behind it for a half
  const SectionFamily* family;
  ProfileWriter writer;
};

/// All profile names, in the order of the families; the first row with a name decides.
std::span<const FamilyRow> familyTable();

/// The first row with this name, a family word or half; null when there is none.
const FamilyRow* findFamily(std::wstring_view name);

/// The value of a dimension as the profile is written with it, in millimetres.
double dimensionValue(Dimension from, const SectionDims& dims);

/// What the row's writer is given for a section of dimensions d0 to d6.
ProfileArguments profileArguments(const FamilyRow& row, const SectionDims& sectionDims,
                                  int flangeSide);

/// Writes the profile definition of the section called `name` (a whole section text, or the name
/// of a half) and returns its number. `sectionDims` are the bar's dimensions d0 to d6. A family
/// that is not known becomes `writeUnknownProfile`.
std::int32_t writeProfile(StepWriter& writer, const HostText& name, const SectionDims& sectionDims,
                          int flangeSide);

/// The same with what `findFamily` gives for the name's family.
std::int32_t writeProfile(StepWriter& writer, const FamilyRow* row, const HostText& name,
                          const SectionDims& sectionDims, int flangeSide);

}  // namespace exportifc
