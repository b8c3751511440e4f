// Ribs of a SAF workbook: members that hang under slabs or stand on them.
#pragma once

#include "library/formats/saf/saf_bars.h"
#include "library/formats/saf/saf_member_rows.h"
#include "library/formats/saf/saf_project.h"
#include "library/formats/saf/saf_sections.h"
#include "library/frame/model.h"
#include "library/workbook/workbook.h"

namespace exportifc::saf {

/// Adds those that lie along the slab they name; the others are remarked.
void readRibs(const Workbook& book, const Project& project, const Sections& sections,
              const Nodes& nodes, Model& model, Remarks& remarks, Bars& bars);

}  // namespace exportifc::saf
