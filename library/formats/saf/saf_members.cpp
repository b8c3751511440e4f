#include "library/formats/saf/saf_members.h"

#include <algorithm>
#include <array>
#include <functional>
#include <map>
#include <optional>
#include <string_view>

#include "library/formats/saf/saf_axes.h"
#include "library/formats/saf/saf_bars.h"
#include "library/formats/saf/saf_member_rows.h"
#include "library/formats/saf/saf_ribs.h"
#include "library/formats/saf/saf_table.h"
#include "library/formats/saf/saf_varying.h"
#include "library/text/messages.h"

namespace exportifc::saf {

namespace {

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

/// Of workbooks that have one eccentricity for both ends.
OffsetColumns commonOffsetColumns(const Table& table) {
  const std::array<Column, 2> both = {table.column("Eccentricity ey", Quantity::dimension),
                                      table.column("Eccentricity ez", Quantity::dimension)};
  return {.begin = both, .end = both};
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
      analysis = offsetsIn(table_, row, common_);
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
  OffsetColumns common_ = commonOffsetColumns(table_);
};

}  // namespace

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
