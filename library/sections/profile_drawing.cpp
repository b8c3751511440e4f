#include "library/sections/profile_drawing.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <optional>
#include <utility>
#include <vector>

#include "library/sections/section_shape.h"
#include "library/text/messages.h"
#include "profiles/profile_dispatch.h"
#include "profiles/table_order.h"

namespace exportifc {

namespace {

using enum Meaning;

struct ExampleLength {
  Meaning meaning;
  float length;  // millimetres
};

// All different, so that a length has one dimension.
constexpr ExampleLength exampleLengths[] = {
    {depth, 200},
    {width, 90},
    {leg, 100},
    {diameter, 160},
    {thickness, 9},
    {webThickness, 8},
    {flangeThickness, 13},
    {topFlangeThickness, 13},
    {bottomFlangeThickness, 18},
    {flangeWidth, 130},
    {topFlangeWidth, 88},
    {bottomFlangeWidth, 76},
    {lip, 27},
    {topLip, 27},
    {bottomLip, 33},
    {brim, 44},
    {overWebs, 110},
    {hatHeight, 70},
    {gap, 22},
    {overBoth, 230},
    {overCorners, 190},
    {betweenCentres, 130},
};
static_assert(standsInOrder(exampleLengths, &ExampleLength::meaning, betweenCentres));

struct Segment {
  Point2 from;
  Point2 to;

  double length() const { return std::hypot(to.x - from.x, to.y - from.y); }
};

struct Box {
  double left = 1e30;
  double right = -1e30;
  double bottom = 1e30;
  double top = -1e30;

  void add(const Point2& point) {
    left = std::min(left, point.x);
    right = std::max(right, point.x);
    bottom = std::min(bottom, point.y);
    top = std::max(top, point.y);
  }
  double width() const { return right - left; }
  double height() const { return top - bottom; }
};

struct DrawnDimension {
  std::optional<Segment> segment{};
  bool outside = false;  // drawn beside the section, along one of its extents
};

constexpr double sameLength = 1e-6;

bool fits(const Segment& segment, double length) {
  return std::fabs(segment.length() - length) < sameLength * std::max(1.0, length);
}

/// Where a line crosses the rings, in order; the section lies between the first and second, the
/// third and fourth, and so on. `across` is 0 for a level line y = at, 1 for an upright one x = at.
std::vector<double> crossings(const std::vector<std::vector<Point2>>& rings, int across,
                              double at) {
  const auto along = [&](const Point2& p) { return across == 0 ? p.x : p.y; };
  const auto level = [&](const Point2& p) { return across == 0 ? p.y : p.x; };
  std::vector<double> found;
  for (const auto& ring : rings) {
    for (std::size_t i = 0; i < ring.size(); ++i) {
      const Point2& a = ring[i];
      const Point2& b = ring[(i + 1) % ring.size()];
      if ((level(a) < at) != (level(b) < at)) {
        const double share = (at - level(a)) / (level(b) - level(a));
        found.push_back(along(a) + share * (along(b) - along(a)));
      }
    }
  }
  std::sort(found.begin(), found.end());
  return found;
}

Box boxOf(const std::vector<std::vector<Point2>>& rings) {
  Box box;
  for (const auto& ring : rings) {
    for (const Point2& point : ring) {
      box.add(point);
    }
  }
  return box;
}

/// Looks for a stretch of the given length along lines through the shape: within the material,
/// or from its first to its last edge.
std::optional<Segment> findStretch(const std::vector<std::vector<Point2>>& rings, double length) {
  const Box box = boxOf(rings);
  constexpr std::array<double, 9> places = {0.501, 0.3, 0.7, 0.003, 0.997, 0.03, 0.97, 0.15, 0.85};
  for (const double place : places) {
    for (const int across : {0, 1}) {
      const double at =
          across == 0 ? box.bottom + place * box.height() : box.left + place * box.width();
      const auto edges = crossings(rings, across, at);
      const auto segment = [&](double from, double to) {
        return across == 0 ? Segment{{from, at}, {to, at}} : Segment{{at, from}, {at, to}};
      };
      for (std::size_t i = 0; i + 1 < edges.size(); i += 2) {
        if (fits(segment(edges[i], edges[i + 1]), length)) {
          return segment(edges[i], edges[i + 1]);
        }
      }
      if (edges.size() > 2 && fits(segment(edges.front(), edges.back()), length)) {
        return segment(edges.front(), edges.back());
      }
    }
  }
  return std::nullopt;
}

/// An extent of the box that has the given length.
std::optional<Segment> findExtent(const Box& box, double length) {
  const Segment upright{{box.left, box.bottom}, {box.left, box.top}};
  const Segment level{{box.left, box.top}, {box.right, box.top}};
  if (fits(upright, length)) {
    return upright;
  }
  return fits(level, length) ? std::optional(level) : std::nullopt;
}

std::vector<std::vector<Point2>> placedRings(const PlacedShape& shape) {
  auto rings = shape.rings;
  for (auto& ring : rings) {
    for (Point2& point : ring) {
      point = shape.placed(point);
    }
  }
  return rings;
}

/// The drawing's parts, and the search for what the dimensions measure.
class Section {
 public:
  Section(const Family& family, const SectionDims& dims) : dims_(dims) {
    const int flangeSide = family.parts.size() == 1 ? simpleFlangeSide : halfFlangeSide;
    for (const FamilyRow* const row : family.parts) {
      shapes_.push_back(shapeOf(*row, dims, flangeSide));
      for (auto& ring : placedRings(shapes_.back())) {
        for (const Point2& point : ring) {
          box_.add(point);
        }
        rings_.push_back(std::move(ring));
      }
    }
  }

