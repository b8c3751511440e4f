#include "cli/progress.h"

#include <string>

#include <gtest/gtest.h>

namespace exportifc::cli {
namespace {

const std::string erased = "\r\033[K";

/// What of a bar's progress is said before its times.
std::string shownAt(std::int64_t done, std::int64_t total, bool shown = true) {
  testing::internal::CaptureStderr();
  {
    Progress progress(shown, total);
    EXPECT_TRUE(progress.at(done));
  }
  const std::string said = testing::internal::GetCapturedStderr();
  EXPECT_TRUE(said.empty() || said.ends_with(erased)) << said;
  return said.substr(0, said.rfind("  ", said.find("/s")));
}

TEST(Progress, ShowsHowFarItIs) {
  EXPECT_EQ(shownAt(0, 1024), erased + "[------------------------] 0 %  0 of 1,024 bars");
  EXPECT_EQ(shownAt(512, 1024), erased + "[############------------] 50 %  512 of 1,024 bars");
  EXPECT_EQ(shownAt(1024, 1024), erased + "[########################] 100 %  1,024 of 1,024 bars");
}

TEST(Progress, LooksAtTheClockNotForEachBar) {
  EXPECT_EQ(shownAt(1, 1024), "");
  EXPECT_EQ(shownAt(255, 1024), "");
}

TEST(Progress, IsNotShownToProgramsNorWithoutBars) {
  EXPECT_EQ(shownAt(0, 1024, false), "");
  EXPECT_EQ(shownAt(0, 0), "");
}

std::string shownLine(const std::string& text) {
  testing::internal::CaptureStderr();
  StatusLine(true).show(text);
  return testing::internal::GetCapturedStderr();
}

// A file is no terminal and counts as one of 80 columns.
TEST(StatusLine, KeepsToOneLineOfTheTerminal) {
  EXPECT_EQ(shownLine("a"), erased + "a" + erased);
  EXPECT_EQ(shownLine(std::string(100, 'x')), erased + std::string(79, 'x') + erased);
  std::string wide;
  for (int i = 0; i < 79; ++i) {
    wide += "ç";
  }
  EXPECT_EQ(shownLine(wide + "…"), erased + wide + erased);
}

TEST(StatusLine, IsErasedOnce) {
  testing::internal::CaptureStderr();
  {
    StatusLine line(true);
    line.erase();
    line.show("a");
    line.erase();
    line.erase();
  }
  EXPECT_EQ(testing::internal::GetCapturedStderr(), erased + "a" + erased);
}

TEST(StatusLine, MayBeHidden) {
  testing::internal::CaptureStderr();
  StatusLine(false).show("a");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_FALSE(StatusLine(false).shown());
}

}  // namespace
}  // namespace exportifc::cli
