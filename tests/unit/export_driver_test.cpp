#include "plugin/export_driver.h"

#include <algorithm>
#include <clocale>
#include <cstring>
#include <filesystem>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "runtime_locale.h"
#include "support.h"

#if !defined(_WIN32)
#include <thread>

#include "system_calls.h"
#endif

namespace exportifc {
namespace {

using test::question;
using test::Said;
using test::saveDialog;
using test::ScriptedBar;

constexpr const char* creationFailed = "Erro na cria\xE7\xE3o do arquivo";

Said unhandled(const std::wstring& reason) {
  return test::message(MessageId::exportFailed, reason);
}

/// Throws when the bar at `failing` is asked for.
class FailingSource final : public BarSource {
 public:
  FailingSource(std::function<void()> fail, std::int32_t failing)
      : fail_(std::move(fail)), failing_(failing) {}

  std::int32_t unitCode() override { return 2; }
  std::int32_t barCount() override { return 3; }
  bool next(std::int32_t index, SourceBar& bar) override {
    if (index == failing_) {
      fail_();
    }
    return good_.next(0, bar);
  }

 private:
  std::function<void()> fail_;
  std::int32_t failing_;
  test::ListSource good_{{ScriptedBar{}}};
};

/// One export with scripted surroundings.
class ExportDriverTest : public testing::Test {
 protected:
  ExportServices services() {
    return {.ui = user,
            .openOutput = [this](const std::wstring& path) -> std::unique_ptr<ByteSink> {
              openedPaths.push_back(path);
              if (!canOpen) {
                return nullptr;
              }
              return std::make_unique<test::MemorySink>(received);
            },
            .openModel = [this](const Module& asked) -> std::unique_ptr<BarSource> {
              bytesAtModel = received.bytes;
              outputPathAtModel = asked.record.outputPath;
              if (model) {
                return model();
              }
              return std::make_unique<test::ListSource>(bars);
            }};
  }

  std::int64_t run() { return runExport(module, services()); }

  void interactive() {
    // Somewhere the probe can write.
    user.choice = test::wide(folder.file("out.ifc"));
  }

  void batch() { module.batchPath = "model.txt"; }

  bool finished() const {
    return received.bytes.ends_with("\r\n\r\nENDSEC;\r\nEND-ISO-10303-21;\r\n");
  }

