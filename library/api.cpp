#include <cstring>
#include <exception>
#include <iterator>
#include <memory>
#include <new>
#include <streambuf>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "exportifc/library.h"
#include "library/formats/format.h"
#include "library/formats/started_text.h"
#include "library/frame/model_check.h"
#include "library/frame/model_export.h"
#include "library/frame/plausibility.h"
#include "library/frame/problem_json.h"
#include "library/takeoff/takeoff.h"
#include "library/takeoff/takeoff_tables.h"
#include "library/text/file_extension.h"
#include "library/text/text.h"

using namespace exportifc;

/// What a handle stands for.
struct ExportIfcModel {
  std::string bytes;  ///< for the places of problems
  std::string name;
  Language language = Language::english;
  const Format* format = nullptr;
  bool isRead = false;
  Model model;
  std::string problems = "[]";
};

namespace {

/// A text that is read where it lies.
class HeldText final : public std::streambuf {
 public:
  explicit HeldText(std::string& bytes) {
    setg(bytes.data(), bytes.data(), bytes.data() + bytes.size());
  }
};

/// Keeps the problems as a text, with their places.
void keepProblems(ExportIfcModel& handle, std::vector<Problem> problems, TextPlace readTo = {}) {
  if (handle.format != nullptr) {
    HeldText text(handle.bytes);
    handle.format->locate(&text, problems, readTo);
  }
  nlohmann::ordered_json list = nlohmann::ordered_json::array();
  for (const Problem& problem : problems) {
    list.push_back(handle.isRead ? problemJson(handle.name, handle.model, problem)
                                 : problemJson(handle.name, problem));
  }
  handle.problems = list.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

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

/// Runs one call in the language of the model: no exception leaves the library.
template <class Call>
ExportIfcResult guarded(Language language, Call call) {
  const SpokenLanguage spoken(language);
  try {
    return call();
  } catch (const std::bad_alloc&) {
    return exportIfcNoMemory;
  } catch (const std::exception&) {
    return exportIfcNotWritten;
  }
}

/// Hands the caller large pieces: a call for each line would cost more than the line.
class CallerSink final : public ByteSink {
 public:
  CallerSink(ExportIfcWrite write, void* context) : write_(write), context_(context) {
    held_.reserve(pieceSize);
  }

  bool write(const char* bytes, std::size_t size) override {
    if (held_.size() + size > pieceSize) {
      flush();
    }
    held_.append(bytes, size);
    return takes_;
  }

  bool flush() {
    if (takes_ && !held_.empty()) {
      takes_ = write_(context_, held_.data(), held_.size()) != 0;
      held_.clear();
    }
    return takes_;
  }

 private:
  static constexpr std::size_t pieceSize = std::size_t{1} << 16;

  ExportIfcWrite write_;
  void* context_;
  std::string held_;
  bool takes_ = true;
};

bool has(std::uint32_t flags, ExportIfcFlags flag) {
  return (flags & static_cast<std::uint32_t>(flag)) != 0;
}

/// What forbids an export.
std::vector<Problem> obstacles(const Model& model, bool visibleOnly) {
  std::vector<Problem> problems = checkReferences(model);
  return problems.empty() ? checkCharacters(model, visibleOnly) : problems;
}

}  // namespace

std::int32_t exportIfcAbi() { return EXPORTIFC_LIBRARY_ABI; }

const char* exportIfcVersion() { return EXPORTIFC_VERSION; }

const char* exportIfcFormats() {
  static const std::string list = [] {
    std::string extensions;
    for (const Format& format : formats()) {
      extensions.append(extensions.empty() ? "" : ";").append(format.extension);
    }
    return extensions;
  }();
  return list.c_str();
}

ExportIfcResult exportIfcOpen(const void* bytes, std::size_t size, const char* name,
                              const char* language, ExportIfcModel** model) {
  if (model == nullptr || (bytes == nullptr && size > 0)) {
    return exportIfcBadUse;
  }
  *model = nullptr;
  const bool isPortuguese = language != nullptr && std::string_view(language).starts_with("pt");
  const Language spoken = isPortuguese ? Language::portuguese : Language::english;
  return guarded(spoken, [&] {
    auto handle = std::make_unique<ExportIfcModel>();
    handle->language = spoken;
    handle->bytes.assign(static_cast<const char*>(bytes), size);
    handle->name = name == nullptr ? "" : name;
    const ExportIfcResult result = read(*handle);
    *model = handle.release();
    return result;
  });
}

void exportIfcClose(ExportIfcModel* model) { delete model; }

std::int64_t exportIfcBarCount(const ExportIfcModel* model) {
  return model == nullptr ? 0 : static_cast<std::int64_t>(model->model.bars.size());
}

ExportIfcResult exportIfcTransliterate(ExportIfcModel* model) {
  if (model == nullptr || !model->isRead) {
    return exportIfcBadUse;
  }
  return guarded(model->language, [&] {
    transliterate(model->model);
    return exportIfcOk;
  });
}

ExportIfcResult exportIfcCheck(ExportIfcModel* model, std::uint32_t flags) {
  if (model == nullptr || !model->isRead) {
    return exportIfcBadUse;
  }
  return guarded(model->language, [&] {
    const bool visibleOnly = has(flags, exportIfcVisibleOnly);
    keepProblems(*model, checkEverything(model->model, visibleOnly, has(flags, exportIfcNotes)));
    return obstacles(model->model, visibleOnly).empty() ? exportIfcOk : exportIfcProblems;
  });
}

const char* exportIfcProblemsJson(const ExportIfcModel* model) {
  return model == nullptr ? "[]" : model->problems.c_str();
}

ExportIfcResult exportIfcExport(ExportIfcModel* model, std::uint32_t flags, ExportIfcWrite write,
                                ExportIfcProgress progress, void* context) {
  if (model == nullptr || !model->isRead || write == nullptr) {
    return exportIfcBadUse;
  }
  return guarded(model->language, [&] {
    const bool visibleOnly = has(flags, exportIfcVisibleOnly);
    if (!obstacles(model->model, visibleOnly).empty()) {
      return exportIfcProblems;
    }
    CallerSink sink(write, context);
    const std::int64_t total = exportIfcBarCount(model);
    const ExportResult result = exportModel(model->model, visibleOnly, sink, [&](std::int32_t bar) {
      constexpr std::int32_t some = 0xFF;
      return progress == nullptr || (bar & some) != 0 || progress(context, bar, total) != 0;
    });
    return result.complete && sink.flush() ? exportIfcOk : exportIfcNotWritten;
  });
}

ExportIfcResult exportIfcTakeoff(ExportIfcModel* model, std::uint32_t flags, double density,
                                 ExportIfcLists lists, ExportIfcWrite write, void* context) {
  if (model == nullptr || !model->isRead || write == nullptr || !(density >= 0.0)) {
    return exportIfcBadUse;
  }
  return guarded(model->language, [&] {
    if (!checkReferences(model->model).empty()) {
      return exportIfcProblems;
    }
    TakeoffOptions options{.visibleOnly = has(flags, exportIfcVisibleOnly)};
    if (density > 0.0) {
      options.density = density;
    }
    auto tables = takeoffTables(model->model, takeoffOf(model->model, options));
    CallerSink sink(write, context);
    if (lists == exportIfcJson) {
      const std::string text = takeoffJson(tables).dump();
      sink.write(text.data(), text.size());
    } else {
      std::for_each(tables.begin(), tables.end(), keepColumnsForPeople);
      writeTakeoffCsv(tables, sink);
    }
    return sink.flush() ? exportIfcOk : exportIfcNotWritten;
  });
}
