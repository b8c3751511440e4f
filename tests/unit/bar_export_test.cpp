#include "plugin/bar_export.h"

#include <cmath>
#include <limits>
#include <regex>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "model/host_source.h"
#include "support.h"

namespace exportifc {
namespace {

using Lines = std::vector<std::string>;
using test::ListSource;
using test::Said;
using test::ScriptedBar;

const Said barProblem = test::message(MessageId::barWithoutRecord);

Said unknownProfile(const std::wstring& name) {
  return test::message(MessageId::unknownProfile, name);
}

struct Exported {
  Lines lines;
  std::vector<Said> said;

  /// Numbers of the elements, in the order of the file.
  std::vector<int> elements() const {
    std::vector<int> numbers;
    for (const std::string& line : lines) {
      for (const char* const keyword : {"= IFCBEAM(", "= IFCCOLUMN(", "= IFCMEMBER("}) {
        if (line.find(keyword) != std::string::npos) {
          numbers.push_back(test::numberOf(line));
        }
      }
    }
    return numbers;
  }

  /// "(#1, #2)" at the end of the one line that holds `text`; nothing if there is none.
  std::string members(std::string_view text) const {
    const Lines found = test::linesWith(lines, text);
    if (found.size() != 1) {
      EXPECT_TRUE(found.empty()) << "more than one: " << text;
      return "none";
    }
    const std::string& line = found[0];
    const std::size_t start = line.rfind('(');
    return line.substr(start, line.find(')', start) - start + 1);
  }
  std::string frame() const { return members("'Elementos_de_Portico', 'Assembly', "); }
  std::string truss() const { return members("'Elementos_de_Trelica', 'Assembly', "); }
  std::string storey() const { return members("= IFCRELCONTAINEDINSPATIALSTRUCTURE("); }
};

Exported exported(BarSource& model, BarChoice choice = BarChoice::all) {
  test::ScriptedUser user;
  Exported result;
  result.lines =
      test::exportedLines([&](StepWriter& writer) { exportBars(writer, choice, model, user); });
  result.said = user.said;
  return result;
}

Exported exported(std::vector<ScriptedBar> bars, std::int32_t unit = 2,
                  BarChoice choice = BarChoice::all) {
  ListSource model(std::move(bars), unit);
  return exported(model, choice);
}

/// The lines up to the assemblies, with "#" for each instance number.
std::string withoutNumbers(const Exported& file) {
  static const std::regex numbers("#[0-9]+");
  std::string text;
  for (const std::string& line : file.lines) {
    if (line.find("= IFCRELCONTAINEDINSPATIALSTRUCTURE(") == std::string::npos) {
      text.append(std::regex_replace(test::maskGlobalIds(line), numbers, "#")).append("\n");
    }
  }
  return text;
}

Exported exportedType(float type) { return exported({{.section = "W 1", .type = type}}); }

std::string list(const std::vector<int>& numbers) {
  std::string text;
  for (const int number : numbers) {
    text.append(text.empty() ? "#" : ", #").append(std::to_string(number));
  }
  return "(" + text + ")";
}

// ---- Groups ------------------------------------------------------------------------------------

// A simple bar of a parametric family writes 4 + 14 entities; its element has number 15.
constexpr const char* oneElement = "(#15)";
constexpr const char* assemblyAfterOne = "(#19)";

TEST(ExportBars, NoBars) {
  const Exported file = exported(std::vector<ScriptedBar>{});
  EXPECT_EQ(file.lines.size(), 1U);
  EXPECT_EQ(file.storey(), "()");
  EXPECT_TRUE(file.said.empty());
}

TEST(ExportBars, FrameTypes) {
  for (const float type : {1.0F, 2.0F, 4.0F, 6.0F, 7.0F, 8.0F}) {
    const Exported file = exportedType(type);
    EXPECT_EQ(file.frame(), oneElement) << type;
    EXPECT_EQ(file.truss(), "none") << type;
    EXPECT_EQ(file.storey(), assemblyAfterOne) << type;
  }
}

TEST(ExportBars, TrussTypes) {
  for (const float type : {3.0F, 9.0F}) {
    const Exported file = exportedType(type);
    EXPECT_EQ(file.frame(), "none") << type;
    EXPECT_EQ(file.truss(), oneElement) << type;
    EXPECT_EQ(file.storey(), assemblyAfterOne) << type;
  }
}

TEST(ExportBars, OtherTypesGoToTheStorey) {
  const float infinity = std::numeric_limits<float>::infinity();
  for (const float type :
       {0.0F, 5.0F, 11.0F, 12.0F, 1000.0F, -1.0F, -10.0F, 3e9F, -3e9F, 1e30F, 2147483648.0F,
        infinity, -infinity, std::numeric_limits<float>::quiet_NaN()}) {
    const Exported file = exportedType(type);
    EXPECT_EQ(file.frame(), "none") << type;
    EXPECT_EQ(file.truss(), "none") << type;
    EXPECT_EQ(file.storey(), oneElement) << type;
    EXPECT_EQ(test::linesWith(file.lines, "IFCELEMENTASSEMBLY").size(), 0U) << type;
  }
}

TEST(ExportBars, TypesAreTruncatedTowardZero) {
  EXPECT_EQ(exportedType(4.9F).frame(), oneElement);
  EXPECT_EQ(exportedType(9.99F).truss(), oneElement);
  EXPECT_EQ(exportedType(0.99F).storey(), oneElement);
  EXPECT_EQ(exportedType(-0.5F).storey(), oneElement);
  EXPECT_EQ(exportedType(3.999F).truss(), oneElement);
}

TEST(ExportBars, TypeTenIsNeverWritten) {
  for (const float type : {10.0F, 10.5F, 10.999F}) {
    const Exported file = exportedType(type);
    EXPECT_EQ(file.lines.size(), 1U) << type;
    EXPECT_EQ(file.storey(), "()");
  }
  EXPECT_EQ(exportedType(9.999999F).elements().size(), 1U);
}

TEST(ExportBars, ElementsThenFrameThenTruss) {
  std::vector<ScriptedBar> bars;
  for (const float type : {3.0F, 1.0F, 0.0F, 9.0F, 8.0F, 5.0F}) {
    bars.push_back({.section = "W 1", .type = type});
  }
  const Exported file = exported(bars);
  const auto e = file.elements();
  ASSERT_EQ(e.size(), 6U);
  EXPECT_EQ(file.frame(), list({e[1], e[4]}));
  EXPECT_EQ(file.truss(), list({e[0], e[3]}));
  const auto assemblies = test::linesWith(file.lines, "= IFCELEMENTASSEMBLY(");
  ASSERT_EQ(assemblies.size(), 2U);
  EXPECT_NE(assemblies[0].find("'Elementos_de_Portico', '', "), std::string::npos);
  EXPECT_NE(assemblies[1].find("'Elementos_de_Trelica', '', "), std::string::npos);
  EXPECT_EQ(file.storey(),
            list({e[2], e[5], test::numberOf(assemblies[0]), test::numberOf(assemblies[1])}));
  EXPECT_EQ(test::numberOf(assemblies[0]), 6 * 18 + 1);
  EXPECT_EQ(test::numberOf(assemblies[1]), 6 * 18 + 3);
  EXPECT_EQ(test::numberOf(file.lines.back()), 6 * 18 + 5);
}

// ---- Visibility --------------------------------------------------------------------------------

TEST(ExportBars, TheChoiceLeavesInvisibleBarsOut) {
  const std::vector<ScriptedBar> bars = {{.section = "A 1", .visible = 0},
                                         {.section = "B 1", .visible = 1},
                                         {.section = "C 1", .visible = -1}};
  EXPECT_EQ(exported(bars, 2, BarChoice::all).elements().size(), 3U);
  const Exported visible = exported(bars, 2, BarChoice::visibleOnly);
  EXPECT_EQ(visible.elements().size(), 2U);
  EXPECT_EQ(test::linesWith(visible.lines, "perfil: A 1").size(), 0U);
  EXPECT_EQ(visible.said.size(), 2U) << "a bar that is left out warns of nothing";
}

// ---- Records -----------------------------------------------------------------------------------

TEST(ExportBars, ABarWithoutRecordIsReportedAndSkipped) {
  const Exported file =
      exported({{.section = "W 1"}, {.section = "W 2", .hasRecord = false}, {.section = "W 3"}});
  EXPECT_EQ(file.elements().size(), 2U);
  EXPECT_EQ(file.said, std::vector<Said>{barProblem});
  EXPECT_EQ(test::linesWith(file.lines, "perfil: W 2").size(), 0U);
}

TEST(ExportBars, TheRecordIsLookedAtBeforeTypeAndVisibility) {
  const Exported file =
      exported({{.type = 10.0F, .visible = 0, .hasRecord = false}}, 2, BarChoice::visibleOnly);
  EXPECT_EQ(file.said, std::vector<Said>{barProblem});
}

// ---- Rotation ----------------------------------------------------------------------------------

std::string comment(const ScriptedBar& bar) {
  const Lines lines = test::linesWith(exported({bar}).lines, "angulo: ");
  EXPECT_EQ(lines.size(), 1U);
  return lines.at(0).substr(0, lines.at(0).find(','));
}

Lines directions(const ScriptedBar& bar) {
  const Lines lines = exported({bar}).lines;
  const auto place = test::linesWith(lines, "#6= ");
  const auto axis = test::linesWith(lines, "#5= ");
  return {axis.at(0), place.at(0)};
}

TEST(ExportBars, AQuarterTurnIsNinetyDegrees) {
  // The factors are the host's, not half of pi: 1.57075 / 3.1415 is one half exactly.
  EXPECT_EQ(comment({.quarterTurns = 1}), "angulo: 90");
  EXPECT_EQ(comment({.quarterTurns = -1}), "angulo: -90");
  EXPECT_EQ(comment({.quarterTurns = 2}), "angulo: 180");
  EXPECT_EQ(comment({.quarterTurns = 0}), "angulo: 0");
}

TEST(ExportBars, RotationIsExactlyNinetyInTheFile) {
  // 90 exactly gives cosine -4e-08 in single precision; 90.0014 would print -0.00002.
  const ScriptedBar bar{.section = "W 1", .quarterTurns = 1};
  EXPECT_EQ(directions(bar)[1], "#6= IFCDIRECTION((0.00000, -0.00000, 1.00000));");
  const ScriptedBar back{.section = "W 1", .quarterTurns = -1};
  EXPECT_EQ(directions(back)[1], "#6= IFCDIRECTION((0.00000, -0.00000, -1.00000));");
}

TEST(ExportBars, TheAngleIsInTheHostsRadians) {
  // 3.1415 is half a turn to the host.
  EXPECT_EQ(comment({.angle = 3.1415F}), "angulo: 180");
  EXPECT_EQ(comment({.angle = 1.0F}), "angulo: 57.2975");
  EXPECT_EQ(comment({.angle = -0.5F}), "angulo: -28.6487");
  EXPECT_EQ(comment({.angle = 1.0F, .quarterTurns = 1}), "angulo: 147.297");
}

TEST(ExportBars, RotationIsComputedInTheHostsPrecisions) {
  // The sum and the quotient are single precision: 2^24 + 1 does not exist there.
  const float large = 16777216.0F;
  const double degrees = double{large / 3.1415F} * 180.0;
  char expected[40];
  std::snprintf(expected, sizeof(expected), "angulo: %.6g", degrees);
  EXPECT_EQ(comment({.angle = large}), expected);
  // A quarter turn is added after rounding to single precision.
  test::Random random(1);
  for (int round = 0; round < 200; ++round) {
    const auto turns = static_cast<std::int32_t>(random.integer(-1000000, 1000000));
    const float angle = random.number(-100, 100);
    const auto turned = static_cast<float>(static_cast<double>(turns) * 1.5707499980926514);
    const float sum = turned + angle;
    const float quotient = sum / 3.1415F;
    std::snprintf(expected, sizeof(expected), "angulo: %.6g",
                  static_cast<double>(quotient) * 180.0);
    ASSERT_EQ(comment({.angle = angle, .quarterTurns = turns}), expected);
  }
  EXPECT_NO_FATAL_FAILURE(comment({.quarterTurns = std::numeric_limits<std::int32_t>::min()}));
}

TEST(ExportBars, WhatAHostDoesToARecordDuringABoxChangesNothing) {
  // Both halves of this section are unknown, so each has a box.
  class Meddler final : public UserInterface {
   public:
    explicit Meddler(BarRecord& record) : record_(record) {}
    std::optional<std::wstring> chooseSaveFile() override { return std::nullopt; }
    BarChoice chooseBars() override { return BarChoice::all; }
    void show(const Message&) override {
      ++boxes;
      record_ = test::recordOf("W 1", 2);
    }

    int boxes = 0;

   private:
    BarRecord& record_;
  };
  class RecordSource final : public BarSource {
   public:
    std::int32_t unitCode() override { return 2; }
    std::int32_t barCount() override { return 1; }
    bool next(std::int32_t, SourceBar& bar) override {
      bar.record = &record;
      bar.end = {1000, 0, 0};
      return true;
    }

    BarRecord record = test::recordOf("2L_ASSIMETRICO 50", 1);
  };
  RecordSource model;
  Meddler host(model.record);
  const Lines lines = test::exportedLines(
      [&](StepWriter& writer) { exportBars(writer, BarChoice::all, model, host); });
  EXPECT_EQ(host.boxes, 2);
  EXPECT_EQ(test::linesWith(lines, "angulo: "), Lines(2, "angulo: 90, perfil: 2L_ASSIMETRICO 50"));
}

// ---- Coordinates -------------------------------------------------------------------------------

TEST(ExportBars, CoordinatesBecomeMillimetres) {
  const auto ends = [](std::int32_t unit) {
    const Lines lines =
        exported({{.start = {1.5F, -2.0F, 0.25F}, .end = {3.0F, 0.0F, 7.0F}}}, unit).lines;
    return test::linesWith(lines, "/* IfcBeam (").at(0);
  };
  EXPECT_EQ(ends(0), "/* IfcBeam (1500,-2000,250), (3000,0,7000)");
  EXPECT_EQ(ends(1), "/* IfcBeam (15,-20,2.5), (30,0,70)");
  for (const std::int32_t unit : {2, 3, -1, 1000}) {
    EXPECT_EQ(ends(unit), "/* IfcBeam (1.5,-2,0.25), (3,0,7)") << unit;
  }
}

TEST(ExportBars, CoordinatesAreWidenedBeforeTheFactor) {
  // 0.1 in single precision times 1000 in double precision.
  const Exported file = exported({{.section = "W 1", .start = {0.1F, 0, 0}, .end = {1, 0, 0}}}, 0);
  EXPECT_EQ(test::linesWith(file.lines, "#7= ").at(0),
            "#7= IFCCARTESIANPOINT((100.00000, 0.00000, 0.00000));");
  const Exported large = exported({{.section = "W 1", .start = {16777217.0F, 0, 0}}}, 0);
  EXPECT_EQ(test::linesWith(large.lines, "#7= ").at(0),
            "#7= IFCCARTESIANPOINT((16777216000.00000, 0.00000, 0.00000));");
  const Exported third = exported({{.section = "W 1", .start = {1.0F / 3.0F, 0, 0}}}, 0);
  EXPECT_EQ(test::linesWith(third.lines, "#7= ").at(0),
            "#7= IFCCARTESIANPOINT((333.33334, 0.00000, 0.00000));");
}

TEST(ExportBars, DimensionsAreNeverConverted) {
  for (const std::int32_t unit : {0, 1, 2}) {
    const Exported file = exported({{.section = "W 1", .dims = {200, 100, 10, 5}}}, unit);
    EXPECT_EQ(
        test::linesWith(file.lines, "IFCISHAPEPROFILEDEF").at(0),
        "#4= IFCISHAPEPROFILEDEF(.AREA., 'W 1', #3, 100.00000,200.00000,5.00000,10.00000, $);");
  }
}

// ---- Kinds, names, halves ----------------------------------------------------------------------

TEST(ExportBars, TypesFourAndSevenMayBeColumns) {
  for (const float type : {0.0F, 1.0F, 2.0F, 3.0F, 4.0F, 5.0F, 6.0F, 7.0F, 8.0F, 9.0F}) {
    const Exported file = exported({{.section = "W 1", .type = type, .end = {0, 0, 3000}}});
    const bool column = type == 4.0F || type == 7.0F;
    EXPECT_EQ(test::linesWith(file.lines, "= IFCCOLUMN(").size(), column ? 1U : 0U) << type;
    EXPECT_EQ(test::linesWith(file.lines, "= IFCMEMBER(").size(), column ? 0U : 1U) << type;
  }
}

TEST(ExportBars, ASimpleSection) {
  const Exported file = exported({{.section = "[ 100 50 x 5"}});
  EXPECT_EQ(test::linesWith(file.lines, "= IFCBEAM(").at(0).substr(37),
            ", #5, '[', '[ 100 50 x 5', $,#9, #14, '418198');");
  EXPECT_EQ(file.lines[0], "#1= IFCCARTESIANPOINT((-50.00000, 0.));") << "with the flange side -1";
}

TEST(ExportBars, ABuiltUpSectionGivesTwoElements) {
  for (const float type : {1.0F, 3.0F, 0.0F}) {
    const Exported file =
        exported({{.section = "2L 50x5", .type = type, .dims = {50, 0, 0, 5, 10}}});
    EXPECT_TRUE(file.said.empty());
    const Lines beams = test::linesWith(file.lines, "= IFCBEAM(");
    ASSERT_EQ(beams.size(), 2U);
    EXPECT_NE(beams[0].find("', #5, '2L_1', '2L 50x5', $,"), std::string::npos);
    EXPECT_NE(beams[1].find("', #5, '2L_2', '2L 50x5', $,"), std::string::npos);
    const Lines profiles = test::linesWith(file.lines, "IFCLSHAPEPROFILEDEF");
    ASSERT_EQ(profiles.size(), 2U);
    EXPECT_EQ(profiles[0],
              "#4= IFCLSHAPEPROFILEDEF(.AREA., '2L_1', #3, 50.00000, 50.00000,5.00000, $, $, $, $, "
              "$);");
    EXPECT_EQ(profiles[1],
              "#22= IFCLSHAPEPROFILEDEF(.AREA., '2L_2', #21, 50.00000, 50.00000,5.00000, $, $, $, "
              "$, $);");
    // Profile and element of the first half come before those of the second; neither is reversed.
    EXPECT_EQ(file.elements(), (std::vector<int>{15, 33}));
    EXPECT_EQ(test::linesWith(file.lines, "/* IfcBeam (0,0,0), (1000,0,0)").size(), 2U);
    EXPECT_EQ(test::linesWith(file.lines, "perfil: 2L 50x5").size(), 2U);
    const std::string both = "(#15, #33)";
    EXPECT_EQ(file.frame(), type == 1.0F ? both : "none");
    EXPECT_EQ(file.truss(), type == 3.0F ? both : "none");
    EXPECT_EQ(file.storey(), type == 0.0F ? both : "(#37)");
  }
}

TEST(ExportBars, WithoutTheBlankABuiltUpWordIsUnknown) {
  const Exported file = exported({{.section = "IENR200x50"}});
  EXPECT_EQ(file.elements().size(), 1U);
  EXPECT_EQ(file.said, std::vector<Said>{unknownProfile(L"IENR200x50")});
  EXPECT_EQ(test::linesWith(file.lines, "'UnknownProfile'").size(), 1U);
}

TEST(ExportBars, BothHalvesOfAnAsymmetricPairAreUnknown) {
  const Exported file = exported({{.section = "2L_ASSIMETRICO 50 30"}});
  EXPECT_EQ(file.said, (std::vector<Said>{unknownProfile(L"2L_ASSIMETRICO_1"),
                                          unknownProfile(L"2L_ASSIMETRICO_2")}));
  EXPECT_EQ(test::linesWith(file.lines, "'UnknownProfile'").size(), 2U);
  EXPECT_EQ(file.elements().size(), 2U);
  EXPECT_EQ(
      test::linesWith(file.lines, "', #5, '2L_ASSIMETRICO_2', '2L_ASSIMETRICO 50 30', $,").size(),
      1U);
}

TEST(ExportBars, AnUnknownSectionIsABarLikeAnyOther) {
  const Exported file = exported({{.section = "XPTO 1"}, {.section = ""}, {.section = "W 1"}});
  EXPECT_EQ(file.elements().size(), 3U);
  EXPECT_EQ(file.said, (std::vector<Said>{unknownProfile(L"XPTO 1"), unknownProfile(L"")}));
}

TEST(ExportBars, AnAccentedSectionEndsTheFile) {
  // 0xE7 widens to U+FFE7, which the file cannot hold.
  ListSource model({{.section = "W 1"}, {.section = "W \xE7 2"}, {.section = "W 3"}});
  test::ScriptedUser user;
  const std::string bytes = test::exportedBytes([&](StepWriter& writer) {
    exportBars(writer, BarChoice::all, model, user);
    EXPECT_EQ(writer.entities.size(), 3 * 18 + 1) << "numbers go on";
  });
  EXPECT_TRUE(user.said.empty());
  EXPECT_TRUE(bytes.ends_with("\r\n#22= IFCISHAPEPROFILEDEF(.AREA., 'W "))
      << bytes.substr(bytes.size() - 60);
}

TEST(ExportBars, AnAccentedUnknownSectionEndsTheFileInItsComment) {
  ListSource model({{.section = "Perfil\xE7"}});
  test::ScriptedUser user;
  const std::string bytes = test::exportedBytes(
      [&](StepWriter& writer) { exportBars(writer, BarChoice::all, model, user); });
  EXPECT_TRUE(
      bytes.ends_with("'UnknownProfile', #6);\r\n\r\n/* IfcBeam (0,0,0), (1000,0,0)\r\n"
                      "angulo: 0, perfil: Perfil"));
  EXPECT_EQ(user.said, std::vector<Said>{
                           unknownProfile(std::wstring(L"Perfil") + static_cast<wchar_t>(0xFFE7))});
}

/// What the bars write, each in an export of its own, one behind the other: numbers left out.
std::string oneByOne(const std::vector<ScriptedBar>& bars) {
  std::string text;
  for (const ScriptedBar& bar : bars) {
    text += withoutNumbers(exported({bar}));
  }
  return text;
}

TEST(ExportBars, ASectionMeansTheSameForEachOfItsBars) {
  // Placement, rotation and dimensions are its own, whatever bar of the section came before.
  const std::vector<ScriptedBar> bars = {
      {.section = "2L 50x5", .end = {0, 0, 3000}, .dims = {50, 0, 0, 5, 10}, .quarterTurns = 1},
      {.section = "W 1", .angle = 0.5F},
      {.section = "2L 50x5", .start = {1, 2, 3}, .dims = {60, 0, 0, 6, 12}},
      {.section = "ZS 1", .end = {500, 0, 0}},
      {.section = "W 1", .start = {0, 7, 0}, .dims = {300, 150, 12, 8}},
      {.section = "XPTO"},
      {.section = "W 2"},
      {.section = "ZS 1", .start = {-500, 0, 0}},
      {.section = "XPTO", .end = {0, 0, 1}},
  };
  EXPECT_EQ(withoutNumbers(exported(bars)), oneByOne(bars));
}

TEST(ExportBars, AnyNumberOfSections) {
  // More than are kept, then the first ones again.
  std::vector<ScriptedBar> bars(9000);
  for (std::size_t i = 0; i < bars.size(); ++i) {
    bars[i].section = "W " + std::to_string(i % 5000);
  }
  const Exported file = exported(bars);
  const Lines names = test::linesWith(file.lines, "perfil: ");
  ASSERT_EQ(names.size(), bars.size());
  const Lines profiles = test::linesWith(file.lines, "IFCISHAPEPROFILEDEF");
  ASSERT_EQ(profiles.size(), bars.size());
  for (std::size_t i = 0; i < bars.size(); ++i) {
    ASSERT_EQ(names[i], "angulo: 0, perfil: " + bars[i].section);
    ASSERT_NE(profiles[i].find(".AREA., '" + bars[i].section + "', #"), std::string::npos);
  }
}

// ---- The loop ----------------------------------------------------------------------------------

/// Says `count` bars but has `present`.
class CountingSource final : public BarSource {
 public:
  CountingSource(std::int32_t count, std::int32_t present) : count_(count), present_(present) {}

