#include "cli/paths.h"

#include <string>

#include <gtest/gtest.h>

#include "library/text/file_extension.h"

namespace exportifc::cli {
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

}  // namespace
}  // namespace exportifc::cli
