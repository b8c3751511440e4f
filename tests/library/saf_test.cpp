#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <fstream>
#include <numbers>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "library/formats/saf/saf_axes.h"
#include "library/formats/saf/saf_bars.h"
#include "library/formats/saf/saf_model.h"
#include "library/formats/saf/saf_shapes.h"
#include "library/frame/model_check.h"
#include "library/frame/model_error.h"
#include "library/frame/model_export.h"
#include "library/sections/section_catalogue.h"
#include "library/sections/section_shape.h"
#include "model/batch_source.h"
#include "tests/library/library_test.h"
#include "tests/library/polygon.h"
#include "tests/support/random.h"
#include "tests/support/sinks.h"

namespace exportifc {
namespace {

using saf::Vector;
// The check does not see operators that expressions use.
// NOLINTBEGIN(misc-unused-using-decls)
using saf::operator+;
using saf::operator-;
using saf::operator*;
// NOLINTEND(misc-unused-using-decls)
using test::briefs;
using testing::ElementsAre;
using testing::HasSubstr;

// ---- workbooks in memory

using Line = std::vector<std::string>;

/// What reads as a number is one, as programs write it.
Sheet sheetOf(const std::string& name, const std::vector<Line>& lines) {
  Sheet sheet{.name = name};
  std::int32_t number = 0;
  for (const Line& line : lines) {
    Row row{.number = ++number};
    std::int32_t column = -1;
    for (const std::string& text : line) {
      ++column;
      Cell cell{.column = column, .kind = Cell::Kind::text, .text = text};
      const char* const end = text.data() + text.size();
      const auto read = std::from_chars(text.data(), end, cell.number);
      if (text.empty()) {
        continue;
      }
      if (read.ec == std::errc() && read.ptr == end) {
        cell.kind = Cell::Kind::number;
      }
      row.cells.push_back(cell);
    }
    sheet.rows.push_back(row);
  }
  return sheet;
}

/// A workbook of which tests replace single sheets.
struct Saf {
  std::vector<Line> model = {{"Global coordinate system", "Z vertical"},
                             {"LCS of cross-section", "ZYX"},
                             {"System of units", "Metric"}};
  std::vector<Line> materials = {{"Name", "Type", "Quality", "Unit mass [kg/m3]"},
                                 {"S235", "Steel", "S235", "7850"}};
  std::vector<Line> sections = {{"Name", "Material", "Cross-section type", "Shape",
                                 "Parameters [mm]", "Profile", "Form code", "A [m2]"},
                                {"CS1", "S235", "Parametric", "I rolled", "200; 100; 8; 6; 10"}};
  std::vector<Line> nodes = {
      {"Name", "Coordinate X [m]", "Coordinate Y [m]", "Coordinate Z [m]"},
      {"N1", "0", "0", "0"},
      {"N2", "0", "0", "3"},
      {"N3", "5", "0", "3"},
  };
  std::vector<Line> members = {
      {"Name", "Type", "Cross section", "Nodes", "Segments", "LCS", "LCS Rotation [deg]",
       "Coordinate X [m]", "Coordinate Y [m]", "Coordinate Z [m]", "System line", "Layer"},
      {"B1", "Column", "CS1", "N1; N2", "Line", "y by vector", "0", "0", "1", "0", "Centre",
       "Frame"},
      {"B2", "Beam", "CS1", "N2; N3", "Line", "z by vector", "0", "0", "0", "1", "Centre",
       "Frame"}};
  std::vector<Sheet> others;

  Workbook book() const {
    std::vector<Sheet> sheets = {
        sheetOf("Project", {{"Name", "Hall"}}),      sheetOf("Model", model),
        sheetOf("StructuralMaterial", materials),    sheetOf("StructuralCrossSection", sections),
        sheetOf("StructuralPointConnection", nodes), sheetOf("StructuralCurveMember", members)};
    sheets.insert(sheets.end(), others.begin(), others.end());
    return Workbook(std::move(sheets));
  }

  Model read() const { return readSafModel(book()); }

