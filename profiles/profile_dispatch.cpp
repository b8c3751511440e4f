#include "profiles/profile_dispatch.h"

#include <cstddef>
#include <unordered_map>
#include <vector>

#include "profiles/section_name.h"

namespace exportifc {

namespace {

std::vector<FamilyRow> allRows() {
  std::vector<FamilyRow> rows;
  for (const SectionFamily& family : sectionFamilies()) {
    std::wstring first(family.word);
    std::wstring second;
    if (family.isBuiltUp) {
      splitBuiltUpProfile(family.word, first, second);
    }
    if (family.profiles[0]) {
      rows.push_back({.name = first, .family = &family, .writer = *family.profiles[0]});
    }
    if (family.profiles[1]) {
      rows.push_back({.name = second, .family = &family, .writer = *family.profiles[1]});
    }
  }
  return rows;
}

/// The second side of a rectangle: hosts fill one of three dimensions and leave the others at 0.
double secondRectangleSide(const SectionDims& dims) {
  constexpr double smallestSide = 0.001;
  if (double{dims[3]} >= smallestSide) {
    return dims[3];
  }
  if (double{dims[2]} >= smallestSide) {
    return dims[2];
  }
  return dims[1];
}

}  // namespace

std::span<const FamilyRow> familyTable() {
  static const std::vector<FamilyRow> rows = allRows();
  return rows;
}

const FamilyRow* findFamily(std::wstring_view name) {
  static const auto rows = [] {
    std::unordered_map<std::wstring_view, const FamilyRow*> byName;
    for (const FamilyRow& row : familyTable()) {
      byName.emplace(row.name, &row);  // keeps the first
    }
    return byName;
  }();
  const auto found = rows.find(name);
  return found == rows.end() ? nullptr : found->second;
}

double dimensionValue(Dimension from, const SectionDims& dims) {
  switch (from) {
    case Dimension::zero: return 0.0;
    case Dimension::rectangleSide: return secondRectangleSide(dims);
    default: return dims[static_cast<std::size_t>(from)];
  }
}

ProfileArguments profileArguments(const FamilyRow& row, const SectionDims& sectionDims,
                                  int flangeSide) {
  ProfileArguments arguments{static_cast<double>(flangeSide)};
  std::size_t next = 1;
  for (const FamilyArgument& argument : row.family->arguments) {
    arguments[next++] = dimensionValue(argument.from, sectionDims);
  }
  return arguments;
}

std::int32_t writeProfile(StepWriter& writer, const HostText& name, const SectionDims& sectionDims,
                          int flangeSide) {
  return writeProfile(writer, findFamily(profileFamilyOf(name)), name, sectionDims, flangeSide);
}

std::int32_t writeProfile(StepWriter& writer, const FamilyRow* row, const HostText& name,
                          const SectionDims& sectionDims, int flangeSide) {
  if (row == nullptr) {
    return writeUnknownProfile(writer);
  }
  const ProfileArguments arguments = profileArguments(*row, sectionDims, flangeSide);
  if (const auto* const variant = std::get_if<Parametric>(&row->writer)) {
    return writeParametricProfile(writer, *variant, name, arguments);
  }
  return writeOutlineProfile(writer, std::get<Outline>(row->writer), name, arguments);
}

}  // namespace exportifc
