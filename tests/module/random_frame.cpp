// Exports a large random frame, the same for the same number and unit, to compare two modules.
//
//   random_frame MODULE OUT.ifc BARS UNIT    through the host queries and the save dialog
//   random_frame --batch OUT.txt BARS UNIT   writes the batch model file of such a frame
//
// UNIT is 0 (m), 1 (cm) or 2 (mm).
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/module/frame_host.h"
#include "tests/module/loaded_module.h"
#include "tests/module/person.h"
#include "tests/support/batch_text.h"
#include "tests/support/files.h"
#include "tests/support/random.h"
#include "tests/support/section_words.h"

namespace exportifc::module_tests {
namespace {

using test::Random;

constexpr const char* unitNames[] = {"m", "cm", "mm"};

std::array<float, 3> randomPoint(Random& random) {
  std::array<float, 3> point{};
  for (float& coordinate : point) {
    coordinate = random.between(-5000, 5000);
    if (random.once(4)) {
      coordinate = static_cast<float>(static_cast<int>(coordinate));
    }
  }
  return point;
}

void addRandomBar(FrameHost& host, Random& random) {
  static const std::vector<std::string> families = test::writtenFamilyWords();
  FrameBar bar;
  bar.section = random.pick(families);
  for (float& dimension : bar.dims) {
    dimension = random.once(10) ? 0 : random.between(0, 500);
  }
  bar.type = random.between(-2, 13);
  bar.visible = random.once(2) ? 1 : 0;
  bar.quarterTurns = static_cast<std::int32_t>(random.integer(-4, 4));
  bar.angle = random.once(3) ? 0 : random.between(-7, 7);
  const auto node = static_cast<std::int32_t>(host.nodes.size());
  bar.startNode = node;
  bar.endNode = node + 1;
  std::array<float, 3> start = randomPoint(random);
  std::array<float, 3> end = randomPoint(random);
  // Most bars of a real frame run along one or two axes.
  const auto along = static_cast<std::uint32_t>(random.integer(0, 9));
  for (std::uint32_t axis = 0; axis < 3; ++axis) {
    if (along < 8 && (along & (1U << axis)) == 0) {
      end[axis] = start[axis];
    }
  }
  host.nodes[node] = start;
  host.nodes[node + 1] = end;
  host.bars.push_back(bar);
}

std::string number(float value, Random& random) {
  char text[64];
  std::snprintf(text, sizeof(text), random.once(8) ? "%e" : "%.7g", double{value});
  std::string result = text;
  if (const std::size_t point = result.find('.'); point != std::string::npos) {
    result[point] = random.once(2) ? '.' : ',';
  }
  return result;
}

std::string sectionText(const FrameBar& bar, Random& random) {
  std::string text = bar.section;
  const char separator = random.once(5) ? 'x' : ' ';
  for (std::size_t i = 0; i < 5; ++i) {
    // Short enough for the 47 characters of the record.
    text += (i == 0 ? ' ' : separator) + std::to_string(static_cast<int>(bar.dims[i]));
    if (i == 2 && separator == ' ') {
      text += "." + std::to_string(random.integer(0, 99));
    }
  }
  return text;
}

test::BarText barText(const FrameHost& host, const FrameBar& bar, Random& random) {
  test::BarText text;
  for (std::size_t axis = 0; axis < 3; ++axis) {
    text.start[axis] = number(host.nodes.at(bar.startNode)[axis], random);
    text.end[axis] = number(host.nodes.at(bar.endNode)[axis], random);
  }
  text.angle = number(bar.angle, random);
  text.section = sectionText(bar, random);
  return text;
}

void writeBatchModel(const FrameHost& host, Random& random, const std::string& path) {
  std::vector<test::BarText> bars;
  for (const FrameBar& bar : host.bars) {
    bars.push_back(barText(host, bar, random));
  }
  test::writeFile(path, test::batchModel(bars, unitNames[host.unit]));
}

int exportFrame(FrameHost& host, const std::string& modulePath, const std::string& output) {
  const LoadedModule module(std::filesystem::absolute(modulePath));
  host.connect(*module.getPlugInModule());
  Attendance attendance;
  std::int64_t result = 0;
  attend(
      {typesFileName(output), answersYes()}, [&] { result = module.plugInExecute(); }, attendance);
  for (const std::string& problem : attendance.problems) {
    std::fprintf(stderr, "random_frame: %s\n", problem.c_str());
  }
  return result == 1 && attendance.problems.empty() ? 0 : 1;
}

int run(char** arguments) {
  FrameHost host;
  Random random(20120522);
  host.nodes.clear();
  host.unit = std::atoi(arguments[4]);
  for (int bars = std::atoi(arguments[3]); bars > 0; --bars) {
    addRandomBar(host, random);
  }
  if (host.bars.size() > FrameHost::mostBars || host.unit < 0 || host.unit > 2) {
    std::fprintf(stderr, "random_frame: no such frame\n");
    return 2;
  }
  if (std::string(arguments[1]) == "--batch") {
    writeBatchModel(host, random, arguments[2]);
    return 0;
  }
  return exportFrame(host, arguments[1], arguments[2]);
}

}  // namespace
}  // namespace exportifc::module_tests

int main(int argc, char** argv) {
  if (argc != 5) {
    std::fprintf(stderr, "usage: random_frame MODULE|--batch OUT BARS UNIT\n");
    return 2;
  }
  try {
    return exportifc::module_tests::run(argv);
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "random_frame: %s\n", failure.what());
    return 1;
  }
}
