// Plain tables: what they say, where they are wrong, and that they carry what JSON carries.
#include "library/formats/tables/tables.h"

#include <fstream>
#include <numbers>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "library/formats/json_model.h"
#include "library/frame/model_check.h"
#include "library/frame/model_error.h"
#include "library/frame/text_sink.h"
#include "library/workbook/csv.h"
#include "tests/library/library_test.h"
#include "tests/library/zip_bytes.h"

namespace exportifc {
namespace {

struct CsvTables {
  std::string nodes = "node;x [mm];y;z\nA;0;0;0\nB;0;0;3000\nC;5000;0;3000,5\n";
  std::string sections = "section;text\nV;W 200 100 8 6\n";
  std::string bars = "start;end;section\nA;B;V\nB;C;V\n";
};

std::string zipOf(const CsvTables& tables) {
  return test::zipOf(
      {{"nodes.csv", tables.nodes}, {"sections.csv", tables.sections}, {"bars.csv", tables.bars}});
}

Model modelOf(const CsvTables& tables) {
  std::stringbuf zip(zipOf(tables), std::ios::in);
  return readTableFiles(zip);
}

/// "bars.csv:3:1 message".
std::string faultOf(const CsvTables& tables) {
  try {
    modelOf(tables);
  } catch (const ModelError& error) {
    const Problem& problem = error.problem();
    return problem.file + ":" + std::to_string(problem.place.line) + ":" +
           std::to_string(problem.place.column) + " " + problem.message;
  }
  return "";
}

std::string jsonOf(const Model& model) {
  std::string text;
  TextSink sink(text);
  writeJsonModel(model, sink);
  return text;
}

Model fromJson(const std::string& json) {
  std::stringbuf text(json, std::ios::in);
  return readJsonModel(text);
}

const std::string everything =
    R"({"unit": "cm", "nodes": [[0, -0.1, 0], [0, 0, 300], [1e-3, 7.25, 3e6]],
  "materials": {"A36": {"density": 7850}, "wood": {}},
  "sections": {"a": {"text": "W 200 100 8 6", "material": "A36"}, "b _x0041_;\"": {"text": "L 50 50 5 5",
  "dims": [1, 2.5, 0, 4], "material": "wood"}, " c": {"text": "EC 80 0 0 12", "dims": []},
  "d": {"catalogue": "HEB180", "material": "A36"}},
  "bars": [{"nodes": [0, 1], "section": "a", "type": "column", "name": "P1", "layer": "Piso 1"},
  {"nodes": [1, 2], "section": "b _x0041_;\"", "visible": false, "angle": 0.1, "quarterTurns": -1},
  {"nodes": [2, 0], "section": " c", "layer": "á"}, {"nodes": [0, 2], "section": "d"}]})";

TEST(Tables, CarryWhatJsonCarries) {
  const Model model = fromJson(everything);
  for (const Language language : {Language::english, Language::portuguese}) {
    const test::InLanguage spoken(language);
    std::string bytes;
    TextSink sink(bytes);
    writeTableWorkbook(model, sink);
    std::stringbuf workbook(bytes, std::ios::in);
    EXPECT_EQ(jsonOf(readTables(Workbook(workbook), TableKind::sheets)), jsonOf(model));
    bytes.clear();
    writeTableFiles(model, sink);
    std::stringbuf files(bytes, std::ios::in);
    EXPECT_EQ(jsonOf(readTableFiles(files)), jsonOf(model));
  }
}

TEST(Tables, SayWhatIsLost) {
  EXPECT_TRUE(lossesInTables(fromJson(everything)).lines.empty());
  Model model = fromJson(everything);
  model.title = "Galpão";
  EXPECT_EQ(lossesInTables(model).lines.size(), 1U);
  EXPECT_EQ(lossesInTables(model).obstacle, "");
  model.sections[0].name.clear();
  EXPECT_EQ(lossesInTables(model).obstacle, "a section without a name cannot stand in a table");
  model.nodes.resize(1'048'576);
  EXPECT_EQ(lossesInTables(model).obstacle,
            "a sheet holds 1,048,576 rows; this model has 1,048,577");
}

