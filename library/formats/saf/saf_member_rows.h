// What both sheets of SAF members say, and what is remarked of many members at once.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "library/formats/saf/saf_bars.h"
#include "library/formats/saf/saf_project.h"
#include "library/formats/saf/saf_sections.h"
#include "library/formats/saf/saf_table.h"
#include "library/frame/problem.h"
#include "library/text/messages.h"
#include "library/workbook/workbook.h"

namespace exportifc::saf {

/// Members that share something worth a word, once for all.
class Group {
 public:
  Group(const char* code, Severity severity, const Text& text)
      : code_(code), severity_(severity), text_(text) {}

  void add(std::string_view name, const std::string& cell);
  void tell(std::vector<Problem>& found) const;

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

  void tell(std::vector<Problem>& found) const;
};

/// The index of a name; one that `names`, those of `sheet`, do not hold ends the reading.
std::int32_t indexOf(const Table& table, const Row& row, Column column, std::string_view name,
                     const NameIndex& names, std::string_view sheet);

/// What both sheets of members say in the same columns.
class MemberRows {
 public:
  MemberRows(const Workbook& book, std::string_view sheet, const Project& project,
             const Sections& sections, const Nodes& nodes, Model& model);

  const Table& table() const { return table_; }

  Member read(const Row& row);
  bool isCurved(const Row& row) const;

 private:
  Column listColumn(const Row& row) const;
  std::vector<std::string_view> nodeNames(const Row& row) const;
  NameIndex& layers();

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

}  // namespace exportifc::saf
