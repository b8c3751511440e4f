// A host with a model from a text file: exports it through the module's queries, and answers the
// module's two questions on a terminal of its own (Linux).
//
//   model_host MODULE MODEL OUT [N]
//
// MODEL: a line with the unit code and the number of bars, then one line per bar:
//   type visible angle quarterTurns  x y z  x y z  ten dimensions  section text
// With N the module's question about invisible bars is answered No, otherwise Yes.
// Exit codes: 0 the export reached its end, 1 it did not, 2 bad use.
#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iostream>
#include <span>
#include <sstream>
#include <string>
#include <vector>

#include <sys/mman.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>

#include "exportifc/plugin.h"

namespace {

struct HostBar {
  float type = 0;
  std::int32_t visible = 1;
  float angle = 0;
  std::array<float, 10> dims{};
  BarRecord* record = nullptr;  // below 4 GiB, where 32 bits reach it
};

struct HostModel {
  std::int32_t unit = 0;
  std::vector<HostBar> bars;
  std::vector<std::array<float, 3>> nodes;  // two per bar
};

BarRecord* allocateRecords(std::size_t count) {
  void* const memory = mmap(nullptr, (count + 1) * sizeof(BarRecord), PROT_READ | PROT_WRITE,
                            MAP_PRIVATE | MAP_ANONYMOUS | MAP_32BIT, -1, 0);
  return memory == MAP_FAILED ? nullptr : static_cast<BarRecord*>(memory);
}

bool readModel(const char* path, HostModel& model) {
  std::ifstream file(path);
  std::size_t count = 0;
  file >> model.unit >> count;
  BarRecord* const records = allocateRecords(count);
  if (!file || records == nullptr) {
    return false;
  }
  std::string line;
  std::getline(file, line);
  for (const std::span<BarRecord> all(records, count); BarRecord & record : all) {
    std::getline(file, line);
    std::istringstream text(line);
    HostBar bar{.record = &record};
    text >> bar.type >> bar.visible >> bar.angle >> record.quarterTurns;
    for (int end = 0; end < 2; ++end) {
      std::array<float, 3> node{};
      text >> node[0] >> node[1] >> node[2];
      model.nodes.push_back(node);
    }
    for (float& dim : bar.dims) {
      text >> dim;
    }
    std::string section;
    std::getline(text >> std::ws, section);
    if (!file || section.size() >= sizeof record.sectionName) {
      return false;
    }
    std::memcpy(&record.sectionName, section.c_str(), section.size() + 1);
    model.bars.push_back(bar);
  }
  return true;
}

template <typename T>
void fill(void* slot, const T& value) {
  std::memcpy(slot, &value, sizeof value);
}

std::int32_t answer(std::uint64_t handle, std::int32_t index, std::int32_t code, void* slot) {
  const auto& model = *reinterpret_cast<const HostModel*>(handle);
  const auto at = static_cast<std::size_t>(index);
  switch (code) {
    case EXPORTIFC_LENGTH_UNIT: fill(slot, model.unit); break;
    case EXPORTIFC_BAR_COUNT: fill(slot, static_cast<std::int32_t>(model.bars.size())); break;
    case EXPORTIFC_BAR_TYPE: fill(slot, model.bars[at].type); break;
    case EXPORTIFC_BAR_VISIBLE: fill(slot, model.bars[at].visible); break;
    case EXPORTIFC_BAR_RECORD:
      fill(slot,
           static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(model.bars[at].record)));
      break;
    case EXPORTIFC_BAR_ANGLE: fill(slot, model.bars[at].angle); break;
    case EXPORTIFC_SECTION_DIMS: fill(slot, model.bars[at].dims); break;
    case EXPORTIFC_BAR_START_NODE: fill(slot, 2 * index); break;
    case EXPORTIFC_BAR_END_NODE: fill(slot, 2 * index + 1); break;
    case EXPORTIFC_NODE_COORDINATES: fill(slot, model.nodes[at]); break;
    default: break;
  }
  return 0;
}

/// Standard input becomes a terminal on which the answers are already typed.
bool typeAnswers(const std::string& answers) {
  const int keyboard = posix_openpt(O_RDWR | O_NOCTTY);
  if (keyboard < 0 || grantpt(keyboard) != 0 || unlockpt(keyboard) != 0) {
    return false;
  }
  const int terminal = open(ptsname(keyboard), O_RDWR | O_NOCTTY);
  return terminal >= 0 && dup2(terminal, STDIN_FILENO) == STDIN_FILENO &&
         write(keyboard, answers.data(), answers.size()) == static_cast<ssize_t>(answers.size());
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4 && argc != 5) {
    std::cerr << "usage: model_host MODULE MODEL OUT [N]\n";
    return 2;
  }
  HostModel model;
  void* const library = dlopen(argv[1], RTLD_NOW);
  const auto getModule =
      library == nullptr
          ? nullptr
          : reinterpret_cast<GetPlugInModuleFunction>(dlsym(library, "GetPlugInModule"));
  if (getModule == nullptr || !readModel(argv[2], model) ||
      !typeAnswers(std::string(argv[3]) + "\n" + (argc == 5 ? argv[4] : "S") + "\n")) {
    std::cerr << "model_host: no module, no such model, or no terminal\n";
    return 2;
  }
  PlugInModule* const module = getModule();
  module->hostQuery = answer;
  module->hostHandle = reinterpret_cast<std::uint64_t>(&model);
  return module->execute() == 1 ? 0 : 1;
}
