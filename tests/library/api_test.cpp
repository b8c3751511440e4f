#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "exportifc/library.h"
#include "library/frame/model_export.h"
#include "tests/library/library_test.h"
#include "tests/support/exchange_text.h"
#include "tests/support/sinks.h"

namespace exportifc {
namespace {

using nlohmann::json;

constexpr std::string_view portal = R"({
  "title": "P", "unit": "mm",
  "nodes": [[0, 0, 0], [0, 0, 3000], [5000, 0, 3000]],
  "sections": {"column": {"text": "W 200 100 8 6"}, "beam": {"text": "EC 80 0 0 12"}},
  "bars": [{"nodes": [0, 1], "section": "column"},
           {"nodes": [1, 2], "section": "beam", "visible": false}]
})";

struct Close {
  void operator()(ExportIfcModel* model) const { exportIfcClose(model); }
};
using Handle = std::unique_ptr<ExportIfcModel, Close>;

struct Opened {
  ExportIfcResult result;
  Handle model;
};

Opened open(std::string_view text, const char* name = "m.json", const char* language = "en") {
  ExportIfcModel* model = nullptr;
  const ExportIfcResult result = exportIfcOpen(text.data(), text.size(), name, language, &model);
  return {.result = result, .model = Handle(model)};
}

json problemsOf(const Handle& model) { return json::parse(exportIfcProblemsJson(model.get())); }

/// A caller that takes so many pieces and lets so many reports pass.
struct Caller {
  std::string bytes;
  std::size_t pieces = 0;
  std::size_t mostPieces = SIZE_MAX;
  std::vector<std::int64_t> done;
  std::size_t mostReports = SIZE_MAX;
};

std::int32_t take(void* context, const char* bytes, std::size_t size) {
  Caller& caller = *static_cast<Caller*>(context);
  caller.bytes.append(bytes, size);
  return caller.pieces++ < caller.mostPieces ? 1 : 0;
}

std::int32_t report(void* context, std::int64_t done, std::int64_t /*total*/) {
  Caller& caller = *static_cast<Caller*>(context);
  caller.done.push_back(done);
  return caller.done.size() <= caller.mostReports ? 1 : 0;
}

std::string largeBatchModel(int bars) {
  std::string text = "t\r\n\r\n\r\nmm\r\n" + std::to_string(bars) + "\r\n";
  for (int i = 0; i < bars; ++i) {
    text += "0\r\n0\r\n0\r\n0\r\n0\r\n3000\r\n0\r\n\r\nW 200 100 8 6\r\n\r\n\r\n\r\n";
  }
  return text;
}

TEST(Api, SaysWhatItIs) {
  EXPECT_EQ(exportIfcAbi(), EXPORTIFC_LIBRARY_ABI);
  EXPECT_STREQ(exportIfcVersion(), EXPORTIFC_VERSION);
  EXPECT_STREQ(exportIfcFormats(), ".json;.txt");
}

TEST(Api, WritesWhatTheProgramWrites) {
  const Opened opened = open(portal);
  ASSERT_EQ(opened.result, exportIfcOk);
  EXPECT_EQ(exportIfcBarCount(opened.model.get()), 2);
  Caller caller;
  ASSERT_EQ(exportIfcExport(opened.model.get(), exportIfcAllBars, take, report, &caller),
            exportIfcOk);
  test::Received received;
  test::MemorySink sink(received);
  Model model = test::soundModel();
  model.bars[1].visible = false;
  exportModel(model, false, sink, [](std::int32_t) { return true; });
  EXPECT_EQ(test::maskGlobalIds(caller.bytes), test::maskGlobalIds(received.bytes));
  EXPECT_EQ(caller.done, std::vector<std::int64_t>{0});
  Caller visible;
  ASSERT_EQ(exportIfcExport(opened.model.get(), exportIfcVisibleOnly, take, nullptr, &visible),
            exportIfcOk);
  EXPECT_LT(visible.bytes.size(), caller.bytes.size());
}

TEST(Api, OneModelIsExportedAgainAndAgain) {
  const Opened opened = open(portal);
  Caller first;
  Caller second;
  ASSERT_EQ(exportIfcExport(opened.model.get(), 0, take, nullptr, &first), exportIfcOk);
  ASSERT_EQ(exportIfcExport(opened.model.get(), 0, take, nullptr, &second), exportIfcOk);
  EXPECT_EQ(test::maskGlobalIds(first.bytes), test::maskGlobalIds(second.bytes));
  EXPECT_NE(first.bytes, second.bytes);
}

TEST(Api, TheCallersBytesAreNotNeededAfterOpening) {
  auto text = std::make_unique<std::string>(portal);
  const Opened opened = open(*text);
  text->assign(text->size(), '#');
  text.reset();
  Caller caller;
  EXPECT_EQ(exportIfcExport(opened.model.get(), 0, take, nullptr, &caller), exportIfcOk);
  EXPECT_EQ(exportIfcCheck(opened.model.get(), exportIfcNotes), exportIfcOk);
}

