// How the members of a SAF workbook become bars: which nodes, how long, and where the body lies.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "library/formats/saf/saf_axes.h"
#include "library/formats/saf/saf_project.h"
#include "library/formats/saf/saf_sections.h"
#include "library/frame/model.h"
#include "library/workbook/workbook.h"

namespace exportifc::saf {

/// The bar type of a kind of member, by the number of `barTypes`; below 0 for a word that is none.
int barTypeOfMember(std::string_view type);

/// Which side of a section lies on the line between the nodes: 1 left or top, -1 right or bottom,
/// 0 the centroid.
struct SystemLine {
  std::string_view name;
  int side;
  int height;
};

constexpr std::string_view systemLineNames =
    "Centre, Top, Bottom, Left, Right, Top left, Top right, Bottom left, Bottom right";

/// Null for a name that is none.
const SystemLine* findSystemLine(std::string_view name);

/// The nodes of the workbook, in metres with z up, and those of the model.
class Nodes {
 public:
  Nodes(const Workbook& book, const Project& project, Model& model);

  const NameIndex& names() const { return names_; }
  const Vector& point(std::int32_t node) const { return points_[static_cast<std::size_t>(node)]; }

  /// The model's node for one of the workbook.
  std::int32_t of(std::int32_t node);
  /// The model's node at a point between those of the workbook; equal ones are one.
  std::int32_t at(const Vector& point);

  /// As the model has it, in millimetres.
  Vector millimetres(std::int32_t index) const;

 private:
  std::int32_t add(const Vector& point);

  Model& model_;
  NameIndex names_;
  std::vector<Vector> points_;
  std::vector<std::int32_t> inModel_;
  std::map<std::array<float, 3>, std::int32_t> between_;
};

/// A part of a member's length with a section of its own.
struct Span {
  double from = 0.0;  // of the member's length
  double to = 1.0;
  std::int32_t section = 0;
};

/// One member, whichever sheet it is in.
struct Member {
  std::string name;
  std::string cell;
  int type = 0;
  std::vector<std::int32_t> nodes{};
  std::vector<Span> spans{};
  std::int32_t layer = -1;
  SystemLine line{"Centre", 0, 0};
  // Of the body at both ends, along the member's y and z, in millimetres.
  std::array<double, 2> startOffset{};
  std::array<double, 2> endOffset{};
};

/// The axes between two points.
using AxesOf = std::function<Axes(const Vector& start, const Vector& end)>;

/// Makes bars of members.
class Bars {
 public:
  Bars(const Project& project, const Sections& sections, Nodes& nodes, Model& model)
      : project_(project), sections_(sections), nodes_(nodes), model_(model) {}

  /// Each straight piece has axes of its own.
  void add(const Member& member, const AxesOf& axesOf);

  std::vector<std::string> takeCells() { return std::move(cells_); }

 private:
  struct Ends {
    std::array<std::int32_t, 2> nodes;
    std::array<Vector, 2> points;
    double from;  // of the member's length
    double to;
  };

  double length(const Member& member, std::size_t segment) const;
  void addBar(const Member& member, const Ends& ends, const Span& span, const std::string& name,
              const AxesOf& axesOf);
  void stand(ModelBar& bar, const Member& member, const Ends& ends, const Span& span,
             const Axes& axes);

  const Project& project_;
  const Sections& sections_;
  Nodes& nodes_;
  Model& model_;
  std::vector<std::string> cells_;
};

}  // namespace exportifc::saf
