#include <charconv>
#include <cstdint>
#include <string_view>

#include "library/formats/batch_model.h"

namespace exportifc {

namespace {

/// "7" of "/bars/7/nodes", and what follows.
bool takeIndex(std::string_view& pointer, std::string_view list, std::int32_t& index) {
  if (!pointer.starts_with(list)) {
    return false;
  }
  pointer.remove_prefix(list.size());
  const auto [end, error] = std::from_chars(pointer.data(), pointer.data() + pointer.size(), index);
  pointer.remove_prefix(static_cast<std::size_t>(end - pointer.data()));
  return error == std::errc();
}

// Lines of a batch text file: five of the header, then twelve a bar.
struct BatchLine {
  std::string_view pointer;
  std::int64_t line;
};
constexpr BatchLine headerLines[] = {{"/title", 3}, {"/unit", 4}, {"/bars", 5}};
constexpr BatchLine barLines[] = {
    {"", 1},           {"/nodes", 2},     {"/nodes/0", 2}, {"/nodes/0/0", 2},
    {"/nodes/0/1", 3}, {"/nodes/0/2", 4}, {"/nodes/1", 5}, {"/nodes/1/0", 5},
    {"/nodes/1/1", 6}, {"/nodes/1/2", 7}, {"/angle", 8},   {"/section", 9},
};

std::int64_t batchLineOf(const Problem& problem) {
  for (const BatchLine& row : headerLines) {
    if (problem.pointer == row.pointer) {
      return row.line;
    }
  }
  std::string_view rest = problem.pointer;
  std::int32_t bar = problem.firstBar;
  if (!takeIndex(rest, "/bars/", bar)) {
    rest = "/section";  // each bar has the text of its own
  }
  constexpr std::int64_t header = 5;
  constexpr std::int64_t perBar = 12;
  for (const BatchLine& row : barLines) {
    if (bar >= 0 && rest == row.pointer) {
      return header + perBar * bar + row.line;
    }
  }
  return 0;
}

}  // namespace

void locateInBatch(std::streambuf* /*text*/, std::vector<Problem>& problems, TextPlace /*readTo*/) {
  for (Problem& problem : problems) {
    if (problem.place.line == 0 && !problem.pointer.empty()) {
      problem.place.line = batchLineOf(problem);
    }
    problem.pointer.clear();
  }
}

}  // namespace exportifc
