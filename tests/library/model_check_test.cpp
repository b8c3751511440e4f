#include "library/frame/model_check.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/library/library_test.h"

namespace exportifc {
namespace {

using test::all;
using test::brief;
using test::briefs;
using test::InLanguage;
using test::problemWith;
using test::sectionOf;
using test::soundModel;
using test::visibleOnly;

using Briefs = std::vector<std::string>;

ModelSection undefined(const std::string& name) {
  return {.name = name, .text = {}, .defined = false};
}

TEST(CheckModel, HasNothingToSayOfASoundOne) {
  EXPECT_EQ(briefs(checkModel(soundModel(), all)), Briefs());
  EXPECT_EQ(briefs(checkModel(soundModel(), visibleOnly)), Briefs());
}

// ---- which bars count

TEST(IsExported, LeavesOutATypeAndWhatIsHidden) {
  for (std::uint8_t type = 0; type < barTypeCount; ++type) {
    EXPECT_EQ(isExported({.type = type}, all), type != 10) << int{type};
    EXPECT_EQ(isExported({.type = type, .visible = false}, all), type != 10) << int{type};
    EXPECT_EQ(isExported({.type = type}, visibleOnly), type != 10) << int{type};
    EXPECT_FALSE(isExported({.type = type, .visible = false}, visibleOnly)) << int{type};
  }
}

// ---- references

TEST(CheckReferences, NamesANodeThatIsNotThere) {
  Model model = soundModel();
  model.bars[1].end = 3;
  const auto problems = checkReferences(model);
  ASSERT_EQ(briefs(problems), Briefs({"error node-index"}));
  EXPECT_EQ(problems[0].message, "node 3 does not exist; the model has the nodes 0 to 2");
  EXPECT_EQ(problems[0].pointer, "/bars/1/nodes/1");
  EXPECT_EQ(problems[0].value, "3");
  EXPECT_EQ(problems[0].bars, 1);
  EXPECT_EQ(problems[0].firstBar, 1);
}

TEST(CheckReferences, NamesEachNodeOnceForAllBars) {
  Model model = soundModel();
  model.bars = {{.start = 0, .end = 1},
                {.start = -1, .end = 7},
                {.start = 7, .end = -1},
                {.start = 7, .end = 7},
                {.start = 7, .end = 0}};
  const auto problems = checkReferences(model);
  ASSERT_EQ(briefs(problems), Briefs({"error node-index", "error node-index"}));
  EXPECT_EQ(problems[0].value, "-1");
  EXPECT_EQ(problems[0].pointer, "/bars/1/nodes/0");
  EXPECT_EQ(problems[0].bars, 2);
  EXPECT_EQ(problems[1].value, "7");
  EXPECT_EQ(problems[1].pointer, "/bars/1/nodes/1");
  EXPECT_EQ(problems[1].bars, 4);
  EXPECT_EQ(problems[1].firstBar, 1);
}

TEST(CheckReferences, TheFirstAndTheLastNodeAreThere) {
  Model model = soundModel();
  model.bars = {{.start = 0, .end = 2}};
  EXPECT_EQ(briefs(checkReferences(model)), Briefs());
  model.nodes.clear();
  const auto problems = checkReferences(model);
  ASSERT_EQ(briefs(problems), Briefs({"error node-index", "error node-index"}));
  EXPECT_EQ(problems[0].message, "node 0 does not exist; the model has no nodes");
}

TEST(CheckReferences, NamesASectionThatIsNotDefined) {
  Model model = soundModel();
  model.sections.push_back(undefined("pilar"));
  model.bars.push_back({.start = 0, .end = 1, .section = 2});
  model.bars.push_back({.start = 1, .end = 2, .section = 2});
  const auto problems = checkReferences(model);
  ASSERT_EQ(briefs(problems), Briefs({"error unknown-section"}));
  EXPECT_EQ(problems[0].message,
            "section \"pilar\" is not defined; allowed: W 200 100 8 6, EC 80 0 0 12");
  EXPECT_EQ(problems[0].pointer, "/bars/2/section");
  EXPECT_EQ(problems[0].value, "pilar");
  EXPECT_EQ(problems[0].allowed, "W 200 100 8 6, EC 80 0 0 12");
  EXPECT_EQ(problems[0].suggestion, "");
  EXPECT_EQ(problems[0].section, 2);
  EXPECT_EQ(problems[0].bars, 2);
  EXPECT_EQ(problems[0].firstBar, 2);
}

TEST(CheckReferences, AsksForTheSectionThatWasProbablyMeant) {
  Model model = soundModel();
  model.sections[0].name = "pilar";
  model.sections.push_back(undefined("Piler"));
  model.bars.push_back({.start = 0, .end = 1, .section = 2});
  const auto problems = checkReferences(model);
  ASSERT_EQ(briefs(problems), Briefs({"error unknown-section"}));
  EXPECT_EQ(problems[0].message, "section \"Piler\" is not defined; did you mean pilar?");
  EXPECT_EQ(problems[0].suggestion, "pilar");
}

TEST(CheckReferences, NamesAMaterialThatIsNotDefinedOnce) {
  Model model = soundModel();
  model.materials = {{.name = "S355", .density = 7850, .defined = true},
                     {.name = "S335", .defined = false},
                     {.name = "wood", .defined = false},
                     {.name = "steel", .defined = false}};  // which no section names
  model.sections[0].material = 1;
  model.sections[1].material = 1;
  model.sections.push_back(sectionOf("RED 20"));
  model.sections[2].material = 2;
  const auto problems = checkReferences(model);
  ASSERT_EQ(briefs(problems), Briefs({"error unknown-material", "error unknown-material"}));
  EXPECT_EQ(problems[0].message, "material \"S335\" is not defined; did you mean S355?");
  EXPECT_EQ(problems[0].pointer, "/sections/W 200 100 8 6/material");
  EXPECT_EQ(problems[0].value, "S335");
  EXPECT_EQ(problems[0].suggestion, "S355");
  EXPECT_EQ(problems[0].section, 0);
  EXPECT_EQ(problems[1].message, "material \"wood\" is not defined; allowed: S355");
  EXPECT_EQ(problems[1].allowed, "S355");
  EXPECT_EQ(problems[1].section, 2);
}

TEST(CheckReferences, ListsAFewSectionsButNotMany) {
  Model model = soundModel();
  model.sections = {undefined("x")};
  model.bars = {{.start = 0, .end = 1}};
  EXPECT_EQ(checkReferences(model)[0].message, "section \"x\" is not defined");
  for (const char name : std::string("ABCDEFGHIJ")) {
    model.sections.push_back(sectionOf(std::string(3, name)));
  }
  EXPECT_EQ(checkReferences(model)[0].message,
            "section \"x\" is not defined; allowed: AAA, BBB, CCC, DDD, EEE, FFF, GGG, HHH, III, "
            "JJJ");
  model.sections.push_back(sectionOf("KKK"));
  EXPECT_EQ(checkReferences(model)[0].message, "section \"x\" is not defined");
  EXPECT_EQ(checkReferences(model)[0].allowed, "");
}

TEST(CheckReferences, GuessesOfManyUnknownNamesTheFirst) {
  Model model = soundModel();
  model.sections[0].name = "pilar";
  model.bars.clear();
  for (int i = 0; i < 21; ++i) {
    model.bars.push_back(
        {.start = 0, .end = 1, .section = static_cast<std::int32_t>(model.sections.size())});
    model.sections.push_back(undefined("pilar" + std::string(1, static_cast<char>('a' + i))));
  }
  const auto problems = checkReferences(model);
  ASSERT_EQ(problems.size(), 21U);
  EXPECT_EQ(problems[19].suggestion, "pilar");
  EXPECT_EQ(problems[20].suggestion, "");
}

// ---- characters

TEST(CheckCharacters, NamesTheFirstThatTheFileCannotHold) {
  Model model = soundModel();
  model.sections[1].text = "EC 80 0 0 12 é ç";
  model.sections[1].name = "a/b";
  const auto problems = checkCharacters(model, all);
  ASSERT_EQ(briefs(problems), Briefs({"error unwritable-character"}));
  EXPECT_EQ(problems[0].message,
            "section \"EC 80 0 0 12 é ç\" has the character \"é\", which the file cannot hold: it "
            "would end there. Rename the section, or use --transliterate to write \"EC 80 0 0 12 e "
            "c\"");
  EXPECT_EQ(problems[0].pointer, "/sections/a~1b/text");
  EXPECT_EQ(problems[0].value, "é");
  EXPECT_EQ(problems[0].suggestion, "EC 80 0 0 12 e c");
  EXPECT_EQ(problems[0].section, 1);
  EXPECT_EQ(problems[0].bars, 1);
  EXPECT_EQ(problems[0].firstBar, 1);
}

TEST(CheckCharacters, OfBarsThatAreExported) {
  Model model = soundModel();
  model.sections[0].text = "W é";
  model.bars[0].visible = false;
  EXPECT_EQ(briefs(checkCharacters(model, all)), Briefs({"error unwritable-character"}));
  EXPECT_EQ(briefs(checkCharacters(model, visibleOnly)), Briefs());
  model.bars[0].type = 10;
  EXPECT_EQ(briefs(checkCharacters(model, all)), Briefs());
}

TEST(Transliterate, WritesEverySectionInPlainLetters) {
  Model model = soundModel();
  model.sections[0].text = "W é";
  model.sections[1].text = "EC ø";
  model.sections[1].name = "viga ø";
  transliterate(model);
  EXPECT_EQ(model.sections[0].text, "W e");
  EXPECT_EQ(model.sections[1].text, "EC o");
  EXPECT_EQ(model.sections[1].name, "viga ø");
}

// ---- sections

TEST(CheckModel, LooksAtTheSectionsOfExportedBars) {
  Model model = soundModel();
  model.sections[0].text = "W 200";
  model.sections[0].dims = {200};
  model.sections[0].name = "pilar";
  model.bars.push_back({.start = 0, .end = 2, .section = 0, .visible = false});
  auto problems = checkModel(model, all);
  ASSERT_EQ(problems.size(), 3U);
  EXPECT_EQ(brief(problems[0]), "error missing-dimension d1");
  EXPECT_EQ(problems[0].pointer, "/sections/pilar/text");
  EXPECT_EQ(problems[0].section, 0);
  EXPECT_EQ(problems[0].bars, 2);
  EXPECT_EQ(problems[0].firstBar, 0);
  EXPECT_EQ(checkModel(model, visibleOnly)[0].bars, 1);
  model.bars[0].visible = false;
  EXPECT_EQ(briefs(checkModel(model, visibleOnly)), Briefs());
}

TEST(CheckModel, OfBarsThatDoNotStandWhereTheyShouldSaysNothingMore) {
  Model model = soundModel();
  model.sections[1].text = "nada";
  model.bars.push_back({.start = 2, .end = 2, .section = 0});
  EXPECT_EQ(briefs(checkModel(model, all)),
            Briefs({"error unknown-family", "warning zero-length"}));
  model.soundBars = 2;
  EXPECT_EQ(briefs(checkModel(model, all)), Briefs({"error unknown-family"}));
  model.soundBars = 1;
  EXPECT_EQ(briefs(checkModel(model, all)), Briefs());
}

// ---- bars

TEST(CheckModel, NamesBarsWithoutLength) {
  Model model = soundModel();
  model.nodes.push_back({5000, 0, 3000.0098F});
  model.nodes.push_back({5000, 0, 3000.0105F});
  model.bars.push_back({.start = 2, .end = 4});  // over 0.01 mm,
  EXPECT_EQ(briefs(checkModel(model, all)), Briefs());
  model.bars.push_back({.start = 2, .end = 3});  // and under it
  model.bars.push_back({.start = 1, .end = 1});
  const auto problems = checkModel(model, all);
  ASSERT_EQ(briefs(problems), Briefs({"warning zero-length"}));
  EXPECT_EQ(problems[0].message, "the bar has no length (less than 0.01 mm)");
  EXPECT_EQ(problems[0].pointer, "/bars/3");
  EXPECT_EQ(problems[0].bars, 2);
  EXPECT_EQ(problems[0].firstBar, 3);
}

TEST(CheckModel, MeasuresInTheUnitOfTheModel) {
  Model model = soundModel();
  model.nodes.push_back({0, 0, 0.00002F});
  model.bars.push_back({.start = 0, .end = 3});
  for (const std::int32_t unit : {1, 2, -1}) {
    model.unitCode = unit;
    EXPECT_EQ(briefs(checkModel(model, all)), Briefs({"warning zero-length"})) << unit;
  }
  model.unitCode = 0;  // 0.02 mm
  EXPECT_EQ(briefs(checkModel(model, all)), Briefs());
}

TEST(CheckModel, MeasuresAlongEachAxis) {
  for (std::size_t axis = 0; axis < 3; ++axis) {
    Model model = soundModel();
    std::array<float, 3> node = model.nodes[2];
    node[axis] += 1;
    model.nodes.push_back(node);
    model.bars.push_back({.start = 2, .end = 3});
    EXPECT_EQ(briefs(checkModel(model, all)), Briefs()) << axis;
  }
}

TEST(CheckModel, NamesBarsBeyondAllNumbers) {
  constexpr float infinity = std::numeric_limits<float>::infinity();
  for (std::size_t axis = 0; axis < 3; ++axis) {
    Model model = soundModel();
    model.nodes[2][axis] = -infinity;
    const auto problems = checkModel(model, all);
    ASSERT_EQ(briefs(problems), Briefs({"error not-finite"}));
    EXPECT_EQ(problems[0].message, "a coordinate or the angle is not a finite number");
    EXPECT_EQ(problems[0].pointer, "/bars/1");
    EXPECT_EQ(problems[0].firstBar, 1);
    EXPECT_EQ(problems[0].bars, 1);
  }
  for (const float angle : {infinity, std::nanf("")}) {
    Model model = soundModel();
    model.bars[0].angle = angle;
    EXPECT_EQ(briefs(checkModel(model, all)), Briefs({"error not-finite"}));
  }
}

TEST(CheckModel, OfBarsLooksAtThoseThatAreExported) {
  Model model = soundModel();
  model.bars.push_back({.start = 1, .end = 1, .visible = false});
  EXPECT_EQ(briefs(checkModel(model, all)), Briefs({"warning zero-length"}));
  EXPECT_EQ(briefs(checkModel(model, visibleOnly)), Briefs());
}

TEST(CheckModel, OfABarWithoutItsNodesSaysThatAlone) {
  Model model = soundModel();
  model.bars.push_back({.start = 9, .end = 9});
  EXPECT_EQ(briefs(checkModel(model, all)), Briefs({"error node-index"}));
  model.bars.back() = {.start = 1, .end = 9};
  EXPECT_EQ(briefs(checkModel(model, all)), Briefs({"error node-index"}));
}

// ---- the model as a whole

TEST(CheckModel, NamesBarsThatAreAnnouncedOnly) {
  Model model = soundModel();
  model.announcedBars = 1003;
  const auto problems = checkModel(model, all);
  ASSERT_EQ(briefs(problems), Briefs({"warning missing-bars"}));
  EXPECT_EQ(problems[0].message, "the file announces 1,003 bars, but holds 2");
  EXPECT_EQ(problems[0].pointer, "/bars");
  EXPECT_EQ(problems[0].bars, 0);
  model.announcedBars = 1;
  EXPECT_EQ(briefs(checkModel(model, all)), Briefs());
}

TEST(CheckModel, NamesAModelWithoutBars) {
  Model model = soundModel();
  model.bars.clear();
  model.announcedBars = 0;
  const auto problems = checkModel(model, all);
  ASSERT_EQ(briefs(problems), Briefs({"warning no-bars"}));
  EXPECT_EQ(problems[0].message, "the model has no bars");
  EXPECT_EQ(problems[0].pointer, "/bars");
}

TEST(CheckModel, SaysWhyNoBarIsLeft) {
  Model model = soundModel();
  model.sections.push_back(sectionOf("W 200 100 8 6 1234567890123456789012345678901234"));
  model.bars = {{.start = 0, .end = 1, .type = 10},
                {.start = 0, .end = 1, .type = 10, .visible = false},
                {.start = 0, .end = 1, .visible = false},
                {.start = 0, .end = 1, .section = 2, .visible = false},
                {.start = 0, .end = 1, .section = 2, .type = 10}};
  auto problems = checkModel(model, visibleOnly);
  EXPECT_EQ(problemWith(problems, "no-bars").message,
            "all bars are left out: 1 invisible, 2 of type 10, 2 with a section text too long");
  EXPECT_EQ(problemWith(problems, "no-bars").severity, Severity::warning);
  EXPECT_EQ(problemWith(problems, "no-bars").pointer, "/bars");
  // With all bars, the third is one.
  EXPECT_EQ(briefs(checkModel(model, all)), Briefs({"error text-too-long"}));
  model.bars.erase(model.bars.begin() + 2);
  EXPECT_EQ(problemWith(checkModel(model, all), "no-bars").message,
            "all bars are left out: 2 of type 10, 2 with a section text too long");
  const InLanguage portuguese(Language::portuguese);
  EXPECT_EQ(problemWith(checkModel(model, all), "no-bars").message,
            "todas as barras ficam fora: 2 do tipo 10, 2 com texto de seção longo demais");
}

TEST(CheckModel, SaysEverythingInItsOrder) {
  Model model = soundModel();
  model.sections[0].text = "W é";
  model.sections[0].dims = {1, 1, 1, 1};
  model.sections[0].givenDims = 4;
  model.sections[1].text = "nada";
  model.sections.push_back(undefined("x"));
  model.bars.push_back({.start = 9, .end = 0, .section = 2});
  model.bars.push_back({.start = 0, .end = 0, .section = 0});
  model.nodes[2][0] = std::numeric_limits<float>::infinity();
  model.found = {{.code = "bar-cut"}, {.code = "byte-order-mark", .severity = Severity::note}};
  model.announcedBars = 5;
  EXPECT_EQ(briefs(checkModel(model, all)),
            Briefs({"error node-index", "error unknown-section", "error bar-cut",
                    "note byte-order-mark", "error unwritable-character", "error unknown-family",
                    "warning zero-length", "error not-finite", "warning missing-bars"}));
}

}  // namespace
}  // namespace exportifc
