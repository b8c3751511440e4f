// Which section family draws a SAF cross-section, and how it is turned in the picture of one.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "library/sections/section_shape.h"
#include "model/bar.h"

namespace exportifc::saf {

struct Bounds {
  double height = 0.0;  ///< millimetres; 0: not known
  double width = 0.0;
};

/// A shape as it is found in the tables.
struct FoundShape {
  std::string text;  ///< of the section; empty: no family draws it
  /// Where its mark points in the picture of the section: the opening of a channel, the heel of an
  /// angle, the flange of a tee. Degrees, from left (0) to up (90).
  double mark = 0.0;
  Bounds bounds;            ///< of what no family draws
  std::string catalogue{};  ///< the rolled section that it is
};

/// A shape that programs give by its parameters, in millimetres.
struct ParametricShape {
  std::string_view name;
  std::string_view parameters;  ///< their names
  std::size_t needed;           ///< of them; radii are not
  FoundShape (*find)(std::span<const double> parameters);
};

/// Null for a name that is none.
const ParametricShape* findParametricShape(std::string_view name);

/// A rolled section by its text, standing as the form code says; 0: as sections of its kind stand
/// without one.
FoundShape rolledShape(std::string_view text, int formCode);

/// A shape of several rolled sections with the text of one of them, a gap apart. Empty for what no
/// family draws.
FoundShape compoundShape(std::string_view name, std::string_view text, double gap);

/// Family word and dimensions as short as they can be, to a tenth of a micrometre.
std::string sectionTextOf(std::string_view word, std::span<const double> dims);

/// A section as it stands in its picture: lengths are millimetres to the left (x) and up (y).
struct Standing {
  Point2 xAxis;  ///< where the drawn x of the section points
  Point2 centroid;
  double left = 0.0, right = 0.0, top = 0.0, bottom = 0.0;
  double area = 0.0;
};

/// `seenFromEnd`: the member comes towards who looks at the picture, instead of going away.
Standing standingOf(std::string_view text, const SectionDims& dims, double mark, bool seenFromEnd);

}  // namespace exportifc::saf
