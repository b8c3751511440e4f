#include "library/formats/saf/saf_shapes.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>
#include <limits>
#include <numbers>
#include <vector>

#include "library/formats/saf/saf_table.h"
#include "library/sections/section_catalogue.h"
#include "model/batch_source.h"
#include "profiles/profile_dispatch.h"

namespace exportifc::saf {

namespace {

constexpr double left = 0.0;
constexpr double up = 90.0;
constexpr double right = 180.0;
constexpr double down = -90.0;
constexpr double downLeft = -45.0;
constexpr double downRight = -135.0;
constexpr double upLeft = 45.0;
constexpr double upRight = 135.0;

enum class Kind : std::uint8_t { symmetric, channel, angle, tee, unequal, anglePair, star };

/// How a family is drawn: in which direction its mark points when the drawn x leads to the left.
/// Every shape is symmetric about that direction.
struct FamilyDrawing {
  std::string_view word;
  Kind kind;
  double degrees;
};

// Families that are not here look the same from left and right and from top and bottom.
constexpr FamilyDrawing drawings[] = {
    {"UAP", Kind::channel, right},
    {"ULAM", Kind::channel, right},
    {"[", Kind::channel, right},
    {"UENR", Kind::channel, right},
    {"L", Kind::angle, down},
    {"LLM", Kind::angle, down},
    {"LLM_EN", Kind::angle, left},
    {"LFF", Kind::angle, downLeft},
    {"LLAM_EN", Kind::angle, downLeft},
    {"LLAM", Kind::angle, downLeft},
    {"TEE", Kind::tee, left},
    {"TW", Kind::tee, down},
    {"TS", Kind::tee, down},
    {"WT", Kind::tee, down},

    {"PSA", Kind::unequal, up},

    {"2L", Kind::anglePair, up},
    {"2LLM", Kind::anglePair, up},
    {"LL", Kind::anglePair, up},
    {"LLLM", Kind::anglePair, up},
    {"LX", Kind::star, upLeft},
    {"LXLM", Kind::star, upLeft},
};

FamilyDrawing drawingOf(std::string_view word) {
  const auto* const found =
      std::find_if(std::begin(drawings), std::end(drawings),
                   [&](const FamilyDrawing& row) { return row.word == word; });
  return found == std::end(drawings) ? FamilyDrawing{word, Kind::symmetric, left} : *found;
}

/// How a form code has the sections of a kind stand; the first of a kind is what stands for all
/// without one.
struct FormCode {
  int code;
  Kind kind;
  double mark;
};

constexpr FormCode formCodes[] = {
    {1, Kind::symmetric, left}, {4, Kind::angle, downLeft}, {10, Kind::angle, downRight},
    {11, Kind::angle, upLeft},  {12, Kind::angle, upRight}, {5, Kind::channel, right},
    {13, Kind::channel, left},  {6, Kind::tee, down},       {9, Kind::tee, up},
    {14, Kind::unequal, up},    {15, Kind::unequal, down},  {0, Kind::anglePair, down},
    {0, Kind::star, upRight},
};

std::string_view familyWord(std::string_view text) { return text.substr(0, text.find(' ')); }

using Parameters = std::span<const double>;

FoundShape drawn(std::string_view word, std::initializer_list<double> dims, double mark = left) {
  return {.text = sectionTextOf(word, {dims.begin(), dims.size()}), .mark = mark, .bounds = {}};
}

FoundShape undrawn(double height, double width) {
  return {.text = {}, .mark = left, .bounds = {.height = height, .width = width}};
}

bool same(double a, double b) { return std::fabs(a - b) < 1e-6; }

/// An I with its flanges, equal or not.
FoundShape flanged(double h, double topWidth, double top, double bottomWidth, double bottom,
                   double web) {
  return same(topWidth, bottomWidth) && same(top, bottom)
             ? drawn("PS", {h, topWidth, top, web})
             : drawn("PSA", {h, topWidth, top, bottomWidth, bottom, web}, up);
}

/// The families of angles have equal legs.
FoundShape angle(double h, double b, double horizontal, double upright, double heel) {
  return same(h, b) && same(horizontal, upright) ? drawn("LLAM", {h, 0, 0, upright}, heel)
                                                 : undrawn(h, b);
}

FoundShape asRectangle(Parameters p) { return undrawn(p[0], p[1]); }

// Parameters are those of the shape's name. What no family draws still has bounds where the
// parameters say them plainly.
constexpr ParametricShape parametricShapes[] = {
    {"Circle", "D", 1, [](Parameters p) { return drawn("RED", {p[0]}); }},
    {"Rectangle", "H; B", 2,
     [](Parameters p) {
       return drawn("RET", {p[0], p[1]});
     }},
    {"I Section", "H; Bh; Bs; ts; th; s", 6,
     [](Parameters p) { return flanged(p[0], p[1], p[4], p[2], p[3], p[5]); }},
    {"T Section", "H; B; th; sh", 4,
     [](Parameters p) {
       return drawn("TS", {p[0], p[1], p[2], p[3]}, up);
     }},
    {"L Section", "H; B; th; sh", 4,
     [](Parameters p) { return angle(p[0], p[1], p[2], p[3], downLeft); }},
    {"L Section opposite", "H; B; th; sh", 4,
     [](Parameters p) { return angle(p[0], p[1], p[2], p[3], downRight); }},
    {"Pipe", "D; t", 2,
     [](Parameters p) {
       return drawn("TUBO", {p[0], 0, 0, p[1]});
     }},
    {"I rolled", "H; B; t; s; R", 4,
     [](Parameters p) {
       return drawn("ILAM", {p[0], p[1], p[2], p[3]});
     }},
    {"I rolled asymmetric", "H; s; Bt; Bb; tt; tb; R", 6,
     [](Parameters p) { return flanged(p[0], p[2], p[4], p[3], p[5], p[1]); }},
    {"Tube", "H; B; s; R; r1", 3,
     [](Parameters p) {
       return drawn("BOX", {p[0], p[1], 0, p[2]});
     }},
    {"Angle", "H; B; t; R; R1", 3,
     [](Parameters p) { return angle(p[0], p[1], p[2], p[2], downLeft); }},
    {"Channel", "H; B; t; s; R", 4,
     [](Parameters p) {
       return drawn("UAP", {p[0], p[1], p[3], p[2]}, right);
     }},
    {"T tee", "H; B; t; s; R", 4,
     [](Parameters p) {
       return drawn("WT", {p[0], p[1], p[2], p[3]}, up);
     }},
    {"Cold formed Channel", "H; B; s; r", 3,
     [](Parameters p) {
       return drawn("[", {p[0], p[1], 0, p[2]}, right);
     }},
    {"Cold formed Channel with lips", "H; B; s; r; c", 5,
     [](Parameters p) {
       return drawn("UENR", {p[0], p[1], p[4], p[2]}, right);
     }},
    {"Oval", "H; B", 2, asRectangle},
    {"I Section with haunch", "H; B; ta; s; ts; th", 2, asRectangle},
    {"I Section with haunch Asymmetric", "H; Bt; tt; tth; Bb; tb; tbh; s", 5,
     [](Parameters p) { return undrawn(p[0], std::max(p[1], p[4])); }},
    {"Polygon", "R; n", 2, [](Parameters p) { return undrawn(2 * p[0], 2 * p[0]); }},
    {"Trapezoid", "H; Bh; Bs", 3, [](Parameters p) { return undrawn(p[0], std::max(p[1], p[2])); }},
    {"T Section with haunch", "H; Bh; Bs; Bw; th", 4,
     [](Parameters p) {
       return undrawn(p[0], std::max({p[1], p[2], p[3]}));
     }},
    {"U Section", "H; B; th; sh", 2, asRectangle},
    {"Z zee", "H; B; t; s; R; R1", 4, [](Parameters p) { return undrawn(p[0], 2 * p[1] - p[3]); }},
    {"Cold formed Zee", "H; B; s; r", 3,
     [](Parameters p) { return undrawn(p[0], 2 * p[1] - p[2]); }},
};

struct CompoundShape {
  std::string_view name;
  Kind of;
  FoundShape (*find)(const SectionDims& one, double gap);
};

FoundShape anglesBackToBack(const SectionDims& d, double gap) {
  return drawn("2LLM", {d[0], 0, 0, d[3], gap}, down);
}

FoundShape anglesFacing(const SectionDims& d, double gap) {
  return drawn("LLLM", {d[0], 0, 0, d[3], gap + d[0]}, down);
}

constexpr CompoundShape compoundShapes[] = {
    {"Double Channel FtF", Kind::channel,
     [](const SectionDims& d, double gap) {
       return drawn("UULM", {d[0], d[1], d[2], d[3], 2.0 * d[1] + gap});
     }},
    {"Double Channel BtB", Kind::channel,
     [](const SectionDims& d, double gap) {
       return drawn("2ULM", {d[0], d[1], d[2], d[3], gap});
     }},
    {"Double Angle BtB", Kind::angle, anglesBackToBack},
    {"Double Angle BtB LL", Kind::angle, anglesBackToBack},
    {"Double Angle FtF", Kind::angle, anglesFacing},
    {"Double Angle FtF LL", Kind::angle, anglesFacing},
    {"Starred Angle", Kind::angle,
     [](const SectionDims& d, double gap) {
       return drawn("LXLM", {d[0], 0, 0, d[3], gap}, upRight);
     }},
};

/// The row of a shape's name; what stands in parentheses behind it explains it.
template <class Shape, std::size_t Count>
const Shape* findShape(const Shape (&shapes)[Count], std::string_view name) {
  const std::string wanted = comparable(name.substr(0, name.find('(')));
  const auto* const found =
      std::find_if(std::begin(shapes), std::end(shapes),
                   [&](const Shape& shape) { return comparable(shape.name) == wanted; });
  return found == std::end(shapes) ? nullptr : found;
}

/// The outlines of a section in its drawn axes; every ring but the first of a part is a hole.
struct PlacedRing {
  std::vector<Point2> points;
  bool isHole;
};

std::vector<PlacedRing> ringsOf(std::string_view text, const SectionDims& dims) {
  std::vector<PlacedRing> rings;
  const Family* const family = findFamilyWord(familyWord(text));
  if (family == nullptr) {
    return rings;
  }
  const int side = family->parts.size() == 1 ? simpleFlangeSide : halfFlangeSide;
  for (const FamilyRow* const part : family->parts) {
    const PlacedShape shape = shapeOf(*part, dims, side);
    for (std::size_t i = 0; i < shape.rings.size(); ++i) {
      PlacedRing& ring = rings.emplace_back(PlacedRing{.points = {}, .isHole = i > 0});
      for (const Point2& point : shape.rings[i]) {
        ring.points.push_back(shape.placed(point));
      }
    }
  }
  return rings;
}

/// Twice the area under an edge, and its share of the first moments.
void addRing(const PlacedRing& ring, Standing& sum) {
  Standing own;
  for (std::size_t i = 0; i < ring.points.size(); ++i) {
    const Point2& a = ring.points[i];
    const Point2& b = ring.points[(i + 1) % ring.points.size()];
    const double twice = a.x * b.y - b.x * a.y;
    own.area += twice / 2;
    own.centroid.x += (a.x + b.x) * twice / 6;
    own.centroid.y += (a.y + b.y) * twice / 6;
    if (!ring.isHole) {
      sum.left = std::max(sum.left, a.x);
      sum.right = std::min(sum.right, a.x);
      sum.top = std::max(sum.top, a.y);
      sum.bottom = std::min(sum.bottom, a.y);
    }
  }
  const double sign = (own.area < 0) == ring.isHole ? 1.0 : -1.0;
  sum.area += sign * own.area;
  sum.centroid.x += sign * own.centroid.x;
  sum.centroid.y += sign * own.centroid.y;
}

}  // namespace

const ParametricShape* findParametricShape(std::string_view name) {
  return findShape(parametricShapes, name);
}

FoundShape rolledShape(std::string_view text, int formCode) {
  const Kind kind = drawingOf(familyWord(text)).kind;
  const auto* row = std::find_if(std::begin(formCodes), std::end(formCodes), [&](const auto& code) {
    return code.kind == kind && code.code == formCode;
  });
  if (row == std::end(formCodes)) {
    row = std::find_if(std::begin(formCodes), std::end(formCodes),
                       [&](const auto& code) { return code.kind == kind; });
  }
  return {.text = std::string(text), .mark = row->mark, .bounds = {}};
}

FoundShape compoundShape(std::string_view name, std::string_view text, double gap) {
  const CompoundShape* const row = findShape(compoundShapes, name);
  if (row == nullptr || drawingOf(familyWord(text)).kind != row->of) {
    return {};
  }
  return row->find(parseSectionDims(text), gap);
}

std::string sectionTextOf(std::string_view word, std::span<const double> dims) {
  constexpr std::size_t longest = sizeof(BarRecord::sectionName) - 1;
  std::string text;
  for (int decimals = 4; decimals >= 0; --decimals) {
    text = word;
    for (const double dim : dims) {
      std::array<char, 64> digits{};
      char* end = std::to_chars(digits.data(), digits.data() + digits.size(), dim,
                                std::chars_format::fixed, decimals)
                      .ptr;
      if (decimals > 0) {
        while (end[-1] == '0') {
          --end;
        }
        end -= end[-1] == '.' ? 1 : 0;
      }
      text.append(" ").append(digits.data(), end);
    }
    if (text.size() <= longest) {
      break;
    }
  }
  return text;
}

// The drawn shape is turned by φ, so that its mark points where it should in the picture:
//   drawn x → cos φ · left + sin φ · up,   drawn y → −sin φ · left + cos φ · up.
// Along a member that goes away from who looks, left × up is the member's x, and these two are what
// the export draws: its y is bar × x. Along one that comes towards the picture they are a
// left-handed pair. A shape that is symmetric about its mark, at the drawn angle μ, looks the same
// with the pair mirrored there, which is right-handed again:
//   x' = cos 2μ · x + sin 2μ · y,   y' = sin 2μ · x − cos 2μ · y.
Standing standingOf(std::string_view text, const SectionDims& dims, double mark, bool seenFromEnd) {
  constexpr double degree = std::numbers::pi / 180.0;
  const double drawnMark = drawingOf(familyWord(text)).degrees;
  const double turn = (mark - drawnMark) * degree;
  Point2 x{.x = std::cos(turn), .y = std::sin(turn)};
  Point2 y{.x = -x.y, .y = x.x};
  if (seenFromEnd) {
    const double c = std::cos(2 * drawnMark * degree);
    const double s = std::sin(2 * drawnMark * degree);
    const Point2 old = x;
    x = {.x = c * old.x + s * y.x, .y = c * old.y + s * y.y};
    y = {.x = s * old.x - c * y.x, .y = s * old.y - c * y.y};
  }
  Standing standing;
  standing.xAxis = x;
  constexpr double far = std::numeric_limits<double>::max();
  standing.left = standing.top = -far;
  standing.right = standing.bottom = far;
  for (PlacedRing& ring : ringsOf(text, dims)) {
    for (Point2& point : ring.points) {
      point = {.x = point.x * x.x + point.y * y.x, .y = point.x * x.y + point.y * y.y};
    }
    addRing(ring, standing);
  }
  if (standing.area > 0.0) {
    standing.centroid = {.x = standing.centroid.x / standing.area,
                         .y = standing.centroid.y / standing.area};
  }
  return standing;
}

}  // namespace exportifc::saf
