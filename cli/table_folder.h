// Folders of tables, read and written.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "library/workbook/workbook.h"

namespace exportifc::cli {

/// The tables of a folder as a zip in memory; nothing when there are none. Throws a Failure when
/// one cannot be read.
std::optional<std::string> tablesOf(const std::string& folder);

/// Whether an output is meant as a folder: its name ends like one.
bool isFolderName(const std::string& name);

/// The name of a table's file in the folder.
std::string tableFileIn(const std::string& folder, const Sheet& table);

/// Writes each table as a CSV file into the folder, which is made; all of them or none. Gives the
/// files.
std::vector<std::string> writeTableFolder(const std::vector<Sheet>& tables,
                                          const std::string& folder);

}  // namespace exportifc::cli
