#include "step/number_format.h"

#include <array>
#include <string>

#include <gtest/gtest.h>

namespace exportifc {
namespace {

std::string fixed5(double value) {
  std::array<char, fixed5Capacity> text{};
  return {text.data(), putFixed5(text.data(), value)};
}

TEST(PutFixed5, TiesGoToEven) {
  EXPECT_EQ(fixed5(0.015625), "0.01562");
  EXPECT_EQ(fixed5(1.5), "1.50000");
}

}  // namespace
}  // namespace exportifc
