// Problems of single bars: shown to the user, and the export goes on.
#include "tests/module/module_test.h"

namespace exportifc::module_tests {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class Messages : public ModuleTest {
 protected:
  /// Exports the host's bars with the boxes that the script adds after the question.
  IfcText exportedWith(std::vector<Dialog> boxes) {
    boxes.insert(boxes.begin(), {typesFileName(typed("quadro.ifc")), answersYes()});
    EXPECT_EQ(execute(boxes), 1);
    IfcText ifc(file("quadro.ifc"));
    EXPECT_TRUE(ifc.isComplete());
    return ifc;
  }

  const Dialog unknownProfile = box("Perfil Desconhecido", "Aviso");
  const Dialog barProblem = box("Problema ao exportar Barra", "Erro");
};

TEST_F(Messages, UnknownProfileBecomesASquare) {
  host.bars = {{.section = "QUADRADO 10 x 20"}};
  const IfcText ifc = exportedWith({unknownProfile});
  EXPECT_EQ(console, consoleLine("AVISO! Perfil desconhecido: QUADRADO 10 x 20"));
  EXPECT_THAT(ifc.elements(), ElementsAre("IFCBEAM QUADRADO QUADRADO 10 x 20"));

  // The outline's lines come first in the bar.
  const char* const corners[] = {"(-2.00000, -2.00000)", "(2.00000, -2.00000)",
                                 "(2.00000, 2.00000)", "(-2.00000, 2.00000)",
                                 "(-2.00000, -2.00000)"};
  ASSERT_GT(ifc.entities.size(), 7U);
  for (std::size_t i = 0; i < 5; ++i) {
    EXPECT_EQ(ifc.entities[i].reference, "#" + std::to_string(5006 + i));
    EXPECT_EQ(ifc.entities[i].keyword, "IFCCARTESIANPOINT");
    EXPECT_EQ(ifc.entities[i].arguments, corners[i]);
  }
  EXPECT_EQ(ifc.entities[5].keyword, "IFCPOLYLINE");
  EXPECT_EQ(ifc.entities[5].arguments, "(#5006, #5007, #5008, #5009, #5010)");
  EXPECT_EQ(ifc.entities[6].keyword, "IFCARBITRARYCLOSEDPROFILEDEF");
  EXPECT_EQ(ifc.entities[6].arguments, ".AREA., 'UnknownProfile', #5011");
  ASSERT_EQ(ifc.all("IFCEXTRUDEDAREASOLID").size(), 1U);
  EXPECT_EQ(ifc.all("IFCEXTRUDEDAREASOLID")[0].arguments.rfind("#5012, ", 0), 0U);
}

TEST_F(Messages, UnknownProfileWarnsOnceForEveryBar) {
  host.bars = {
      {.section = "ABC 1"}, {.section = "W 200"}, {.section = "ABC 1"}, {.section = "w 1"}};
  const IfcText ifc = exportedWith({unknownProfile, unknownProfile, unknownProfile});
  EXPECT_EQ(console, consoleLine("AVISO! Perfil desconhecido: ABC 1") +
                         consoleLine("AVISO! Perfil desconhecido: ABC 1") +
                         consoleLine("AVISO! Perfil desconhecido: w 1"));
  EXPECT_EQ(ifc.all("IFCARBITRARYCLOSEDPROFILEDEF").size(), 3U);
  EXPECT_EQ(ifc.elements().size(), 4U);
}

TEST_F(Messages, UnequalDoubleAnglesWarnOnceForEachHalf) {
  host.bars = {{.section = "2L_ASSIMETRICO 50 30 5"}};
  const IfcText ifc = exportedWith({unknownProfile, unknownProfile});
  EXPECT_EQ(console, consoleLine("AVISO! Perfil desconhecido: 2L_ASSIMETRICO_1") +
                         consoleLine("AVISO! Perfil desconhecido: 2L_ASSIMETRICO_2"));
  EXPECT_THAT(ifc.elements(), ElementsAre("IFCBEAM 2L_ASSIMETRICO_1 2L_ASSIMETRICO 50 30 5",
                                          "IFCBEAM 2L_ASSIMETRICO_2 2L_ASSIMETRICO 50 30 5"));
}

TEST_F(Messages, EmptySectionIsUnknownToo) {
  host.bars = {{.section = ""}};
  const IfcText ifc = exportedWith({unknownProfile});
  EXPECT_EQ(console, consoleLine("AVISO! Perfil desconhecido: "));
  EXPECT_THAT(ifc.elements(), ElementsAre("IFCBEAM    "));  // the blank for a missing text, twice
}

TEST_F(Messages, EveryUnknownNameIsPrintedAlsoAfterOneThatTheConsoleCannotTake) {
  // A host's byte 0xE7 arrives as U+FFE7, which ends the file; the bars after it still warn.
  host.bars = {{.section = "PE\xC7\x41 1"}, {.section = "ABC 1"}, {.section = "ABC 2"}};
  EXPECT_EQ(execute({typesFileName(typed("quadro.ifc")), answersYes(), unknownProfile,
                     unknownProfile, unknownProfile}),
            1);
  EXPECT_THAT(console, HasSubstr("AVISO! Perfil desconhecido: PE"));
  EXPECT_THAT(console, HasSubstr(consoleLine("AVISO! Perfil desconhecido: ABC 1") +
                                 consoleLine("AVISO! Perfil desconhecido: ABC 2")));
}

TEST_F(Messages, HostAndModuleShareStandardOutput) {
  host.bars = {{.section = "ABC 1"}};
  host.before = [](const Query& query) {
    if (query.code == EXPORTIFC_BAR_COUNT) {
      std::printf("host\n");
      std::fflush(stdout);
    }
  };
  attended({typesFileName(typed("quadro.ifc")), answersYes(), unknownProfile}, [&] {
    module->plugInExecute();
    std::printf("end\n");
  });
  EXPECT_EQ(console, consoleLine("host") + consoleLine("AVISO! Perfil desconhecido: ABC 1") +
                         consoleLine("end"));
}

TEST_F(Messages, BarWithoutRecordIsReportedAndSkipped) {
  host.bars = {
      {.section = "W 200"}, {.hasRecord = false}, {.hasRecord = false}, {.section = "IPE 1"}};
  const IfcText ifc = exportedWith({barProblem, barProblem});
  EXPECT_THAT(ifc.elements(), ElementsAre("IFCBEAM W W 200", "IFCBEAM IPE IPE 1"));
  EXPECT_EQ(console, "");
}

TEST_F(Messages, BarWithoutRecordIsReportedBeforeItsTypeAndVisibilityCount) {
  host.bars = {{.type = 10, .hasRecord = false}, {.visible = 0, .hasRecord = false}};
  EXPECT_EQ(execute({typesFileName(typed("quadro.ifc")), answersNo(), barProblem, barProblem}), 1);
  EXPECT_THAT(IfcText(file("quadro.ifc")).elements(), IsEmpty());
}

TEST_F(Messages, BarThatIsNotExportedIsNotLookedAt) {
  host.bars = {{.section = "ABC 1", .type = 10}, {.section = "ABC 1", .visible = 0}};
  EXPECT_EQ(execute({typesFileName(typed("quadro.ifc")), answersNo()}), 1);
  EXPECT_EQ(console, "");
  EXPECT_THAT(IfcText(file("quadro.ifc")).elements(), IsEmpty());
}

}  // namespace
}  // namespace exportifc::module_tests
