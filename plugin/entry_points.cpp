// The module's three exported functions; everything else lies in the core library.
#include "exportifc/plugin.h"
#include "plugin/export_driver.h"
#include "plugin/module.h"

namespace {

std::int64_t idle() { return 0; }

exportifc::Module& module() {
  static exportifc::Module instance(&PlugInExecute, &idle);
  return instance;
}

}  // namespace

extern "C" {

PlugInModule* GetPlugInModule() { return &module().record; }

std::int64_t PlugInExecute() { return runExport(module(), exportifc::systemServices()); }

std::int64_t PlugInExportIfcFile(const char* path) {
  return exportBatchFile(module(), exportifc::systemServices(), path);
}

}  // extern "C"
