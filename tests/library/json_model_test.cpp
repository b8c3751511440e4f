#include "library/formats/json_model.h"

#include <bit>
#include <cmath>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "library/frame/model_error.h"
#include "library/frame/problem_text.h"
#include "model/batch_source.h"
#include "tests/library/library_test.h"
#include "tests/support/random.h"
#include "tests/support/sinks.h"

namespace exportifc {
namespace {

using test::InLanguage;
using test::Random;

Model read(const std::string& text) {
  std::stringbuf buffer(text);
  return readJsonModel(buffer);
}

std::string written(const Model& model) {
  test::Received received;
  test::MemorySink sink(received);
  writeJsonModel(model, sink);
  return received.bytes;
}

/// The problem with which the reading of the text ends, with its place.
Problem refusalOf(const std::string& text) {
  try {
    read(text);
  } catch (const ModelError& error) {
    std::vector<Problem> problems{error.problem()};
    std::stringbuf buffer(text);
    locateInJson(&buffer, problems, error.readTo());
    EXPECT_EQ(error.what(), problems[0].message);
    return problems[0];
  }
  ADD_FAILURE() << "it is read: " << text;
  return {};
}

/// "1:10: /unit: 5 is not allowed here".
std::string shown(const Problem& problem) {
  return std::to_string(problem.place.line) + ":" + std::to_string(problem.place.column) + ": " +
         withPointer(problem, problem.message);
}

// ---- reading

TEST(ReadJsonModel, TakesTheModelAsItStands) {
  const Model model = read(R"({
    "$schema": "model.schema.json", "title": "Galpão",
    "unit": "cm",
    "nodes": [[0, 0, 0], [1.5, -2e2, 3]],
    "sections": {"viga": {"text": "W 200 100 8 6"},
                 "pilar": {"dims": [50, 0, 0, 5.5], "text": "L 50x5"}},
    "bars": [
      {"nodes": [0, 1], "section": "viga"},
      {"type": "column", "angle": 0.25, "section": "pilar", "visible": false, "nodes": [1, 0],
       "quarterTurns": -3},
      {"nodes": [0, 1], "section": "viga", "type": 11, "visible": true}
    ]})");
  EXPECT_EQ(model.format, ModelFormat::json);
  EXPECT_EQ(model.title, "Galpão");
  EXPECT_EQ(model.unitCode, 1);
  EXPECT_EQ(model.nodes, (std::vector<std::array<float, 3>>{{0, 0, 0}, {1.5F, -200, 3}}));
  ASSERT_EQ(model.sections.size(), 2U);
  EXPECT_EQ(model.sections[0].name, "viga");
  EXPECT_EQ(model.sections[0].text, "W 200 100 8 6");
  EXPECT_EQ(model.sections[0].dims, (SectionDims{200, 100, 8, 6}));
  EXPECT_EQ(model.sections[0].givenDims, -1);
  EXPECT_TRUE(model.sections[0].defined);
  EXPECT_EQ(model.sections[1].dims, (SectionDims{50, 0, 0, 5.5F}));
  EXPECT_EQ(model.sections[1].givenDims, 4);
  ASSERT_EQ(model.bars.size(), 3U);
  EXPECT_EQ(model.bars[0].start, 0);
  EXPECT_EQ(model.bars[0].end, 1);
  EXPECT_EQ(model.bars[0].section, 0);
  EXPECT_EQ(model.bars[0].type, 0);
  EXPECT_TRUE(model.bars[0].visible);
  EXPECT_EQ(model.bars[0].angle, 0.0F);
  EXPECT_EQ(model.bars[0].quarterTurns, 0);
  EXPECT_EQ(model.bars[1].start, 1);
  EXPECT_EQ(model.bars[1].end, 0);
  EXPECT_EQ(model.bars[1].section, 1);
  EXPECT_EQ(model.bars[1].type, 4);
  EXPECT_FALSE(model.bars[1].visible);
  EXPECT_EQ(model.bars[1].angle, 0.25F);
  EXPECT_EQ(model.bars[1].quarterTurns, -3);
  EXPECT_EQ(model.bars[2].type, 11);
  EXPECT_EQ(model.bars[2].visible, true);
  EXPECT_EQ(model.announcedBars, 3);
  EXPECT_TRUE(model.found.empty());
}

TEST(ReadJsonModel, TakesMaterialsAndNames) {
  const Model model = read(R"({
    "unit": "m", "nodes": [[0, 0, 0], [0, 0, 3]],
    "sections": {"a": {"text": "W 200 100 8 6", "material": "S355"},
                 "b": {"material": "C24", "text": "RET 200 100"}, "c": {"text": "RED 20"}},
    "materials": {"C24": {"density": 4.2e2}, "S355": {}},
    "bars": [
      {"nodes": [0, 1], "section": "a"},
      {"nodes": [0, 1], "section": "b", "name": "P1", "layer": "Level 1"},
      {"nodes": [0, 1], "section": "c", "name": ""},
      {"nodes": [0, 1], "section": "c", "name": "", "layer": "Level 2"},
      {"nodes": [0, 1], "section": "c", "name": "ç", "layer": "Level 1"},
      {"nodes": [0, 1], "section": "c", "layer": ""}
    ]})");
  ASSERT_EQ(model.materials.size(), 2U);
  EXPECT_EQ(model.materials[0].name, "S355");  // as sections name them
  EXPECT_EQ(model.materials[0].density, 0.0);
  EXPECT_TRUE(model.materials[0].defined);
  EXPECT_EQ(model.materials[1].name, "C24");
  EXPECT_EQ(model.materials[1].density, 420.0);
  EXPECT_EQ(model.sections[0].material, 0);
  EXPECT_EQ(model.sections[1].material, 1);
  EXPECT_EQ(model.sections[2].material, -1);
  EXPECT_EQ(model.barNames, (std::vector<std::string>{"", "P1", "", "", "ç", ""}));
  EXPECT_EQ(model.layers, (std::vector<std::string>{"Level 1", "Level 2"}));
  EXPECT_EQ(model.barLayers, (std::vector<std::int32_t>{-1, 0, -1, 1, 0, -1}));
}

