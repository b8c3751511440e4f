#include "model/line_reader.h"

#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "support.h"

namespace exportifc {
namespace {

using Lines = std::vector<std::string>;

class LineReaderTest : public testing::Test {
 protected:
  Lines read(std::string_view bytes) {
    const std::string path = folder_.file("text.txt");
    test::writeFile(path, bytes);
    LineReader reader(path);
    EXPECT_TRUE(reader.isOpen());
    Lines lines;
    std::string_view line = "old";
    while (reader.next(line)) {
      lines.emplace_back(line);
      line = "old";
    }
    EXPECT_EQ(line, "");
    EXPECT_FALSE(reader.next(line)) << "the end is the end";
    return lines;
  }

 private:
  test::TemporaryFolder folder_;
};

TEST_F(LineReaderTest, ReadsLinesWithEitherEnd) {
  EXPECT_EQ(read("a\nb\n"), (Lines{"a", "b"}));
  EXPECT_EQ(read("a\r\nb\r\n"), (Lines{"a", "b"}));
  EXPECT_EQ(read("a\r\nb\nc"), (Lines{"a", "b", "c"}));
}

TEST_F(LineReaderTest, AnEmptyFileHasNoLines) {
  EXPECT_EQ(read(""), Lines{});
  EXPECT_EQ(read("\n"), Lines{""});
  EXPECT_EQ(read("\r\n"), Lines{""});
  EXPECT_EQ(read("\n\n"), (Lines{"", ""}));
}

TEST_F(LineReaderTest, OnlyTheCarriageReturnBeforeALineFeedIsDropped) {
  EXPECT_EQ(read("a\rb\n"), Lines{"a\rb"});
  EXPECT_EQ(read("a\r\r\n"), Lines{"a\r"});
  EXPECT_EQ(read("a\r"), Lines{"a\r"});
}

TEST_F(LineReaderTest, Byte1AEndsTheText) {
  EXPECT_EQ(read("a\nb\x1A"
                 "c\nd\n"),
            (Lines{"a", "b"}));
  EXPECT_EQ(read("a\n\x1A"), Lines{"a"});
  EXPECT_EQ(read("\x1A\na\n"), Lines{});
}

TEST_F(LineReaderTest, KeepsOtherBytes) {
  EXPECT_EQ(read(std::string_view("a\0b\xE7\n", 5)), Lines{std::string("a\0b\xE7", 4)});
}

TEST_F(LineReaderTest, AFileThatIsNotThereHasNoLines) {
  const test::TemporaryFolder folder;
  LineReader reader(folder.file("missing.txt"));
  EXPECT_FALSE(reader.isOpen());
  std::string_view line = "old";
  EXPECT_FALSE(reader.next(line));
  EXPECT_EQ(line, "");
}

/// The same rules, character by character.
Lines readSlowly(std::string_view bytes) {
  bytes = bytes.substr(0, bytes.find('\x1A'));
  Lines lines;
  std::string line;
  bool open = false;
  for (const char c : bytes) {
    open = true;
    if (c != '\n') {
      line.push_back(c);
      continue;
    }
    if (!line.empty() && line.back() == '\r') {
      line.pop_back();
    }
    lines.push_back(line);
    line.clear();
    open = false;
  }
  if (open) {
    lines.push_back(line);
  }
  return lines;
}

TEST_F(LineReaderTest, BuffersDoNotShow) {
  // The reader takes 16 KiB at a time: put every kind of end around that place.
  constexpr std::size_t buffer = 16384;
  for (const std::string_view ending : {"\n", "\r\n", "\r", "\x1A", "\r\r\n", "\n\n", ""}) {
    for (std::size_t length = buffer - 3; length <= buffer + 2; ++length) {
      const std::string text = std::string(length, 'a').append(ending).append("b\r\nc");
      EXPECT_EQ(read(text), readSlowly(text)) << length;
    }
  }
  const std::string longLine(3 * buffer, 'z');
  EXPECT_EQ(read(longLine + "\n" + longLine), (Lines{longLine, longLine}));
}

TEST_F(LineReaderTest, RandomBytes) {
  test::Random random(1);
  using namespace std::string_view_literals;  // counts the NUL
  constexpr std::string_view bytes = "a\n\r\n\r\nb\x1A\0"sv;
  for (int round = 0; round < 300; ++round) {
    std::string text;
    for (auto left = random.integer(0, 40); left > 0; --left) {
      text.push_back(random.pick(bytes));
    }
    EXPECT_EQ(read(text), readSlowly(text)) << testing::PrintToString(text);
  }
}

}  // namespace
}  // namespace exportifc
