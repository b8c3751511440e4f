// exportifc sections: the catalogue of rolled sections, by series, by name, by depth and mass.
#include <algorithm>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

#include "cli/commands/commands.h"
#include "cli/console.h"
#include "cli/failure.h"
#include "cli/messages.h"
#include "library/sections/catalogue_json.h"
#include "library/sections/rolled_sections.h"
#include "library/sections/section_text.h"
#include "library/text/aligned_lines.h"
#include "library/text/messages.h"
#include "library/text/nearest.h"

namespace exportifc::cli {

namespace {

struct SectionsOptions {
  /// A series, the beginning of a name, or a whole one, in one argument or several.
  std::vector<std::string> words;
  std::string depth;  ///< mm: a number or a range
  std::string mass;   ///< kg/m
  bool markdown = false;
};

using Sections = std::vector<const RolledSection*>;

// ---- ranges

struct Range {
  double least = 0.0;
  double most = std::numeric_limits<double>::max();

  bool holds(double value) const { return value >= least && value <= most; }
};

/// "280..320", "..320", "280.."; a number alone means about as much.
Range rangeIn(const std::string& option, const std::string& text) {
  constexpr double about = 0.02;
  constexpr std::string_view dots = "..";
  Range range;
  const std::size_t split = text.find(dots);
  const std::string first = text.substr(0, split);
  const std::string last =
      split == std::string::npos ? std::string() : text.substr(split + dots.size());
  const auto refuse = [&] { throw Failure(exitBadUse, say(texts::sectionsRange, {option, text})); };
  const auto bound = [&](const std::string& digits, double& value) {
    if (const auto number = numberIn(digits)) {
      value = *number;
    } else if (!digits.empty()) {
      refuse();
    }
  };
  bound(first, range.least);
  if (split == std::string::npos) {
    range.most = range.least * (1.0 + about);
    range.least *= 1.0 - about;
  } else {
    bound(last, range.most);
  }
  if ((first.empty() && last.empty()) || range.most < range.least) {
    refuse();
  }
  return range;
}

// ---- tables

using Row = std::vector<std::string>;

/// Texts stand in the first columns, numbers behind them.
void printTable(Console& console, const std::vector<Row>& rows, std::size_t textColumns) {
  for (const std::string& line :
       alignedLines(rows, [&](std::size_t column) { return column < textColumns; })) {
    console.printLine(line);
  }
}

Row headings() {
  return {say(texts::sectionsName),
          say(texts::sectionsDepth),
          say(texts::sectionsWidth),
          say(texts::sectionsFlange),
          say(texts::sectionsWeb),
          "kg/m",
          "cm²"};
}

Row rowOf(const RolledSection& section) {
  return {std::string(section.name),
          millimetreText(section.depth),
          millimetreText(section.width),
          millimetreText(section.flangeThickness),
          millimetreText(section.webThickness),
          millimetreText(section.mass),
          millimetreText(section.area)};
}

void printSections(Console& console, const Sections& sections) {
  std::vector<Row> rows{headings()};
  for (const RolledSection* const section : sections) {
    rows.push_back(rowOf(*section));
  }
  printTable(console, rows, 1);
}

void printSeries(Console& console) {
  std::vector<Row> rows;
  for (std::size_t i = 0; i < rolledSeries().size(); ++i) {
    const RolledSeriesFacts& facts = rolledSeries()[i];
    const auto sections = rolledSections(static_cast<RolledSeries>(i));
    console.addItem("series", {{"name", facts.name},
                               {"family", facts.familyWord},
                               {"standard", facts.standard},
                               {"count", sections.size()},
                               {"first", sections.front().name},
                               {"last", sections.back().name}});
    rows.push_back({std::string(facts.name),
                    std::string(sections.front().name) + " … " + std::string(sections.back().name),
                    std::to_string(sections.size()), std::string(facts.standard)});
  }
  for (Row& row : rows) {  // counts stand at the right
    row[2].insert(0, row[2].size() < 3 ? 3 - row[2].size() : 0, ' ');
  }
  printTable(console, rows, rows.front().size());
}

void printSection(Console& console, const RolledSection& section) {
  const RolledSeriesFacts& facts = factsOf(section.series);
  const std::string text = sectionText(section);
  console.printLine(std::string(section.name));
  const auto mm = [](double value) { return millimetreText(value) + " mm"; };
  std::vector<Row> rows = {
      {say(texts::sectionsStandard), std::string(facts.standard)},
      {say(texts::sectionsDepth), mm(section.depth)},
      {say(texts::sectionsWidth), mm(section.width)},
      {say(texts::sectionsFlange), mm(section.flangeThickness)},
      {say(texts::sectionsWeb), mm(section.webThickness)},
      {say(texts::sectionsMass), millimetreText(section.mass) + " kg/m"},
      {say(texts::sectionsArea), millimetreText(section.area) + " cm²"},
      {say(texts::sectionsText), text},
      {say(texts::sectionsModel), "{\"catalogue\": \"" + std::string(section.name) + "\"}"}};
  for (Row& row : rows) {
    row[0].insert(0, "  ");
  }
  printTable(console, rows, 2);
}

// ---- the page

void printMarkdown(Console& console) {
  console.printLine(say(texts::sectionsPage));
  std::string header = "|";
  std::string rule = "|";
  Row columns = headings();
  columns.emplace_back(say(texts::sectionsText));
  for (const std::string& heading : columns) {
    header += " " + heading + " |";
    rule += "---|";
  }
  for (std::size_t i = 0; i < rolledSeries().size(); ++i) {
    const RolledSeriesFacts& facts = rolledSeries()[i];
    console.printLine("\n## " + std::string(facts.name) + "\n\n" +
                      say(texts::sectionsDrawnBy, {facts.familyWord, facts.standard}) + "\n");
    console.printLine(header);
    console.printLine(rule);
    for (const RolledSection& section : rolledSections(static_cast<RolledSeries>(i))) {
      std::string line = "|";
      for (const std::string& cell : rowOf(section)) {
        line += " " + cell + " |";
      }
      console.printLine(line + " `" + sectionText(section) + "` |");
    }
  }
}

// ---- the command

Sections chosen(const std::string& name, const SectionsOptions& options) {
  Sections found = rolledSectionsBeginning(name);
  if (found.empty()) {
    const std::vector<std::string> near = nearestRolledSections(name);
    throw Failure(exitBadUse,
                  say(texts::notInCatalogue, {name}) +
                      (near.empty() ? std::string(say(texts::catalogueAdvice))
                                    : say(texts::didYouMean, {joined(std::vector<std::string_view>(
                                                                 near.begin(), near.end()))})));
  }
  if (!options.depth.empty()) {
    const Range range = rangeIn("--depth", options.depth);
    std::erase_if(found, [&](const auto* section) { return !range.holds(section->depth); });
  }
  if (!options.mass.empty()) {
    const Range range = rangeIn("--mass", options.mass);
    std::erase_if(found, [&](const auto* section) { return !range.holds(section->mass); });
    std::stable_sort(found.begin(), found.end(),
                     [](const auto* a, const auto* b) { return a->mass < b->mass; });
  }
  return found;
}

ExitCode run(const SectionsOptions& options, Console& console) {
  std::string name;
  for (const std::string& word : options.words) {
    name += (name.empty() ? "" : " ") + word;
  }
  const bool filtered = !options.depth.empty() || !options.mass.empty();
  if (options.markdown) {
    printMarkdown(console);
  } else if (name.empty() && !filtered) {
    printSeries(console);
  } else if (const RolledSection* const section = findRolledSection(name);
             section != nullptr && !filtered) {
    console.addFact("sections", factsOf(sectionsJson(Sections{section})));
    printSection(console, *section);
  } else {
    const Sections found = chosen(name, options);
    console.addFact("sections", factsOf(sectionsJson(found)));
    found.empty() ? console.printLine(say(texts::sectionsNone)) : printSections(console, found);
  }
  return exitOk;
}

}  // namespace

Command addSections(CLI::App& program) {
  const auto options = std::make_shared<SectionsOptions>();
  CLI::App& command = addCommand(program, "sections", texts::helpSections);
  addArguments(command, texts::wordSection, options->words, texts::helpSectionWords);
  addName(command, "--depth", options->depth, texts::helpDepth, texts::wordRange);
  addName(command, "--mass", options->mass, texts::helpMass, texts::wordRange);
  excludeJson(command,
              addFlag(command, "--markdown", options->markdown, texts::helpSectionsMarkdown));
  return {&command, [options](Console& console) { return run(*options, console); }};
}

}  // namespace exportifc::cli
