// SAF, the Structural Analysis Format: a workbook that analysis programs write.
#pragma once

#include <vector>

#include "library/frame/model.h"
#include "library/frame/problem.h"
#include "library/workbook/workbook.h"

namespace exportifc {

/// Whether the workbook holds members as SAF does.
bool isSaf(const Workbook& book);

/// The frame in a SAF workbook: straight members of one section each. What else the workbook holds
/// is named in `found`, in notes. Throws ModelError.
Model readSafModel(const Workbook& book);

/// Fills in cells by pointers.
void locateInSaf(const Workbook& book, std::vector<Problem>& problems);

}  // namespace exportifc
