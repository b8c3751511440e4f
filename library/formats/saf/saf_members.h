// The members of a SAF workbook as bars.
#pragma once

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

}  // namespace exportifc::saf
