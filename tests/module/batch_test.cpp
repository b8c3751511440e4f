// Batch exports: the module replaces the file that the host wrote, and stays in batch mode.
#include "tests/module/module_test.h"

namespace exportifc::module_tests {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class Batch : public ModuleTest {};

TEST_F(Batch, ReplacesItsInputAndLeavesNothingBeside) {
  writeFile(file("modelo.txt"), batchModel({BarText{}, BarText{.section = "RED 16"}}));
  writeFile(file("outro.txt"), "outro");
  EXPECT_EQ(exportFile("modelo.txt"), 1);
  EXPECT_THAT(listing(), ElementsAre("modelo.txt", "outro.txt"));
  EXPECT_EQ(readFile(file("outro.txt")), "outro");
  EXPECT_EQ(console, "");
  const IfcText ifc(file("modelo.txt"));
  EXPECT_TRUE(ifc.isComplete());
  // Batch bars have no type: they stand in the storey itself.
  EXPECT_THAT(ifc.elementsIn("Pavimento 1"),
              ElementsAre("IFCBEAM W W 200 100 8 6", "IFCBEAM RED RED 16"));
}

TEST_F(Batch, TellsTheHostWhichFileItWrote) {
  writeFile(file("modelo.txt"), batchModel({}));
  exportFile("modelo.txt");
  EXPECT_EQ(record().outputPath, narrowBytes(file("modelo.txt")) + "temp");
}

TEST_F(Batch, ClearsTheRestOfALongerPathBefore) {
  writeFile(file("um_nome_bem_comprido.txt"), batchModel({}));
  writeFile(file("m.txt"), batchModel({}));
  exportFile("um_nome_bem_comprido.txt");
  exportFile("m.txt");
  const std::string path = narrowBytes(file("m.txt")) + "temp";
  std::string field(sizeof(record().outputPath), '\0');
  field.replace(0, path.size(), path);
  EXPECT_EQ(std::string(record().outputPath, sizeof(record().outputPath)), field);
}

TEST_F(Batch, AsksTheHostNothing) {
  host.bars.resize(3);
  writeFile(file("modelo.txt"), batchModel({BarText{}}));
  exportFile("modelo.txt");
  EXPECT_THAT(host.queries, IsEmpty());
}

TEST_F(Batch, ReplacesFileAfterFile) {
  for (const char* const name : {"a.txt", "b.txt", "a.txt"}) {
    writeFile(file(name), batchModel({BarText{}}));
    EXPECT_EQ(exportFile(name), 1);
    EXPECT_EQ(IfcText(file(name)).elements().size(), 1U);
  }
  EXPECT_THAT(listing(), ElementsAre("a.txt", "b.txt"));
}

TEST_F(Batch, TakesAPathWithAccentsAndBlanks) {
  const std::string name = "Galp\xC3\xA3o n\xC2\xBA 1.txt";  // Galpão nº 1.txt
  writeFile(file(name), batchModel({BarText{}}));
  EXPECT_EQ(exportFile(name), 1);
  EXPECT_THAT(listing(), ElementsAre(name));
  EXPECT_EQ(IfcText(file(name)).elements().size(), 1U);
  EXPECT_EQ(record().outputPath, narrowBytes(file(name)) + "temp");
}

TEST_F(Batch, WithoutInputWritesAModelWithoutBars) {
  EXPECT_EQ(exportFile("modelo.txt"), 1);
  EXPECT_THAT(listing(), ElementsAre("modelo.txt"));
  const IfcText ifc(file("modelo.txt"));
  EXPECT_TRUE(ifc.isComplete());
  ASSERT_EQ(ifc.entities.size(), 1U);
  EXPECT_THAT(ifc.entities[0].arguments, HasSubstr(", 'Pavimento 1', '', (), #113"));
}

TEST_F(Batch, NullPathIsReportedAndChangesNothing) {
  std::int64_t result = -5;
  attended({box("Nome de arquivo Inv\xC3\xA1lido", "Erro ao exportar arquivo")},
           [&] { result = module->plugInExportIfcFile(nullptr); });
  EXPECT_EQ(result, 0);
  EXPECT_THAT(listing(), IsEmpty());
  // Still interactive.
  EXPECT_EQ(execute({cancelsFileName()}), -1);
}

TEST_F(Batch, NullPathLeavesTheModeAlone) {
  writeFile(file("modelo.txt"), batchModel({}));
  exportFile("modelo.txt");
  attended({box("Nome de arquivo Inv\xC3\xA1lido", "Erro ao exportar arquivo")},
           [&] { module->plugInExportIfcFile(nullptr); });
  EXPECT_EQ(execute({}), 1);
  EXPECT_THAT(listing(), ElementsAre("modelo.txt", "modelo.txttemptemp"));
}

TEST_F(Batch, EmptyPathRunsInteractively) {
  host.bars.resize(1);
  std::int64_t result = 0;
  attended({typesFileName(typed("quadro.ifc")), answersYes()},
           [&] { result = module->plugInExportIfcFile(""); });
  EXPECT_EQ(result, 1);
  // The path left by the export is renamed to the empty name, which no system does.
  EXPECT_THAT(listing(), ElementsAre("quadro.ifc"));
  EXPECT_EQ(IfcText(file("quadro.ifc")).elements().size(), 1U);
}

// ---- The mode stays --------------------------------------------------------------------------

TEST_F(Batch, CarriesOverIntoTheMenuCommand) {
  writeFile(file("modelo.txt"), batchModel({BarText{}}));
  exportFile("modelo.txt");
  const std::string written = readFile(file("modelo.txt"));
  host.bars.resize(2);
  // The menu command reads "modelo.txttemp", which was renamed away: a model without bars.
  EXPECT_EQ(execute({}), 1);
  EXPECT_THAT(host.queries, IsEmpty());
  EXPECT_THAT(listing(), ElementsAre("modelo.txt", "modelo.txttemptemp"));
  EXPECT_EQ(readFile(file("modelo.txt")), written);
  const IfcText second(file("modelo.txttemptemp"));
  EXPECT_TRUE(second.isComplete());
  EXPECT_THAT(second.elements(), IsEmpty());
  EXPECT_EQ(record().outputPath, narrowBytes(file("modelo.txttemptemp")));
}

TEST_F(Batch, MenuCommandExportsTheFileThatLiesWhereTheLastExportWrote) {
  writeFile(file("modelo.txt"), batchModel({}));
  exportFile("modelo.txt");
  writeFile(file("modelo.txttemp"), batchModel({BarText{.section = "IPE 200"}}));
  EXPECT_EQ(execute({}), 1);
  EXPECT_THAT(IfcText(file("modelo.txttemptemp")).elements(), ElementsAre("IFCBEAM IPE IPE 200"));
}

TEST_F(Batch, CarriesOverFromAnInteractiveExport) {
  host.bars.resize(1);
  exported("quadro.ifc");
  const std::string written = readFile(file("quadro.ifc"));
  host.queries.clear();
  for (const char* const next : {"quadro.ifctemp", "quadro.ifctemptemp"}) {
    EXPECT_EQ(execute({}), 1);
    const IfcText ifc(file(next));
    EXPECT_TRUE(ifc.isComplete());
    EXPECT_THAT(ifc.elements(), IsEmpty());  // an exchange file is a batch file without bars
  }
  EXPECT_THAT(host.queries, IsEmpty());
  EXPECT_EQ(readFile(file("quadro.ifc")), written);
  EXPECT_THAT(listing(), ElementsAre("quadro.ifc", "quadro.ifctemp", "quadro.ifctemptemp"));
}

TEST_F(Batch, CarriesOverUnderANameWithAccents) {
  const std::string name = "p\xC3\xB3rtico.ifc";  // pórtico.ifc
  host.bars.resize(1);
  exported(name);
  EXPECT_EQ(record().outputPath, narrowBytes(file(name)));
  EXPECT_EQ(execute({}), 1);
  EXPECT_THAT(listing(), ElementsAre(name, name + "temp"));
}

TEST_F(Batch, ExportsAfterAnInteractiveExport) {
  host.bars.resize(1);
  exported("quadro.ifc");
  writeFile(file("modelo.txt"), batchModel({BarText{}, BarText{}}));
  EXPECT_EQ(exportFile("modelo.txt"), 1);
  EXPECT_EQ(IfcText(file("modelo.txt")).elements().size(), 2U);
}

// ---- What is shown ---------------------------------------------------------------------------

TEST_F(Batch, ShowsUnknownProfilesToo) {
  writeFile(file("modelo.txt"), batchModel({BarText{.section = "QUADRADO 10"}, BarText{}}));
  EXPECT_EQ(exportFile("modelo.txt", {box("Perfil Desconhecido", "Aviso")}), 1);
  EXPECT_EQ(console, consoleLine("AVISO! Perfil desconhecido: QUADRADO 10"));
  EXPECT_EQ(IfcText(file("modelo.txt")).elements().size(), 2U);
}

TEST_F(Batch, ReportsASectionTextThatIsTooLongAndGoesOnWithTheNextBar) {
  const std::string longest(47, 'W');
  writeFile(file("modelo.txt"),
            batchModel({BarText{.section = "IPE 1"}, BarText{.section = longest + "W"},
                        BarText{.section = std::string(500, 'W')}, BarText{.section = longest},
                        BarText{.section = "IPE 2"}}));
  EXPECT_EQ(exportFile("modelo.txt", {box("Problema ao exportar Barra", "Erro"),
                                      box("Problema ao exportar Barra", "Erro"),
                                      box("Perfil Desconhecido", "Aviso")}),
            1);
  EXPECT_THAT(
      IfcText(file("modelo.txt")).elements(),
      ElementsAre("IFCBEAM IPE IPE 1", "IFCBEAM " + longest + " " + longest, "IFCBEAM IPE IPE 2"));
}

}  // namespace
}  // namespace exportifc::module_tests
