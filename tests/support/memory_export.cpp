#include "tests/support/memory_export.h"

#include <utility>

#include "plugin/export_driver.h"

namespace exportifc::test {

namespace {

std::int64_t noEntry() { return 0; }

}  // namespace

Module plainModule(std::string batchPath) {
  Module module(noEntry, noEntry);
  module.batchPath = std::move(batchPath);
  return module;
}

std::int64_t exportToMemory(
    Module& module, UserInterface& ui,
    const std::function<std::unique_ptr<BarSource>(const Module&)>& openModel, Received& received,
    std::size_t room) {
  const ExportServices services{
      .ui = ui,
      .openOutput =
          [&](const std::wstring&) { return std::make_unique<MemorySink>(received, room); },
      .openModel = openModel};
  return runExport(module, services);
}

}  // namespace exportifc::test
