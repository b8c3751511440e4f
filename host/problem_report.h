// Problems of a model as lines that people and editors understand.
#pragma once

#include <string>
#include <vector>

#include "host/failure.h"
#include "host/model.h"
#include "host/problem.h"

namespace exportifc::host {

/// A model that cannot be taken in, with its problem. The message is the whole line.
class ModelFailure final : public Failure {
 public:
  ModelFailure(const std::string& name, Problem problem);

  const Problem& problem() const { return problem_; }

 private:
  Problem problem_;
};

/// Fills in lines and columns, by going through the text of the model `name` again. The values of a
/// JSON model on standard input keep their pointers alone: it cannot be read twice.
void locate(const std::string& name, const Model& model, std::vector<Problem>& problems);
/// The same for a problem that ended the reading at `readTo`.
void locate(const std::string& name, Problem& problem, TextPlace readTo);

/// "bar 7 (/bars/6)", or without the pointer for a batch text file.
std::string barText(const Model& model, std::int32_t index);

/// What people read behind place and severity: the pointer, the bars, the message.
std::string problemText(const Model& model, const Problem& problem);

/// "model.json:12:7: error: …", with what of the place is known.
std::string problemLine(const std::string& name, const Model& model, const Problem& problem);

/// Locates the problems and says them on standard error, one line each.
void reportProblems(const std::string& name, const Model& model, std::vector<Problem> problems);

/// A warning of the model as a whole, on standard error.
void reportModelWarning(const std::string& name, const std::string& message);

/// The word for people, in their language.
std::string severityText(Severity severity);

/// The word for programs: "error", "warning", "note".
const char* severityCode(Severity severity);

}  // namespace exportifc::host
