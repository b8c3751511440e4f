#include "host/model_reader.h"

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <iostream>
#include <string_view>
#include <utility>

#include "host/batch_model.h"
#include "host/failure.h"
#include "host/json_model.h"
#include "host/messages.h"
#include "host/output_file.h"
#include "host/paths.h"
#include "host/problem_report.h"
#include "host/started_text.h"

namespace exportifc::host {

namespace {

constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";

/// What begins with "{", or says by its name that it should.
bool looksLikeJson(std::string_view start, const std::string& name) {
  if (start.starts_with(utf8Mark)) {
    start.remove_prefix(utf8Mark.size());
  }
  const std::size_t first = start.find_first_not_of(" \t\r\n");
  const bool begins =
      first != std::string_view::npos && (start[first] == '{' || start[first] == '[');
  std::string extension = textOf(pathOf(name).extension());
  std::transform(extension.begin(), extension.end(), extension.begin(), [](char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  });
  return begins || extension == ".json";
}

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
}

Model readFrom(std::streambuf& text, const std::string& name) {
  try {
    StartedText started(text);
    checkStart(started.start());
    return looksLikeJson(started.start(), name) ? readJsonModel(started) : readBatchModel(started);
  } catch (const ModelError& error) {
    Problem problem = error.problem();
    locate(name, problem, error.readTo());
    throw ModelFailure(name, std::move(problem));
  }
}

}  // namespace

std::string displayName(const std::string& name) {
  return isStandardStream(name) ? say(texts::standardInput) : name;
}

namespace {

void open(std::filebuf& file, const std::string& name) {
  std::error_code ignored;
  errno = std::filesystem::is_directory(pathOf(name), ignored) ? EISDIR : 0;
  if (errno != 0 || file.open(pathOf(name), std::ios::in | std::ios::binary) == nullptr) {
    throw Failure(exitUnreadable,
                  say(texts::cannotRead, {name, readErrorText(name, errno != 0 ? errno : ENOENT)}));
  }
}

}  // namespace

void requireReadable(const std::string& name) {
  if (!isStandardStream(name)) {
    std::filebuf file;
    open(file, name);
  }
}

Model readModel(const std::string& name) {
  if (isStandardStream(name)) {
    return readFrom(*std::cin.rdbuf(), name);
  }
  std::filebuf file;
  open(file, name);
  return readFrom(file, name);
}

}  // namespace exportifc::host
