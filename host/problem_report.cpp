#include "host/problem_report.h"

#include <array>
#include <charconv>
#include <fstream>
#include <string_view>
#include <utility>

#include "host/console.h"
#include "host/json_places.h"
#include "host/messages.h"
#include "host/model_reader.h"
#include "host/output_file.h"
#include "host/paths.h"

namespace exportifc::host {

namespace {

const Text& severityWord(Severity severity) {
  switch (severity) {
    case Severity::warning: return texts::warning;
    case Severity::note: return texts::note;
    case Severity::error: break;
  }
  return texts::error;
}

std::string lineOf(const std::string& name, const Problem& problem, const std::string& text) {
  std::string line = displayName(name) + ":";
  if (problem.place.line > 0) {
    line += std::to_string(problem.place.line) + ":";
    if (problem.place.column > 0) {
      line += std::to_string(problem.place.column) + ":";
    }
  }
  return line + " " + say(severityWord(problem.severity)) + ": " + text;
}

std::string withPointer(const Problem& problem, const std::string& text) {
  return problem.pointer.empty() ? text : problem.pointer + ": " + text;
}

/// "7" of "/bars/7/nodes", and what follows.
bool takeIndex(std::string_view& pointer, std::string_view list, std::int32_t& index) {
  if (!pointer.starts_with(list)) {
    return false;
  }
  pointer.remove_prefix(list.size());
  const auto [end, error] = std::from_chars(pointer.data(), pointer.data() + pointer.size(), index);
  pointer.remove_prefix(static_cast<std::size_t>(end - pointer.data()));
  return error == std::errc();
}

// Lines of a batch text file: five of the header, then twelve a bar.
struct BatchLine {
  std::string_view pointer;
  std::int64_t line;
};
constexpr BatchLine headerLines[] = {{"/title", 3}, {"/unit", 4}, {"/bars", 5}};
constexpr BatchLine barLines[] = {
    {"", 1},           {"/nodes", 2},     {"/nodes/0", 2}, {"/nodes/0/0", 2},
    {"/nodes/0/1", 3}, {"/nodes/0/2", 4}, {"/nodes/1", 5}, {"/nodes/1/0", 5},
    {"/nodes/1/1", 6}, {"/nodes/1/2", 7}, {"/angle", 8},   {"/section", 9},
};

std::int64_t batchLineOf(const Problem& problem) {
  for (const BatchLine& row : headerLines) {
    if (problem.pointer == row.pointer) {
      return row.line;
    }
  }
  std::string_view rest = problem.pointer;
  std::int32_t bar = problem.firstBar;
  if (!takeIndex(rest, "/bars/", bar)) {
    rest = "/section";  // each bar has the text of its own
  }
  constexpr std::int64_t header = 5;
  constexpr std::int64_t perBar = 12;
  for (const BatchLine& row : barLines) {
    if (bar >= 0 && rest == row.pointer) {
      return header + perBar * bar + row.line;
    }
  }
  return 0;
}

}  // namespace

ModelFailure::ModelFailure(const std::string& name, Problem problem)
    : Failure(exitUnreadable, lineOf(name, problem, withPointer(problem, problem.message)),
              FailureLine::whole),
      problem_(std::move(problem)) {}

void locate(const std::string& name, const Model& model, std::vector<Problem>& problems) {
  if (model.format == ModelFormat::batch) {
    for (Problem& problem : problems) {
      if (problem.place.line == 0 && !problem.pointer.empty()) {
        problem.place.line = batchLineOf(problem);
      }
      problem.pointer.clear();
    }
    return;
  }
  std::filebuf file;
  if (problems.empty() || isStandardStream(name) ||
      file.open(pathOf(name), std::ios::in | std::ios::binary) == nullptr) {
    return;
  }
  std::vector<std::string> pointers;
  pointers.reserve(problems.size());
  for (const Problem& problem : problems) {
    pointers.push_back(problem.pointer);
  }
  const std::vector<TextPlace> places = placesOf(file, pointers);
  for (std::size_t i = 0; i < problems.size(); ++i) {
    // The model as a whole has no line.
    if (problems[i].place.line == 0 && !problems[i].pointer.empty()) {
      problems[i].place = places[i];
    }
  }
}

void locate(const std::string& name, Problem& problem, TextPlace readTo) {
  if (problem.place.line > 0 || readTo.line == 0) {
    return;
  }
  std::filebuf file;
  if (!isStandardStream(name) &&
      file.open(pathOf(name), std::ios::in | std::ios::binary) != nullptr) {
    problem.place = placesOf(file, {problem.pointer}, readTo).front();
  }
  if (problem.place.line == 0) {
    problem.place.line = readTo.line;
  }
}

std::string barText(const Model& model, std::int32_t index) {
  std::string text = say(texts::bar, {numberText(index + 1)});
  if (model.format == ModelFormat::json) {
    text += " (/bars/" + std::to_string(index) + ")";
  }
  return text;
}

std::string problemText(const Model& model, const Problem& problem) {
  if (problem.bars == 0) {
    return withPointer(problem, problem.message);
  }
  const std::string bar = problem.pointer.starts_with("/bars/")
                              ? say(texts::bar, {numberText(problem.firstBar + 1)})
                              : barText(model, problem.firstBar);
  const std::string where =
      problem.bars == 1 ? bar : say(texts::barsFrom, {barsText(problem.bars), bar});
  return withPointer(problem, where + ": " + problem.message);
}

std::string problemLine(const std::string& name, const Model& model, const Problem& problem) {
  return lineOf(name, problem, problemText(model, problem));
}

void reportProblems(const std::string& name, const Model& model, std::vector<Problem> problems) {
  locate(name, model, problems);
  for (const Problem& problem : problems) {
    printError(problemLine(name, model, problem));
  }
}

void reportModelWarning(const std::string& name, const std::string& message) {
  const Problem problem{.severity = Severity::warning};
  printError(lineOf(name, problem, message));
}

std::string severityText(Severity severity) { return say(severityWord(severity)); }

const char* severityCode(Severity severity) {
  return severity == Severity::error ? "error" : severity == Severity::warning ? "warning" : "note";
}

}  // namespace exportifc::host
