#include "fuzz/memory_export.h"

#include <cstring>

#include "fuzz/require.h"
#include "model/batch_source.h"
#include "model/host_source.h"
#include "plugin/module.h"
#include "plugin/texts.h"

namespace exportifc::fuzz {

namespace {

std::int64_t noEntry() { return 0; }

/// The system's dialog, answered with a file that can always be created.
class WithSaveFile final : public UserInterface {
 public:
  explicit WithSaveFile(UserInterface& ui) : ui_(ui) {}

  SaveChoice chooseSaveFile() override { return {.accepted = true, .path = anyOutputPath}; }
  bool ask(const char* text, const char* caption) override { return ui_.ask(text, caption); }
  void show(const char* text, const char* caption) override { ui_.show(text, caption); }
  void show(const wchar_t* text, const wchar_t* caption) override { ui_.show(text, caption); }
  void printLine(std::wstring_view line) override { ui_.printLine(line); }

 private:
  UserInterface& ui_;
};

}  // namespace

void CountingInterface::show(const char* text, const char* caption) {
  if (std::strcmp(caption, texts::unhandledExceptionCaption) == 0) {
    ++unhandled;
  } else {
    require(std::strcmp(text, texts::barProblem) == 0, "a narrow message nobody knows");
    ++barProblems;
  }
}

void CountingInterface::show(const wchar_t* text, const wchar_t* /*caption*/) {
  require(std::wstring_view(text) == L"Perfil Desconhecido", "a wide message nobody knows");
  ++unknownProfiles;
}

void CountingInterface::printLine(std::wstring_view line) {
  require(line.starts_with(L"AVISO! Perfil desconhecido: "), "a printed line nobody knows");
  ++printedLines;
}

Exported exportBatch(const std::string& path, UserInterface& ui) {
  Exported exported;
  Module module(&noEntry, &noEntry);
  module.batchPath = path;
  const ExportServices services{
      .ui = ui,
      .openOutput =
          [&](const std::wstring&) { return std::make_unique<test::MemorySink>(exported.file); },
      .openModel =
          [](const Module& opened) { return std::make_unique<BatchSource>(opened.batchPath); }};
  exported.result = runExport(module, services);
  exported.batchPath = module.batchPath;
  return exported;
}

void exportModel(const std::function<std::unique_ptr<BarSource>()>& openModel, UserInterface& ui,
                 Exported& exported) {
  Module module(&noEntry, &noEntry);
  WithSaveFile dialog(ui);
  const ExportServices services{
      .ui = dialog,
      .openOutput =
          [&](const std::wstring&) { return std::make_unique<test::MemorySink>(exported.file); },
      .openModel = [&](const Module&) { return openModel(); }};
  exported.result = runExport(module, services);
  exported.batchPath = module.batchPath;
}

void exportHost(HostQuery query, std::uint64_t handle, UserInterface& ui, Exported& exported) {
  exportModel([&] { return std::make_unique<HostSource>(query, handle); }, ui, exported);
}

}  // namespace exportifc::fuzz
