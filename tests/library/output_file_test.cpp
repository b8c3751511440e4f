#include "cli/output_file.h"

#include <cerrno>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "cli/failure.h"
#include "cli/system.h"
#include "library/files/file_names.h"
#include "library/files/file_system.h"
#include "library/files/paths.h"
#include "tests/library/library_test.h"
#include "tests/support/files.h"
#include "tests/support/random.h"

namespace fs = std::filesystem;

namespace exportifc::cli {
namespace {

using test::InLanguage;
using test::readFile;
using test::TemporaryFolder;
using test::writeFile;

/// The names in a folder.
std::vector<std::string> namesIn(const fs::path& folder) {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder)) {
    names.push_back(textOf(entry.path().filename()));
  }
  std::sort(names.begin(), names.end());
  return names;
}

using Names = std::vector<std::string>;

/// What is said of a failure, with its exit code.
std::string failureOf(const std::function<void()>& work) {
  try {
    work();
  } catch (const Failure& failure) {
    return std::to_string(failure.code()) + ": " + failure.what();
  }
  return "";
}

void write(const fs::path& path, const std::string& text) {
  OutputFile file(textOf(path));
  file.write(text);
  file.commit();
}

TEST(OutputFile, AppearsWholeOrNotAtAll) {
  const TemporaryFolder folder;
  const fs::path path = folder.path() / "a.ifc";
  {
    OutputFile file(textOf(path));
    EXPECT_TRUE(file.write("first "));
    EXPECT_TRUE(file.write(std::string(200000, 'x')));
    EXPECT_FALSE(fs::exists(path));
    const Names names = namesIn(folder.path());
    ASSERT_EQ(names.size(), 1U);
    EXPECT_EQ(names[0], "a.ifc." + std::to_string(files::processId()) + ".part");
    file.commit();
    EXPECT_FALSE(file.failed());
  }
  EXPECT_EQ(namesIn(folder.path()), Names({"a.ifc"}));
  EXPECT_EQ(readFile(path), "first " + std::string(200000, 'x'));
}

TEST(OutputFile, LeavesNothingBehindWithoutItsCommit) {
  const TemporaryFolder folder;
  {
    OutputFile file(textOf(folder.path() / "a.ifc"));
    file.write(std::string(100000, 'x'));
  }
  EXPECT_EQ(namesIn(folder.path()), Names());
}

TEST(OutputFile, AFileThatWasThereStaysUntilThen) {
  const TemporaryFolder folder;
  const fs::path path = folder.path() / "a.ifc";
  writeFile(path, "old");
  {
    OutputFile file(textOf(path));
    file.write("new");
    EXPECT_EQ(readFile(path), "old");
  }
  EXPECT_EQ(readFile(path), "old");
  EXPECT_EQ(namesIn(folder.path()), Names({"a.ifc"}));
  write(path, "new");
  EXPECT_EQ(readFile(path), "new");
  EXPECT_EQ(namesIn(folder.path()), Names({"a.ifc"}));
}

TEST(OutputFile, MayBeEmpty) {
  const TemporaryFolder folder;
  const fs::path path = folder.path() / "a.ifc";
  write(path, "");
  EXPECT_EQ(readFile(path), "");
}

TEST(OutputFile, WritesTheBytesThatItIsGiven) {
  const TemporaryFolder folder;
  const fs::path path = folder.path() / "a.ifc";
  test::Random random(5);
  for (int round = 0; round < test::rounds(60); ++round) {
    std::string bytes;
    OutputFile file(textOf(path));
    for (std::int64_t pieces = random.integer(0, 12); pieces > 0; --pieces) {
      // Around the size of the buffer, and beyond it.
      constexpr std::int64_t sizes[] = {0, 1, 100, 30000, 65535, 65536, 65537, 200000};
      std::string piece(static_cast<std::size_t>(sizes[random.integer(0, 7)]), '\0');
      for (std::size_t i = 0; i < piece.size(); i += 97) {
        piece[i] = static_cast<char>(random.bits());
      }
      ASSERT_TRUE(file.write(piece));
      bytes += piece;
    }
    file.commit();
    ASSERT_EQ(readFile(path), bytes);
  }
}

