#include "cli/failure.h"

#include <nlohmann/json.hpp>

#include "library/frame/problem_text.h"

namespace exportifc::cli {

namespace {

/// By exit code.
constexpr const char* codes[] = {unexpectedCode, nothingWrittenCode, badUseCode, unreadableCode,
                                 notWrittenCode};

}  // namespace

nlohmann::ordered_json failureJson(const char* code, const std::string& message) {
  return {{"code", code}, {"severity", severityCode(Severity::error)}, {"message", message}};
}

nlohmann::ordered_json Failure::facts() const { return failureJson(codes[code_], what()); }

}  // namespace exportifc::cli
