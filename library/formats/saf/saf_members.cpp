#include "library/formats/saf/saf_members.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <optional>
#include <string_view>
#include <utility>

#include "library/formats/saf/saf_table.h"
#include "library/text/messages.h"
#include "library/text/nearest.h"

namespace exportifc::saf {

namespace {

constexpr double mmPerM = 1000.0;

struct MemberType {
  std::string_view name;
  std::string_view bar;  // of `barTypes`
};

constexpr MemberType memberTypes[] = {
    {"General", "member"},
    {"Beam", "frame-beam"},
    {"Column", "column"},
    {"GableColumn", "wind-column"},
    {"SecondaryColumn", "column"},
    {"Rafter", "frame-beam"},
    {"Purlin", "other"},
    {"RoofBracing", "bracing"},
    {"WallBracing", "bracing"},
    {"Girt", "other"},
    {"TrussChord", "truss-chord"},
    {"TrussDiagonal", "truss-web"},
    {"PlateRib", "floor-beam"},
    {"BeamSlab", "floor-beam"},
    {"HollowCoreSlab", "other"},
    {"CompositePlateRib", "floor-beam"},
    {"CompositeBeamRib", "floor-beam"},
};

/// Which side of a section lies on the line between the nodes: 1 left or top, -1 right or bottom,
/// 0 the centroid.
struct SystemLine {
  std::string_view name;
  int side;
  int height;
};

constexpr SystemLine systemLines[] = {
    {"Centre", 0, 0},       {"Center", 0, 0},         {"Top", 0, 1},      {"Bottom", 0, -1},
    {"Left", 1, 0},         {"Right", -1, 0},         {"Top left", 1, 1}, {"Top right", -1, 1},
    {"Bottom left", 1, -1}, {"Bottom right", -1, -1},
};
constexpr std::string_view systemLineNames =
    "Centre, Top, Bottom, Left, Right, Top left, Top right, Bottom left, Bottom right";

const SystemLine* findSystemLine(std::string_view name) {
  const std::string wanted = comparable(name);
  const auto* const found =
      std::find_if(std::begin(systemLines), std::end(systemLines),
                   [&](const SystemLine& line) { return comparable(line.name) == wanted; });
  return found == std::end(systemLines) ? nullptr : found;
}

double onSide(int side, double positive, double negative, double middle) {
  return side > 0 ? positive : side < 0 ? negative : middle;
}

/// Members that share something worth a word, once for all.
class Group {
 public:
  Group(const char* code, Severity severity, const Text& text)
      : code_(code), severity_(severity), text_(text) {}

  void add(std::string_view name, const std::string& cell) {
    constexpr std::int64_t mostNames = 10;
    if (count_++ == 0) {
      cell_ = cell;
    }
    if (count_ <= mostNames) {
      names_.append(names_.empty() ? "" : ", ").append(name);
    } else if (count_ == mostNames + 1) {
      names_ += ", \xE2\x80\xA6";
    }
  }

  void tell(std::vector<Problem>& found) const {
    if (count_ > 0) {
      found.push_back({.code = code_,
                       .severity = severity_,
                       .message = fill(text_, {numberText(count_), names_}),
                       .cell = cell_});
    }
  }

 private:
  const char* code_;
  Severity severity_;
  const Text& text_;
  std::int64_t count_ = 0;
  std::string names_;
  std::string cell_;
};

/// The groups that the reading of members fills.
struct Remarks {
  Group curved{"left-out", Severity::warning, texts::safCurved};
  Group tapered{"left-out", Severity::warning, texts::safTapered};
  Group noSlab{"left-out", Severity::warning, texts::safNoSlab};
  Group noSide{"lcs-along-member", Severity::warning, texts::safNoSide};
  Group unknownType{"unknown-type", Severity::warning, texts::safUnknownType};
  Group twoOffsets{"two-eccentricities", Severity::warning, texts::safTwoOffsets};
  Group alignment{"not-moved", Severity::warning, texts::safAlignment};
  Group ribOffset{"not-moved", Severity::warning, texts::safRibOffset};