TEST(Tables, HaveTheirColumnsInAnyOrderAndLanguage) {
  const Model model = modelOf(
      {.nodes = "Z;X [m];y;NO\n1,5;2.5;0;n\n",
       .sections =
           "Se\xC3\xA7\xC3\xA3o;d1;FAMILIA;d0;densidade [kg/m3];material\ns;4;RET;8;7850;A\n"
           "t;;RET;8;;A\n",
       .bars = "tipo;fim;in\xC3\xAD"
               "cio;\xC3\x82ngulo [deg];visivel;quartos;secao;camada;barra\n"
               "4;n;n;90;n\xC3\xA3o;2;s;L;B1\n;n;n;;sim;;t;;\n"});
  EXPECT_EQ(model.unitCode, 0);
  EXPECT_EQ(model.nodes[0], (std::array<float, 3>{2.5F, 0.0F, 1.5F}));
  EXPECT_EQ(model.sections[0].text, "RET 8 4");
  EXPECT_EQ(model.materials.size(), 1U);
  EXPECT_EQ(model.materials[0].density, 7850);
  EXPECT_EQ(model.sections[1].material, 0);
  EXPECT_EQ(model.bars[0].type, 4);
  EXPECT_FALSE(model.bars[0].visible);
  EXPECT_EQ(model.bars[0].angle, static_cast<float>(std::numbers::pi / 2));
  EXPECT_EQ(model.bars[0].quarterTurns, 2);
  EXPECT_TRUE(model.bars[1].visible);
  EXPECT_EQ(model.layers, std::vector<std::string>{"L"});
  EXPECT_EQ(model.barLayers, (std::vector<std::int32_t>{0, -1}));
  EXPECT_EQ(model.barNames, (std::vector<std::string>{"B1", ""}));
}

TEST(Tables, HaveSectionsOfTheCatalogue) {
  const Model model = modelOf({.sections = "section;catalogue\nV;heb180\n"});
  EXPECT_EQ(model.sections[0].text, "HE 180 180 14 8.5");
  EXPECT_EQ(model.sections[0].catalogue, "HEB 180");
}

TEST(Tables, DimensionsLeftOutAreZero) {
  const Model model = modelOf({.sections = "section;family;text;d0;d3\nV;L;;50;5\nU;;RED 20;30;\n",
                               .bars = "start;end;section\nA;B;V\nB;C;U\n"});
  EXPECT_EQ(model.sections[0].text, "L 50 0 0 5");
  EXPECT_EQ(model.sections[1].text, "RED 20");
  EXPECT_EQ(model.sections[1].dims[0], 30) << "they count more than the text";
}