TEST(ReadJsonModel, TakesSectionsFromTheCatalogue) {
  const Model model = read(R"({"unit": "m", "nodes": [], "bars": [], "sections": {
    "pilar": {"catalogue": "he180b"}, "viga": {"text": "HE 180 180 14 8.5"}}})");
  EXPECT_EQ(model.sections[0].name, "pilar");
  EXPECT_EQ(model.sections[0].catalogue, "HEB 180");
  EXPECT_EQ(model.sections[0].text, "HE 180 180 14 8.5");
  EXPECT_EQ(model.sections[0].dims, (SectionDims{180, 180, 14, 8.5F}));
  EXPECT_EQ(model.sections[0].givenDims, -1);
  EXPECT_EQ(model.sections[1].catalogue, "");
  EXPECT_EQ(model.sections[1].dims, model.sections[0].dims);
}

TEST(ReadJsonModel, KeepsNothingForNamesThatAreNotThere) {
  const Model model = read(R"({"unit": "m", "nodes": [[0, 0, 0], [0, 0, 3]], "materials": {},
    "sections": {"a": {"text": "RED 20"}},
    "bars": [{"nodes": [0, 1], "section": "a"}, {"nodes": [0, 1], "section": "a", "name": "", "layer": ""}]})");
  EXPECT_EQ(model.bars.size(), 2U);
  EXPECT_EQ(model.barNames.capacity(), 0U);
  EXPECT_EQ(model.barLayers.capacity(), 0U);
  EXPECT_TRUE(model.layers.empty());
  EXPECT_TRUE(model.materials.empty());
}

TEST(ReadJsonModel, AMaterialThatIsOnlyNamedIsNotDefined) {
  const Model model = read(R"({"unit": "m", "nodes": [], "bars": [],
    "sections": {"a": {"text": "RED 20", "material": "S355"}}, "materials": {"S235": {}}})");
  ASSERT_EQ(model.materials.size(), 2U);
  EXPECT_FALSE(model.materials[0].defined);
  EXPECT_TRUE(model.materials[1].defined);
}

TEST(ReadJsonModel, BarsMayStandBeforeWhatTheyReferTo) {
  const Model model = read(R"({"bars": [{"section": "b", "nodes": [7, -1]},
                                        {"section": "c", "nodes": [0, 0]}],
    "sections": {"a": {"text": "A"}, "b": {"text": "B 1"}}, "nodes": [], "unit": "mm"})");
  ASSERT_EQ(model.sections.size(), 3U);
  EXPECT_EQ(model.sections[0].name, "b");
  EXPECT_TRUE(model.sections[0].defined);
  EXPECT_EQ(model.sections[0].text, "B 1");
  EXPECT_EQ(model.sections[1].name, "c");
  EXPECT_FALSE(model.sections[1].defined);
  EXPECT_EQ(model.sections[2].name, "a");
  EXPECT_EQ(model.bars[0].section, 0);
  EXPECT_EQ(model.bars[1].section, 1);
  EXPECT_EQ(model.bars[0].start, 7);
  EXPECT_EQ(model.bars[0].end, -1);
}

TEST(ReadJsonModel, KnowsEveryUnitAndType) {
  const auto withUnit = [](const std::string& unit) {
    return read("{\"unit\": \"" + unit + "\", \"nodes\": [], \"sections\": {}, \"bars\": []}");
  };
  EXPECT_EQ(withUnit("m").unitCode, 0);
  EXPECT_EQ(withUnit("cm").unitCode, 1);
  EXPECT_EQ(withUnit("mm").unitCode, 2);
  for (std::size_t type = 0; type < barTypeCount; ++type) {
    for (const std::string& word :
         {std::to_string(type), "\"" + std::string(barTypeNames[type]) + "\""}) {
      const Model model = read(
          "{\"unit\": \"m\", \"nodes\": [], \"sections\": {}, \"bars\": [{\"nodes\": [0, 1], "
          "\"section\": \"a\", \"type\": " +
          word + "}]}");
      EXPECT_EQ(model.bars[0].type, type) << word;
    }
  }
}