  void tell(std::vector<Problem>& found) const {
    for (const Group* const group :
         {&curved, &tapered, &noSlab, &noSide, &unknownType, &twoOffsets, &alignment, &ribOffset}) {
      group->tell(found);
    }
  }
};

/// The nodes of the workbook, in metres with z up, and those of the model.
class Nodes {
 public:
  Nodes(const Workbook& book, const Project& project, Model& model) : model_(model) {
    const Table table(book.sheet("StructuralPointConnection"), project.imperial);
    const Column name = table.requiredColumn("Name");
    const std::array<Column, 3> axes = {table.requiredColumn("Coordinate X", Quantity::coordinate),
                                        table.requiredColumn("Coordinate Y", Quantity::coordinate),
                                        table.requiredColumn("Coordinate Z", Quantity::coordinate)};
    for (const Row& row : table.rows()) {
      const std::string own(table.requiredText(row, name));
      if (!names_.emplace(own, static_cast<std::int32_t>(points_.size())).second) {
        table.refuse(row, name, say(texts::cellTwice, {own}));
      }
      Vector point{};
      std::transform(axes.begin(), axes.end(), point.begin(),
                     [&](Column column) { return table.requiredNumber(row, column); });
      points_.push_back(turnedUpright(*project.global, point));
    }
    inModel_.assign(points_.size(), -1);
  }

  const NameIndex& names() const { return names_; }
  const Vector& point(std::int32_t node) const { return points_[static_cast<std::size_t>(node)]; }

  /// The model's node for one of the workbook.
  std::int32_t of(std::int32_t node) {
    std::int32_t& index = inModel_[static_cast<std::size_t>(node)];
    if (index < 0) {
      index = add(point(node));
    }
    return index;
  }

  /// The model's node at a point between those of the workbook; equal ones are one.
  std::int32_t at(const Vector& point) {
    const auto [found, isNew] = between_.emplace(single(point), -1);
    if (isNew) {
      found->second = add(point);
    }
    return found->second;
  }

  /// As the model has it, in millimetres.
  Vector millimetres(std::int32_t index) const {
    const auto& node = model_.nodes[static_cast<std::size_t>(index)];
    return mmPerM * Vector{node[0], node[1], node[2]};
  }

 private:
  static std::array<float, 3> single(const Vector& point) {
    return {static_cast<float>(point[0]), static_cast<float>(point[1]),
            static_cast<float>(point[2])};
  }

  std::int32_t add(const Vector& point) {
    model_.nodes.push_back(single(point));
    return static_cast<std::int32_t>(model_.nodes.size() - 1);
  }

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
  SystemLine line = systemLines[0];
  // Of the body at both ends, along the member's y and z, in millimetres.
  std::array<double, 2> startOffset{};
  std::array<double, 2> endOffset{};
};

/// Makes bars of members.
class Bars {
 public:
  Bars(const Project& project, const Sections& sections, Nodes& nodes, Model& model)
      : project_(project), sections_(sections), nodes_(nodes), model_(model) {}

  /// `axesOf` gives the axes between two points; each straight piece has its own.
  template <class AxesOf>
  void add(const Member& member, AxesOf axesOf) {
    const std::size_t segments = member.nodes.size() - 1;
    double total = 0.0;
    for (std::size_t i = 0; i < segments; ++i) {
      total += length(member, i);
    }
    double before = 0.0;
    const bool isWhole = segments == 1 && member.spans.size() == 1;
    int piece = 0;
    for (std::size_t i = 0; i < segments; ++i) {
      const double share = total > 0.0 ? length(member, i) / total : 1.0;
      const Ends ends{.nodes = {member.nodes[i], member.nodes[i + 1]},
                      .points = {nodes_.point(member.nodes[i]), nodes_.point(member.nodes[i + 1])},
                      .from = before,
                      .to = before + share};
      before += share;
      for (const Span& span : member.spans) {
        const std::string name =
            isWhole ? member.name : member.name + "." + std::to_string(++piece);
        addBar(member, ends, span, name, axesOf);
      }
    }
  }

  std::vector<std::string> takeCells() { return std::move(cells_); }

