// The module's three exported functions; everything else lies in the core library.
#include "exportifc/plugin.h"
#include "platform/platform.h"
#include "plugin/export_driver.h"
#include "plugin/module.h"

namespace {

std::int64_t idle() { return 0; }

exportifc::Module& module() {
  static exportifc::Module instance(&PlugInExecute, &idle);
  return instance;
}

/// Runs an export. The text that it throws goes on to the host from here, when everything that the
/// export owned is destroyed.
template <typename Export>
std::int64_t run(const Export& oneExport) {
  const char* text = nullptr;
  try {
    return oneExport();
  } catch (const char* thrown) {
    text = thrown;
  }
  exportifc::platform::throwToHost(text);
}

}  // namespace

extern "C" {

PlugInModule* GetPlugInModule() { return &module().record; }

std::int64_t PlugInExecute() {
  return run([] { return runExport(module(), exportifc::systemServices()); });
}

std::int64_t PlugInExportIfcFile(const char* path) {
  return run([path] { return exportBatchFile(module(), exportifc::systemServices(), path); });
}

}  // extern "C"