TEST(TableFaults, HaveAPlaceAndTheAnswer) {
  CsvTables tables;
  EXPECT_EQ(faultOf(tables), "");
  tables.bars = "start;end;section\nA;B;V\nA;D;V\n";
  EXPECT_EQ(faultOf(tables), "bars.csv:3:2 there is no node \"D\"");
  tables.bars = "start;end;section\n\nA;B;W\n";
  EXPECT_EQ(faultOf(tables), "bars.csv:3:3 there is no section \"W\"");
  tables.bars = "start;end;section\nA;;V\n";
  EXPECT_EQ(faultOf(tables), "bars.csv:2:2 a value is missing here");
  tables.bars = "start;end;section;tpye\nA;B;V;4\n";
  EXPECT_TRUE(
      faultOf(tables).starts_with("bars.csv:1:4 there is no column \"tpye\"; allowed: bar, "));
  EXPECT_TRUE(faultOf(tables).ends_with("; did you mean type?"));
  tables.bars = "start;end;section;;\nA;B;V;4\n";
  EXPECT_EQ(faultOf(tables), "bars.csv:2:4 this column has no header");
  tables.bars = "start;end;end;section\nA;B;B;V\n";
  EXPECT_EQ(faultOf(tables), "bars.csv:1:3 the column \"end\" stands here twice");
  tables.bars = "start;end\nA;B\n";
  EXPECT_EQ(faultOf(tables), "bars.csv:1:0 the column \"section\" is missing");
  tables.bars = "start;end;section;angle\nA;B;V;1\n";
  EXPECT_EQ(faultOf(tables),
            "bars.csv:1:4 the header must say its unit in brackets; allowed: deg, rad");
  tables.bars = "start;end;section;quarter turns\nA;B;V;1,5\n";
  EXPECT_EQ(faultOf(tables),
            "bars.csv:2:4 \"1,5\" is not allowed here; allowed: a whole number of quarter turns");
  tables.bars = "start;end;section;visible\nA;B;V;maybe\n";
  EXPECT_EQ(faultOf(tables), "bars.csv:2:4 \"maybe\" is not allowed here; allowed: yes, no");
  tables.bars = "start;end;section;type\nA;B;V;colum\n";
  EXPECT_TRUE(faultOf(tables).ends_with("; did you mean column?"));
  tables.bars = "start;end;section\n\"A;B;V\n";
  EXPECT_EQ(faultOf(tables), "bars.csv:2:1 the quote that begins this value is not closed");
  tables.bars = "";
  EXPECT_TRUE(faultOf(tables).starts_with("bars.csv:0:0 the table \"bars\" is missing or empty"));
}

TEST(TableFaults, OfNodesAndSections) {
  EXPECT_EQ(faultOf({.nodes = "node;x;y;z\nA;0;0;0\n"}),
            "nodes.csv:1:2 the header must say its unit in brackets; allowed: m, cm, mm");
  EXPECT_EQ(faultOf({.nodes = "node;x [mm];y [m];z\nA;0;0;0\n"}),
            "nodes.csv:1:3 the header must say its unit in brackets; allowed: mm");
  EXPECT_EQ(faultOf({.nodes = "node;x [mm];y;z\nA;0;0;0\nA;0;0;0\n"}),
            "nodes.csv:3:1 the node \"A\" stands here twice");
  EXPECT_EQ(faultOf({.nodes = "node;x [mm];y;z\nA;1.000,5;0;0\n"}),
            "nodes.csv:2:2 \"1.000,5\" is not allowed here; allowed: a number");
  EXPECT_EQ(faultOf({.nodes = "node;x [mm];y;z\nA;1e39;0;0\n"}),
            "nodes.csv:2:2 1e39 is too large: numbers must lie within ±3.4e38");
  EXPECT_EQ(faultOf({.sections = "section;text;family\nV;W 1;W\n"}),
            "sections.csv:2:1 the section \"V\" needs exactly one of text, family and catalogue");
  EXPECT_EQ(faultOf({.sections = "section;text\nV;W 1\nV;W 1\n"}),
            "sections.csv:3:1 the section \"V\" stands here twice");
  EXPECT_TRUE(faultOf({.sections = "section;catalogue\nV;HEB 181\n"})
                  .starts_with("sections.csv:2:2 there is no rolled section \"HEB 181\""));
  EXPECT_EQ(faultOf({.sections = "section;text;density\nV;W 1;7850\n"}),
            "sections.csv:2:3 a density needs the name of its material");
  EXPECT_EQ(faultOf({.sections = "section;text;material;density\nV;W 1;A;0\n"}),
            "sections.csv:2:4 0 is not allowed here; allowed: a number greater than 0");
  EXPECT_EQ(faultOf({.sections = "section;text;material;density\nV;W 1;A;1\nU;W 1;A;2\n"}),
            "sections.csv:3:4 the material \"A\" has another density above");
}

