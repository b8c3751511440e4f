// Exports that fail as a whole: what is shown, what is thrown, what stays on the disk.
#include <new>
#include <stdexcept>

#include "tests/module/allocations.h"
#include "tests/module/blocked_file.h"
#include "tests/module/module_test.h"

namespace exportifc::module_tests {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

/// Windows-1252, as a host receives it.
const char* const fileCreationFailed = "Erro na cria\xE7\xE3o do arquivo";

class Failures : public ModuleTest {
 protected:
  /// An interactive export in which the host throws when asked for the type of the second bar.
  template <typename Exception>
  void expectReported(const Exception& exception, const std::string& shown) {
    host.bars.resize(3);
    host.before = [&exception](const Query& query) {
      if (query.code == EXPORTIFC_BAR_TYPE && query.index == 1) {
        throw exception;
      }
    };
    EXPECT_EQ(execute({typesFileName(typed("quadro.ifc")), answersYes(),
                       box(shown, "UNHANDLED EXCEPTION")}),
              1);
  }

  /// The file ends in the middle, after whole lines.
  void expectWithoutTrailer(const std::string& name, std::size_t elements) {
    const IfcText ifc(file(name));
    EXPECT_EQ(ifc.bytes.rfind("ISO-10303-21;\r\nHEADER;\r\n", 0), 0U);
    EXPECT_THAT(ifc.bytes, Not(HasSubstr("END-ISO-10303-21")));
    EXPECT_EQ(ifc.bytes.substr(ifc.bytes.size() - 2), "\r\n");
    EXPECT_EQ(ifc.elements().size(), elements);
    EXPECT_THAT(ifc.all("IFCRELCONTAINEDINSPATIALSTRUCTURE"), IsEmpty());
  }
};

// ---- Standard exceptions ---------------------------------------------------------------------

TEST_F(Failures, HostsExceptionIsReportedAndTheFileStaysWithoutTrailer) {
  expectReported(std::runtime_error("the host failed"), "the host failed");
  expectWithoutTrailer("quadro.ifc", 1);
  EXPECT_EQ(record().outputPath, narrowBytes(file("quadro.ifc")));
  // The file is closed: its owner may delete it.
  EXPECT_TRUE(std::filesystem::remove(file("quadro.ifc")));
  // The mode has not changed: the next export asks again.
  EXPECT_EQ(execute({cancelsFileName()}), -1);
}

TEST_F(Failures, OutOfMemoryIsReported) {
  expectReported(std::bad_alloc(), std::bad_alloc().what());
  expectWithoutTrailer("quadro.ifc", 1);
}

TEST_F(Failures, DescriptionMayHaveAccents) {
  expectReported(std::logic_error("exce\xE7\xE3o n\xE3o prevista"),
                 "exce\xC3\xA7\xC3\xA3o n\xC3\xA3o prevista");
}

TEST_F(Failures, PlainTextOtherThanTheOneOfFileCreationIsReported) {
  const char* const text = "bad argument";
  expectReported(text, "bad argument");
  expectWithoutTrailer("quadro.ifc", 1);
}

TEST_F(Failures, NoTextAtAllIsReportedAsAnEmptyOne) {
  const char* const text = nullptr;
  expectReported(text, "");
  expectWithoutTrailer("quadro.ifc", 1);
}

TEST_F(Failures, ExceptionBeforeTheFirstBarLeavesHeaderAndPreamble) {
  host.before = [](const Query&) { throw std::out_of_range("nothing"); };
  EXPECT_EQ(execute({typesFileName(typed("quadro.ifc")), answersYes(),
                     box("nothing", "UNHANDLED EXCEPTION")}),
            1);
  expectWithoutTrailer("quadro.ifc", 0);
  EXPECT_THAT(readFile(file("quadro.ifc")), HasSubstr("IFCBUILDINGSTOREY"));
  EXPECT_THAT(IfcText(file("quadro.ifc")).entities, IsEmpty());
}

TEST_F(Failures, SecondExportAfterAFailedOneIsWhole) {
  expectReported(std::runtime_error("the host failed"), "the host failed");
  host.before = nullptr;
  EXPECT_EQ(exported("quadro.ifc").elements().size(), 3U);
}

TEST_F(Failures, InBatchModeTheInputIsLostAndTheTempFileStays) {
  constexpr std::size_t longLine = 8U << 20;
  constexpr std::size_t limit = 1U << 20;
  writeFile(file("modelo.txt"),
            batchModel({BarText{}, BarText{.section = std::string(longLine, 'W')}}));
  {
    const Allocations outOfMemory(*module, {.largest = limit});
    EXPECT_EQ(exportFile("modelo.txt", {box(std::bad_alloc().what(), "UNHANDLED EXCEPTION")}), 1);
  }
  EXPECT_THAT(listing(), ElementsAre("modelo.txttemp"));
  expectWithoutTrailer("modelo.txttemp", 1);
  // The mode still names the input: the menu command writes the same file, of a missing model.
  EXPECT_EQ(execute({}), 1);
  EXPECT_THAT(listing(), ElementsAre("modelo.txttemp"));
  const IfcText ifc(file("modelo.txttemp"));
  EXPECT_TRUE(ifc.isComplete());
  EXPECT_THAT(ifc.elements(), IsEmpty());
}

TEST_F(Failures, WithoutALimitTheSameModelOnlyReportsTheLongBar) {
  writeFile(file("modelo.txt"),
            batchModel({BarText{}, BarText{.section = std::string(8U << 20, 'W')}}));
  EXPECT_EQ(exportFile("modelo.txt", {box("Problema ao exportar Barra", "Erro")}), 1);
  EXPECT_EQ(IfcText(file("modelo.txt")).elements().size(), 1U);
}

// ---- The thrown text -------------------------------------------------------------------------

TEST_F(Failures, BatchExportThatCannotWriteThrowsAndKeepsItsInput) {
  const std::string model = batchModel({BarText{}});
  writeFile(file("modelo.txt"), model);
  const BlockedFile blocked(file("modelo.txttemp"), BlockedFile::Block::writing);
  const std::vector<std::string> before = listing();
  const std::string path = narrowBytes(file("modelo.txt"));
  EXPECT_EQ(thrownText({}, [&] { module->plugInExportIfcFile(path.c_str()); }), fileCreationFailed);
  EXPECT_EQ(listing(), before);
  EXPECT_EQ(readFile(file("modelo.txt")), model);
  // The path stays: the menu command tries the same.
  EXPECT_EQ(thrownText({}, [&] { module->plugInExecute(); }), fileCreationFailed);
  EXPECT_EQ(thrownText({}, [&] { record().execute(); }), fileCreationFailed);
  EXPECT_EQ(readFile(file("modelo.txt")), model);
}

TEST_F(Failures, BatchExportIntoAMissingFolderThrows) {
  const std::string path = narrowBytes(file("nenhuma") / "modelo.txt");
  EXPECT_EQ(thrownText({}, [&] { module->plugInExportIfcFile(path.c_str()); }), fileCreationFailed);
  EXPECT_THAT(listing(), IsEmpty());
  EXPECT_STREQ(record().outputPath, "");
}

TEST_F(Failures, ModuleWorksOnAfterTheThrow) {
  const std::string path = narrowBytes(file("nenhuma") / "modelo.txt");
  EXPECT_EQ(thrownText({}, [&] { module->plugInExportIfcFile(path.c_str()); }), fileCreationFailed);
  writeFile(file("modelo.txt"), batchModel({BarText{}}));
  EXPECT_EQ(exportFile("modelo.txt"), 1);
  EXPECT_EQ(IfcText(file("modelo.txt")).elements().size(), 1U);
}

TEST_F(Failures, BatchPathTooLongForItsSuffixThrowsAndKeepsItsInput) {
  const std::string path(1020, 'a');
  EXPECT_EQ(thrownText({}, [&] { module->plugInExportIfcFile(path.c_str()); }), fileCreationFailed);
  EXPECT_EQ(thrownText({}, [&] { module->plugInExecute(); }), fileCreationFailed);
}

TEST_F(Failures, LongestBatchPathIsTakenAndOneMoreCharacterThrows) {
  // 1,019 characters and "temp" fill the 1,024 with the terminator.
  constexpr std::size_t longest = 1019;
  std::filesystem::path folder = anyLength(file("pasta"));
  while (narrowBytes(folder).size() + 101 < longest - 10) {
    folder /= std::string(100, 'p');
  }
  std::filesystem::create_directories(folder);
  const std::string model = batchModel({BarText{}});
  const std::size_t room = longest - narrowBytes(folder).size() - 1;

  const std::filesystem::path fits = folder / std::string(room, 'm');
  writeFile(fits, model);
  const std::string path = narrowBytes(fits);
  ASSERT_EQ(path.size(), longest);
  EXPECT_EQ(thrownText({}, [&] { module->plugInExportIfcFile(path.c_str()); }), "");
  EXPECT_EQ(record().outputPath, path + "temp");
#ifndef _WIN32
  // Wine's narrow file functions end at 260 characters: there the input can be neither read nor
  // replaced.
  EXPECT_EQ(IfcText(fits).elements().size(), 1U);
#endif

  const std::filesystem::path tooLong = folder / std::string(room + 1, 'm');
  writeFile(tooLong, model);
  const std::string longPath = narrowBytes(tooLong);
  EXPECT_EQ(thrownText({}, [&] { module->plugInExportIfcFile(longPath.c_str()); }),
            fileCreationFailed);
  EXPECT_EQ(readFile(tooLong), model);

  // One by one: listing folders this deep is beyond the Windows library.
  std::filesystem::path temp = fits;
  temp += "temp";
  for (const std::filesystem::path& left : {fits, temp, tooLong}) {
    std::filesystem::remove(left);
  }
  for (; folder.filename() != file("").parent_path().filename(); folder = folder.parent_path()) {
    std::filesystem::remove(folder);
  }
}

TEST_F(Failures, InteractiveExportThrowsWhenTheFileBecomesUnwritableAfterTheProbe) {
  host.bars.resize(1);
  std::unique_ptr<BlockedFile> blocked;
  Dialog question = answersYes();
  question.meanwhile = [&] {
    blocked = std::make_unique<BlockedFile>(file("quadro.ifc"), BlockedFile::Block::everything);
  };
  EXPECT_EQ(
      thrownText({typesFileName(typed("quadro.ifc")), question}, [&] { module->plugInExecute(); }),
      fileCreationFailed);
  EXPECT_THAT(host.queries, IsEmpty());
  EXPECT_STREQ(record().outputPath, "");
  blocked.reset();
  // Still interactive.
  exported("quadro.ifc");
}

TEST_F(Failures, FileThatCanOnlyBeReadPassesTheProbeAndThrows) {
  const BlockedFile readable(file("quadro.ifc"), BlockedFile::Block::writing);
  EXPECT_EQ(thrownText({typesFileName(typed("quadro.ifc")), answersYes()},
                       [&] { module->plugInExecute(); }),
            fileCreationFailed);
}

TEST_F(Failures, ThrownTextLivesAsLongAsTheModule) {
  const std::string path = narrowBytes(file("nenhuma") / "modelo.txt");
  const char* kept = nullptr;
  for (int i = 0; i < 2; ++i) {
    try {
      attended({}, [&] { module->plugInExportIfcFile(path.c_str()); });
      FAIL() << "nothing was thrown";
    } catch (const char* text) {
      EXPECT_TRUE(kept == nullptr || kept == text);
      kept = text;
    }
  }
  EXPECT_STREQ(kept, fileCreationFailed);
}

}  // namespace
}  // namespace exportifc::module_tests
