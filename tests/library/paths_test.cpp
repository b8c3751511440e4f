#include "library/files/paths.h"

#include <cerrno>
#include <string>

#include <gtest/gtest.h>

#include "library/files/file_names.h"
#include "library/text/file_extension.h"
#include "tests/library/library_test.h"
#include "tests/support/files.h"

namespace exportifc {
namespace {

TEST(Paths, AreTheTextThatTheUserTypes) {
  for (const std::string name : {"", "a.json", "sub/ç€😀.json", "C:/x y/z"}) {
    EXPECT_EQ(textOf(pathOf(name)), name);
  }
  EXPECT_EQ(pathOf("sub/ç.json").filename(), pathOf("ç.json"));
}

TEST(Paths, MayBeBytesThatAreNoUtf8) {
  const std::string name = "\xE7\xFF.json";
  if (sizeof(std::filesystem::path::value_type) == sizeof(char)) {
    EXPECT_EQ(textOf(pathOf(name)), name);
    EXPECT_EQ(pathOf(name).native().size(), name.size());
  }
}

TEST(ExtensionOf, IsInLowerCase) {
  EXPECT_EQ(extensionOf("a.JSON"), ".json");
  EXPECT_EQ(extensionOf("a.b/c.Txt"), ".txt");
  EXPECT_EQ(extensionOf("a.b/c"), "");
  EXPECT_EQ(extensionOf("a.Ç"), ".Ç");
  EXPECT_EQ(extensionOf("C:\\a.b\\c"), "");
  EXPECT_EQ(extensionOf("a/.."), "");
}

TEST(ReadErrorText, KnowsPatternsAndListsThatAreNoNames) {
  const test::InLanguage english(Language::english);
  EXPECT_EQ(readErrorText("no such *.json", ENOENT), "no file matches the pattern");
  const test::TemporaryFolder folder;
  const std::string file = folder.file("a.json");
  test::writeFile(file, "{}");
  EXPECT_EQ(readErrorText(file + ",", ENOENT),
            "the file does not exist; did you mean " + file + "?");
}

}  // namespace
}  // namespace exportifc
