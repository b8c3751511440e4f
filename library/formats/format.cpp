#include "library/formats/format.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "library/formats/batch_model.h"
#include "library/formats/json_model.h"
#include "library/text/messages.h"

namespace exportifc {

namespace {

constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";

bool looksLikeJson(std::string_view start, std::string_view extension) {
  if (start.starts_with(utf8Mark)) {
    start.remove_prefix(utf8Mark.size());
  }
  const std::size_t first = start.find_first_not_of(" \t\r\n");
  const bool begins =
      first != std::string_view::npos && (start[first] == '{' || start[first] == '[');
  return begins || extension == ".json";
}

bool anything(std::string_view /*start*/, std::string_view /*extension*/) { return true; }

Losses none(const Model& /*model*/) { return {}; }

constexpr Format rows[] = {
    {.id = ModelFormat::json,
     .name = texts::formatJson,
     .extension = ".json",
     .recognises = looksLikeJson,
     .read = readJsonModel,
     .losses = none,
     .write = writeJsonModel,
     .locate = locateInJson},
    {.id = ModelFormat::batch,
     .name = texts::formatBatch,
     .extension = ".txt",
     .recognises = anything,
     .read = readBatchModel,
     .losses = lossesInBatch,
     .write = writeBatchModel,
     .locate = locateInBatch},
};

/// Refuses what is no text of a model at all.
void checkStart(std::string_view start) {
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
  if (start.starts_with("PK\x03\x04")) {
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
  checkStart(start);
  return *std::find_if(std::begin(rows), std::end(rows),
                       [&](const Format& row) { return row.recognises(start, extension); });
}

}  // namespace exportifc
