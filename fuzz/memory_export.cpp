#include "fuzz/memory_export.h"

#include "fuzz/require.h"
#include "model/batch_source.h"
#include "model/host_source.h"
#include "tests/support/memory_export.h"

namespace exportifc::fuzz {

namespace {

/// The system's dialog, answered with a file that can always be created.
class WithSaveFile final : public UserInterface {
 public:
  explicit WithSaveFile(UserInterface& ui) : ui_(ui) {}

  std::optional<std::wstring> chooseSaveFile() override { return anyOutputPath; }
  BarChoice chooseBars() override { return ui_.chooseBars(); }
  void show(const Message& message) override { ui_.show(message); }

 private:
  UserInterface& ui_;
};

}  // namespace

void CountingInterface::show(const Message& message) {
  switch (message.id) {
    case MessageId::exportFailed: ++unhandled; break;
    case MessageId::barWithoutRecord: ++barProblems; break;
    case MessageId::unknownProfile: ++unknownProfiles; break;
    default: fail("a message that no bar has");
  }
}

Exported exportBatch(const std::string& path, UserInterface& ui) {
  Exported exported;
  Module module = test::plainModule(path);
  exported.result = test::exportToMemory(
      module, ui,
      [](const Module& opened) { return std::make_unique<BatchSource>(opened.batchPath); },
      exported.file);
  exported.batchPath = module.batchPath;
  return exported;
}

void exportModel(const std::function<std::unique_ptr<BarSource>()>& openModel, UserInterface& ui,
                 Exported& exported) {
  Module module = test::plainModule();
  WithSaveFile dialog(ui);
  exported.result = test::exportToMemory(
      module, dialog, [&](const Module&) { return openModel(); }, exported.file);
  exported.batchPath = module.batchPath;
}

void exportHost(HostQuery query, std::uint64_t handle, UserInterface& ui, Exported& exported) {
  exportModel([&] { return std::make_unique<HostSource>(query, handle); }, ui, exported);
}

}  // namespace exportifc::fuzz
