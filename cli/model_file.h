// A model from wherever the user says.
#pragma once

#include <string>
#include <vector>

#include "cli/failure.h"
#include "library/frame/model.h"
#include "library/frame/problem.h"

namespace exportifc::cli {

/// A model that cannot be taken in, with its problem. The message is the whole line.
class ModelFailure final : public Failure {
 public:
  ModelFailure(const std::string& name, Problem problem);

  nlohmann::ordered_json facts() const override;

 private:
  std::string name_;
  Problem problem_;
};

/// Reads the model `name` in the format that recognises it; "-" is standard input. Throws a Failure
/// that names place and reason.
Model readModel(const std::string& name);

/// Throws the Failure of `readModel` when there is no such file to read.
void requireReadable(const std::string& name);

/// Fills in lines and columns, by going through the text of the model `name` again. The values of a
/// JSON model on standard input keep their pointers alone: it cannot be read twice.
void locate(const std::string& name, const Model& model, std::vector<Problem>& problems);

/// `name`, or the word for standard input.
std::string displayName(const std::string& name);

}  // namespace exportifc::cli
