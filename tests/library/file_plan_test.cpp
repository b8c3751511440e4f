#include "cli/file_plan.h"

#include <filesystem>
#include <functional>
#include <string>

#include <gtest/gtest.h>

#ifndef _WIN32
#include <fcntl.h>
#include <unistd.h>
#endif

#include "cli/failure.h"
#include "cli/system.h"
#include "library/files/paths.h"
#include "library/frame/model_export.h"
#include "library/sections/profile_drawing.h"
#include "library/text/file_extension.h"
#include "tests/library/library_test.h"
#include "tests/support/files.h"
#include "tests/support/sinks.h"

namespace fs = std::filesystem;

namespace exportifc::cli {
namespace {

using test::InLanguage;
using test::TemporaryFolder;
using test::writeFile;

std::string failureOf(const std::function<void()>& work) {
  try {
    work();
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.code(), exitBadUse);
    return failure.what();
  }
  return "";
}

/// Whether a call may read the one and write the other.
bool areOne(const std::string& input, const std::string& output) {
  FilePlan plan;
  plan.reads(input);
  return !failureOf([&] { plan.writes(output); }).empty();
}

/// Whether a call may write both.
bool areOneOutput(const std::string& first, const std::string& second) {
  FilePlan plan;
  plan.writes(first);
  return !failureOf([&] { plan.writes(second); }).empty();
}

class Files : public testing::Test {
 protected:
  Files() {
    fs::create_directories(folder_.path() / "sub");
    writeFile(folder_.path() / "a.json", "a");
    writeFile(folder_.path() / "b.json", "b");
  }

  /// A name in the folder.
  std::string in(const std::string& name) const { return textOf(folder_.path() / pathOf(name)); }

