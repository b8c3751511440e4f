#include "host/check_command.h"

#include <algorithm>

#include <nlohmann/json.hpp>

#include "host/console.h"
#include "host/failure.h"
#include "host/messages.h"
#include "host/model_check.h"
#include "host/model_reader.h"

namespace exportifc::host {

namespace {

using Json = nlohmann::ordered_json;

Json problemJson(const Model& model, const Problem& problem) {
  Json json = {{"code", problem.code},
               {"severity", problem.isError ? "error" : "warning"},
               {"message", problem.message},
               {"bars", problem.bars}};
  if (problem.firstBar >= 0) {
    json["firstBar"] = problem.firstBar + 1;
    if (model.format == ModelFormat::json) {
      json["pointer"] = "/bars/" + std::to_string(problem.firstBar);
    }
  }
  if (problem.section >= 0) {
    json["section"] = model.sections[static_cast<std::size_t>(problem.section)].name;
  }
  if (problem.dimension >= 0) {
    json["dimension"] = problem.dimension;
  }
  return json;
}

struct Finding {
  int code = exitOk;
  Json json;
};

Finding checkOne(const std::string& name, const CheckOptions& options) {
  Finding finding{.json = {{"model", name}}};
  Json list = Json::array();
  try {
    const Model model = readModel(name);
    finding.json["bars"] = model.bars.size();
    const std::vector<Problem> problems = checkModel(model, options.visibleOnly);
    for (const Problem& problem : problems) {
      list.push_back(problemJson(model, problem));
      if (!options.json) {
        printLine(displayName(name) + ": " + say(problem.isError ? texts::error : texts::warning) +
                  ": " + problemText(model, problem));
      }
    }
    finding.code = problems.empty() ? exitOk : exitProblems;
    if (!options.json) {
      printLine(
          displayName(name) + ": " +
          say(texts::checkSummary,
              {numberText(static_cast<std::int64_t>(model.bars.size())),
               problems.empty() ? say(texts::checkNoProblems)
                                : say(texts::checkProblems,
                                      {numberText(static_cast<std::int64_t>(problems.size()))})}));
    }
  } catch (const Failure& failure) {
    finding.code = failure.code();
    list.push_back({{"code", "unreadable"}, {"severity", "error"}, {"message", failure.what()}});
    if (!options.json) {
      reportError(failure.what());
    }
  }
  finding.json["problems"] = std::move(list);
  return finding;
}

}  // namespace

int runCheckCommand(const CheckOptions& options) {
  int code = exitOk;
  Json all = Json::array();
  for (const std::string& model : options.models) {
    Finding finding = checkOne(model, options);
    code = std::max(code, finding.code);
    all.push_back(std::move(finding.json));
  }
  if (options.json) {
    constexpr int indent = 2;
    // Names of files are bytes: what is not UTF-8 is replaced.
    printLine(all.dump(indent, ' ', false, Json::error_handler_t::replace));
  }
  return code;
}

}  // namespace exportifc::host
