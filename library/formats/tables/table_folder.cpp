#include "library/formats/tables/table_folder.h"

#include <algorithm>
#include <filesystem>

#include "library/files/file_names.h"
#include "library/files/file_system.h"
#include "library/files/paths.h"
#include "library/formats/tables/tables.h"
#include "library/frame/text_sink.h"
#include "library/packing/zip_sink.h"

namespace exportifc {

std::vector<std::string> tablesIn(const std::string& folder) {
  std::vector<std::string> tables;
  for (const std::filesystem::path& name : files::namesIn(pathOf(folder))) {
    if (isTableFile(textOf(name))) {
      tables.push_back(textOf(pathOf(folder) / name));
    }
  }
  std::sort(tables.begin(), tables.end());
  return tables;
}

std::optional<std::string> zippedTables(const std::string& folder) {
  const std::vector<std::string> files = tablesIn(folder);
  if (files.empty()) {
    return std::nullopt;
  }
  std::string bytes;
  TextSink sink(bytes);
  ZipWriter zip(sink);
  for (const std::string& table : files) {
    std::string content;
    if (const int error = readAll(table, content); error != 0) {
      throw UnreadTable{.name = table, .error = error};
    }
    zip.begin(textOf(pathOf(table).filename()));
    zip.write(content.data(), content.size());
    zip.end();
  }
  zip.finish();
  return bytes;
}

}  // namespace exportifc