TEST(ReadJsonModel, TheMarkOfUtf8IsNoCharacter) {
  EXPECT_EQ(
      read("\xEF\xBB\xBF{\"unit\": \"m\", \"nodes\": [], \"sections\": {}, \"bars\": []}").unitCode,
      0);
  EXPECT_EQ(refusalOf("\xEF\xBB\xBF{\"unit\": 5}").place.column, 10);
  EXPECT_EQ(refusalOf("\xEF\xBB\xBF#").place.column, 1);
}

TEST(ReadJsonModel, EmptyDimensionsAreGivenOnes) {
  const Model model = read(
      R"({"unit": "m", "nodes": [], "bars": [], "sections": {"a": {"text": "W 200", "dims": []}}})");
  EXPECT_EQ(model.sections[0].givenDims, 0);
  EXPECT_EQ(model.sections[0].dims, SectionDims{});
}

TEST(ReadJsonModel, KeepsNumbersInSinglePrecision) {
  const Model model = read(
      R"({"unit": "m", "nodes": [[3.4028234663852886e38, -3.4028234663852886e38, 1e-50],
          [16777217, 0.1, -0.0]], "sections": {}, "bars": []})");
  EXPECT_EQ(model.nodes[0][0], std::numeric_limits<float>::max());
  EXPECT_EQ(model.nodes[0][1], -std::numeric_limits<float>::max());
  EXPECT_EQ(model.nodes[0][2], 0.0F);
  EXPECT_EQ(model.nodes[1][0], 16777216.0F);
  EXPECT_EQ(model.nodes[1][1], 0.1F);
  EXPECT_TRUE(std::signbit(model.nodes[1][2]));
}

// ---- refusing

/// A text, with "@" before what is refused, and what is said of it.
struct Refusal {
  std::string text;
  std::string shown;
};

void PrintTo(const Refusal& row, std::ostream* stream) { *stream << row.text; }

class JsonRefusals : public testing::TestWithParam<Refusal> {};

TEST_P(JsonRefusals, NameTheValueAndItsPlace) {
  std::string text = GetParam().text;
  const std::size_t mark = text.find('@');
  ASSERT_NE(mark, std::string::npos);
  text.erase(mark, 1);
  const Problem problem = refusalOf(text);
  EXPECT_EQ(withPointer(problem, problem.message), GetParam().shown);
  EXPECT_EQ(problem.place, test::placeAt(text, mark));
  EXPECT_STREQ(problem.code, "unreadable");
  EXPECT_EQ(problem.severity, Severity::error);
}

/// A model with one thing in place of another.
std::string unitOf(const std::string& value) {
  return "{\"unit\": " + value + ", \"nodes\": [], \"sections\": {}, \"bars\": []}";
}
std::string node(const std::string& value) {
  return "{\"unit\": \"m\", \"nodes\": [" + value + "], \"sections\": {}, \"bars\": []}";
}
std::string section(const std::string& value) {
  return "{\"unit\": \"m\", \"nodes\": [], \"sections\": {\"a/b\": " + value + "}, \"bars\": []}";
}
std::string bar(const std::string& value) {
  return "{\"unit\": \"m\", \"nodes\": [], \"sections\": {}, \"bars\": [\n" + value + "]}";
}
std::string barWith(const std::string& more) {
  return bar("{\"nodes\": [0, 1], \"section\": \"a\", " + more + "}");
}

const std::string types =
    "0 to 11 or one of member, frame-beam, floor-beam, truss-chord, column, bracing, crane-beam, "
    "wind-column, stair, truss-web, not-exported, other";

INSTANTIATE_TEST_SUITE_P(
    Model, JsonRefusals,
    testing::ValuesIn(std::vector<Refusal>{
        {"@1", "a model is an object {…}"},
        {"\n @\"a\"", "a model is an object {…}"},
        {"@null", "a model is an object {…}"},
        {"@[]", "an array […] is not allowed here; allowed: an object {…}"},
        {"@{}", "the key \"unit\" is missing"},
        {R"(@{"nodes": [], "unit": "m", "bars": []})", "the key \"sections\" is missing"},
        {R"(@{"unit": "m", "sections": {}, "bars": []})", "the key \"nodes\" is missing"},
        {R"(@{"unit": "m", "sections": {}, "nodes": []})", "the key \"bars\" is missing"},
        {R"({@"units": "m"})",
         "/units: unknown key \"units\"; allowed: unit, nodes, sections, bars, title, "
         "$schema, materials; did you mean unit?"},
        {R"({@"a/b": "m"})",
         "/a~1b: unknown key \"a/b\"; allowed: unit, nodes, sections, bars, title, $schema, "
         "materials"},
        {R"({"unit": "m", @"unit": "m"})", "/unit: the key \"unit\" stands twice"},
        {R"({"unit": "m", "nodes": [], "sections": {}, @"unit": "m"})",
         "/unit: the key \"unit\" stands twice"},
        {R"({"bars": [{"section": "a", "nodes": [0, 1]}], @"bars": []})",
         "/bars: the key \"bars\" stands twice"},
        {unitOf("@\"in\""), "/unit: \"in\" is not allowed here; allowed: m, cm, mm"},
        {unitOf("@\"MM\""),
         "/unit: \"MM\" is not allowed here; allowed: m, cm, mm; did you mean mm?"},
        {unitOf("@1"), "/unit: 1 is not allowed here; allowed: m, cm, mm"},
        {unitOf("@[\"m\"]"), "/unit: an array […] is not allowed here; allowed: m, cm, mm"},
        {R"({"title": @5})", "/title: 5 is not allowed here; allowed: a text"},
        {R"({"title": @{}})", "/title: an object {…} is not allowed here; allowed: a text"},
        {R"({"$schema": @true})", "/$schema: true is not allowed here; allowed: a text"},
        {R"({"nodes": @"a"})", "/nodes: \"a\" is not allowed here; allowed: an array […]"},
        {R"({"nodes": @{}})", "/nodes: an object {…} is not allowed here; allowed: an array […]"},
        {R"({"bars": @false})", "/bars: false is not allowed here; allowed: an array […]"},
        {R"({"sections": @1.50})",
         "/sections: 1.50 is not allowed here; allowed: an object with a section for each "
         "name"},
        {R"({"sections": @[]})",
         "/sections: an array […] is not allowed here; allowed: an object with a section for "
         "each name"},
    }));

