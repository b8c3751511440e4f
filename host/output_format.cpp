#include "host/output_format.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <string_view>

#include "host/failure.h"
#include "host/messages.h"
#include "host/model_reader.h"
#include "host/paths.h"

namespace exportifc::host {

namespace {

struct FormatRow {
  OutputFormat format;
  std::string_view extension;  ///< lower case
  const Text& name;
  std::string_view command;  ///< which writes it
};

// The first extension of a format is the one to recommend.
constexpr std::array<FormatRow, 5> formats{{
    {OutputFormat::exchangeFile, ".ifc", texts::formatExchange, "export"},
    {OutputFormat::page, ".html", texts::formatPage, "view"},
    {OutputFormat::page, ".htm", texts::formatPage, "view"},
    {OutputFormat::jsonModel, ".json", texts::formatJson, "convert"},
    {OutputFormat::batchText, ".txt", texts::formatBatch, "convert"},
}};

const FormatRow& rowOf(OutputFormat format) {
  return *std::find_if(formats.begin(), formats.end(),
                       [&](const FormatRow& row) { return row.format == format; });
}

/// The format that the name's extension belongs to; null when none does.
const FormatRow* namedFormat(const std::string& output) {
  std::string extension = textOf(pathOf(output).extension());
  std::transform(extension.begin(), extension.end(), extension.begin(), [](char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
  });
  const auto* const found = std::find_if(formats.begin(), formats.end(), [&](const FormatRow& row) {
    return row.extension == extension;
  });
  return found == formats.end() ? nullptr : found;
}

}  // namespace

void requireExtension(const std::string& output, OutputFormat written) {
  const FormatRow* const named = namedFormat(output);
  if (named == nullptr || named->format == written) {
    return;
  }
  const FormatRow& row = rowOf(written);
  throw Failure(exitBadUse,
                say(texts::useExtension, {output, say(row.name), named->extension, say(named->name),
                                          row.extension, named->command}));
}

OutputFormat convertedFormat(const std::string& model, ModelFormat format,
                             const std::string& output) {
  const bool isJson = format == ModelFormat::json;
  const FormatRow& read = rowOf(isJson ? OutputFormat::jsonModel : OutputFormat::batchText);
  const FormatRow& written = rowOf(isJson ? OutputFormat::batchText : OutputFormat::jsonModel);
  if (const FormatRow* const named = namedFormat(output);
      named != nullptr && named->format == read.format) {
    throw Failure(exitBadUse,
                  say(texts::convertSameFormat, {output, displayName(model), say(read.name),
                                                 say(written.name), written.extension}));
  }
  requireExtension(output, written.format);
  return written.format;
}

}  // namespace exportifc::host
