#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "exportifc/library.h"
#include "library/files/paths.h"
#include "library/frame/model_export.h"
#include "library/packing/zip_reader.h"
#include "library/sections/rolled_sections.h"
#include "library/sections/section_catalogue.h"
#include "tests/library/library_test.h"
#include "tests/library/scarce_memory.h"
#include "tests/support/exchange_text.h"
#include "tests/support/files.h"
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
  std::string bytes{};
  std::size_t pieces = 0;
  std::size_t mostPieces = SIZE_MAX;
  std::vector<std::int64_t> done{};
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
  EXPECT_STREQ(exportIfcFormats(), ".json;.txt;.xlsx;.zip");
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
    EXPECT_EQ(std::string(exportIfcErrorText(opened.model.get())).find("m.json:"), 0U);
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
    EXPECT_STREQ(exportIfcErrorText(opened.model.get()), "the output took no more bytes");
  }
  for (std::size_t reports = 0; reports < 4; ++reports) {
    Caller stopping;
    stopping.mostReports = reports;
    EXPECT_EQ(exportIfcExport(opened.model.get(), 0, take, report, &stopping), exportIfcCancelled);
    EXPECT_EQ(stopping.done.size(), reports + 1);
    EXPECT_STREQ(exportIfcErrorText(opened.model.get()), "cancelled");
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

// ---- error texts

TEST(Api, SaysWhatEachResultMeans) {
  EXPECT_STREQ(exportIfcResultText(exportIfcOk, nullptr), "done");
  EXPECT_STREQ(exportIfcResultText(exportIfcOk, "pt"), "feito");
  std::set<std::string> said;
  for (std::int32_t result = exportIfcOk; result <= exportIfcCancelled + 1; ++result) {
    EXPECT_TRUE(said.insert(exportIfcResultText(result, "en")).second) << result;
  }
  EXPECT_STREQ(exportIfcResultText(-1, "en"), exportIfcResultText(99, "en"));
}

TEST(Api, KeepsTheReasonOfTheLastCallAlone) {
  std::string text(portal);
  text.replace(text.find("W 200 100 8 6"), 13, "W 200 100 8 6 \u03a6");
  const Opened opened = open(text);
  EXPECT_STREQ(exportIfcErrorText(opened.model.get()), "");
  Caller caller;
  ASSERT_EQ(exportIfcExport(opened.model.get(), 0, take, nullptr, &caller), exportIfcProblems);
  const std::string reason = exportIfcErrorText(opened.model.get());
  EXPECT_EQ(reason.find("m.json:4:"), 0U) << reason;
  EXPECT_EQ(problemsOf(opened.model).size(), 1U) << "what forbade the export";
  ASSERT_EQ(exportIfcTransliterate(opened.model.get()), exportIfcOk);
  EXPECT_STREQ(exportIfcErrorText(opened.model.get()), "");
  EXPECT_STREQ(exportIfcErrorText(nullptr), "");
}

/// Calls the library again from the library's own call.
struct Inside {
  ExportIfcModel* model;
  std::int64_t bars = 0;
  std::vector<ExportIfcResult> results;
};

std::int32_t callAgain(void* context, std::int64_t /*done*/, std::int64_t /*total*/) {
  Inside& inside = *static_cast<Inside*>(context);
  inside.bars = exportIfcBarCount(inside.model);
  inside.results = {exportIfcCheck(inside.model, 0), exportIfcTransliterate(inside.model)};
  exportIfcClose(inside.model);
  return 1;
}

std::int32_t takeAll(void* /*context*/, const char* /*bytes*/, std::size_t /*size*/) { return 1; }

TEST(Api, AModelThatIsBusyTakesNoOtherCall) {
  const Opened opened = open(portal);
  Inside inside{.model = opened.model.get(), .results = {}};
  EXPECT_EQ(exportIfcExport(opened.model.get(), 0, takeAll, callAgain, &inside), exportIfcOk);
  EXPECT_EQ(inside.bars, 2);
  EXPECT_EQ(inside.results, std::vector(2, exportIfcBadUse));
  EXPECT_EQ(exportIfcCheck(opened.model.get(), 0), exportIfcOk) << "not closed either";
}

std::int32_t throwing(void* /*context*/, const char* /*bytes*/, std::size_t /*size*/) {
  throw std::runtime_error("the caller's own");
}

TEST(Api, WhatTheCallersFunctionThrowsEndsTheCallAlone) {
  const Opened opened = open(portal);
  EXPECT_EQ(exportIfcExport(opened.model.get(), 0, throwing, nullptr, nullptr),
            exportIfcNotWritten);
  EXPECT_STREQ(exportIfcErrorText(opened.model.get()), "the caller's own");
  EXPECT_EQ(exportIfcTakeoff(opened.model.get(), 0, 0.0, exportIfcCsv, throwing, nullptr),
            exportIfcNotWritten);
  EXPECT_STREQ(exportIfcErrorText(opened.model.get()), "the caller's own");
}

// ---- families and sections

TEST(Api, ListsFamilies) {
  Caller caller;
  ASSERT_EQ(exportIfcFamilies("en", take, &caller), exportIfcOk);
  const json list = json::parse(caller.bytes);
  EXPECT_EQ(list.size(), families().size());
  const auto row = std::find_if(list.begin(), list.end(),
                                [](const json& family) { return family["word"] == "W"; });
  ASSERT_NE(row, list.end());
  EXPECT_EQ((*row)["entity"], "IFCISHAPEPROFILEDEF");
  EXPECT_EQ((*row)["dimensions"].size(), 4U);
  EXPECT_EQ((*row)["dimensions"][0],
            json::parse(R"({"dimension": 0, "measures": "depth", "mayBeZero": false})"));
  caller = {};
  ASSERT_EQ(exportIfcFamilies("pt", take, &caller), exportIfcOk);
  EXPECT_NE(caller.bytes.find("\"altura\""), std::string::npos);
  EXPECT_EQ(exportIfcFamilies("en", nullptr, &caller), exportIfcBadUse);
  caller = {.mostPieces = 0};
  EXPECT_EQ(exportIfcFamilies("en", take, &caller), exportIfcNotWritten);
}

TEST(Api, ListsRolledSectionsByTheirNames) {
  const auto named = [](const char* name) {
    Caller caller;
    EXPECT_EQ(exportIfcSections(name, take, &caller), exportIfcOk);
    return json::parse(caller.bytes);
  };
  const json one = named("heb180");
  ASSERT_EQ(one.size(), 1U);
  EXPECT_EQ(one[0]["name"], "HEB 180");
  EXPECT_EQ(one[0]["series"], "HEB");
  EXPECT_EQ(one[0]["massPerMetreKg"], 51.2);
  EXPECT_EQ(one[0]["text"], "HE 180 180 14 8.5");
  EXPECT_EQ(named("HE 300").size(), 3U);
  EXPECT_EQ(named(nullptr).size(), rolledSections().size());
  EXPECT_EQ(named("nothing").size(), 0U);
}

// ---- files

/// A bar as tables.
void writeTables(const std::filesystem::path& folder) {
  test::writeFile(folder / "nodes.csv", "node,x [m],y,z\nA,0,0,0\nB,0,0,3\n");
  test::writeFile(folder / "sections.csv", "section,catalogue\nC,HEB 180\n");
  test::writeFile(folder / "bars.csv", "start,end,section\nA,B,C\n");
}

class ApiFiles : public testing::Test {
 protected:
  std::string file(const char* name) const { return textOf(folder.path() / pathOf(name)); }

  Opened openFile(const char* name, const char* language = "en") const {
    ExportIfcModel* model = nullptr;
    const ExportIfcResult result = exportIfcOpenFile(file(name).c_str(), language, &model);
    return {.result = result, .model = Handle(model)};
  }

  std::size_t count() const {
    return static_cast<std::size_t>(std::distance(
        std::filesystem::directory_iterator(folder.path()), std::filesystem::directory_iterator()));
  }

  test::TemporaryFolder folder;
};

TEST_F(ApiFiles, ComeOutAsThroughTheCallersFunction) {
  test::writeFile(pathOf(file("galpão é.json")), portal);
  const Opened opened = openFile("galpão é.json");
  ASSERT_EQ(opened.result, exportIfcOk);
  Caller caller;
  ASSERT_EQ(exportIfcExport(opened.model.get(), 0, take, nullptr, &caller), exportIfcOk);
  const std::string output = file("saída.ifc");
  ASSERT_EQ(exportIfcExportFile(opened.model.get(), 0, output.c_str(), report, &caller),
            exportIfcOk);
  EXPECT_EQ(test::maskGlobalIds(test::readFile(pathOf(output))), test::maskGlobalIds(caller.bytes));
  EXPECT_EQ(caller.done, std::vector<std::int64_t>{0});
  EXPECT_EQ(count(), 2U) << "no temporary file stays";
}

TEST_F(ApiFiles, AreZippedUnderThatName) {
  test::writeFile(pathOf(file("m.json")), portal);
  const Opened opened = openFile("m.json");
  const std::string output = file("m.IFCZIP");
  ASSERT_EQ(exportIfcExportFile(opened.model.get(), 0, output.c_str(), nullptr, nullptr),
            exportIfcOk);
  std::ifstream stream(pathOf(output), std::ios::binary);
  const ZipReader zip(stream);
  ASSERT_EQ(zip.members().size(), 1U);
  EXPECT_EQ(zip.members()[0].name, "m.ifc");
}

TEST_F(ApiFiles, OfAFolderAreTheModelOfItsTables) {
  std::filesystem::create_directory(folder.path() / pathOf("tabelas é"));
  const auto table = [&](const char* name) { return folder.path() / pathOf("tabelas é") / name; };
  writeTables(folder.path() / pathOf("tabelas é"));
  test::writeFile(table("notes.txt"), "no table");
  const Opened opened = openFile("tabelas é");
  ASSERT_EQ(opened.result, exportIfcOk) << exportIfcErrorText(opened.model.get());
  EXPECT_EQ(exportIfcBarCount(opened.model.get()), 1);
  const std::string bars = textOf(table("bars.csv"));
  EXPECT_EQ(exportIfcExportFile(opened.model.get(), 0, bars.c_str(), nullptr, nullptr),
            exportIfcBadUse)
      << "one of its tables";
  EXPECT_EQ(exportIfcErrorText(opened.model.get()),
            "cannot write " + bars + ": it is the model itself");
  test::writeFile(table("bars.csv"), "start,end,section\nA,B,C\nB,X,C\n");
  const Opened lost = openFile("tabelas é");
  ASSERT_EQ(lost.result, exportIfcUnreadable);
  const json problem = problemsOf(lost.model)[0];
  EXPECT_TRUE(problem["file"].get<std::string>().ends_with("bars.csv")) << problem;
  EXPECT_EQ(problem["line"], 3);
  std::filesystem::remove(table("bars.csv"));
  std::filesystem::create_directory(table("bars.csv"));
  const Opened refused = openFile("tabelas é");
  EXPECT_EQ(refused.result, exportIfcUnreadable);
  EXPECT_EQ(exportIfcErrorText(refused.model.get()), "cannot read " + bars + ": it is a folder");
}

TEST_F(ApiFiles, SayWhyTheyCannotBeRead) {
  const Opened missing = openFile("no.json");
  EXPECT_EQ(missing.result, exportIfcUnreadable);
  EXPECT_EQ(exportIfcErrorText(missing.model.get()),
            "cannot read " + file("no.json") + ": the file does not exist");
  EXPECT_EQ(problemsOf(missing.model)[0]["code"], "unreadable");
  EXPECT_EQ(openFile(".").result, exportIfcUnreadable) << "a folder";
  test::writeFile(pathOf(file("bad.json")), "{\n  \"title\": 1,,");
  const Opened bad = openFile("bad.json", "pt");
  EXPECT_EQ(bad.result, exportIfcUnreadable);
  const std::string reason = exportIfcErrorText(bad.model.get());
  EXPECT_EQ(reason.find(file("bad.json") + ":2:"), 0U) << reason;
  EXPECT_NE(reason.find(": erro: "), std::string::npos) << reason;
  ExportIfcModel* model = nullptr;
  EXPECT_EQ(exportIfcOpenFile(nullptr, "en", &model), exportIfcBadUse);
  EXPECT_EQ(exportIfcOpenFile("m.json", "en", nullptr), exportIfcBadUse);
}

TEST_F(ApiFiles, AreNeverTheModelItself) {
  test::writeFile(pathOf(file("m.json")), portal);
  const Opened opened = openFile("m.json");
  const std::string itself = file("m.json");
  std::filesystem::create_directory(folder.path() / "sub");
  for (const std::string& name : {itself, file("sub/../m.json")}) {
    EXPECT_EQ(exportIfcExportFile(opened.model.get(), 0, name.c_str(), nullptr, nullptr),
              exportIfcBadUse);
    EXPECT_EQ(exportIfcErrorText(opened.model.get()),
              "cannot write " + name + ": it is the model itself");
  }
  EXPECT_EQ(test::readFile(pathOf(itself)), portal);
  // A model from memory has a name alone.
  const Opened held = open(portal, itself.c_str());
  EXPECT_EQ(exportIfcExportFile(held.model.get(), 0, itself.c_str(), nullptr, nullptr),
            exportIfcOk);
}

TEST_F(ApiFiles, StayAsTheyAreWhenTheExportFails) {
  const Opened opened = open(portal);
  const std::string output = file("a.ifc");
  test::writeFile(pathOf(output), "old");
  Caller stopping{.mostReports = 0};
  EXPECT_EQ(exportIfcExportFile(opened.model.get(), 0, output.c_str(), report, &stopping),
            exportIfcCancelled);
  const std::string inNothing = file("no/a.ifc");
  EXPECT_EQ(exportIfcExportFile(opened.model.get(), 0, inNothing.c_str(), nullptr, nullptr),
            exportIfcNotWritten);
  EXPECT_EQ(exportIfcErrorText(opened.model.get()), "cannot write " + inNothing + ": the folder " +
                                                        textOf(folder.path() / "no") +
                                                        " does not exist");
  std::string broken(portal);
  broken.replace(broken.find("[1, 2]"), 6, "[1, 9]");
  const Opened lost = open(broken);
  EXPECT_EQ(exportIfcExportFile(lost.model.get(), 0, output.c_str(), nullptr, nullptr),
            exportIfcProblems);
  EXPECT_EQ(exportIfcExportFile(lost.model.get(), 0, nullptr, nullptr, nullptr), exportIfcBadUse);
  EXPECT_EQ(test::readFile(pathOf(output)), "old");
  EXPECT_EQ(count(), 1U);
}

#ifndef _WIN32
TEST_F(ApiFiles, OfAFullDiskHaveItsReason) {
  const Opened opened = open(portal);
  EXPECT_EQ(exportIfcExportFile(opened.model.get(), 0, "/dev/full", nullptr, nullptr),
            exportIfcNotWritten);
  EXPECT_STREQ(exportIfcErrorText(opened.model.get()),
               "cannot write /dev/full: no space left on the disk");
  std::filesystem::create_symlink("/dev/full", folder.path() / "full.ifczip");
  EXPECT_EQ(
      exportIfcExportFile(opened.model.get(), 0, file("full.ifczip").c_str(), nullptr, nullptr),
      exportIfcNotWritten);
}
#endif

TEST(Api, ThreadsExportModelsOfTheirOwn) {
  const std::string text = largeBatchModel(200);
  Caller alone;
  exportIfcExport(open(text, "m.txt").model.get(), 0, take, nullptr, &alone);
  std::vector<Caller> callers(8);
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

/// Runs a call with memory that ends at its first allocation, its second and so on, until all go
/// well; once for a moment and once for good. `call` makes what it needs while there is memory, and
/// says how the call itself ended. With a `step`, of so many allocations only one.
template <class Call>
void endsOfMemory(const char* what, Call call, bool mayGoOn = false, std::size_t step = 1) {
  for (const auto then : {test::ScarceMemory::Then::plenty, test::ScarceMemory::Then::none}) {
    SCOPED_TRACE(what + std::string(then == test::ScarceMemory::Then::none ? ", for good" : ""));
    std::size_t allocations = 0;
    for (bool ranOut = true; ranOut; allocations += step) {
      const ExportIfcResult result = call([=](auto run) {
        const test::ScarceMemory scarce(allocations, then);
        return run();
      });
      ranOut = test::ScarceMemory::ranOut();
      const bool isNoticed = ranOut && !(mayGoOn && result == exportIfcOk);
      ASSERT_EQ(result, isNoticed ? exportIfcNoMemory : exportIfcOk)
          << "allocation " << allocations;
    }
    EXPECT_GT(allocations, 1U) << "never asked for memory";
  }
}

TEST(Api, SaysWhenMemoryRunsOutAtAnyAllocationOfACall) {
  std::string plain = portal.data();
  for (const std::string& text : {plain, largeBatchModel(3)}) {
    endsOfMemory("open", [&](auto scarcely) {
      ExportIfcModel* model = nullptr;
      const char* const name = text == plain ? "m.json" : "m.txt";
      const auto result =
          scarcely([&] { return exportIfcOpen(text.data(), text.size(), name, "en", &model); });
      EXPECT_NE(result == exportIfcOk, exportIfcBarCount(model) == 0);
      exportIfcClose(model);
      return result;
    });
  }
  const auto withModel = [](const std::string& text, auto call) {
    return [=](auto scarcely) {
      const Opened opened = open(text);
      ExportIfcModel* const model = opened.model.get();
      const ExportIfcResult result = scarcely([&] { return call(model); });
      // It is as good as before.
      EXPECT_EQ(call(model), exportIfcOk) << exportIfcErrorText(model);
      return result;
    };
  };
  static constexpr auto drop = [](void* /*context*/, const char* /*bytes*/, std::size_t /*size*/) {
    return std::int32_t{1};
  };
  endsOfMemory("check",
               withModel(plain, [](auto* model) { return exportIfcCheck(model, exportIfcNotes); }));
  endsOfMemory("export", withModel(plain, [](auto* model) {
                 return exportIfcExport(model, 0, drop, nullptr, nullptr);
               }));
  for (const ExportIfcLists lists : {exportIfcJson, exportIfcCsv}) {
    endsOfMemory("takeoff", withModel(plain, [lists](auto* model) {
                   return exportIfcTakeoff(model, 0, 0.0, lists, drop, nullptr);
                 }));
  }
  endsOfMemory(
      "families",
      [&](auto scarcely) {
        return scarcely([&] { return exportIfcFamilies("en", drop, nullptr); });
      },
      false, 97);  // of thousands
  endsOfMemory("sections", [&](auto scarcely) {
    return scarcely([&] { return exportIfcSections("HEB 180", drop, nullptr); });
  });
  const std::string faulty = R"({"unit": "m", "nodes": [[0, 0, 0]], "sections": {}, "bars": 3})";
  endsOfMemory("a model that cannot be read", [&](auto scarcely) {
    ExportIfcModel* model = nullptr;
    const auto result = scarcely(
        [&] { return exportIfcOpen(faulty.data(), faulty.size(), "m.json", "en", &model); });
    EXPECT_EQ(result == exportIfcUnreadable, *exportIfcErrorText(model) != '\0');
    exportIfcClose(model);
    return result == exportIfcUnreadable ? exportIfcOk : result;
  });
  const std::string wrong = R"({"unit": "m", "nodes": [[0, 0, 0]], "sections": {"a": {"text": "Q"}},
      "bars": [{"nodes": [0, 7], "section": "a"}, {"nodes": [0, 0], "section": "b"}]})";
  endsOfMemory("problems", [&](auto scarcely) {
    const Opened opened = open(wrong);
    const auto result =
        scarcely([&] { return exportIfcCheck(opened.model.get(), exportIfcNotes); });
    return result == exportIfcProblems ? exportIfcOk : result;
  });
}

