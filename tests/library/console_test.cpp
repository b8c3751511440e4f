#include "cli/console.h"

#include <functional>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "tests/library/library_test.h"

namespace exportifc::cli {
namespace {

using Lines = std::vector<std::string>;

/// "out: …" and "err: …", in their order.
class HeardConsole final : public Console {
 public:
  void printLine(const std::string& line) override { lines_.push_back("out: " + line); }
  void printError(const std::string& line) override { lines_.push_back("err: " + line); }
  bool isWatched() const override { return false; }

  const Lines& lines() const { return lines_; }

 private:
  Lines lines_;
};

class FactsConsole final : public Console {
 public:
  void printLine(const std::string& /*line*/) override {}
  void printError(const std::string& /*line*/) override {}
  bool isWatched() const override { return false; }
  bool isForPrograms() const override { return true; }
  void addProblem(const Json& problem) override { facts_.push_back(problem); }
  void addFact(const char* key, const Json& value) override { facts_.push_back({{key, value}}); }
  void addItem(const char* list, const Json& value) override { facts_.push_back({{list, value}}); }

  const Json& facts() const { return facts_; }

 private:
  Json facts_ = Json::array();
};

/// What is said of an action that ends by what `raise` throws, and the exit code.
Lines heardOf(const std::string& model, const std::function<void()>& raise) {
  HeardConsole console;
  const ExitCode code = guarded(console, model, [&] {
    raise();
    return exitOk;
  });
  Lines heard = console.lines();
  heard.push_back(std::to_string(code));
  return heard;
}

TEST(Guarded, GivesTheCodeOfTheAction) {
  HeardConsole console;
  EXPECT_EQ(guarded(console, "m.json", [] { return exitProblems; }), exitProblems);
  EXPECT_EQ(console.lines(), Lines());
}

TEST(Guarded, SaysWhatEndedTheAction) {
  EXPECT_EQ(heardOf("m.json", [] { throw Failure(exitUnreadable, "no file"); }),
            Lines({"err: exportifc: error: no file", std::to_string(exitUnreadable)}));
  EXPECT_EQ(
      heardOf("m.json", [] { throw Failure(exitUnreadable, "m.json:1: …", FailureLine::whole); }),
      Lines({"err: m.json:1: …", std::to_string(exitUnreadable)}));
}

TEST(Guarded, NamesTheModelOfWhatHasNoName) {
  const std::string notWritten = std::to_string(exitNotWritten);
  EXPECT_EQ(heardOf("m.json", [] { throw std::bad_alloc(); }),
            Lines({"err: exportifc: error: m.json: not enough memory", notWritten}));
  EXPECT_EQ(heardOf("", [] { throw std::bad_alloc(); }),
            Lines({"err: exportifc: error: not enough memory", notWritten}));
  EXPECT_EQ(heardOf("m.json", [] { throw std::runtime_error("x"); }).front(),
            "err: exportifc: error: m.json: " + say(texts::unexpected, {"x"}));
  const test::InLanguage portuguese(Language::portuguese);
  EXPECT_EQ(heardOf("", [] { throw Failure(exitBadUse, "x"); }).front(), "err: exportifc: erro: x");
}

TEST(Guarded, LetsAnInterruptPass) {
  HeardConsole console;
  EXPECT_THROW(guarded(console, "m.json", []() -> ExitCode { throw Interrupted(); }), Interrupted);
  EXPECT_EQ(console.lines(), Lines());
}

TEST(KeptConsole, SaysItAgainInItsOrder) {
  KeptConsole kept{HeardConsole()};
  kept.printLine("a");
  kept.printError("b");
  kept.printLine("c");
  EXPECT_FALSE(kept.isWatched());
  HeardConsole console;
  kept.repeat(console);
  EXPECT_EQ(console.lines(), Lines({"out: a", "err: b", "out: c"}));
}

TEST(KeptConsole, KeepsFactsForProgramsThatPeopleDoNotHear) {
  HeardConsole people;
  EXPECT_FALSE(KeptConsole(people).isForPrograms());
  KeptConsole kept(people);
  kept.addProblem({{"code", "x"}});
  kept.addFact("bars", 1);
  kept.addItem("files", "a.ifc");
  kept.repeat(people);
  EXPECT_EQ(people.lines(), Lines());
  FactsConsole program;
  EXPECT_TRUE(KeptConsole(program).isForPrograms());
  kept.repeat(program);
  EXPECT_EQ(program.facts(), Json::array({{{"code", "x"}}, {{"bars", 1}}, {{"files", "a.ifc"}}}));
}

TEST(Failures, AreFactsForPrograms) {
  FactsConsole program;
  program.reportFailure(Failure(exitNotWritten, "no"));
  program.reportError(outOfMemoryCode, "full");
  EXPECT_EQ(program.facts(),
            Json::array({failureJson("not-written", "no"), failureJson("out-of-memory", "full")}));
}

}  // namespace
}  // namespace exportifc::cli
