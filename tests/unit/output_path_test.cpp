#include "plugin/output_path.h"

#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "platform/platform.h"
#include "plugin/texts.h"
#include "runtime_locale.h"
#include "support.h"

namespace exportifc {
namespace {

using test::Said;
using test::saveDialog;

const Said cannotCreate = test::message(MessageId::cannotCreateFile);

std::string thrownFor(const std::string& batchPath) {
  test::ScriptedUser user;
  try {
    (void)chooseOutputPath(batchPath, user);
  } catch (const char* text) {
    return text;
  }
  return {};
}

// ---- Batch mode --------------------------------------------------------------------------------

TEST(ChooseOutputPath, BatchModeAppendsTemp) {
  test::ScriptedUser user;
  EXPECT_EQ(chooseOutputPath("model.txt", user), L"model.txttemp");
  EXPECT_EQ(chooseOutputPath("x", user), L"xtemp");
  EXPECT_EQ(chooseOutputPath("no such folder/model.txt", user), L"no such folder/model.txttemp");
  EXPECT_TRUE(user.said.empty()) << "nothing is asked, nothing is tried";
}

TEST(ChooseOutputPath, BatchModeTouchesNoFile) {
  const test::TemporaryFolder folder;
  test::ScriptedUser user;
  (void)chooseOutputPath(folder.file("model.txt"), user);
  EXPECT_FALSE(test::fileExists(folder.file("model.txttemp")));
}

TEST(ChooseOutputPath, ABatchPathMustLeaveRoomForTemp) {
  test::ScriptedUser user;
  const std::string longest(1019, 'p');
  EXPECT_EQ(chooseOutputPath(longest, user), test::wide(longest) + L"temp");
  for (const std::size_t length : {1020U, 1021U, 1023U, 1024U, 5000U}) {
    EXPECT_EQ(thrownFor(std::string(length, 'p')), "Erro na cria\xE7\xE3o do arquivo") << length;
  }
}

TEST(ChooseOutputPath, ABatchPathIsWidened) {
  test::ScriptedUser user;
  EXPECT_EQ(chooseOutputPath("a\xE7", user), L"a\u00E7temp");
}

#if defined(_WIN32)
TEST(ChooseOutputPath, ABatchPathThatTheRuntimeCannotWiden) {
  const test::KeepRuntimeLocale keep;
  ASSERT_NE(std::setlocale(LC_ALL, ".932"), nullptr);
  EXPECT_EQ(thrownFor("a\x81"), "Erro na cria\xE7\xE3o do arquivo") << "half a character";
}
#endif

// ---- Interactive mode --------------------------------------------------------------------------

TEST(ChooseOutputPath, TheChosenFileIsCreated) {
  const test::TemporaryFolder folder;
  test::ScriptedUser user;
  user.choice = test::wide(folder.file("out.ifc"));
  EXPECT_EQ(chooseOutputPath("", user), user.choice);
  EXPECT_TRUE(test::fileExists(folder.file("out.ifc")));
  EXPECT_EQ(user.said, std::vector<Said>{saveDialog});
}

TEST(ChooseOutputPath, AnExistingFileIsEmptiedAndTaken) {
  const test::TemporaryFolder folder;
  test::writeFile(folder.file("out.ifc"), "something much longer than one line");
  test::ScriptedUser user;
  user.choice = test::wide(folder.file("out.ifc"));
  EXPECT_EQ(chooseOutputPath("", user), user.choice);
  EXPECT_EQ(test::readFile(folder.file("out.ifc")), "\r\n");
}

TEST(ChooseOutputPath, ACancelledDialogIsNoPath) {
  test::ScriptedUser user;
  EXPECT_EQ(chooseOutputPath("", user), L"");
  EXPECT_EQ(user.said, std::vector<Said>{saveDialog}) << "no message";
}

TEST(ChooseOutputPath, AFileThatCannotBeCreatedIsReported) {
  const test::TemporaryFolder folder;
  std::filesystem::create_directory(folder.file("folder"));
  for (const std::string name : {"missing/out.ifc", "folder"}) {
    test::ScriptedUser user;
    user.choice = test::wide(folder.file(name));
    EXPECT_EQ(chooseOutputPath("", user), L"") << name;
    EXPECT_EQ(user.said, (std::vector<Said>{saveDialog, cannotCreate})) << name;
  }
}

TEST(ChooseOutputPath, AnEmptyChoiceIsReported) {
  test::ScriptedUser user;
  user.choice = L"";
  EXPECT_EQ(chooseOutputPath("", user), L"");
  EXPECT_EQ(user.said, (std::vector<Said>{saveDialog, cannotCreate}));
}

}  // namespace
}  // namespace exportifc