INSTANTIATE_TEST_SUITE_P(
    Nodes, JsonRefusals,
    testing::ValuesIn(std::vector<Refusal>{
        {node("@0"), "/nodes/0: 0 is not allowed here; allowed: [x, y, z]"},
        {node("[0, 0, 0], @{}"), "/nodes/1: an object {…} is not allowed here; allowed: [x, y, z]"},
        {node("@[0, 0]"), "/nodes/0: a node has three coordinates [x, y, z], this one 2"},
        {node("@[]"), "/nodes/0: a node has three coordinates [x, y, z], this one 0"},
        {node("@[0, 0, 0, 0]"),
         "/nodes/0: a node has three coordinates [x, y, z], this one 4; a decimal comma? "
         "Decimals stand behind a point: 1.5"},
        {node("@[0,5, 0,5, 0,5]"),
         "/nodes/0: a node has three coordinates [x, y, z], this one 6; a decimal comma? "
         "Decimals stand behind a point: 1.5"},
        {node("@[0, 0, 0, 0, 0, 0, 0]"),
         "/nodes/0: a node has three coordinates [x, y, z], this one 7"},
        {node("[0, @null, 0]"), "/nodes/0/1: null is not allowed here; allowed: a number"},
        {node("[0, 0, @\"0\"]"), "/nodes/0/2: \"0\" is not allowed here; allowed: a number"},
        {node("[0, 0, 0], [@1e39, 0, 0]"),
         "/nodes/1/0: 1e39 is too large: numbers must lie within ±3.4e38"},
        {node("[0, @-3.4028235e38, 0]"),
         "/nodes/0/1: -3.4028235e38 is too large: numbers must lie within ±3.4e38"},
        {node("[0, 0, @1e400]"), "/nodes/0/2: 1e400 is too large: numbers must lie within ±3.4e38"},
    }));

INSTANTIATE_TEST_SUITE_P(
    Sections, JsonRefusals,
    testing::ValuesIn(std::vector<Refusal>{
        {section("@5"),
         "/sections/a~1b: 5 is not allowed here; allowed: a section {\"text\": \"…\"}"},
        {section("@[]"),
         "/sections/a~1b: an array […] is not allowed here; allowed: a section {\"text\": "
         "\"…\"}"},
        {section("@{}"), "/sections/a~1b: the section has neither \"text\" nor \"catalogue\""},
        {section("@{\"dims\": []}"),
         "/sections/a~1b: the section has neither \"text\" nor \"catalogue\""},
        {section("{\"catalogue\": @180}"),
         "/sections/a~1b/catalogue: 180 is not allowed here; allowed: a text"},
        {section("{\"catalogue\": @\"HEB 185\"}"),
         "/sections/a~1b/catalogue: the catalogue has no section \"HEB 185\"; did you mean HEB "
         "180, HEB 200, HEB 160, HEB 220?"},
        {section("{\"catalogue\": @\"column\"}"),
         "/sections/a~1b/catalogue: the catalogue has no section \"column\"; exportifc sections "
         "lists all"},
        {section("@{\"catalogue\": \"heb180\", \"text\": \"W\"}"),
         "/sections/a~1b: the catalogue gives text and dimensions of \"HEB 180\": \"text\" and "
         "\"dims\" cannot stand beside \"catalogue\""},
        {section("@{\"dims\": [1], \"catalogue\": \"HEB 180\"}"),
         "/sections/a~1b: the catalogue gives text and dimensions of \"HEB 180\": \"text\" and "
         "\"dims\" cannot stand beside \"catalogue\""},
        {section("{\"catalogue\": \"HEB 180\", @\"pilar\": {\"text\": \"W\"}}"),
         "/sections/a~1b/pilar: unknown key \"pilar\"; is the section \"a/b\" closed by a "
         "\"}\" before it?"},
        {section("{\"text\": @5}"), "/sections/a~1b/text: 5 is not allowed here; allowed: a text"},
        {section("{\"text\": @{}}"),
         "/sections/a~1b/text: an object {…} is not allowed here; allowed: a text"},
        {section("{\"text\": @[]}"),
         "/sections/a~1b/text: an array […] is not allowed here; allowed: a text"},
        {section("{\"dims\": @\"5\"}"),
         "/sections/a~1b/dims: \"5\" is not allowed here; allowed: an array of up to ten "
         "numbers"},
        {section("{\"dims\": [1, @\"x\"]}"),
         "/sections/a~1b/dims/1: \"x\" is not allowed here; allowed: a number"},
        {section("{\"dims\": @[1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11]}"),
         "/sections/a~1b/dims: a section has at most ten dimensions; a decimal comma? "
         "Decimals stand behind a point: 1.5"},
        {section("{\"text\": \"W\", @\"text\": \"W\"}"),
         "/sections/a~1b/text: the key \"text\" stands twice"},
        {section("{@\"txt\": \"W\"}"),
         "/sections/a~1b/txt: unknown key \"txt\"; allowed: text, dims, material, catalogue; did "
         "you mean "
         "text?"},
        {section("{\"text\": \"W\", @\"txt\": \"W\"}"),
         "/sections/a~1b/txt: unknown key \"txt\"; allowed: text, dims, material, catalogue; did "
         "you mean "
         "text?"},
        {section("{@\"colour\": 1}"),
         "/sections/a~1b/colour: unknown key \"colour\"; allowed: text, dims, material, catalogue"},
        {section("{\"text\": \"W\", @\"pilar\": {\"text\": \"W\"}}"),
         "/sections/a~1b/pilar: unknown key \"pilar\"; is the section \"a/b\" closed by a "
         "\"}\" before it?"},
        {R"({"materials": {"S355": {}, "sections": {@"a": {"text": "W"}}}})",
         "/materials/sections/a: unknown key \"a\"; are the materials closed by a \"}\" before "
         "\"sections\"?"},
        {R"({"sections": {"a": {"text": "W"}, @"a": {"text": "W"}}})",
         "/sections/a: the key \"a\" stands twice"},
    }));

