// What a SAF workbook says of itself: units, which way is up, how sections lie in members.
#pragma once

#include <string>
#include <vector>

#include "library/formats/saf/saf_axes.h"
#include "library/frame/problem.h"
#include "library/workbook/workbook.h"

namespace exportifc::saf {

struct Project {
  std::string title;
  bool imperial = false;
  const GlobalSystem* global = nullptr;
  const SectionSystem* sections = nullptr;
};

/// From the sheets Project and Model. What is missing there is taken as most programs have it, and
/// said in `found`.
Project readProject(const Workbook& book, std::vector<Problem>& found);

}  // namespace exportifc::saf
