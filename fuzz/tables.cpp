// Any bytes as the sheets of a workbook, SAF or plain tables, or as CSV files: refused with a
// message, or read, placed, checked and exported. A line "@name" begins a sheet, whose cells follow
// as CSV; before the first, "n" makes numbers of the cells that are such, as a workbook has them,
// and "f" has plain tables be files.
#include "library/formats/tables/tables.h"

#include <charconv>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "fuzz/model_check.h"
#include "fuzz/require.h"
#include "library/formats/saf/saf_model.h"
#include "library/frame/model_check.h"
#include "library/frame/model_error.h"
#include "library/text/text_encoding.h"
#include "library/workbook/csv.h"
#include "library/workbook/workbook.h"

using namespace exportifc;
using namespace exportifc::fuzz;

namespace {

void makeNumbers(Sheet& sheet) {
  for (Row& row : sheet.rows) {
    for (Cell& cell : row.cells) {
      const char* const end = cell.text.data() + cell.text.size();
      double number = 0.0;
      const auto [stop, fault] = std::from_chars(cell.text.data(), end, number);
      if (fault == std::errc() && stop == end) {
        cell.kind = Cell::Kind::number;
        cell.number = number;
      }
    }
  }
}

/// Of two sheets with one name the first.
std::vector<Sheet> sheetsIn(std::string_view text, bool areNumbers) {
  std::vector<Sheet> sheets;
  while (!text.empty()) {
    const std::string_view name = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(text.size(), name.size() + 1));
    const std::size_t next = text.starts_with('@') ? 0 : text.find("\n@");
    const std::string_view cells = text.substr(0, next);
    text.remove_prefix(next == std::string_view::npos ? text.size() : next + (next > 0 ? 2 : 1));
    sheets.push_back(readCsv(cells, std::string(name), "cells.csv"));
    if (areNumbers) {
      makeNumbers(sheets.back());
    }
  }
  return sheets;
}

void readAndCheck(std::string_view flags, std::string_view text) {
  const bool areNumbers = flags.find('n') != std::string_view::npos;
  const TableKind kind =
      flags.find('f') != std::string_view::npos ? TableKind::files : TableKind::sheets;
  const Workbook book(sheetsIn(text, areNumbers));
  const bool saf = isSaf(book);
  exportifc::Model model = saf ? readSafModel(book) : readTables(book, kind);
  if (saf) {
    drawBounds(model);
  }
  std::vector<Problem> problems = checkModel(model, false);
  if (saf) {
    locateInSaf(book, problems);
  } else {
    locateInTables(book, kind, problems);
  }
  for (const Problem& problem : problems) {
    require(isUtf8(problem.cell) && isUtf8(problem.file), "a place that cannot be shown");
    require(problem.pointer.empty(), "a pointer says nothing about a table");
  }
  requireSound(std::move(model));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const std::size_t first = text.find('@');
  if (first == std::string_view::npos || !isUtf8(text)) {
    return 0;
  }
  try {
    readAndCheck(text.substr(0, first), text.substr(first + 1));
  } catch (const ModelError& error) {
    requireShown(error);
  }
  return 0;
}