TEST_F(ApiFiles, StayAsTheyAreWhenMemoryRunsOut) {
  constexpr bool mayGoOn = true;  // as some questions about paths do with MinGW-w64
  for (const char* const name : {"out.ifc", "out.ifczip"}) {
    endsOfMemory(
        name,
        [&](auto scarcely) {
          const Opened opened = open(portal);
          test::writeFile(folder.path() / name, "before");
          const std::string path = file(name);
          const auto result = scarcely([&] {
            return exportIfcExportFile(opened.model.get(), 0, path.c_str(), nullptr, nullptr);
          });
          EXPECT_NE(result == exportIfcOk, test::readFile(folder.path() / name) == "before");
          std::filesystem::remove(folder.path() / name);
          EXPECT_EQ(count(), 0U) << "something is left behind";
          return result;
        },
        mayGoOn);
  }
  test::writeFile(folder.path() / "m.json", std::string(portal));
  std::filesystem::create_directory(folder.path() / "tables");
  writeTables(folder.path() / "tables");
  for (const char* const name : {"m.json", "tables"}) {
    endsOfMemory(
        name,
        [&](auto scarcely) {
          const std::string path = file(name);
          ExportIfcModel* model = nullptr;
          const auto result =
              scarcely([&] { return exportIfcOpenFile(path.c_str(), "en", &model); });
          exportIfcClose(model);
          return result;
        },
        mayGoOn);
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
