// Models and exchange files by their paths. Not in the page, which has no files.
#include <algorithm>
#include <filesystem>
#include <functional>
#include <string>
#include <utility>

#include "library/api/messages.h"
#include "library/api/model_export_call.h"
#include "library/api/model_handle.h"
#include "library/api/model_opening.h"
#include "library/files/file_names.h"
#include "library/files/paths.h"
#include "library/files/whole_file.h"
#include "library/formats/tables/table_folder.h"
#include "library/packing/zip_sink.h"
#include "library/text/file_extension.h"

using namespace exportifc;
using namespace exportifc::api;

namespace {

/// Puts the bytes of a file, or of the tables of a folder, into the handle. Gives the file that the
/// system refuses, and why; otherwise 0.
UnreadTable fetchFile(ExportIfcModel& handle) {
  try {
    if (auto tables = zippedTables(handle.name)) {
      handle.files = tablesIn(handle.name);
      handle.bytes = *std::move(tables);
      return {};
    }
  } catch (const UnreadTable& table) {
    return table;
  }
  handle.files = {handle.name};
  return {.name = handle.name, .error = readAll(handle.name, handle.bytes)};
}

/// Whether the path leads to a file that the model comes from.
bool isInput(const ExportIfcModel& handle, const std::filesystem::path& path) {
  const std::string identity = identityOf(path);
  return !identity.empty() &&
         std::any_of(handle.files.begin(), handle.files.end(),
                     [&](const std::string& file) { return identity == identityOf(pathOf(file)); });
}

ExportIfcResult exportTo(const std::string& path, ExportIfcModel& handle, std::uint32_t flags,
                         ExportIfcProgress progress, void* context) {
  WholeFile file(pathOf(path));
  ExportIfcResult result = file.error() != 0 ? exportIfcNotWritten : exportIfcOk;
  if (result == exportIfcOk && extensionOf(path) == ".ifczip") {
    ZipSink zip(file, exportifc::textOf(pathOf(path).filename().replace_extension(".ifc")));
    result = exportInto(zip, handle, flags, progress, context);
    if (!zip.finish() && result == exportIfcOk) {
      result = exportIfcNotWritten;
    }
  } else if (result == exportIfcOk) {
    result = exportInto(file, handle, flags, progress, context);
  }
  if (result == exportIfcOk && !file.commit()) {
    result = exportIfcNotWritten;
  }
  if (result == exportIfcNotWritten && file.error() != 0) {
    handle.error = say(api::texts::cannotWrite, {path, writeErrorText(path, file.error())});
  }
  return result;
}

}  // namespace

ExportIfcResult exportIfcOpenFile(const char* path, const char* language, ExportIfcModel** model) {
  if (model == nullptr) {
    return exportIfcBadUse;
  }
  if (path == nullptr) {
    *model = nullptr;
    return exportIfcBadUse;
  }
  const auto fetch = [&](ExportIfcModel& handle) {
    handle.name = path;
    const auto [name, error] = fetchFile(handle);
    if (error == 0) {
      return exportIfcOk;
    }
    const std::string reason = say(api::texts::cannotRead, {name, readErrorText(name, error)});
    keepProblems(handle, {{.code = "unreadable", .message = reason}});
    handle.error = reason;
    return exportIfcUnreadable;
  };
  return openModel(language, model, std::cref(fetch));
}

ExportIfcResult exportIfcExportFile(ExportIfcModel* model, std::uint32_t flags, const char* path,
                                    ExportIfcProgress progress, void* context) {
  if (path == nullptr) {
    return exportIfcBadUse;
  }
  return ModelCall(model).run([&](ExportIfcModel& handle) {
    if (isInput(handle, pathOf(path))) {
      handle.error = say(api::texts::cannotWrite, {path, say(api::texts::isTheModel)});
      return exportIfcBadUse;
    }
    return isExportable(handle, has(flags, exportIfcVisibleOnly))
               ? exportTo(path, handle, flags, progress, context)
               : exportIfcProblems;
  });
}