  std::int32_t unitCode() override {
    calls.push_back("unit");
    return 2;
  }
  std::int32_t barCount() override {
    calls.push_back("count");
    return count_;
  }
  bool next(std::int32_t index, SourceBar& bar) override {
    calls.push_back(std::to_string(index));
    return index < present_ && bars_.next(0, bar);
  }

  Lines calls;

 private:
  std::int32_t count_;
  std::int32_t present_;
  ListSource bars_{{ScriptedBar{}}};
};

TEST(ExportBars, AsksUnitCountThenEachBarOnce) {
  CountingSource model(2, 2);
  EXPECT_EQ(exported(model).elements().size(), 2U);
  EXPECT_EQ(model.calls, (Lines{"unit", "count", "0", "1"}));
}

TEST(ExportBars, ACountTooLargeEndsAtTheFirstMissingBar) {
  CountingSource model(2147483647, 2);
  EXPECT_EQ(exported(model).elements().size(), 2U);
  EXPECT_EQ(model.calls, (Lines{"unit", "count", "0", "1", "2"}));
}

TEST(ExportBars, ACountTooSmallLeavesBarsOut) {
  CountingSource model(1, 2);
  EXPECT_EQ(exported(model).elements().size(), 1U);
}

TEST(ExportBars, ZeroAndNegativeCountsAreNoBars) {
  for (const std::int32_t count : {0, -1, -2147483647 - 1}) {
    CountingSource model(count, 2);
    EXPECT_EQ(exported(model).storey(), "()");
    EXPECT_EQ(model.calls, (Lines{"unit", "count"}));
  }
}

TEST(ExportBars, OneBarKeepsWhatTheNextLeavesAlone) {
  // The slots live as long as the export: a second bar without answers repeats the first.
  class OnceSource final : public BarSource {
   public:
    std::int32_t unitCode() override { return 2; }
    std::int32_t barCount() override { return 2; }
    bool next(std::int32_t index, SourceBar& bar) override {
      return index > 0 || bars_.next(0, bar);
    }

   private:
    ListSource bars_{{ScriptedBar{.section = "W 1", .type = 3, .end = {700, 0, 0}}}};
  };
  OnceSource model;
  const Exported file = exported(model);
  EXPECT_EQ(test::linesWith(file.lines, "/* IfcBeam (0,0,0), (700,0,0)").size(), 2U);
  EXPECT_EQ(file.truss(), list(file.elements()));
}

TEST(ExportBars, AHostsExportFromItsQueries) {
  // The real source on a host's callback, down to the file.
  static test::LowRecords records(1);
  static const std::uint32_t record = records.put(0, test::recordOf("W 200", 1));
  const HostQuery query = [](std::uint64_t, std::int32_t index, std::int32_t code, void* slot) {
    const auto set = [slot](auto value) { std::memcpy(slot, &value, sizeof(value)); };
    switch (code) {
      case EXPORTIFC_LENGTH_UNIT: set(std::int32_t{1}); break;
      case EXPORTIFC_BAR_COUNT: set(std::int32_t{2}); break;
      case EXPORTIFC_BAR_TYPE: set(index == 0 ? 4.0F : 10.0F); break;
      case EXPORTIFC_BAR_VISIBLE: set(std::int32_t{1}); break;
      case EXPORTIFC_BAR_RECORD: set(record); break;
      case EXPORTIFC_SECTION_DIMS: set(SectionDims{200, 100, 10, 5}); break;
      case EXPORTIFC_BAR_START_NODE: set(std::int32_t{10}); break;
      case EXPORTIFC_BAR_END_NODE: set(std::int32_t{20}); break;
      case EXPORTIFC_NODE_COORDINATES:
        set(std::array<float, 3>{1.0F, 2.0F, static_cast<float>(index)});
        break;
      default: break;
    }
    return std::int32_t{0};
  };
  HostSource model(query, 0);
  const Exported file = exported(model);
  EXPECT_EQ(file.elements().size(), 1U) << "type 10 is skipped";
  EXPECT_EQ(test::linesWith(file.lines, "/* IfcBeam (10,20,100), (10,20,200)").size(), 1U);
  EXPECT_EQ(test::linesWith(file.lines, "angulo: 90, perfil: W 200").size(), 1U);
  EXPECT_EQ(test::linesWith(file.lines, "= IFCCOLUMN(").size(), 1U);
}

}  // namespace
}  // namespace exportifc