TEST(Api, SaysWhyBytesAreNoModel) {
  for (const auto& [text, code] :
       {std::pair("", "empty-file"), std::pair("{\"title\": 1,", "json-syntax")}) {
    const Opened opened = open(text);
    EXPECT_EQ(opened.result, exportIfcUnreadable) << text;
    ASSERT_NE(opened.model, nullptr);
    const json problems = problemsOf(opened.model);
    ASSERT_EQ(problems.size(), 1U) << text;
    EXPECT_EQ(problems[0]["severity"], "error");
    EXPECT_NE(problems[0]["message"], "");
    EXPECT_EQ(exportIfcBarCount(opened.model.get()), 0);
    // Nothing else can be done with it.
    Caller caller;
    EXPECT_EQ(exportIfcExport(opened.model.get(), 0, take, nullptr, &caller), exportIfcBadUse);
    EXPECT_EQ(exportIfcCheck(opened.model.get(), 0), exportIfcBadUse);
    EXPECT_EQ(exportIfcTransliterate(opened.model.get()), exportIfcBadUse);
  }
  EXPECT_EQ(problemsOf(open("{\n  \"title\": 1,,").model)[0]["line"], 2);
}

TEST(Api, SpeaksTheLanguageOfTheModelAndLeavesTheCallersAlone) {
  const Opened english = open("", nullptr, nullptr);
  const Opened portuguese = open("", "m.json", "pt-BR");
  EXPECT_EQ(problemsOf(english.model)[0]["message"], "the file is empty");
  EXPECT_EQ(problemsOf(portuguese.model)[0]["message"], "o arquivo está vazio");
  EXPECT_EQ(language(), Language::english);
}

TEST(Api, ChecksWithAndWithoutNotes) {
  std::string text(portal);
  text.replace(text.find("EC 80 0 0 12"), 12, "EC 80 0 0 0.5");
  const Opened opened = open(text);
  ASSERT_EQ(exportIfcCheck(opened.model.get(), 0), exportIfcOk);
  EXPECT_EQ(problemsOf(opened.model).size(), 0U);
  ASSERT_EQ(exportIfcCheck(opened.model.get(), exportIfcNotes), exportIfcOk);
  const json problems = problemsOf(opened.model);
  ASSERT_EQ(problems.size(), 1U);
  EXPECT_EQ(problems[0]["severity"], "note");
  EXPECT_EQ(problems[0]["section"], "beam");
  EXPECT_EQ(problems[0]["firstBar"], 2);
  EXPECT_EQ(problems[0]["line"], 4);
  // What only hidden bars have is nothing to those who leave them out.
  ASSERT_EQ(exportIfcCheck(opened.model.get(), exportIfcVisibleOnly | exportIfcNotes), exportIfcOk);
  EXPECT_EQ(problemsOf(opened.model), json::array());
}

TEST(Api, RefusesWhatWouldCutTheFileUntilItIsTransliterated) {
  std::string text(portal);
  text.replace(text.find("W 200 100 8 6"), 13, "W 200 100 8 6 \u03a6");
  const Opened opened = open(text);
  EXPECT_EQ(exportIfcCheck(opened.model.get(), 0), exportIfcProblems);
  EXPECT_NE(problemsOf(opened.model).size(), 0U);
  Caller caller;
  EXPECT_EQ(exportIfcExport(opened.model.get(), 0, take, nullptr, &caller), exportIfcProblems);
  EXPECT_EQ(caller.bytes, "");
  EXPECT_EQ(exportIfcTransliterate(opened.model.get()), exportIfcOk);
  EXPECT_EQ(exportIfcCheck(opened.model.get(), 0), exportIfcOk);
  EXPECT_EQ(exportIfcExport(opened.model.get(), 0, take, nullptr, &caller), exportIfcOk);
}

TEST(Api, EndsWhereTheCallerTakesNoMore) {
  const Opened opened = open(largeBatchModel(1000), "m.txt");
  ASSERT_EQ(opened.result, exportIfcOk);
  Caller whole;
  ASSERT_EQ(exportIfcExport(opened.model.get(), 0, take, report, &whole), exportIfcOk);
  EXPECT_TRUE(whole.bytes.ends_with("END-ISO-10303-21;\r\n"));
  ASSERT_GT(whole.pieces, 3U);
  EXPECT_EQ(whole.done, (std::vector<std::int64_t>{0, 256, 512, 768}));
  for (std::size_t pieces = 0; pieces + 1 < whole.pieces; ++pieces) {
    Caller full;
    full.mostPieces = pieces;
    EXPECT_EQ(exportIfcExport(opened.model.get(), 0, take, nullptr, &full), exportIfcNotWritten);
    EXPECT_EQ(full.pieces, pieces + 1);
  }
  for (std::size_t reports = 0; reports < 4; ++reports) {
    Caller stopping;
    stopping.mostReports = reports;
    EXPECT_EQ(exportIfcExport(opened.model.get(), 0, take, report, &stopping), exportIfcNotWritten);
    EXPECT_EQ(stopping.done.size(), reports + 1);
  }
}

