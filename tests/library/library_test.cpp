#include "tests/library/library_test.h"

#include <algorithm>
#include <ostream>

#include <gtest/gtest.h>

#include "library/frame/problem_text.h"
#include "model/batch_source.h"

namespace exportifc {

void PrintTo(const TextPlace& place, std::ostream* stream) {
  *stream << place.line << ":" << place.column;
}

}  // namespace exportifc

namespace exportifc::test {

ModelSection sectionOf(const std::string& text) {
  return {.name = text, .text = text, .dims = parseSectionDims(text)};
}

ModelSection sectionWith(const std::string& text, std::initializer_list<float> dims) {
  ModelSection section{.name = text, .text = text, .givenDims = static_cast<int>(dims.size())};
  std::copy(dims.begin(), dims.end(), section.dims.begin());
  return section;
}

Model soundModel() {
  Model model;
  model.unitCode = 2;
  model.nodes = {{0, 0, 0}, {0, 0, 3000}, {5000, 0, 3000}};
  model.sections = {sectionOf("W 200 100 8 6"), sectionOf("EC 80 0 0 12")};
  model.bars = {{.start = 0, .end = 1, .section = 0}, {.start = 1, .end = 2, .section = 1}};
  model.announcedBars = 2;
  return model;
}

TextPlace placeAt(std::string_view text, std::size_t byte) {
  TextPlace place{.line = 1, .column = 1};
  for (const char c : text.substr(0, byte)) {
    if (c == '\n') {
      ++place.line;
      place.column = 1;
    } else if ((static_cast<unsigned char>(c) & 0xC0U) != 0x80U) {
      ++place.column;  // of the bytes of a character the first one counts
    }
  }
  return place;
}

std::string brief(const Problem& problem) {
  std::string text = std::string(severityCode(problem.severity)) + " " + problem.code;
  if (problem.dimension >= 0) {
    text += " d" + std::to_string(problem.dimension);
  }
  return text;
}

std::vector<std::string> briefs(const std::vector<Problem>& problems) {
  std::vector<std::string> texts(problems.size());
  std::transform(problems.begin(), problems.end(), texts.begin(), brief);
  return texts;
}

Problem problemWith(const std::vector<Problem>& problems, std::string_view code) {
  const auto found = std::find_if(problems.begin(), problems.end(),
                                  [&](const Problem& problem) { return problem.code == code; });
  if (found == problems.end()) {
    ADD_FAILURE() << "no problem " << code;
    return {};
  }
  return *found;
}

}  // namespace exportifc::test
