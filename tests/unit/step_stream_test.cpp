#include "step/step_stream.h"

#include <limits>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "runtime_locale.h"
#include "support.h"

namespace exportifc {
namespace {

using test::MemorySink;
using test::Received;

StepStream into(Received& received, std::size_t room = MemorySink::endless) {
  return StepStream(std::make_unique<MemorySink>(received, room));
}

template <class... Pieces>
std::string written(const Pieces&... pieces) {
  Received received;
  into(received).line(pieces...);
  return received.bytes;
}

TEST(StepStream, ALineEndsWithCrLf) {
  EXPECT_EQ(written(), "\r\n");
  EXPECT_EQ(written("DATA;"), "DATA;\r\n");
}

TEST(StepStream, EachLineIsOneWrite) {
  std::vector<std::string> writes;
  bool closed = false;
  {
    StepStream stream(std::make_unique<test::WatchedSink>(
        [&](const std::string& line) { writes.push_back(line); }, [&] { closed = true; }));
    stream.line("one");
    EXPECT_EQ(writes.size(), 1U) << "pushed out at once";
    stream.line();
    stream.line("t", std::wstring_view(L"w"), Ref{0});
  }
  EXPECT_EQ(writes, (std::vector<std::string>{"one\r\n", "\r\n", "tw#0\r\n"}));
  EXPECT_TRUE(closed);
}

TEST(StepStream, PiecesStandOneAfterTheOther) {
  const std::vector<std::int32_t> numbers = {5006, 7, 12};
  EXPECT_EQ(written("A(", Ref{5006}, ", ", 1.5, ",", General{1e6}, " ", RefList{numbers}, ")"),
            "A(#5006, 1.50000,1e+06 #5006, #7, #12)\r\n");
  EXPECT_EQ(written("(", RefList{}, ")"), "()\r\n");
  EXPECT_EQ(written(RefList{std::span(numbers).first(1)}), "#5006\r\n");
  EXPECT_EQ(written(Ref{0}, " ", Ref{-3}), "#0 #-3\r\n") << "numbers are not checked";
}

TEST(StepStream, PatternsTakeNumbersHalvesAndOneMore) {
  const std::array<double, 4> values = {0, 10, 20.5, 3};
  EXPECT_EQ(written(NumberPattern{.text = "a1, h2,x, $", .values = values, .x = -0.5}),
            "10.00000, 10.25000,-0.50000, $\r\n");
}

TEST(StepStream, TextIsOneBytePerCharacter) {
  EXPECT_EQ(written(test::units({'A', 0x7F, 0x80, 0xE7, 0xFF})), "A\x7F\x80\xE7\xFF\r\n");
  EXPECT_EQ(written(L"it's a \\ back$slash"), "it's a \\ back$slash\r\n") << "nothing is escaped";
}

TEST(StepStream, NoRuntimeLocaleShows) {
  const test::KeepRuntimeLocale keep;
  // Whichever of these the system has, the bytes stay.
  for (const char* const locale : {"Portuguese", "pt_BR.UTF-8", "de_DE.UTF-8", "Japanese"}) {
    std::setlocale(LC_ALL, locale);
    EXPECT_EQ(written(1234567.5, " ", General{0.5}, test::units({0x80, 0xE7})),
              "1234567.50000 0.5\x80\xE7\r\n")
        << locale;
  }
}

TEST(StepStream, ALineFeedInATextIsALineEnd) {
  EXPECT_EQ(written("'", L"a\nb", "'"), "'a\r\nb'\r\n");
  EXPECT_EQ(written(std::wstring(3000, L'\n')).size(), 6002U) << "room for twice the characters";
  EXPECT_EQ(written(L"a\r\nb"), "a\r\r\nb\r\n") << "as text mode does";
}

TEST(StepStream, ACharacterAboveFFCutsTheOutputBeforeIt) {
  for (const int unit : {0x100, 0x20AC, 0xFF80, 0xFFE7, 0xFFFF}) {
    Received received;
    StepStream stream = into(received);
    stream.line("before");
    EXPECT_FALSE(stream.failed());
    stream.line("'", test::units({'a', 'b', unit, 'c'}), "' and ", 1.0);
    EXPECT_TRUE(stream.failed());
    stream.line("after");
    EXPECT_EQ(received.bytes, "before\r\n'ab") << unit;
    EXPECT_EQ(received.writes, 2U);
  }
}

TEST(StepStream, TheFirstOfTwoCutsCounts) {
  EXPECT_EQ(written("x", test::units({'1', 0x100}), "y", test::units({'2', 0x100})), "x1");
  EXPECT_EQ(written(test::units({0x100})), "");
}

TEST(StepStream, WithoutASinkItHasFailedFromTheStart) {
  StepStream stream(nullptr);
  EXPECT_TRUE(stream.failed());
  stream.line("dropped");
  EXPECT_TRUE(stream.failed());
}

TEST(StepStream, AFailedWriteDropsTheRest) {
  // The sink takes `room` bytes: at the start, in the first line, between the lines, in the second.
  for (std::size_t room = 0; room <= 10; ++room) {
    Received received;
    StepStream stream = into(received, room);
    stream.line("one");
    EXPECT_EQ(stream.failed(), room < 5) << room;
    stream.line("two");
    EXPECT_EQ(stream.failed(), room < 10) << room;
    stream.line("three");
    EXPECT_TRUE(stream.failed()) << room;
    EXPECT_EQ(received.bytes, std::string("one\r\ntwo\r\nthree").substr(0, room)) << room;
    // A line that could not be written is the last that was tried.
    EXPECT_EQ(received.writes, room < 5 ? 1U : room < 10 ? 2U : 3U) << room;
  }
}

TEST(StepStream, LongLines) {
  const std::wstring text(100000, L'x');
  EXPECT_EQ(written(text), std::string(100000, 'x') + "\r\n");
  std::vector<std::int32_t> numbers(20000, std::numeric_limits<std::int32_t>::min());
  const std::string list = written(RefList{numbers});
  EXPECT_EQ(list.size(), 20000U * 14U - 2U + 2U);
  EXPECT_EQ(written(std::numeric_limits<double>::max(), -std::numeric_limits<double>::max()).size(),
            309U + 6U + 310U + 6U + 2U);
}

}  // namespace
}  // namespace exportifc
