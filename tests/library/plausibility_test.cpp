#include "library/frame/plausibility.h"

#include <cmath>
#include <limits>
#include <numbers>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "library/frame/problem_text.h"
#include "tests/library/library_test.h"

namespace exportifc {
namespace {

using test::all;
using test::brief;
using test::briefs;
using test::InLanguage;
using test::problemWith;
using test::sectionOf;
using test::sectionWith;
using test::soundModel;
using test::visibleOnly;

using Briefs = std::vector<std::string>;

Briefs notesOf(const std::string& text) { return briefs(sectionNotes(sectionOf(text), {})); }
Briefs notesOf(const Model& model) { return briefs(checkPlausibility(model, all)); }

std::string messageOf(const std::vector<Problem>& notes) {
  return notes.size() == 1 ? notes.front().message : std::to_string(notes.size()) + " notes";
}

// ---- sections: each note, and its silent neighbour

struct SectionCase {
  const char* unusual;
  Briefs notes;
  const char* silent;
};

void PrintTo(const SectionCase& row, std::ostream* stream) { *stream << '"' << row.unusual << '"'; }

class SectionNotes : public testing::TestWithParam<SectionCase> {};

TEST_P(SectionNotes, ComeOnlyBeyondTheLimit) {
  EXPECT_EQ(notesOf(GetParam().unusual), GetParam().notes);
  EXPECT_EQ(notesOf(GetParam().silent), Briefs());
}

INSTANTIATE_TEST_SUITE_P(
    Dimensions, SectionNotes,
    testing::ValuesIn(std::vector<SectionCase>{
        {"W 200 100 0.99 6", {"note small-dimension d2"}, "W 200 100 1 6"},
        {"W 3000.5 100 8 6", {"note large-dimension d0"}, "W 3000 100 8 6"},
        {"2L 75 0 0 6 3001", {"note large-dimension d4"}, "2L 75 0 0 6 0"},
        {"RET 90 0 0 0.5", {"note small-dimension d3"}, "RET 90 0 0 1"},
        {"RET 90 0.5", {"note small-dimension d3"}, "RET 90 1"},
        {"W 200 100 8 6 5", {"note unread-dimension"}, "W 200 100 8 6 remark 5mm"},
        {"PC 400 250 12 8 180", {"note outline-touches-itself"}, "PSA 400 250 12 250 12 8"},
    }));

INSTANTIATE_TEST_SUITE_P(
    Plates, SectionNotes,
    testing::ValuesIn(std::vector<SectionCase>{
        {"W 200 100 100.5 6", {"note thick-plate d2"}, "W 200 100 100 6"},
        {"W 200 100 8 50.5", {"note thick-plate d3"}, "W 200 100 8 50"},
        {"W 80 1000 8 40.5", {"note thick-plate d3"}, "W 80 1000 8 40"},
        {"L 50 0 0 25.5", {"note thick-plate d3"}, "L 50 0 0 25"},
        {"TUBO 60 0 0 30.5", {"note thick-plate d3"}, "TUBO 60 0 0 30"},
        {"BOX 150 90 0 75.5", {"note thick-plate d3"}, "BOX 150 90 0 75"},
        {"ICAR 130 60 20 30.5", {"note thick-plate d3"}, "ICAR 130 60 20 30"},
        {"ULAM 200 70 6 100.5", {"note thick-plate d3"}, "ULAM 200 70 6 100"},
        {"PSA 350 200 175.5 140 9 7", {"note thick-plate d2"}, "PSA 350 200 175 140 9 7"},
        {"PSA 350 200 12 140 175.5 7", {"note thick-plate d4"}, "PSA 350 200 12 140 175 7"},
        {"PSA 350 20 12 140 9 10.5", {"note thick-plate d5"}, "PSA 350 20 12 140 9 10"},
    }));

TEST(SectionNotes, SayHowMuch) {
  EXPECT_EQ(messageOf(sectionNotes(sectionOf("W 200 100 0.5 6"), {})),
            "section \"W 200 100 0.5 6\": d2 (flange thickness) is only 0.5 mm");
  EXPECT_EQ(messageOf(sectionNotes(sectionOf("W 12000 100 8 6"), {})),
            "section \"W 12000 100 8 6\": d0 (depth) is 12000 mm, more than 3 m; dimensions are "
            "millimetres");
  EXPECT_EQ(messageOf(sectionNotes(sectionOf("W 200 6 8 5"), {})),
            "section \"W 200 6 8 5\": d3 (web thickness) is 5 mm, more than half of d1 (width), 6 "
            "mm; perhaps in the wrong order?");
  EXPECT_EQ(messageOf(sectionNotes(sectionOf("PC 400 250 12 8 180"), {})),
            "section \"PC 400 250 12 8 180\": its outline touches itself; some programs fill the "
            "cell between its webs and show a volume several times too large");
  EXPECT_EQ(messageOf(sectionNotes(sectionOf("W 200 100 8 6 5.5 4"), {})),
            "section \"W 200 100 8 6 5.5 4\": W reads no dimension behind d3 (web thickness); 5.5 "
            "is left aside");
  const InLanguage portuguese(Language::portuguese);
  EXPECT_EQ(messageOf(sectionNotes(sectionOf("W 200 100 0.5 6"), {})),
            "seção \"W 200 100 0.5 6\": d2 (espessura da mesa) tem só 0,5 mm");
}

TEST(SectionNotes, ComeWithTheirPlace) {
  const Problem place{.pointer = "/sections/a/text", .section = 3, .bars = 7, .firstBar = 5};
  const auto notes = sectionNotes(sectionOf("PC 4000 250 12 0.5 180"), place);
  ASSERT_EQ(briefs(notes), Briefs({"note outline-touches-itself", "note small-dimension d3",
                                   "note large-dimension d0"}));
  for (const Problem& note : notes) {
    EXPECT_EQ(note.pointer, "/sections/a/text");
    EXPECT_EQ(note.section, 3);
    EXPECT_EQ(note.bars, 7);
    EXPECT_EQ(note.firstBar, 5);
  }
}

TEST(SectionNotes, LeaveAsideWhatIsWrongAlready) {
  EXPECT_EQ(notesOf("W 4000 100 8"), Briefs());
  EXPECT_EQ(notesOf("nada 4000"), Briefs());
  EXPECT_EQ(notesOf("2L_ASSIMETRICO 4000"), Briefs());
  EXPECT_EQ(notesOf(""), Briefs());
}

TEST(SectionNotes, CompareTheDimensionsWithTheText) {
  const auto notes = sectionNotes(sectionWith("W 200 100 8 6", {200, 100, 9.5F, 6}), {});
  ASSERT_EQ(briefs(notes), Briefs({"note text-and-dims-differ d2"}));
  EXPECT_EQ(notes[0].message,
            "section \"W 200 100 8 6\": the text says 8, but \"dims\" says 9.5 for d2 (flange "
            "thickness); the bars get the latter");
  const auto silent = [](const ModelSection& section) { return briefs(sectionNotes(section, {})); };
  EXPECT_EQ(silent(sectionWith("W 200 100 8 6", {200, 100, 8, 6})), Briefs());
  // A text that says none, or no number, does not contradict.
  EXPECT_EQ(silent(sectionWith("W 200", {200, 100, 9.5F, 6})), Briefs());
  EXPECT_EQ(silent(sectionWith("W", {200, 100, 9.5F, 6})), Briefs());
  EXPECT_EQ(silent(sectionWith("W 200 x 100 x oito", {200, 100, 9.5F, 6})), Briefs());
}

TEST(SectionNotes, OfGivenDimensionsNameOneThatIsNotRead) {
  EXPECT_EQ(briefs(sectionNotes(sectionWith("W", {200, 100, 8, 6, 5}), {})),
            Briefs({"note unread-dimension"}));
  EXPECT_EQ(briefs(sectionNotes(sectionWith("W", {200, 100, 8, 6, 0}), {})), Briefs());
  EXPECT_EQ(briefs(sectionNotes(sectionWith("RET", {90, 15, 0, 0}), {})), Briefs());
}

// ---- the model

TEST(CheckPlausibility, HasNothingToSayOfAUsualModel) {
  EXPECT_EQ(notesOf(soundModel()), Briefs());
  EXPECT_EQ(notesOf(Model{}), Briefs());
}

TEST(CheckPlausibility, LooksAtTheSectionsOfExportedBars) {
  Model model = soundModel();
  model.sections[1] = sectionOf("EC 80 0 0 0.5");
  model.sections[1].name = "a/b";
  model.bars.push_back({.start = 0, .end = 2, .section = 1, .visible = false});
  const auto notes = checkPlausibility(model, all);
  ASSERT_EQ(briefs(notes), Briefs({"note small-dimension d3"}));
  EXPECT_EQ(notes[0].pointer, "/sections/a~1b/text");
  EXPECT_EQ(notes[0].section, 1);
  EXPECT_EQ(notes[0].bars, 2);
  EXPECT_EQ(notes[0].firstBar, 1);
  EXPECT_EQ(checkPlausibility(model, visibleOnly)[0].bars, 1);
  model.bars[1].visible = false;
  EXPECT_EQ(briefs(checkPlausibility(model, visibleOnly)), Briefs());
}

TEST(CheckPlausibility, NotesBarsShorterThanDeep) {
  Model model = soundModel();
  model.nodes.push_back({5000, 0, 3200});
  model.nodes.push_back({5000, 0, 3199.5F});
  model.nodes.push_back({5000, 0, 3150});
  model.bars.push_back({.start = 2, .end = 3, .section = 0});
  model.bars.push_back({.start = 2, .end = 2, .section = 0});  // which is a problem already
  model.bars.push_back({.start = 2, .end = 5, .section = 1});
  model.bars.push_back({.start = 4, .end = 5, .section = 1});
  EXPECT_EQ(notesOf(model), Briefs({"note short-bar"}));
  EXPECT_EQ(checkPlausibility(model, all)[0].section, 1);
  EXPECT_EQ(checkPlausibility(model, all)[0].bars, 1);
  model.bars.push_back({.start = 2, .end = 4, .section = 0});
  model.bars.push_back({.start = 5, .end = 2, .section = 0});
  const auto notes = checkPlausibility(model, all);
  ASSERT_GE(notes.size(), 2U);
  EXPECT_EQ(brief(notes[0]), "note short-bar");
  EXPECT_EQ(
      notes[0].message,
      "the bar is 199.5 mm long, shorter than its section \"W 200 100 8 6\" is deep (200 mm)");
  EXPECT_EQ(notes[0].pointer, "/bars/6");
  EXPECT_EQ(notes[0].section, 0);
  EXPECT_EQ(notes[0].bars, 2);
  EXPECT_EQ(notes[0].firstBar, 6);
}

TEST(CheckPlausibility, OfUnknownShapesKnowsNoDepth) {
  for (const char* const text : {"nada 500", "2L_ASSIMETRICO 500", ""}) {
    Model model = soundModel();
    model.sections[0] = sectionOf(text);
    model.sections[0].dims[0] = 5000;
    EXPECT_EQ(notesOf(model), Briefs()) << text;
  }
}

TEST(CheckPlausibility, NotesAnglesThatLookLikeDegrees) {
  Model model = soundModel();
  model.bars[0].angle = 6.28F;
  model.bars[1].angle = -6.28F;
  EXPECT_EQ(notesOf(model), Briefs());
  model.bars[1].angle = -6.29F;
  auto notes = checkPlausibility(model, all);
  ASSERT_EQ(briefs(notes), Briefs({"note large-angle"}));
  EXPECT_EQ(notes[0].message,
            "the angle is -6.29, more than a whole turn; angles are radians, are these degrees?");
  EXPECT_EQ(notes[0].pointer, "/bars/1/angle");
  EXPECT_EQ(notes[0].bars, 1);
  model.bars[0].angle = 90;
  notes = checkPlausibility(model, all);
  EXPECT_EQ(notes[0].bars, 2);
  EXPECT_EQ(notes[0].firstBar, 0);
  EXPECT_EQ(notes[0].pointer, "/bars/0/angle");
}

TEST(CheckPlausibility, NotesBarsInOnePlace) {
  Model model = soundModel();
  model.nodes.push_back({-0.0F, 0, 0});                        // the first once more
  model.bars.push_back({.start = 1, .end = 3, .section = 0});  // the first turned round
  model.bars.push_back({.start = 1, .end = 2, .section = 0});
  model.bars.push_back({.start = 0, .end = 2, .section = 0});  // a place of its own
  const auto notes = checkPlausibility(model, all);
  ASSERT_EQ(briefs(notes), Briefs({"note same-place"}));
  EXPECT_EQ(notes[0].message, "the bar lies where bar 1 lies: the same two ends");
  EXPECT_EQ(notes[0].pointer, "/bars/2");
  EXPECT_EQ(notes[0].bars, 2);
  EXPECT_EQ(notes[0].firstBar, 2);
}

TEST(CheckPlausibility, OnlyExportedBarsAreInOnesPlace) {
  Model model = soundModel();
  model.bars.push_back({.start = 1, .end = 0, .visible = false});
  EXPECT_EQ(notesOf(model), Briefs({"note same-place"}));
  EXPECT_EQ(briefs(checkPlausibility(model, visibleOnly)), Briefs());
  // Bars without length are a problem already, and their ends no place.
  model.bars = {{.start = 0, .end = 0},
                {.start = 0, .end = 0},
                {.start = 0, .end = 1},
                {.start = 1, .end = 2, .section = 1}};
  EXPECT_EQ(notesOf(model), Briefs());
}

TEST(CheckPlausibility, TellsManyPlacesApart) {
  Model model = soundModel();
  model.nodes.clear();
  model.bars.clear();
  for (int i = 0; i <= 5000; ++i) {
    const int row = i / 71;
    model.nodes.push_back({static_cast<float>(i % 71) * 500, static_cast<float>(row) * 500, 0});
  }
  for (std::int32_t i = 0; i < 5000; ++i) {
    model.bars.push_back({.start = i, .end = i + 1, .section = i % 2});
  }
  EXPECT_EQ(notesOf(model), Briefs());
  model.bars.push_back({.start = 4001, .end = 4000, .section = 0});
  const auto notes = checkPlausibility(model, all);
  ASSERT_EQ(briefs(notes), Briefs({"note same-place"}));
  EXPECT_EQ(notes[0].message, "the bar lies where bar 4,001 lies: the same two ends");
  EXPECT_EQ(notes[0].firstBar, 5000);
}

/// A model whose only bar goes from `start` to `end`.
Model barBetween(std::array<float, 3> start, std::array<float, 3> end, std::int32_t unit = 2) {
  Model model = soundModel();
  model.unitCode = unit;
  model.nodes = {start, end};
  model.sections.resize(1);
  model.bars.resize(1);
  return model;
}

TEST(CheckPlausibility, NotesModelsThatAreTooSmall) {
  EXPECT_EQ(notesOf(barBetween({0, 0, 0}, {1000, 0, 0})), Briefs());
  const auto notes = checkPlausibility(barBetween({0, 0, 0}, {999.5F, 0, 0}), all);
  ASSERT_EQ(briefs(notes), Briefs({"note small-model"}));
  EXPECT_EQ(notes[0].message, "the whole model measures 1 m; is the unit right (mm)?");
  EXPECT_EQ(notes[0].pointer, "/unit");
  EXPECT_EQ(notes[0].bars, 0);
  EXPECT_EQ(checkPlausibility(barBetween({0, 0, 0}, {0, 0, 250}), all)[0].message,
            "the whole model measures 0.25 m; is the unit right (mm)?");
}

TEST(CheckPlausibility, NotesModelsThatAreTooLarge) {
  EXPECT_EQ(notesOf(barBetween({0, 0, 0}, {0, 10000, 0}, 0)), Briefs());
  EXPECT_EQ(notesOf(barBetween({0, -5000, 0}, {0, 5001, 0}, 0)), Briefs({"note large-model"}));
  const auto notes = checkPlausibility(barBetween({0, -601500, 0}, {0, 601500, 0}, 1), all);
  ASSERT_EQ(briefs(notes), Briefs({"note large-model"}));
  EXPECT_EQ(notes[0].message, "the whole model measures 12.0 km; is the unit right (cm)?");
  EXPECT_EQ(notes[0].pointer, "/unit");
}

TEST(CheckPlausibility, MeasuresTheWholeModel) {
  Model model = soundModel();
  model.nodes = {{0, 0, 0}, {0, 0, 400}, {0, 600, 400}, {0, 600, 1000}};
  model.bars = {
      {.start = 0, .end = 1}, {.start = 1, .end = 2, .section = 1}, {.start = 3, .end = 2}};
  EXPECT_EQ(notesOf(model), Briefs());
  model.nodes[3][2] = 999;
  EXPECT_EQ(notesOf(model), Briefs({"note small-model"}));
}

TEST(CheckPlausibility, APointHasNoSize) {
  EXPECT_EQ(notesOf(barBetween({0, 0, 0}, {0, 0, 0.009F})), Briefs());
  EXPECT_EQ(notesOf(barBetween({0, 0, 0}, {0, 0, 0.011F})),
            Briefs({"note short-bar", "note small-model"}));
}

TEST(CheckPlausibility, WithoutExportedBarsKnowsNoSize) {
  Model model = soundModel();
  for (ModelBar& bar : model.bars) {
    bar.visible = false;
  }
  model.nodes[0][0] = 1e9F;  // far away, if it were exported
  EXPECT_EQ(briefs(checkPlausibility(model, visibleOnly)), Briefs());
}

TEST(CheckPlausibility, WithoutAUnitKnowsNoSize) {
  EXPECT_EQ(notesOf(barBetween({0, 0, 0}, {500, 0, 0}, -1)), Briefs());
}

TEST(CheckPlausibility, NotesCoordinatesFarAway) {
  // Neighbours of 2^24 mm lie 1 mm apart below it and 2 mm above.
  const float limit = 16777216;
  EXPECT_EQ(notesOf(barBetween({limit, 0, 0}, {limit - 5000, 0, 0})), Briefs());
  const auto notes = checkPlausibility(barBetween({-limit - 2, 0, 0}, {-limit + 5000, 0, 0}), all);
  ASSERT_EQ(briefs(notes), Briefs({"note far-from-origin"}));
  EXPECT_EQ(
      notes[0].message,
      "coordinates lie 16.8 km from the origin, where they can only be kept in steps of 2 mm; "
      "move the model near the origin");
  EXPECT_EQ(notes[0].pointer, "/nodes");
  EXPECT_EQ(notesOf(barBetween({0, 16000, 0}, {0, 16010, 0}, 0)), Briefs());  // in metres
  EXPECT_EQ(notesOf(barBetween({0, 0, 7400000}, {0, 0, 7400010}, 0)),
            Briefs({"note far-from-origin"}));
}

TEST(CheckPlausibility, NotesUnusedSections) {
  Model model = soundModel();
  for (const char* const name : {"a", "b", "c", "d", "e"}) {
    model.sections.push_back({.name = name, .text = "W"});
  }
  auto notes = checkPlausibility(model, all);
  ASSERT_EQ(briefs(notes), Briefs({"note unused-section"}));
  EXPECT_EQ(notes[0].message, "5 sections used by no bar: \"a\", \"b\", \"c\", \"d\", \"e\"");
  EXPECT_EQ(notes[0].pointer, "/sections/a");
  EXPECT_EQ(notes[0].section, 2);
  EXPECT_EQ(notes[0].bars, 0);
  model.sections.push_back({.name = "f", .text = "W"});
  EXPECT_EQ(messageOf(checkPlausibility(model, all)),
            "6 sections used by no bar: \"a\", \"b\", \"c\", \"d\", \"e\", ...");
  model.sections.resize(3);
  EXPECT_EQ(messageOf(checkPlausibility(model, all)), "1 section used by no bar: \"a\"");
  // A hidden bar uses one, too.
  model.bars.push_back({.start = 0, .end = 2, .section = 2, .type = 10, .visible = false});
  EXPECT_EQ(briefs(checkPlausibility(model, visibleOnly)), Briefs());
}

TEST(CheckPlausibility, NotesUnusedNodes) {
  Model model = soundModel();
  model.nodes.insert(model.nodes.begin(), 1200, {0, 0, 0});
  for (ModelBar& bar : model.bars) {
    bar.start += 1200;
    bar.end += 1200;
  }
  model.bars.push_back({.start = 0, .end = 1201, .section = 1});
  const auto notes = checkPlausibility(model, all);
  const Problem note = problemWith(notes, "unused-node");
  EXPECT_EQ(note.message, "1,199 nodes used by no bar, the first is node 1");
  EXPECT_EQ(note.pointer, "/nodes/1");
  model = soundModel();
  model.nodes.push_back({1, 2, 3});
  EXPECT_EQ(messageOf(checkPlausibility(model, all)), "1 node used by no bar, the first is node 3");
  // A bar with a wrong node may mean it.
  model.bars[1].end = 4;
  EXPECT_EQ(notesOf(model), Briefs());
}

TEST(CheckPlausibility, LeavesBarsAsideThatLeadNowhere) {
  Model model = soundModel();
  model.sections[1] = sectionOf("EC 80 0 0 0.5");
  model.bars[1] = {.start = 1, .end = 7, .section = 1, .angle = 90};
  EXPECT_EQ(notesOf(model), Briefs());
  model.bars[1].end = 2;
  for (std::size_t axis = 0; axis < 3; ++axis) {
    model.nodes[2] = {0, 0, 0};
    model.nodes[2][axis] = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(notesOf(model), Briefs()) << axis;
  }
  model.nodes[2] = {5000, 0, 3000};
  EXPECT_EQ(notesOf(model), Briefs({"note small-dimension d3", "note large-angle"}));
  model.soundBars = 1;
  EXPECT_EQ(notesOf(model), Briefs());
}

TEST(CheckPlausibility, NotesNeverAreErrors) {
  Model model = soundModel();
  model.sections.push_back(sectionOf("PC 4000 250 0.5 8 180"));
  model.nodes = {{0, 0, 0}, {0, 0, 90}, {0, 0, 4e7F}, {1, 1, 1}};
  model.bars = {{.start = 0, .end = 1, .section = 2, .angle = 90},
                {.start = 1, .end = 0, .section = 2},
                {.start = 0, .end = 2, .section = 2}};
  const auto notes = checkPlausibility(model, all);
  EXPECT_EQ(briefs(notes), Briefs({"note outline-touches-itself", "note small-dimension d2",
                                   "note large-dimension d0", "note short-bar", "note large-angle",
                                   "note same-place", "note large-model", "note far-from-origin",
                                   "note unused-section", "note unused-node"}));
}

TEST(ModelNotes, DensitiesInAnotherUnit) {
  Model model = soundModel();
  model.materials = {
      {.name = "unknown"}, {.name = "cork", .density = 100}, {.name = "osmium", .density = 23000}};
  EXPECT_EQ(notesOf(model), Briefs());
  model.materials.push_back({.name = "aço/1", .density = 7.85});
  model.materials.push_back({.name = "b", .density = 78500});
  const std::vector<Problem> notes = checkPlausibility(model, all);
  ASSERT_EQ(briefs(notes), Briefs({"note unusual-density", "note unusual-density"}));
  EXPECT_EQ(notes[0].pointer, "/materials/aço~11/density");
  EXPECT_EQ(notes[0].message,
            "material \"aço/1\": 7.85 kg/m³ is unusual; densities are in kg/m³, that of steel is "
            "7850");
}

}  // namespace
}  // namespace exportifc
