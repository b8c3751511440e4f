#include "library/formats/saf/saf_model.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <string>
#include <string_view>

#include "library/formats/saf/saf_members.h"
#include "library/formats/saf/saf_project.h"
#include "library/formats/saf/saf_sections.h"
#include "library/formats/saf/saf_table.h"
#include "library/frame/model_error.h"
#include "library/frame/pointer.h"
#include "library/text/messages.h"

namespace exportifc {

namespace {

constexpr std::string_view memberSheet = "StructuralCurveMember";
constexpr std::string_view neededSheets[] = {"StructuralPointConnection", "StructuralCrossSection",
                                             memberSheet};
// A member that refers to what these hold is named there.
constexpr std::string_view readSheets[] = {
    "Project",
    "Model",
    "StructuralMaterial",
    "StructuralCrossSection",
    "CompositeShapeDef",
    "StructuralPointConnection",
    "StructuralCurveMember",
    "StructuralCurveMemberRib",
    "StructuralCurveMemberVarying",
};

template <class Names>
bool isIn(const Names& names, std::string_view name) {
  return std::find(std::begin(names), std::end(names), name) != std::end(names);
}

struct Reading {
  Model model;
  std::vector<std::string> sectionCells;
  std::vector<std::string> barCells;
};

/// Supports, loads, results and whatever else: one note a sheet.
void nameUnread(const Workbook& book, std::vector<Problem>& found) {
  for (const std::string& name : book.sheetNames()) {
    if (isIn(readSheets, name)) {
      continue;
    }
    const auto rows = saf::Table(book.sheet(name), false).rows().size();
    if (rows > 0) {
      found.push_back(
          {.code = notReadCode,
           .severity = Severity::note,
           .message = say(texts::safNotRead, {numberText(static_cast<std::int64_t>(rows))}),
           .cell = name});
    }
  }
}

Reading readWorkbook(const Workbook& book) {
  for (const std::string_view name : neededSheets) {
    if (!book.has(name)) {
      throw ModelError({.code = "missing-sheet", .message = say(texts::noSheet, {name})});
    }
  }
  Reading reading;
  Model& model = reading.model;
  model.format = ModelFormat::saf;
  model.unitCode = static_cast<std::int32_t>(std::find(unitNames.begin(), unitNames.end(), "m") -
                                             unitNames.begin());
  const saf::Project project = saf::readProject(book, model.found);
  model.title = project.title;
  const saf::Sections sections(book, project, model);
  reading.barCells = saf::readMembers(book, project, sections, model);
  for (std::size_t i = 0; i < model.sections.size(); ++i) {
    reading.sectionCells.push_back(sections.cell(static_cast<std::int32_t>(i)));
  }
  nameUnread(book, model.found);
  return reading;
}

bool isOpen(const Problem& problem) { return problem.cell.empty() && !problem.pointer.empty(); }

/// The number that a piece of a pointer is.
std::size_t indexIn(std::string_view pointer) {
  auto index = static_cast<std::size_t>(-1);
  std::from_chars(pointer.data(), pointer.data() + pointer.size(), index);
  return index;
}

}  // namespace

bool isSaf(const Workbook& book) { return book.has(memberSheet); }

Model readSafModel(const Workbook& book) { return readWorkbook(book).model; }

void locateInSaf(const Workbook& book, std::vector<Problem>& problems) {
  const Reading reading = readWorkbook(book);
  constexpr std::string_view barStart = "/bars/";
  for (Problem& problem : problems) {
    const auto section = static_cast<std::size_t>(problem.section);
    if (!isOpen(problem)) {
      continue;
    }
    if (problem.section >= 0 && section < reading.sectionCells.size()) {
      problem.cell = reading.sectionCells[section];
    } else if (problem.pointer.starts_with(barStart)) {
      const std::size_t bar = indexIn(std::string_view(problem.pointer).substr(barStart.size()));
      problem.cell = bar < reading.barCells.size() ? reading.barCells[bar] : std::string();
    }
    problem.pointer.clear();
  }
}

}  // namespace exportifc
