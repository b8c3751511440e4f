// What a handle of the library stands for, and how every call with one begins and ends.
#pragma once

#include <atomic>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include "exportifc/library.h"
#include "library/formats/format.h"
#include "library/frame/model.h"
#include "library/frame/problem.h"
#include "library/text/text.h"

struct ExportIfcModel {
  static constexpr std::uint64_t openMark = 0x6C65646F4D434649;

  /// Wiped when the model is closed: whoever comes with it then is told, while nothing else lies
  /// there.
  std::uint64_t mark = openMark;
  std::atomic_flag busy{};
  std::string bytes{};  ///< for the places of problems
  std::string name{};
  std::vector<std::string> files{};  ///< that it was read from
  exportifc::Language language = exportifc::Language::english;
  const exportifc::Format* format = nullptr;
  bool isRead = false;
  exportifc::Model model{};
  std::string problems = "[]";
  std::string error{};         ///< why the call that is under way fails, where there is more to say
  const char* errorText = "";  ///< the same, or the text of its result, for which there is memory
};

namespace exportifc::api {

/// "pt-BR" is Portuguese; null and all others English.
Language languageOf(const char* name);

/// What a result means.
const Text& textOf(std::int32_t result);

inline bool has(std::uint32_t flags, ExportIfcFlags flag) {
  return (flags & static_cast<std::uint32_t>(flag)) != 0;
}

/// Keeps the problems as a text, with their places, and the first error among them as the reason of
/// a failing call.
void keepProblems(ExportIfcModel& handle, std::vector<Problem> problems, TextPlace readTo = {});

/// Whether nothing forbids an export; otherwise what does is kept.
bool isExportable(ExportIfcModel& handle, bool visibleOnly);

/// Runs one call in a language: no exception leaves the library. `error` is given the text of one
/// that says more than its result.
template <class Call>
ExportIfcResult guarded(Language language, std::string& error, Call call) {
  const SpokenLanguage spoken(language);
  try {
    return call();
  } catch (const std::bad_alloc&) {
    return exportIfcNoMemory;
  } catch (const std::exception& failure) {
    try {
      error = failure.what();
    } catch (const std::bad_alloc&) {
      error.clear();
    }
    return exportIfcNotWritten;
  }
}

/// Runs a call with a model that could be read, and keeps the text of its result.
class ModelCall {
 public:
  /// Null when the model is none, closed, unreadable or busy.
  explicit ModelCall(ExportIfcModel* handle);
  ModelCall(const ModelCall&) = delete;
  ModelCall& operator=(const ModelCall&) = delete;
  ~ModelCall();

  template <class Call>
  ExportIfcResult run(Call call) {
    if (handle_ == nullptr) {
      return exportIfcBadUse;
    }
    return ended(handle_->isRead
                     ? guarded(handle_->language, handle_->error, [&] { return call(*handle_); })
                     : exportIfcBadUse);
  }

 private:
  ExportIfcResult ended(ExportIfcResult result);

  ExportIfcModel* handle_;
};

/// The text of a result is what is known of it, or its meaning.
void keepErrorText(ExportIfcModel& handle, ExportIfcResult result);

bool isOpen(const ExportIfcModel* handle);

}  // namespace exportifc::api
