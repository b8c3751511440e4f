#include "library/formats/saf/saf_project.h"

#include <string_view>
#include <utility>

#include "library/formats/saf/saf_table.h"
#include "library/frame/model_error.h"
#include "library/text/messages.h"

namespace exportifc::saf {

namespace {

struct Entry {
  std::string value;
  std::string cell;
};

/// The value beside a word in the first column; empty when it is not there.
Entry entryOf(const Workbook& book, std::string_view sheet, std::string_view word) {
  if (!book.has(sheet)) {
    return {};
  }
  const std::string wanted = comparable(word);
  for (const Row& row : book.sheet(sheet).rows) {
    const Cell* const key = cellAt(row, 0);
    const Cell* const value = cellAt(row, 1);
    if (key != nullptr && value != nullptr && comparable(key->text) == wanted) {
      return {.value = value->text, .cell = cellName(sheet, row.number, 1)};
    }
  }
  return {};
}

[[noreturn]] void refuse(const Entry& entry, const std::string& allowed) {
  throw ModelError({.code = "bad-value",
                    .message = say(texts::cellNotAllowed, {entry.value, allowed}),
                    .cell = entry.cell,
                    .value = entry.value,
                    .allowed = allowed});
}

/// The row that the entry names, or `usual` with a word about it.
template <class Row>
const Row* chosen(const Workbook& book, std::string_view word, const Row* (*find)(std::string_view),
                  std::string (*names)(), std::string_view usual, std::vector<Problem>& found) {
  const Entry entry = entryOf(book, "Model", word);
  if (entry.value.empty()) {
    found.push_back({.code = "saf-assumed",
                     .severity = Severity::warning,
                     .message = say(texts::safAssumed, {word, usual}),
                     .cell = "Model"});
    return find(usual);
  }
  const Row* const row = find(entry.value);
  if (row == nullptr) {
    refuse(entry, names());
  }
  return row;
}

}  // namespace

Project readProject(const Workbook& book, std::vector<Problem>& found) {
  Project project;
  project.title = entryOf(book, "Project", "Name").value;
  if (project.title.empty()) {
    project.title = entryOf(book, "Model", "Name").value;
  }
  const Entry units = entryOf(book, "Model", "System of units");
  project.imperial = comparable(units.value) == "imperial";
  if (!project.imperial && !units.value.empty() && comparable(units.value) != "metric") {
    refuse(units, "Metric, Imperial");
  }
  project.global = chosen(book, "Global coordinate system", findGlobalSystem, globalSystemNames,
                          "Z vertical", found);
  project.sections =
      chosen(book, "LCS of cross-section", findSectionSystem, sectionSystemNames, "ZYX", found);
  return project;
}

}  // namespace exportifc::saf
