#include "library/formats/saf/saf_varying.h"

#include <cmath>
#include <cstdint>
#include <utility>

#include "library/formats/saf/saf_member_rows.h"
#include "library/formats/saf/saf_table.h"
#include "library/text/messages.h"

namespace exportifc::saf {

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

}  // namespace exportifc::saf
