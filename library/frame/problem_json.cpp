#include "library/frame/problem_json.h"

#include <nlohmann/json.hpp>

#include "library/frame/problem_text.h"

namespace exportifc {

using Json = nlohmann::ordered_json;

Json problemJson(const std::string& name, const Problem& problem) {
  Json json = {{"code", problem.code},
               {"severity", severityCode(problem.severity)},
               {"message", problem.message},
               {"file", name}};
  const auto add = [&](const char* key, const std::string& text) {
    if (!text.empty()) {
      json[key] = text;
    }
  };
  if (problem.place.line > 0) {
    json["line"] = problem.place.line;
  }
  if (problem.place.column > 0) {
    json["column"] = problem.place.column;
  }
  add("cell", problem.cell);
  add("pointer", problem.pointer);
  add("value", problem.value);
  add("allowed", problem.allowed);
  add("suggestion", problem.suggestion);
  return json;
}

Json problemJson(const std::string& name, const Model& model, const Problem& problem) {
  Json json = problemJson(name, problem);
  json["bars"] = problem.bars;
  if (problem.firstBar >= 0) {
    json["firstBar"] = problem.firstBar + 1;
  }
  if (problem.section >= 0) {
    json["section"] = model.sections[static_cast<std::size_t>(problem.section)].name;
  }
  if (problem.dimension >= 0) {
    json["dimension"] = problem.dimension;
  }
  return json;
}

}  // namespace exportifc
