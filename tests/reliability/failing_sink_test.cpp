// Outputs that stop taking bytes, at every byte of a file: in the header, in a bar, in the trailer.
#include <cstddef>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "elements/bar_element.h"
#include "fuzz/expectation.h"
#include "fuzz/memory_export.h"
#include "plugin/bar_export.h"
#include "profiles/profile_dispatch.h"
#include "step/preamble.h"
#include "step/step_writer.h"

namespace exportifc {
namespace {

/// Takes as many bytes as a disk with that much room: the rest of the last write is lost.
class SmallDisk final : public ByteSink {
 public:
  SmallDisk(std::string& text, std::size_t room, int& refusals)
      : text_(text), room_(room), refusals_(refusals) {}

  bool write(const char* bytes, std::size_t size) override {
    const std::size_t taken = size < room_ ? size : room_;
    text_.append(bytes, taken);
    room_ -= taken;
    refusals_ += taken < size ? 1 : 0;
    return taken == size;
  }

 private:
  std::string& text_;
  std::size_t room_;
  int& refusals_;
};

/// One bar of each kind of profile: parametric, outline, built-up, unknown.
class FewBars final : public BarSource {
 public:
  std::int32_t unitCode() override { return 0; }
  std::int32_t barCount() override { return 4; }
  bool next(std::int32_t index, SourceBar& bar) override {
    static const char* const names[] = {"W 200", "CART 100", "2L 50", "NADA 1"};
    std::string(names[index]).copy(record_.sectionName, sizeof(record_.sectionName));
    record_.sectionName[std::char_traits<char>::length(names[index])] = '\0';
    bar.record = &record_;
    bar.typeCode = static_cast<float>(index + 1);
    bar.end = {1.0F, static_cast<float>(index), 2.0F};
    bar.dims = {100, 50, 20, 2, 5};
    return true;
  }

 private:
  BarRecord record_{};
};

std::string exportInto(std::size_t room, std::int64_t& result, int& refusals) {
  std::string file;
  Module module([]() -> std::int64_t { return 0; }, []() -> std::int64_t { return 0; });
  module.batchPath = "model.txt";
  fuzz::CountingInterface ui;
  const ExportServices services{
      .ui = ui,
      .openOutput =
          [&](const std::wstring&) { return std::make_unique<SmallDisk>(file, room, refusals); },
      .openModel = [](const Module&) { return std::make_unique<FewBars>(); }};
  result = runExport(module, services);
  EXPECT_EQ(ui.unhandled, 0);
  EXPECT_EQ(module.batchPath, "model.txttemp");
  return file;
}

TEST(FailingSink, AtEveryByteTheFileEndsThereAndTheExportCountsAsDone) {
  std::int64_t result = 0;
  int refusals = 0;
  const std::string whole = fuzz::withoutGlobalIds(exportInto(1U << 20U, result, refusals));
  ASSERT_EQ(refusals, 0);
  ASSERT_TRUE(whole.ends_with("END-ISO-10303-21;\r\n"));
  for (std::size_t room = 0; room < whole.size(); ++room) {
    refusals = 0;
    const std::string file = exportInto(room, result, refusals);
    ASSERT_EQ(file.size(), room);
    // A GlobalId that the end cuts is not replaced; what stands before it is.
    constexpr std::size_t globalId = 24;
    const std::string seen = fuzz::withoutGlobalIds(file);
    const std::size_t sure = room < globalId ? 0 : room - globalId;
    ASSERT_EQ(seen.substr(0, sure), whole.substr(0, sure));
    ASSERT_EQ(result, 1) << "room for " << room;
    ASSERT_EQ(refusals, 1) << "writes after the first that failed, with room for " << room;
  }
}

}  // namespace
}  // namespace exportifc
