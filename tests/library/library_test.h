// What the tests of models as documents share.
#pragma once

#include <cstddef>
#include <initializer_list>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include "library/frame/model.h"
#include "library/frame/problem.h"
#include "library/text/text.h"

namespace exportifc {

inline bool operator==(const TextPlace& a, const TextPlace& b) {
  return a.line == b.line && a.column == b.column;
}
void PrintTo(const TextPlace& place, std::ostream* stream);

}  // namespace exportifc

namespace exportifc::test {

/// A language for a while; English again behind it, as every test begins.
using InLanguage = SpokenLanguage;

// ---- models

/// Which bars are checked and exported.
inline constexpr bool all = false;
inline constexpr bool visibleOnly = true;

/// A section of that name and text, with the dimensions that the text gives.
ModelSection sectionOf(const std::string& text);

/// The same with dimensions of their own.
ModelSection sectionWith(const std::string& text, std::initializer_list<float> dims);

/// A sound model in millimetres: a bar of "W 200 100 8 6" from the origin to (0, 0, 3000), and one
/// of "EC 80 0 0 12" on from there to (5000, 0, 3000).
Model soundModel();

// ---- places

/// Of the character at that byte of a text.
TextPlace placeAt(std::string_view text, std::size_t byte);

// ---- problems

/// "error missing-dimension d2 3", the last from the fourth bar on; the pointer is left out.
std::string brief(const Problem& problem);
std::vector<std::string> briefs(const std::vector<Problem>& problems);

/// The first with that code; fails the test when there is none.
Problem problemWith(const std::vector<Problem>& problems, std::string_view code);

}  // namespace exportifc::test
