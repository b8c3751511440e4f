#include "cli/json_report.h"

#include <string>

#include <nlohmann/json.hpp>

namespace exportifc::cli {

namespace {

/// Of the object; the next one when a member changes its meaning, or goes.
constexpr int formatNumber = 1;

class FactConsole final : public Console {
 public:
  explicit FactConsole(const Console& outer) : isWatched_(outer.isWatched()) {}

  void printLine(const std::string& /*line*/) override {}
  void printError(const std::string& /*line*/) override {}
  bool isWatched() const override { return isWatched_; }
  bool isForPrograms() const override { return true; }
  void addProblem(const Json& problem) override { problems_.push_back(problem); }
  void addFact(const char* key, const Json& value) override { facts_[key] = value; }
  void addItem(const char* list, const Json& value) override { facts_[list].push_back(value); }

  /// Puts the end and all facts behind what the object begins with.
  void complete(Json& object, ExitCode code) {
    object["ok"] = code == exitOk;
    object["exitCode"] = static_cast<int>(code);
    object["problems"] = std::move(problems_);
    object.update(facts_);
  }

 private:
  bool isWatched_;
  Json problems_ = Json::array();
  Json facts_ = Json::object();
};

}  // namespace

ExitCode reportAsJson(Console& output, const ReportedAction& action) {
  FactConsole facts(output);
  const ExitCode code = guarded(facts, "", [&] { return action(facts); });
  Json object = {{"exportifc", EXPORTIFC_VERSION}, {"format", formatNumber}, {"command", nullptr}};
  facts.complete(object, code);
  constexpr int indent = 2;
  // Plain ASCII, which no console and no pipe decodes otherwise. Names of files are bytes: what is
  // not UTF-8 is replaced.
  output.printLine(object.dump(indent, ' ', true, Json::error_handler_t::replace));
  return code;
}

ExitCode reportModel(Console& console, const std::string& model, const ReportedAction& action) {
  if (!console.isForPrograms()) {
    return action(console);
  }
  FactConsole facts(console);
  const ExitCode code = action(facts);
  Json object = {{"model", model}};
  facts.complete(object, code);
  console.addItem("models", object);
  return code;
}

}  // namespace exportifc::cli
