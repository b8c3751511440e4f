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

// All different, so that a length tells its dimension.
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
  DimensionUse use;
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
  // A line that runs there and back covers nothing: it joins an outline to its own inner ring.
  for (std::size_t i = 0; i + 1 < found.size();) {
    if (std::fabs(found[i + 1] - found[i]) < sameLength) {
      found.erase(found.begin() + static_cast<std::ptrdiff_t>(i),
                  found.begin() + static_cast<std::ptrdiff_t>(i) + 2);
    } else {
      ++i;
    }
  }
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
    DrawnDimension dimension{.use = use};
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

constexpr double lane = 24;     // distance of dimension lines
constexpr double textRow = 15;  // height of a line of text

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
  std::string body;

  // The material; holes are left out by the even-odd rule.
  std::string path;
  for (const auto& ring : section.rings()) {
    const char* command = "M";
    for (const Point2& point : ring) {
      path += command + pointText(point);
      command = " L";
    }
    path += " Z ";
  }
  body += "<path class=\"section\" fill-rule=\"evenodd\" d=\"" + path + "\"/>\n";

  // The section's axes, through the bar's axis.
  constexpr double axisOverhang = 14;
  const double axisRight = std::max(box.right, 0.0) + axisOverhang;
  const double axisTop = std::max(box.top, 0.0) + axisOverhang;
  body += line("axis", {std::min(box.left, 0.0) - axisOverhang, 0}, {axisRight, 0});
  body += line("axis", {0, std::min(box.bottom, 0.0) - axisOverhang}, {0, axisTop});
  body += label({axisRight + 3, -4}, "start", "x");
  body += label({0, axisTop + 4}, "middle", "y");

  // Dimensions: long ones beside the section, the others inside with a leader to the right.
  double leftLane = box.left - lane - axisOverhang / 2;
  double topLane = axisTop + lane;
  double leaderRow = box.top;
  const double leaderColumn = axisRight + lane;
  std::string legend;
  double legendRow = std::min(box.bottom, 0.0) - axisOverhang - 2 * textRow;
  for (const DimensionUse& use : family.dimensions) {
    const DrawnDimension dimension = section.measured(use);
    const std::string name = "d" + std::to_string(use.index);
    legend += label({box.left - lane, legendRow}, "start", name + "  " + meaningText(use.meaning));
    legendRow -= textRow;
    if (!dimension.segment) {
      continue;
    }
    const Segment& s = *dimension.segment;
    const bool upright = std::fabs(s.from.x - s.to.x) < sameLength;
    const bool level = std::fabs(s.from.y - s.to.y) < sameLength;
    if (dimension.outside && upright) {
      const Segment moved{{leftLane, s.from.y}, {leftLane, s.to.y}};
      body += line("thin", s.from, moved.from) + line("thin", s.to, moved.to) +
              dimensionLine(moved) +
              label({leftLane - 5, 0.5 * (s.from.y + s.to.y) - 4}, "end", name);
      leftLane -= lane;
    } else if (dimension.outside && level) {
      const Segment moved{{s.from.x, topLane}, {s.to.x, topLane}};
      body += line("thin", s.from, moved.from) + line("thin", s.to, moved.to) +
              dimensionLine(moved) +
              label({0.5 * (s.from.x + s.to.x), topLane + 5}, "middle", name);
      topLane += lane;
    } else {
      const Point2 middle{0.5 * (s.from.x + s.to.x), 0.5 * (s.from.y + s.to.y)};
      const Point2 end{leaderColumn, leaderRow};
      body += dimensionLine(s) + line("thin", middle, end) +
              label({end.x + 4, end.y - 4}, "start", name);
      leaderRow -= 1.5 * textRow;
    }
  }
  body += legend;
  if (family.secondSideAnywhere) {
    body += label({box.left - lane, legendRow}, "start", say(texts::secondSide));
    legendRow -= textRow;
  }

  constexpr double leastWidth = 330;  // room for the legend
  const double left = std::min(leftLane, box.left - lane) - textRow;
  const double top = topLane + textRow;
  const double width = std::max(leaderColumn + 2 * lane - left, leastWidth);
  const double height = top - legendRow;
  return "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"" + coordinate(left) + " " +
         coordinate(-top) + " " + coordinate(width) + " " + coordinate(height) + "\" width=\"" +
         coordinate(width) + "\" height=\"" + coordinate(height) +
         "\">\n<style>.section{fill:#b8c8d8;stroke:#203040;stroke-width:1}"
         ".axis{stroke:#c03020;stroke-width:.8;stroke-dasharray:9 3 2 3}"
         ".dim{stroke:#104080;stroke-width:1}.thin{stroke:#104080;stroke-width:.4}"
         "text{font:12px sans-serif;fill:#102030}</style>\n"
         "<rect x=\"" +
         coordinate(left) + "\" y=\"" + coordinate(-top) + "\" width=\"" + coordinate(width) +
         "\" height=\"" + coordinate(height) + "\" fill=\"white\"/>\n<title>" +
         escaped(family.word) + "</title>\n" + body + "</svg>\n";
}

}  // namespace exportifc