  Problem fault() const {
    try {
      read();
    } catch (const ModelError& error) {
      return error.problem();
    }
    ADD_FAILURE() << "the workbook is read";
    return {};
  }
};

/// Puts a value into a row, below the header with that name; a new column when there is none.
void put(std::vector<Line>& lines, const std::string& header, const std::string& value,
         std::size_t row = 1) {
  auto column = static_cast<std::size_t>(std::find(lines[0].begin(), lines[0].end(), header) -
                                         lines[0].begin());
  for (Line* const line : {lines.data(), &lines[row]}) {
    line->resize(std::max(line->size(), column + 1));
  }
  lines[0][column] = header;
  lines[row][column] = value;
}

// ---- what the model holds

TEST(SafModel, HasWhatTheWorkbookHas) {
  const Model model = Saf{}.read();
  EXPECT_EQ(model.title, "Hall");
  EXPECT_EQ(model.unitCode, 0);
  EXPECT_EQ(model.format, ModelFormat::saf);
  ASSERT_EQ(model.nodes.size(), 3U);
  EXPECT_EQ(model.nodes[2], (std::array<float, 3>{5, 0, 3}));
  ASSERT_EQ(model.materials.size(), 1U);
  EXPECT_EQ(model.materials[0].name, "S235");
  EXPECT_EQ(model.materials[0].density, 7850);
  ASSERT_EQ(model.sections.size(), 1U);
  EXPECT_EQ(model.sections[0].name, "CS1");
  EXPECT_EQ(model.sections[0].text, "ILAM 200 100 8 6");
  EXPECT_EQ(model.sections[0].material, 0);
  ASSERT_EQ(model.bars.size(), 2U);
  EXPECT_EQ(barTypeNames[model.bars[0].type], "column");
  EXPECT_EQ(barTypeNames[model.bars[1].type], "frame-beam");
  EXPECT_EQ(model.barNames, (std::vector<std::string>{"B1", "B2"}));
  EXPECT_EQ(model.layers, (std::vector<std::string>{"Frame"}));
  EXPECT_EQ(model.barLayers, (std::vector<std::int32_t>{0, 0}));
  EXPECT_THAT(briefs(checkModel(model, false)), ElementsAre());
}

TEST(SafModel, ColumnsStandInAnyOrderAndInAnyUnit) {
  Saf saf;
  saf.nodes = {{"coordinate z [MM]", "NAME", "Coordinate-Y [ft]", "Coordinate X [in]", "Id"},
               {"0", "N1", "0", "0"},
               {"3000", "N2", "10", "100"},
               {"3000", "N3", "0", "0"}};
  saf.sections = {{"Parameters [in]", "Cross section type", "Shape", "Name"},
                  {"10; 5; 0.5; 0.25; 0", "parametric", "i rolled", "CS1"}};
  const Model model = saf.read();
  EXPECT_EQ(model.nodes[1], (std::array<float, 3>{2.54F, 3.048F, 3.0F}));
  EXPECT_EQ(model.sections[0].text, "ILAM 254 127 12.7 6.35");
  EXPECT_EQ(model.sections[0].material, -1);
}

TEST(SafModel, HeadersWithoutUnitsMeanThoseOfTheModel) {
  Saf saf;
  saf.nodes[0] = {"Name", "Coordinate X", "Coordinate Y", "Coordinate Z"};
  EXPECT_EQ(saf.read().nodes[2], (std::array<float, 3>{5, 0, 3}));
  saf.model[2][1] = "Imperial";
  EXPECT_EQ(saf.read().nodes[2], (std::array<float, 3>{1.524F, 0, 0.9144F}));
  saf.sections[0][4] = "Parameters";
  EXPECT_EQ(saf.read().sections[0].text, "ILAM 5080 2540 203.2 152.4");
}

TEST(SafModel, NumbersMayBeTextsWithAComma) {
  Saf saf;
  saf.nodes[3][1] = "5,25";
  EXPECT_EQ(saf.read().nodes[2][0], 5.25F);
}

TEST(SafModel, TurnsTheAxisThatIsUpToZ) {
  struct Case {
    const char* name;
    std::array<float, 3> up;  // where the workbook's (1, 2, 3) comes out
  };
  for (const Case& one :
       {Case{"Z vertical", {1, 2, 3}}, Case{"Y vertical", {1, -3, 2}},
        Case{"X vertical", {2, 3, 1}}, Case{"minus Z vertical", {1, -2, -3}},
        Case{"minus Y vertical", {1, 3, -2}}, Case{"minus X vertical", {2, -3, -1}}}) {
    Saf saf;
    saf.model[0][1] = one.name;
    saf.nodes[1] = {"N1", "1", "2", "3"};
    EXPECT_EQ(saf.read().nodes[0], one.up) << one.name;
  }
}

TEST(SafModel, MakesABarOfEachSegment) {
  Saf saf;
  saf.members[1][3] = "N1; N2; N3";
  saf.members[1][4] = "Line; Line";
  saf.members.pop_back();
  const Model model = saf.read();
  ASSERT_EQ(model.bars.size(), 2U);
  EXPECT_EQ(model.barNames, (std::vector<std::string>{"B1.1", "B1.2"}));
  EXPECT_EQ(model.bars[0].end, model.bars[1].start);
}

TEST(SafModel, MemberTypesBecomeBarTypes) {
  const auto typeOf = [](std::string_view word) {
    const int type = saf::barTypeOfMember(word);
    return type < 0 ? std::string_view("none") : barTypeNames[static_cast<std::size_t>(type)];
  };
  EXPECT_EQ(typeOf("General"), "member");
  EXPECT_EQ(typeOf("Beam"), "frame-beam");
  EXPECT_EQ(typeOf("Column"), "column");
  EXPECT_EQ(typeOf("GableColumn"), "wind-column");
  EXPECT_EQ(typeOf("gable column"), "wind-column");
  EXPECT_EQ(typeOf("SecondaryColumn"), "column");
  EXPECT_EQ(typeOf("Rafter"), "frame-beam");
  EXPECT_EQ(typeOf("Purlin"), "other");
  EXPECT_EQ(typeOf("Girt"), "other");
  EXPECT_EQ(typeOf("RoofBracing"), "bracing");
  EXPECT_EQ(typeOf("WallBracing"), "bracing");
  EXPECT_EQ(typeOf("TrussChord"), "truss-chord");
  EXPECT_EQ(typeOf("TrussDiagonal"), "truss-web");
  EXPECT_EQ(typeOf("PlateRib"), "floor-beam");
  EXPECT_EQ(typeOf("BeamSlab"), "floor-beam");
  EXPECT_EQ(typeOf("HollowCoreSlab"), "other");
  EXPECT_EQ(typeOf("CompositePlateRib"), "floor-beam");
  EXPECT_EQ(typeOf("CompositeBeamRib"), "floor-beam");
  EXPECT_EQ(typeOf("Mast"), "none");
}

// ---- what it does not carry

TEST(SafModel, BlanksAroundWhatItReadsDoNotMatter) {
  Saf saf;
  saf.nodes.insert(saf.nodes.begin(), Line{" "});
  saf.nodes.push_back({"  ", "\t"});
  saf.members[1][2] = " CS1 ";
  saf.members[1][10] = "";  // no side: the centroid is on the line
  const Model model = saf.read();
  EXPECT_EQ(model.bars.size(), 2U);
  EXPECT_EQ(model.nodes[1], (std::array<float, 3>{0, 0, 3}));
}

TEST(SafModel, NeedsNoMaterials) {
  Saf saf;
  saf.sections[1][1] = "";
  std::vector<Sheet> sheets;
  const Workbook book = saf.book();
  for (const std::string& name : book.sheetNames()) {
    if (name != "StructuralMaterial") {
      sheets.push_back(book.sheet(name));
    }
  }
  const Model model = readSafModel(Workbook(std::move(sheets)));
  EXPECT_TRUE(model.materials.empty());
  EXPECT_EQ(model.sections[0].material, -1);
}

TEST(SafModel, TakesTheTwoNodesOfAMemberFromColumnsOfTheirOwn) {
  Saf saf;
  saf.members[1][3] = "";
  put(saf.members, "Begin node", "N2");
  put(saf.members, "End node", "N3");
  const Model model = saf.read();
  EXPECT_EQ(model.nodes[static_cast<std::size_t>(model.bars[0].start)],
            (std::array<float, 3>{0, 0, 3}));
  EXPECT_EQ(model.nodes[static_cast<std::size_t>(model.bars[0].end)],
            (std::array<float, 3>{5, 0, 3}));
  put(saf.members, "End node", "");
  EXPECT_EQ(saf.fault().cell, "StructuralCurveMember!N2");
}

TEST(SafModel, KeepsAMemberWithoutLength) {
  Saf saf;
  saf.nodes.push_back({"N4", "0", "0", "0"});
  saf.members[1][3] = "N1; N4";
  const Model model = saf.read();
  ASSERT_EQ(model.bars.size(), 2U);
  EXPECT_THAT(briefs(checkModel(model, false)),
              testing::Contains(HasSubstr("warning zero-length")));
}

TEST(SafModel, NamesTenOfManyMembers) {
  Saf saf;
  saf.members.resize(2);
  saf.members[1][1] = "Cable";
  for (int i = 2; i <= 12; ++i) {
    Line line = saf.members[1];
    line[0] = "B" + std::to_string(i);
    saf.members.push_back(line);
  }
  const Model model = saf.read();
  ASSERT_THAT(briefs(model.found), ElementsAre("warning unknown-type"));
  EXPECT_THAT(model.found[0].message, HasSubstr("12 members"));
  EXPECT_THAT(model.found[0].message, testing::EndsWith("B10 (Cable), \xE2\x80\xA6"));
}

TEST(SafModel, CountsSheetsThatItDoesNotRead) {
  Saf saf;
  saf.others = {sheetOf("StructuralPointSupport", {{"Name"}, {"Sn1"}, {"Sn2"}}),
                sheetOf("StructuralLoadCase", {{"Name"}}), sheetOf("Empty", {})};
  const Model model = saf.read();
  ASSERT_THAT(briefs(model.found), ElementsAre("note not-read"));
  EXPECT_EQ(model.found[0].cell, "StructuralPointSupport");
  EXPECT_THAT(model.found[0].message, HasSubstr("2 rows"));
}

TEST(SafModel, LeavesCurvedMembersOutByName) {
  for (const char* const segments : {"Circular Arc", "Line; Bezier", "Parabolic arc", "Spline-8"}) {
    Saf saf;
    saf.members[1][4] = segments;
    const Model model = saf.read();
    EXPECT_EQ(model.barNames, (std::vector<std::string>{"B2"})) << segments;
    ASSERT_THAT(briefs(model.found), ElementsAre("warning left-out"));
    EXPECT_THAT(model.found[0].message, HasSubstr("B1"));
    EXPECT_EQ(model.found[0].cell, "StructuralCurveMember!A2");
  }
}

TEST(SafModel, SaysATypeThatItDoesNotKnow) {
  Saf saf;
  saf.members[2][1] = "Mast";
  const Model model = saf.read();
  EXPECT_EQ(model.bars[1].type, 0);
  ASSERT_THAT(briefs(model.found), ElementsAre("warning unknown-type"));
  EXPECT_THAT(model.found[0].message, HasSubstr("B2 (Mast)"));
  EXPECT_EQ(model.found[0].cell, "StructuralCurveMember!B3");
}

TEST(SafModel, SaysWhatTheModelSheetLeavesOpen) {
  Saf saf;
  saf.model.erase(saf.model.begin(), saf.model.begin() + 2);
  const Model model = saf.read();
  EXPECT_THAT(briefs(model.found), ElementsAre("warning saf-assumed", "warning saf-assumed"));
  EXPECT_EQ(model.nodes[1], (std::array<float, 3>{0, 0, 3}));
}

TEST(SafModel, SaysAnAreaThatIsNotTheShapes) {
  Saf saf;
  put(saf.sections, "A [m2]", "0.0028");  // two flanges of 800, a web of 1104 mm²
  EXPECT_THAT(briefs(saf.read().found), ElementsAre());
  put(saf.sections, "A [m2]", "0.0035");
  const Model model = saf.read();
  ASSERT_THAT(briefs(model.found), ElementsAre("warning section-area"));
  EXPECT_EQ(model.found[0].cell, "StructuralCrossSection!H2");
}

// ---- faults

TEST(SafFault, NamesTheCell) {
  struct Case {
    const char* cell;
    void (*spoil)(Saf& saf);
  };
  const Case cases[] = {
      {"StructuralPointConnection!C3", [](Saf& saf) { saf.nodes[2][2] = "x"; }},
      {"StructuralPointConnection!D2", [](Saf& saf) { saf.nodes[1][3] = ""; }},
      {"StructuralPointConnection!A4", [](Saf& saf) { saf.nodes[3][0] = "N1"; }},
      {"StructuralPointConnection!B1", [](Saf& saf) { saf.nodes[0][1] = "Coordinate X [km]"; }},
      {"StructuralCurveMember!D2", [](Saf& saf) { saf.members[1][3] = "N1; N9"; }},
      {"StructuralCurveMember!D2", [](Saf& saf) { saf.members[1][3] = "N1"; }},
      {"StructuralCurveMember!C3", [](Saf& saf) { saf.members[2][2] = "CS2"; }},
      {"StructuralCurveMember!F2", [](Saf& saf) { saf.members[1][5] = "w by vector"; }},
      {"StructuralCurveMember!G2", [](Saf& saf) { saf.members[1][6] = "steep"; }},
      {"StructuralCurveMember!K3", [](Saf& saf) { saf.members[2][10] = "Middle"; }},
      {"StructuralCurveMember!M2",
       [](Saf& saf) { put(saf.members, "Arbitrary definition", "AD1"); }},
      {"StructuralCrossSection!B2", [](Saf& saf) { saf.sections[1][1] = "S355"; }},
      {"StructuralCrossSection!C2", [](Saf& saf) { saf.sections[1][2] = "Drawn"; }},
      {"StructuralCrossSection!E2", [](Saf& saf) { saf.sections[1][4] = "200; 100"; }},
      {"StructuralCrossSection!E2", [](Saf& saf) { saf.sections[1][4] = "200; 100; 0; 6"; }},
      {"StructuralCrossSection!E2", [](Saf& saf) { saf.sections[1][4] = "200; b; 8; 6"; }},
      {"StructuralMaterial!D2", [](Saf& saf) { saf.materials[1][3] = "heavy"; }},
      {"StructuralMaterial!A3", [](Saf& saf) { saf.materials.push_back({"S235"}); }},
      {"StructuralMaterial!A2", [](Saf& saf) { saf.materials[1][0] = ""; }},
      {"StructuralCrossSection!A3",
       [](Saf& saf) {
         saf.sections.push_back({"CS1", "S235", "Manufactured"});
       }},
      {"CompositeShapeDef!B2",
       [](Saf& saf) {
         saf.others = {sheetOf("CompositeShapeDef",
                               {{"Name", "Polygon contour 1"}, {"P1", "0; 0|10; 0|10; x"}})};
       }},
      {"Model!B1", [](Saf& saf) { saf.model[0][1] = "W vertical"; }},
      {"Model!B2", [](Saf& saf) { saf.model[1][1] = "XYZ"; }},
      {"Model!B3", [](Saf& saf) { saf.model[2][1] = "Roman"; }},
  };
  for (const Case& one : cases) {
    Saf saf;
    one.spoil(saf);
    const Problem fault = saf.fault();
    EXPECT_EQ(fault.cell, one.cell) << fault.message;
    EXPECT_STREQ(fault.code, "bad-value");
  }
}

TEST(SafFault, OfACellThatTheProgramCouldNotWorkOut) {
  Saf saf;
  Workbook book = saf.book();
  std::vector<Sheet> sheets;
  for (const std::string& name : book.sheetNames()) {
    sheets.push_back(book.sheet(name));
  }
  sheets[4].rows[1].cells[1] = {.column = 1, .kind = Cell::Kind::error, .text = "#DIV/0!"};
  try {
    readSafModel(Workbook(std::move(sheets)));
    FAIL();
  } catch (const ModelError& error) {
    EXPECT_EQ(error.problem().cell, "StructuralPointConnection!B2");
    EXPECT_THAT(error.problem().message, HasSubstr("#DIV/0!"));
  }
}

TEST(SafFault, NamesTheNearestName) {
  Saf saf;
  saf.members[1][3] = "N1; N2x";
  const Problem fault = saf.fault();
  EXPECT_EQ(fault.suggestion, "N2");
  EXPECT_THAT(fault.message, HasSubstr("StructuralPointConnection"));
}

TEST(SafFault, NamesTheSheetAndTheColumnThatAreMissing) {
  Saf saf;
  saf.nodes[0][3] = "Height";
  EXPECT_STREQ(saf.fault().code, "missing-column");
  EXPECT_EQ(saf.fault().cell, "StructuralPointConnection");
  EXPECT_THAT(saf.fault().message, HasSubstr("Coordinate Z"));
  const Workbook book({sheetOf("StructuralCurveMember", {})});
  EXPECT_TRUE(isSaf(book));
  try {
    readSafModel(book);
    FAIL();
  } catch (const ModelError& error) {
    EXPECT_STREQ(error.problem().code, "missing-sheet");
    EXPECT_THAT(error.problem().message, HasSubstr("StructuralPointConnection"));
  }
  EXPECT_FALSE(isSaf(Workbook({{.name = "bars"}})));
}

TEST(SafPlaces, AreCells) {
  const Workbook book = Saf{}.book();
  std::vector<Problem> problems = {
      {.code = "a", .pointer = "/bars/1/nodes/0"},
      {.code = "b", .pointer = "/sections/CS1/text", .section = 0},
      {.code = "c", .pointer = "/bars/7"},
      {.code = "d", .pointer = "/x", .cell = "Model!A1"},
  };
  locateInSaf(book, problems);
  EXPECT_EQ(problems[0].cell, "StructuralCurveMember!A3");
  EXPECT_EQ(problems[0].pointer, "");
  EXPECT_EQ(problems[1].cell, "StructuralCrossSection!A2");
  EXPECT_EQ(problems[2].cell, "");
  EXPECT_EQ(problems[3].cell, "Model!A1");
}

// ---- shapes

std::string textOf(const std::string& shape, const std::string& parameters) {
  Saf saf;
  saf.sections[1] = {"CS1", "S235", "Parametric", shape, parameters};
  const ModelSection section = saf.read().sections[0];
  return section.isDrawn ? section.text
                         : "none, " + std::to_string(section.bounds[0]) + " " +
                               std::to_string(section.bounds[1]);
}

TEST(SafShapes, OfParameters) {
  EXPECT_EQ(textOf("Circle", "20"), "RED 20");
  EXPECT_EQ(textOf("Rectangle", "500; 300"), "RET 500 300");
  EXPECT_EQ(textOf("I Section", "400; 200; 200; 15; 15; 10"), "PS 400 200 15 10");
  EXPECT_EQ(textOf("I Section", "400; 200; 250; 20; 15; 10"), "PSA 400 200 15 250 20 10");
  EXPECT_EQ(textOf("I rolled", "200; 100; 8.5; 5.6; 12"), "ILAM 200 100 8.5 5.6");
  EXPECT_EQ(textOf("I rolled asymmetric", "300; 8; 150; 200; 12; 14; 10"),
            "PSA 300 150 12 200 14 8");
  EXPECT_EQ(textOf("T Section", "150; 100; 10; 8"), "TS 150 100 10 8");
  EXPECT_EQ(textOf("T tee", "150; 100; 10; 8; 5"), "WT 150 100 10 8");
  EXPECT_EQ(textOf("L Section", "75; 75; 8; 8"), "LLAM 75 0 0 8");
  EXPECT_EQ(textOf("L Section opposite", "75; 75; 8; 8"), "LLAM 75 0 0 8");
  EXPECT_EQ(textOf("Angle", "75; 75; 8; 4; 4"), "LLAM 75 0 0 8");
  EXPECT_EQ(textOf("Pipe", "114.3; 4"), "TUBO 114.3 0 0 4");
  EXPECT_EQ(textOf("Tube", "150; 100; 6.3; 9; 6"), "BOX 150 100 0 6.3");
  EXPECT_EQ(textOf("Channel", "200; 75; 11.5; 8.5; 11"), "UAP 200 75 8.5 11.5");
  EXPECT_EQ(textOf("Cold formed Channel", "150; 50; 3; 3"), "[ 150 50 0 3");
  EXPECT_EQ(textOf("Cold formed Channel with lips", "200; 75; 2; 3; 20"), "UENR 200 75 20 2");
}

TEST(SafShapes, WithoutAFamilyHaveBounds) {
  EXPECT_EQ(textOf("Angle", "100; 75; 8; 4; 4"), "none, 100.000000 75.000000");
  EXPECT_EQ(textOf("L Section", "75; 75; 8; 10"), "none, 75.000000 75.000000");
  EXPECT_EQ(textOf("Oval", "300; 200"), "none, 300.000000 200.000000");
  EXPECT_EQ(textOf("Polygon", "100; 6"), "none, 200.000000 200.000000");
  EXPECT_EQ(textOf("Trapezoid", "300; 200; 250"), "none, 300.000000 250.000000");
  EXPECT_EQ(textOf("U Section", "300; 200; 10; 10"), "none, 300.000000 200.000000");
  EXPECT_EQ(textOf("I Section with haunch", "600; 300; 1; 2; 3; 4"), "none, 600.000000 300.000000");
  EXPECT_EQ(textOf("I Section with haunch Asymmetric", "600; 300; 1; 2; 350; 3; 4; 5"),
            "none, 600.000000 350.000000");
  EXPECT_EQ(textOf("T Section with haunch", "600; 100; 300; 200; 5"),
            "none, 600.000000 300.000000");
  EXPECT_EQ(textOf("Z zee", "100; 50; 8; 6; 4; 4"), "none, 100.000000 94.000000");
  EXPECT_EQ(textOf("Cold formed Zee", "100; 50; 2; 4"), "none, 100.000000 98.000000");
  EXPECT_EQ(textOf("Box", "600; 20; 500; 25; 20"), "none, 0.000000 0.000000");
}

TEST(SafShapes, OfRolledSections) {
  Saf saf;
  saf.sections[1] = {"CS1", "S235", "Manufactured", "", "", "HEB180", "1"};
  EXPECT_EQ(saf.read().sections[0].text, "HE 180 180 14 8.5");
  EXPECT_EQ(saf.read().sections[0].catalogue, "HEB 180");
  saf.sections[1][5] = "HEB185";
  EXPECT_FALSE(saf.read().sections[0].isDrawn);
}

TEST(SafShapes, OfSeveralRolledSections) {
  const auto text = [](const char* shape, const char* profile) {
    Saf saf;
    saf.sections[1] = {"CS1", "S235", "Compound", shape, "10", profile};
    const ModelSection section = saf.read().sections[0];
    return section.isDrawn ? section.text : "none";
  };
  EXPECT_EQ(text("Double Angle BtB", "L75x75x8"), "2LLM 75 0 0 8 10");
  EXPECT_EQ(text("Double Angle BtB LL", "L75x75x8"), "2LLM 75 0 0 8 10");
  EXPECT_EQ(text("Double Angle FtF (face to face position)", "L75x75x8"), "LLLM 75 0 0 8 85");
  EXPECT_EQ(text("Starred Angle", "L75x75x8"), "LXLM 75 0 0 8 10");
  EXPECT_EQ(text("Double Channel FtF", "UPN200"), "UULM 200 75 8.5 11.5 160");
  EXPECT_EQ(text("Double Channel BtB", "UPN200"), "2ULM 200 75 8.5 11.5 10");
  EXPECT_EQ(text("Double I section", "IPE300"), "none");
  EXPECT_EQ(text("Four Angle I", "L75x75x8"), "none");
  EXPECT_EQ(text("Double Angle BtB", "UPN200"), "none");
}

TEST(SafShapes, OfPolygonsHaveBounds) {
  Saf saf;
  saf.sections[1] = {"CS1", "S235", "General", "", "", "P1"};
  saf.others = {sheetOf(
      "CompositeShapeDef",
      {{"Name", "Material name 1", "Polygon contour 1", "Polygon contour 2"},
       {"P1", "S235", "-75.0; 105.0| -175.0; 5.0| 175.0; 5.0| 75.0; 105.0", "0; 0|10; 0|10; 20"}})};
  const ModelSection section = saf.read().sections[0];
  EXPECT_FALSE(section.isDrawn);
  EXPECT_EQ(section.bounds, (std::array<float, 2>{105, 350}));
}

TEST(StandingOf, NothingWhereNothingIsDrawn) {
  EXPECT_EQ(saf::standingOf("UNKNOWN 1", {}, 0.0, false).area, 0.0);
}

TEST(SectionTextOf, StaysWithinARecord) {
  const double plain[] = {200, 100.5, 0, 6.30001};
  EXPECT_EQ(saf::sectionTextOf("W", plain), "W 200 100.5 0 6.3");
  const double long6[] = {1000.1234, 1000.1234, 100.1234, 1000.1234, 100.1234, 100.1234};
  EXPECT_EQ(saf::sectionTextOf("PSA", long6), "PSA 1000.1 1000.1 100.1 1000.1 100.1 100.1");
}

TEST(UndrawnSections, AreRefusedWithTheirMembers) {
  Saf saf;
  saf.sections[1] = {"CS1", "S235", "Parametric", "Oval", "300; 200"};
  Model model = saf.read();
  const std::vector<Problem> problems = checkReferences(model);
  ASSERT_EQ(briefs(problems), (std::vector<std::string>{"error undrawn-section"}));
  EXPECT_EQ(problems[0].bars, 2);
  EXPECT_THAT(problems[0].message, HasSubstr("Oval 300; 200"));
  EXPECT_THAT(problems[0].message, HasSubstr("B1, B2"));
  EXPECT_THAT(problems[0].message, HasSubstr("--bounding-rectangle"));
  drawBounds(model);
  EXPECT_THAT(briefs(checkModel(model, false)), ElementsAre());
  EXPECT_EQ(model.sections[0].text, "RET CS1");
  EXPECT_EQ(model.sections[0].dims[0], 300);
  EXPECT_EQ(model.sections[0].dims[1], 200);
}

TEST(UndrawnSections, WithoutBoundsStayRefused) {
  Saf saf;
  saf.sections[1] = {"CS1", "S235", "Parametric", "Flower", "300"};
  Model model = saf.read();
  drawBounds(model);
  const std::vector<Problem> problems = checkReferences(model);
  ASSERT_EQ(problems.size(), 1U);
  EXPECT_THAT(problems[0].message, testing::Not(HasSubstr("--bounding-rectangle")));
}

TEST(UndrawnSections, DoNotMatterWithoutBars) {
  Saf saf;
  saf.sections.push_back({"CS2", "S235", "Parametric", "Flower", "300"});
  EXPECT_THAT(briefs(checkModel(saf.read(), false)), ElementsAre());
}

TEST(UndrawnSections, KeepNamesThatAFileCanHold) {
  Saf saf;
  const std::string name =
      "Pilar m\xC3\xA9"
      "dio 'B*\\', com um nome de mais de quarenta letras";
  saf.sections[1] = {name, "S235", "Parametric", "Oval", "300; 200"};
  saf.members[1][2] = saf.members[2][2] = name;
  Model model = saf.read();
  drawBounds(model);
  EXPECT_EQ(model.sections[0].text, "RET Pilar medio B, com um nome de mais de quare");
  EXPECT_EQ(model.sections[0].text.size(), 47U);
}

// ---- where sections stand

/// A shape as the picture of a section shows it: corners to the right and up, from any origin.
struct Picture {
  const char* type;
  const char* shape;
  const char* parameters;
  const char* profile;
  const char* formCode;
  test::Rings corners;
  test::Rings fromEnd{};  ///< where it differs: with a picture seen from the member's end
};

test::Ring moved(test::Ring ring, double x, double y) {
  for (Point2& point : ring) {
    point = {.x = point.x + x, .y = point.y + y};
  }
  return ring;
}

/// The letter L, its heel at the origin.
const test::Ring letterL = {{0, 0}, {75, 0}, {75, 8}, {8, 8}, {8, 75}, {0, 75}};
const test::Ring flippedL = {{0, 0}, {-75, 0}, {-75, 8}, {-8, 8}, {-8, 75}, {0, 75}};
const test::Ring letterGamma = {{0, 0}, {75, 0}, {75, -8}, {8, -8}, {8, -75}, {0, -75}};
const test::Ring flippedGamma = {{0, 0}, {-75, 0}, {-75, -8}, {-8, -8}, {-8, -75}, {0, -75}};
const test::Ring opensRight = {{0, 0},       {75, 0},     {75, 11.5}, {8.5, 11.5},
                               {8.5, 188.5}, {75, 188.5}, {75, 200},  {0, 200}};
const test::Ring opensLeft = {{0, 0},        {-75, 0},     {-75, 11.5}, {-8.5, 11.5},
                              {-8.5, 188.5}, {-75, 188.5}, {-75, 200},  {0, 200}};

const Picture pictures[] = {
    {"Parametric",
     "Cold formed Channel with lips",
     "200; 75; 2; 3; 20",
     "",
     "",
     {{{0, 0},
       {75, 0},
       {75, 20},
       {73, 20},
       {73, 2},
       {2, 2},
       {2, 198},
       {73, 198},
       {73, 180},
       {75, 180},
       {75, 200},
       {0, 200}}}},
    {"Parametric",
     "Cold formed Channel",
     "150; 50; 3; 3",
     "",
     "",
     {{{0, 0}, {50, 0}, {50, 3}, {3, 3}, {3, 147}, {50, 147}, {50, 150}, {0, 150}}}},
    {"Parametric", "Channel", "200; 75; 11.5; 8.5; 11", "", "", {opensRight}},
    {"Parametric", "Angle", "75; 75; 8; 4; 4", "", "", {letterL}},
    {"Parametric", "L Section opposite", "75; 75; 8; 8", "", "", {flippedL}},
    {"Parametric",
     "T Section",
     "150; 100; 10; 8",
     "",
     "",
     {{{-4, 0}, {4, 0}, {4, 140}, {50, 140}, {50, 150}, {-50, 150}, {-50, 140}, {-4, 140}}}},
    {"Parametric",
     "I rolled asymmetric",
     "300; 8; 150; 200; 12; 14; 10",
     "",
     "",
     {{{-100, 0},
       {100, 0},
       {100, 14},
       {4, 14},
       {4, 288},
       {75, 288},
       {75, 300},
       {-75, 300},
       {-75, 288},
       {-4, 288},
       {-4, 14},
       {-100, 14}}}},
    {"Parametric", "Rectangle", "500; 300", "", "", {{{0, 0}, {300, 0}, {300, 500}, {0, 500}}}},
    {"Manufactured", "", "", "UPN200", "5", {opensRight}},
    {"Manufactured", "", "", "UPN200", "13", {opensLeft}},
    {"Manufactured", "", "", "UPN200", "0", {opensRight}},
    {"Manufactured", "", "", "L75x75x8", "4", {letterL}},
    {"Manufactured", "", "", "L75x75x8", "10", {flippedL}},
    {"Manufactured", "", "", "L75x75x8", "11", {letterGamma}},
    {"Manufactured", "", "", "L75x75x8", "12", {flippedGamma}},
    // The halves of this family are half a turn apart, where a mirror should be.
    {"Compound",
     "Double Angle BtB",
     "10",
     "L75x75x8",
     "",
     {moved(letterGamma, 5, 75), moved(flippedL, -5, 0)},
     {moved(letterL, 5, 0), moved(flippedGamma, -5, 75)}},
    {"Compound",
     "Double Angle FtF",
     "10",
     "L75x75x8",
     "",
     {moved(letterL, -80, 0), moved(flippedL, 80, 0)}},
    {"Compound",
     "Starred Angle",
     "10",
     "L75x75x8",
     "",
     {moved(letterL, 5, 5), moved(flippedGamma, -5, -5)}},
    {"Compound",
     "Double Channel BtB",
     "10",
     "UPN200",
     "",
     {moved(opensRight, 5, 0), moved(opensLeft, -5, 0)}},
    {"Compound",
     "Double Channel FtF",
     "10",
     "UPN200",
     "",
     {moved(opensRight, -80, 0), moved(opensLeft, 80, 0)}},
};

/// A bar of an exchange file: where it begins, and its axes.
struct WrittenBar {
  Vector start, axis, xAxis;
  double length;