  const std::vector<std::vector<Point2>>& rings() const { return rings_; }
  const Box& box() const { return box_; }

  DrawnDimension measured(const DimensionUse& use) const {
    const double length = dims_[static_cast<std::size_t>(use.index)];
    DrawnDimension dimension;
    switch (use.meaning) {
      case betweenCentres:
        dimension.segment = Segment{shapes_[1].position, shapes_[0].position};
        break;
      case overBoth:
      case overCorners:
        dimension.segment = findExtent(box_, length);
        dimension.outside = true;
        break;
      case gap: dimension.segment = gapSegment(length); break;
      default: findInFirstPart(length, dimension);
    }
    if (dimension.segment && !fits(*dimension.segment, length)) {
      dimension.segment.reset();
    }
    return dimension;
  }

 private:
  /// In the part's own coordinates, so that turned parts are measured along their own edges.
  void findInFirstPart(double length, DrawnDimension& dimension) const {
    const PlacedShape& shape = shapes_.front();
    dimension.segment = findExtent(boxOf(shape.rings), length);
    dimension.outside = dimension.segment.has_value() && shapes_.size() == 1;
    if (!dimension.segment) {
      dimension.segment = findStretch(shape.rings, length);
    }
    if (dimension.segment) {
      dimension.segment->from = shape.placed(dimension.segment->from);
      dimension.segment->to = shape.placed(dimension.segment->to);
    }
  }

  /// The clear distance of the halves: between their boxes, or along the section's axis when they
  /// meet with their corners.
  std::optional<Segment> gapSegment(double length) const {
    const Box a = boxOf(placedRings(shapes_[0]));
    const Box b = boxOf(placedRings(shapes_[1]));
    const Box& left = a.left < b.left ? a : b;
    const Box& right = a.left < b.left ? b : a;
    const double y =
        std::clamp(0.0, std::max(left.bottom, right.bottom),
                   std::max(std::min(left.top, right.top), std::max(left.bottom, right.bottom)));
    const Segment between{{left.right, y}, {right.left, y}};
    return fits(between, length) ? std::optional(between) : std::nullopt;
  }

  const SectionDims& dims_;
  std::vector<PlacedShape> shapes_;
  std::vector<std::vector<Point2>> rings_;
  Box box_;
};

// ---- drawing

/// Two decimals at most; SVG has y downwards.
std::string coordinate(double value) {
  std::array<char, 32> buffer{};
  const double rounded = std::round(value * 100) / 100 + 0.0;
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), rounded);
  return {buffer.data(), end.ptr};
}

std::string pointText(const Point2& point) {
  return coordinate(point.x) + "," + coordinate(-point.y);
}

std::string escaped(std::string_view text) {
  std::string safe;
  for (const char c : text) {
    switch (c) {
      case '<': safe += "&lt;"; break;
      case '>': safe += "&gt;"; break;
      case '&': safe += "&amp;"; break;
      default: safe.push_back(c);
    }
  }
  return safe;
}

std::string line(const char* kind, const Point2& from, const Point2& to) {
  return std::string("<line class=\"") + kind + "\" x1=\"" + coordinate(from.x) + "\" y1=\"" +
         coordinate(-from.y) + "\" x2=\"" + coordinate(to.x) + "\" y2=\"" + coordinate(-to.y) +
         "\"/>\n";
}

std::string label(const Point2& at, const char* anchor, const std::string& text) {
  return "<text x=\"" + coordinate(at.x) + "\" y=\"" + coordinate(-at.y) + "\" text-anchor=\"" +
         anchor + "\">" + escaped(text) + "</text>\n";
}

/// A dimension line with ticks at its ends.
std::string dimensionLine(const Segment& s) {
  constexpr double tick = 4;
  const double length = std::max(s.length(), 1e-9);
  const Point2 along{(s.to.x - s.from.x) / length, (s.to.y - s.from.y) / length};
  std::string text = line("dim", s.from, s.to);
  for (const Point2& end : {s.from, s.to}) {
    text += line("dim", {end.x - tick * along.y, end.y + tick * along.x},
                 {end.x + tick * along.y, end.y - tick * along.x});
  }
  return text;
}

constexpr double lane = 24;          // distance of dimension lines
constexpr double textRow = 15;       // height of a line of text
constexpr double axisOverhang = 14;  // of the axes beyond the section

/// The material; holes are left out by the even-odd rule.
std::string material(const Section& section) {
  std::string path;
  for (const auto& ring : section.rings()) {
    const char* command = "M";
    for (const Point2& point : ring) {
      path += command + pointText(point);
      command = " L";
    }
    path += " Z ";
  }
  return "<path class=\"section\" fill-rule=\"evenodd\" d=\"" + path + "\"/>\n";
}

