// The record that the host reads: every byte at the place where it has always been.
#include <algorithm>
#include <cstring>

#include "tests/module/module_test.h"

namespace exportifc::module_tests {
namespace {

class Record : public ModuleTest {
 protected:
  void SetUp() override {
    ModuleTest::SetUp();
    // As the module made it: without what a host writes into it.
    reloadUntouched();
  }

  void reloadUntouched() {
    module.reset();
    module = std::make_unique<LoadedModule>(modulePath());
    bytes_ = reinterpret_cast<const unsigned char*>(module->getPlugInModule());
  }

  [[nodiscard]] std::uint64_t word(std::size_t offset) const {
    std::uint64_t value = 0;
    std::memcpy(&value, bytes_ + offset, sizeof(value));
    return value;
  }

  [[nodiscard]] bool isZero(std::size_t offset, std::size_t size) const {
    return std::all_of(bytes_ + offset, bytes_ + offset + size,
                       [](unsigned char byte) { return byte == 0; });
  }

 private:
  const unsigned char* bytes_ = nullptr;
};

TEST_F(Record, HasItsTagAtTheStart) {
  EXPECT_EQ(word(0), 504U);
  EXPECT_EQ(word(0), 0x1F8U);
}

TEST_F(Record, HasEveryReservedAndUnsetByteZero) {
  struct Field {
    const char* name;
    std::size_t offset;
    std::size_t size;
  };
  constexpr Field zeroAtFirst[] = {
      {"reserved", 8, 8},      {"reserved", 16, 8},    {"outputPath", 32, 1024},
      {"reserved", 1056, 24},  {"reserved", 1096, 64}, {"hostQuery", 1160, 8},
      {"hostHandle", 1168, 8},
  };
  for (const Field& field : zeroAtFirst) {
    EXPECT_TRUE(isZero(field.offset, field.size)) << field.name << " at " << field.offset;
  }
}

TEST_F(Record, PointsToTheCaption) {
  const auto* const caption = reinterpret_cast<const char*>(word(24));
  ASSERT_NE(caption, nullptr);
  EXPECT_STREQ(caption, "Exportar IFC");
}

TEST_F(Record, PointsToTheExportedExportCommand) {
  EXPECT_EQ(word(1080), reinterpret_cast<std::uint64_t>(module->plugInExecute));
}

TEST_F(Record, PointsToAnIdleEntryThatReturnsZero) {
  ASSERT_NE(word(1088), 0U);
  EXPECT_NE(word(1088), word(1080));
  const auto idle = reinterpret_cast<std::int64_t (*)()>(word(1088));
  EXPECT_EQ(idle(), 0);
  EXPECT_EQ(idle(), 0);
}

TEST_F(Record, StaysAtItsAddress) {
  const PlugInModule* const first = module->getPlugInModule();
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(module->getPlugInModule(), first);
}

TEST_F(Record, HeaderDescribesTheSameBytes) {
  const PlugInModule& record = *module->getPlugInModule();
  EXPECT_EQ(record.recordTag, word(0));
  EXPECT_EQ(reinterpret_cast<std::uint64_t>(record.caption), word(24));
  EXPECT_EQ(reinterpret_cast<std::uint64_t>(record.execute), word(1080));
  EXPECT_EQ(reinterpret_cast<std::uint64_t>(record.idle), word(1088));
}

TEST_F(Record, TakesWhatTheHostWrites) {
  host.connect(*module->getPlugInModule());
  EXPECT_EQ(word(1160), reinterpret_cast<std::uint64_t>(module->getPlugInModule()->hostQuery));
  EXPECT_EQ(word(1168), host.handle);
}

TEST_F(Record, StartsAnewWhenTheModuleIsLoadedAnew) {
  host.connect(*module->getPlugInModule());
  writeFile(file("modelo.txt"), batchModel({BarText{}}));
  EXPECT_EQ(exportFile("modelo.txt"), 1);
  EXPECT_FALSE(isZero(32, 1024));
  EXPECT_FALSE(isZero(1160, 16));
  reloadUntouched();
  EXPECT_TRUE(isZero(32, 1024));
  EXPECT_TRUE(isZero(1160, 16));
  // Also the mode: a module that has exported nothing asks for the file.
  EXPECT_EQ(execute({cancelsFileName()}), -1);
}

TEST_F(Record, OnlyTheOutputPathChangesInAnExport) {
  host.connect(*module->getPlugInModule());
  const PlugInModule before = *module->getPlugInModule();
  host.bars.resize(1);
  exported("quadro.ifc");
  PlugInModule after = *module->getPlugInModule();
  EXPECT_EQ(after.outputPath, narrowBytes(file("quadro.ifc")));
  std::memset(after.outputPath, 0, sizeof(after.outputPath));
  EXPECT_EQ(std::memcmp(&after, &before, sizeof(after)), 0);
}

}  // namespace
}  // namespace exportifc::module_tests
