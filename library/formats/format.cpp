#include "library/formats/format.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "library/formats/batch_model.h"
#include "library/formats/json_model.h"
#include "library/formats/saf/saf_model.h"
#include "library/formats/tables/tables.h"
#include "library/text/messages.h"
#include "library/workbook/workbook.h"

namespace exportifc {

namespace {

constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";

constexpr std::string_view zipMark = "PK\x03\x04";

bool looksLikeJson(std::string_view start, std::string_view extension) {
  if (start.starts_with(utf8Mark)) {
    start.remove_prefix(utf8Mark.size());
  }
  const std::size_t first = start.find_first_not_of(" \t\r\n");
  const bool begins =
      first != std::string_view::npos && (start[first] == '{' || start[first] == '[');
  return begins || (extension == ".json" && !start.starts_with(zipMark));
}

bool anyText(std::string_view start, std::string_view /*extension*/) {
  return !start.starts_with(zipMark);
}

bool looksLikeTableFiles(std::string_view start, std::string_view /*extension*/) {
  return start.starts_with(zipMark) && start.find(".csv") != std::string_view::npos;
}

Losses losesNothing(const Model& /*model*/) { return {}; }

// What a workbook is, its sheets say: both of its rows read and place problems alike.
Model readWorkbook(std::streambuf& file) {
  const Workbook book(file);
  if (isSaf(book)) {
    return readSafModel(book);
  }
  if (!hasTables(book)) {
    throw ModelError({.code = "missing-sheet", .message = say(texts::noModelSheets)});
  }
  return readTables(book, TableKind::sheets);
}

void locateInWorkbook(std::streambuf* file, std::vector<Problem>& problems, TextPlace /*readTo*/) {
  const bool isOpen = std::any_of(problems.begin(), problems.end(), [](const Problem& problem) {
    return problem.cell.empty() && !problem.pointer.empty();
  });
  if (file == nullptr || !isOpen) {
    return;
  }
  const Workbook book(*file);
  if (isSaf(book)) {
    locateInSaf(book, problems);
  } else {
    locateInTables(book, TableKind::sheets, problems);
  }
}

Losses safIsNotWritten(const Model& /*model*/) { return {.obstacle = say(texts::safNotWritten)}; }

constexpr Format rows[] = {
    {.id = ModelFormat::json,
     .name = texts::formatJson,
     .extension = ".json",
     .recognises = looksLikeJson,
     .read = readJsonModel,
     .losses = losesNothing,
     .write = writeJsonModel,
     .locate = locateInJson},
    {.id = ModelFormat::batch,
     .name = texts::formatBatch,
     .extension = ".txt",
     .recognises = anyText,
     .read = readBatchModel,
     .losses = lossesInBatch,
     .write = writeBatchModel,
     .locate = locateInBatch},
    {.id = ModelFormat::tables,
     .name = texts::formatTables,
     .extension = ".xlsx",
     .recognises = looksLikeWorkbook,
     .read = readWorkbook,
     .losses = lossesInTables,
     .write = writeTableWorkbook,
     .locate = locateInWorkbook},
    {.id = ModelFormat::saf,
     .name = texts::formatSaf,
     .extension = ".xlsx",
     .recognises = looksLikeWorkbook,
     .read = readWorkbook,
     .losses = safIsNotWritten,
     .write = nullptr,
     .locate = locateInWorkbook},
    {.id = ModelFormat::csv,
     .name = texts::formatCsv,
     .extension = ".zip",
     .recognises = looksLikeTableFiles,
     .read = readTableFiles,
     .losses = lossesInTables,
     .write = writeTableFiles,
     .locate = locateInTableFiles},
};

/// Refuses what is no text of a model at all.
void checkStart(std::string_view start, std::string_view extension) {
  const auto refuse = [](const char* code, const Text& text) {
    throw ModelError({.code = code, .message = say(text)});
  };
  if (start.empty() || start == utf8Mark) {
    refuse("empty-file", texts::emptyFile);
  }
  if (start.starts_with("\xFF\xFE") || start.starts_with("\xFE\xFF") ||
      start.substr(0, 4).find('\0') != std::string_view::npos) {
    refuse("utf-16", texts::utf16File);
  }
  if (start.starts_with("ISO-10303-21;")) {
    refuse("exchange-file", texts::exchangeFile);
  }
  if (start.starts_with("\xD0\xCF\x11\xE0")) {
    refuse("old-workbook", texts::oldWorkbook);
  }
  if (extension == ".csv" && !looksLikeJson(start, extension)) {
    refuse("one-table", texts::oneTable);
  }
  if (start.starts_with(zipMark) && !looksLikeWorkbook(start, extension) &&
      !looksLikeTableFiles(start, extension)) {
    refuse("exchange-file", texts::zippedFile);
  }
}

}  // namespace

std::span<const Format> formats() { return rows; }

const Format& formatOf(ModelFormat id) {
  return *std::find_if(std::begin(rows), std::end(rows),
                       [&](const Format& row) { return row.id == id; });
}

const Format& recognisedFormat(std::string_view start, std::string_view extension) {
  checkStart(start, extension);
  return *std::find_if(std::begin(rows), std::end(rows),
                       [&](const Format& row) { return row.recognises(start, extension); });
}

}  // namespace exportifc
