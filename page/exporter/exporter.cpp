// The library as the page calls it: what the page gives instead of functions are imports.
#include "exportifc/library.h"

extern "C" {

/// Takes the next bytes of the file.
__attribute__((import_module("page"), import_name("write"))) void pageWrite(const char* bytes,
                                                                            size_t size);

/// Is told how many bars are done.
__attribute__((import_module("page"), import_name("progress"))) void pageProgress(double done);

EXPORTIFC_API ExportIfcResult pageExport(ExportIfcModel* model, uint32_t flags) {
  return exportIfcExport(
      model, flags,
      [](void* /*context*/, const char* bytes, size_t size) {
        pageWrite(bytes, size);
        return 1;
      },
      [](void* /*context*/, int64_t done, int64_t /*total*/) {
        pageProgress(static_cast<double>(done));
        return 1;
      },
      nullptr);
}

EXPORTIFC_API ExportIfcResult pageTakeoff(ExportIfcModel* model, ExportIfcLists lists) {
  return exportIfcTakeoff(
      model, exportIfcAllBars, 0.0, lists,
      [](void* /*context*/, const char* bytes, size_t size) {
        pageWrite(bytes, size);
        return 1;
      },
      nullptr);
}
}
