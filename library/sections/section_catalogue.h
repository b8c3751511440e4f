// What each section family is made of: the module's own tables, with a meaning for each dimension.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "profiles/profile_dispatch.h"

namespace exportifc {

/// One dimension that a family reads.
struct DimensionUse {
  int index = 0;  ///< of d0 to d9
  Dimension from = Dimension::d0;
  Meaning meaning = Meaning::depth;
  bool mayBeZero = false;
};

/// A family word that may stand at the beginning of a section text.
struct Family {
  std::string word;
  /// One row, or the rows of both halves; empty for built-up families without a profile.
  std::vector<const FamilyRow*> parts{};
  /// In the order of the dimensions. Of a rectangle's second side, d3 stands for d1 to d3.
  std::vector<DimensionUse> dimensions{};
  bool secondSideAnywhere = false;  ///< the width is d3, or d2, or d1
};

/// All families, in the order of the module's table.
std::span<const Family> families();

/// Of a family, or of one of its halves, which a section text may begin with, too. Null for an
/// unknown word.
const Family* findFamilyWord(std::string_view word);

/// The known word that is probably meant; empty when none comes close.
std::string nearestFamily(std::string_view word);

/// What the dimension measures, in the user's language.
std::string meaningText(Meaning meaning);

/// A measure from one end of the section to the other, not that of a plate, a lip or a gap.
bool measuresWhole(Meaning meaning);

/// The IFC entity of the family's profiles.
std::string_view profileEntity(const Family& family);

/// The file name of the family's drawing: brackets are spelt out.
std::string drawingName(const Family& family);

}  // namespace exportifc