INSTANTIATE_TEST_SUITE_P(
    Materials, JsonRefusals,
    testing::ValuesIn(std::vector<Refusal>{
        {R"({"materials": @[]})",
         "/materials: an array […] is not allowed here; allowed: an object with a material for "
         "each name"},
        {R"({"materials": @7850})",
         "/materials: 7850 is not allowed here; allowed: an object with a material for each name"},
        {R"({"materials": {"a/b": @7850}})",
         "/materials/a~1b: 7850 is not allowed here; allowed: a material {\"density\": 7850}"},
        {R"({"materials": {"a/b": {"density": @"7850"}}})",
         "/materials/a~1b/density: \"7850\" is not allowed here; allowed: a number above 0, in "
         "kg/m³"},
        {R"({"materials": {"a": {"density": @0}}})",
         "/materials/a/density: 0 is not allowed here; allowed: a number above 0, in kg/m³"},
        {R"({"materials": {"a": {"density": @-7850.5}}})",
         "/materials/a/density: -7850.5 is not allowed here; allowed: a number above 0, in kg/m³"},
        {R"({"materials": {"a": {"density": @1e39}}})",
         "/materials/a/density: 1e39 is too large: numbers must lie within ±3.4e38"},
        {R"({"materials": {"a": {"density": @{}}}})",
         "/materials/a/density: an object {…} is not allowed here; allowed: a number above 0, in "
         "kg/m³"},
        {R"({"materials": {"a": {@"densty": 7850}}})",
         "/materials/a/densty: unknown key \"densty\"; allowed: density; did you mean density?"},
        {R"({"materials": {"a": {}, @"a": {}}})", "/materials/a: the key \"a\" stands twice"},
        {R"({"materials": {}, @"materials": {}})",
         "/materials: the key \"materials\" stands twice"},
        {section("{\"text\": \"W\", \"material\": @5}"),
         "/sections/a~1b/material: 5 is not allowed here; allowed: the name of a material"},
        {section("{\"text\": \"W\", \"material\": @{}}"),
         "/sections/a~1b/material: an object {…} is not allowed here; allowed: the name of a "
         "material"},
        {barWith("\"name\": @5"), "/bars/0/name: 5 is not allowed here; allowed: a text"},
        {barWith("\"layer\": @null"), "/bars/0/layer: null is not allowed here; allowed: a text"},
        {barWith("\"layer\": @[]"),
         "/bars/0/layer: an array […] is not allowed here; allowed: a text"},
    }));

