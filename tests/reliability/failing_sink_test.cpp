// Outputs that stop taking bytes, at every byte of a file: in the header, in a bar, in the trailer.
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "fuzz/memory_export.h"
#include "tests/support/exchange_text.h"
#include "tests/support/memory_export.h"
#include "tests/support/scripted_model.h"
#include "tests/support/sinks.h"

namespace exportifc {
namespace {

/// One bar of each kind of profile: parametric, outline, built-up, unknown.
std::vector<test::ScriptedBar> fewBars() {
  std::vector<test::ScriptedBar> bars;
  for (const char* const section : {"W 200", "CART 100", "2L 50", "NADA 1"}) {
    const auto index = static_cast<float>(bars.size());
    bars.push_back({.section = section,
                    .type = index + 1,
                    .end = {1.0F, index, 2.0F},
                    .dims = {100, 50, 20, 2, 5}});
  }
  return bars;
}

test::Received exportInto(std::size_t room, std::int64_t& result) {
  test::Received file;
  Module module = test::plainModule("model.txt");
  fuzz::CountingInterface ui;
  result = test::exportToMemory(
      module, ui, [](const Module&) { return std::make_unique<test::ListSource>(fewBars(), 0); },
      file, room);
  EXPECT_EQ(ui.unhandled, 0);
  EXPECT_EQ(module.batchPath, "model.txttemp");
  return file;
}

TEST(FailingSink, AtEveryByteTheFileEndsThereAndTheExportCountsAsDone) {
  std::int64_t result = 0;
  const test::Received all = exportInto(test::MemorySink::endless, result);
  ASSERT_EQ(all.refusals, 0U);
  const std::string whole = test::maskGlobalIds(all.bytes);
  ASSERT_TRUE(whole.ends_with("END-ISO-10303-21;\r\n"));
  for (std::size_t room = 0; room < whole.size(); ++room) {
    const test::Received cut = exportInto(room, result);
    ASSERT_EQ(cut.bytes.size(), room);
    // A GlobalId that the end cuts is not replaced; what stands before it is.
    constexpr std::size_t globalId = 24;
    const std::string seen = test::maskGlobalIds(cut.bytes);
    const std::size_t sure = room < globalId ? 0 : room - globalId;
    ASSERT_EQ(seen.substr(0, sure), whole.substr(0, sure));
    ASSERT_EQ(result, 1) << "room for " << room;
    ASSERT_EQ(cut.refusals, 1U) << "writes after the first that failed, with room for " << room;
  }
}

}  // namespace
}  // namespace exportifc