TEST(TableFaults, OfAValueThatIsMissing) {
  EXPECT_EQ(faultOf({.nodes = "node;x [mm];y;z\nA;0;;0\n"}),
            "nodes.csv:2:3 a value is missing here");
  EXPECT_EQ(faultOf({.nodes = "node;x [mm];y;z\nA;0; ;0\n"}),
            "nodes.csv:2:3 \" \" is not allowed here; allowed: a number");
  EXPECT_EQ(faultOf({.nodes = "node;x [mm];y; \nA;0;0;0\n"}).substr(0, 45),
            "nodes.csv:1:4 there is no column \" \"; allowed");
  EXPECT_EQ(faultOf({.sections = "section;text\n;W 1\n"}),
            "sections.csv:2:1 a value is missing here");
  EXPECT_EQ(faultOf({.sections = "section;text\nV;\"W\" 1\n"}),
            "sections.csv:2:2 text stands behind the quote that closes this value; a quote in a "
            "value is doubled");
}

TEST(TableFaults, HaveCodesOfTheirOwn) {
  const auto codeOf = [](const CsvTables& tables) -> std::string {
    try {
      modelOf(tables);
    } catch (const ModelError& error) {
      return error.problem().code;
    }
    return "";
  };
  const std::string bars = "start;end;section";
  EXPECT_EQ(codeOf({.bars = ""}), "table-missing");
  EXPECT_EQ(codeOf({.bars = "start;end\nA;B\n"}), "header-missing");
  EXPECT_EQ(codeOf({.bars = bars + ";end\n"}), "header-twice");
  EXPECT_EQ(codeOf({.bars = bars + "\nA;B;V;4\n"}), "header-none");
  EXPECT_EQ(codeOf({.bars = bars + ";colour\n"}), "unknown-header");
  EXPECT_EQ(codeOf({.bars = bars + ";angle\n"}), "header-unit");
  EXPECT_EQ(codeOf({.nodes = "node;x [ft];y;z\n"}), "header-unit");
  EXPECT_EQ(codeOf({.nodes = "node;x [m];y;z\nA;0;0;0\nA;0;0;0\n"}), "name-twice");
  EXPECT_EQ(codeOf({.sections = "section;text\nV;W 1\nV;W 1\n"}), "name-twice");
  EXPECT_EQ(codeOf({.bars = bars + "\nA;X;V\n"}), "reference");
  EXPECT_EQ(codeOf({.bars = bars + "\nA;B;X\n"}), "reference");
  EXPECT_EQ(codeOf({.sections = "section;text\nV;\n"}), "section-shape");
  EXPECT_EQ(codeOf({.sections = "section;catalogue\nV;HEB 1\n"}), "catalogue");
  EXPECT_EQ(codeOf({.sections = "section;text;density\nV;W 1;1\n"}), "density-alone");
  EXPECT_EQ(codeOf({.sections = "section;text;material;density\nV;W 1;A;1\nU;W 1;A;2\n"}),
            "density-twice");
  EXPECT_EQ(codeOf({.bars = bars + "\n\"A"}), "csv-quote");
  EXPECT_EQ(codeOf({.bars = bars + "\n\"A\"x;B;V\n"}), "csv-quote");
  EXPECT_EQ(codeOf({.bars = "\xFF\xFE" + bars}), "utf-16");
  EXPECT_EQ(codeOf({.bars = bars + ";visible\nA;B;V;perhaps\n"}), "unreadable");
}

TEST(TableFaults, SuggestTheNearestName) {
  EXPECT_EQ(faultOf({.nodes = "node;x [mm];y;z\nNorth;0;0;0\n",
                     .bars = "start;end;section\nNorth;Nort;V\n"}),
            "bars.csv:2:2 there is no node \"Nort\"; did you mean North?");
}

/// A workbook of one row below the headers in each of its sheets.
std::vector<Sheet> oneBar() {
  const auto sheet = [](const std::string& name, std::vector<Cell> headers,
                        std::vector<Cell> cells) {
    for (std::vector<Cell>* const row : {&headers, &cells}) {
      for (std::size_t i = 0; i < row->size(); ++i) {
        (*row)[i].column = static_cast<std::int32_t>(i);
      }
    }
    return Sheet{.name = name,
                 .rows = {{.number = 1, .cells = std::move(headers)},
                          {.number = 5, .cells = std::move(cells)}}};
  };
  const auto text = [](const char* word) { return Cell{.kind = Cell::Kind::text, .text = word}; };
  const auto number = [](double value) {
    return Cell{.kind = Cell::Kind::number, .number = value};
  };
  return {sheet("N\xC3\xB3s", {text("node"), text("x [mm]"), text("y"), text("z")},
                {number(1), number(0), number(0.5), number(0)}),
          sheet("SECTIONS", {text("section"), text("text")}, {text("V"), text("RED 20")}),
          sheet("Barras", {text("start"), text("end"), text("section"), text("visible")},
                {number(1), text("1"), text("V"), {.kind = Cell::Kind::boolean, .number = 0}})};
}

