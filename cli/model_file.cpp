#include "cli/model_file.h"

#include <fstream>
#include <iostream>
#include <optional>
#include <sstream>
#include <utility>

#include <nlohmann/json.hpp>

#include "cli/input_file.h"
#include "cli/messages.h"
#include "cli/output_file.h"
#include "cli/problem_report.h"
#include "cli/table_folder.h"
#include "library/files/file_names.h"
#include "library/formats/format.h"
#include "library/formats/started_text.h"
#include "library/frame/model_error.h"
#include "library/frame/problem_json.h"
#include "library/frame/problem_text.h"
#include "library/text/file_extension.h"

namespace exportifc::cli {

namespace {

/// `Format::locate` on the file once more, if it can be read twice.
void locateIn(const Format& format, const std::string& name, std::vector<Problem>& problems,
              TextPlace readTo) {
  const bool isSought = !problems.empty() && !isStandardStream(name);
  if (const auto tables = isSought ? tablesOf(name) : std::nullopt) {
    std::stringbuf zip(*tables, std::ios::in);
    format.locate(&zip, problems, readTo);
    return;
  }
  std::filebuf file;
  const bool isThere = isSought && exportifc::openInput(file, name) == 0;
  format.locate(isThere ? &file : nullptr, problems, readTo);
}

Model readFrom(std::streambuf& text, const std::string& name) {
  const Format* format = nullptr;
  try {
    StartedText started(text);
    format = &recognisedFormat(started.start(), extensionOf(name));
    return format->read(started);
  } catch (const ModelError& error) {
    std::vector<Problem> problems{error.problem()};
    if (format != nullptr) {
      locateIn(*format, name, problems, error.readTo());
    }
    throw ModelFailure(name, std::move(problems.front()));
  }
}

}  // namespace

ModelFailure::ModelFailure(const std::string& name, Problem problem)
    : Failure(exitUnreadable, problemLine(name, problem, withPointer(problem, problem.message)),
              FailureLine::whole),
      name_(name),
      problem_(std::move(problem)) {}

nlohmann::ordered_json ModelFailure::facts() const { return factsOf(problemJson(name_, problem_)); }

Model readModel(const std::string& name) {
  if (isStandardStream(name)) {
    return readFrom(*std::cin.rdbuf(), name);
  }
  if (const auto tables = tablesOf(name)) {
    std::stringbuf zip(*tables, std::ios::in);
    return readFrom(zip, name);
  }
  std::filebuf file;
  openInput(file, name);
  return readFrom(file, name);
}

void requireReadable(const std::string& name) {
  if (!isStandardStream(name) && !tablesOf(name)) {
    std::filebuf file;
    openInput(file, name);
  }
}

void locate(const std::string& name, const Model& model, std::vector<Problem>& problems) {
  locateIn(formatOf(model.format), name, problems, {});
}

std::string displayName(const std::string& name) {
  return isStandardStream(name) ? say(texts::standardInput) : name;
}

}  // namespace exportifc::cli