INSTANTIATE_TEST_SUITE_P(
    Bars, JsonRefusals,
    testing::ValuesIn(std::vector<Refusal>{
        {bar("@5"),
         "/bars/0: 5 is not allowed here; allowed: a bar {\"nodes\": [0, 1], \"section\": "
         "\"…\"}"},
        {bar("@[]"),
         "/bars/0: an array […] is not allowed here; allowed: a bar {\"nodes\": [0, 1], "
         "\"section\": \"…\"}"},
        {bar("@{\"nodes\": [0, 1]}"), "/bars/0: the key \"section\" is missing"},
        {bar("{\"nodes\": [0, 1], \"section\": \"a\"},\n@{\"section\": \"a\"}"),
         "/bars/1: the key \"nodes\" is missing"},
        {bar("{\"nodes\": @5}"),
         "/bars/0/nodes: 5 is not allowed here; allowed: [first node, second node]"},
        {bar("{\"nodes\": @{}}"),
         "/bars/0/nodes: an object {…} is not allowed here; allowed: [first node, second "
         "node]"},
        {bar("{\"nodes\": @[0]}"),
         "/bars/0/nodes: a bar has two nodes [first, second], this one 1"},
        {bar("{\"nodes\": @[0, 1, 2]}"),
         "/bars/0/nodes: a bar has two nodes [first, second], this one 3"},
        {bar("{\"nodes\": [0, @1.5]}"),
         "/bars/0/nodes/1: 1.5 is not allowed here; allowed: the index of a node, a whole "
         "number from 0"},
        {bar("{\"nodes\": [@2147483648, 1]}"),
         "/bars/0/nodes/0: 2147483648 is not allowed here; allowed: the index of a node, a "
         "whole number from 0"},
        {bar("{\"nodes\": [@-2147483649, 1]}"),
         "/bars/0/nodes/0: -2147483649 is not allowed here; allowed: the index of a node, a "
         "whole number from 0"},
        {bar("{\"nodes\": [@18446744073709551615, 1]}"),
         "/bars/0/nodes/0: 9223372036854775807 is not allowed here; allowed: the index of a "
         "node, a whole number from 0"},
        {bar("{\"section\": @5}"),
         "/bars/0/section: 5 is not allowed here; allowed: the name of a section"},
        {bar("{\"section\": @[\"a\"]}"),
         "/bars/0/section: an array […] is not allowed here; allowed: the name of a section"},
        {barWith("@\"section\": \"b\""), "/bars/0/section: the key \"section\" stands twice"},
        {barWith("\"type\": @\"colum\""), "/bars/0/type: \"colum\" is not allowed here; allowed: " +
                                              types + "; did you mean column?"},
        {barWith("\"type\": @12"), "/bars/0/type: 12 is not allowed here; allowed: " + types},
        {barWith("\"type\": @-1"), "/bars/0/type: -1 is not allowed here; allowed: " + types},
        {barWith("\"type\": @4.0"), "/bars/0/type: 4.0 is not allowed here; allowed: " + types},
        {barWith("\"type\": @[4]"),
         "/bars/0/type: an array […] is not allowed here; allowed: " + types},
        {barWith("\"visible\": @1"),
         "/bars/0/visible: 1 is not allowed here; allowed: true, false"},
        {barWith("\"visible\": @{}"),
         "/bars/0/visible: an object {…} is not allowed here; allowed: true, false"},
        {barWith("\"angle\": @\"x\""),
         "/bars/0/angle: \"x\" is not allowed here; allowed: a number"},
        {barWith("\"angle\": @[1]"),
         "/bars/0/angle: an array […] is not allowed here; allowed: a number"},
        {barWith("\"angle\": @-4e38"),
         "/bars/0/angle: -4e38 is too large: numbers must lie within ±3.4e38"},
        {barWith("\"quarterTurns\": @0.5"),
         "/bars/0/quarterTurns: 0.5 is not allowed here; allowed: a whole number of quarter "
         "turns"},
        {barWith("\"quarterTurns\": @[1]"),
         "/bars/0/quarterTurns: an array […] is not allowed here; allowed: a whole number of "
         "quarter turns"},
        {barWith("@\"colour\": 1"),
         "/bars/0/colour: unknown key \"colour\"; allowed: nodes, section, type, visible, "
         "angle, quarterTurns, name, layer"},
        {barWith("@\"angel\": 1"),
         "/bars/0/angel: unknown key \"angel\"; allowed: nodes, section, type, visible, "
         "angle, quarterTurns, name, layer; did you mean angle?"},
    }));

TEST(ReadJsonModel, SaysWhatProgramsNeed) {
  const Problem unit = refusalOf(unitOf("\"MM\""));
  EXPECT_EQ(unit.value, "\"MM\"");
  EXPECT_EQ(unit.allowed, "m, cm, mm");
  EXPECT_EQ(unit.suggestion, "mm");
  const Problem key = refusalOf(barWith("\"angel\": 1"));
  EXPECT_EQ(key.value, "angel");
  EXPECT_EQ(key.allowed, "nodes, section, type, visible, angle, quarterTurns, name, layer");
  EXPECT_EQ(key.suggestion, "angle");
  EXPECT_EQ(refusalOf(node("[[0]]")).suggestion, "]");
  EXPECT_EQ(refusalOf(section("[]")).allowed, "a section {\"text\": \"…\"}");
}

TEST(ReadJsonModel, ShowsLongTextsShortened) {
  const std::string sixty(60, 'x');
  EXPECT_EQ(refusalOf(unitOf("\"" + sixty + "\"")).value, "\"" + sixty + "\"");
  EXPECT_EQ(refusalOf(unitOf("\"" + sixty + "y\"")).value, "\"" + sixty + "…\"");
  // Not in the middle of a character.
  const std::string most(58, 'x');
  EXPECT_EQ(refusalOf(unitOf("\"" + most + "€uros\"")).value, "\"" + most + "…\"");
  EXPECT_EQ(refusalOf(unitOf("\"" + most + "çedo\"")).value, "\"" + most + "ç…\"");
}