 private:
  struct Ends {
    std::array<std::int32_t, 2> nodes;
    std::array<Vector, 2> points;
    double from;  // of the member's length
    double to;
  };

  double length(const Member& member, std::size_t segment) const {
    return lengthOf(nodes_.point(member.nodes[segment + 1]) - nodes_.point(member.nodes[segment]));
  }

  template <class AxesOf>
  void addBar(const Member& member, const Ends& ends, const Span& span, const std::string& name,
              AxesOf axesOf) {
    ModelBar bar{.section = span.section, .type = static_cast<std::uint8_t>(member.type)};
    constexpr double shortest = 1e-9;  // metres; a bar of no length has no axes
    if (lengthOf(ends.points[1] - ends.points[0]) < shortest) {
      bar.start = nodes_.of(ends.nodes[0]);
      bar.end = nodes_.of(ends.nodes[1]);
    } else {
      stand(bar, member, ends, span, axesOf(ends.points[0], ends.points[1]));
    }
    model_.bars.push_back(bar);
    model_.barNames.push_back(name);
    model_.barLayers.push_back(member.layer);
    cells_.push_back(member.cell);
  }

  // The body lies so that the section's point that the member's line names (centroid, or a side of
  // the box around the section) is on the line between the nodes, moved by the eccentricities. The
  // export draws some families beside the bar, so the bar moves by what is left.
  void stand(ModelBar& bar, const Member& member, const Ends& ends, const Span& span,
             const Axes& axes) {
    const Standing& standing = sections_.standing(span.section);
    const SectionAxes section = sectionAxes(*project_.sections, axes);
    const Vector side =
        onSide(member.line.side, standing.left, standing.right, standing.centroid.x) * section.left;
    const Vector height =
        onSide(member.line.height, standing.top, standing.bottom, standing.centroid.y) * section.up;
    std::array<std::int32_t, 2> nodes{};
    for (std::size_t i = 0; i < nodes.size(); ++i) {
      const double onBar = i == 0 ? span.from : span.to;
      const double onMember = ends.from + (ends.to - ends.from) * onBar;
      const auto offset = [&](std::size_t axis) {
        return (1.0 - onMember) * member.startOffset[axis] + onMember * member.endOffset[axis];
      };
      constexpr double nothing = 1e-6;
      Vector moveMm = offset(0) * axes.y + offset(1) * axes.z - side - height;
      for (double& move : moveMm) {  // of what the sine of a quarter turn leaves
        move = std::fabs(move) < nothing ? 0.0 : move;
      }
      const bool isEnd = onBar == (i == 0 ? 0.0 : 1.0);
      nodes[i] = isEnd && moveMm == Vector{}
                     ? nodes_.of(ends.nodes[i])
                     : nodes_.at((1.0 - onBar) * ends.points[0] + onBar * ends.points[1] +
                                 1.0 / mmPerM * moveMm);
    }
    bar.start = nodes[0];
    bar.end = nodes[1];
    const Vector xAxis = standing.xAxis.x * section.left + standing.xAxis.y * section.up;
    const BarAngle angle =
        barAngle(nodes_.millimetres(bar.start), nodes_.millimetres(bar.end), xAxis);
    bar.angle = angle.angle;
    bar.quarterTurns = angle.quarterTurns;
  }

