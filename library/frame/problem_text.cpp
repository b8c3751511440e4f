#include "library/frame/problem_text.h"

#include "library/text/messages.h"

namespace exportifc {

namespace {

const Text& severityWord(Severity severity) {
  switch (severity) {
    case Severity::warning: return texts::warning;
    case Severity::note: return texts::note;
    case Severity::error: break;
  }
  return texts::error;
}

}  // namespace

std::string withPointer(const Problem& problem, const std::string& message) {
  return problem.pointer.empty() ? message : problem.pointer + ": " + message;
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

std::string placedLine(const std::string& name, const Problem& problem, const std::string& text) {
  std::string line = name;
  if (!problem.file.empty()) {
    line += (line.empty() || line.ends_with('/') ? "" : "/") + problem.file;
  }
  line += line.empty() ? "" : ":";
  if (!problem.cell.empty()) {
    line += problem.cell + ":";
  } else if (problem.place.line > 0) {
    line += std::to_string(problem.place.line) + ":";
    if (problem.place.column > 0) {
      line += std::to_string(problem.place.column) + ":";
    }
  }
  return line + (line.empty() ? "" : " ") + severityText(problem.severity) + ": " + text;
}

std::string severityText(Severity severity) { return say(severityWord(severity)); }

const char* severityCode(Severity severity) {
  return severity == Severity::error ? "error" : severity == Severity::warning ? "warning" : "note";
}

}  // namespace exportifc
