// exportifc profiles: the section families, their drawings, what becomes of one section text.
#include <algorithm>
#include <cmath>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

#include "cli/commands/commands.h"
#include "cli/console.h"
#include "cli/failure.h"
#include "cli/file_plan.h"
#include "cli/messages.h"
#include "cli/output_file.h"
#include "cli/problem_report.h"
#include "library/files/paths.h"
#include "library/frame/plausibility.h"
#include "library/frame/problem_json.h"
#include "library/frame/problem_text.h"
#include "library/frame/section_check.h"
#include "library/sections/catalogue_json.h"
#include "library/sections/profile_drawing.h"
#include "library/sections/section_catalogue.h"
#include "library/sections/section_text.h"
#include "library/text/text_encoding.h"
#include "model/batch_source.h"
#include "step/step_writer.h"

namespace exportifc::cli {

namespace {

struct ProfilesOptions {
  /// A family word, or a section text, in one argument or several; empty: all families.
  std::vector<std::string> words;
  std::string drawings;   ///< folder for the drawings; empty: none
  bool markdown = false;  ///< the page docs/profiles.md
};

std::string familyTitle(const Family& family) {
  const bool halves = family.parts.size() != 1;
  return family.word + "  " + std::string(profileEntity(family)) +
         (halves ? say(texts::profilesTwoHalves) : "");
}

void printFamily(Console& console, const Family& family) {
  console.addItem("families", factsOf(familyJson(family)));
  console.printLine(familyTitle(family));
  if (family.parts.empty()) {
    console.printLine(std::string("  ") + say(texts::profilesNoProfile));
  }
  for (const DimensionUse& use : family.dimensions) {
    console.printLine("  d" + std::to_string(use.index) + "  " + meaningText(use.meaning));
  }
  if (family.secondSideAnywhere) {
    console.printLine(std::string("  ") + say(texts::secondSide));
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

void printMarkdown(Console& console) {
  console.printLine(say(texts::profilesPage));
  std::string header = "| " + std::string(say(texts::profilesFamily)) + " |";
  std::string rule = "|---|";
  for (int i = 0; i < mostDimensions; ++i) {
    header += " d" + std::to_string(i) + " |";
    rule += "---|";
  }
  console.printLine(header + " IFC2X3 |\n" + rule + "---|");
  for (const Family& family : families()) {
    console.printLine(markdownRow(family));
  }
  console.printLine(say(texts::profilesFootnote));
  for (const Family& family : families()) {
    if (!family.parts.empty()) {
      console.printLine("\n### " + code(family.word) + "\n\n![" + code(family.word) +
                        "](profiles/" + drawingName(family) + ")");
    }
  }
}

void writeDrawings(const std::vector<const Family*>& chosen, const std::string& folder,
                   Console& console) {
  const auto nameOf = [&](const Family& family) {
    return textOf(pathOf(folder) / drawingName(family));
  };
  FilePlan files(console);
  for (const Family* const family : chosen) {
    if (!family->parts.empty()) {
      files.writesDerived(nameOf(*family), say(texts::fileDrawing), OwnFile::drawing,
                          texts::replaceByHand);
    }
  }
  const MadeFolder made(folder);
  for (const Family* const family : chosen) {
    if (family->parts.empty()) {
      continue;
    }
    OutputFile file(nameOf(*family));
    file.write(drawProfile(*family));
    file.commit();
    console.addItem("files", nameOf(*family));
  }
}

// ---- one section text

class PrintingSink final : public ByteSink {
 public:
  explicit PrintingSink(Console& console) : console_(console) {}

  bool write(const char* bytes, std::size_t size) override {
    std::string line(bytes, size);
    line.erase(line.find_last_not_of("\r\n") + 1);
    console_.printLine("  " + line);
    console_.addItem("lines", line);
    return true;
  }

 private:
  Console& console_;
};

/// The lines that the export writes for the section, numbered from 1.
void printEntities(Console& console, const Family& family, const ModelSection& section) {
  StepWriter writer(std::make_unique<PrintingSink>(console));
  const bool isBuiltUp = family.parts.size() > 1;
  for (const FamilyRow* const row : family.parts) {
    const std::wstring name =
        isBuiltUp ? row->name : std::wstring(section.text.begin(), section.text.end());
    const ProfileArguments arguments =
        profileArguments(*row, section.dims, isBuiltUp ? halfFlangeSide : simpleFlangeSide);
    if (const auto* const variant = std::get_if<Parametric>(&row->writer)) {
      writeParametricProfile(writer, *variant, name, arguments);
    } else {
      writeOutlineProfile(writer, std::get<Outline>(row->writer), name, arguments);
    }
  }
}

/// Of a rectangle's second side, the dimension that gives it; -1 for other families.
int secondSide(const Family& family, const ModelSection& section) {
  if (!family.secondSideAnywhere) {
    return -1;
  }
  const double side = profileArguments(*family.parts.front(), section.dims, simpleFlangeSide)[2];
  int index = 3;
  while (index > 1 && double{section.dims[static_cast<std::size_t>(index)]} != side) {
    --index;
  }
  return index;
}

/// Without the digits that a number of 32 bits has by chance.
double roundedDimension(float value) {
  constexpr double thousand = 1000.0;
  return std::round(double{value} * thousand) / thousand;
}

void printDimensions(Console& console, const Family& family, const ModelSection& section) {
  const auto pieces = sectionPieces(section.text);
  int given = 0;
  for (const SectionPiece& piece : pieces) {
    given = std::max(given, piece.kind == SectionPiece::Kind::dropped ? 0 : piece.index + 1);
  }
  const int last = family.dimensions.empty() ? -1 : family.dimensions.back().index;
  const int count = std::min(std::max(given, last + 1), static_cast<int>(section.dims.size()));
  std::vector<std::string> values;
  std::size_t width = 0;
  for (int i = 0; i < count; ++i) {
    const auto& value = section.dims[static_cast<std::size_t>(i)];
    values.push_back(i < given ? millimetreText(double{value}) : "-");
    width = std::max(width, values.back().size());
  }
  const int side = secondSide(family, section);
  for (int i = 0; i < count; ++i) {
    std::string& value = values[static_cast<std::size_t>(i)];
    value.insert(0, width - value.size(), ' ');
    const auto use = std::find_if(
        family.dimensions.begin(), family.dimensions.end(), [&](const DimensionUse& one) {
          return one.index == (i == side ? 3 : i == 3 && side > 0 ? -1 : i);
        });
    const bool isRead = use != family.dimensions.end();
    console.printLine("  d" + std::to_string(i) + "  " + value + "  " +
                      (isRead ? meaningText(use->meaning) : say(texts::explainNotRead)));
    Json facts = {{"dimension", i}};
    if (i < given) {
      facts["value"] = roundedDimension(section.dims[static_cast<std::size_t>(i)]);
    }
    if (isRead) {
      facts["measures"] = meaningText(use->meaning);
    }
    console.addItem("dimensions", facts);
  }
}

/// What the export makes of a section text; its problems give the exit code.
ExitCode explainSection(Console& console, const std::string& text) {
  const ModelSection section{.name = text, .text = text, .dims = parseSectionDims(text)};
  const Family* const family = findFamilyWord(text.substr(0, text.find(' ')));
  console.printLine(text);
  console.addFact("text", text);
  if (family != nullptr) {
    console.addFact("family", family->word);
    console.addFact("entity", profileEntity(*family));
    console.printLine("  " + familyTitle(*family));
    if (!family->parts.empty()) {
      printDimensions(console, *family, section);
    }
  }
  std::vector<Problem> found = checkSection(section, {});
  const std::string character = firstUnwritable(text);
  if (!character.empty()) {
    found.push_back(
        {.code = "unwritable-character",
         .message = say(texts::problemUnwritable, {text, character, transliterated(text)})});
  } else if (family != nullptr && !family->parts.empty()) {
    printEntities(console, *family, section);
  }
  const ExitCode code = found.empty() ? exitOk : exitProblems;
  auto notes = sectionNotes(section, {});
  std::move(notes.begin(), notes.end(), std::back_inserter(found));
  for (const Problem& problem : found) {
    console.printLine("  " + severityText(problem.severity) + ": " + problem.message);
    Json facts = factsOf(problemJson("", problem));
    facts.erase("file");  // it stands in the argument
    console.addProblem(facts);
  }
  if (code == exitOk) {
    console.printLine(std::string("  ") + say(texts::checkNoProblems));
  }
  return code;
}

std::string joinedWords(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) {
    text += (text.empty() ? "" : " ") + word;
  }
  return text;
}

ExitCode run(const ProfilesOptions& options, Console& console) {
  const std::string text = joinedWords(options.words);
  if (text.find(' ') != std::string::npos && options.drawings.empty() && !options.markdown) {
    return explainSection(console, text);
  }
  const std::string wanted = text.substr(0, text.find(' '));
  std::vector<const Family*> chosen;
  for (const Family& family : families()) {
    if (wanted.empty() || wanted == family.word) {
      chosen.push_back(&family);
    }
  }
  if (chosen.empty()) {
    throw Failure(exitBadUse, say(texts::problemFamily, {wanted}) + familyAdvice(text));
  }
  if (!options.drawings.empty()) {
    writeDrawings(chosen, options.drawings, console);
  }
  if (options.markdown) {
    printMarkdown(console);
  } else if (options.drawings.empty()) {
    for (const Family* const family : chosen) {
      printFamily(console, *family);
    }
  }
  return exitOk;
}

}  // namespace

Command addProfiles(CLI::App& program) {
  const auto options = std::make_shared<ProfilesOptions>();
  CLI::App& command = addCommand(program, "profiles", texts::helpProfiles);
  addArguments(command, texts::wordFamily, options->words, texts::helpFamily);
  addName(command, "--svg", options->drawings, texts::helpSvg, texts::wordFolder);
  excludeJson(command, addFlag(command, "--markdown", options->markdown, texts::helpMarkdown));
  return {&command, [options](Console& console) { return run(*options, console); }};
}

}  // namespace exportifc::cli