  const Project& project_;
  const Sections& sections_;
  Nodes& nodes_;
  Model& model_;
  std::vector<std::string> cells_;
};

/// The index of a name, or the end of the reading.
std::int32_t indexOf(const Table& table, const Row& row, Column column, std::string_view name,
                     const NameIndex& names, std::string_view sheet) {
  const auto found = names.find(name);
  if (found == names.end()) {
    std::vector<std::string> known;
    for (const auto& [text, index] : names) {
      known.push_back(text);
    }
    const std::string near = nearest(name, known);
    table.refuse(row, column,
                 say(texts::cellUnknown, {name, sheet}) +
                     (near.empty() ? near : say(texts::didYouMean, {near})),
                 {}, near);
  }
  return found->second;
}

/// Sections along members, by name; without any where the section changes gradually.
struct Varying {
  std::vector<Span> spans;
  bool isCentred = true;
};

std::map<std::string, Varying, std::less<>> readVarying(const Workbook& book,
                                                        const Project& project,
                                                        const NameIndex& sections) {
  std::map<std::string, Varying, std::less<>> all;
  if (!book.has("StructuralCurveMemberVarying")) {
    return all;
  }
  const Table table(book.sheet("StructuralCurveMemberVarying"), project.imperial);
  const Column name = table.requiredColumn("Name");
  for (const Row& row : table.rows()) {
    Varying varying;
    bool isTapered = false;
    double from = 0.0;
    for (int i = 1;; ++i) {
      const std::string number = " " + std::to_string(i);
      const Column column = table.column("Cross sections" + number);
      if (column.index < 0) {
        break;
      }
      const auto pair = pieces(table.text(row, column), ',');
      if (pair.empty()) {
        continue;
      }
      const double share = table.requiredNumber(row, table.requiredColumn("Span" + number));
      const SystemLine* const line =
          findSystemLine(table.text(row, table.column("Alignment" + number)));
      varying.isCentred &= line == nullptr || (line->side == 0 && line->height == 0);
      isTapered |= pair.front() != pair.back();
      varying.spans.push_back({.from = from,
                               .to = from + share,
                               .section = indexOf(table, row, column, pair.front(), sections,
                                                  "StructuralCrossSection")});
      from += share;
    }
    constexpr double roundedSpans = 1e-3;
    if (std::fabs(from - 1.0) > roundedSpans) {
      table.refuse(row, name, say(texts::safSpans, {decimalText(from, 3)}));
    }
    varying.spans.back().to = 1.0;
    if (isTapered) {
      varying.spans.clear();
    }
    all[std::string(table.requiredText(row, name))] = std::move(varying);
  }
  return all;
}

/// What both sheets of members say in the same columns.
class MemberRows {
 public:
  MemberRows(const Workbook& book, std::string_view sheet, const Project& project,
             const Sections& sections, const Nodes& nodes, Model& model)
      : table_(book.sheet(sheet), project.imperial),
        sections_(sections),
        nodes_(nodes),
        model_(model) {}

  const Table& table() const { return table_; }

  Member read(const Row& row) {
    Member member{.name = std::string(table_.requiredText(row, name_)),
                  .cell = table_.cell(row, name_)};
    for (const std::string_view node : nodeNames(row)) {
      member.nodes.push_back(
          indexOf(table_, row, listColumn(row), node, nodes_.names(), "StructuralPointConnection"));
    }
    if (member.nodes.size() < 2) {
      table_.refuse(row, listColumn(row), say(texts::safOneNode));
    }
    member.spans = {{.section = indexOf(table_, row, section_, table_.requiredText(row, section_),
                                        sections_.names(), "StructuralCrossSection")}};
    if (const std::string_view layer = table_.text(row, layer_); !layer.empty()) {
      const auto [found, isNew] =
          layers().emplace(layer, static_cast<std::int32_t>(model_.layers.size()));
      if (isNew) {
        model_.layers.emplace_back(layer);
      }
      member.layer = found->second;
    }
    return member;
  }

  bool isCurved(const Row& row) const {
    const auto straight = [](std::string_view word) {
      return comparable(word) == "line" || comparable(word) == "polyline";
    };
    const auto segments = pieces(table_.text(row, segments_));
    const std::string_view shape = table_.text(row, geometry_);
    return segments.empty() ? !shape.empty() && !straight(shape)
                            : !std::all_of(segments.begin(), segments.end(), straight);
  }

 private:
  Column listColumn(const Row& row) const {
    return table_.text(row, list_).empty() && begin_.index >= 0 ? begin_ : list_;
  }

  std::vector<std::string_view> nodeNames(const Row& row) const {
    std::vector<std::string_view> names = pieces(table_.text(row, list_));
    if (names.empty()) {
      for (const Column column : {begin_, end_}) {
        names.push_back(table_.requiredText(row, column));
      }
    }
    return names;
  }

  NameIndex& layers() {
    if (layers_.size() != model_.layers.size()) {
      for (std::size_t i = 0; i < model_.layers.size(); ++i) {
        layers_.emplace(model_.layers[i], static_cast<std::int32_t>(i));
      }
    }
    return layers_;
  }

