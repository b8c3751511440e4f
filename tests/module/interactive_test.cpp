// Interactive exports: the save dialog, the invisible-bars question, the file that comes of them.
#include <algorithm>
#include <clocale>
#include <cstring>
#include <thread>

#include "tests/module/blocked_file.h"
#include "tests/module/module_test.h"

#ifndef _WIN32
#include <array>

#include <sys/stat.h>
#include <fcntl.h>
#include <unistd.h>
#endif

namespace exportifc::module_tests {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class Interactive : public ModuleTest {
 protected:
  void SetUp() override {
    ModuleTest::SetUp();
    host.bars = {{.section = "W 200"}, {.section = "RED 16", .visible = 0}, {.section = "IPE 100"}};
  }
};

TEST_F(Interactive, YesExportsInvisibleBars) {
  EXPECT_EQ(execute({typesFileName(typed("quadro.ifc")), answersYes()}), 1);
  EXPECT_THAT(listing(), ElementsAre("quadro.ifc"));
  const IfcText ifc(file("quadro.ifc"));
  EXPECT_TRUE(ifc.isComplete());
  EXPECT_THAT(ifc.elements(),
              ElementsAre("IFCBEAM W W 200", "IFCBEAM RED RED 16", "IFCBEAM IPE IPE 100"));
  EXPECT_EQ(console, "");
}

TEST_F(Interactive, NoLeavesInvisibleBarsOut) {
  EXPECT_EQ(execute({typesFileName(typed("quadro.ifc")), answersNo()}), 1);
  const IfcText ifc(file("quadro.ifc"));
  EXPECT_TRUE(ifc.isComplete());
  EXPECT_THAT(ifc.elements(), ElementsAre("IFCBEAM W W 200", "IFCBEAM IPE IPE 100"));
}

TEST_F(Interactive, TheRecordsCommandIsTheSame) {
  std::int64_t result = 0;
  attended({typesFileName(typed("quadro.ifc")), answersYes()},
           [&] { result = record().execute(); });
  EXPECT_EQ(result, 1);
  EXPECT_EQ(IfcText(file("quadro.ifc")).elements().size(), 3U);
}

TEST_F(Interactive, CancelAsksNothingAndWritesNothing) {
  EXPECT_EQ(execute({cancelsFileName()}), -1);
  EXPECT_THAT(listing(), IsEmpty());
  EXPECT_THAT(host.queries, IsEmpty());
  EXPECT_STREQ(record().outputPath, "");
  // And may be tried again.
  EXPECT_EQ(execute({cancelsFileName()}), -1);
  exported("quadro.ifc");
}

TEST_F(Interactive, NameWithoutExtensionGetsOne) {
  EXPECT_EQ(execute({typesFileName(typed("quadro")), answersYes()}), 1);
  EXPECT_THAT(listing(), ElementsAre("quadro.ifc"));
  EXPECT_TRUE(IfcText(file("quadro.ifc")).isComplete());
  EXPECT_EQ(record().outputPath, narrowBytes(file("quadro.ifc")));
}

TEST_F(Interactive, NameWithAnExtensionKeepsIt) {
  EXPECT_EQ(execute({typesFileName(typed("quadro.txt")), answersYes()}), 1);
  EXPECT_THAT(listing(), ElementsAre("quadro.txt"));
}

TEST_F(Interactive, ReplacesAnOlderFile) {
  writeFile(file("quadro.ifc"), std::string(100000, 'x'));
  const IfcText ifc = exported("quadro.ifc");
  EXPECT_EQ(ifc.bytes.find('x' + std::string(9, 'x')), std::string::npos);
}

TEST_F(Interactive, NameWithAccentsAndBlanks) {
  const std::string name = "P\xC3\xB3rtico n\xC2\xBA 1 \xE2\x80\x93 a\xC3\xA7o.ifc";
  exported(name);  // Pórtico nº 1 – aço.ifc
  EXPECT_THAT(listing(), ElementsAre(name));
  EXPECT_EQ(record().outputPath, narrowBytes(file(name)));
}

#ifdef _WIN32
TEST_F(Interactive, PathWithoutNarrowFormLeavesTheFieldEmptyAndIsExported) {
  const std::string name = "\xCE\xA9.ifc";  // Ω.ifc: not in Windows-1252
  exported(name);
  EXPECT_THAT(listing(), ElementsAre(name));
  EXPECT_TRUE(std::all_of(std::begin(record().outputPath), std::end(record().outputPath),
                          [](char c) { return c == '\0'; }));
}

TEST_F(Interactive, LeavesTheRuntimeInPortuguese) {
  exported("quadro.ifc");
  EXPECT_THAT(std::setlocale(LC_ALL, nullptr), HasSubstr("Portuguese"));
}
#endif

TEST_F(Interactive, FileThatCannotBeCreatedIsReported) {
  const BlockedFile blocked(file("preso.ifc"), BlockedFile::Block::everything);
  EXPECT_EQ(
      execute({typesFileName(typed("preso.ifc")),
               box("N\xC3\xA3o foi poss\xC3\xADvel criar o arquivo", "Erro ao exportar arquivo")}),
      -1);
  EXPECT_THAT(host.queries, IsEmpty());
  EXPECT_STREQ(record().outputPath, "");
  // The module is as before.
  exported("quadro.ifc");
}

TEST_F(Interactive, FileIsProbedBeforeTheQuestion) {
  bool existed = false;
  Dialog question = answersYes();
  question.meanwhile = [&] { existed = std::filesystem::exists(file("quadro.ifc")); };
  EXPECT_EQ(execute({typesFileName(typed("quadro.ifc")), question}), 1);
  EXPECT_TRUE(existed);
  EXPECT_EQ(IfcText(file("quadro.ifc")).bytes.rfind("ISO-10303-21;\r\n", 0), 0U);
}

TEST_F(Interactive, OutputPathIsToldWhileTheHostIsAsked) {
  std::vector<std::string> fields;
  host.before = [&](const Query&) {
    fields.emplace_back(record().outputPath, sizeof(record().outputPath));
  };
  Dialog question = answersYes();
  std::string atTheQuestion = "not asked";
  question.meanwhile = [&] { atTheQuestion = record().outputPath; };
  EXPECT_EQ(execute({typesFileName(typed("quadro.ifc")), question}), 1);
  EXPECT_EQ(atTheQuestion, "");  // the file is not open yet
  std::string expected(sizeof(record().outputPath), '\0');
  const std::string path = narrowBytes(file("quadro.ifc"));
  expected.replace(0, path.size(), path);
  ASSERT_EQ(fields.size(), host.queries.size());
  ASSERT_FALSE(fields.empty());
  EXPECT_EQ(fields.front(), expected);
  EXPECT_EQ(fields.back(), expected);
}

TEST_F(Interactive, HeaderAndPreambleAreInTheFileWhenTheHostIsAsked) {
  std::string first;
  host.before = [&](const Query& query) {
    if (query.code == EXPORTIFC_LENGTH_UNIT) {
      first = readFile(file("quadro.ifc"));
    }
  };
  const IfcText ifc = exported("quadro.ifc");
  EXPECT_EQ(first.rfind("ISO-10303-21;\r\nHEADER;\r\n", 0), 0U);
  EXPECT_THAT(first, HasSubstr("IFCBUILDINGSTOREY"));
  EXPECT_EQ(ifc.bytes.compare(0, first.size(), first), 0);
  EXPECT_THAT(first, testing::Not(HasSubstr("#5006=")));
}

TEST_F(Interactive, NumbersKeepTheirPoint) {
  host.bars = {{.section = "W 200", .dims = {206.5F, 102.25F, 8, 6.5F}}};
  const IfcText ifc = exported("quadro.ifc");
  ASSERT_FALSE(ifc.all("IFCISHAPEPROFILEDEF").empty());
  EXPECT_THAT(ifc.all("IFCISHAPEPROFILEDEF").front().arguments, HasSubstr("206.50000"));
  EXPECT_THAT(ifc.bytes, HasSubstr("/* IfcBeam (0,0,0), (5000,0,0)\r\nangulo: 0, perfil: W 200"));
}

// ---- Linux: a terminal instead of dialogs ----------------------------------------------------

#ifndef _WIN32

TEST_F(Interactive, AsksUntilTheAnswerIsOneOfTheTwo) {
  Dialog perhaps = answersNo();
  perhaps.keys = "talvez\n";
  Dialog no = answersNo();
  no.keys = "n\n";
  EXPECT_EQ(execute({typesFileName(typed("quadro.ifc")), perhaps, no}), 1);
  EXPECT_EQ(IfcText(file("quadro.ifc")).elements().size(), 2U);
}

TEST_F(Interactive, TakesSmallLetters) {
  Dialog yes = answersYes();
  yes.keys = "s\n";
  EXPECT_EQ(execute({typesFileName(typed("quadro.ifc")), yes}), 1);
  EXPECT_EQ(IfcText(file("quadro.ifc")).elements().size(), 3U);
}

TEST_F(Interactive, EndOfInputCancelsTheFileAndTheNextExportAsksAgain) {
  Dialog end = cancelsFileName();
  end.keys = "\x04";
  EXPECT_EQ(execute({end}), -1);
  EXPECT_THAT(listing(), IsEmpty());
  exported("quadro.ifc");
}

TEST_F(Interactive, EndOfInputAtTheQuestionCountsAsYes) {
  Dialog end = answersYes();
  end.keys = "\x04";
  EXPECT_EQ(execute({typesFileName(typed("quadro.ifc")), end}), 1);
  EXPECT_EQ(IfcText(file("quadro.ifc")).elements().size(), 3U);
}

TEST_F(Interactive, WithoutATerminalTheFileCountsAsCancelled) {
  EXPECT_EQ(execute({}, Input::none), -1);
  EXPECT_THAT(listing(), IsEmpty());
}

TEST_F(Interactive, WithoutATerminalTheQuestionCountsAsYes) {
  // The terminal goes between the two questions. The output is a pipe, so that the module waits for
  // us before it comes to the second one.
  const std::string pipe = file("quadro.ifc").string();
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  std::string written;
  std::thread other([&] {
    const int reader = ::open(pipe.c_str(), O_RDONLY);  // until the module opens it for the probe
    const int nothing = ::open("/dev/null", O_RDONLY);
    ::dup2(nothing, STDIN_FILENO);
    ::close(nothing);
    const int writer = ::open(pipe.c_str(), O_WRONLY);  // until the module reopens it for reading
    std::array<char, 4096> piece{};
    while (written.find("END-ISO-10303-21;") == std::string::npos) {
      const ssize_t count = ::read(reader, piece.data(), piece.size());
      written.append(piece.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    }
    ::close(writer);
    ::close(reader);
  });
  EXPECT_EQ(execute({typesFileName(pipe)}), 1);
  // Whatever the module did, the other end gets what it waits for.
  const int release = ::open(pipe.c_str(), O_RDWR | O_NONBLOCK);
  EXPECT_GT(::write(release, "END-ISO-10303-21;", 17), 0);
  other.join();
  ::close(release);
  EXPECT_THAT(written, HasSubstr("'RED 16'"));
}

TEST_F(Interactive, MessagesNeedNoTerminal) {
  writeFile(file("modelo.txt"), batchModel({BarText{.section = "QUADRADO 10"}}));
  const std::string path = file("modelo.txt").string();
  attended(
      {box("Perfil Desconhecido", "Aviso")}, [&] { module->plugInExportIfcFile(path.c_str()); },
      Input::none);
  EXPECT_EQ(console, "AVISO! Perfil desconhecido: QUADRADO 10\n");
}

#endif

}  // namespace
}  // namespace exportifc::module_tests
