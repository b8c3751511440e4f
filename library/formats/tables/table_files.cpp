// Tables as CSV files; a folder of them travels as a zip.
#include <algorithm>
#include <cstdint>
#include <iterator>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "library/formats/tables/columns.h"
#include "library/formats/tables/tables.h"
#include "library/frame/model_error.h"
#include "library/frame/text_sink.h"
#include "library/packing/zip_reader.h"
#include "library/packing/zip_sink.h"
#include "library/text/messages.h"
#include "library/workbook/csv.h"

namespace exportifc {

namespace {

constexpr std::uint32_t mostBytes = std::uint32_t{512} << 20;
constexpr std::string_view extension = ".csv";

[[noreturn]] void fail(const char* code, std::string message, std::string file = {}) {
  throw ModelError({.code = code, .message = std::move(message), .file = std::move(file)});
}

/// Without the folders that it lies in.
std::string_view baseName(std::string_view path) {
  return path.substr(path.find_last_of("/\\") + 1);
}

std::optional<Table> tableOfFile(std::string_view name) {
  const std::string_view base = baseName(name);
  return base.ends_with(extension) ? findTable(base.substr(0, base.size() - extension.size()))
                                   : std::nullopt;
}

Workbook filesOf(std::streambuf& zip) {
  // A stream would take memory that runs out for the end of the file.
  std::string bytes(std::istreambuf_iterator<char>(&zip), {});
  std::istringstream file(std::move(bytes));
  std::vector<Sheet> sheets;
  try {
    ZipReader reader(file);
    std::uint64_t left = mostBytes;
    for (const ZipMember& member : reader.members()) {
      if (!isTableFile(member.name)) {
        continue;
      }
      if (member.size > left) {
        fail("tables-too-large", say(texts::tablesTooLarge, {std::to_string(mostBytes >> 20)}));
      }
      left -= member.size;
      std::string text;
      TextSink sink(text);
      reader.unpack(member, sink);
      const Table table = *tableOfFile(member.name);
      sheets.push_back(
          readCsv(text, std::string(tableName(table)), std::string(baseName(member.name))));
    }
  } catch (const ZipFault&) {
    fail("damaged-tables", say(texts::tablesDamaged));
  }
  return Workbook(std::move(sheets));
}

}  // namespace

std::string tableFileName(std::string_view table) {
  return std::string(table) + std::string(extension);
}

bool isTableFile(std::string_view name) { return tableOfFile(name).has_value(); }

Model readTableFiles(std::streambuf& zip) { return readTables(filesOf(zip), TableKind::files); }

void locateInTableFiles(std::streambuf* zip, std::vector<Problem>& problems, TextPlace /*readTo*/) {
  if (zip != nullptr) {
    locateInTables(filesOf(*zip), TableKind::files, problems);
  }
}

std::string tableFileText(const Sheet& table) {
  std::string text;
  TextSink sink(text);
  writeCsv(table, csvStyle(), sink);
  return text;
}

void writeTableFiles(const Model& model, ByteSink& zip) {
  ZipWriter writer(zip);
  for (const Sheet& sheet : tablesOf(model)) {
    const std::string text = tableFileText(sheet);
    writer.begin(tableFileName(sheet.name));
    writer.write(text.data(), text.size());
    writer.end();
  }
  writer.finish();
}

}  // namespace exportifc