 private:
  TemporaryFolder folder_;
};

using FilePlans = Files;

TEST_F(FilePlans, TellFilesApart) {
  FilePlan plan;
  plan.reads(in("a.json"));
  plan.reads(in("b.json"));
  plan.reads(in("a.json"));  // as often as one likes
  plan.writes(in("c.ifc"));
  plan.writes(in("d.ifc"));
  plan.writes(in("sub/c.ifc"));
}

TEST_F(FilePlans, RefuseToWriteOntoAnInput) {
  FilePlan plan;
  plan.reads(in("a.json"));
  EXPECT_EQ(failureOf([&] { plan.writes(in("a.json")); }),
            in("a.json") + " (output) and " + in("a.json") +
                " (input) are the same file: choose another output");
}

TEST_F(FilePlans, SpeakTheLanguageOfTheUser) {
  const InLanguage portuguese(Language::portuguese);
  FilePlan plan;
  plan.reads(in("a.json"));
  EXPECT_EQ(failureOf([&] { plan.writes(in("a.json"), "a página"); }),
            in("a.json") + " (a página) e " + in("a.json") +
                " (entrada) são o mesmo arquivo: escolha outra saída");
}

TEST_F(FilePlans, RefuseToReadAnOutput) {
  FilePlan plan;
  plan.writes(in("a.json"));
  EXPECT_EQ(failureOf([&] { plan.reads(in("a.json"), texts::fileTemplate); }),
            in("a.json") + " (the viewer's page) and " + in("a.json") +
                " (output) are the same file: choose another output");
}

TEST_F(FilePlans, RefuseTwoOutputsInOneFile) {
  EXPECT_TRUE(areOneOutput(in("c.ifc"), in("c.ifc")));
  EXPECT_FALSE(areOneOutput(in("c.ifc"), in("d.ifc")));
}

TEST_F(FilePlans, KnowAFileByWhateverWayANameLeadsToIt) {
  EXPECT_TRUE(areOne(in("a.json"), in("sub/../a.json")));
  EXPECT_TRUE(areOne(in("./a.json"), in("sub/.././a.json")));
  EXPECT_FALSE(areOne(in("a.json"), in("sub/a.json")));
  fs::create_hard_link(pathOf(in("a.json")), pathOf(in("hard.json")));
  EXPECT_TRUE(areOne(in("a.json"), in("hard.json")));
  EXPECT_FALSE(areOne(in("b.json"), in("hard.json")));
}

TEST_F(FilePlans, KnowAFileThatIsNotThereYet) {
  EXPECT_TRUE(areOneOutput(in("c.ifc"), in("sub/../c.ifc")));
  EXPECT_TRUE(areOneOutput(in("new/folder/c.ifc"), in("new/./folder/c.ifc")));
  EXPECT_TRUE(areOneOutput(in("new/folder/c.ifc"), in("new/folder/x/../c.ifc")));
  EXPECT_FALSE(areOneOutput(in("new/folder/c.ifc"), in("new/c.ifc")));
  EXPECT_FALSE(areOneOutput(in("new/c.ifc"), in("sub/c.ifc")));
}

TEST_F(FilePlans, KnowRelativeNames) {
  const fs::path before = fs::current_path();
  fs::current_path(pathOf(in("sub")));
  const bool there = areOne(in("a.json"), "../a.json");
  const bool new1 = areOneOutput(in("sub/c.ifc"), "c.ifc");
  const bool other = areOneOutput(in("c.ifc"), "c.ifc");
  fs::current_path(before);
  EXPECT_TRUE(there);
  EXPECT_TRUE(new1);
  EXPECT_FALSE(other);
}

TEST_F(FilePlans, LetterCaseMattersWhereTheSystemSaysSo) {
#ifdef _WIN32
  constexpr bool isOne = true;
#else
  constexpr bool isOne = false;
#endif
  EXPECT_EQ(areOneOutput(in("c.ifc"), in("C.IFC")), isOne);
  EXPECT_EQ(areOneOutput(in("ção.ifc"), in("ÇÃO.ifc")), isOne);
  EXPECT_EQ(areOneOutput(in("c.ifc"), in("c.ifc. .")), isOne);
  EXPECT_EQ(areOne(in("a.json"), in("A.JSON")), isOne);
  EXPECT_EQ(areOneOutput(in("new/c.ifc"), in("NEW./c.ifc")), isOne);
}

TEST_F(FilePlans, HoldStandardInputOnce) {
  FilePlan plan;
  plan.reads("-");
  EXPECT_EQ(failureOf([&] { plan.reads("-"); }), "- (standard input) can be given only once");
}

TEST_F(FilePlans, HoldStandardOutputAnyway) {
  FilePlan plan;
  plan.writes("-");
  plan.writes("-");
}

TEST_F(FilePlans, HoldTheProgramItself) {
  FilePlan plan;
  const std::string program = textOf(system::programPath());
  EXPECT_EQ(failureOf([&] { plan.writes(program); }),
            program + " (output) and " + program +
                " (part of the program) are the same file: choose another output");
}

TEST_F(FilePlans, NobodyLosesADevice) {
#ifdef _WIN32
  const std::string device = "NUL";
#else
  const std::string device = "/dev/null";
#endif
  EXPECT_FALSE(areOneOutput(device, device));
  EXPECT_FALSE(areOne(device, device));
}

TEST_F(FilePlans, KeepNamesOfDevicesWhereTheSystemHasThem) {
  for (const std::string name : {"con.ifc", "Aux", "COM1.x.ifc", "lpt9", "NUL.ifc", "sub/PRN .txt",
                                 "nul/a.ifc", "conout$"}) {
    FilePlan plan;
#ifdef _WIN32
    EXPECT_NE(failureOf([&] { plan.writes(in(name)); }).find("Windows keeps the name"),
              std::string::npos)
        << name;
#else
    EXPECT_EQ(failureOf([&] { plan.writes(in(name)); }), "") << name;
#endif
  }
  for (const std::string name : {"contact.ifc", "COM0.ifc", "COM10", "a.con", "nul"}) {
    FilePlan plan;
    EXPECT_EQ(failureOf([&] { plan.writes(in(name)); }), "") << name;
  }
}

#ifndef _WIN32

TEST_F(FilePlans, FollowLinks) {
  fs::create_symlink("a.json", pathOf(in("link.json")));
  fs::create_symlink("../sub", pathOf(in("sub/folder")));
  fs::create_symlink("nothing.ifc", pathOf(in("dangling.ifc")));
  EXPECT_TRUE(areOne(in("a.json"), in("link.json")));
  EXPECT_FALSE(areOne(in("b.json"), in("link.json")));
  EXPECT_TRUE(areOneOutput(in("sub/c.ifc"), in("sub/folder/folder/c.ifc")));
  EXPECT_TRUE(areOneOutput(in("nothing.ifc"), in("dangling.ifc")));
  EXPECT_TRUE(areOneOutput(in("sub/new/c.ifc"), in("sub/folder/new/c.ifc")));
}

TEST_F(FilePlans, HoldStandardStreamsThatGoToFiles) {
  for (const int stream : {STDOUT_FILENO, STDERR_FILENO, STDIN_FILENO}) {
    const int before = dup(stream);
    const int file = open(in("a.json").c_str(), O_RDWR);
    dup2(file, stream);
    close(file);
    FilePlan plan;
    std::string said;
    if (stream == STDIN_FILENO) {
      plan.reads("-");
    }
    said = failureOf([&] { plan.writes(in("a.json")); });
    dup2(before, stream);
    close(before);
    const std::string name = stream == STDOUT_FILENO   ? "standard output (output)"
                             : stream == STDERR_FILENO ? "standard error (output)"
                                                       : "standard input (input)";
    EXPECT_EQ(said,
              in("a.json") + " (output) and " + name + " are the same file: choose another output");
  }
}

#endif

// ---- files with names of the program's own choice

std::string refusal(const std::string& name, OwnFile kind) {
  FilePlan plan;
  return failureOf([&] { plan.writesDerived(name, "drawing", kind, texts::replaceByOutput); });
}

TEST_F(FilePlans, ReplaceNothingOfOthers) {
  for (const OwnFile kind : {OwnFile::exchangeFile, OwnFile::page, OwnFile::drawing}) {
    EXPECT_EQ(refusal(in("a.json"), kind),
              in("a.json") +
                  " (drawing) is there already and was not written by this program; to replace it, "
                  "name it with -o");
    EXPECT_EQ(refusal(in("new"), kind), "");
    EXPECT_EQ(refusal(in("new/folder/a"), kind), "");
    EXPECT_EQ(refusal(in("sub"), kind), "");  // which is said when it is written
    EXPECT_EQ(refusal("-", kind), "");
    writeFile(pathOf(in("empty")), "");
    EXPECT_EQ(refusal(in("empty"), kind), "");
  }
}

TEST_F(FilePlans, ReplaceWhatTheProgramHasWritten) {
  test::Received received;
  test::MemorySink sink(received);
  exportModel(test::soundModel(), false, sink, [](std::int32_t) { return true; });
  writeFile(pathOf(in("x.ifc")), received.bytes);
  EXPECT_EQ(refusal(in("x.ifc"), OwnFile::exchangeFile), "");
  EXPECT_NE(refusal(in("x.ifc"), OwnFile::page), "");
  writeFile(pathOf(in("x.ifc")), "ISO-10303-21;\r\nHEADER;\r\nof somebody else");
  EXPECT_NE(refusal(in("x.ifc"), OwnFile::exchangeFile), "");

  writeFile(pathOf(in("x.svg")), drawProfile(families()[0]));
  EXPECT_EQ(refusal(in("x.svg"), OwnFile::drawing), "");
  EXPECT_NE(refusal(in("x.svg"), OwnFile::exchangeFile), "");
  writeFile(pathOf(in("x.svg")),
            "<svg xmlns=\"http://www.w3.org/2000/svg\">of somebody else</svg>");
  EXPECT_NE(refusal(in("x.svg"), OwnFile::drawing), "");
  writeFile(pathOf(in("x.svg")), "<html>\n<style>.section{</style>");
  EXPECT_NE(refusal(in("x.svg"), OwnFile::drawing), "");

  writeFile(pathOf(in("x.html")), "<html><title>exportIFC</title>the model");
  EXPECT_EQ(refusal(in("x.html"), OwnFile::page), "");
  EXPECT_NE(refusal(in("x.html"), OwnFile::drawing), "");
}

TEST_F(FilePlans, DerivedOutputsAreOutputs) {
  FilePlan plan;
  plan.writesDerived(in("c.svg"), "drawing", OwnFile::drawing, texts::replaceByOutput);
  EXPECT_NE(failureOf([&] { plan.reads(in("c.svg")); }), "");
}

// ---- paths

TEST(Paths, AreUtf8) {
  for (const std::string name : {"a.json", "galpão/ç€.ifc", "", "😀"}) {
    EXPECT_EQ(textOf(pathOf(name)), name);
  }
  EXPECT_EQ(pathOf("ç").native().size(), pathOf("\xC3\xA7").native().size());
}

TEST(Paths, HaveAnExtensionInSmallLetters) {
  EXPECT_EQ(extensionOf("a.json"), ".json");
  EXPECT_EQ(extensionOf("a.b.JSON"), ".json");
  EXPECT_EQ(extensionOf("folder.x/A.Txt"), ".txt");
  EXPECT_EQ(extensionOf("a.@[Z`{"), ".@[z`{");
  EXPECT_EQ(extensionOf("a"), "");
  EXPECT_EQ(extensionOf(".json"), "");
  EXPECT_EQ(extensionOf("a."), ".");
  EXPECT_EQ(extensionOf("-"), "");
}

}  // namespace
}  // namespace exportifc::cli
