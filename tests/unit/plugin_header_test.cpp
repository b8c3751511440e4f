// First and alone: the header must not need another one before it.
#include <cstddef>
#include <cstring>
#include <string>
#include <type_traits>

#include <exportifc/plugin.h>
#include <gtest/gtest.h>

#include "plugin/module.h"
#include "plugin_header_in_c.h"
#include "support.h"

namespace exportifc {
namespace {

// Written out here once more: hosts built years ago have these numbers compiled in.

TEST(PluginHeader, ModuleRecordHasFixedOffsets) {
  EXPECT_EQ(sizeof(PlugInModule), 1176U);
  EXPECT_EQ(offsetof(PlugInModule, recordTag), 0U);
  EXPECT_EQ(sizeof(PlugInModule::recordTag), 8U);
  EXPECT_EQ(offsetof(PlugInModule, reserved8), 8U);
  EXPECT_EQ(sizeof(PlugInModule::reserved8), 16U);
  EXPECT_EQ(offsetof(PlugInModule, caption), 24U);
  EXPECT_EQ(sizeof(PlugInModule::caption), 8U);
  EXPECT_EQ(offsetof(PlugInModule, outputPath), 32U);
  EXPECT_EQ(sizeof(PlugInModule::outputPath), 1024U);
  EXPECT_EQ(offsetof(PlugInModule, reserved1056), 1056U);
  EXPECT_EQ(sizeof(PlugInModule::reserved1056), 24U);
  EXPECT_EQ(offsetof(PlugInModule, execute), 1080U);
  EXPECT_EQ(offsetof(PlugInModule, idle), 1088U);
  EXPECT_EQ(offsetof(PlugInModule, reserved1096), 1096U);
  EXPECT_EQ(sizeof(PlugInModule::reserved1096), 64U);
  EXPECT_EQ(offsetof(PlugInModule, hostQuery), 1160U);
  EXPECT_EQ(sizeof(PlugInModule::hostQuery), 8U);
  EXPECT_EQ(offsetof(PlugInModule, hostHandle), 1168U);
  EXPECT_EQ(sizeof(PlugInModule::hostHandle), 8U);
}

TEST(PluginHeader, BarRecordHasFixedOffsets) {
  EXPECT_EQ(sizeof(BarRecord), 292U);
  EXPECT_EQ(offsetof(BarRecord, sectionName), 80U);
  EXPECT_EQ(sizeof(BarRecord::sectionName), 48U);
  EXPECT_EQ(offsetof(BarRecord, quarterTurns), 128U);
  EXPECT_EQ(sizeof(BarRecord::quarterTurns), 4U);
  EXPECT_TRUE((std::is_same_v<decltype(BarRecord::quarterTurns), std::int32_t>));
}

TEST(PluginHeader, QueryCodes) {
  EXPECT_EQ(EXPORTIFC_LENGTH_UNIT, 0x25000C);
  EXPECT_EQ(EXPORTIFC_BAR_COUNT, 0x50005);
  EXPECT_EQ(EXPORTIFC_BAR_TYPE, 0x210003);
  EXPECT_EQ(EXPORTIFC_BAR_VISIBLE, 0x210702);
  EXPECT_EQ(EXPORTIFC_BAR_RECORD, 0x210005);
  EXPECT_EQ(EXPORTIFC_BAR_ANGLE, 0x21000A);
  EXPECT_EQ(EXPORTIFC_SECTION_DIMS, 0x10701);
  EXPECT_EQ(EXPORTIFC_BAR_START_NODE, 0x21001F);
  EXPECT_EQ(EXPORTIFC_BAR_END_NODE, 0x210020);
  EXPECT_EQ(EXPORTIFC_NODE_COORDINATES, 0x220007);
}

TEST(PluginHeader, ACompilerForCSeesTheSameLayout) {
  EXPECT_EQ(layoutInC.moduleSize, sizeof(PlugInModule));
  EXPECT_EQ(layoutInC.recordTag, offsetof(PlugInModule, recordTag));
  EXPECT_EQ(layoutInC.reserved8, offsetof(PlugInModule, reserved8));
  EXPECT_EQ(layoutInC.caption, offsetof(PlugInModule, caption));
  EXPECT_EQ(layoutInC.outputPath, offsetof(PlugInModule, outputPath));
  EXPECT_EQ(layoutInC.reserved1056, offsetof(PlugInModule, reserved1056));
  EXPECT_EQ(layoutInC.execute, offsetof(PlugInModule, execute));
  EXPECT_EQ(layoutInC.idle, offsetof(PlugInModule, idle));
  EXPECT_EQ(layoutInC.reserved1096, offsetof(PlugInModule, reserved1096));
  EXPECT_EQ(layoutInC.hostQuery, offsetof(PlugInModule, hostQuery));
  EXPECT_EQ(layoutInC.hostHandle, offsetof(PlugInModule, hostHandle));
  EXPECT_EQ(layoutInC.barRecordSize, sizeof(BarRecord));
  EXPECT_EQ(layoutInC.sectionName, offsetof(BarRecord, sectionName));
  EXPECT_EQ(layoutInC.quarterTurns, offsetof(BarRecord, quarterTurns));
  EXPECT_EQ(layoutInC.lengthUnit, 0x25000C);
  EXPECT_EQ(layoutInC.nodeCoordinates, 0x220007);
}

// ---- The record as a host first sees it, through the real entry points -------------------------

TEST(EntryPoints, TheRecordHasOneAddress) {
  PlugInModule* const record = GetPlugInModule();
  ASSERT_NE(record, nullptr);
  EXPECT_EQ(GetPlugInModule(), record);
  EXPECT_EQ(callFromC(&GetPlugInModule), record);
}

TEST(EntryPoints, TheRecordIsFilledAsHostsExpectIt) {
  const PlugInModule& record = *GetPlugInModule();
  EXPECT_EQ(record.recordTag, 504U);
  EXPECT_STREQ(record.caption, "Exportar IFC");
  EXPECT_EQ(record.execute, &PlugInExecute);
  ASSERT_NE(record.idle, nullptr);
  EXPECT_EQ(record.idle(), 0);
  EXPECT_EQ(record.hostQuery, nullptr);
  EXPECT_EQ(record.hostHandle, 0U);
}

TEST(EntryPoints, EverythingElseInTheRecordIsZero) {
  PlugInModule expected;
  std::memset(&expected, 0, sizeof(expected));
  const PlugInModule& record = *GetPlugInModule();
  expected.recordTag = 504;
  expected.caption = record.caption;
  expected.execute = record.execute;
  expected.idle = record.idle;
  EXPECT_EQ(std::memcmp(&record, &expected, sizeof(expected)), 0);
}

TEST(EntryPoints, AModuleStartsInteractive) { EXPECT_EQ(test::plainModule().batchPath, ""); }

}  // namespace
}  // namespace exportifc
