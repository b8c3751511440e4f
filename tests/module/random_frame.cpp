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
#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>
#include <string>

#include "tests/module/frame_host.h"
#include "tests/module/loaded_module.h"
#include "tests/module/person.h"

namespace exportifc::module_tests {
namespace {

constexpr const char* families[] = {
    "ILAM", "CS",   "][",   "[",    "[]",  "UENR", "UUE",    "IENR",   "CA",   "BOX",
    "L",    "LLM",  "LFF",  "2L",   "LL",  "><",   "<>",     "LX",     "LZ",   "CART",
    "ICAR", "TUBO", "Z",    "ZS",   "ZI",  "ZSI",  "LLAM",   "2LLM",   "LLLM", "VVLM",
    "LVLM", "LXLM", "LZLM", "ULAM", "UAP", "UULM", "2ULM",   "TEE",    "RED",  "FRED",
    "W",    "HP",   "PS",   "VS",   "VSE", "CSE",  "CVS",    "TW",     "TS",   "WT",
    "PC",   "HE",   "IPE",  "PSA",  "EC",  "RET",  "LLM_EN", "LLAM_EN"};

constexpr const char* unitNames[] = {"m", "cm", "mm"};

/// Numbers that do not depend on the library's distributions.
class Dice {
 public:
  std::uint32_t below(std::uint32_t limit) { return static_cast<std::uint32_t>(engine_()) % limit; }
  float between(float low, float high) {
    return low + (high - low) * static_cast<float>(engine_() >> 8) / 0x1p24F;
  }

 private:
  std::mt19937 engine_{20120522};
};

std::array<float, 3> randomPoint(Dice& dice) {
  std::array<float, 3> point{};
  for (float& coordinate : point) {
    coordinate = dice.between(-5000, 5000);
    if (dice.below(4) == 0) {
      coordinate = static_cast<float>(static_cast<int>(coordinate));
    }
  }
  return point;
}

void addRandomBar(FrameHost& host, Dice& dice) {
  FrameBar bar;
  bar.section = families[dice.below(std::size(families))];
  for (float& dimension : bar.dims) {
    dimension = dice.below(10) == 0 ? 0 : dice.between(0, 500);
  }
  bar.type = dice.between(-2, 13);
  bar.visible = dice.below(2) == 0 ? 1 : 0;
  bar.quarterTurns = static_cast<std::int32_t>(dice.below(9)) - 4;
  bar.angle = dice.below(3) == 0 ? 0 : dice.between(-7, 7);
  const auto node = static_cast<std::int32_t>(host.nodes.size());
  bar.startNode = node;
  bar.endNode = node + 1;
  std::array<float, 3> start = randomPoint(dice);
  std::array<float, 3> end = randomPoint(dice);
  // Most bars of a real frame run along one or two axes.
  const std::uint32_t along = dice.below(10);
  for (std::uint32_t axis = 0; axis < 3; ++axis) {
    if (along < 8 && (along & (1U << axis)) == 0) {
      end[axis] = start[axis];
    }
  }
  host.nodes[node] = start;
  host.nodes[node + 1] = end;
  host.bars.push_back(bar);
}

std::string number(float value, Dice& dice) {
  char text[64];
  std::snprintf(text, sizeof(text), dice.below(8) == 0 ? "%e" : "%.7g", double{value});
  std::string result = text;
  if (const std::size_t point = result.find('.'); point != std::string::npos) {
    result[point] = dice.below(2) == 0 ? '.' : ',';
  }
  return result;
}

void writeBatchModel(const FrameHost& host, Dice& dice, const std::string& path) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file << "226\n32\nAleatorio\n" << unitNames[host.unit] << "\n" << host.bars.size() << "\n";
  for (const FrameBar& bar : host.bars) {
    file << "Barra\n";
    for (const std::int32_t node : {bar.startNode, bar.endNode}) {
      for (const float coordinate : host.nodes.at(node)) {
        file << number(coordinate, dice) << "\n";
      }
    }
    file << number(bar.angle, dice) << "\n" << bar.section;
    const char separator = dice.below(5) == 0 ? 'x' : ' ';
    for (std::size_t i = 0; i < 5; ++i) {
      // Short enough for the 47 characters of the record.
      file << (i == 0 ? ' ' : separator) << static_cast<int>(bar.dims[i])
           << (i == 2 && separator == ' ' ? "." + std::to_string(dice.below(100)) : "");
    }
    file << "\nA36\n1\nGrupo\n";
  }
  if (!file.flush()) {
    throw std::runtime_error("cannot write " + path);
  }
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
  Dice dice;
  host.nodes.clear();
  host.unit = std::atoi(arguments[4]);
  for (int bars = std::atoi(arguments[3]); bars > 0; --bars) {
    addRandomBar(host, dice);
  }
  if (host.bars.size() > FrameHost::mostBars || host.unit < 0 || host.unit > 2) {
    std::fprintf(stderr, "random_frame: no such frame\n");
    return 2;
  }
  if (std::string(arguments[1]) == "--batch") {
    writeBatchModel(host, dice, arguments[2]);
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
