// A drawing of a section family: outline, dimensions, axes, both halves in place.
#pragma once

#include <string>

#include "library/sections/section_catalogue.h"
#include "model/bar.h"

namespace exportifc {

/// Dimensions at which the family's drawing is clear.
SectionDims exampleDimensions(const Family& family);

/// The drawing as SVG. Each dimension is found in the shape by its meaning and length; one that is
/// not there, because the tables disagree, stands in the legend alone.
std::string drawProfile(const Family& family);

}  // namespace exportifc
