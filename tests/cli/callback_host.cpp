// A host with the models of the command-line program: exports one through the module's queries and
// answers the module's dialogs.
//
//   callback_host MODULE MODEL OUT.ifc [visible]
//
// With "visible" the question about invisible bars is answered No, otherwise Yes.
// Exit codes: 0 the export reached its end, 1 it did not or showed another dialog, 2 bad use.
#include <cstdio>
#include <exception>
#include <filesystem>
#include <string>
#include <vector>

#include "cli/failure.h"
#include "cli/model_file.h"
#include "library/frame/model_check.h"
#include "profiles/profile_dispatch.h"
#include "profiles/section_name.h"
#include "tests/module/frame_host.h"
#include "tests/module/loaded_module.h"
#include "tests/module/person.h"

namespace {

using namespace exportifc::module_tests;
using exportifc::Model;
using exportifc::ModelBar;

void fill(FrameHost& host, const Model& model) {
  host.unit = model.unitCode;
  host.nodes.clear();
  for (std::size_t i = 0; i < model.nodes.size(); ++i) {
    host.nodes[static_cast<std::int32_t>(i)] = model.nodes[i];
  }
  for (const ModelBar& bar : model.bars) {
    const auto& section = model.sections[static_cast<std::size_t>(bar.section)];
    host.bars.push_back({.section = section.text,
                         .dims = section.dims,
                         .type = static_cast<float>(bar.type),
                         .visible = bar.visible ? 1 : 0,
                         .angle = bar.angle,
                         .quarterTurns = bar.quarterTurns,
                         .startNode = bar.start,
                         .endNode = bar.end});
  }
}

/// How many of a section's profiles nobody knows: 0, 1, or 2 for both halves.
int unknownProfiles(const std::string& sectionText) {
  const std::wstring text(sectionText.begin(), sectionText.end());
  const std::wstring_view family = exportifc::profileFamilyOf(text);
  std::wstring first;
  std::wstring second;
  const auto unknown = [](std::wstring_view word) {
    return exportifc::findFamily(word) == nullptr ? 1 : 0;
  };
  return exportifc::splitBuiltUpProfile(family, first, second) ? unknown(first) + unknown(second)
                                                               : unknown(family);
}

std::vector<Dialog> scriptFor(const Model& model, const std::string& output, bool visibleOnly) {
  std::vector<Dialog> script = {typesFileName(output), visibleOnly ? answersNo() : answersYes()};
  for (const ModelBar& bar : model.bars) {
    const auto& section = model.sections[static_cast<std::size_t>(bar.section)];
    const int boxes = exportifc::isExported(bar, visibleOnly) ? unknownProfiles(section.text) : 0;
    for (int i = 0; i < boxes; ++i) {
      script.push_back(box("Perfil Desconhecido", "Aviso"));
    }
  }
  return script;
}

int run(const std::string& modulePath, const std::string& modelPath, const std::string& output,
        bool visibleOnly) {
  const Model model = exportifc::cli::readModel(modelPath);
  const LoadedModule module(modulePath);
  PlugInModule* const record = module.getPlugInModule();
  FrameHost host;
  fill(host, model);
  host.connect(*record);
  Attendance attendance;
  std::int64_t result = 0;
  attend(
      scriptFor(model, output, visibleOnly), [&] { result = record->execute(); }, attendance);
  for (const std::string& problem : attendance.problems) {
    std::fprintf(stderr, "callback_host: %s\n", problem.c_str());
  }
  return result == 1 && attendance.problems.empty() ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4 && argc != 5) {
    std::fprintf(stderr, "usage: callback_host MODULE MODEL OUT.ifc [visible]\n");
    return 2;
  }
  try {
    return run(argv[1], argv[2], argv[3], argc == 5);
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "callback_host: %s\n", failure.what());
    return 2;
  }
}
