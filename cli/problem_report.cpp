#include "cli/problem_report.h"

#include <utility>

#include <nlohmann/json.hpp>

#include "cli/model_file.h"
#include "library/frame/problem_json.h"
#include "library/frame/problem_text.h"

namespace exportifc::cli {

std::string problemLine(const std::string& name, const Problem& problem, const std::string& text) {
  return placedLine(displayName(name), problem, text);
}

std::string problemLine(const std::string& name, const Model& model, const Problem& problem) {
  return problemLine(name, problem, problemText(model, problem));
}

void reportProblems(Console& console, const std::string& name, const Model& model,
                    std::vector<Problem> problems) {
  locate(name, model, problems);
  for (const Problem& problem : problems) {
    if (console.isForPrograms()) {
      console.addProblem(factsOf(problemJson(name, model, problem)));
    } else {
      console.printError(problemLine(name, model, problem));
    }
  }
}

void reportModelWarning(Console& console, const std::string& name, const char* code,
                        const std::string& message) {
  const Problem problem{.code = code, .severity = Severity::warning, .message = message};
  if (console.isForPrograms()) {
    console.addProblem(factsOf(problemJson(name, problem)));
  } else {
    console.printError(problemLine(name, problem, message));
  }
}

}  // namespace exportifc::cli
