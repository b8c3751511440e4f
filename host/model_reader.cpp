#include "host/model_reader.h"

#include <cerrno>
#include <fstream>
#include <iostream>
#include <istream>

#include "host/batch_model.h"
#include "host/failure.h"
#include "host/json_model.h"
#include "host/messages.h"
#include "host/output_file.h"
#include "host/paths.h"
#include "host/problem_report.h"

namespace exportifc::host {

namespace {

bool looksLikeJson(std::streambuf& text, const std::string& name) {
  const auto first = text.sgetc();
  return first == '{' || first == '[' || first == 0xEF || pathOf(name).extension() == ".json";
}

Model readFrom(std::streambuf& text, const std::string& name) {
  try {
    if (looksLikeJson(text, name)) {
      return readJsonModel(text);
    }
    std::istream lines(&text);
    return readBatchModel(lines);
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

Model readModel(const std::string& name) {
  if (isStandardStream(name)) {
    return readFrom(*std::cin.rdbuf(), name);
  }
  const auto refuse = [&](int error) {
    throw Failure(exitUnreadable, say(texts::cannotRead, {name, systemErrorText(error)}));
  };
  std::error_code ignored;
  if (std::filesystem::is_directory(pathOf(name), ignored)) {
    refuse(EISDIR);
  }
  std::filebuf file;
  errno = 0;
  if (file.open(pathOf(name), std::ios::in | std::ios::binary) == nullptr) {
    refuse(errno != 0 ? errno : ENOENT);
  }
  return readFrom(file, name);
}

}  // namespace exportifc::host