  Table table_;
  const Sections& sections_;
  const Nodes& nodes_;
  Model& model_;
  NameIndex layers_;
  Column name_ = table_.requiredColumn("Name");
  Column section_ = table_.requiredColumn("Cross section");
  Column list_ = table_.requiredColumn("Nodes");
  Column begin_ = table_.column("Begin node");
  Column end_ = table_.column("End node");
  Column segments_ = table_.column("Segments");
  Column geometry_ = table_.column("Geometrical shape");
  Column layer_ = table_.column("Layer");
};

/// Offsets along y and z at begin and end.
struct OffsetColumns {
  std::array<Column, 2> begin;
  std::array<Column, 2> end;
};

OffsetColumns offsetColumns(const Table& table, const std::string& kind) {
  const auto column = [&](const std::string& axis, const std::string& end) {
    return table.column(kind + " " + axis + " eccentricity of " + end + " node",
                        Quantity::dimension);
  };
  return {.begin = {column("Y", "Beg"), column("Z", "Beg")},
          .end = {column("Y", "End"), column("Z", "End")}};
}

struct Offsets {
  std::array<double, 2> begin{};
  std::array<double, 2> end{};

  bool operator==(const Offsets&) const = default;
};

Offsets offsetsIn(const Table& table, const Row& row, const OffsetColumns& columns) {
  Offsets offsets;
  for (std::size_t axis = 0; axis < 2; ++axis) {
    offsets.begin[axis] = table.number(row, columns.begin[axis]).value_or(0.0);
    offsets.end[axis] = table.number(row, columns.end[axis]).value_or(0.0);
  }
  return offsets;
}

/// The sheet of the members proper.
class CurveMembers {
 public:
  CurveMembers(const Workbook& book, const Project& project, const Sections& sections,
               const Nodes& nodes, Model& model, Remarks& remarks)
      : project_(project),
        rows_(book, "StructuralCurveMember", project, sections, nodes, model),
        varying_(readVarying(book, project, sections.names())),
        remarks_(remarks) {}

  void readInto(Bars& bars) {
    for (const Row& row : table_.rows()) {
      Member member = rows_.read(row);
      if (rows_.isCurved(row)) {
        remarks_.curved.add(member.name, member.cell);
      } else if (takeSpans(row, member)) {
        takeType(row, member);
        takeLine(row, member);
        takeOffsets(row, member);
        addBars(row, member, bars);
      }
    }
  }

 private:
  /// Whether the member's sections are those of straight bars.
  bool takeSpans(const Row& row, Member& member) {
    const std::string_view name = table_.text(row, arbitrary_);
    if (name.empty()) {
      return true;
    }
    const auto found = varying_.find(name);
    if (found == varying_.end()) {
      table_.refuse(row, arbitrary_,
                    say(texts::cellUnknown, {name, "StructuralCurveMemberVarying"}));
    }
    const Varying& varying = found->second;
    const bool isStraight = member.nodes.size() == 2;  // spans share out the whole length
    if (varying.spans.empty() || (varying.spans.size() > 1 && !isStraight)) {
      remarks_.tapered.add(member.name, member.cell);
      return false;
    }
    if (!varying.isCentred) {
      remarks_.alignment.add(member.name, member.cell);
    }
    member.spans = varying.spans;
    return true;
  }

  void takeType(const Row& row, Member& member) {
    const std::string_view word = table_.text(row, type_);
    const int type = word.empty() ? 0 : barTypeOfMember(word);
    if (type < 0) {
      remarks_.unknownType.add(member.name + " (" + std::string(word) + ")",
                               table_.cell(row, type_));
    }
    member.type = std::max(type, 0);
  }

  void takeLine(const Row& row, Member& member) {
    const std::string_view word = table_.text(row, line_);
    if (word.empty()) {
      return;
    }
    const SystemLine* const line = findSystemLine(word);
    if (line == nullptr) {
      table_.refuse(row, line_, say(texts::cellNotAllowed, {word, systemLineNames}),
                    std::string(systemLineNames));
    }
    member.line = *line;
  }

