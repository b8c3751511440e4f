#include "cli/problem_report.h"

#include <utility>

#include "cli/model_file.h"
#include "library/frame/problem_text.h"

namespace exportifc::cli {

std::string problemLine(const std::string& name, const Problem& problem, const std::string& text) {
  std::string line = displayName(name) + ":";
  if (!problem.cell.empty()) {
    line += problem.cell + ":";
  } else if (problem.place.line > 0) {
    line += std::to_string(problem.place.line) + ":";
    if (problem.place.column > 0) {
      line += std::to_string(problem.place.column) + ":";
    }
  }
  return line + " " + severityText(problem.severity) + ": " + text;
}

std::string problemLine(const std::string& name, const Model& model, const Problem& problem) {
  return problemLine(name, problem, problemText(model, problem));
}

void reportProblems(Console& console, const std::string& name, const Model& model,
                    std::vector<Problem> problems) {
  locate(name, model, problems);
  for (const Problem& problem : problems) {
    console.printError(problemLine(name, model, problem));
  }
}

void reportModelWarning(Console& console, const std::string& name, const std::string& message) {
  const Problem problem{.severity = Severity::warning};
  console.printError(problemLine(name, problem, message));
}

}  // namespace exportifc::cli
