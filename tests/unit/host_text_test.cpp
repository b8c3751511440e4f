#include "step/host_text.h"

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "step/step_stream.h"
#include "support.h"

namespace exportifc {
namespace {

/// The bytes of one line of these pieces.
template <class... Pieces>
std::string written(const Pieces&... pieces) {
  test::Received received;
  StepStream(std::make_unique<test::MemorySink>(received)).line(pieces...);
  return received.bytes;
}

TEST(HostText, IsTheTextThatItWasMadeOf) {
  EXPECT_TRUE(HostText().empty());
  EXPECT_EQ(written("'", HostText(), "'"), "''\r\n");
  const HostText text(L"W 310x38.7");
  EXPECT_EQ(std::wstring_view(text), L"W 310x38.7");
  EXPECT_EQ(text.size(), 10U);
  EXPECT_FALSE(text.empty());
  EXPECT_EQ(written("'", text, "', '", text, "'"), "'W 310x38.7', 'W 310x38.7'\r\n");
}

TEST(HostText, IsWrittenAsWideTextIs) {
  test::Random random(1);
  using namespace std::string_view_literals;
  constexpr auto units = L"ab \n\r\x7F\xE7\xFF\0\x100\xFFE7"sv;
  for (int round = 0; round < test::rounds(40000); ++round) {
    // Of all lengths, past those that are usual; line feeds take two bytes.
    const bool fits = random.integer(0, 3) != 0;
    const auto kinds = fits ? units.substr(0, units.size() - 2) : units;
    std::wstring first;
    std::wstring second;
    for (std::wstring* const text : {&first, &second}) {
      for (auto left = random.integer(0, 140); left > 0; --left) {
        text->push_back(random.pick(kinds));
      }
    }
    ASSERT_EQ(written("x", HostText(first), 1.5, HostText(second), "y"),
              written("x", first, 1.5, second, "y"));
  }
}

}  // namespace
}  // namespace exportifc