  // The structural eccentricities say where the body is; many programs give the analytical ones
  // alone, which then move the body with the axis.
  void takeOffsets(const Row& row, Member& member) {
    const Offsets structural = offsetsIn(table_, row, structural_);
    Offsets analysis = offsetsIn(table_, row, analysis_);
    if (analysis == Offsets{}) {
      analysis = offsetsIn(table_, row, both_);
    }
    const bool isStructural = !(structural == Offsets{});
    if (isStructural && !(analysis == Offsets{}) && !(analysis == structural)) {
      remarks_.twoOffsets.add(member.name, member.cell);
    }
    const Offsets& offsets = isStructural ? structural : analysis;
    member.startOffset = offsets.begin;
    member.endOffset = offsets.end;
  }

  void addBars(const Row& row, const Member& member, Bars& bars) {
    const std::string_view word = table_.text(row, lcs_);
    const LcsRule* const rule = findLcsRule(word);
    if (!word.empty() && rule == nullptr) {
      const std::string allowed = lcsRuleNames();
      table_.refuse(row, lcs_, say(texts::cellNotAllowed, {word, allowed}), allowed);
    }
    Vector given{};
    std::transform(given_.begin(), given_.end(), given.begin(),
                   [&](Column column) { return table_.number(row, column).value_or(0.0); });
    given = turnedUpright(*project_.global, given);
    const double rotation = table_.number(row, rotation_).value_or(0.0);
    bool saysSide = true;
    bars.add(member, [&](const Vector& start, const Vector& end) {
      const auto axes = rule == nullptr ? std::nullopt : axesBy(*rule, start, end, given, rotation);
      saysSide &= rule == nullptr || axes.has_value();
      return axes.value_or(defaultAxes(start, end, rotation));
    });
    if (!saysSide) {
      remarks_.noSide.add(member.name, table_.cell(row, lcs_));
    }
  }

