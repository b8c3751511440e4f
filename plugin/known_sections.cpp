#include "plugin/known_sections.h"

#include <algorithm>
#include <iterator>

#include "profiles/section_name.h"

namespace exportifc {

namespace {

// In sections: a model whose bars all have a section of their own must not fill the memory.
constexpr std::size_t mostKept = 4096;

SectionPart part(const std::wstring& name, std::wstring_view label, bool isHalf) {
  SectionPart result;
  result.isHalf = isHalf;
  result.bar.sectionName = name;
  result.bar.sectionLabel = label;
  result.row = findFamily(profileFamilyOf(result.profileName()));
  return result;
}

std::vector<SectionPart> newParts(const BarRecord& record) {
  std::wstring name;
  widenSectionName(record, name);
  const std::wstring_view family = profileFamilyOf(name);
  std::wstring firstHalf;
  std::wstring secondHalf;
  if (splitBuiltUpProfile(family, firstHalf, secondHalf)) {
    return {part(name, firstHalf, true), part(name, secondHalf, true)};
  }
  return {part(name, family, false)};
}

}  // namespace

std::span<SectionPart> KnownSections::partsOf(const BarRecord& record) {
  const auto* const end =
      std::find(std::begin(record.sectionName), std::end(record.sectionName), '\0');
  const std::string_view text(record.sectionName,
                              static_cast<std::size_t>(end - std::begin(record.sectionName)));
  auto known = byText_.find(text);
  if (known == byText_.end()) {
    if (byText_.size() == mostKept) {
      byText_.clear();
    }
    known = byText_.emplace(text, newParts(record)).first;
  }
  return known->second;
}

}  // namespace exportifc