std::string cellFaultOf(std::vector<Sheet> sheets) {
  try {
    readTables(Workbook(std::move(sheets)), TableKind::sheets);
  } catch (const ModelError& error) {
    return error.problem().cell + " " + error.problem().message;
  }
  return "";
}

TEST(TableSheets, HaveNumbersAndTruthsOfTheirOwn) {
  const Model model = readTables(Workbook(oneBar()), TableKind::sheets);
  EXPECT_EQ(model.nodes[0][1], 0.5F);
  EXPECT_EQ(model.bars[0].end, 0) << "a name and a number are one";
  EXPECT_FALSE(model.bars[0].visible);
}

TEST(TableSheets, PlaceFaultsInCells) {
  std::vector<Sheet> sheets = oneBar();
  sheets[2].rows[1].cells[2].text = "U";
  EXPECT_EQ(cellFaultOf(sheets), "Barras!C5 there is no section \"U\"");
  sheets[2].rows[1].cells[2] = {.column = 2, .kind = Cell::Kind::error, .text = "#N/A"};
  EXPECT_EQ(cellFaultOf(sheets),
            "Barras!C5 the spreadsheet shows an error here, or has not computed it: #N/A");
  sheets[0].rows[1].cells[2] = {.column = 2, .kind = Cell::Kind::boolean, .text = "TRUE"};
  EXPECT_EQ(cellFaultOf(sheets), "N\xC3\xB3s!C5 \"TRUE\" is not allowed here; allowed: a number");
  sheets.pop_back();
  EXPECT_EQ(cellFaultOf(sheets),
            " the table \"bars\" is missing or empty; a model has the tables nodes, sections and "
            "bars");
}

TEST(TableFiles, AreAZipOfPlainFiles) {
  const auto faultOfZip = [](const std::string& bytes) -> std::string {
    std::stringbuf zip(bytes, std::ios::in);
    try {
      readTableFiles(zip);
    } catch (const ModelError& error) {
      return error.problem().code;
    }
    return "";
  };
  const std::string sound = zipOf({});
  EXPECT_EQ(faultOfZip(sound), "");
  EXPECT_EQ(faultOfZip(sound.substr(0, sound.size() - 30)), "damaged-tables");
  // The directory says how much a file unpacks to, 24 bytes from where its entry begins.
  std::string large = sound;
  large.replace(large.find("PK\x01\x02") + 24, 4, std::string("\0\0\0\x7F", 4));
  EXPECT_EQ(faultOfZip(large), "tables-too-large");
  // Folders in the zip and files beside do not matter, nor do the names' language and case.
  const CsvTables tables;
  EXPECT_EQ(faultOfZip(test::zipOf({{"t/N\xC3\x93S.csv", tables.nodes},
                                    {"t/sections.csv", tables.sections},
                                    {"t/barras.csv", tables.bars},
                                    {"t/loads.csv", "\"not\" read"},
                                    {"t/nodes.txt", "\"not\" read"}})),
            "");
}

TEST(TableProblems, AreFoundAgainInTheirCells) {
  const CsvTables tables{.sections = "section;text\nV;W 200\n",
                         .bars = "start;end;section\nA;A;V\n"};
  const Model model = modelOf(tables);
  std::vector<Problem> problems = checkModel(model, false);
  std::stringbuf zip(zipOf(tables), std::ios::in);
  locateInTableFiles(&zip, problems, {});
  ASSERT_GE(problems.size(), 2U);
  EXPECT_EQ(problems.front().file, "sections.csv");
  EXPECT_EQ(problems.front().place.line, 2);
  EXPECT_EQ(problems.front().place.column, 2);
  EXPECT_EQ(problems.front().pointer, "");
}