TEST(OutputFile, MayHaveAnyName) {
  const TemporaryFolder folder;
  for (const std::string& name :
       {std::string("galpão ç€.ifc"), std::string("no extension"), std::string(".hidden"),
        std::string(251, 'x') + ".ifc", std::string("a.part")}) {
    write(folder.path() / pathOf(name), name);
    EXPECT_EQ(readFile(folder.path() / pathOf(name)), name);
    EXPECT_EQ(namesIn(folder.path()), Names({name}));
    fs::remove(folder.path() / pathOf(name));
  }
}

TEST(OutputFile, TwoLongNamesAreTwoFiles) {
  const TemporaryFolder folder;
  OutputFile first(textOf(folder.path() / (std::string(250, 'x') + "1")));
  OutputFile second(textOf(folder.path() / (std::string(250, 'x') + "2")));
  first.write("1");
  second.write("2");
  first.commit();
  second.commit();
  EXPECT_EQ(readFile(folder.path() / (std::string(250, 'x') + "1")), "1");
  EXPECT_EQ(readFile(folder.path() / (std::string(250, 'x') + "2")), "2");
}

TEST(OutputFile, NeedsItsFolder) {
  const TemporaryFolder folder;
  const std::string missing = textOf(folder.path() / "no" / "such");
  const std::string name = textOf(folder.path() / "no" / "such" / "a.ifc");
  EXPECT_EQ(failureOf([&] { const OutputFile file(name); }),
            "4: cannot write " + name + ": the folder " + missing + " does not exist");
}

TEST(OutputFile, MayHaveANameOfAnyLength) {
  const TemporaryFolder folder;
  const fs::path top = folder.path() / "coberturas metálicas";
  const fs::path deep = top / pathOf(std::string(120, 'a') + "ç") / std::string(120, 'b');
  fs::create_directories(files::anyLength(deep));
  const std::string name = textOf(deep / pathOf("galpão.ifc"));
  {
    OutputFile file(name);
    file.write("new");
    file.commit();
  }
  std::filebuf file;
  ASSERT_EQ(exportifc::openInput(file, name), 0);
  EXPECT_EQ(file.sbumpc(), 'n');
  EXPECT_EQ(identityOf(pathOf(name)),
            identityOf(deep / ".." / deep.filename() / pathOf("galpão.ifc")));
  file.close();
  for (const fs::path& left : {pathOf(name), deep, deep.parent_path()}) {
    EXPECT_TRUE(fs::remove(files::anyLength(left)));  // which Windows cannot do by itself
  }
}

TEST(OutputFile, IsNoFolder) {
  const TemporaryFolder folder;
  const std::string name = textOf(folder.path());
  EXPECT_EQ(failureOf([&] { const OutputFile file(name); }),
            "4: cannot write " + name + ": it is a folder");
  const InLanguage portuguese(Language::portuguese);
  EXPECT_EQ(failureOf([&] { const OutputFile file(name); }),
            "4: não foi possível gravar " + name + ": é uma pasta");
}

TEST(OutputFile, AFileIsNoFolderOfOthers) {
  const TemporaryFolder folder;
  writeFile(folder.path() / "file", "x");
  EXPECT_NE(failureOf([&] { const OutputFile file(textOf(folder.path() / "file" / "a.ifc")); }),
            "");
}

TEST(OutputFile, SaysWhenItCannotBePutInPlace) {
  const TemporaryFolder folder;
  const fs::path path = folder.path() / "a.ifc";
  {
    OutputFile file(textOf(path));
    file.write("new");
    fs::create_directory(path);  // meanwhile
    writeFile(path / "inside", "x");
    EXPECT_EQ(failureOf([&] { file.commit(); }).substr(0, 17),
              "4: cannot write " + textOf(path).substr(0, 1));
    EXPECT_TRUE(file.failed());
  }
  EXPECT_EQ(namesIn(folder.path()), Names({"a.ifc"}));
  EXPECT_EQ(readFile(path / "inside"), "x");
}

#ifdef _WIN32
const std::string nullDevice = "NUL";
// Every folder has one, whatever its letter case.
std::string nullDeviceIn(const fs::path& folder) { return textOf(folder / "nul"); }
#else
const std::string nullDevice = "/dev/null";
std::string nullDeviceIn(const fs::path& /*folder*/) { return "/dev/../dev/null"; }
#endif

TEST(OutputFile, ADeviceIsWrittenDirectly) {
  const TemporaryFolder folder;
  for (const std::string& name : {nullDevice, nullDeviceIn(folder.path())}) {
    OutputFile file(name);
    EXPECT_TRUE(file.write(std::string(300000, 'x')));
    file.commit();
    EXPECT_FALSE(file.failed());
  }
  EXPECT_EQ(namesIn(folder.path()), Names());
}