  Vector placed(const Point2& point) const {
    return start + point.x * xAxis + point.y * saf::cross(axis, xAxis);
  }
};

/// The numbers between the first "((" behind `at` and its end.
Vector tripleIn(const std::string& text, std::size_t& at) {
  at = text.find("((", at) + 2;
  Vector triple{};
  for (double& value : triple) {
    value = std::stod(text.substr(at));
    at = text.find_first_of(",)", at) + 1;
  }
  return triple;
}

std::vector<WrittenBar> writtenBars(const Model& model) {
  test::Received received;
  test::MemorySink sink(received);
  exportModel(model, false, sink, [](std::int32_t) { return true; });
  const std::string& bytes = received.bytes;
  std::vector<WrittenBar> bars;
  for (std::size_t at = 0; (at = bytes.find("/* IfcBeam", at)) != std::string::npos;) {
    WrittenBar bar{};
    at = bytes.find("*/", at);
    bar.axis = tripleIn(bytes, at);
    bar.xAxis = tripleIn(bytes, at);
    bar.start = tripleIn(bytes, at);
    at = bytes.find("#19, ", bytes.find("IFCEXTRUDEDAREASOLID", at)) + 5;
    bar.length = std::stod(bytes.substr(at));
    bars.push_back(bar);
  }
  return bars;
}

/// The corners of the model's only section in its bar's first end, both halves.
std::vector<Vector> writtenCorners(const Model& model) {
  const std::vector<WrittenBar> bars = writtenBars(model);
  const ModelSection& section = model.sections[0];
  const Family* const family = findFamilyWord(section.text.substr(0, section.text.find(' ')));
  std::vector<Vector> corners;
  EXPECT_EQ(bars.size(), family->parts.size());
  for (std::size_t i = 0; i < bars.size(); ++i) {
    const PlacedShape shape = shapeOf(*family->parts[i], section.dims,
                                      bars.size() > 1 ? halfFlangeSide : simpleFlangeSide);
    for (const test::Ring& ring : shape.rings) {
      for (const Point2& point : ring) {
        corners.push_back(bars[i].placed(shape.placed(point)));
      }
    }
  }
  return corners;
}

Vector unitOf(const Vector& a) { return 1.0 / saf::lengthOf(a) * a; }

/// The rule of the format in other words: the axis across is the given direction made square to
/// the member, and all is turned about the member as a right-handed screw.
struct Frame {
  Vector x, y, z;
};

Frame frameOf(const Vector& start, const Vector& end, bool isZ, Vector given, double rotation) {
  const Vector x = unitOf(end - start);
  const Vector square = unitOf(saf::cross(saf::cross(x, given), x));
  Vector y = isZ ? saf::cross(square, x) : square;
  const Vector before = y;
  y = std::cos(rotation) * before + std::sin(rotation) * saf::cross(x, before);
  return {.x = x, .y = y, .z = saf::cross(x, y)};
}

struct Random : test::Random {
  using test::Random::Random;
  Vector vector(float size) {
    return {between(-size, size), between(-size, size), between(-size, size)};
  }
};

std::string numberText17(double value) {
  std::array<char, 64> text{};
  return {text.data(), std::to_chars(text.data(), text.data() + text.size(), value).ptr};
}

/// How far the two sets of corners are apart where they differ most.
double distanceOf(const std::vector<Vector>& corners, const std::vector<Vector>& others) {
  double most = 0.0;
  for (const Vector& corner : corners) {
    double least = 1e30;
    for (const Vector& other : others) {
      least = std::min(least, saf::lengthOf(corner - other));
    }
    most = std::max(most, least);
  }
  return most;
}

/// One random member, with the corners that the format gives its first end, in millimetres.
struct RandomMember {
  Saf saf;
  std::vector<Vector> corners;
};

RandomMember randomMember(Random& random, const Picture& picture) {
  RandomMember made;
  Saf& saf = made.saf;
  saf.members.pop_back();
  const Vector start = random.vector(20);
  Vector along = random.vector(8);
  if (random.once(3)) {
    along = {0, 0, along[2] < 0 ? -4.0 : 4.0};
  } else if (random.once(2)) {
    along[static_cast<std::size_t>(random.integer(0, 2))] = 0;
  }
  const Vector end = start + along;
  for (std::size_t i = 0; i < 3; ++i) {
    saf.nodes[1][i + 1] = numberText17(start[i]);
    saf.nodes[2][i + 1] = numberText17(end[i]);
  }
  const bool isZ = random.once(2);
  const bool byPoint = random.once(2);
  const Vector given = random.vector(30);
  const double degrees = random.between(-180, 180);
  saf.members[1][5] = std::string(isZ ? "z" : "y") + (byPoint ? " by point" : " by vector");
  saf.members[1][6] = numberText17(degrees);
  for (std::size_t i = 0; i < 3; ++i) {
    saf.members[1][7 + i] = numberText17(given[i]);
  }
  const Frame frame =
      frameOf(start, end, isZ, byPoint ? given - start : given, degrees * std::numbers::pi / 180);

  // Up and left of the picture, by the words of the names.
  struct System {
    const char* name;
    Vector up, left;
  };
  const System systems[] = {
      {"ZYX", frame.z, frame.y},
      {"MinusYZX", -1 * frame.y, frame.z},
      {"MinusZMinusYX", -1 * frame.z, -1 * frame.y},
      {"YMinusZX", frame.y, -1 * frame.z},
      {"YZMinusX", frame.y, frame.z},
      {"MinusZYMinusX", -1 * frame.z, frame.y},
      {"MinusYMinusZMinusX", -1 * frame.y, -1 * frame.z},
      {"ZMinusYMinusX", frame.z, -1 * frame.y},
  };
  const System& system = systems[random.integer(0, 7)];
  saf.model[1][1] = system.name;

  struct Alignment {
    const char* name;
    int left, up;  // 0: the centroid
  };
  const Alignment alignments[] = {
      {"Centre", 0, 0},     {"Top", 0, 1},          {"Bottom", 0, -1},
      {"Left", 1, 0},       {"Right", -1, 0},       {"Top left", 1, 1},
      {"Top right", -1, 1}, {"Bottom left", 1, -1}, {"Bottom right", -1, -1}};
  const Alignment& alignment = alignments[random.integer(0, 8)];
  saf.members[1][10] = alignment.name;
  const double ey = random.once(2) ? random.number(-200, 200) : 0.0;
  const double ez = random.once(2) ? random.number(-200, 200) : 0.0;
  for (const char* const node : {"Beg", "End"}) {
    put(saf.members, std::string("Analysis Y Eccentricity of ") + node + " Node [mm]",
        numberText17(ey));
    put(saf.members, std::string("Analysis Z Eccentricity of ") + node + " Node [mm]",
        numberText17(ez));
  }

  saf.sections[1] = {
      "CS1",           "S235",          picture.type, picture.shape, picture.parameters,
      picture.profile, picture.formCode};
  const bool isFromEnd = saf::lengthOf(saf::cross(system.left, system.up) - frame.x) > 1;
  const test::Rings& corners =
      isFromEnd && !picture.fromEnd.empty() ? picture.fromEnd : picture.corners;
  const test::Moments moments = test::momentsOf(corners);
  const test::Box box = test::boxOf(corners);
  const double x = alignment.left > 0 ? box.left : alignment.left < 0 ? box.right : moments.x;
  const double y = alignment.up > 0 ? box.top : alignment.up < 0 ? box.bottom : moments.y;
  for (const test::Ring& ring : corners) {
    for (const Point2& corner : ring) {
      made.corners.push_back(1000 * start + ey * frame.y + ez * frame.z +
                             (x - corner.x) * system.left + (corner.y - y) * system.up);
    }
  }
  return made;
}

TEST(SafSections, StandAsTheFormatSays) {
  Random random(15);
  for (const Picture& picture : pictures) {
    for (int round = 0; round < test::rounds(400); ++round) {
      const RandomMember member = randomMember(random, picture);
      const Model model = member.saf.read();
      ASSERT_TRUE(model.sections[0].isDrawn) << picture.shape << picture.profile;
      const std::vector<Vector> written = writtenCorners(model);
      // Coordinates in metres have seven digits.
      EXPECT_LT(distanceOf(member.corners, written), 0.02)
          << picture.shape << picture.profile << picture.formCode << " round " << round << " "
          << member.saf.model[1][1] << " " << member.saf.members[1][10];
      if (testing::Test::HasFailure()) {
        return;
      }
    }
  }
}

TEST(SafSections, OnTheAxisKeepTheNodes) {
  const Model model = Saf{}.read();
  EXPECT_EQ(model.bars[0].end, model.bars[1].start);
  // In an upright member the flanges of an I look along X when its y is that of the model.
  const std::vector<WrittenBar> bars = writtenBars(model);
  EXPECT_NEAR(std::fabs(bars[0].xAxis[1]), 1, 1e-6);
  EXPECT_NEAR(std::fabs(bars[1].xAxis[1]), 1, 1e-6);
  EXPECT_EQ(bars[1].start, (Vector{0, 0, 3000}));
  EXPECT_EQ(bars[1].length, 5000);
}

TEST(SafSections, TurnByWholeQuartersExactly) {
  for (int quarters = -2; quarters <= 2; ++quarters) {
    Saf saf;
    saf.members[2][6] = std::to_string(quarters * 90);
    const Model model = saf.read();
    EXPECT_EQ(model.bars[1].angle, 0.0F);
    EXPECT_EQ((model.bars[1].quarterTurns - quarters) % 4, 0) << model.bars[1].quarterTurns;
  }
}

TEST(SafSections, OffsetsOfBothEndsMayDiffer) {
  Saf saf;
  put(saf.members, "Structural Z Eccentricity of Beg Node [mm]", "100", 2);
  put(saf.members, "Structural Z Eccentricity of End Node [mm]", "-50", 2);
  const WrittenBar bar = writtenBars(saf.read())[1];
  EXPECT_NEAR(saf::lengthOf(bar.start - Vector{0, 0, 3100}), 0, 1e-3);
  EXPECT_NEAR(saf::lengthOf(bar.start + bar.length * bar.axis - Vector{5000, 0, 2950}), 0, 0.1);
}

TEST(SafSections, StructuralOffsetsComeBeforeThoseOfTheAnalysis) {
  Saf saf;
  put(saf.members, "Structural Z Eccentricity of Beg Node [mm]", "100", 2);
  put(saf.members, "Structural Z Eccentricity of End Node [mm]", "100", 2);
  put(saf.members, "Analysis Z Eccentricity of Beg Node [mm]", "40", 2);
  put(saf.members, "Analysis Z Eccentricity of End Node [mm]", "40", 2);
  const Model model = saf.read();
  EXPECT_THAT(briefs(model.found), ElementsAre("warning two-eccentricities"));
  EXPECT_NEAR(writtenBars(model)[1].start[2], 3100, 1e-3);
}

TEST(SafSections, OneEccentricityCountsForBothEnds) {
  Saf saf;
  put(saf.members, "Eccentricity ez [mm]", "100", 2);
  EXPECT_NEAR(writtenBars(saf.read())[1].start[2], 3100, 1e-3);
}

TEST(SafSections, WithAnLcsAlongTheMemberStandUp) {
  Saf saf;
  saf.members[2][5] = "z by vector";
  saf.members[2][7] = "1";
  saf.members[2][9] = "0";
  const Model model = saf.read();
  ASSERT_THAT(briefs(model.found), ElementsAre("warning lcs-along-member"));
  EXPECT_EQ(model.found[0].cell, "StructuralCurveMember!F3");
  EXPECT_EQ(model.bars[1].angle, Saf{}.read().bars[1].angle);
  EXPECT_EQ(model.bars[1].quarterTurns, Saf{}.read().bars[1].quarterTurns);
}

// ---- members of several sections, ribs

TEST(SafVarying, BecomesABarForEachSection) {
  Saf saf;
  saf.sections.push_back({"CS2", "S235", "Parametric", "I rolled", "300; 100; 8; 6; 10"});
  put(saf.members, "Arbitrary definition", "AD1", 2);
  saf.others = {sheetOf("StructuralCurveMemberVarying",
                        {{"Name", "Cross sections 1", "Span 1", "Alignment 1", "Cross sections 2",
                          "Span 2", "Alignment 2"},
                         {"AD1", "CS1", "0.4", "Centre", "CS2,CS2", "0.6", "Centre"}})};
  const Model model = saf.read();
  EXPECT_EQ(model.barNames, (std::vector<std::string>{"B1", "B2.1", "B2.2"}));
  ASSERT_EQ(model.bars.size(), 3U);
  EXPECT_EQ(model.bars[1].section, 0);
  EXPECT_EQ(model.bars[2].section, 1);
  EXPECT_EQ(model.bars[1].end, model.bars[2].start);
  EXPECT_EQ(model.nodes[static_cast<std::size_t>(model.bars[1].end)],
            (std::array<float, 3>{2, 0, 3}));
  EXPECT_THAT(briefs(model.found), ElementsAre());
}

TEST(SafVarying, LeavesGradualChangesOutByName) {
  Saf saf;
  saf.sections.push_back({"CS2", "S235", "Parametric", "I rolled", "300; 100; 8; 6; 10"});
  put(saf.members, "Arbitrary definition", "AD1", 2);
  saf.others = {sheetOf("StructuralCurveMemberVarying",
                        {{"Name", "Cross sections 1", "Span 1"}, {"AD1", "CS1,CS2", "1"}})};
  const Model model = saf.read();
  EXPECT_EQ(model.barNames, (std::vector<std::string>{"B1"}));
  ASSERT_THAT(briefs(model.found), ElementsAre("warning left-out"));
  EXPECT_THAT(model.found[0].message, HasSubstr("B2"));
}

TEST(SafVarying, SpansMakeUpTheLength) {
  Saf saf;
  saf.others = {sheetOf("StructuralCurveMemberVarying",
                        {{"Name", "Cross sections 1", "Span 1"}, {"AD1", "CS1", "0.7"}})};
  EXPECT_EQ(saf.fault().cell, "StructuralCurveMemberVarying!A2");
}

TEST(SafVarying, ReadsSectionsThatAreNotCentredByTheirCentroids) {
  Saf saf;
  put(saf.members, "Arbitrary definition", "AD1", 2);
  saf.others = {
      sheetOf("StructuralCurveMemberVarying",
              {{"Name", "Cross sections 1", "Span 1", "Alignment 1", "Cross sections 2", "Span 2"},
               {"AD1", "CS1", "1", "Top", "", ""}})};
  const Model model = saf.read();
  EXPECT_EQ(model.barNames, (std::vector<std::string>{"B1", "B2"}));
  ASSERT_THAT(briefs(model.found), ElementsAre("warning not-moved"));
  EXPECT_THAT(model.found[0].message, HasSubstr("B2"));
}

TEST(SafRib, WithoutSlabsIsLeftOut) {
  Saf saf;
  saf.others = {sheetOf("StructuralCurveMemberRib",
                        {{"Name", "2D member", "Cross section", "Nodes", "Segments"},
                         {"R1", "S1", "CS1", "N1;N2", "Line"},
                         {"R2", "S1", "CS1", "N1;N2", "Circular arc"}})};
  const Model model = saf.read();
  EXPECT_EQ(model.bars.size(), 2U);
  EXPECT_THAT(briefs(model.found), ElementsAre("warning left-out", "warning left-out"));
}

TEST(SafRib, HangsUnderItsSlab) {
  Saf saf;
  saf.nodes = {{"Name", "Coordinate X", "Coordinate Y", "Coordinate Z"},
               {"N1", "0", "0", "3"},
               {"N2", "6", "0", "3"},
               {"N3", "6", "5", "3"},
               {"N4", "0", "5", "3"},
               {"N5", "0", "2", "3"},
               {"N6", "6", "2", "3"}};
  saf.members.resize(1);
  const auto rib = [&](const char* alignment) {
    saf.others = {
        sheetOf("StructuralCurveMemberRib", {{"Name", "2D member", "Cross section", "Nodes",
                                              "Segments", "Alignment", "Eccentricity ez [mm]"},
                                             {"R1", "S1", "CS1", "N5;N6", "Line", alignment, "0"}}),
        sheetOf("StructuralSurfaceMember",
                {{"Name", "Nodes", "Thickness [mm]"}, {"S1", "N1; N4; N3; N2", "160"}})};
    return saf.read();
  };
  EXPECT_EQ(barTypeNames[rib("Bottom").bars[0].type], "floor-beam");
  EXPECT_NEAR(writtenBars(rib("Bottom"))[0].start[2], 3000 - 80 - 100, 1e-3);
  EXPECT_NEAR(writtenBars(rib("Top"))[0].start[2], 3000 + 80 + 100, 1e-3);
  EXPECT_NEAR(writtenBars(rib("Centre"))[0].start[2], 3000, 1e-3);
  EXPECT_THAT(briefs(rib("Bottom").found), ElementsAre("note not-read"));
  saf.others[1].rows.pop_back();
  EXPECT_THAT(briefs(saf.read().found), ElementsAre("warning left-out"));
  saf.others[1] = sheetOf("StructuralSurfaceMember",  // without an area
                          {{"Name", "Nodes", "Thickness [mm]"}, {"S1", "N1; N2", "160"}});
  EXPECT_THAT(briefs(saf.read().found), testing::Contains("warning left-out"));
}

TEST(SafRib, SaysWhatDoesNotMoveIt) {
  Saf saf;
  saf.nodes.push_back({"N4", "5", "2", "3"});
  saf.nodes.push_back({"N5", "0", "2", "3"});
  put(saf.members, "Layer", "Frame");
  const auto rib = [&](const char* thickness, const char* eccentricity) {
    saf.others = {sheetOf("StructuralCurveMemberRib",
                          {{"Name", "2D member", "Cross section", "Nodes", "Segments", "Alignment",
                            "Eccentricity ez [mm]", "Layer"},
                           {"R1", "S1", "CS1", "N2;N3", "Line", "Bottom", eccentricity, "Slabs"},
                           {"R2", "S1", "CS1", "N2;N3", "Line", "Bottom", eccentricity, "Frame"}}),
                  sheetOf("StructuralSurfaceMember", {{"Name", "Nodes", "Thickness [mm]"},
                                                      {"S1", "N2; N3; N4; N5", thickness}})};
    return saf.read();
  };
  const Model model = rib("160", "30");
  EXPECT_EQ(model.layers, (std::vector<std::string>{"Frame", "Slabs"}));
  EXPECT_EQ(model.barLayers, (std::vector<std::int32_t>{0, 0, 1, 0}));
  EXPECT_THAT(briefs(model.found), testing::Contains("warning not-moved"));
  EXPECT_THAT(briefs(rib("160", "0").found), testing::Not(testing::Contains("warning not-moved")));
  EXPECT_THAT(briefs(rib("100|200", "0").found), testing::Contains("warning not-moved"))
      << "a slab of changing thickness";
}

// ---- the page

/// The tables of a page under headings of the third order, as sheets of those names.
std::vector<Sheet> sheetsOfPage(const std::string& page) {
  std::ifstream file(EXPORTIFC_SOURCE_FOLDER "/docs/" + page);
  EXPECT_TRUE(file.is_open()) << page;
  std::vector<Sheet> sheets;
  std::string name;
  std::vector<Line> lines;
  const auto finish = [&] {
    if (!name.empty() && !lines.empty()) {
      sheets.push_back(sheetOf(name, lines));
    }
    lines.clear();
  };
  for (std::string text; std::getline(file, text);) {
    if (text.starts_with("#")) {
      finish();
      name = text.starts_with("### ") ? text.substr(4) : std::string();
    } else if (text.starts_with("| ")) {
      Line& line = lines.emplace_back();
      for (std::size_t at = 1; at < text.size();) {
        const std::size_t end = text.find('|', at);
        const std::string cell = text.substr(at, end - at);
        const std::size_t first = cell.find_first_not_of(' ');
        line.push_back(first == std::string::npos
                           ? std::string()
                           : cell.substr(first, cell.find_last_not_of(' ') - first + 1));
        at = end + 1;
      }
    }
  }
  return sheets;
}

TEST(SafPage, ShowsAWholeWorkbook) {
  const Model model = readSafModel(Workbook(sheetsOfPage("saf.md")));
  EXPECT_THAT(briefs(checkModel(model, false)), ElementsAre());
  EXPECT_EQ(model.barNames, (std::vector<std::string>{"C1", "B1"}));
  EXPECT_EQ(model.sections[0].text, "HE 180 180 14 8.5");
  EXPECT_EQ(model.sections[1].text, "ILAM 300 150 10.7 7.1");
  EXPECT_EQ(model.materials[0].density, 7850);
  const std::vector<WrittenBar> bars = writtenBars(model);
  EXPECT_EQ(bars[0].start, (Vector{0, 0, 0}));
  EXPECT_EQ(bars[0].length, 3000);
  EXPECT_NEAR(bars[1].start[2], 2850, 1e-3);  // its top is on the line
  EXPECT_EQ(bars[1].length, 5000);
}

}  // namespace
}  // namespace exportifc
