// The cross-sections of a SAF workbook, and how each stands in its members.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "library/formats/saf/saf_project.h"
#include "library/formats/saf/saf_shapes.h"
#include "library/frame/model.h"
#include "library/workbook/workbook.h"

namespace exportifc::saf {

using NameIndex = std::map<std::string, std::int32_t, std::less<>>;

/// Fills `materials` and `sections` of the model; by index how each section stands.
class Sections {
 public:
  Sections(const Workbook& book, const Project& project, Model& model);

  const NameIndex& names() const { return names_; }
  const Standing& standing(std::int32_t section) const {
    return standings_[static_cast<std::size_t>(section)];
  }
  /// Where the section stands in the workbook: "StructuralCrossSection!A5".
  const std::string& cell(std::int32_t section) const {
    return cells_[static_cast<std::size_t>(section)];
  }

 private:
  NameIndex names_;
  std::vector<Standing> standings_;
  std::vector<std::string> cells_;
};

}  // namespace exportifc::saf