TEST(Api, SaysBadUseOfNulls) {
  ExportIfcModel* model = nullptr;
  EXPECT_EQ(exportIfcOpen(nullptr, 1, "m.json", "en", &model), exportIfcBadUse);
  EXPECT_EQ(exportIfcOpen("{}", 2, "m.json", "en", nullptr), exportIfcBadUse);
  EXPECT_EQ(exportIfcOpen(nullptr, 0, nullptr, nullptr, &model), exportIfcUnreadable);
  exportIfcClose(model);
  exportIfcClose(nullptr);
  EXPECT_EQ(exportIfcBarCount(nullptr), 0);
  EXPECT_STREQ(exportIfcProblemsJson(nullptr), "[]");
  EXPECT_EQ(exportIfcCheck(nullptr, 0), exportIfcBadUse);
  EXPECT_EQ(exportIfcTransliterate(nullptr), exportIfcBadUse);
  Caller caller;
  EXPECT_EQ(exportIfcExport(nullptr, 0, take, nullptr, &caller), exportIfcBadUse);
  const Opened opened = open(portal);
  EXPECT_EQ(exportIfcExport(opened.model.get(), 0, nullptr, nullptr, &caller), exportIfcBadUse);
}

TEST(Api, ThreadsExportModelsOfTheirOwn) {
  const std::string text = largeBatchModel(200);
  Caller alone;
  exportIfcExport(open(text, "m.txt").model.get(), 0, take, nullptr, &alone);
  std::vector<Caller> callers(4);
  std::vector<std::string> said(callers.size());
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < callers.size(); ++i) {
    threads.emplace_back([&, i] {
      exportIfcExport(open(text, "m.txt").model.get(), 0, take, nullptr, &callers[i]);
      said[i] = problemsOf(open("", "m.json", i % 2 == 0 ? "en" : "pt").model)[0]["message"];
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  for (std::size_t i = 0; i < callers.size(); ++i) {
    EXPECT_EQ(test::maskGlobalIds(callers[i].bytes), test::maskGlobalIds(alone.bytes));
    EXPECT_EQ(said[i], i % 2 == 0 ? "the file is empty" : "o arquivo está vazio");
  }
}

TEST(Api, TakeoffInBothForms) {
  const Opened opened = open(portal, "m.json", "pt");
  Caller caller;
  ASSERT_EQ(exportIfcTakeoff(opened.model.get(), 0, 0.0, exportIfcJson, take, &caller),
            exportIfcOk);
  const json lists = json::parse(caller.bytes);
  EXPECT_EQ(lists["total"]["bars"], 2);
  EXPECT_EQ(lists["sections"][1]["massKg"], 37.68) << "80 x 12 mm, 5 m, 7850 kg/m³";
  caller = {};
  ASSERT_EQ(exportIfcTakeoff(opened.model.get(), exportIfcVisibleOnly, 1000.0, exportIfcCsv, take,
                             &caller),
            exportIfcOk);
  EXPECT_NE(caller.bytes.find("Total;;1;1;3,000;;;8,112;"), std::string::npos) << caller.bytes;
}

TEST(Api, TakeoffSaysWhyThereIsNone) {
  const Opened opened = open(portal);
  Caller caller;
  EXPECT_EQ(exportIfcTakeoff(nullptr, 0, 0.0, exportIfcJson, take, &caller), exportIfcBadUse);
  EXPECT_EQ(exportIfcTakeoff(opened.model.get(), 0, 0.0, exportIfcJson, nullptr, &caller),
            exportIfcBadUse);
  EXPECT_EQ(exportIfcTakeoff(opened.model.get(), 0, -1.0, exportIfcJson, take, &caller),
            exportIfcBadUse);
  EXPECT_EQ(caller.bytes, "");
  caller.mostPieces = 0;
  EXPECT_EQ(exportIfcTakeoff(opened.model.get(), 0, 0.0, exportIfcCsv, take, &caller),
            exportIfcNotWritten);
  std::string broken(portal);
  broken.replace(broken.find("[1, 2]"), 6, "[1, 9]");
  const Opened lost = open(broken);
  EXPECT_EQ(exportIfcTakeoff(lost.model.get(), 0, 0.0, exportIfcCsv, take, &caller),
            exportIfcProblems);
}

}  // namespace
}  // namespace exportifc