  test::KeepRuntimeLocale keepLocale;
  test::TemporaryFolder folder;
  test::ScriptedUser user;
  test::Received received;
  Module module = test::plainModule();
  std::vector<ScriptedBar> bars = {ScriptedBar{}};
  std::function<std::unique_ptr<BarSource>()> model;
  bool canOpen = true;
  std::vector<std::wstring> openedPaths;
  std::string bytesAtModel;
  std::string outputPathAtModel;
};

// ---- Steps -------------------------------------------------------------------------------------

TEST_F(ExportDriverTest, AnInteractiveExport) {
  interactive();
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(user.said, (std::vector<Said>{saveDialog, question}));
  EXPECT_EQ(openedPaths, std::vector<std::wstring>{*user.choice});
  EXPECT_TRUE(received.bytes.starts_with("ISO-10303-21;\r\nHEADER;\r\n"));
  EXPECT_NE(received.bytes.find("\r\n#5= IFCOWNERHISTORY("), std::string::npos);
  EXPECT_NE(received.bytes.find("= IFCBEAM('"), std::string::npos);
  EXPECT_TRUE(finished());
  EXPECT_TRUE(received.closed);
  EXPECT_EQ(module.batchPath, folder.file("out.ifc"));
  EXPECT_EQ(module.record.outputPath, folder.file("out.ifc"));
}

TEST_F(ExportDriverTest, ACancelledDialogEndsAtOnce) {
  EXPECT_EQ(run(), -1);
  EXPECT_EQ(user.said, std::vector<Said>{saveDialog}) << "no question";
  EXPECT_TRUE(openedPaths.empty());
  EXPECT_EQ(module.batchPath, "");
  EXPECT_STREQ(module.record.outputPath, "");
}

TEST_F(ExportDriverTest, AChosenFileThatCannotBeCreatedEndsAtOnce) {
  user.choice = test::wide(folder.file("missing/out.ifc"));
  EXPECT_EQ(run(), -1);
  EXPECT_EQ(user.said, (std::vector<Said>{saveDialog, test::message(MessageId::cannotCreateFile)}));
  EXPECT_TRUE(openedPaths.empty());
}

TEST_F(ExportDriverTest, ABatchExportAsksNothing) {
  batch();
  EXPECT_EQ(run(), 1);
  EXPECT_TRUE(user.said.empty());
  EXPECT_EQ(openedPaths, std::vector<std::wstring>{L"model.txttemp"});
  EXPECT_TRUE(finished());
  EXPECT_EQ(module.batchPath, "model.txttemp");
}

TEST_F(ExportDriverTest, TheAnswerDecidesAboutInvisibleBars) {
  bars = {{.section = "W 1"}, {.section = "HP 2", .visible = 0}};
  const auto elements = [&](BarChoice answer) {
    received = {};
    module.batchPath.clear();
    interactive();
    user.bars = answer;
    EXPECT_EQ(run(), 1);
    return test::linesWith(test::linesOf(received.bytes), "= IFCBEAM(").size();
  };
  EXPECT_EQ(elements(BarChoice::all), 2U);
  EXPECT_EQ(elements(BarChoice::visibleOnly), 1U);
}

TEST_F(ExportDriverTest, ABatchExportTakesInvisibleBarsToo) {
  bars = {{.section = "W 1", .visible = 0}};
  user.bars = BarChoice::visibleOnly;
  batch();
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(test::linesWith(test::linesOf(received.bytes), "= IFCBEAM(").size(), 1U);
}

TEST_F(ExportDriverTest, TheModelIsOpenedAfterThePreambleAndThePublishedPath) {
  batch();
  run();
  EXPECT_TRUE(bytesAtModel.ends_with("$, $, #104, (#113));\r\n"));
  EXPECT_EQ(outputPathAtModel, "model.txttemp");
}

TEST_F(ExportDriverTest, AnEmptyModel) {
  bars.clear();
  batch();
  EXPECT_EQ(run(), 1);
  const std::string content = received.bytes.substr(bytesAtModel.size());
  EXPECT_EQ(test::maskGlobalIds(content), "#5006= IFCRELCONTAINEDINSPATIALSTRUCTURE('" +
                                              std::string(22, 'G') +
                                              "', #5, 'Pavimento 1', '', (), #113);\r\n"
                                              "\r\nENDSEC;\r\nEND-ISO-10303-21;\r\n");
}

TEST_F(ExportDriverTest, AfterAnInteractiveExportTheModuleStaysInBatchMode) {
  interactive();
  EXPECT_EQ(run(), 1);
  user.said.clear();
  EXPECT_EQ(run(), 1);
  EXPECT_TRUE(user.said.empty());
  EXPECT_EQ(openedPaths.back(), test::wide(folder.file("out.ifctemp")));
  EXPECT_EQ(module.batchPath, folder.file("out.ifctemp"));
}

#if defined(_WIN32)

TEST_F(ExportDriverTest, TheLocaleIsThatOfTheHostsCountry) {
  batch();
  run();
  EXPECT_NE(std::string(std::setlocale(LC_ALL, nullptr)).find("Portuguese"), std::string::npos);
  EXPECT_TRUE(finished());
}

#else

// Whether a locale of that name is installed here or not: that it is asked for counts.

TEST_F(ExportDriverTest, TheWholeLocaleIsChangedBetweenOpeningTheFileAndWritingIt) {
  batch();
  std::vector<std::string> steps;
  test::SystemCalls calls;
  calls.changesLocale = [&](int category, const char* name) {
    steps.push_back((category == LC_ALL ? "all " : "some ") + std::string(name));
  };
  ExportServices watched = services();
  watched.openOutput = [&](const std::wstring&) {
    steps.emplace_back("open");
    return std::make_unique<test::WatchedSink>([&](const std::string&) {
      if (steps.back() != "line") {
        steps.emplace_back("line");
      }
    });
  };
  EXPECT_EQ(runExport(module, watched), 1);
  EXPECT_EQ(steps, (std::vector<std::string>{"open", "all Portuguese", "line"}));
}

TEST_F(ExportDriverTest, WithoutAnOutputTheLocaleStays) {
  batch();
  canOpen = false;
  test::SystemCalls calls;
  calls.changesLocale = [](int, const char* name) { ADD_FAILURE() << name; };
  EXPECT_THROW(run(), const char*);
}

#endif

// ---- The order in which things end -------------------------------------------------------------

/// Tells when it is closed and when it is gone.
class WatchedSource final : public BarSource {
 public:
  WatchedSource(std::vector<std::string>& steps, bool fails) : steps_(steps), fails_(fails) {}
  WatchedSource(const WatchedSource&) = delete;
  WatchedSource& operator=(const WatchedSource&) = delete;
  ~WatchedSource() override { steps_.emplace_back("model gone"); }