/// The ends of the section's axes, which run through the bar's axis.
Point2 axisEnds(const Box& box) {
  return {std::max(box.right, 0.0) + axisOverhang, std::max(box.top, 0.0) + axisOverhang};
}

std::string axes(const Box& box) {
  const Point2 end = axisEnds(box);
  return line("axis", {std::min(box.left, 0.0) - axisOverhang, 0}, {end.x, 0}) +
         line("axis", {0, std::min(box.bottom, 0.0) - axisOverhang}, {0, end.y}) +
         label({end.x + 3, -4}, "start", "x") + label({0, end.y + 4}, "middle", "y");
}

/// Around a section, what the next line of each kind may take.
struct FreePlaces {
  explicit FreePlaces(const Box& box)
      : left(box.left - lane - axisOverhang / 2),
        above(axisEnds(box).y + lane),
        right(axisEnds(box).x + lane),
        rightRow(box.top),
        legendRow(std::min(box.bottom, 0.0) - axisOverhang - 2 * textRow) {}

  double left;       // x of an upright dimension line
  double above;      // y of a level one
  double right;      // x of names with a leader
  double rightRow;   // y of such a name
  double legendRow;  // y of a line below everything
};

/// Long ones beside the section, the others inside with a leader to the right.
std::string drawnDimension(const DrawnDimension& dimension, const std::string& name,
                           FreePlaces& free) {
  const Segment& s = *dimension.segment;
  const Point2 middle{0.5 * (s.from.x + s.to.x), 0.5 * (s.from.y + s.to.y)};
  const auto beside = [&](const Segment& moved) {
    return line("thin", s.from, moved.from) + line("thin", s.to, moved.to) + dimensionLine(moved);
  };
  if (dimension.outside && std::fabs(s.from.x - s.to.x) < sameLength) {
    const double x = std::exchange(free.left, free.left - lane);
    return beside({{x, s.from.y}, {x, s.to.y}}) + label({x - 5, middle.y - 4}, "end", name);
  }
  if (dimension.outside && std::fabs(s.from.y - s.to.y) < sameLength) {
    const double y = std::exchange(free.above, free.above + lane);
    return beside({{s.from.x, y}, {s.to.x, y}}) + label({middle.x, y + 5}, "middle", name);
  }
  const Point2 end{free.right, std::exchange(free.rightRow, free.rightRow - 1.5 * textRow)};
  return dimensionLine(s) + line("thin", middle, end) +
         label({end.x + 4, end.y - 4}, "start", name);
}

/// The sheet around all that is drawn.
std::string sheet(const std::string& title, const Box& box, const FreePlaces& free,
                  const std::string& drawn) {
  constexpr double leastWidth = 330;  // room for the legend
  const double left = std::min(free.left, box.left - lane) - textRow;
  const double top = free.above + textRow;
  const std::string width = coordinate(std::max(free.right + 2 * lane - left, leastWidth));
  const std::string height = coordinate(top - free.legendRow);
  return "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"" + coordinate(left) + " " +
         coordinate(-top) + " " + width + " " + height + "\" width=\"" + width + "\" height=\"" +
         height +
         "\">\n<style>.section{fill:#b8c8d8;stroke:#203040;stroke-width:1}"
         ".axis{stroke:#c03020;stroke-width:.8;stroke-dasharray:9 3 2 3}"
         ".dim{stroke:#104080;stroke-width:1}.thin{stroke:#104080;stroke-width:.4}"
         "text{font:12px sans-serif;fill:#102030}</style>\n"
         "<rect x=\"" +
         coordinate(left) + "\" y=\"" + coordinate(-top) + "\" width=\"" + width + "\" height=\"" +
         height + "\" fill=\"white\"/>\n<title>" + escaped(title) + "</title>\n" + drawn +
         "</svg>\n";
}

}  // namespace

SectionDims exampleDimensions(const Family& family) {
  SectionDims dims{};
  for (const DimensionUse& use : family.dimensions) {
    dims[static_cast<std::size_t>(use.index)] =
        exampleLengths[static_cast<std::size_t>(use.meaning)].length;
  }
  return dims;
}

std::string drawProfile(const Family& family) {
  const SectionDims dims = exampleDimensions(family);
  const Section section(family, dims);
  const Box& box = section.box();
  FreePlaces free(box);
  std::string drawn = material(section) + axes(box);
  std::string legend;
  const auto explain = [&](const std::string& text) {
    legend += label({box.left - lane, free.legendRow}, "start", text);
    free.legendRow -= textRow;
  };
  for (const DimensionUse& use : family.dimensions) {
    const std::string name = "d" + std::to_string(use.index);
    explain(name + "  " + meaningText(use.meaning));
    if (const DrawnDimension dimension = section.measured(use); dimension.segment) {
      drawn += drawnDimension(dimension, name, free);
    }
  }
  if (family.secondSideAnywhere) {
    explain(say(texts::secondSide));
  }
  return sheet(family.word, box, free, drawn + legend);
}

}  // namespace exportifc
