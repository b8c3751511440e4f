#include "elements/assemblies.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support.h"

namespace exportifc {
namespace {

using Lines = std::vector<std::string>;
using Numbers = std::vector<std::int32_t>;

const std::string id(22, 'G');

Lines maskedLines(const std::function<void(StepWriter&)>& write) {
  return test::linesOf(test::maskGlobalIds(test::exportedBytes(write)));
}

TEST(WriteElementAssembly, TheAssemblyAndItsAggregation) {
  const auto lines = maskedLines([](StepWriter& writer) {
    writer.ownerHistoryId = 7;
    EXPECT_EQ(writeElementAssembly(writer, Numbers{12, 30, 5006}, "Elementos_de_Portico"), 1);
  });
  EXPECT_EQ(lines,
            (Lines{"#1= IFCELEMENTASSEMBLY('" + id +
                       "', #7, 'Elementos_de_Portico', '', $, #111, $, $, $, .NOTDEFINED.);",
                   "#2= IFCRELAGGREGATES('" + id +
                       "', #7, 'Elementos_de_Portico', 'Assembly', #1, (#12, #30, #5006));"}));
}

TEST(WriteElementAssembly, OneMemberHasNoSeparator) {
  const auto lines = maskedLines([](StepWriter& writer) {
    writeElementAssembly(writer, Numbers{12}, "Elementos_de_Trelica");
  });
  EXPECT_EQ(lines[1], "#2= IFCRELAGGREGATES('" + id +
                          "', #5, 'Elementos_de_Trelica', 'Assembly', #1, (#12));");
}

TEST(WriteElementAssembly, NoMembersNoAssembly) {
  EXPECT_EQ(maskedLines([](StepWriter& writer) {
              EXPECT_EQ(writeElementAssembly(writer, {}, "Elementos_de_Portico"), 0);
              EXPECT_EQ(writer.entities.size(), 0);
            }),
            Lines{});
}

TEST(WriteElementAssembly, TwoDifferentGlobalIds) {
  const auto lines = test::exportedLines(
      [](StepWriter& writer) { writeElementAssembly(writer, Numbers{1}, "x"); });
  const std::string first = lines[0].substr(lines[0].find('\'') + 1, 22);
  const std::string second = lines[1].substr(lines[1].find('\'') + 1, 22);
  EXPECT_NE(first, second);
}

TEST(WriteStoreyContainment, ListsItsMembers) {
  EXPECT_EQ(maskedLines([](StepWriter& writer) {
              writeStoreyContainment(writer, Numbers{12});
              writeStoreyContainment(writer, Numbers{12, 13});
            }),
            (Lines{"#1= IFCRELCONTAINEDINSPATIALSTRUCTURE('" + id +
                       "', #5, 'Pavimento 1', '', (#12), #113);",
                   "#2= IFCRELCONTAINEDINSPATIALSTRUCTURE('" + id +
                       "', #5, 'Pavimento 1', '', (#12, #13), #113);"}));
}

TEST(WriteStoreyContainment, IsWrittenEmptyToo) {
  EXPECT_EQ(maskedLines([](StepWriter& writer) { writeStoreyContainment(writer, {}); }),
            Lines{"#1= IFCRELCONTAINEDINSPATIALSTRUCTURE('" + id +
                  "', #5, 'Pavimento 1', '', (), #113);"});
}

TEST(WriteStoreyContainment, NumbersAreNotChecked) {
  EXPECT_EQ(maskedLines([](StepWriter& writer) {
              writeStoreyContainment(writer, Numbers{0, -4});
            })[0],
            "#1= IFCRELCONTAINEDINSPATIALSTRUCTURE('" + id +
                "', #5, 'Pavimento 1', '', (#0, #-4), #113);");
}

}  // namespace
}  // namespace exportifc
