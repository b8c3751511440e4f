#include "library/frame/model_export.h"

#include <algorithm>
#include <clocale>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "library/text/messages.h"
#include "tests/library/library_test.h"
#include "tests/support/exchange_text.h"
#include "tests/support/sinks.h"

namespace exportifc {
namespace {

using test::all;
using test::sectionOf;
using test::soundModel;
using test::visibleOnly;

bool always(std::int32_t /*bar*/) { return true; }

struct Exported {
  ExportResult result;
  std::string bytes;
};

Exported exported(const Model& model, bool onlyVisible = all) {
  test::Received received;
  test::MemorySink sink(received);
  Exported exported{.result = exportModel(model, onlyVisible, sink, always), .bytes = {}};
  exported.bytes = received.bytes;
  return exported;
}

/// A file that refuses everything once it is full, as the program's own does.
class FullFile final : public ByteSink {
 public:
  explicit FullFile(std::size_t room) : sink_(received_, room) {}

  bool write(const char* bytes, std::size_t size) override {
    refused_ = refused_ || !sink_.write(bytes, size);
    return !refused_;
  }

 private:
  test::Received received_;
  test::MemorySink sink_;
  bool refused_ = false;
};

std::int64_t count(std::string_view text, std::string_view what) {
  std::int64_t found = 0;
  for (std::size_t at = 0; (at = text.find(what, at)) != std::string_view::npos;
       at += what.size()) {
    ++found;
  }
  return found;
}

Model columnsAndBeams() {
  Model model = soundModel();
  model.nodes.push_back({5000, 0, 0});
  model.nodes.push_back({2000, 0, 5000});
  model.bars = {{.start = 0, .end = 1, .type = 4},
                {.start = 1, .end = 2, .section = 1},
                {.start = 3, .end = 2, .type = 4},
                {.start = 1, .end = 4, .section = 1},
                {.start = 0, .end = 3, .section = 1}};
  return model;
}

TEST(ExportModel, WritesTheWholeFileAndCountsWhatIsInIt) {
  const auto [result, bytes] = exported(columnsAndBeams());
  EXPECT_TRUE(result.complete);
  EXPECT_FALSE(result.interrupted);
  EXPECT_EQ(result.failure, "");
  EXPECT_EQ(result.lastBar, 5);
  EXPECT_TRUE(bytes.starts_with("ISO-10303-21;\r\n"));
  EXPECT_TRUE(bytes.ends_with("END-ISO-10303-21;\r\n"));
  EXPECT_EQ(result.bytes, static_cast<std::int64_t>(bytes.size()));
  EXPECT_EQ(result.lines, count(bytes, "\r\n"));
  for (std::size_t i = 0; i < elementKeywords.size(); ++i) {
    EXPECT_EQ(result.elements[i], count(bytes, "= " + std::string(elementKeywords[i]) + "("))
        << elementKeywords[i];
  }
  EXPECT_EQ(result.elements[0], 2);  // beams
  EXPECT_EQ(result.elements[1], 2);  // columns
  EXPECT_EQ(result.elements[2], 1);
  EXPECT_TRUE(result.messages.empty());
}

TEST(ExportModel, OfAnEmptyModelWritesAFile) {
  const auto [result, bytes] = exported(Model{});
  EXPECT_TRUE(result.complete);
  EXPECT_EQ(result.lastBar, 0);
  EXPECT_EQ(result.elements, (std::array<std::int64_t, 3>{}));
  EXPECT_TRUE(bytes.ends_with("END-ISO-10303-21;\r\n"));
}

TEST(ExportModel, AModelIsWrittenAsItWasBefore) {
  EXPECT_EQ(test::maskGlobalIds(exported(columnsAndBeams()).bytes),
            test::maskGlobalIds(exported(columnsAndBeams()).bytes));
}

TEST(ExportModel, WritesUnitAngleAndDimensions) {
  Model model = soundModel();
  model.unitCode = 0;
  model.nodes[1] = {0, 0, 3};
  model.nodes[2] = {5, 0, 3};
  model.bars[1].angle = 0.5F;
  const Exported inMetres = exported(model);
  model.unitCode = 2;
  model.nodes[1] = {0, 0, 3000};
  model.nodes[2] = {5000, 0, 3000};
  EXPECT_EQ(test::maskGlobalIds(exported(model).bytes), test::maskGlobalIds(inMetres.bytes));
  model.bars[1].angle = 0;
  EXPECT_NE(test::maskGlobalIds(exported(model).bytes), test::maskGlobalIds(inMetres.bytes));
  model.bars[1].quarterTurns = 1;
  const std::string turned = test::maskGlobalIds(exported(model).bytes);
  model.bars[1].quarterTurns = 0;
  EXPECT_NE(test::maskGlobalIds(exported(model).bytes), turned);
  EXPECT_NE(exported(model).bytes.find("(.AREA., 'W 200 100 8 6', #"), std::string::npos);
  model.sections[0].dims[0] = 250;
  EXPECT_NE(exported(model).bytes.find(", 100.00000,250.00000,6.00000,8.00000"), std::string::npos);
}

TEST(ExportModel, LeavesTheLocaleOfTheProcessAsItWas) {
  const std::string before = std::setlocale(LC_ALL, nullptr);
  exported(soundModel());
  EXPECT_EQ(std::setlocale(LC_ALL, nullptr), before);
}

// ---- bars that are left out

TEST(ExportModel, CountsTheBarsThatItLeavesOut) {
  Model model = soundModel();
  model.sections.push_back(sectionOf("W 200 100 8 6 1234567890123456789012345678901234"));
  model.bars = {{.start = 0, .end = 1},
                {.start = 0, .end = 1, .visible = false},
                {.start = 0, .end = 1, .type = 10},
                {.start = 0, .end = 1, .type = 10, .visible = false},
                {.start = 0, .end = 1, .section = 2},
                {.start = 0, .end = 1, .section = 2, .type = 10, .visible = false}};
  const ExportResult any = exported(model).result;
  EXPECT_EQ(any.skipped.invisible, 0);
  EXPECT_EQ(any.skipped.notExportedType, 2);
  EXPECT_EQ(any.skipped.withoutRecord, 2);
  EXPECT_EQ(any.elements[2], 2);  // upright, but no columns
  const ExportResult visible = exported(model, visibleOnly).result;
  EXPECT_EQ(visible.skipped.invisible, 1);
  EXPECT_EQ(visible.skipped.notExportedType, 2);
  EXPECT_EQ(visible.skipped.withoutRecord, 2);
  EXPECT_EQ(visible.elements[2], 1);
}

TEST(ExportModel, ATextMayFillItsRecord) {
  Model model = soundModel();
  model.sections[0] = sectionOf("W 200 100 8 6 123456789012345678901234567890123");
  const auto [result, bytes] = exported(model);
  EXPECT_EQ(result.skipped.withoutRecord, 0);
  EXPECT_NE(bytes.find("'W 200 100 8 6 123456789012345678901234567890123'"), std::string::npos);
  // A shorter one behind it has nothing of it.
  model.bars = {{.start = 0, .end = 1}, {.start = 1, .end = 2, .section = 1}};
  EXPECT_NE(exported(model).bytes.find("'EC 80 0 0 12'"), std::string::npos);
}

// ---- messages

TEST(ExportModel, KeepsWhatTheModuleSaysOnceForEachSection) {
  Model model = soundModel();
  model.sections = {sectionOf("W 200 100 8 6"), sectionOf("nada 1"), sectionOf("2L_ASSIMETRICO 1"),
                    sectionOf("W 200 100 8 6 1234567890123456789012345678901234")};
  model.bars = {{.start = 0, .end = 1},
                {.start = 0, .end = 1, .section = 2},
                {.start = 1, .end = 2, .section = 1},
                {.start = 0, .end = 1, .section = 2},
                {.start = 0, .end = 1, .section = 3},
                {.start = 0, .end = 1, .section = 1}};
  const auto messages = exported(model).result.messages;
  ASSERT_EQ(messages.size(), 3U);
  EXPECT_EQ(messages[0].id, MessageId::unknownProfile);
  EXPECT_EQ(messages[0].section, 2);
  EXPECT_EQ(messages[0].bars, 2);  // not its halves
  EXPECT_EQ(messages[0].firstBar, 1);
  EXPECT_EQ(messages[1].id, MessageId::unknownProfile);
  EXPECT_EQ(messages[1].section, 1);
  EXPECT_EQ(messages[1].bars, 2);
  EXPECT_EQ(messages[1].firstBar, 2);
  EXPECT_EQ(messages[2].id, MessageId::barWithoutRecord);
  EXPECT_EQ(messages[2].section, 3);
  EXPECT_EQ(messages[2].bars, 1);
  EXPECT_EQ(messages[2].firstBar, 4);
}

// ---- ends before the end

TEST(ExportModel, AsksBeforeEachBarWhetherToGoOn) {
  const Model model = columnsAndBeams();
  for (std::int32_t stop = 0; stop < 5; ++stop) {
    test::Received received;
    test::MemorySink sink(received);
    std::vector<std::int32_t> asked;
    const ExportResult result = exportModel(model, all, sink, [&](std::int32_t bar) {
      asked.push_back(bar);
      return bar < stop;
    });
    std::vector<std::int32_t> wanted;
    for (std::int32_t bar = 0; bar <= stop; ++bar) {
      wanted.push_back(bar);
    }
    EXPECT_EQ(asked, wanted);
    EXPECT_TRUE(result.interrupted);
    EXPECT_FALSE(result.complete);
    EXPECT_EQ(result.lastBar, stop + 1);
  }
}

TEST(ExportModel, StopsWhereTheOutputRefuses) {
  const Model model = columnsAndBeams();
  const std::size_t size = exported(model).bytes.size();
  for (const std::size_t room : {std::size_t{0}, size / 2, size - 1}) {
    FullFile file(room);
    const ExportResult result = exportModel(model, all, file, always);
    EXPECT_FALSE(result.complete) << room;
    EXPECT_FALSE(result.interrupted) << room;
  }
  FullFile file(size);
  EXPECT_TRUE(exportModel(model, all, file, always).complete);
}

TEST(ExportModel, OfAFullOutputGoesOnNoFurtherThanTheNextBar) {
  Model model = soundModel();
  model.bars.resize(1000, model.bars[0]);
  FullFile file(20000);
  const ExportResult result = exportModel(model, all, file, always);
  EXPECT_FALSE(result.complete);
  EXPECT_LT(result.lastBar, 100);
  EXPECT_GT(result.lastBar, 0);
}

}  // namespace
}  // namespace exportifc
