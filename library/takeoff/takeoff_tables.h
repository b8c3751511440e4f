// A take-off as tables, the same for people and for programs.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "library/frame/model.h"
#include "library/takeoff/takeoff.h"
#include "library/text/json_text.h"
#include "library/workbook/workbook_writer.h"
#include "platform/byte_sink.h"

namespace exportifc {

/// Empty, a text, or a number as a whole number of units of its column's last decimal.
using TakeoffCell = std::variant<std::monostate, std::string, std::int64_t>;

struct TakeoffColumn {
  std::string_view key;  ///< for programs
  std::string title;     ///< with its unit, in the user's language
  bool isText = false;
  int decimals = 0;
};

struct TakeoffTable {
  std::string_view key;
  std::string title{};
  std::vector<TakeoffColumn> columns{};
  std::vector<std::vector<TakeoffCell>> rows{};
  std::vector<TakeoffCell> total{};  ///< one for each column; empty where nothing adds up
};

/// Sections, groups, layers and cut lengths, as far as there are any.
std::vector<TakeoffTable> takeoffTables(const Model& model, const Takeoff& takeoff);

/// Takes away what only programs need, what no row has, such as materials, and a text that only
/// repeats the name.
void keepColumnsForPeople(TakeoffTable& table);

/// "1234.500": a number cell as programs write it.
std::string plainNumber(std::int64_t value, int decimals);

/// All tables one below the other, as spreadsheets of the user's language read them, in UTF-8.
void writeTakeoffCsv(const std::vector<TakeoffTable>& tables, ByteSink& output);

/// A sheet for each table, named by its title: headings, rows, the line of totals.
std::vector<WrittenSheet> takeoffSheets(const std::vector<TakeoffTable>& tables);

/// One list a table, by its key, and "total". What a row does not have has no key there.
JsonObject takeoffJson(const std::vector<TakeoffTable>& tables);

/// Lines for a person, columns below one another.
std::vector<std::string> takeoffLines(const TakeoffTable& table);

}  // namespace exportifc
