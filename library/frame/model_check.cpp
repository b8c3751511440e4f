#include "library/frame/model_check.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <map>
#include <string_view>
#include <utility>

#include "library/frame/pointer.h"
#include "library/frame/section_check.h"
#include "library/sections/section_text.h"
#include "library/text/messages.h"
#include "library/text/nearest.h"
#include "library/text/text_encoding.h"

namespace exportifc {

namespace {

/// Bars per section, counted over those that `counts` says.
struct SectionUse {
  std::int32_t bars = 0;
  std::int32_t firstBar = -1;
};

template <class Counts>
std::vector<SectionUse> usesOf(const Model& model, Counts counts,
                               std::size_t barLimit = static_cast<std::size_t>(-1)) {
  std::vector<SectionUse> uses(model.sections.size());
  for (std::size_t i = 0; i < std::min(model.bars.size(), barLimit); ++i) {
    if (counts(model.bars[i])) {
      SectionUse& use = uses[static_cast<std::size_t>(model.bars[i].section)];
      if (use.bars++ == 0) {
        use.firstBar = static_cast<std::int32_t>(i);
      }
    }
  }
  return uses;
}

void checkSections(const Model& model, bool visibleOnly, std::vector<Problem>& problems) {
  const auto uses = usesOf(
      model, [&](const ModelBar& bar) { return isExported(bar, visibleOnly); }, model.soundBars);
  for (std::size_t i = 0; i < model.sections.size(); ++i) {
    if (uses[i].bars > 0 && model.sections[i].defined && model.sections[i].isDrawn) {
      const Problem place{.pointer = sectionPointer(model.sections[i]) + "/text",
                          .section = static_cast<std::int32_t>(i),
                          .bars = uses[i].bars,
                          .firstBar = uses[i].firstBar};
      auto found = checkSection(model.sections[i], place);
      std::move(found.begin(), found.end(), std::back_inserter(problems));
    }
  }
}

void checkBars(const Model& model, bool visibleOnly, std::vector<Problem>& problems) {
  Problem shortBars{
      .code = "zero-length", .severity = Severity::warning, .message = say(texts::problemZero)};
  Problem notFinite{.code = "not-finite", .message = say(texts::problemBarNotFinite)};
  const double factor = millimetresPer(model.unitCode);
  const auto count = [](Problem& problem, std::size_t bar) {
    if (problem.bars++ == 0) {
      problem.firstBar = static_cast<std::int32_t>(bar);
      problem.pointer = barPointer(problem.firstBar);
    }
  };
  for (std::size_t i = 0; i < std::min(model.bars.size(), model.soundBars); ++i) {
    const ModelBar& bar = model.bars[i];
    if (!isExported(bar, visibleOnly) || !isNode(model, bar.start) || !isNode(model, bar.end)) {
      continue;
    }
    const auto& start = model.nodes[static_cast<std::size_t>(bar.start)];
    const auto& end = model.nodes[static_cast<std::size_t>(bar.end)];
    const double length =
        std::hypot(double{end[0]} - double{start[0]}, double{end[1]} - double{start[1]},
                   double{end[2]} - double{start[2]});
    if (!std::isfinite(length) || !std::isfinite(bar.angle)) {
      count(notFinite, i);
    } else if (length * factor < shortestBar) {
      count(shortBars, i);
    }
  }
  for (Problem* const problem : {&shortBars, &notFinite}) {
    if (problem->bars > 0) {
      problems.push_back(std::move(*problem));
    }
  }
}

/// Whether any bar is written, and why none is.
void checkLeftOut(const Model& model, bool visibleOnly, std::vector<Problem>& problems) {
  std::int64_t hidden = 0;
  std::int64_t unwanted = 0;
  std::int64_t tooLong = 0;
  for (const ModelBar& bar : model.bars) {
    if (!fitsRecord(model.sections[static_cast<std::size_t>(bar.section)])) {
      ++tooLong;
    } else if (!barTypeOf(bar.type).isExported) {
      ++unwanted;
    } else if (visibleOnly && !bar.visible) {
      ++hidden;
    } else {
      return;
    }
  }
  std::string reasons;
  const auto add = [&](const Text& pattern, std::int64_t count) {
    if (count > 0) {
      reasons += (reasons.empty() ? "" : ", ") + fill(pattern, {numberText(count)});
    }
  };
  add(texts::sumInvisible, hidden);
  add(texts::sumType10, unwanted);
  add(texts::sumTooLong, tooLong);
  problems.push_back({.code = "no-bars",
                      .severity = Severity::warning,
                      .message = say(texts::problemAllLeftOut, {reasons}),
                      .pointer = "/bars"});
}

void checkWhole(const Model& model, bool visibleOnly, std::vector<Problem>& problems) {
  const auto warn = [&](const char* code, const char* pointer, std::string message) {
    problems.push_back({.code = code,
                        .severity = Severity::warning,
                        .message = std::move(message),
                        .pointer = pointer});
  };
  const auto present = static_cast<std::int64_t>(model.bars.size());
  if (present < model.announcedBars) {
    warn("missing-bars", "/bars",
         say(texts::problemMissingBars, {numberText(model.announcedBars), numberText(present)}));
  }
  if (model.bars.empty()) {
    warn("no-bars", "/bars", say(texts::problemNoBars));
  } else {
    checkLeftOut(model, visibleOnly, problems);
  }
}

constexpr std::size_t mostGuesses = 20;  // each goes through all names

/// A few names; of many none.
std::string definedText(const std::vector<std::string>& names) {
  constexpr std::size_t most = 10;
  std::string text;
  for (const std::string& name : names) {
    text.append(text.empty() ? "" : ", ").append(name);
  }
  return names.size() > most ? std::string() : text;
}

/// The sections that bars name and the model does not define.
void checkSectionNames(const Model& model, std::vector<Problem>& problems) {
  const auto uses = usesOf(model, [](const ModelBar&) { return true; });
  std::vector<std::string> defined;
  for (const ModelSection& section : model.sections) {
    if (section.defined) {
      defined.push_back(section.name);
    }
  }
  const std::string allowed = definedText(defined);
  std::size_t guesses = 0;
  for (std::size_t i = 0; i < model.sections.size(); ++i) {
    if (!model.sections[i].defined) {
      const std::string& name = model.sections[i].name;
      const std::string near = guesses++ < mostGuesses ? nearest(name, defined) : std::string();
      problems.push_back({.code = "unknown-section",
                          .message = say(texts::problemSection, {name}) +
                                     (!near.empty()     ? say(texts::didYouMean, {near})
                                      : allowed.empty() ? allowed
                                                        : say(texts::sectionsAllowed, {allowed})),
                          .pointer = barPointer(uses[i].firstBar) + "/section",
                          .value = name,
                          .allowed = allowed,
                          .suggestion = near,
                          .section = static_cast<std::int32_t>(i),
                          .bars = uses[i].bars,
                          .firstBar = uses[i].firstBar});
    }
  }
}

/// The materials that sections name and the model does not define.
void checkMaterialNames(const Model& model, std::vector<Problem>& problems) {
  std::vector<std::string> defined;
  for (const ModelMaterial& material : model.materials) {
    if (material.defined) {
      defined.push_back(material.name);
    }
  }
  std::vector<std::int32_t> namedBy(model.materials.size(), -1);  // the first section
  for (std::size_t i = model.sections.size(); i-- > 0;) {
    if (model.sections[i].material >= 0) {
      namedBy[static_cast<std::size_t>(model.sections[i].material)] = static_cast<std::int32_t>(i);
    }
  }
  const std::string allowed = definedText(defined);
  std::size_t guesses = 0;
  for (std::size_t i = 0; i < model.materials.size(); ++i) {
    const std::string& name = model.materials[i].name;
    if (model.materials[i].defined || namedBy[i] < 0) {
      continue;
    }
    const ModelSection& section = model.sections[static_cast<std::size_t>(namedBy[i])];
    const std::string near = guesses++ < mostGuesses ? nearest(name, defined) : std::string();
    problems.push_back({.code = "unknown-material",
                        .message = say(texts::problemMaterial, {name}) +
                                   (!near.empty()     ? say(texts::didYouMean, {near})
                                    : allowed.empty() ? allowed
                                                      : say(texts::materialsAllowed, {allowed})),
                        .pointer = sectionPointer(section) + "/material",
                        .value = name,
                        .allowed = allowed,
                        .suggestion = near,
                        .section = namedBy[i]});
  }
}

/// The first few bars of a section, by their names if they have any.
std::string barsOf(const Model& model, std::int32_t section) {
  constexpr int most = 10;
  std::string text;
  int count = 0;
  for (std::size_t i = 0; i < model.bars.size() && count <= most; ++i) {
    if (model.bars[i].section == section) {
      text.append(text.empty() ? "" : ", ")
          .append(++count > most           ? "\xE2\x80\xA6"
                  : model.barNames.empty() ? numberText(static_cast<std::int64_t>(i) + 1)
                                           : model.barNames[i]);
    }
  }
  return text;
}

/// Sections of bars whose shape no family draws: nothing right could be written for them.
void checkDrawn(const Model& model, std::vector<Problem>& problems) {
  const auto uses = usesOf(model, [](const ModelBar& bar) { return isExported(bar, false); });
  for (std::size_t i = 0; i < model.sections.size(); ++i) {
    const ModelSection& section = model.sections[i];
    if (section.isDrawn || uses[i].bars == 0) {
      continue;
    }
    const bool hasBounds = section.bounds[0] > 0.0F && section.bounds[1] > 0.0F;
    problems.push_back(
        {.code = "undrawn-section",
         .message =
             say(texts::problemUndrawn,
                 {section.text, barsOf(model, static_cast<std::int32_t>(i))}) +
             (hasBounds ? say(texts::adviceRectangle, {millimetreText(double{section.bounds[0]}),
                                                       millimetreText(double{section.bounds[1]})})
                        : std::string()),
         .pointer = sectionPointer(section),
         .value = section.text,
         .section = static_cast<std::int32_t>(i),
         .bars = uses[i].bars,
         .firstBar = uses[i].firstBar});
  }
}

}  // namespace

bool isExported(const ModelBar& bar, bool visibleOnly) {
  return barTypeOf(bar.type).isExported && (bar.visible || !visibleOnly);
}

std::vector<Problem> checkReferences(const Model& model) {
  std::vector<Problem> problems;
  std::map<std::int32_t, std::size_t> byNode;  // index of the problem
  const auto checkNode = [&](std::int32_t node, std::size_t bar, const char* end) {
    if (isNode(model, node)) {
      return;
    }
    const auto [found, isNew] = byNode.emplace(node, problems.size());
    if (isNew) {
      const std::string index = std::to_string(node);
      problems.push_back({.code = "node-index",
                          .message = model.nodes.empty()
                                         ? say(texts::problemNoNodes, {index})
                                         : say(texts::problemNodeIndex,
                                               {index, std::to_string(model.nodes.size() - 1)}),
                          .pointer = barPointer(static_cast<std::int32_t>(bar)) + end,
                          .value = index,
                          .firstBar = static_cast<std::int32_t>(bar)});
    }
    ++problems[found->second].bars;
  };
  for (std::size_t i = 0; i < model.bars.size(); ++i) {
    checkNode(model.bars[i].start, i, "/nodes/0");
    if (model.bars[i].end != model.bars[i].start) {
      checkNode(model.bars[i].end, i, "/nodes/1");
    }
  }
  checkSectionNames(model, problems);
  checkMaterialNames(model, problems);
  checkDrawn(model, problems);
  return problems;
}

std::vector<Problem> checkCharacters(const Model& model, bool visibleOnly) {
  std::vector<Problem> problems;
  const auto uses =
      usesOf(model, [&](const ModelBar& bar) { return isExported(bar, visibleOnly); });
  for (std::size_t i = 0; i < model.sections.size(); ++i) {
    const std::string& text = model.sections[i].text;
    const std::string character = firstUnwritable(text);
    if (uses[i].bars > 0 && model.sections[i].isDrawn && !character.empty()) {
      problems.push_back({.code = "unwritable-character",
                          .message = say(texts::problemUnwritable,
                                         {withVisibleBlanks(text), withVisibleBlanks(character),
                                          transliterated(text)}),
                          .pointer = sectionPointer(model.sections[i]) + "/text",
                          .value = character,
                          .suggestion = transliterated(text),
                          .section = static_cast<std::int32_t>(i),
                          .bars = uses[i].bars,
                          .firstBar = uses[i].firstBar});
    }
  }
  return problems;
}

std::vector<Problem> checkModel(const Model& model, bool visibleOnly) {
  std::vector<Problem> problems = checkReferences(model);
  const auto add = [&](std::vector<Problem> more) {
    std::move(more.begin(), more.end(), std::back_inserter(problems));
  };
  add(model.found);
  add(checkCharacters(model, visibleOnly));
  checkSections(model, visibleOnly, problems);
  checkBars(model, visibleOnly, problems);
  checkWhole(model, visibleOnly, problems);
  return problems;
}

std::vector<Problem> notRead(const Model& model) {
  std::vector<Problem> notes = model.found;
  std::erase_if(
      notes, [](const Problem& problem) { return std::string_view(problem.code) != notReadCode; });
  return notes;
}

void drawBounds(Model& model) {
  constexpr std::size_t longest = sizeof(BarRecord::sectionName) - 1;
  for (ModelSection& section : model.sections) {
    if (section.isDrawn || section.bounds[0] <= 0.0F || section.bounds[1] <= 0.0F) {
      continue;
    }
    // Dimensions of their own: the name behind the family word may hold numbers.
    std::string name = "RET " + transliterated(section.name);
    std::erase_if(name, [](char c) { return c == '\'' || c == '\\' || c == '*'; });
    section.text = name.substr(0, longest);
    section.dims = {section.bounds[0], section.bounds[1]};
    section.givenDims = 2;
    section.isDrawn = true;
  }
}

void transliterate(Model& model) {
  for (ModelSection& section : model.sections) {
    section.text = transliterated(section.text);
  }
}

}  // namespace exportifc