TEST(OutputFile, MayBeStandardOutput) {
  testing::internal::CaptureStdout();
  {
    OutputFile file("-");
    file.write("to standard ");
    file.write("output");
    file.commit();
  }
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "to standard output");
}

#ifdef _WIN32

TEST(OutputFile, ReplacesNoReadOnlyFile) {
  const TemporaryFolder folder;
  const fs::path path = folder.path() / "a.ifc";
  writeFile(path, "old");
  fs::permissions(path, fs::perms::owner_read);
  EXPECT_EQ(failureOf([&] { const OutputFile file(textOf(path)); }),
            "4: cannot write " + textOf(path) +
                ": permission denied (read-only, or open in another program?)");
  EXPECT_EQ(readFile(path), "old");
  EXPECT_EQ(namesIn(folder.path()), Names({"a.ifc"}));
  fs::permissions(path, fs::perms::owner_write, fs::perm_options::add);
}

TEST(OutputFile, KnowsNamesThatNoFileCanHave) {
  const TemporaryFolder folder;
  EXPECT_NE(failureOf([&] { const OutputFile file(textOf(folder.path() / "a?b.ifc")); }), "");
  EXPECT_EQ(namesIn(folder.path()), Names());
}

#else

TEST(OutputFile, OfAFullDiskKeepsTheReason) {
  OutputFile file("/dev/full");
  EXPECT_TRUE(file.write("little"));  // still in the buffer
  EXPECT_FALSE(file.write(std::string(100000, 'x')));
  EXPECT_TRUE(file.failed());
  EXPECT_FALSE(file.write("more"));
  EXPECT_EQ(file.failureText(), "cannot write /dev/full: no space left on the disk");
  EXPECT_EQ(failureOf([&] { file.commit(); }),
            "4: cannot write /dev/full: no space left on the disk");
}

TEST(OutputFile, OfAFullDiskTheEndTellsAtTheLatest) {
  OutputFile file("/dev/full");
  EXPECT_TRUE(file.write("little"));
  EXPECT_EQ(failureOf([&] { file.commit(); }),
            "4: cannot write /dev/full: no space left on the disk");
}

TEST(OutputFile, KeepsThePermissions) {
  const TemporaryFolder folder;
  const fs::path path = folder.path() / "a.ifc";
  writeFile(path, "old");
  fs::permissions(path, fs::perms(0640));
  write(path, "new");
  EXPECT_EQ(fs::status(path).permissions(), fs::perms(0640));
  EXPECT_EQ(readFile(path), "new");
}

TEST(OutputFile, ALinkKeepsPointingToWhatIsReplaced) {
  const TemporaryFolder folder;
  fs::create_directory(folder.path() / "sub");
  writeFile(folder.path() / "sub" / "real.ifc", "old");
  fs::create_symlink(fs::path("sub") / "real.ifc", folder.path() / "link.ifc");
  fs::create_symlink(folder.path() / "link.ifc", folder.path() / "second.ifc");
  write(folder.path() / "second.ifc", "new");
  EXPECT_EQ(readFile(folder.path() / "sub" / "real.ifc"), "new");
  EXPECT_TRUE(fs::is_symlink(folder.path() / "link.ifc"));
  EXPECT_TRUE(fs::is_symlink(folder.path() / "second.ifc"));
  // Also one to a file that is not there yet.
  fs::create_symlink("nothing.ifc", folder.path() / "dangling.ifc");
  write(folder.path() / "dangling.ifc", "made");
  EXPECT_EQ(readFile(folder.path() / "nothing.ifc"), "made");
  EXPECT_TRUE(fs::is_symlink(folder.path() / "dangling.ifc"));
}

TEST(BehindLinks, FollowsThemToTheirEnd) {
  const TemporaryFolder folder;
  fs::create_symlink("b", folder.path() / "a");
  fs::create_symlink(folder.path() / "c", folder.path() / "b");
  EXPECT_EQ(behindLinks(folder.path() / "a"), folder.path() / "c");
  EXPECT_EQ(behindLinks(folder.path() / "c"), folder.path() / "c");
  // A ring ends somewhere.
  fs::create_symlink("ring", folder.path() / "ring");
  EXPECT_EQ(behindLinks(folder.path() / "ring"), folder.path() / "ring");
}

