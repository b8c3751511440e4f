#include "profiles/section_name.h"

#include <algorithm>
#include <array>

namespace exportifc {

namespace {

constexpr std::array<std::wstring_view, 21> builtUpTable = {
    L"][",              // U shapes
    L"[]",              // U shapes
    L"UUE",             // C shapes
    L"IENR",            // C shapes
    L"CA",              // C shapes without a gap
    L"2L",              // angles
    L"2L_ASSIMETRICO",  // no writer for its halves: exported as unknown profiles
    L"LL",              // angles
    L"><",              // angles turned 45 degrees
    L"<>",              // angles turned 45 degrees
    L"LX",              // angles
    L"LZ",              // angles
    L"ICAR",            // closed outlines
    L"2LLM",            // as 2L
    L"LLLM",            // as LL
    L"VVLM",            // as ><
    L"LVLM",            // as <>
    L"LXLM",            // as LX
    L"LZLM",            // as LZ
    L"UULM",            // U shapes
    L"2ULM",            // U shapes
};

}  // namespace

std::span<const std::wstring_view> builtUpFamilies() { return builtUpTable; }

std::wstring_view profileFamilyOf(std::wstring_view name) {
  return name.substr(0, name.find(L' '));
}

bool splitBuiltUpProfile(std::wstring_view familyWord, std::wstring& firstHalfName,
                         std::wstring& secondHalfName) {
  firstHalfName.assign(familyWord).append(L"_1");
  secondHalfName.assign(familyWord).append(L"_2");
  return std::find(builtUpTable.begin(), builtUpTable.end(), familyWord) != builtUpTable.end();
}

}  // namespace exportifc