TEST(ReadJsonModel, SpeaksTheLanguageOfTheUser) {
  const InLanguage portuguese(Language::portuguese);
  EXPECT_EQ(shown(refusalOf(unitOf("\"MM\""))),
            "1:10: /unit: \"MM\" não é permitido aqui; permitido: m, cm, mm; você quis dizer mm?");
}

// ---- writing

TEST(WriteJsonModel, WritesOneEntryALine) {
  Model model = test::soundModel();
  model.title = "Galpão \"1\"";
  model.sections[0].name = "viga/1";
  model.sections[1] = test::sectionWith("EC", {80, 0, 0, 12});
  model.bars[1].type = 4;
  model.bars[1].visible = false;
  model.bars[1].angle = 0.1F;
  model.bars[1].quarterTurns = -1;
  EXPECT_EQ(written(model), R"({
  "title": "Galpão \"1\"",
  "unit": "mm",
  "nodes": [
    [0, 0, 0],
    [0, 0, 3000],
    [5000, 0, 3000]
  ],
  "sections": {
    "viga/1": {"text": "W 200 100 8 6"},
    "EC": {"text": "EC", "dims": [80, 0, 0, 12]}
  },
  "bars": [
    {"nodes": [0, 1], "section": "viga/1"},
    {"nodes": [1, 2], "section": "EC", "type": "column", "visible": false, "angle": 0.1, "quarterTurns": -1}
  ]
}
)");
}

TEST(WriteJsonModel, WritesMaterialsAndNamesThatAreThere) {
  Model model = test::soundModel();
  model.materials = {{.name = "S\"355", .density = 7850}, {.name = "C24"}};
  model.sections[0].material = 0;
  model.barNames = {"", "P/2"};
  model.layers = {"Nível 1"};
  model.barLayers = {0, -1};
  EXPECT_EQ(written(model), R"({
  "unit": "mm",
  "nodes": [
    [0, 0, 0],
    [0, 0, 3000],
    [5000, 0, 3000]
  ],
  "materials": {
    "S\"355": {"density": 7850},
    "C24": {}
  },
  "sections": {
    "W 200 100 8 6": {"text": "W 200 100 8 6", "material": "S\"355"},
    "EC 80 0 0 12": {"text": "EC 80 0 0 12"}
  },
  "bars": [
    {"nodes": [0, 1], "section": "W 200 100 8 6", "layer": "Nível 1"},
    {"nodes": [1, 2], "section": "EC 80 0 0 12", "name": "P/2"}
  ]
}
)");
}

TEST(WriteJsonModel, NamesTheCatalogueWhereItGivesTheSection) {
  const auto lineOf = [](const Model& model) {
    const std::string text = written(model);
    const std::size_t start = text.find("    \"HE ");
    return text.substr(start, text.find('\n', start) - start);
  };
  Model model = test::soundModel();
  model.sections[0] = test::sectionOf("HE 180 180 14 8.5");
  model.sections[0].catalogue = "HEB 180";
  EXPECT_EQ(lineOf(model), "    \"HE 180 180 14 8.5\": {\"catalogue\": \"HEB 180\"},");
  EXPECT_EQ(read(written(model)).sections[0].text, "HE 180 180 14 8.5");
  model.sections[0].dims[3] = 8;
  EXPECT_EQ(lineOf(model),
            "    \"HE 180 180 14 8.5\": {\"text\": \"HE 180 180 14 8.5\", \"dims\": [180, 180, "
            "14, 8]},");
  model.sections[0] = test::sectionOf("HE 180 180 14 8");
  model.sections[0].catalogue = "HEB 180";
  EXPECT_EQ(lineOf(model), "    \"HE 180 180 14 8\": {\"text\": \"HE 180 180 14 8\"},");
}

TEST(WriteJsonModel, KeepsTheSignOfZero) {
  Model model = test::soundModel();
  model.nodes[0] = {-0.0F, 0.0F, 1.0F};
  const Model again = read(written(model));
  EXPECT_TRUE(std::signbit(again.nodes[0][0]));
  EXPECT_FALSE(std::signbit(again.nodes[0][1]));
}

TEST(WriteJsonModel, OfAnEmptyModelWritesEmptyLists) {
  EXPECT_EQ(
      written(Model{}),
      "{\n  \"unit\": \"mm\",\n  \"nodes\": [\n  ],\n  \"sections\": {\n  },\n  \"bars\": [\n  "
      "]\n}\n");
}

TEST(WriteJsonModel, AnUnknownUnitIsMillimetres) {
  for (const std::int32_t unit : {-1, 3, 99}) {
    Model model;
    model.unitCode = unit;
    EXPECT_EQ(read(written(model)).unitCode, 2) << unit;
  }
  for (const std::int32_t unit : {0, 1, 2}) {
    Model model;
    model.unitCode = unit;
    EXPECT_EQ(read(written(model)).unitCode, unit);
  }
}

