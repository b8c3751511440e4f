// Sections that change along the members of a SAF workbook.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "library/formats/saf/saf_bars.h"
#include "library/formats/saf/saf_project.h"
#include "library/formats/saf/saf_sections.h"
#include "library/workbook/workbook.h"

namespace exportifc::saf {

/// Sections along members, by name; without any where the section changes gradually.
struct Varying {
  std::vector<Span> spans;
  bool isCentred = true;
};

/// By the names that members refer to.
std::map<std::string, Varying, std::less<>> readVarying(const Workbook& book,
                                                        const Project& project,
                                                        const NameIndex& sections);

}  // namespace exportifc::saf
