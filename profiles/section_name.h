// Takes a section's name apart: its family and, for built-up sections, its two halves.
#pragma once

#include <string>
#include <string_view>

namespace exportifc {

/// The name up to its first blank, the whole name when it has none. A view into `name`.
std::wstring_view profileFamilyOf(std::wstring_view name);

/// Sets the outputs to the family word with "_1" and "_2" behind it, and returns whether the
/// family is built up of two components, each exported as a profile and an element of its own.
bool splitBuiltUpProfile(std::wstring_view familyWord, std::wstring& firstHalfName,
                         std::wstring& secondHalfName);

}  // namespace exportifc
