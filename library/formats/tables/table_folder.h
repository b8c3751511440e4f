// A folder of tables as the model that it is.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace exportifc {

/// The CSV files of a folder that are tables, in order; none when the name is no folder.
std::vector<std::string> tablesIn(const std::string& folder);

/// A file that the system refuses to read.
struct UnreadTable {
  std::string name;
  int error = 0;  ///< `errno`
};

/// The tables of a folder as a zip in memory, as formats read it; nothing when there are none.
/// Throws the UnreadTable that there may be.
std::optional<std::string> zippedTables(const std::string& folder);

}  // namespace exportifc
