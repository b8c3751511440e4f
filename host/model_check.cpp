#include "host/model_check.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <iterator>
#include <map>
#include <utility>

#include "host/json_places.h"
#include "host/messages.h"
#include "host/section_catalogue.h"
#include "host/text_encoding.h"
#include "model/batch_source.h"
#include "step/number_format.h"

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

/// The dimension as it reads in the file, where a tiny one is 0.
double asWritten(double value) {
  std::array<char, fixed5Capacity> text{};
  const char* const end = putFixed5(text.data(), value);
  double read = value;
  std::from_chars(text.data(), end, read);
  return read;
}

/// The problems of one section; `place` fills in which section and bars.
class SectionCheck {
 public:
  SectionCheck(const ModelSection& section, const Problem& place, std::vector<Problem>& problems)
      : section_(section), place_(place), problems_(problems) {}

  void run() {
    const std::string& text = section_.text;
    checkText();
    if (text.find_first_not_of(' ') == std::string::npos) {
      add("empty-section", say(texts::problemEmptySection));
      return;
    }
    const std::string word = text.substr(0, text.find(' '));
    const Family* const family = findFamilyWord(word);
    if (family == nullptr) {
      const std::string near = nearestFamily(word);
      add("unknown-family", say(texts::problemFamily, {word}) +
                                (near.empty() ? std::string() : say(texts::didYouMean, {near})));
    } else if (family->parts.empty()) {
      add("family-without-profile", say(texts::problemNoProfile, {word}));
    } else {
      checkDimensions(*family);
      if (family->parts.front()->writer == ProfileWriter(Outline::pc)) {
        add("outline-touches-itself", say(texts::noteTouches, {text}));
        problems_.back().severity = Severity::note;
      }
    }
  }

 private:
  void add(const char* code, std::string message, int dimension = -1) {
    Problem problem = place_;
    problem.code = code;
    problem.message = std::move(message);
    problem.dimension = dimension;
    if (dimension >= 0 && section_.dims != parseSectionDims(section_.text)) {
      problem.pointer = sectionPointer(section_) + "/dims/" + std::to_string(dimension);
    }
    problems_.push_back(std::move(problem));
  }

  void checkText() {
    constexpr std::size_t longest = sizeof(BarRecord::sectionName) - 1;
    const std::string& text = section_.text;
    if (text.size() > longest) {
      add("text-too-long",
          say(texts::problemTooLong, {text, std::to_string(text.size()), std::to_string(longest)}));
    }
    if (text.find_first_of("'\\") != std::string::npos) {
      add("quote-character", say(texts::problemQuote, {text}));
    }
    if (text.find("*/") != std::string::npos) {
      add("comment-end", say(texts::problemComment, {text}));
    }
    if (std::any_of(text.begin(), text.end(),
                    [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7F'; })) {
      add("control-character", say(texts::problemControl));
    }
  }

  void checkDimensions(const Family& family) {
    for (const DimensionUse& use : family.dimensions) {
      const double value = asWritten(dimensionValue(use.from, section_.dims));
      const std::string name = "d" + std::to_string(use.index);
      if (!std::isfinite(value)) {
        add("not-finite", say(texts::problemNotFinite, {name, meaningText(use.meaning)}),
            use.index);
      } else if (value < 0.0 || (value == 0.0 && !use.mayBeZero)) {
        constexpr int decimals = 3;
        std::string message =
            value == 0.0
                ? say(texts::problemMissing, {section_.text, name, meaningText(use.meaning)})
                : say(texts::problemNegative, {section_.text, name, meaningText(use.meaning),
                                               decimalText(value, decimals)});
        if (use.from == Dimension::rectangleSide) {
          message.append("; ").append(say(texts::secondSide));
        }
        add("missing-dimension", std::move(message), use.index);
      }
    }
  }

  const ModelSection& section_;
  const Problem& place_;
  std::vector<Problem>& problems_;
};

void checkSections(const Model& model, bool visibleOnly, std::vector<Problem>& problems) {
  const auto uses =
      usesOf(model, [&](const ModelBar& bar) { return isExported(bar, visibleOnly); });
  for (std::size_t i = 0; i < model.sections.size(); ++i) {
    if (uses[i].bars > 0 && model.sections[i].defined) {
      const Problem place{.pointer = sectionPointer(model.sections[i]) + "/text",
                          .section = static_cast<std::int32_t>(i),
                          .bars = uses[i].bars,
                          .firstBar = uses[i].firstBar};
      SectionCheck(model.sections[i], place, problems).run();
    }
  }
}

/// Millimetres below which a bar has no direction.
constexpr double shortestBar = 0.01;

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
  for (std::size_t i = 0; i < model.bars.size(); ++i) {
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
  if (std::none_of(model.bars.begin(), model.bars.end(),
                   [&](const ModelBar& bar) { return isExported(bar, visibleOnly); })) {
    warn("no-bars", "/bars", say(texts::problemNoBars));
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
  const auto uses = usesOf(model, [](const ModelBar&) { return true; });
  for (std::size_t i = 0; i < model.sections.size(); ++i) {
    if (!model.sections[i].defined) {
      problems.push_back({.code = "unknown-section",
                          .message = say(texts::problemSection, {model.sections[i].name}),
                          .pointer = barPointer(uses[i].firstBar) + "/section",
                          .value = model.sections[i].name,
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

std::string barPointer(std::int32_t index) { return "/bars/" + std::to_string(index); }

std::string sectionPointer(const ModelSection& section) {
  return "/sections/" + pointerPiece(section.name);
}

void transliterate(Model& model) {
  for (ModelSection& section : model.sections) {
    section.text = transliterated(section.text);
  }
}

}  // namespace exportifc::host
