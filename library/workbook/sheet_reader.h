// Sheets and shared strings, as workbooks hold them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "library/workbook/package.h"
#include "library/workbook/workbook.h"

namespace exportifc {

/// What the sheets that are read may hold together: a small file can ask for much.
struct CellBudget {
  static constexpr std::size_t mostCells = 8'000'000;
  static constexpr std::size_t mostText = std::size_t{256} << 20;

  std::size_t cells = 0;
  std::size_t text = 0;
};

/// The texts that cells refer to by their index.
std::vector<std::string> readSharedStrings(Package& package, std::string_view part);

/// The sheet of that name. Throws a ModelError at the cell.
Sheet readSheet(Package& package, std::string_view part, const std::string& name,
                const std::vector<std::string>& sharedStrings, CellBudget& budget);

}  // namespace exportifc
