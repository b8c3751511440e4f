// Batch model files: five lines of header, then twelve lines a bar.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace exportifc::test {

using Lines = std::vector<std::string>;

/// What counts of a bar, as it stands in the file.
struct BarText {
  std::string section = "W 200 100 8 6";
  std::array<std::string, 3> start = {"0", "0", "0"};
  std::array<std::string, 3> end = {"5", "0", "0"};
  std::string angle = "0";
};

Lines headerLines(const std::string& unit, const std::string& count);
Lines barLines(const BarText& bar);

Lines operator+(Lines lines, const Lines& more);

/// Each line with its end.
std::string textOf(const Lines& lines, std::string_view lineEnd = "\n");

/// The whole file of a model.
std::string batchModel(const std::vector<BarText>& bars, const std::string& unit = "m");

}  // namespace exportifc::test
