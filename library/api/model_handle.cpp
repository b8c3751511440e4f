#include "library/api/model_handle.h"

#include <algorithm>
#include <utility>

#include "library/api/held_text.h"
#include "library/api/messages.h"
#include "library/frame/model_check.h"
#include "library/frame/problem_json.h"
#include "library/frame/problem_text.h"

namespace exportifc::api {

Language languageOf(const char* name) {
  const bool isPortuguese = name != nullptr && std::string_view(name).starts_with("pt");
  return isPortuguese ? Language::portuguese : Language::english;
}

const Text& textOf(std::int32_t result) {
  switch (result) {
    case exportIfcOk: return texts::resultOk;
    case exportIfcProblems: return texts::resultProblems;
    case exportIfcBadUse: return texts::resultBadUse;
    case exportIfcUnreadable: return texts::resultUnreadable;
    case exportIfcNotWritten: return texts::resultNotWritten;
    case exportIfcNoMemory: return texts::resultNoMemory;
    case exportIfcCancelled: return texts::resultCancelled;
  }
  return texts::resultUnknown;
}

void keepProblems(ExportIfcModel& handle, std::vector<Problem> problems, TextPlace readTo) {
  if (handle.format != nullptr) {
    HeldText text(handle.bytes);
    handle.format->locate(&text, problems, readTo);
  }
  JsonList list;
  for (const Problem& problem : problems) {
    list.add(handle.isRead ? problemJson(handle.name, handle.model, problem)
                           : problemJson(handle.name, problem));
  }
  handle.problems = list.text();
  const auto first = std::find_if(problems.begin(), problems.end(), [](const Problem& problem) {
    return problem.severity == Severity::error;
  });
  if (first != problems.end()) {
    handle.error = placedLine(
        handle.name, *first,
        handle.isRead ? problemText(handle.model, *first) : withPointer(*first, first->message));
  }
}

bool isExportable(ExportIfcModel& handle, bool visibleOnly) {
  std::vector<Problem> problems = checkReferences(handle.model);
  if (problems.empty()) {
    problems = checkCharacters(handle.model, visibleOnly);
  }
  if (problems.empty()) {
    return true;
  }
  keepProblems(handle, std::move(problems));
  return false;
}

bool isOpen(const ExportIfcModel* handle) {
  return handle != nullptr && handle->mark == ExportIfcModel::openMark;
}

void keepErrorText(ExportIfcModel& handle, ExportIfcResult result) {
  const SpokenLanguage spoken(handle.language);
  if (result == exportIfcOk) {
    handle.errorText = "";
  } else if (result == exportIfcNoMemory || handle.error.empty()) {
    handle.errorText = say(textOf(result));
  } else {
    handle.errorText = handle.error.c_str();
  }
}

ModelCall::ModelCall(ExportIfcModel* handle)
    : handle_(isOpen(handle) && !handle->busy.test_and_set() ? handle : nullptr) {
  if (handle_ != nullptr) {
    handle_->error.clear();
  }
}

ModelCall::~ModelCall() {
  if (handle_ != nullptr) {
    handle_->busy.clear();
  }
}

ExportIfcResult ModelCall::ended(ExportIfcResult result) {
  keepErrorText(*handle_, result);
  return result;
}

}  // namespace exportifc::api
