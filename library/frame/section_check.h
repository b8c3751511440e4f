// What would go wrong with one section.
#pragma once

#include <vector>

#include "library/frame/model_check.h"

namespace exportifc {

/// Whether the text fits the record of a bar; bars with one that does not are left out.
bool fitsRecord(const ModelSection& section);

/// Whether its name in the catalogue alone gives the section: other programs may have changed its
/// text.
bool isFromCatalogue(const ModelSection& section);

/// The section's problems; each has the section and the bars of `place`.
std::vector<Problem> checkSection(const ModelSection& section, const Problem& place);

}  // namespace exportifc
