#include "library/takeoff/takeoff.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <numbers>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "library/frame/text_sink.h"
#include "library/sections/section_figures.h"
#include "library/takeoff/takeoff_tables.h"
#include "library/workbook/workbook.h"
#include "library/workbook/workbook_writer.h"
#include "tests/library/library_test.h"
#include "tests/support/sinks.h"

namespace exportifc {
namespace {

using test::InLanguage;
using test::sectionOf;
using test::soundModel;

// ---- areas and outlines

SectionFigures figures(const std::string& text) {
  const ModelSection section = sectionOf(text);
  const Family* const family = findFamilyWord(text.substr(0, text.find(' ')));
  return family == nullptr ? SectionFigures{} : figuresOf(*family, section.dims);
}

TEST(SectionFigures, OfAnIShape) {
  const SectionFigures found = figures("W 200 100 8 6");
  EXPECT_DOUBLE_EQ(found.area, 2 * 100 * 8 + 184 * 6);
  EXPECT_DOUBLE_EQ(found.perimeter, 2 * 200 + 4 * 100 - 2 * 6);
  EXPECT_EQ(found.pieces, 1);
}

TEST(SectionFigures, OfBothHalvesTogether) {
  const SectionFigures found = figures("2L 75 75 8 8 10");
  EXPECT_DOUBLE_EQ(found.area, 2 * 8 * (2 * 75 - 8));
  EXPECT_DOUBLE_EQ(found.perimeter, 2 * 4 * 75);
  EXPECT_EQ(found.pieces, 2);
}

TEST(SectionFigures, OfCirclesExactly) {
  const SectionFigures solid = figures("RED 20");
  EXPECT_DOUBLE_EQ(solid.area, std::numbers::pi * 100);
  EXPECT_DOUBLE_EQ(solid.perimeter, std::numbers::pi * 20);
  const SectionFigures pipe = figures("TUBO 100 0 0 5");
  EXPECT_DOUBLE_EQ(pipe.area, std::numbers::pi * (50 * 50 - 45 * 45));
  EXPECT_DOUBLE_EQ(pipe.perimeter, std::numbers::pi * 100) << "no paint inside";
}

TEST(SectionFigures, OfClosedBoxesFromOutside) {
  const SectionFigures box = figures("BOX 150 90 0 5");
  EXPECT_DOUBLE_EQ(box.area, 150 * 90 - 140 * 80);
  EXPECT_DOUBLE_EQ(box.perimeter, 2 * (150 + 90));
  const SectionFigures welded = figures("PC 400 250 12 8 180");
  EXPECT_DOUBLE_EQ(welded.area, 2 * 250 * 12 + 2 * 8 * 376);
  EXPECT_DOUBLE_EQ(welded.perimeter, 2 * 250 + 4 * 12 + 2 * 70 + 2 * 376);
}

TEST(SectionFigures, NoneWhereNothingIsDrawn) {
  EXPECT_EQ(figures("2L_ASSIMETRICO 100 75 8 8 10").pieces, 0);
  EXPECT_EQ(figures("W").pieces, 0);
  EXPECT_EQ(figures("BOX 10 10 0 -5").pieces, 0);
}

// ---- sums

ModelBar bar(std::int32_t start, std::int32_t end, std::int32_t section, std::uint8_t type = 0) {
  return {.start = start, .end = end, .section = section, .type = type};
}

/// Bars of "RED 20" of these lengths in millimetres, each from the origin.
Model rods(std::initializer_list<float> lengths) {
  Model model;
  model.unitCode = EXPORTIFC_MILLIMETRES;
  model.nodes = {{0, 0, 0}};
  model.sections = {sectionOf("RED 20")};
  for (const float length : lengths) {
    model.nodes.push_back({length, 0, 0});
    model.bars.push_back(bar(0, static_cast<std::int32_t>(model.nodes.size()) - 1, 0));
  }
  return model;
}

constexpr double redMass = std::numbers::pi * 1e-4 * steelDensity;  // kg/m

TEST(Takeoff, WeighsEachBarToTheGram) {
  const Takeoff takeoff = takeoffOf(rods({1000, 1000.4F, 1999.5F}), {});
  EXPECT_EQ(takeoff.total.bars, 3);
  EXPECT_EQ(takeoff.total.length, 4000);
  EXPECT_EQ(takeoff.total.mass, 2 * std::llround(redMass * 1000) + std::llround(redMass * 2000));
  EXPECT_EQ(takeoff.total.paint, 2 * 63 + 126) << "62.8 and 125.7 thousandths of a square metre";
  EXPECT_EQ(takeoff.total.shortest, 1000);
  EXPECT_EQ(takeoff.total.longest, 2000);
}

TEST(Takeoff, TakesTheUnitOfTheModel) {
  Model model = rods({3});
  model.unitCode = EXPORTIFC_METRES;
  EXPECT_EQ(takeoffOf(model, {}).total.length, 3000);
}

TEST(Takeoff, CutListHasTheLongestFirst) {
  const Takeoff takeoff = takeoffOf(rods({500, 2000, 500.3F}), {});
  ASSERT_EQ(takeoff.cuts.size(), 2U);
  EXPECT_EQ(takeoff.cuts[0].sum.longest, 2000);
  EXPECT_EQ(takeoff.cuts[0].sum.bars, 1);
  EXPECT_EQ(takeoff.cuts[1].sum.longest, 500);
  EXPECT_EQ(takeoff.cuts[1].sum.bars, 2);
}

TEST(Takeoff, LeavesOutWhatAnExportLeavesOut) {
  Model model = rods({1000, 2000, 4000, 8000});
  model.bars[0].visible = false;
  model.bars[1].type = EXPORTIFC_NOT_EXPORTED;
  model.sections.push_back(sectionOf("RED 20 " + std::string(41, '0')));  // too long for a record
  model.bars[2].section = 1;
  EXPECT_EQ(takeoffOf(model, {}).total.length, 9000);
  EXPECT_EQ(takeoffOf(model, {.visibleOnly = true}).total.length, 8000);
  EXPECT_EQ(takeoffOf(model, {}).sections.size(), 1U);
}

TEST(Takeoff, DensityIsTheCallersThenTheMaterialsThenSteels) {
  Model model = rods({1000});
  EXPECT_DOUBLE_EQ(takeoffOf(model, {}).sections[0].density, 7850);
  model.materials = {{.name = "A36"}, {.name = "6061", .density = 2700}};
  model.sections[0].material = 0;
  EXPECT_DOUBLE_EQ(takeoffOf(model, {}).sections[0].density, 7850) << "it says none";
  model.sections[0].material = 1;
  EXPECT_DOUBLE_EQ(takeoffOf(model, {}).sections[0].density, 2700);
  EXPECT_EQ(takeoffOf(model, {.density = 2000}).total.mass,
            std::llround(std::numbers::pi * 1e-4 * 2000 * 1000));
}

TEST(Takeoff, GroupsAreThoseOfTheFile) {
  Model model = rods({1000, 2000, 4000, 8000});
  model.bars[0].type = EXPORTIFC_COLUMN;
  model.bars[1].type = EXPORTIFC_TRUSS_WEB;
  model.bars[2].type = EXPORTIFC_BRACING;
  model.bars[3].type = EXPORTIFC_FRAME_BEAM;
  const Takeoff takeoff = takeoffOf(model, {});
  ASSERT_EQ(takeoff.groups.size(), 3U);
  EXPECT_EQ(takeoff.groups[0].sum.length, 4000);
  EXPECT_EQ(takeoff.groups[1].sum.length, 9000);
  EXPECT_EQ(takeoff.groups[2].sum.length, 2000);
  model.bars.pop_back();
  model.bars.front().type = EXPORTIFC_MEMBER;
  EXPECT_EQ(takeoffOf(model, {}).groups.size(), 2U) << "only those with bars";
}

TEST(Takeoff, LayersHaveTheirBarsAndTheRestStandsFirst) {
  Model model = rods({1000, 2000, 4000});
  EXPECT_TRUE(takeoffOf(model, {}).layers.empty());
  model.layers = {"roof", "empty", "walls"};
  model.barLayers = {2, -1, 0};
  const Takeoff takeoff = takeoffOf(model, {});
  ASSERT_EQ(takeoff.layers.size(), 3U);
  EXPECT_EQ(takeoff.layers[0].layer, -1);
  EXPECT_EQ(takeoff.layers[0].sum.length, 2000);
  EXPECT_EQ(takeoff.layers[1].layer, 0);
  EXPECT_EQ(takeoff.layers[1].sum.length, 4000);
  EXPECT_EQ(takeoff.layers[2].layer, 2);
}

/// Three sections, one of them not drawn, with names, materials and layers that need care in lists.
Model mixedModel() {
  Model model = soundModel();
  model.sections.push_back(sectionOf("NADA 1 2"));
  model.sections[0].name = "=pilar; \"A\"";
  model.materials = {{.name = "A36"}};
  model.sections[0].material = 0;
  model.bars.push_back(bar(0, 2, 2));
  model.layers = {"térreo"};
  model.barLayers = {0, -1, -1};
  return model;
}

TEST(Takeoff, ASectionThatIsNotDrawnHasNoMass) {
  const Takeoff takeoff = takeoffOf(mixedModel(), {});
  ASSERT_EQ(takeoff.sections.size(), 3U);
  EXPECT_TRUE(takeoff.sections[0].isDrawn);
  EXPECT_FALSE(takeoff.sections[2].isDrawn);
  EXPECT_EQ(takeoff.sections[2].sum.mass, 0);
  EXPECT_EQ(takeoff.sections[2].sum.bars, 1);
}

// ---- tables

std::vector<TakeoffTable> tables(const Model& model) {
  return takeoffTables(model, takeoffOf(model, {}));
}

TEST(TakeoffTables, TotalsAreTheSumsOfTheirRows) {
  for (const TakeoffTable& table : tables(mixedModel())) {
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
      const auto* const total = std::get_if<std::int64_t>(&table.total[i]);
      const auto key = table.columns[i].key;
      if (total == nullptr || key == "shortestMm" || key == "longestMm") {
        continue;
      }
      std::int64_t sum = 0;
      for (const auto& row : table.rows) {
        const auto* const value = std::get_if<std::int64_t>(&row[i]);
        sum += value == nullptr ? 0 : *value;
      }
      EXPECT_EQ(sum, *total) << table.key << " " << key;
    }
  }
}

TEST(TakeoffTables, OnlyThoseWithRows) {
  std::vector<std::string> keys;
  for (const TakeoffTable& table : tables(soundModel())) {
    keys.emplace_back(table.key);
  }
  EXPECT_EQ(keys, (std::vector<std::string>{"sections", "groups", "cuts"}));
  EXPECT_TRUE(tables(Model{}).empty());
}

TEST(TakeoffTables, PlainNumbers) {
  EXPECT_EQ(plainNumber(0, 0), "0");
  EXPECT_EQ(plainNumber(7, 3), "0.007");
  EXPECT_EQ(plainNumber(1234, 3), "1.234");
  EXPECT_EQ(plainNumber(123456, 2), "1234.56");
}

std::string csvOf(const Model& model) {
  test::Received received;
  test::MemorySink sink(received);
  auto all = tables(model);
  for (TakeoffTable& table : all) {
    keepColumnsForPeople(table);
  }
  writeTakeoffCsv(all, sink);
  return received.bytes;
}

TEST(TakeoffTables, CsvOfEachLanguage) {
  Model model = soundModel();
  model.bars.pop_back();
  EXPECT_EQ(csvOf(model),
            "Sections\r\n"
            "section,bars,pieces,length [m],area [cm²],mass [kg/m],mass [kg],paint [m²/m],"
            "paint [m²],shortest [mm],longest [mm]\r\n"
            "W 200 100 8 6,1,1,3.000,27.04,21.226,63.679,0.788,2.364,3000,3000\r\n"
            "Total,1,1,3.000,,,63.679,,2.364,3000,3000\r\n\r\n"
            "Groups\r\n"
            "group,bars,pieces,length [m],mass [kg],paint [m²]\r\n"
            "in no assembly,1,1,3.000,63.679,2.364\r\n"
            "Total,1,1,3.000,63.679,2.364\r\n\r\n"
            "Cut list\r\n"
            "section,cut length [mm],bars,pieces,length [m],mass [kg]\r\n"
            "W 200 100 8 6,3000,1,1,3.000,63.679\r\n"
            "Total,,1,1,3.000,63.679\r\n");
  const InLanguage portuguese(Language::portuguese);
  EXPECT_NE(csvOf(model).find("W 200 100 8 6;1;1;3,000;27,04;21,226;63,679;0,788;2,364;3000;3000"),
            std::string::npos);
}

TEST(TakeoffTables, CsvHasNoFormulaAndQuotesWhatSeparates) {
  const std::string csv = csvOf(mixedModel());
  EXPECT_NE(csv.find("\r\n\"'=pilar; \"\"A\"\"\",W 200 100 8 6,A36,1,"), std::string::npos);
  EXPECT_NE(csv.find("\r\nNADA 1 2,NADA 1 2,,1,1,"), std::string::npos);
  EXPECT_NE(csv.find("\r\n(no layer),2,"), std::string::npos);
}

TEST(TakeoffTables, SheetsHaveNumbersAsNumbers) {
  Model model = soundModel();
  model.sections[0].name = "=1+1";
  std::vector<TakeoffTable> tables = takeoffTables(model, takeoffOf(model, {}));
  std::for_each(tables.begin(), tables.end(), keepColumnsForPeople);
  std::string bytes;
  TextSink sink(bytes);
  ASSERT_TRUE(writeWorkbook(takeoffSheets(tables), sink));
  std::stringbuf file(bytes, std::ios::in);
  const Workbook book(file);
  ASSERT_EQ(book.sheetNames().size(), tables.size());
  for (const TakeoffTable& table : tables) {
    const Sheet& sheet = book.sheet(table.title);
    ASSERT_EQ(sheet.rows.size(), table.rows.size() + 2) << "headings and totals, too";
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
      const auto column = static_cast<std::int32_t>(i);
      EXPECT_EQ(cellAt(sheet.rows.front(), column)->text, table.columns[i].title);
      double sum = 0.0;
      for (std::size_t row = 0; row < table.rows.size() && !table.columns[i].isText; ++row) {
        const Cell* const cell = cellAt(sheet.rows[row + 1], column);
        ASSERT_EQ(cell->kind, Cell::Kind::number) << table.columns[i].title;
        sum += cell->number;
      }
      if (table.columns[i].key == "massKg") {
        EXPECT_NEAR(cellAt(sheet.rows.back(), column)->number, sum, 1e-9);
      }
    }
  }
  EXPECT_EQ(cellAt(book.sheet(tables.front().title).rows[1], 0)->text, "=1+1");
}

