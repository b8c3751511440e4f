// One frame as it lies in the files of tests/saf, which two_storey.py writes: as a SAF workbook, as
// tables and as a JSON model. All say the same; what it weighs is worked out by hand.
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "library/formats/format.h"
#include "library/formats/tables/tables.h"
#include "library/frame/model_check.h"
#include "library/frame/model_export.h"
#include "library/takeoff/takeoff.h"
#include "tests/library/library_test.h"
#include "tests/library/zip_bytes.h"
#include "tests/support/exchange_text.h"
#include "tests/support/sinks.h"

namespace exportifc {
namespace {

using test::briefs;
using testing::ElementsAre;
using testing::HasSubstr;

const std::string folder = EXPORTIFC_SOURCE_FOLDER "/tests/saf/";

std::string bytesOf(const std::string& name) {
  std::ifstream file(folder + name, std::ios::binary);
  EXPECT_TRUE(file.is_open()) << name;
  return {std::istreambuf_iterator<char>(file), {}};
}

/// A file, or a folder of tables, read as the program reads it.
Model modelIn(const std::string& name) {
  const bool isFolder = std::filesystem::is_directory(folder + name);
  const std::string bytes = !isFolder
                                ? bytesOf(name)
                                : test::zipOf({{"nodes.csv", bytesOf(name + "/nodes.csv")},
                                               {"sections.csv", bytesOf(name + "/sections.csv")},
                                               {"bars.csv", bytesOf(name + "/bars.csv")}});
  std::stringbuf file(bytes, std::ios::in);
  const std::string extension = isFolder ? ".zip" : name.substr(name.rfind('.'));
  return recognisedFormat(bytes.substr(0, 256), extension).read(file);
}

std::string exchangeText(const Model& model) {
  test::Received received;
  test::MemorySink sink(received);
  exportModel(model, false, sink, [](std::int32_t) { return true; });
  return test::maskGlobalIds(received.bytes);
}

// two_storey.py works the JSON model out by itself.
TEST(TwoStorey, IsTheSameExchangeFileFromEveryFormat) {
  const std::string json = exchangeText(modelIn("two_storey.json"));
  EXPECT_THAT(json, HasSubstr("2LLM_2"));
  const auto unread = ElementsAre("note not-read");
  for (const char* const name : {"two_storey.xlsx", "two_storey_saved_by_libreoffice.xlsx",
                                 "two_storey_tables.xlsx", "two_storey_tables"}) {
    const Model model = modelIn(name);
    EXPECT_TRUE(exchangeText(model) == json) << name;
    EXPECT_EQ(model.layers, (std::vector<std::string>{"Pavimento 1", "Pavimento 2", "Cobertura"}))
        << name;
    if (model.format == ModelFormat::saf) {  // it has supports, too
      EXPECT_THAT(briefs(checkModel(model, false)), unread) << name;
    } else {
      EXPECT_THAT(briefs(checkModel(model, false)), ElementsAre()) << name;
    }
  }
}

TEST(TwoStorey, HasItsProblemsInTheCellsOfTheWorkbook) {
  const auto cellOf = [](const std::string& name, ModelFormat format) {
    std::stringbuf file(bytesOf(name), std::ios::in);
    std::vector<Problem> problems{{.pointer = "/bars/2/section"}};
    formatOf(format).locate(&file, problems, {});
    EXPECT_EQ(problems.front().pointer, "");
    return problems.front().cell;
  };
  EXPECT_EQ(cellOf("two_storey.xlsx", ModelFormat::saf), "StructuralCurveMember!A4");
  EXPECT_EQ(cellOf("two_storey_tables.xlsx", ModelFormat::tables), "bars!D4");
  std::vector<Problem> problems{{.pointer = "/bars/2/section"}};
  formatOf(ModelFormat::saf).locate(nullptr, problems, {});  // the file is gone
  EXPECT_EQ(problems.front().cell, "");
}

TEST(TwoStorey, HasSupportsThatAreNotRead) {
  EXPECT_THAT(briefs(notRead(modelIn("two_storey.xlsx"))), ElementsAre("note not-read"));
  EXPECT_THAT(notRead(modelIn("two_storey_tables.xlsx")), ElementsAre());
}

// ---- the take-off by hand

struct ByHand {
  int bars, pieces;
  int lengthMm;
  double areaMm2, perimeterMm;  // of all pieces, without fillets
  int mass, paint;              // g, 0.001 m²
};

// Two storeys of 3 m on a plan of 6 m by 5 m; 7850 kg/m³; mass and paint are those of one bar,
// rounded to the gram and to 0.001 m², times the number of bars.
//
//   HEB 180    4 columns a storey: 8 of 3 m
//              A = 2*180*14 + (180 - 2*14)*8.5 = 5040 + 1292 = 6332 mm². Published are 65.25 cm²;
//              the fillets of 15 mm between are (4 - pi)*15² = 193 mm².
//              U = 2*180 + 4*180 - 2*8.5 = 1063 mm
//              6332e-6*7850*3 = 149.1186 kg; 1.063*3 = 3.189 m²
//   IPE 300    2 beams of 6 m and 2 of 5 m a storey: 4 and 4
//              A = 2*150*10.7 + (300 - 2*10.7)*7.1 = 3210 + 1978.06 = 5188.06 mm². Published are
//              53.81 cm²; the fillets of 15 mm are 193 mm².
//              U = 2*300 + 4*150 - 2*7.1 = 1185.8 mm
//              40.726271*6 = 244.3576 kg, *5 = 203.6314 kg; 7.1148 m², 5.929 m²
//   2L 75x8    2 braces a storey: 4 of sqrt(5² + 3²) m = 5831 mm, 8 angles
//              A = 2 * 8*(2*75 - 8) = 2272 mm². Published are 2 * 11.5 cm²: the root adds what the
//              toes take off.
//              U = 2 * 4*75 = 600 mm
//              2272e-6*7850*5.831 = 103.9971 kg; 0.6*5.831 = 3.4986 m²
//   C 200x75   3 purlins of 5 m
//              A = 200*2 + 2*73*2 + 2*18*2 = 764 mm²
//              U = (200 + 2*75 + 2*20) + (196 + 2*71 + 2*18) + 2*2 = 768 mm
//              764e-6*7850*5 = 29.987 kg; 0.768*5 = 3.84 m²
const std::map<std::string, ByHand> byHand = {
    {"Pilar", {8, 8, 8 * 3000, 6332, 1063, 8 * 149119, 8 * 3189}},
    {"Viga",
     {8, 8, 4 * 6000 + 4 * 5000, 5188.06, 1185.8, 4 * 244358 + 4 * 203631, 4 * 7115 + 4 * 5929}},
    {"Contraventamento", {4, 8, 4 * 5831, 2272, 600, 4 * 103997, 4 * 3499}},
    {"Ter\xC3\xA7"
     "a",
     {3, 3, 3 * 5000, 764, 768, 3 * 29987, 3 * 3840}},
};

TEST(TwoStorey, WeighsWhatAHandCalculationSays) {
  for (const char* const name :
       {"two_storey.xlsx", "two_storey_tables.xlsx", "two_storey_tables", "two_storey.json"}) {
    SCOPED_TRACE(name);
    const Model model = modelIn(name);
    const Takeoff takeoff = takeoffOf(model, {});
    ASSERT_EQ(takeoff.sections.size(), byHand.size());
    for (const SectionTakeoff& row : takeoff.sections) {
      const std::string& section = model.sections[static_cast<std::size_t>(row.section)].name;
      const ByHand& hand = byHand.at(section);
      EXPECT_EQ(row.sum.bars, hand.bars) << section;
      EXPECT_EQ(row.sum.pieces, hand.pieces) << section;
      EXPECT_EQ(row.sum.length, hand.lengthMm) << section;
      EXPECT_NEAR(row.area, hand.areaMm2, 1e-3) << section;
      EXPECT_NEAR(row.perimeter, hand.perimeterMm, 1e-3) << section;
      EXPECT_EQ(row.sum.mass, hand.mass) << section;
      EXPECT_EQ(row.sum.paint, hand.paint) << section;
    }
    // 24 + 44 + 23.324 + 15 m; 1192.952 + 1791.956 + 415.988 + 89.961 kg; 25.512 + 52.176 + 13.996
    // + 11.520 m².
    EXPECT_EQ(takeoff.total.bars, 23);
    EXPECT_EQ(takeoff.total.pieces, 27);
    EXPECT_EQ(takeoff.total.length, 106'324);
    EXPECT_EQ(takeoff.total.mass, 3'490'857);
    EXPECT_EQ(takeoff.total.paint, 103'204);
    EXPECT_EQ(takeoff.total.shortest, 3000);
    EXPECT_EQ(takeoff.total.longest, 6000);
  }
}

TEST(TwoStorey, HasItsCutsGroupsAndLayers) {
  const Model model = modelIn("two_storey_tables");
  const Takeoff takeoff = takeoffOf(model, {});
  std::vector<std::string> cuts;
  for (const CutLength& cut : takeoff.cuts) {
    cuts.push_back(model.sections[static_cast<std::size_t>(cut.section)].name + " " +
                   std::to_string(cut.sum.bars) + " x " + std::to_string(cut.sum.longest));
  }
  EXPECT_THAT(cuts, ElementsAre("Pilar 8 x 3000", "Viga 4 x 6000", "Viga 4 x 5000",
                                "Contraventamento 4 x 5831",
                                "Ter\xC3\xA7"
                                "a 3 x 5000"));
  // Columns and beams are frames; braces and purlins stand by themselves.
  ASSERT_EQ(takeoff.groups.size(), 2U);
  for (const GroupTakeoff& group : takeoff.groups) {
    const bool isFrame = group.group == BarGroup::frame;
    EXPECT_EQ(group.sum.bars, isFrame ? 16 : 7);
    EXPECT_EQ(group.sum.mass, isFrame ? 1192952 + 1791956 : 415988 + 89961);
  }
  // Of each storey a half of columns, beams and braces; the purlins are the roof.
  ASSERT_EQ(takeoff.layers.size(), 3U);
  EXPECT_EQ(takeoff.layers[0].sum.mass, (1192952 + 1791956 + 415988) / 2);
  EXPECT_EQ(takeoff.layers[1].sum.mass, takeoff.layers[0].sum.mass);
  EXPECT_EQ(takeoff.layers[2].sum.mass, 89961);
}

}  // namespace
}  // namespace exportifc