  std::int32_t unitCode() override { return 2; }
  std::int32_t barCount() override { return 1; }
  bool next(std::int32_t index, SourceBar& bar) override {
    steps_.emplace_back("bar");
    if (fails_) {
      throw std::runtime_error("no more");
    }
    return good_.next(index, bar);
  }
  void close() override { steps_.emplace_back("model closed"); }

 private:
  std::vector<std::string>& steps_;
  bool fails_;
  test::ListSource good_{{ScriptedBar{.type = 1.0F}}};
};

class OrderOfClosing : public ExportDriverTest {
 protected:
  std::vector<std::string> stepsOf(bool failing) {
    batch();
    std::vector<std::string> steps;
    ExportServices watched = services();
    watched.openOutput = [&](const std::wstring&) {
      return std::make_unique<test::WatchedSink>(
          [&](const std::string& line) {
            for (const char* const text : {"IFCELEMENTASSEMBLY", "IFCRELCONTAINED", "END-ISO"}) {
              if (line.find(text) != std::string::npos) {
                steps.emplace_back(text);
              }
            }
          },
          [&] { steps.push_back("file closed, next model " + module.batchPath); });
    };
    watched.openModel = [&](const Module&) {
      return std::make_unique<WatchedSource>(steps, failing);
    };
    EXPECT_EQ(runExport(module, watched), 1);
    return steps;
  }
};

TEST_F(OrderOfClosing, TheModelThenTheAssembliesThenTheFile) {
  EXPECT_EQ(stepsOf(false), (std::vector<std::string>{"bar", "model closed", "IFCELEMENTASSEMBLY",
                                                      "IFCRELCONTAINED", "END-ISO", "model gone",
                                                      "file closed, next model model.txttemp"}));
}

TEST_F(OrderOfClosing, AFailureClosesTheModelBeforeTheFile) {
  EXPECT_EQ(stepsOf(true),
            (std::vector<std::string>{"bar", "model gone", "file closed, next model model.txt"}));
}

// ---- Identifiers -------------------------------------------------------------------------------

#if !defined(_WIN32)

class Identifiers : public ExportDriverTest {
 protected:
  /// The export's identifiers in the order of the file. On a thread that has no random bytes left.
  std::vector<std::string> idsWith(
      const std::function<bool(unsigned char*, std::size_t)>& randomBytes) {
    test::SystemCalls calls;
    calls.randomBytes = randomBytes;
    batch();
    bars = {{.type = 1.0F}, {.type = 3.0F}};
    std::thread([&] { EXPECT_EQ(run(), 1); }).join();
    EXPECT_TRUE(finished());
    std::vector<std::string> ids;
    for (const std::string& line : test::linesOf(received.bytes.substr(bytesAtModel.size()))) {
      for (const char* const keyword :
           {"IFCBEAM('", "IFCPROPERTYSET('", "IFCRELDEFINESBYPROPERTIES('", "IFCELEMENTASSEMBLY('",
            "IFCRELAGGREGATES('", "IFCRELCONTAINEDINSPATIALSTRUCTURE('"}) {
        if (const std::size_t at = line.find(keyword); at != std::string::npos) {
          const std::size_t start = at + std::strlen(keyword);
          ids.push_back(line.substr(start, line.find('\'', start) - start));
        }
      }
    }
    return ids;
  }
};

TEST_F(Identifiers, AreMadeInTheOrderOfTheirLines) {
  // The pieces of 16 bytes are given out from the last to the first: it gets the 1.
  const auto ids = idsWith([](unsigned char* bytes, std::size_t size) {
    for (std::size_t i = 0; i < size; ++i) {
      bytes[i] = i % 16 == 15 ? static_cast<unsigned char>(size / 16 - i / 16) : 0;
    }
    return true;
  });
  std::string lastDigits;
  for (const std::string& id : ids) {
    ASSERT_EQ(id.size(), 22U);
    lastDigits += id.back();
  }
  EXPECT_EQ(lastDigits, "123456789AB");
}

TEST_F(Identifiers, WithoutASourceTheyAreEmpty) {
  EXPECT_EQ(idsWith([](unsigned char*, std::size_t) { return false; }),
            std::vector<std::string>(11));
}

#endif

// ---- The path that hosts see -------------------------------------------------------------------

TEST_F(ExportDriverTest, TheOldPathIsClearedBehindTheNewOne) {
  std::memset(module.record.outputPath, 'z', sizeof(module.record.outputPath));
  batch();
  run();
  std::string expected = "model.txttemp";
  expected.resize(sizeof(module.record.outputPath));
  EXPECT_EQ(std::string(module.record.outputPath, sizeof(module.record.outputPath)), expected);
  EXPECT_EQ(module.record.reserved1056[0], 0);
}

TEST_F(ExportDriverTest, ThePathIsToldBetweenThePreambleAndTheModel) {
  batch();
  std::string before;
  std::string after;
  ExportServices watched = services();
  watched.openOutput = [&](const std::wstring&) {
    return std::make_unique<test::WatchedSink>([&](const std::string& line) {
      (module.record.outputPath[0] == '\0' ? before : after) += line;
    });
  };
  EXPECT_EQ(runExport(module, watched), 1);
  EXPECT_TRUE(before.ends_with("$, $, #104, (#113));\r\n")) << before;
  EXPECT_TRUE(after.starts_with("#5006= ")) << after;
}

TEST_F(ExportDriverTest, TheLongestPathFillsTheField) {
  module.batchPath = std::string(1019, 'p');
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(module.record.outputPath, std::string(1019, 'p') + "temp");
}

#if !defined(_WIN32)  // no path of Windows is as long

TEST_F(ExportDriverTest, APathLongerThanTheFieldLeavesItEmpty) {
  interactive();
  const std::size_t slash = user.choice->rfind(L'/');
  while (user.choice->size() < sizeof(module.record.outputPath)) {
    user.choice->insert(slash, 1, L'/');
  }
  std::memset(module.record.outputPath, 'z', sizeof(module.record.outputPath));
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(
      std::count(std::begin(module.record.outputPath), std::end(module.record.outputPath), '\0'),
      1024)
      << "no room for the end of the text";
}

#endif

TEST_F(ExportDriverTest, NarrowPathsAreKept) {
  batch();
  run();
  module.batchPath = "other.txt";
  run();
  ASSERT_EQ(module.narrowPaths.size(), 2U);
  EXPECT_STREQ(module.narrowPaths[0].get(), "model.txttemp");
  EXPECT_STREQ(module.narrowPaths[1].get(), "other.txttemp");
}

TEST_F(ExportDriverTest, AnAccentedPathKeepsItsBytes) {
  module.batchPath = "a\xE7.txt";
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(module.batchPath, "a\xE7.txttemp");
  EXPECT_STREQ(module.record.outputPath, "a\xE7.txttemp");
}

TEST_F(ExportDriverTest, ThePathIsCutToTheLowBytes) {
  // U+0141 and U+4E2D: a chosen file with a name that no narrow encoding here can hold.
  interactive();
  user.choice->append(L"\u0141\u4E2D.ifc");
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(module.batchPath, folder.file("out.ifc") + "\x41\x2D.ifc");
  EXPECT_TRUE(finished());
#if defined(_WIN32)
  EXPECT_EQ(
      std::count(std::begin(module.record.outputPath), std::end(module.record.outputPath), '\0'),
      1024)
      << "a failing conversion leaves the field empty";
#else
  EXPECT_EQ(module.record.outputPath, module.batchPath) << "paths are bytes here";
#endif
}

// ---- Failures ----------------------------------------------------------------------------------

TEST_F(ExportDriverTest, AnOutputFileThatCannotBeOpenedIsThrownAtTheHost) {
  batch();
  canOpen = false;
  try {
    run();
    FAIL() << "nothing was thrown";
  } catch (const char* text) {
    EXPECT_STREQ(text, creationFailed);
  }
  EXPECT_TRUE(user.said.empty());
  EXPECT_EQ(module.batchPath, "model.txt");
  EXPECT_STREQ(module.record.outputPath, "");
}

TEST_F(ExportDriverTest, InteractivelyTheQuestionComesBeforeThatThrow) {
  interactive();
  canOpen = false;
  EXPECT_THROW(run(), const char*);
  EXPECT_EQ(user.said, (std::vector<Said>{saveDialog, question}));
}

TEST_F(ExportDriverTest, ABatchPathTooLongIsThrownAtTheHost) {
  module.batchPath = std::string(1020, 'p');
  try {
    run();
    FAIL() << "nothing was thrown";
  } catch (const char* text) {
    EXPECT_STREQ(text, creationFailed);
  }
  EXPECT_TRUE(openedPaths.empty());
}

TEST_F(ExportDriverTest, AnExceptionLeavesTheFileWithoutTrailer) {
  batch();
  model = [] {
    return std::make_unique<FailingSource>([] { throw std::runtime_error("the model broke"); }, 1);
  };
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(user.said, std::vector<Said>{unhandled(L"the model broke")});
  EXPECT_EQ(module.batchPath, "model.txt");
  EXPECT_EQ(module.record.outputPath, std::string("model.txttemp"));
  EXPECT_TRUE(received.closed);
  EXPECT_EQ(test::linesWith(test::linesOf(received.bytes), "= IFCBEAM(").size(), 1U)
      << "the first bar is there";
  EXPECT_EQ(received.bytes.find("IFCRELCONTAINED"), std::string::npos);
  EXPECT_EQ(received.bytes.find("END-ISO"), std::string::npos);
}

TEST_F(ExportDriverTest, EveryStandardExceptionIsReported) {
  const auto reported = [&](const std::function<void()>& fail) {
    batch();
    user.said.clear();
    model = [&] { return std::make_unique<FailingSource>(fail, 0); };
    EXPECT_EQ(run(), 1);
    EXPECT_EQ(user.said.size(), 1U);
    EXPECT_EQ(user.said.at(0).id, MessageId::exportFailed);
    return user.said.at(0).value;
  };
  EXPECT_EQ(reported([] { throw std::out_of_range("vector"); }), L"vector");
  EXPECT_EQ(reported([] { throw std::bad_alloc(); }), test::wide(std::bad_alloc().what()));
  EXPECT_EQ(reported([] { throw "bad argument"; }), L"bad argument") << "our own thrown text";
}

TEST_F(ExportDriverTest, NoTextAtAllIsReportedAsAnEmptyOne) {
  batch();
  model = [] {
    return std::make_unique<FailingSource>([] { throw static_cast<const char*>(nullptr); }, 1);
  };
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(user.said, std::vector<Said>{unhandled(L"")});
  EXPECT_TRUE(received.closed);
}

TEST_F(ExportDriverTest, AnExceptionWhileTheModelIsOpened) {
  batch();
  model = []() -> std::unique_ptr<BarSource> { throw std::logic_error("no model"); };
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(user.said, std::vector<Said>{unhandled(L"no model")});
  EXPECT_EQ(received.bytes, bytesAtModel);
}

TEST_F(ExportDriverTest, AnExceptionInTheFirstStep) {
  struct BrokenUser final : UserInterface {
    std::optional<std::wstring> chooseSaveFile() override { throw std::runtime_error("no dialog"); }
    BarChoice chooseBars() override { return BarChoice::all; }
    void show(const Message& message) override {
      EXPECT_EQ(message.id, MessageId::exportFailed);
      reasons += message.reason;
    }
    std::string reasons;
  };
  BrokenUser broken;
  const ExportServices system = services();
  const ExportServices own{
      .ui = broken, .openOutput = system.openOutput, .openModel = system.openModel};
  EXPECT_EQ(runExport(module, own), 1);
  EXPECT_EQ(broken.reasons, "no dialog");
}

TEST_F(ExportDriverTest, AFullDiskIsNotNoticed) {
  batch();
  ExportServices full = services();
  full.openOutput = [&](const std::wstring&) {
    return std::make_unique<test::MemorySink>(received, 1000);
  };
  EXPECT_EQ(runExport(module, full), 1);
  EXPECT_EQ(received.bytes.size(), 1000U);
  EXPECT_TRUE(user.said.empty());
  EXPECT_EQ(module.batchPath, "model.txttemp");
}

// ---- Batch export of a real file ---------------------------------------------------------------

constexpr const char* batchModel =
    "1\r\n2\r\nmodel\r\nm\r\n1\r\n"
    "bar\r\n0\r\n0\r\n0\r\n1,5\r\n0\r\n0\r\n0\r\nW 200 100 10 5\r\nA36\r\n1\r\ngroup\r\n";

class BatchFileTest : public testing::Test {
 protected:
  /// The system's files, a scripted person.
  ExportServices services() {
    const ExportServices system = systemServices();
    return {.ui = user, .openOutput = system.openOutput, .openModel = system.openModel};
  }

