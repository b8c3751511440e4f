#include "cli/table_folder.h"

#include <memory>

#include "cli/failure.h"
#include "cli/messages.h"
#include "cli/output_file.h"
#include "library/files/file_names.h"
#include "library/files/paths.h"
#include "library/formats/tables/table_folder.h"
#include "library/formats/tables/tables.h"

namespace exportifc::cli {

std::optional<std::string> tablesOf(const std::string& folder) {
  try {
    return zippedTables(folder);
  } catch (const UnreadTable& table) {
    throw Failure(exitUnreadable,
                  say(texts::cannotRead, {table.name, readErrorText(table.name, table.error)}));
  }
}

bool isFolderName(const std::string& name) { return name.ends_with('/') || name.ends_with('\\'); }

std::string tableFileIn(const std::string& folder, const Sheet& table) {
  return textOf(pathOf(folder) / tableFileName(table.name));
}

std::vector<std::string> writeTableFolder(const std::vector<Sheet>& tables,
                                          const std::string& folder) {
  const MadeFolder made(folder);
  std::vector<std::string> names;
  std::vector<std::unique_ptr<OutputFile>> files;
  for (const Sheet& table : tables) {
    names.push_back(tableFileIn(folder, table));
    files.push_back(std::make_unique<OutputFile>(names.back()));
    files.back()->write(tableFileText(table));
  }
  for (const auto& file : files) {
    file->commit();
  }
  return names;
}

}  // namespace exportifc::cli