TEST(TableProblems, OfEachColumn) {
  const CsvTables tables{
      .nodes = "node;x [mm];y;z\nA;0;0;0\nB;0;0;3000\n",
      .sections = "section;text\na/b~;W 200 100 8 6\n",
      .bars =
          "start;end;section;type;visible;angle [rad];quarter turns\nA;B;a/b~;4;no;1;1\n"
          "B;A;a/b~;;;;\n"};
  const auto placeOf = [&](const std::string& pointer) {
    std::vector<Problem> problems{{.pointer = pointer}};
    std::stringbuf zip(zipOf(tables), std::ios::in);
    locateInTableFiles(&zip, problems, {});
    const Problem& problem = problems.front();
    return problem.file + ":" + std::to_string(problem.place.line) + ":" +
           std::to_string(problem.place.column);
  };
  EXPECT_EQ(placeOf("/nodes/1"), "nodes.csv:3:2");
  EXPECT_EQ(placeOf("/nodes/1/1"), "nodes.csv:3:3");
  EXPECT_EQ(placeOf("/nodes/1/2"), "nodes.csv:3:4");
  EXPECT_EQ(placeOf("/sections/a~1b~0"), "sections.csv:2:1");
  EXPECT_EQ(placeOf("/sections/a~1b~0/text"), "sections.csv:2:2");
  EXPECT_EQ(placeOf("/bars/0/nodes/0"), "bars.csv:2:1");
  EXPECT_EQ(placeOf("/bars/0/nodes/1"), "bars.csv:2:2");
  EXPECT_EQ(placeOf("/bars/0/section"), "bars.csv:2:3");
  EXPECT_EQ(placeOf("/bars/0/type"), "bars.csv:2:4");
  EXPECT_EQ(placeOf("/bars/0/visible"), "bars.csv:2:5");
  EXPECT_EQ(placeOf("/bars/0/angle"), "bars.csv:2:6");
  EXPECT_EQ(placeOf("/bars/0/quarterTurns"), "bars.csv:2:7");
  EXPECT_EQ(placeOf("/bars/1/angle"), "bars.csv:3:3") << "a cell that is empty";
  EXPECT_EQ(placeOf("/bars/7"), ":0:0");
  EXPECT_EQ(placeOf("/materials/x"), ":0:0");
  EXPECT_EQ(placeOf(""), ":0:0");
  std::vector<Problem> problems(1);
  locateInTableFiles(nullptr, problems, {});  // the file is gone
  EXPECT_EQ(problems.front().file, "");
}

// ---- the template, the document

TEST(TableTemplate, IsASoundModelInEveryLanguage) {
  for (const Language language : {Language::english, Language::portuguese}) {
    const test::InLanguage spoken(language);
    std::string bytes;
    TextSink sink(bytes);
    writeWorkbook(templateTables(), sink);
    std::stringbuf file(bytes, std::ios::in);
    const Model model = readTables(Workbook(file), TableKind::sheets);
    EXPECT_EQ(model.bars.size(), 4U);
    EXPECT_TRUE(checkModel(model, false).empty());
    EXPECT_EQ(model.sections[2].text, "L 50 50 5 5");
    EXPECT_EQ(model.bars[3].type, 5);
  }
}

TEST(TableTemplate, IsTheSameSavedByLibreOffice) {
  std::filebuf file;
  ASSERT_NE(file.open(EXPORTIFC_SOURCE_FOLDER "/tests/cli/models/tables-libreoffice.xlsx",
                      std::ios::in | std::ios::binary),
            nullptr);
  std::string bytes;
  TextSink sink(bytes);
  writeWorkbook(templateTables(), sink);
  std::stringbuf own(bytes, std::ios::in);
  EXPECT_EQ(jsonOf(readTables(Workbook(file), TableKind::sheets)),
            jsonOf(readTables(Workbook(own), TableKind::sheets)));
}