TEST(BehindLinks, FollowsAsManyAsTheSystemDoes) {
  const TemporaryFolder folder;
  for (int i = 0; i < 40; ++i) {
    fs::create_symlink(std::to_string(i + 1), folder.path() / std::to_string(i));
  }
  EXPECT_EQ(behindLinks(folder.path() / "0"), folder.path() / "40");
}

#endif

// ---- reasons

TEST(SystemErrorText, IsInTheLanguageOfTheUser) {
  const std::vector<std::pair<int, const char*>> texts = {
      {ENOSPC, "no space left on the disk"},
      {EACCES, "permission denied (read-only, or open in another program?)"},
      {EPERM, "permission denied (read-only, or open in another program?)"},
      {ENOENT, "the file or its folder does not exist"},
      {ENOTDIR, "part of the path is not a folder"},
      {EROFS, "the disk is read-only"},
      {EPIPE, "the reader closed the pipe"},
      {EISDIR, "it is a folder"},
      {EFBIG, "the file would be larger than allowed"},
      {ENAMETOOLONG, "the name is too long"},
      {EINTR, "interrupted"},
      {EINVAL, "the system allows no file of this name"},
  };
  for (const auto& [error, text] : texts) {
    EXPECT_EQ(systemErrorText(error), text);
  }
  EXPECT_EQ(systemErrorText(EDOM), std::generic_category().message(EDOM));
  const InLanguage portuguese(Language::portuguese);
  EXPECT_EQ(systemErrorText(ENOSPC), "não há espaço no disco");
}

TEST(ReadErrorText, TellsTheFileFromItsFolder) {
  const TemporaryFolder folder;
  EXPECT_EQ(readErrorText(textOf(folder.path() / "a"), ENOENT), "the file does not exist");
  EXPECT_EQ(readErrorText("a", ENOENT), "the file does not exist");
  EXPECT_EQ(readErrorText(textOf(folder.path() / "b" / "a"), ENOENT),
            "the folder " + textOf(folder.path() / "b") + " does not exist");
  EXPECT_EQ(readErrorText("a", EACCES), "no permission to read it");
  EXPECT_EQ(readErrorText("a", EPERM), "no permission to read it");
  EXPECT_EQ(readErrorText("a", EISDIR), "it is a folder");
}

TEST(WriteErrorText, NamesAFolderThatIsMissing) {
  const TemporaryFolder folder;
  EXPECT_EQ(writeErrorText(textOf(folder.path() / "b" / "a"), ENOENT),
            "the folder " + textOf(folder.path() / "b") + " does not exist");
  EXPECT_EQ(writeErrorText(textOf(folder.path() / "b" / "a"), ENOSPC), "no space left on the disk");
  EXPECT_EQ(writeErrorText(textOf(folder.path() / "a"), ENOENT),
            "the file or its folder does not exist");
  EXPECT_EQ(writeErrorText("a", EACCES),
            "permission denied (read-only, or open in another program?)");
}

TEST(MadeFolder, MakesItAndThoseAbove) {
  const TemporaryFolder folder;
  const fs::path deepest = folder.path() / "a" / pathOf("ç") / "c";
  const MadeFolder made(textOf(deepest));
  EXPECT_TRUE(fs::is_directory(deepest));
  { const MadeFolder there(textOf(folder.path() / "a")); }
  EXPECT_TRUE(fs::is_directory(deepest)) << "what was there already stays";
}

TEST(MadeFolder, RemovesWhatStaysEmpty) {
  const TemporaryFolder folder;
  { const MadeFolder made(textOf(folder.path() / "a" / "b")); }
  EXPECT_EQ(namesIn(folder.path()), Names());
  {
    const MadeFolder made(textOf(folder.path() / "a" / "b"));
    writeFile(folder.path() / "a" / "file", "x");
  }
  EXPECT_FALSE(fs::exists(folder.path() / "a" / "b"));
  EXPECT_TRUE(fs::exists(folder.path() / "a" / "file"));
}

TEST(MadeFolder, SaysWhyItCannot) {
  const TemporaryFolder folder;
  writeFile(folder.path() / "file", "x");
  const std::string name = textOf(folder.path() / "file" / "a");
  const std::string said = failureOf([&] { const MadeFolder made(name); });
  EXPECT_TRUE(said.starts_with("4: cannot make the folder " + name + ": ")) << said;
}

}  // namespace
}  // namespace exportifc::cli
