#include "step/preamble.h"

#include <regex>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "step/ownership.h"
#include "support.h"

namespace exportifc {
namespace {

/// Every line that a fresh writer gets, as hosts and readers of the files know it.
const std::vector<std::string>& expectedLines() {
  // clang-format off
  static const std::vector<std::string> lines = {
    "#1= IFCORGANIZATION($, 'Korvane', $, $, $);",
    "#2= IFCPERSON($, 'Korvane', 'Pernavosta', $, $, $, $, $);",
    "#3= IFCPERSONANDORGANIZATION(#2, #1, $);",
    "#4= IFCAPPLICATION(#1, '0.1', 'Prototipo export Korvane_IFC', 'Prototipo_korvane_ifc');",
    "#5= IFCOWNERHISTORY(#3, #4, $, .NOCHANGE., $, $, $, 0);",
    "#6 = IFCCARTESIANPOINT((0., 0., 0.));",
    "#9 = IFCCARTESIANPOINT((0., 0.));",
    "#11 = IFCDIRECTION((1., 0., 0.));",
    "#13 = IFCDIRECTION((-1., 0., 0.));",
    "#15 = IFCDIRECTION((0., 1., 0.));",
    "#17 = IFCDIRECTION((0., -1., 0.));",
    "#19 = IFCDIRECTION((0., 0., 1.));",
    "#21 = IFCDIRECTION((0., 0., -1.));",
    "#23 = IFCDIRECTION((1., 0.));",
    "#25 = IFCDIRECTION((-1., 0.));",
    "#27 = IFCDIRECTION((0., 1.));",
    "#29 = IFCDIRECTION((0., -1.));",
    "",
    "/* Units */",
    "#42 = IFCSIUNIT(*, .LENGTHUNIT., .MILLI., .METRE.);",
    "#43 = IFCSIUNIT(*, .LENGTHUNIT., $, .METRE.);",
    "#44 = IFCSIUNIT(*, .AREAUNIT., $, .SQUARE_METRE.);",
    "#45 = IFCSIUNIT(*, .VOLUMEUNIT., $, .CUBIC_METRE.);",
    "#46 = IFCSIUNIT(*, .PLANEANGLEUNIT., $, .RADIAN.);",
    "#47 = IFCDIMENSIONALEXPONENTS(0, 0, 0, 0, 0, 0, 0);",
    "#48 = IFCMEASUREWITHUNIT(IFCRATIOMEASURE(0.0174532925199433), #46);",
    "#49 = IFCCONVERSIONBASEDUNIT(#47, .PLANEANGLEUNIT., 'DEGREE', #48);",
    "#50 = IFCSIUNIT(*, .MASSUNIT., .KILO., .GRAM.);",
    "#51 = IFCSIUNIT(*, .TIMEUNIT., $, .SECOND.);",
    "#52 = IFCSIUNIT(*, .FREQUENCYUNIT., $, .HERTZ.);",
    "#53 = IFCSIUNIT(*, .THERMODYNAMICTEMPERATUREUNIT., $, .KELVIN.);",
    "#54 = IFCSIUNIT(*, .THERMODYNAMICTEMPERATUREUNIT., $, .DEGREE_CELSIUS.);",
    "#55 = IFCDERIVEDUNITELEMENT(#50, 1);",
    "#56 = IFCDERIVEDUNITELEMENT(#53, -1);",
    "#57 = IFCDERIVEDUNITELEMENT(#51, -3);",
    "#58 = IFCDERIVEDUNIT((#55, #56, #57), .THERMALTRANSMITTANCEUNIT., $);",
    "#60 = IFCDERIVEDUNITELEMENT(#43, 3);",
    "#61 = IFCDERIVEDUNITELEMENT(#51, -1);",
    "#62 = IFCDERIVEDUNIT((#60, #61), .VOLUMETRICFLOWRATEUNIT., $);",
    "#64 = IFCSIUNIT(*, .ELECTRICCURRENTUNIT., $, .AMPERE.);",
    "#65 = IFCSIUNIT(*, .ELECTRICVOLTAGEUNIT., $, .VOLT.);",
    "#66 = IFCSIUNIT(*, .POWERUNIT., $, .WATT.);",
    "#67 = IFCSIUNIT(*, .FORCEUNIT., .KILO., .NEWTON.);",
    "#68 = IFCSIUNIT(*, .ILLUMINANCEUNIT., $, .LUX.);",
    "#69 = IFCSIUNIT(*, .LUMINOUSFLUXUNIT., $, .LUMEN.);",
    "#70 = IFCSIUNIT(*, .LUMINOUSINTENSITYUNIT., $, .CANDELA.);",
    "#71 = IFCDERIVEDUNITELEMENT(#50, -1);",
    "#72 = IFCDERIVEDUNITELEMENT(#43, -2);",
    "#73 = IFCDERIVEDUNITELEMENT(#51, 3);",
    "#74 = IFCDERIVEDUNITELEMENT(#69, 1);",
    "#75 = IFCDERIVEDUNIT((#71, #72, #73, #74), .USERDEFINED., 'Luminous Efficacy');",
    "#77 = IFCSIUNIT(*, .PRESSUREUNIT., $, .PASCAL.);",
    "#78 = IFCUNITASSIGNMENT((#42, #44, #45, #49, #50, #51, #52, #54, #58, #62, #64, #65, #66, #67, #68, #69, #70, #77));",
    "",
    "/* Geometric representations */",
    "#80 = IFCAXIS2PLACEMENT3D(#6, $, $);",
    "#83 = IFCGEOMETRICREPRESENTATIONCONTEXT($, 'Model', 3, 0.01, #80, $);",
    "#88 = IFCGEOMETRICREPRESENTATIONSUBCONTEXT('Body', 'Model', *, *, *, *, #83, $, .MODEL_VIEW., $);",
    "",
    "/* IfcProject */",
    "#94 = IFCPROJECT('0lgywHKOf4FwBHH6fDAKGr', #5, '0001', $, $, 'Nome do projeto', 'Status do projeto', (#83), #78);",
    "",
    "/* IfcBuilding */",
    "#100 = IFCPOSTALADDRESS($, $, $, $, (''), $, '', '', '', 'Brasil');",
    "#104 = IFCBUILDING('0lgywHKOf4FwBHH6fDAKGq', #5, '', $, $, $, $, '', .ELEMENT., $, $, #100);",
    "",
    "/* IfcBuildingStorey Pavimento 1 */",
    "#110 = IFCAXIS2PLACEMENT3D(#6, $, $);",
    "#111 = IFCLOCALPLACEMENT($, #110);",
    "#113 = IFCBUILDINGSTOREY('0lgywHKOf4FwBHH6gorhgM', #5, 'Pavimento 1', $, $, #111, $, 'Pavimento 1', .ELEMENT., 0.);",
    "",
    "/* Relationships */",
    "#3158 = IFCRELAGGREGATES('1wANlqdUP5ER1cjqtn6qes', #5, $, $, #94, (#104));",
    "#3166 = IFCRELAGGREGATES('3mQBaTfuH9QBHDcYQBQvNl', #5, $, $, #104, (#113));",
  };
  // clang-format on
  return lines;
}

TEST(Preamble, EveryLine) {
  const auto lines = test::exportedLines([](StepWriter& writer) { writePreamble(writer); });
  ASSERT_EQ(expectedLines().size(), 74U);
  ASSERT_EQ(lines.size(), 74U);
  for (std::size_t i = 0; i < lines.size(); ++i) {
    EXPECT_EQ(lines[i], expectedLines()[i]);
  }
}

TEST(Preamble, SetsTheOwnerHistoryAndReservesNumbers) {
  test::exportedLines([](StepWriter& writer) {
    writer.ownerHistoryId = 0;
    writePreamble(writer);
    EXPECT_EQ(writer.ownerHistoryId, 5);
    EXPECT_EQ(writer.entities.size(), 5005);
    EXPECT_EQ(writer.writeEntity("A()"), 5006);
  });
}

TEST(Preamble, TheRegistryKeepsTheOwnershipObjects) {
  using namespace IfcIo;
  test::exportedLines([](StepWriter& writer) {
    writePreamble(writer);
    const auto organization = std::dynamic_pointer_cast<IfcOrganization>(writer.entities.at(1));
    const auto person = std::dynamic_pointer_cast<IfcPerson>(writer.entities.at(2));
    const auto user = std::dynamic_pointer_cast<IfcPersonAndOrganization>(writer.entities.at(3));
    const auto application = std::dynamic_pointer_cast<IfcApplication>(writer.entities.at(4));
    const auto history = std::dynamic_pointer_cast<IfcOwnerHistory>(writer.entities.at(5));
    ASSERT_TRUE(organization && person && user && application && history);
    EXPECT_EQ(user->person, person);
    EXPECT_EQ(user->organization, organization);
    EXPECT_EQ(application->developer, organization);
    EXPECT_EQ(history->owningUser, user);
    EXPECT_EQ(history->owningApplication, application);
    for (int number = 1; number <= 5005; ++number) {
      ASSERT_EQ(writer.entities.at(number)->id, number);
    }
  });
}

TEST(Preamble, OnAUsedWriterOnlyTheOwnershipNumbersShift) {
  const auto lines = test::exportedLines([](StepWriter& writer) {
    writer.writeEntity("A()");
    writer.writeEntity("B()");
    writePreamble(writer);
    EXPECT_EQ(writer.ownerHistoryId, 7);
    EXPECT_EQ(writer.writeEntity("C()"), 5008);
  });
  ASSERT_EQ(lines.size(), 2U + 74U + 1U);
  EXPECT_EQ(lines[2], "#3= IFCORGANIZATION($, 'Korvane', $, $, $);");
  EXPECT_EQ(lines[4], "#5= IFCPERSONANDORGANIZATION(#4, #3, $);");
  EXPECT_EQ(lines[6], "#7= IFCOWNERHISTORY(#5, #6, $, .NOCHANGE., $, $, $, 0);");
  for (std::size_t i = 5; i < 74; ++i) {
    const std::string expected =
        std::regex_replace(expectedLines()[i], std::regex("', #5, "), "', #7, ");
    EXPECT_EQ(lines[i + 2], expected);
  }
}

TEST(Preamble, OneOwnerHistoryIsReferredToFiveTimes) {
  const auto lines = test::exportedLines([](StepWriter& writer) { writePreamble(writer); });
  EXPECT_EQ(test::linesWith(lines, "IFCOWNERHISTORY(").size(), 1U);
  EXPECT_EQ(test::linesWith(lines, "', #5, ").size(), 5U);
}

}  // namespace
}  // namespace exportifc