  const Project& project_;
  MemberRows rows_;
  const Table& table_ = rows_.table();
  std::map<std::string, Varying, std::less<>> varying_;
  Remarks& remarks_;
  Column type_ = table_.column("Type");
  Column arbitrary_ = table_.column("Arbitrary definition");
  Column line_ = table_.column("System line");
  Column lcs_ = table_.column("LCS");
  Column rotation_ = table_.column("LCS Rotation", Quantity::angle);
  std::array<Column, 3> given_ = {table_.column("Coordinate X", Quantity::coordinate),
                                  table_.column("Coordinate Y", Quantity::coordinate),
                                  table_.column("Coordinate Z", Quantity::coordinate)};
  OffsetColumns structural_ = offsetColumns(table_, "Structural");
  OffsetColumns analysis_ = offsetColumns(table_, "Analysis");
  // Of workbooks that have one eccentricity for both ends.
  OffsetColumns both_ = {.begin = {table_.column("Eccentricity ey", Quantity::dimension),
                                   table_.column("Eccentricity ez", Quantity::dimension)},
                         .end = {table_.column("Eccentricity ey", Quantity::dimension),
                                 table_.column("Eccentricity ez", Quantity::dimension)}};
};

/// What ribs take of the slab that they belong to.
struct Slab {
  Vector normal{};
  double thicknessMm = 0.0;  // 0: not one for the whole slab
};

/// The z of a slab is the side that looks up; of an upright one the side that looks along X, or
/// else along Y.
Vector slabNormal(const std::vector<Vector>& outline) {
  Vector normal{};
  for (std::size_t i = 0; i < outline.size(); ++i) {
    normal = normal + cross(outline[i], outline[(i + 1) % outline.size()]);
  }
  constexpr double level = 1e-6;
  const double size = lengthOf(normal);
  for (const std::size_t axis : {std::size_t{2}, std::size_t{0}, std::size_t{1}}) {
    if (std::fabs(normal[axis]) > level * size) {
      return (normal[axis] < 0 ? -1.0 : 1.0) * normal;
    }
  }
  return normal;
}

std::map<std::string, Slab, std::less<>> readSlabs(const Workbook& book, const Project& project,
                                                   const Nodes& nodes) {
  std::map<std::string, Slab, std::less<>> slabs;
  if (!book.has("StructuralSurfaceMember")) {
    return slabs;
  }
  const Table table(book.sheet("StructuralSurfaceMember"), project.imperial);
  const Column name = table.requiredColumn("Name");
  const Column list = table.requiredColumn("Nodes");
  const Column thickness = table.column("Thickness", Quantity::dimension);
  for (const Row& row : table.rows()) {
    std::vector<Vector> outline;
    for (const std::string_view node : pieces(table.text(row, list))) {
      outline.push_back(
          nodes.point(indexOf(table, row, list, node, nodes.names(), "StructuralPointConnection")));
    }
    slabs[std::string(table.requiredText(row, name))] = {
        .normal = slabNormal(outline),
        .thicknessMm = numberIn(table.text(row, thickness)).value_or(0.0) * thickness.factor};
  }
  return slabs;
}

/// The sheet of ribs: members that hang under slabs or stand on them.
void readRibs(const Workbook& book, const Project& project, const Sections& sections,
              const Nodes& nodes, Model& model, Remarks& remarks, Bars& bars) {
  constexpr std::string_view sheet = "StructuralCurveMemberRib";
  if (!book.has(sheet) || Table(book.sheet(sheet), false).rows().empty()) {
    return;
  }
  const auto slabs = readSlabs(book, project, nodes);
  MemberRows rows(book, sheet, project, sections, nodes, model);
  const Table& table = rows.table();
  const Column slabName = table.column("2D member");
  const Column alignment = table.column("Alignment");
  const Column offset = table.column("Eccentricity ez", Quantity::dimension);
  for (const Row& row : table.rows()) {
    Member member = rows.read(row);
    const auto slab = slabs.find(table.text(row, slabName));
    const Vector& start = nodes.point(member.nodes.front());
    const Vector& end = nodes.point(member.nodes.back());
    if (rows.isCurved(row)) {
      remarks.curved.add(member.name, member.cell);
      continue;
    }
    if (slab == slabs.end() || !axesWithZ(start, end, slab->second.normal)) {
      remarks.noSlab.add(member.name, member.cell);
      continue;
    }
    // Under a slab the rib's top is on the line, moved by half the slab; on it, the bottom is.
    const std::string place = comparable(table.text(row, alignment));
    const int side = place == "top" ? 1 : place == "bottom" ? -1 : 0;
    const double half = slab->second.thicknessMm / 2;
    const bool canMove = side == 0 || (half > 0.0 && project.sections->up == 3);
    if (canMove) {
      member.line.height = -side;
      member.startOffset = member.endOffset = {0.0, side * half};
    }
    if (!canMove || table.number(row, offset).value_or(0.0) != 0.0) {
      remarks.ribOffset.add(member.name, member.cell);
    }
    member.type = barTypeOfMember("PlateRib");
    bars.add(member, [&](const Vector& from, const Vector& to) {
      return axesWithZ(from, to, slab->second.normal).value_or(defaultAxes(from, to, 0.0));
    });
  }
}

}  // namespace

int barTypeOfMember(std::string_view type) {
  const std::string wanted = comparable(type);
  const auto* const found =
      std::find_if(std::begin(memberTypes), std::end(memberTypes),
                   [&](const MemberType& row) { return comparable(row.name) == wanted; });
  return found == std::end(memberTypes)
             ? -1
             : static_cast<int>(std::find(barTypeNames.begin(), barTypeNames.end(), found->bar) -
                                barTypeNames.begin());
}

std::vector<std::string> readMembers(const Workbook& book, const Project& project,
                                     const Sections& sections, Model& model) {
  Nodes nodes(book, project, model);
  Bars bars(project, sections, nodes, model);
  Remarks remarks;
  CurveMembers(book, project, sections, nodes, model, remarks).readInto(bars);
  readRibs(book, project, sections, nodes, model, remarks, bars);
  remarks.tell(model.found);
  if (model.layers.empty()) {
    model.barLayers.clear();
  }
  return bars.takeCells();
}

}  // namespace exportifc::saf
