// Models out of the library: exchange files and take-offs.
#include <algorithm>
#include <string>

#include "library/api/caller_sink.h"
#include "library/api/model_export_call.h"
#include "library/api/model_handle.h"
#include "library/frame/model_check.h"
#include "library/frame/model_export.h"
#include "library/takeoff/takeoff.h"
#include "library/takeoff/takeoff_tables.h"

using namespace exportifc;
using namespace exportifc::api;

ExportIfcResult exportifc::api::exportInto(ByteSink& sink, ExportIfcModel& handle,
                                           std::uint32_t flags, ExportIfcProgress progress,
                                           void* context) {
  const std::int64_t total = exportIfcBarCount(&handle);
  const ExportResult result =
      exportModel(handle.model, has(flags, exportIfcVisibleOnly), sink, [&](std::int32_t bar) {
        constexpr std::int32_t some = 0xFF;
        return progress == nullptr || (bar & some) != 0 || progress(context, bar, total) != 0;
      });
  if (result.interrupted) {
    return exportIfcCancelled;
  }
  handle.error = result.outOfMemory ? "" : result.failure;
  return result.outOfMemory ? exportIfcNoMemory
         : result.complete  ? exportIfcOk
                            : exportIfcNotWritten;
}

ExportIfcResult exportIfcExport(ExportIfcModel* model, std::uint32_t flags, ExportIfcWrite write,
                                ExportIfcProgress progress, void* context) {
  if (write == nullptr) {
    return exportIfcBadUse;
  }
  return ModelCall(model).run([&](ExportIfcModel& handle) {
    if (!isExportable(handle, has(flags, exportIfcVisibleOnly))) {
      return exportIfcProblems;
    }
    CallerSink sink(write, context);
    const ExportIfcResult result = exportInto(sink, handle, flags, progress, context);
    return result == exportIfcOk && !sink.flush() ? exportIfcNotWritten : result;
  });
}

ExportIfcResult exportIfcTakeoff(ExportIfcModel* model, std::uint32_t flags, double density,
                                 ExportIfcLists lists, ExportIfcWrite write, void* context) {
  if (write == nullptr || !(density >= 0.0)) {
    return exportIfcBadUse;
  }
  return ModelCall(model).run([&](ExportIfcModel& handle) {
    if (std::vector<Problem> problems = checkReferences(handle.model); !problems.empty()) {
      keepProblems(handle, std::move(problems));
      return exportIfcProblems;
    }
    TakeoffOptions options{.visibleOnly = has(flags, exportIfcVisibleOnly)};
    if (density > 0.0) {
      options.density = density;
    }
    auto tables = takeoffTables(handle.model, takeoffOf(handle.model, options));
    CallerSink sink(write, context);
    if (lists == exportIfcJson) {
      const std::string text = takeoffJson(tables).text();
      sink.write(text.data(), text.size());
    } else {
      std::for_each(tables.begin(), tables.end(), keepColumnsForPeople);
      writeTakeoffCsv(tables, sink);
    }
    return sink.flush() ? exportIfcOk : exportIfcNotWritten;
  });
}
