// The sample models and the exchange files they must become.
#include <algorithm>
#include <cstdlib>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "model/batch_source.h"
#include "support.h"

namespace exportifc {
namespace {

class GoldenFile : public testing::TestWithParam<const char*> {};

/// The line at which two texts part, with its number.
std::string firstDifference(const std::string& actual, const std::string& expected) {
  const auto [a, e] = std::mismatch(actual.begin(), actual.end(), expected.begin(), expected.end());
  const auto lineAt = [](const std::string& text, std::string::const_iterator at) {
    const auto offset = static_cast<std::size_t>(at - text.begin());
    const std::size_t before = offset == 0 ? std::string::npos : text.rfind('\n', offset - 1);
    const std::size_t start = before == std::string::npos ? 0 : before + 1;
    return text.substr(start, text.find('\r', start) - start);
  };
  return "line " + std::to_string(std::count(actual.begin(), a, '\n') + 1) +
         "\n  now:    " + lineAt(actual, a) + "\n  golden: " + lineAt(expected, e);
}

TEST_P(GoldenFile, IsWhatTheSampleBecomes) {
  const std::string name = GetParam();
  const std::string golden = test::sourceFile("tests/golden/" + name + ".ifc");
  test::ScriptedUser user;
  const std::string actual = test::maskGlobalIds(test::exportedFile(
      [&] { return std::make_unique<BatchSource>(test::sourceFile("samples/" + name + ".txt")); },
      user));
  if (std::getenv("EXPORTIFC_REFRESH_GOLDEN") != nullptr) {
    test::writeFile(golden, actual);
    GTEST_SKIP() << "wrote " << golden;
  }
  const std::string expected = test::readFile(golden);
  if (actual != expected) {
    FAIL() << name << ".ifc differs at " << firstDifference(actual, expected)
           << "\nIf the change is meant, refresh the golden files and read their differences:\n"
              "  tests/golden/refresh.sh && git diff --stat tests/golden\n";
  }
}

INSTANTIATE_TEST_SUITE_P(Samples, GoldenFile, testing::Values("galpao", "familias"),
                         [](const auto& info) { return std::string(info.param); });

}  // namespace
}  // namespace exportifc