/// Any number that is finite.
float anyFloat(Random& random) {
  const auto value = std::bit_cast<float>(static_cast<std::uint32_t>(random.bits()));
  return std::isfinite(value) ? value : 1.5F;
}

std::string anyText(Random& random) {
  constexpr std::string_view pieces[] = {"W", " 200", "x", "\"", "\\", "\n", "\x01", "ç",
                                         "€", "😀",    "/", "~",  "{",  "]",  ""};
  std::string text;
  for (std::int64_t count = random.integer(0, 6); count > 0; --count) {
    text += pieces[random.integer(0, 14)];
  }
  return text;
}

Model anyModel(Random& random) {
  Model model;
  model.title = anyText(random);
  model.unitCode = static_cast<std::int32_t>(random.integer(0, 2));
  for (std::int64_t i = random.integer(1, 6); i > 0; --i) {
    model.nodes.push_back({anyFloat(random), anyFloat(random), anyFloat(random)});
  }
  for (std::int64_t i = random.integer(0, 3); i > 0; --i) {
    model.materials.push_back({.name = anyText(random) + std::to_string(i),
                               .density = random.once(2) ? 0.0 : std::fabs(anyFloat(random))});
  }
  const auto materials = static_cast<std::int64_t>(model.materials.size());
  for (std::int64_t i = random.integer(1, 4); i > 0; --i) {
    ModelSection section = test::sectionOf(anyText(random));
    section.name = anyText(random) + std::to_string(i);
    section.material = static_cast<std::int32_t>(random.integer(-1, materials - 1));
    if (random.once(2)) {
      for (float& dim : section.dims) {
        dim = random.once(3) ? 0.0F : anyFloat(random);
      }
    }
    model.sections.push_back(section);
  }
  for (std::int64_t i = random.integer(0, 6); i > 0; --i) {
    model.bars.push_back({
        .start = static_cast<std::int32_t>(random.bits()),
        .end = static_cast<std::int32_t>(random.bits()),
        .section = static_cast<std::int32_t>(
            random.integer(0, static_cast<std::int64_t>(model.sections.size()) - 1)),
        .angle = random.once(2) ? 0.0F : anyFloat(random),
        .quarterTurns = random.once(2) ? 0 : static_cast<std::int32_t>(random.bits()),
        .type = static_cast<std::uint8_t>(random.integer(0, 11)),
        .visible = random.once(2),
    });
  }
  if (random.once(2)) {
    for (std::size_t i = 0; i < model.bars.size(); ++i) {
      model.barNames.push_back(anyText(random));
    }
  }
  return model;
}

TEST(WriteJsonModel, IsReadAsTheSameModel) {
  for (int seed = 0; seed < test::rounds(2000); ++seed) {
    Random random(static_cast<std::uint64_t>(seed));
    const Model model = anyModel(random);
    const std::string text = written(model);
    const Model again = read(text);
    ASSERT_EQ(again.title, model.title);
    ASSERT_EQ(again.unitCode, model.unitCode);
    ASSERT_EQ(again.nodes, model.nodes) << text;
    ASSERT_EQ(again.materials.size(), model.materials.size());
    for (std::size_t i = 0; i < model.materials.size(); ++i) {
      ASSERT_EQ(again.materials[i].name, model.materials[i].name) << text;
      ASSERT_EQ(again.materials[i].density, model.materials[i].density) << text;
    }
    ASSERT_EQ(again.sections.size(), model.sections.size());
    for (std::size_t i = 0; i < model.sections.size(); ++i) {
      ASSERT_EQ(again.sections[i].name, model.sections[i].name) << text;
      ASSERT_EQ(again.sections[i].text, model.sections[i].text) << text;
      ASSERT_EQ(again.sections[i].dims, model.sections[i].dims) << text;
      ASSERT_EQ(again.sections[i].givenDims < 0,
                model.sections[i].dims == parseSectionDims(model.sections[i].text))
          << text;
      ASSERT_EQ(again.sections[i].material, model.sections[i].material) << text;
    }
    ASSERT_EQ(again.bars.size(), model.bars.size());
    const auto nameOf = [](const Model& named, std::size_t i) {
      return named.barNames.empty() ? std::string() : named.barNames[i];
    };
    for (std::size_t i = 0; i < model.bars.size(); ++i) {
      ASSERT_EQ(nameOf(again, i), nameOf(model, i)) << text;
      ASSERT_EQ(again.bars[i].start, model.bars[i].start) << text;
      ASSERT_EQ(again.bars[i].end, model.bars[i].end) << text;
      ASSERT_EQ(again.bars[i].section, model.bars[i].section) << text;
      ASSERT_EQ(again.bars[i].angle, model.bars[i].angle) << text;
      ASSERT_EQ(again.bars[i].quarterTurns, model.bars[i].quarterTurns) << text;
      ASSERT_EQ(again.bars[i].type, model.bars[i].type) << text;
      ASSERT_EQ(again.bars[i].visible, model.bars[i].visible) << text;
    }
    // Other programs read it, too.
    ASSERT_TRUE(nlohmann::json::accept(text)) << text;
    ASSERT_EQ(written(again), text);
  }
}

}  // namespace
}  // namespace exportifc
