#include "library/formats/batch_model.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "library/frame/model_error.h"
#include "model/batch_source.h"
#include "plugin/bar_export.h"
#include "tests/library/library_test.h"
#include "tests/support/batch_text.h"
#include "tests/support/random.h"
#include "tests/support/sinks.h"

namespace exportifc {
namespace {

using test::briefs;
using test::InLanguage;
using test::Lines;
using test::Random;
using test::operator+;  // NOLINT(misc-unused-using-decls): of two lists of lines

using Briefs = std::vector<std::string>;

Model read(const std::string& text) {
  std::stringbuf buffer(text);
  return readBatchModel(buffer);
}

std::string written(const Model& model) {
  test::Received received;
  test::MemorySink sink(received);
  writeBatchModel(model, sink);
  return received.bytes;
}

// ---- reading

TEST(ReadBatchModel, TakesWhatTheModuleTakes) {
  const Model model = read(test::textOf(
      test::headerLines("cm", "3") +
          test::barLines({.section = "W 200 100 8 6",
                          .start = {"0", "1,5", "-2"},
                          .end = {"3", "4", "5"},
                          .angle = "0.25"}) +
          test::barLines(
              {.section = "L 50x0x0x5", .start = {"3", "4", "5"}, .end = {"0", "1.5", "-2"}}) +
          test::barLines(
              {.section = "W 200 100 8 6", .start = {"0", "1.5", "-2"}, .end = {"6", "7", "8"}}),
      "\r\n"));
  EXPECT_EQ(model.format, ModelFormat::batch);
  EXPECT_EQ(model.title, "Modelo");
  EXPECT_EQ(model.unitCode, 1);
  EXPECT_EQ(model.announcedBars, 3);
  EXPECT_EQ(model.nodes, (std::vector<std::array<float, 3>>{{0, 1.5F, -2}, {3, 4, 5}, {6, 7, 8}}));
  ASSERT_EQ(model.sections.size(), 2U);
  EXPECT_EQ(model.sections[0].name, "W 200 100 8 6");
  EXPECT_EQ(model.sections[0].text, "W 200 100 8 6");
  EXPECT_EQ(model.sections[0].dims, (SectionDims{200, 100, 8, 6}));
  EXPECT_EQ(model.sections[0].givenDims, -1);
  EXPECT_EQ(model.sections[1].dims, (SectionDims{50, 0, 0}));
  ASSERT_EQ(model.bars.size(), 3U);
  EXPECT_EQ(model.bars[0].start, 0);
  EXPECT_EQ(model.bars[0].end, 1);
  EXPECT_EQ(model.bars[0].section, 0);
  EXPECT_EQ(model.bars[0].angle, 0.25F);
  EXPECT_EQ(model.bars[1].start, 1);
  EXPECT_EQ(model.bars[1].end, 0);
  EXPECT_EQ(model.bars[1].section, 1);
  EXPECT_EQ(model.bars[2].end, 2);
  EXPECT_EQ(model.bars[2].section, 0);
  for (const ModelBar& bar : model.bars) {
    EXPECT_EQ(bar.type, 0);
    EXPECT_TRUE(bar.visible);
    EXPECT_EQ(bar.quarterTurns, 0);
  }
  EXPECT_EQ(briefs(model.found), Briefs());
  EXPECT_EQ(model.soundBars, static_cast<std::size_t>(-1));
}

TEST(ReadBatchModel, KeepsTheSignOfZeroAsTheModuleDoes) {
  const Model model =
      read(test::textOf(test::headerLines("mm", "2") + test::barLines({.start = {"-0", "0", "0"}}) +
                            test::barLines({.start = {"0", "0", "0"}, .end = {"-0", "0", "0"}}),
                        "\r\n"));
  const auto signOfX = [&](std::int32_t node) {
    return std::signbit(model.nodes[static_cast<std::size_t>(node)][0]);
  };
  EXPECT_TRUE(signOfX(model.bars[0].start));
  EXPECT_FALSE(signOfX(model.bars[1].start));
  EXPECT_EQ(model.bars[1].end, model.bars[0].start);
}

TEST(ReadBatchModel, ReadsTextsOfHosts) {
  const Model model =
      read("1\n1\nGalp\xE3o\nm\n2\n" + test::textOf(test::barLines({.section = "Viga \xE7 1"})) +
           test::textOf(test::barLines({.section = "Viga ç 1"})));
  EXPECT_EQ(model.title, "Galpão");
  ASSERT_EQ(model.sections.size(), 2U);  // other bytes are another section,
  EXPECT_EQ(model.sections[0].text, "Viga ç 1");
  EXPECT_EQ(model.sections[1].text, "Viga ç 1");
  EXPECT_EQ(model.sections[0].name, "Viga ç 1");
  EXPECT_EQ(model.sections[1].name, "Viga ç 1'");  // and need another name
}

TEST(ReadBatchModel, ATextEndsAtItsFirstNulButItsNumbersGoOn) {
  const Model model = read(test::batchModel(
      {{.section = std::string("W 200 100\0 8 6", 14)}, {.section = "W 200 100"}}));
  ASSERT_EQ(model.sections.size(), 2U);
  EXPECT_EQ(model.sections[0].text, "W 200 100");
  EXPECT_EQ(model.sections[0].dims, parseSectionDims(std::string_view("W 200 100\0 8 6", 14)));
  EXPECT_EQ(model.sections[1].name, "W 200 100'");
}

TEST(ReadBatchModel, KeepsWhatItTakesOtherwise) {
  const Model model = read(
      test::textOf(test::headerLines("MM", "2") + test::barLines({.start = {"abc", "0", "0"}})));
  EXPECT_EQ(model.unitCode, -1);
  EXPECT_EQ(model.announcedBars, 2);
  EXPECT_EQ(model.bars.size(), 1U);
  EXPECT_EQ(model.nodes[0][0], 0.0F);
  EXPECT_EQ(briefs(model.found), Briefs({"warning unknown-unit", "error not-a-number"}));
}

TEST(ReadBatchModel, KnowsWhereTheBarsEnd) {
  Lines lines = test::headerLines("m", "2") + test::barLines({}) + test::barLines({});
  lines.resize(5 + 12 + 3);
  const Model model = read(test::textOf(lines));
  EXPECT_EQ(briefs(model.found), Briefs({"error bar-cut"}));
  EXPECT_EQ(model.soundBars, 1U);
  EXPECT_EQ(model.bars.size(), 2U);
}

TEST(ReadBatchModel, LooksAtAllLinesOfALongFile) {
  std::vector<test::BarText> bars(2000, test::BarText{});
  bars.back().start[0] = "abc";
  const Model model = read(test::batchModel(bars));
  ASSERT_EQ(briefs(model.found), Briefs({"error not-a-number"}));
  EXPECT_EQ(model.found[0].place.line, 5 + 12 * 1999 + 2);
  // Those that nobody announced, too.
  std::string more = test::batchModel(bars);
  more.replace(more.find("2000"), 4, "1500");
  EXPECT_EQ(briefs(read(more).found), Briefs({"warning more-bars"}));
}

std::string refusal(const std::string& text) {
  try {
    read(text);
  } catch (const ModelError& error) {
    EXPECT_STREQ(error.problem().code, "not-a-model");
    return std::to_string(error.problem().place.line) + ": " + error.what();
  }
  return "";
}

TEST(ReadBatchModel, RefusesWhatIsNone) {
  EXPECT_EQ(refusal("Some text\nof several\nlines.\n"),
            "0: not a model file: it does not begin with \"{\" as a JSON model does, and its lines "
            "4 and 5 are not a unit (m, cm, mm) and a bar count as in a batch text file");
  EXPECT_EQ(refusal("1\n2\nTitle\nm\nnone\n"), "");  // the unit says what it is,
  EXPECT_EQ(refusal("1\n2\nTitle\nfoot\n1\n"), "");  // or the count does
  EXPECT_EQ(refusal("1\nTitle\nmm\n0\n").substr(0, 40), "3: the unit stands in line 3 instead of ");
}

// ---- places

std::int64_t lineOf(const Problem& problem) {
  std::vector<Problem> problems{problem};
  locateInBatch(nullptr, problems, {});
  EXPECT_EQ(problems[0].pointer, "");
  return problems[0].place.line;
}

TEST(LocateInBatch, CountsLinesFromPointers) {
  EXPECT_EQ(lineOf({.pointer = "/title"}), 3);
  EXPECT_EQ(lineOf({.pointer = "/unit"}), 4);
  EXPECT_EQ(lineOf({.pointer = "/bars"}), 5);
  EXPECT_EQ(lineOf({.pointer = "/bars/0"}), 6);
  EXPECT_EQ(lineOf({.pointer = "/bars/0/nodes"}), 7);
  EXPECT_EQ(lineOf({.pointer = "/bars/0/nodes/0"}), 7);
  EXPECT_EQ(lineOf({.pointer = "/bars/0/nodes/0/0"}), 7);
  EXPECT_EQ(lineOf({.pointer = "/bars/0/nodes/0/1"}), 8);
  EXPECT_EQ(lineOf({.pointer = "/bars/0/nodes/0/2"}), 9);
  EXPECT_EQ(lineOf({.pointer = "/bars/0/nodes/1"}), 10);
  EXPECT_EQ(lineOf({.pointer = "/bars/0/nodes/1/0"}), 10);
  EXPECT_EQ(lineOf({.pointer = "/bars/0/nodes/1/1"}), 11);
  EXPECT_EQ(lineOf({.pointer = "/bars/0/nodes/1/2"}), 12);
  EXPECT_EQ(lineOf({.pointer = "/bars/0/angle"}), 13);
  EXPECT_EQ(lineOf({.pointer = "/bars/0/section"}), 14);
  EXPECT_EQ(lineOf({.pointer = "/bars/10/angle"}), 13 + 120);
}

TEST(LocateInBatch, EachBarHasTheTextOfItsSection) {
  EXPECT_EQ(lineOf({.pointer = "/sections/W/text", .firstBar = 2}), 14 + 24);
  EXPECT_EQ(lineOf({.pointer = "/sections/W/text", .firstBar = 0}), 14);
  EXPECT_EQ(lineOf({.pointer = "/sections/W/text"}), 0);  // used by no bar
}

TEST(LocateInBatch, LeavesAloneWhatHasAPlaceOrNone) {
  EXPECT_EQ(lineOf({.pointer = "/unit", .place = {.line = 9}}), 9);
  EXPECT_EQ(lineOf({}), 0);
  EXPECT_EQ(lineOf({.pointer = "/bars/0/type"}), 0);
  EXPECT_EQ(lineOf({.pointer = "/bars/x/angle", .firstBar = 1}), 14 + 12);
  // Without a pointer a bar has its own line all the same.
  EXPECT_EQ(lineOf({.firstBar = 3}), 0);
}

// ---- writing

TEST(WriteBatchModel, WritesTwelveLinesABar) {
  Model model = test::soundModel();
  model.title = "Galpão";
  model.bars[1].angle = 0.1F;
  model.bars[1].quarterTurns = 2;
  EXPECT_EQ(
      written(model),
      "3\r\n2\r\nGalpão\r\nmm\r\n2\r\n"
      "Barra 1\r\n0\r\n0\r\n0\r\n0\r\n0\r\n3000\r\n0\r\nW 200 100 8 6\r\n\r\n1\r\n\r\n"
      "Barra 2\r\n0\r\n0\r\n3000\r\n5000\r\n0\r\n3000\r\n3.2415\r\nEC 80 0 0 12\r\n\r\n2\r\n\r\n");
}

TEST(WriteBatchModel, LeavesOutWhatIsNotExported) {
  Model model = test::soundModel();
  model.bars[0].type = 10;
  model.bars[1].visible = false;  // becomes visible
  const std::string text = written(model);
  EXPECT_EQ(text.substr(0, 27), "3\r\n2\r\n\r\nmm\r\n1\r\nBarra 2\r\n0\r\n");
  EXPECT_EQ(read(text).bars.size(), 1U);
}

TEST(WriteBatchModel, AnUnknownUnitIsAnotherUnknownOne) {
  for (const std::int32_t unit : {-1, 0, 1, 2, 3}) {
    Model model = test::soundModel();
    model.unitCode = unit;
    EXPECT_EQ(read(written(model)).unitCode, unit < 3 ? unit : -1);
  }
}

// ---- what is lost

TEST(LossesInBatch, OfASoundModelAreNone) {
  const Losses losses = lossesInBatch(test::soundModel());
  EXPECT_EQ(losses.obstacle, "");
  EXPECT_EQ(losses.lines, std::vector<std::string>());
}

TEST(LossesInBatch, AreSaidOnceForEachKind) {
  Model model = test::soundModel();
  model.bars = {{.start = 0, .end = 1, .type = 10, .visible = false},
                {.start = 0, .end = 1, .quarterTurns = 1, .type = 4, .visible = false},
                {.start = 0, .end = 1, .quarterTurns = -1, .type = 11},
                {.start = 0, .end = 1}};
  model.sections[0].dims[9] = 1;
  model.sections[1].name = "viga";
  model.barNames = {"P1", "", "", "P4"};
  model.layers = {"Level 1"};
  model.barLayers = {-1, 0, -1, -1};
  model.materials = {{.name = "S355", .density = 7850}};
  // NOLINTBEGIN(bugprone-suspicious-missing-comma): long texts
  EXPECT_EQ(
      lossesInBatch(model).lines,
      std::vector<std::string>(
          {"section \"W 200 100 8 6\": the batch text file has no dimensions of their own; "
           "they will be read from \"W 200 100 8 6\" and differ",
           "1 bar of type 10 (not-exported) is left out, the first is bar 1",
           "the batch text file has no types: 2 bars lose theirs, the first is bar 2; all "
           "their elements go directly to the storey",
           "the batch text file has no visibility: 1 invisible bar becomes visible, the first "
           "is bar 2",
           "quarter turns are added to the angle in 2 bars, the first is bar 2",
           "the name of 1 section is lost: a batch text file knows only its text",
           "the batch text file has no names of bars: 2 bars lose theirs",
           "the batch text file has no layers: 1 bar loses its",
           "the batch text file has no materials: 1 is lost with its density"}));
  // NOLINTEND(bugprone-suspicious-missing-comma)
  const InLanguage portuguese(Language::portuguese);
  const std::vector<std::string> lines = lossesInBatch(model).lines;
  ASSERT_EQ(lines.size(), 9U);
  EXPECT_EQ(lines[5], "o nome de 1 seção se perde: o arquivo de texto só conhece seu texto");
  EXPECT_EQ(lines[8], "o arquivo de texto não tem materiais: 1 se perde com sua densidade");
}

TEST(LossesInBatch, TextsOfSeveralLinesStandInTheWay) {
  for (const std::string& end :
       {std::string("\n"), std::string("\r"), std::string("\x1A"), std::string(1, '\0')}) {
    Model model = test::soundModel();
    model.title = "a" + end;
    EXPECT_EQ(lossesInBatch(model).obstacle,
              "the title does not fit one line of a batch text file");
    model.sections[1].text = "EC" + end;
    EXPECT_EQ(lossesInBatch(model).obstacle,
              "section \"EC 80 0 0 12\": its text does not fit one line of a batch text file");
  }
  Model model = test::soundModel();
  model.title = "a\tb\vc";
  EXPECT_EQ(lossesInBatch(model).obstacle, "");
}

// ---- both ways

float anyFloat(Random& random) {
  const auto value = std::bit_cast<float>(static_cast<std::uint32_t>(random.bits()));
  return std::isfinite(value) ? value : 1.5F;
}

/// Any model that the file can hold, losses apart.
Model anyModel(Random& random) {
  Model model;
  constexpr std::string_view pieces[] = {"W", " 200", " 8,5", "x", "'", "ç", "€", "\t", "/", ""};
  const auto text = [&] {
    std::string one;
    for (std::int64_t count = random.integer(0, 5); count > 0; --count) {
      one += pieces[random.integer(0, 9)];
    }
    return one;
  };
  model.title = text();
  model.unitCode = static_cast<std::int32_t>(random.integer(0, 2));
  for (std::int64_t i = random.integer(1, 5); i > 0; --i) {
    model.nodes.push_back({anyFloat(random), anyFloat(random), random.number(-50, 50)});
  }
  for (std::int64_t i = random.integer(1, 4); i > 0; --i) {
    ModelSection section = test::sectionOf(text());
    section.name = random.once(3) ? text() : section.text;
    section.dims[1] += random.once(5) ? 1.0F : 0.0F;
    model.sections.push_back(section);
  }
  for (std::int64_t i = random.integer(1, 6); i > 0; --i) {
    const auto node = [&] {
      return static_cast<std::int32_t>(
          random.integer(0, static_cast<std::int64_t>(model.nodes.size()) - 1));
    };
    model.bars.push_back({
        .start = node(),
        .end = node(),
        .section = static_cast<std::int32_t>(
            random.integer(0, static_cast<std::int64_t>(model.sections.size()) - 1)),
        .angle = random.once(2) ? 0.0F : anyFloat(random),
        .quarterTurns = random.once(2) ? 0 : static_cast<std::int32_t>(random.integer(-5, 5)),
        .type = static_cast<std::uint8_t>(random.once(2) ? 0 : random.integer(0, 11)),
        .visible = !random.once(4),
    });
  }
  return model;
}

TEST(WriteBatchModel, IsReadAsTheSameModelButForTheLosses) {
  for (int seed = 0; seed < test::rounds(3000); ++seed) {
    Random random(static_cast<std::uint64_t>(seed));
    const Model model = anyModel(random);
    const std::string text = written(model);
    Model again = read(text);
    ASSERT_EQ(again.title, model.title);
    ASSERT_EQ(again.unitCode, model.unitCode);
    std::size_t next = 0;
    for (const ModelBar& bar : model.bars) {
      if (bar.type == 10) {
        continue;  // a loss
      }
      ASSERT_LT(next, again.bars.size());
      const ModelBar& found = again.bars[next++];
      const auto point = [](const Model& of, std::int32_t node) {
        return of.nodes[static_cast<std::size_t>(node)];
      };
      ASSERT_EQ(point(again, found.start), point(model, bar.start)) << text;
      ASSERT_EQ(point(again, found.end), point(model, bar.end)) << text;
      ASSERT_EQ(found.angle, sectionAngle(bar.quarterTurns, bar.angle)) << text;
      const ModelSection& section = model.sections[static_cast<std::size_t>(bar.section)];
      const ModelSection& sectionFound = again.sections[static_cast<std::size_t>(found.section)];
      ASSERT_EQ(sectionFound.text, section.text);
      ASSERT_EQ(sectionFound.dims, parseSectionDims(section.text));
    }
    ASSERT_EQ(next, again.bars.size());
    ASSERT_EQ(again.announcedBars, static_cast<std::int32_t>(next));
    // What was lost once is not lost again.
    ASSERT_EQ(lossesInBatch(again).obstacle, "");
    const Model third = read(written(again));
    ASSERT_EQ(third.nodes, again.nodes);
    ASSERT_EQ(third.sections.size(), again.sections.size());
    ASSERT_EQ(third.bars.size(), again.bars.size());
  }
}

TEST(LossesInBatch, NameEverythingThatIsNotReadBack) {
  for (int seed = 0; seed < test::rounds(3000); ++seed) {
    Random random(static_cast<std::uint64_t>(seed) + 100000);
    const Model model = anyModel(random);
    std::size_t kinds = 0;
    const auto anyBar = [&](auto lost) {
      return std::any_of(model.bars.begin(), model.bars.end(), lost) ? 1U : 0U;
    };
    kinds += anyBar([](const ModelBar& bar) { return bar.type == 10; });
    kinds += anyBar([](const ModelBar& bar) { return bar.type != 10 && bar.type != 0; });
    kinds += anyBar([](const ModelBar& bar) { return bar.type != 10 && !bar.visible; });
    kinds += anyBar([](const ModelBar& bar) { return bar.type != 10 && bar.quarterTurns != 0; });
    bool isRenamed = false;
    for (const ModelSection& section : model.sections) {
      kinds += section.dims == parseSectionDims(section.text) ? 0 : 1;
      isRenamed = isRenamed || section.name != section.text;
    }
    ASSERT_EQ(lossesInBatch(model).lines.size(), kinds + (isRenamed ? 1 : 0));
  }
}

}  // namespace
}  // namespace exportifc
