// The example hosts as whole programs.
#include "tests/module/module_test.h"

namespace exportifc::module_tests {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class Programs : public ModuleTest {
 protected:
  void SetUp() override {
    ModuleTest::SetUp();
    module.reset();  // the programs load their own
  }

  /// The exit code of a program that lies beside the module.
  int run(const std::string& program, const std::vector<std::string>& arguments,
          const std::vector<Dialog>& script, Answers answers = Answers::person) {
    int code = -1;
    attended(script, [&] { code = runProgram(commandOf(program, arguments), answers); });
    return code;
  }

  /// The same for what ends with a message on standard error, before or after any dialog.
  static int runRefused(const std::string& program, const std::vector<std::string>& arguments) {
    return runProgram(commandOf(program, arguments), Answers::program);
  }

 private:
  static std::vector<std::string> commandOf(const std::string& program,
                                            const std::vector<std::string>& arguments) {
    const std::filesystem::path folder = modulePath().parent_path();
    std::vector<std::string> command = {(folder / (program + suffix)).string(),
                                        modulePath().string()};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return command;
  }

#ifdef _WIN32
  static constexpr const char* suffix = ".exe";
#else
  static constexpr const char* suffix = "";
#endif
};

TEST_F(Programs, MinimalHostExportsItsFrame) {
  EXPECT_EQ(run("minimal_host", {}, {typesFileName(typed("quadro")), answersYes()}), 0);
  EXPECT_EQ(console, consoleLine("Exportar IFC: " + typed("quadro.ifc")));
  EXPECT_THAT(listing(), ElementsAre("quadro.ifc"));
  const IfcText ifc(file("quadro.ifc"));
  EXPECT_TRUE(ifc.isComplete());
  EXPECT_EQ(ifc.elements().size(), 7U);
  EXPECT_THAT(ifc.elementsIn("Elementos_de_Portico"),
              ElementsAre("IFCCOLUMN W W 200x22.5", "IFCCOLUMN W W 200x22.5",
                          "IFCBEAM ][_1 ][ 150 50 3", "IFCBEAM ][_2 ][ 150 50 3"));
  EXPECT_THAT(ifc.elementsIn("Elementos_de_Trelica"),
              ElementsAre("IFCMEMBER 2L_1 2L 50 5", "IFCMEMBER 2L_2 2L 50 5"));
  EXPECT_THAT(ifc.elementsIn("Pavimento 1"), ElementsAre("IFCBEAM RED RED 16"));
  EXPECT_EQ(ifc.all("IFCELEMENTASSEMBLY").size(), 2U);
  EXPECT_THAT(ifc.bytes, HasSubstr("/* IfcBeam (0,0,0), (0,0,4000)\r\n"));
}

TEST_F(Programs, MinimalHostSaysThatNoFileWasChosen) {
  EXPECT_EQ(run("minimal_host", {}, {cancelsFileName()}), 1);
  EXPECT_EQ(console, consoleLine("Exportar IFC: no file was chosen"));
  EXPECT_THAT(listing(), IsEmpty());
}

#ifdef _WIN32
// On Windows the host answers the boxes itself; on Linux the module prints them.
constexpr bool hostAnswersBoxes = true;
#else
constexpr bool hostAnswersBoxes = false;
#endif

TEST_F(Programs, UnattendedHostExportsAndKeepsTheModel) {
  const std::string model = batchModel({BarText{}, BarText{.section = "RED 16"}});
  writeFile(file("modelo.txt"), model);
  EXPECT_EQ(run("run_host", {typed("modelo.txt"), typed("modelo.ifc")}, {}), 0);
  EXPECT_THAT(listing(), ElementsAre("modelo.ifc", "modelo.txt"));
  EXPECT_EQ(readFile(file("modelo.txt")), model);
  EXPECT_EQ(IfcText(file("modelo.ifc")).elements().size(), 2U);
}

TEST_F(Programs, UnattendedHostReplacesAnOldFile) {
  writeFile(file("modelo.txt"), batchModel({BarText{}}));
  writeFile(file("modelo.ifc"), "an older export");
  EXPECT_EQ(run("run_host", {typed("modelo.txt"), typed("modelo.ifc")}, {}), 0);
  EXPECT_THAT(listing(), ElementsAre("modelo.ifc", "modelo.txt"));
  EXPECT_EQ(IfcText(file("modelo.ifc")).elements().size(), 1U);
}

TEST_F(Programs, UnattendedHostKeepsAnOldFileWhenTheModuleCannotWrite) {
  writeFile(file("modelo.txt"), batchModel({BarText{}}));
  writeFile(file("modelo.ifc"), "an older export");
  std::filesystem::create_directory(file("modelo.ifc.parttemp"));  // where the module writes
  EXPECT_EQ(runRefused("run_host", {typed("modelo.txt"), typed("modelo.ifc")}), 1);
  EXPECT_THAT(listing(), ElementsAre("modelo.ifc", "modelo.ifc.parttemp/", "modelo.txt"));
  EXPECT_EQ(readFile(file("modelo.ifc")), "an older export");
}

TEST_F(Programs, UnattendedHostRefusesJson) {
  const std::string model = "\xEF\xBB\xBF\n{\"bars\": []}";
  writeFile(file("modelo.json"), model);
  EXPECT_EQ(runRefused("run_host", {typed("modelo.json"), typed("modelo.ifc")}), 2);
  EXPECT_THAT(listing(), ElementsAre("modelo.json"));
  EXPECT_EQ(readFile(file("modelo.json")), model);
}

TEST_F(Programs, UnattendedHostRefusesTheModelAsOutput) {
  const std::string model = batchModel({BarText{}});
  for (const char* name : {"modelo.ifc", "saida.ifc.part", "saida.ifc.parttemp"}) {
    SCOPED_TRACE(name);
    writeFile(file(name), model);
    const std::string output = name == std::string("modelo.ifc") ? "./modelo.ifc" : "saida.ifc";
    EXPECT_EQ(runRefused("run_host", {typed(name), typed(output)}), 2);
    EXPECT_THAT(listing(), ElementsAre(name));
    EXPECT_EQ(readFile(file(name)), model);
    std::filesystem::remove(file(name));
  }
}

TEST_F(Programs, UnattendedHostTakesNamesWithAccents) {
  const std::string folder = "Galp\xC3\xA3o n\xC2\xBA 1";
  std::filesystem::create_directory(file(folder));
  writeFile(file(folder + "/modelo.txt"), batchModel({BarText{}}));
  EXPECT_EQ(run("run_host",
                {typed(folder + "/modelo.txt"), typed(folder + "/sa\xC3\xAD\x64\x61.ifc")}, {}),
            0);
  EXPECT_EQ(IfcText(file(folder + "/sa\xC3\xAD\x64\x61.ifc")).elements().size(), 1U);
}

TEST_F(Programs, UnattendedHostPrintsTheBoxesItAnswers) {
  writeFile(file("modelo.txt"), batchModel({BarText{.section = "QUADRADO 10"},
                                            BarText{.section = std::string(48, 'W')}}));
  std::vector<Dialog> boxes = {box("Perfil Desconhecido", "Aviso"),
                               box("Problema ao exportar Barra", "Erro")};
  const std::string printed = consoleLine("Aviso: Perfil Desconhecido") +
                              consoleLine("AVISO! Perfil desconhecido: QUADRADO 10") +
                              consoleLine("Erro: Problema ao exportar Barra");
  if (hostAnswersBoxes) {
    boxes.clear();
  }
  EXPECT_EQ(run("run_host", {typed("modelo.txt"), typed("modelo.ifc")}, boxes, Answers::program),
            0);
  EXPECT_EQ(console,
            hostAnswersBoxes ? printed : consoleLine("AVISO! Perfil desconhecido: QUADRADO 10"));
  EXPECT_EQ(IfcText(file("modelo.ifc")).elements().size(), 1U);
}

}  // namespace
}  // namespace exportifc::module_tests