TEST(TableDocument, HasAnExampleThatIsAModel) {
  std::ifstream file(EXPORTIFC_SOURCE_FOLDER "/docs/tables.md", std::ios::binary);
  const std::string text(std::istreambuf_iterator<char>(file), {});
  std::vector<std::string> blocks;
  const std::string fence = "```csv\n";
  for (std::size_t at = text.find(fence); at != std::string::npos; at = text.find(fence, at)) {
    at += fence.size();
    blocks.push_back(text.substr(at, text.find("```", at) - at));
  }
  ASSERT_EQ(blocks.size(), 3U);
  const Model model = modelOf({.nodes = blocks[0], .sections = blocks[1], .bars = blocks[2]});
  EXPECT_TRUE(checkModel(model, false).empty());
  EXPECT_EQ(model.bars.size(), 3U);
  EXPECT_EQ(model.nodes[1][2], 3.5F);
  EXPECT_EQ(model.sections[0].text, "HE 180 180 14 8.5");
  EXPECT_EQ(model.sections[1].text, "W 200 100 8 6");
}

// ---- CSV

std::string rowsOf(const std::string& text) {
  std::string shown;
  for (const Row& row : readCsv(text, "t", "t.csv").rows) {
    shown += std::to_string(row.number) + ":";
    for (const Cell& cell : row.cells) {
      shown += " " + std::to_string(cell.column) + "=" + cell.text;
    }
    shown += "\n";
  }
  return shown;
}

TEST(Csv, KnowsItsSeparator) {
  EXPECT_EQ(rowsOf("a;b\n1,5;2\n"), "1: 0=a 1=b\n2: 0=1,5 1=2\n");
  EXPECT_EQ(rowsOf("a,b\r\n1.5,,3"), "1: 0=a 1=b\n2: 0=1.5 2=3\n");
  EXPECT_EQ(rowsOf("a\tb, c\n"), "1: 0=a 1=b, c\n");
  EXPECT_EQ(rowsOf("\"a;b\",c\n"), "1: 0=a;b 1=c\n");
  EXPECT_EQ(rowsOf("sep=|\na|b;c\n"), "2: 0=a 1=b;c\n");
}

TEST(Csv, HasQuotesAndLinesInThem) {
  EXPECT_EQ(rowsOf("a;\"b\"\"c\"\n\"d\r\ne\";f\n\ng;h\n"),
            "1: 0=a 1=b\"c\n2: 0=d\r\ne 1=f\n5: 0=g 1=h\n");
}

TEST(Csv, IsOfEitherEncoding) {
  EXPECT_EQ(rowsOf("\xEF\xBB\xBFn\xC3\xB3\n"), "1: 0=n\xC3\xB3\n");
  EXPECT_EQ(rowsOf("n\xF3\n"), "1: 0=n\xC3\xB3\n");
  EXPECT_THROW(rowsOf("\xFF\xFEn"), ModelError);
}

TEST(Csv, IsWrittenInTheHabitsOfTheLanguage) {
  const Sheet sheet{
      .name = "t",
      .rows = {{.number = 1,
                .cells = {{.column = 0, .kind = Cell::Kind::text, .text = "a;\"b"},
                          {.column = 2, .kind = Cell::Kind::number, .number = 1.5}}}}};
  std::string text;
  TextSink sink(text);
  writeCsv(sheet, {.separator = ';', .decimalSign = ','}, sink);
  EXPECT_EQ(text, "\xEF\xBB\xBF\"a;\"\"b\";;1,5\r\n");
  text.clear();
  writeCsv(sheet, {}, sink);
  EXPECT_EQ(text, "\xEF\xBB\xBF\"a;\"\"b\",,1.5\r\n");
  text.clear();
  writeCsv({.rows = {{.cells = {{.kind = Cell::Kind::boolean, .number = 1}}}}}, {}, sink);
  EXPECT_EQ(text, "\xEF\xBB\xBFyes\r\n");
}

}  // namespace
}  // namespace exportifc
