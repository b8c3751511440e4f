// What all bars of a section share, made once for each section of a model.
#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "model/bar.h"
#include "profiles/profile_dispatch.h"

namespace exportifc {

/// What one bar of a section is written as: the whole of it, or one half of a built-up section.
struct SectionPart {
  bool isHalf = false;
  BarGeometry bar;                 ///< its texts are ready; the rest is the bar loop's to fill in
  const FamilyRow* row = nullptr;  ///< of the family in `profileName`; null: it is not known

  /// What decides on the profile: the whole section text, or the name of the half.
  const HostText& profileName() const { return isHalf ? bar.sectionLabel : bar.sectionName; }
};

/// A model has a few dozen sections among a million bars: their texts are widened, split and made
/// ready for the file once.
class KnownSections {
 public:
  /// The parts, one or two, of the record's section. They stay where they are until the next call.
  std::span<SectionPart> partsOf(const BarRecord& record);

 private:
  struct Hash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const {
      return std::hash<std::string_view>()(text);
    }
  };

  std::unordered_map<std::string, std::vector<SectionPart>, Hash, std::equal_to<>> byText_;
};

}  // namespace exportifc
