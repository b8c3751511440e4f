// Models: opened, looked at, closed.
#include <functional>
#include <memory>
#include <string>

#include "library/api/held_text.h"
#include "library/api/model_handle.h"
#include "library/api/model_opening.h"
#include "library/formats/started_text.h"
#include "library/frame/model_check.h"
#include "library/frame/plausibility.h"
#include "library/text/file_extension.h"

using namespace exportifc;
using namespace exportifc::api;

namespace {

ExportIfcResult read(ExportIfcModel& handle) {
  HeldText text(handle.bytes);
  try {
    StartedText started(text);
    handle.format = &recognisedFormat(started.start(), extensionOf(handle.name));
    handle.model = handle.format->read(started);
    handle.isRead = true;
    return exportIfcOk;
  } catch (const ModelError& error) {
    keepProblems(handle, {error.problem()}, error.readTo());
    return exportIfcUnreadable;
  }
}

}  // namespace

ExportIfcResult exportifc::api::openModel(
    const char* language, ExportIfcModel** model,
    const std::function<ExportIfcResult(ExportIfcModel&)>& fetch) {
  *model = nullptr;
  std::string ignored;
  return guarded(languageOf(language), ignored, [&] {
    auto handle = std::make_unique<ExportIfcModel>();
    handle->language = languageOf(language);
    ExportIfcResult result = fetch(*handle);
    if (result == exportIfcOk) {
      result = read(*handle);
    }
    keepErrorText(*handle, result);
    *model = handle.release();
    return result;
  });
}

ExportIfcResult exportIfcOpen(const void* bytes, std::size_t size, const char* name,
                              const char* language, ExportIfcModel** model) {
  if (model == nullptr) {
    return exportIfcBadUse;
  }
  if (bytes == nullptr && size > 0) {
    *model = nullptr;
    return exportIfcBadUse;
  }
  const auto fetch = [&](ExportIfcModel& handle) {
    handle.name = name == nullptr ? "" : name;
    handle.bytes.assign(static_cast<const char*>(bytes), size);
    return exportIfcOk;
  };
  return openModel(language, model, std::cref(fetch));
}

void exportIfcClose(ExportIfcModel* model) {
  if (!isOpen(model) || model->busy.test_and_set()) {
    return;
  }
  *static_cast<volatile std::uint64_t*>(&model->mark) = 0;  // though the memory is released next
  delete model;
}

const char* exportIfcErrorText(const ExportIfcModel* model) {
  return isOpen(model) ? model->errorText : "";
}

std::int64_t exportIfcBarCount(const ExportIfcModel* model) {
  return isOpen(model) ? static_cast<std::int64_t>(model->model.bars.size()) : 0;
}

ExportIfcResult exportIfcTransliterate(ExportIfcModel* model) {
  return ModelCall(model).run([](ExportIfcModel& handle) {
    transliterate(handle.model);
    return exportIfcOk;
  });
}

ExportIfcResult exportIfcCheck(ExportIfcModel* model, std::uint32_t flags) {
  return ModelCall(model).run([&](ExportIfcModel& handle) {
    const bool visibleOnly = has(flags, exportIfcVisibleOnly);
    const bool isSound = isExportable(handle, visibleOnly);
    keepProblems(handle, checkEverything(handle.model, visibleOnly, has(flags, exportIfcNotes)));
    return isSound ? exportIfcOk : exportIfcProblems;
  });
}

const char* exportIfcProblemsJson(const ExportIfcModel* model) {
  return isOpen(model) ? model->problems.c_str() : "[]";
}