TEST(TakeoffTables, LinesStandBelowOneAnother) {
  auto all = tables(mixedModel());
  keepColumnsForPeople(all[2]);
  const std::vector<std::string> lines = takeoffLines(all[2]);
  ASSERT_EQ(lines.size(), 4U);
  EXPECT_EQ(lines[0], "layer       bars  pieces  length [m]  mass [kg]  paint [m²]");
  EXPECT_EQ(lines[2].substr(0, 17), "térreo         1");
}

TEST(TakeoffTables, LinesHaveADashForAFigureThatIsNone) {
  auto all = tables(mixedModel());
  const std::vector<std::string> lines = takeoffLines(all[0]);
  ASSERT_EQ(lines.size(), 5U);
  EXPECT_EQ(lines[3].substr(0, 8), "NADA 1 2");
  EXPECT_EQ(std::count(lines[3].begin(), lines[3].end(), '-'), 5) << lines[3];
  EXPECT_EQ(std::count(lines[4].begin(), lines[4].end(), '-'), 3) << lines[4];
}

TEST(TakeoffTables, JsonHasKeysThatKnowNoLanguage) {
  const InLanguage portuguese(Language::portuguese);
  const auto json = nlohmann::json::parse(takeoffJson(tables(mixedModel())).text());
  EXPECT_EQ(json["sections"][0]["section"], "=pilar; \"A\"");
  EXPECT_EQ(json["sections"][0]["material"], "A36");
  EXPECT_EQ(json["sections"][0]["massKg"], 63.679);
  EXPECT_FALSE(json["sections"][2].contains("massKg")) << "not drawn";
  EXPECT_EQ(json["total"]["bars"], 3);
  EXPECT_FALSE(json["total"].contains("section"));
  EXPECT_EQ(json["groups"][0]["group"], "direct");
  EXPECT_EQ(json["layers"].size(), 2U);
  EXPECT_EQ(json["cuts"].size(), 3U);
}

}  // namespace
}  // namespace exportifc
