#include "host/model_check.h"

#include <algorithm>
#include <map>
#include <utility>

#include "host/messages.h"
#include "host/text_encoding.h"

namespace exportifc::host {

namespace {

/// Bars per section, counted over those that `counts` says.
struct SectionUse {
  std::int32_t bars = 0;
  std::int32_t firstBar = -1;
};

template <class Counts>
std::vector<SectionUse> usesOf(const Model& model, Counts counts) {
  std::vector<SectionUse> uses(model.sections.size());
  for (std::size_t i = 0; i < model.bars.size(); ++i) {
    if (counts(model.bars[i])) {
      SectionUse& use = uses[static_cast<std::size_t>(model.bars[i].section)];
      if (use.bars++ == 0) {
        use.firstBar = static_cast<std::int32_t>(i);
      }
    }
  }
  return uses;
}

std::string barsText(std::int32_t count) {
  return count == 1 ? say(texts::oneBar) : say(texts::manyBars, {numberText(count)});
}

}  // namespace

bool isExported(const ModelBar& bar, bool visibleOnly) {
  return bar.type != neverExportedType && (bar.visible || !visibleOnly);
}

std::vector<Problem> checkReferences(const Model& model) {
  std::vector<Problem> problems;
  std::map<std::int32_t, std::size_t> byNode;  // index of the problem
  const auto checkNode = [&](std::int32_t node, std::size_t bar) {
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
                          .firstBar = static_cast<std::int32_t>(bar)});
    }
    ++problems[found->second].bars;
  };
  for (std::size_t i = 0; i < model.bars.size(); ++i) {
    checkNode(model.bars[i].start, i);
    if (model.bars[i].end != model.bars[i].start) {
      checkNode(model.bars[i].end, i);
    }
  }
  const auto uses = usesOf(model, [](const ModelBar&) { return true; });
  for (std::size_t i = 0; i < model.sections.size(); ++i) {
    if (!model.sections[i].defined) {
      problems.push_back({.code = "unknown-section",
                          .message = say(texts::problemSection, {model.sections[i].name}),
                          .section = static_cast<std::int32_t>(i),
                          .bars = uses[i].bars,
                          .firstBar = uses[i].firstBar});
    }
  }
  return problems;
}

std::vector<Problem> checkCharacters(const Model& model, bool visibleOnly) {
  std::vector<Problem> problems;
  const auto uses =
      usesOf(model, [&](const ModelBar& bar) { return isExported(bar, visibleOnly); });
  for (std::size_t i = 0; i < model.sections.size(); ++i) {
    const std::string& text = model.sections[i].text;
    const std::string character = firstUnwritable(text);
    if (uses[i].bars > 0 && !character.empty()) {
      problems.push_back(
          {.code = "unwritable-character",
           .message = say(texts::problemUnwritable, {text, character, transliterated(text)}),
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
  add(checkCharacters(model, visibleOnly));
  return problems;
}

std::string barText(const Model& model, std::int32_t index) {
  std::string text = say(texts::bar, {numberText(index + 1)});
  if (model.format == ModelFormat::json) {
    text += " (/bars/" + std::to_string(index) + ")";
  }
  return text;
}

std::string problemText(const Model& model, const Problem& problem) {
  if (problem.bars == 0) {
    return problem.message;
  }
  const std::string bar = barText(model, problem.firstBar);
  const std::string where =
      problem.bars == 1 ? bar : say(texts::barsFrom, {barsText(problem.bars), bar});
  return where + ": " + problem.message;
}

void transliterate(Model& model) {
  for (ModelSection& section : model.sections) {
    section.text = transliterated(section.text);
  }
}

}  // namespace exportifc::host
