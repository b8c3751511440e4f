// The members of a SAF workbook as bars.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "library/formats/saf/saf_project.h"
#include "library/formats/saf/saf_sections.h"
#include "library/frame/model.h"
#include "library/workbook/workbook.h"

namespace exportifc::saf {

/// Reads nodes, members and ribs; returns for each bar the cell of its member.
std::vector<std::string> readMembers(const Workbook& book, const Project& project,
                                     const Sections& sections, Model& model);

/// The bar type of a kind of member, by the number of `barTypes`; below 0 for a word that is none.
int barTypeOfMember(std::string_view type);

}  // namespace exportifc::saf