  std::int64_t run() { return exportBatchFile(module, services(), path.c_str()); }

  test::KeepRuntimeLocale keepLocale;
  test::TemporaryFolder folder;
  std::string path = folder.file("model.txt");
  std::string temporary = folder.file("model.txttemp");
  test::ScriptedUser user;
  Module module = test::plainModule();
};

TEST_F(BatchFileTest, ANullPathIsReportedAndNothingElseHappens) {
  module.batchPath = "kept";
  EXPECT_EQ(exportBatchFile(module, services(), nullptr), 0);
  EXPECT_EQ(user.said, std::vector<Said>{test::message(MessageId::noFileName)});
  EXPECT_EQ(module.batchPath, "kept");
}

TEST_F(BatchFileTest, TheExchangeFileTakesTheModelsPlace) {
  test::writeFile(path, batchModel);
  EXPECT_EQ(run(), 1);
  EXPECT_TRUE(user.said.empty());
  EXPECT_FALSE(test::fileExists(temporary));
  const std::string bytes = test::readFile(path);
  const auto lines = test::linesOf(bytes);
  EXPECT_EQ(lines.front(), "ISO-10303-21;");
  EXPECT_EQ(lines.back(), "END-ISO-10303-21;");
  EXPECT_EQ(test::linesWith(lines, "= IFCEXTRUDEDAREASOLID(").size(), 1U);
  EXPECT_EQ(test::linesWith(lines, ", #19, 1500.00000);").size(), 1U);
  EXPECT_EQ(module.batchPath, temporary);
}

TEST_F(BatchFileTest, TheNextExportOfTheMenuGoesOnInBatchMode) {
  test::writeFile(path, batchModel);
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(runExport(module, services()), 1);
  EXPECT_TRUE(user.said.empty()) << "asks nothing";
  // The file it reads, "...temp", was renamed away: a model without bars.
  const auto lines = test::linesOf(test::readFile(temporary + "temp"));
  EXPECT_EQ(test::linesWith(lines, "= IFCBEAM(").size(), 0U);
  EXPECT_EQ(test::linesWith(lines, "', '', (), #113);").size(), 1U);
  EXPECT_EQ(lines.back(), "END-ISO-10303-21;");
  EXPECT_EQ(module.batchPath, temporary + "temp");
}

TEST_F(BatchFileTest, AMissingModelGivesAFileWithoutBars) {
  EXPECT_EQ(run(), 1);
  const auto lines = test::linesOf(test::readFile(path));
  EXPECT_EQ(test::linesWith(lines, "IFCELEMENTASSEMBLY").size(), 0U);
  EXPECT_EQ(test::linesWith(lines, "', '', (), #113);").size(), 1U);
  EXPECT_EQ(lines.back(), "END-ISO-10303-21;");
  EXPECT_FALSE(test::fileExists(temporary));
}

#if !defined(_WIN32)

TEST_F(BatchFileTest, TheModelsFileIsClosedBeforeTheStoreyIsWritten) {
  test::writeFile(path, batchModel);
  const auto modelIsOpen = [&] {
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
      std::error_code gone;
      if (std::filesystem::read_symlink(entry.path(), gone) == path) {
        return true;
      }
    }
    return false;
  };
  std::string open;
  ExportServices watched = services();
  watched.openOutput = [&](const std::wstring&) {
    return std::make_unique<test::WatchedSink>([&](const std::string& line) {
      if (modelIsOpen()) {
        open += line;
      }
    });
  };
  EXPECT_EQ(exportBatchFile(module, watched, path.c_str()), 1);
  EXPECT_NE(open.find("IFCRELDEFINESBYPROPERTIES"), std::string::npos);
  EXPECT_EQ(open.find("IFCRELCONTAINED"), std::string::npos);
}

#endif

TEST_F(BatchFileTest, AFailedExportLosesTheInput) {
  test::writeFile(path, batchModel);
  ExportServices failing = services();
  failing.openModel = [](const Module&) -> std::unique_ptr<BarSource> {
    throw std::runtime_error("broken");
  };
  EXPECT_EQ(exportBatchFile(module, failing, path.c_str()), 1);
  EXPECT_EQ(user.said, std::vector<Said>{unhandled(L"broken")});
  EXPECT_FALSE(test::fileExists(path));
  EXPECT_TRUE(test::fileExists(temporary));
  EXPECT_EQ(test::readFile(temporary).find("END-ISO"), std::string::npos);
  EXPECT_EQ(module.batchPath, path) << "never cleared";
}

TEST_F(BatchFileTest, AnOutputFileThatCannotBeOpenedSparesTheInput) {
  test::writeFile(path, batchModel);
  std::filesystem::create_directory(temporary);  // in the way
  try {
    run();
    FAIL() << "nothing was thrown";
  } catch (const char* text) {
    EXPECT_STREQ(text, creationFailed);
  }
  EXPECT_EQ(test::readFile(path), batchModel);
  EXPECT_TRUE(user.said.empty());
}

TEST_F(BatchFileTest, APathTooLongSparesTheInput) {
  const std::string longPath(1020, 'p');
  EXPECT_THROW(exportBatchFile(module, services(), longPath.c_str()), const char*);
  EXPECT_EQ(module.batchPath, longPath);
}

TEST_F(BatchFileTest, AnEmptyPathRunsInteractively) {
  EXPECT_EQ(exportBatchFile(module, services(), ""), 1) << "whatever happened";
  EXPECT_EQ(user.said, std::vector<Said>{saveDialog}) << "cancelled";
  EXPECT_EQ(module.batchPath, "");
}

TEST_F(BatchFileTest, NoOtherFileIsTouched) {
  test::writeFile(path, batchModel);
  test::writeFile(folder.file("model"), "a");
  test::writeFile(folder.file("model.txttemp.ifc"), "b");
  EXPECT_EQ(run(), 1);
  EXPECT_EQ(test::readFile(folder.file("model")), "a");
  EXPECT_EQ(test::readFile(folder.file("model.txttemp.ifc")), "b");
  std::size_t files = 0;
  for ([[maybe_unused]] const auto& entry :
       std::filesystem::directory_iterator(std::filesystem::path(path).parent_path())) {
    ++files;
  }
  EXPECT_EQ(files, 3U);
}

}  // namespace
}  // namespace exportifc
