#include "host/profiles_command.h"

#include <filesystem>
#include <vector>

#include "host/console.h"
#include "host/failure.h"
#include "host/file_plan.h"
#include "host/messages.h"
#include "host/output_file.h"
#include "host/paths.h"
#include "host/profile_drawing.h"
#include "host/section_catalogue.h"

namespace fs = std::filesystem;

namespace exportifc::host {

namespace {

std::string familyTitle(const Family& family) {
  const bool halves = family.parts.size() != 1;
  return family.word + "  " + std::string(profileEntity(family)) +
         (halves ? say(texts::profilesTwoHalves) : "");
}

void printFamily(const Family& family) {
  printLine(familyTitle(family));
  if (family.parts.empty()) {
    printLine(std::string("  ") + say(texts::profilesNoProfile));
  }
  for (const DimensionUse& use : family.dimensions) {
    printLine("  d" + std::to_string(use.index) + "  " + meaningText(use.meaning));
  }
  if (family.secondSideAnywhere) {
    printLine(std::string("  ") + say(texts::secondSide));
  }
}

/// Code in a table cell: "|" cannot occur, backticks keep brackets and arrows as they are.
std::string code(const std::string& text) { return "`" + text + "`"; }

constexpr int mostDimensions = 7;

/// The row of a family: its word, what each dimension means, the entity written.
std::string markdownRow(const Family& family) {
  const bool known = !family.parts.empty();
  const std::string word = code(family.word);
  std::string row = "| " + (known ? "[" + word + "](profiles/" + drawingName(family) + ")" : word);
  row += " |";
  for (int i = 0; i < mostDimensions; ++i) {
    std::string cell;
    for (const DimensionUse& use : family.dimensions) {
      if (use.index == i) {
        cell = meaningText(use.meaning) + (family.secondSideAnywhere && i == 3 ? " ¹" : "");
      }
    }
    row += " " + cell + (cell.empty() ? "|" : " |");
  }
  std::string entity = say(texts::profilesNoProfile);
  if (known) {
    entity = profileEntity(family);
    entity += family.parts.size() != 1 ? say(texts::profilesTwoHalves) : "";
  }
  return row + " " + entity + " |";
}

void printMarkdown() {
  printLine(say(texts::profilesPage));
  std::string header = "| " + std::string(say(texts::profilesFamily)) + " |";
  std::string rule = "|---|";
  for (int i = 0; i < mostDimensions; ++i) {
    header += " d" + std::to_string(i) + " |";
    rule += "---|";
  }
  printLine(header + " IFC2X3 |\n" + rule + "---|");
  for (const Family& family : families()) {
    printLine(markdownRow(family));
  }
  printLine(say(texts::profilesFootnote));
  for (const Family& family : families()) {
    if (!family.parts.empty()) {
      printLine("\n### " + code(family.word) + "\n\n![" + code(family.word) + "](profiles/" +
                drawingName(family) + ")");
    }
  }
}

void writeDrawings(const std::vector<const Family*>& chosen, const std::string& folder) {
  const auto nameOf = [&](const Family& family) {
    return textOf(pathOf(folder) / drawingName(family));
  };
  FilePlan files;
  for (const Family* const family : chosen) {
    if (!family->parts.empty()) {
      files.writesDerived(nameOf(*family), say(texts::fileDrawing), OwnFile::drawing,
                          texts::replaceByHand);
    }
  }
  makeFolder(folder);
  for (const Family* const family : chosen) {
    if (family->parts.empty()) {
      continue;
    }
    OutputFile file(nameOf(*family));
    file.write(drawProfile(*family));
    file.commit();
  }
}

}  // namespace

int runProfilesCommand(const ProfilesOptions& options) {
  std::vector<const Family*> chosen;
  for (const Family& family : families()) {
    if (options.family.empty() || options.family == family.word) {
      chosen.push_back(&family);
    }
  }
  if (chosen.empty()) {
    const std::string near = nearestFamily(options.family);
    throw Failure(exitBadUse, say(texts::problemFamily, {options.family}) +
                                  (near.empty() ? std::string() : say(texts::didYouMean, {near})));
  }
  if (!options.drawings.empty()) {
    writeDrawings(chosen, options.drawings);
  }
  if (options.markdown) {
    printMarkdown();
  } else if (options.drawings.empty()) {
    for (const Family* const family : chosen) {
      printFamily(*family);
    }
  }
  return exitOk;
}

}  // namespace exportifc::host
