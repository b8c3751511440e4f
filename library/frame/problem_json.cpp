#include "library/frame/problem_json.h"

#include "library/frame/problem_text.h"

namespace exportifc {

JsonObject problemJson(const std::string& name, const Problem& problem) {
  JsonObject json;
  const auto addIfAny = [&](std::string_view key, std::string_view text) {
    if (!text.empty()) {
      json.addText(key, text);
    }
  };
  json.addText("code", problem.code);
  json.addText("severity", severityCode(problem.severity));
  json.addText("message", problem.message);
  json.addText("file", problem.file.empty() ? name : name + "/" + problem.file);
  if (problem.place.line > 0) {
    json.addInteger("line", problem.place.line);
  }
  if (problem.place.column > 0) {
    json.addInteger("column", problem.place.column);
  }
  addIfAny("cell", problem.cell);
  addIfAny("pointer", problem.pointer);
  addIfAny("value", problem.value);
  addIfAny("allowed", problem.allowed);
  addIfAny("suggestion", problem.suggestion);
  return json;
}

JsonObject problemJson(const std::string& name, const Model& model, const Problem& problem) {
  JsonObject json = problemJson(name, problem);
  json.addInteger("bars", problem.bars);
  if (problem.firstBar >= 0) {
    json.addInteger("firstBar", problem.firstBar + 1);
  }
  if (problem.section >= 0) {
    json.addText("section", model.sections[static_cast<std::size_t>(problem.section)].name);
  }
  if (problem.dimension >= 0) {
    json.addInteger("dimension", problem.dimension);
  }
  return json;
}

}  // namespace exportifc
