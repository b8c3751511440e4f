// Area and painted outline of a section, from the shapes that are drawn of it.
#pragma once

#include "library/sections/section_catalogue.h"
#include "model/bar.h"

namespace exportifc {

/// Of all halves together, exact for what the file holds: fillets are not drawn and not counted.
struct SectionFigures {
  double area = 0.0;       ///< mm²
  double perimeter = 0.0;  ///< mm that paint reaches: not the inside of what is closed
  int pieces = 0;          ///< halves, or 1
};

/// Without pieces for a family that is not drawn, and where the dimensions give no area.
SectionFigures figuresOf(const Family& family, const SectionDims& dims);

}  // namespace exportifc
