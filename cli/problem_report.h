// Problems of a model as lines that people and editors understand.
#pragma once

#include <string>
#include <vector>

#include "cli/console.h"
#include "library/frame/model.h"
#include "library/frame/problem.h"

namespace exportifc::cli {

/// "model.json:12:7: error: …", with what of the place is known.
std::string problemLine(const std::string& name, const Model& model, const Problem& problem);
/// The same with `text` in place of the problem's own.
std::string problemLine(const std::string& name, const Problem& problem, const std::string& text);

/// Locates the problems and says them on standard error, one line each.
void reportProblems(Console& console, const std::string& name, const Model& model,
                    std::vector<Problem> problems);

/// A warning of the model as a whole, on standard error.
void reportModelWarning(Console& console, const std::string& name, const char* code,
                        const std::string& message);

}  // namespace exportifc::cli
