#include "profiles/section_name.h"

#include <algorithm>

#include "profiles/section_family.h"

namespace exportifc {

std::wstring_view profileFamilyOf(std::wstring_view name) {
  return name.substr(0, name.find(L' '));
}

bool splitBuiltUpProfile(std::wstring_view familyWord, std::wstring& firstHalfName,
                         std::wstring& secondHalfName) {
  firstHalfName.assign(familyWord).append(L"_1");
  secondHalfName.assign(familyWord).append(L"_2");
  const auto families = sectionFamilies();
  return std::any_of(families.begin(), families.end(), [&](const SectionFamily& family) {
    return family.isBuiltUp && family.word == familyWord;
  });
}

}  // namespace exportifc
