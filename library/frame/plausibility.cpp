#include "library/frame/plausibility.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <limits>
#include <numbers>
#include <string_view>
#include <utility>

#include "library/frame/pointer.h"
#include "library/frame/section_check.h"
#include "library/sections/section_catalogue.h"
#include "library/sections/section_text.h"
#include "library/text/messages.h"
#include "model/batch_source.h"

namespace exportifc {

namespace {

// Millimetres.
constexpr double smallestDimension = 1.0;
constexpr double largestDimension = 3000.0;
constexpr double smallestModel = 1000.0;
constexpr double largestModel = 10'000'000.0;
constexpr double largestStep = 1.0;  // between neighbouring coordinates of 32 bits

// kg/m³: cork to osmium.
constexpr double smallestDensity = 100.0;
constexpr double largestDensity = 23'000.0;

constexpr int lengthDecimals = 1;

Problem note(const Problem& place, const char* code, std::string message, int dimension = -1) {
  Problem problem = place;
  problem.code = code;
  problem.severity = Severity::note;
  problem.message = std::move(message);
  problem.dimension = dimension;
  return problem;
}

// ---- sections: one rule looks at one dimension

double valueOf(const ModelSection& section, const DimensionUse& use) {
  return dimensionValue(use.from, section.dims);
}

std::string valueText(const ModelSection& section, const DimensionUse& use) {
  return millimetreText(valueOf(section, use));
}

/// A rule's message about a dimension; empty: nothing unusual.
using DimensionRule = std::string (*)(const ModelSection& section, const Family& family,
                                      const DimensionUse& use);

std::string smallDimension(const ModelSection& section, const Family& family,
                           const DimensionUse& use) {
  const double value = valueOf(section, use);
  return value > 0.0 && value < smallestDimension
             ? say(texts::noteSmallDimension,
                   {section.text, dimensionText(family, use.index), valueText(section, use)})
             : std::string();
}

std::string largeDimension(const ModelSection& section, const Family& family,
                           const DimensionUse& use) {
  return valueOf(section, use) > largestDimension
             ? say(texts::noteLargeDimension,
                   {section.text, dimensionText(family, use.index), valueText(section, use)})
             : std::string();
}

/// What a plate lies across: more than half of it is unusual.
struct PlateAcross {
  Meaning plate;
  Meaning whole;
};

constexpr PlateAcross platesAcross[] = {
    {Meaning::thickness, Meaning::depth},          {Meaning::thickness, Meaning::leg},
    {Meaning::thickness, Meaning::diameter},       {Meaning::thickness, Meaning::hatHeight},
    {Meaning::flangeThickness, Meaning::depth},    {Meaning::flangeThickness, Meaning::leg},
    {Meaning::topFlangeThickness, Meaning::depth}, {Meaning::bottomFlangeThickness, Meaning::depth},
    {Meaning::webThickness, Meaning::depth},       {Meaning::webThickness, Meaning::width},
    {Meaning::webThickness, Meaning::flangeWidth}, {Meaning::webThickness, Meaning::topFlangeWidth},
};

std::string thickPlate(const ModelSection& section, const Family& family, const DimensionUse& use) {
  for (const DimensionUse& other : family.dimensions) {
    const bool isAcross =
        std::any_of(std::begin(platesAcross), std::end(platesAcross), [&](const PlateAcross& row) {
          return row.plate == use.meaning && row.whole == other.meaning;
        });
    const double whole = valueOf(section, other);
    if (isAcross && whole > 0.0 && valueOf(section, use) > 0.5 * whole) {
      return say(texts::noteThick,
                 {section.text, dimensionText(family, use.index), valueText(section, use),
                  dimensionText(family, other.index), valueText(section, other)});
    }
  }
  return {};
}

/// The highest dimension that the family reads.
int lastRead(const Family& family) {
  constexpr int lastSide = 3;
  int last = family.secondSideAnywhere ? lastSide : 0;
  for (const DimensionUse& use : family.dimensions) {
    last = std::max(last, use.index);
  }
  return last;
}

/// A number behind the last dimension that is read, in the list or in the text; empty: none.
std::string unreadNumber(const ModelSection& section, const Family& family) {
  const int last = lastRead(family);
  if (section.givenDims >= 0) {
    const auto unread = std::find_if(section.dims.begin() + last + 1, section.dims.end(),
                                     [](float dim) { return dim != 0.0F; });
    return unread == section.dims.end() ? std::string() : millimetreText(double{*unread});
  }
  for (const SectionPiece& piece : sectionPieces(section.text)) {
    if (piece.kind == SectionPiece::Kind::number && piece.index > last) {
      return std::string(piece.text);
    }
  }
  return {};
}

/// The list of dimensions makes the shape, the text only its name.
std::string otherThanText(const ModelSection& section, const Family& family,
                          const DimensionUse& use) {
  if (section.givenDims < 0) {
    return {};
  }
  const auto pieces = sectionPieces(section.text);
  const bool textHasIt = std::any_of(pieces.begin(), pieces.end(), [&](const SectionPiece& piece) {
    return piece.index == use.index && piece.kind == SectionPiece::Kind::number;
  });
  const float inText = parseSectionDims(section.text)[static_cast<std::size_t>(use.index)];
  return textHasIt && inText != section.dims[static_cast<std::size_t>(use.index)]
             ? say(texts::noteTextDims, {section.text, millimetreText(double{inText}),
                                         dimensionText(family, use.index), valueText(section, use)})
             : std::string();
}

struct DimensionCheck {
  const char* code;
  DimensionRule rule;
};

constexpr DimensionCheck dimensionChecks[] = {
    {"small-dimension", smallDimension},
    {"large-dimension", largeDimension},
    {"thick-plate", thickPlate},
    {"text-and-dims-differ", otherThanText},
};

/// The family of a section with a profile of its own; null: its shape is not known.
const Family* familyOf(const ModelSection& section) {
  const Family* const family = findFamilyWord(section.text.substr(0, section.text.find(' ')));
  return family == nullptr || family->parts.empty() ? nullptr : family;
}

// ---- bars

using Point = std::array<float, 3>;

bool isFinite(const Point& point) {
  return std::all_of(point.begin(), point.end(), [](float x) { return std::isfinite(x); });
}

double distance(const Point& a, const Point& b) {
  return std::hypot(double{b[0]} - double{a[0]}, double{b[1]} - double{a[1]},
                    double{b[2]} - double{a[2]});
}

/// Counts bars and keeps the first.
struct BarCount {
  std::int32_t bars = 0;
  std::int32_t firstBar = -1;

  /// True for the first.
  bool add(std::size_t bar) {
    if (bars++ > 0) {
      return false;
    }
    firstBar = static_cast<std::int32_t>(bar);
    return true;
  }
};

/// Finds, for things numbered from 0, the first that equals another; each look takes constant time.
class FirstOfEqual {
 public:
  explicit FirstOfEqual(std::size_t most) : slots_(std::bit_ceil(2 * most + 1), none) {}

  /// The index of an equal thing that was shown before; otherwise `index`.
  template <class Equals>
  std::int32_t operator()(std::int32_t index, std::uint64_t hash, Equals equals) {
    hash ^= hash >> 32;
    hash *= 0x9E3779B97F4A7C15U;  // spreads neighbours over the table
    for (std::size_t at = (hash >> 32) % slots_.size();; at = (at + 1) % slots_.size()) {
      if (slots_[at] == none) {
        slots_[at] = index;
        return index;
      }
      if (equals(slots_[at])) {
        return slots_[at];
      }
    }
  }

 private:
  static constexpr std::int32_t none = -1;
  std::vector<std::int32_t> slots_;
};

/// For each node the first node in the same place.
std::vector<std::int32_t> placesOfNodes(const std::vector<Point>& nodes) {
  std::vector<std::int32_t> places(nodes.size());
  FirstOfEqual first(nodes.size());
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    std::uint64_t hash = 0;
    for (const float coordinate : nodes[i]) {
      // Equal numbers have equal bits once -0 is 0.
      hash = hash * 0x9E3779B97F4A7C15U + std::bit_cast<std::uint32_t>(coordinate + 0.0F);
    }
    places[i] = first(static_cast<std::int32_t>(i), hash, [&](std::int32_t other) {
      return nodes[static_cast<std::size_t>(other)] == nodes[i];
    });
  }
  return places;
}

class BarNotes {
 public:
  BarNotes(const Model& model, bool visibleOnly, std::vector<Problem>& notes)
      : model_(model),
        visibleOnly_(visibleOnly),
        notes_(notes),
        factor_(millimetresPer(model.unitCode)) {}

  void run() {
    countSections();
    noteSections();
    noteShortBars();
    noteAngles();
    noteSamePlaces();
    noteSize();
    noteDensities();
    noteUnusedSections();
    noteUnusedNodes();
  }

 private:
  const Point& node(std::int32_t index) const {
    return model_.nodes[static_cast<std::size_t>(index)];
  }

  bool isSound(const ModelBar& bar) const {
    return isNode(model_, bar.start) && isNode(model_, bar.end) && isFinite(node(bar.start)) &&
           isFinite(node(bar.end));
  }

  template <class Visit>
  void eachExported(Visit visit) const {
    for (std::size_t i = 0; i < std::min(model_.bars.size(), model_.soundBars); ++i) {
      if (isExported(model_.bars[i], visibleOnly_) && isSound(model_.bars[i])) {
        visit(i, model_.bars[i]);
      }
    }
  }

  Problem placeOf(const BarCount& count, std::size_t section) const {
    return {.pointer = sectionPointer(model_.sections[section]) + "/text",
            .section = static_cast<std::int32_t>(section),
            .bars = count.bars,
            .firstBar = count.firstBar};
  }

  static Problem placeOf(const BarCount& count, const char* inside = "") {
    return {.pointer = barPointer(count.firstBar) + inside,
            .bars = count.bars,
            .firstBar = count.firstBar};
  }

  void countSections() {
    exported_.resize(model_.sections.size());
    eachExported([&](std::size_t i, const ModelBar& bar) {
      exported_[static_cast<std::size_t>(bar.section)].add(i);
    });
  }

  void noteSections() {
    for (std::size_t i = 0; i < exported_.size(); ++i) {
      if (exported_[i].bars > 0) {
        auto found = sectionNotes(model_.sections[i], placeOf(exported_[i], i));
        std::move(found.begin(), found.end(), std::back_inserter(notes_));
      }
    }
  }

  void noteShortBars() {
    std::vector<double> depths(model_.sections.size());
    for (std::size_t i = 0; i < depths.size(); ++i) {
      const Family* const family = familyOf(model_.sections[i]);
      if (family != nullptr) {
        depths[i] = valueOf(model_.sections[i], family->dimensions.front());
      }
    }
    std::vector<BarCount> counts(depths.size());
    eachExported([&](std::size_t i, const ModelBar& bar) {
      const auto section = static_cast<std::size_t>(bar.section);
      const double length = distance(node(bar.start), node(bar.end)) * factor_;
      if (length >= shortestBar && length < depths[section]) {
        counts[section].add(i);
      }
    });
    for (std::size_t i = 0; i < counts.size(); ++i) {
      if (counts[i].bars > 0) {
        const ModelBar& bar = model_.bars[static_cast<std::size_t>(counts[i].firstBar)];
        const double length = distance(node(bar.start), node(bar.end)) * factor_;
        Problem place = placeOf(counts[i]);
        place.section = static_cast<std::int32_t>(i);
        notes_.push_back(note(
            place, "short-bar",
            say(texts::noteShortBar,
                {millimetreText(length), model_.sections[i].text, millimetreText(depths[i])})));
      }
    }
  }

  void noteAngles() {
    BarCount count;
    eachExported([&](std::size_t i, const ModelBar& bar) {
      if (std::fabs(double{bar.angle}) > 2 * std::numbers::pi) {
        count.add(i);
      }
    });
    if (count.bars > 0) {
      const float angle = model_.bars[static_cast<std::size_t>(count.firstBar)].angle;
      notes_.push_back(note(placeOf(count, "/angle"), "large-angle",
                            say(texts::noteAngle, {decimalText(double{angle}, 2)})));
    }
  }

  void noteSamePlaces() {
    const auto places = placesOfNodes(model_.nodes);
    const auto ends = [&](const ModelBar& bar) {
      return std::minmax(places[static_cast<std::size_t>(bar.start)],
                         places[static_cast<std::size_t>(bar.end)]);
    };
    FirstOfEqual first(model_.bars.size());
    BarCount count;
    std::int32_t other = 0;
    eachExported([&](std::size_t i, const ModelBar& bar) {
      const std::pair<std::int32_t, std::int32_t> own = ends(bar);
      if (own.first == own.second) {
        return;
      }
      const std::uint64_t hash = (std::uint64_t{static_cast<std::uint32_t>(own.first)} << 32 |
                                  static_cast<std::uint32_t>(own.second)) *
                                 0x9E3779B97F4A7C15U;
      const std::int32_t same = first(static_cast<std::int32_t>(i), hash, [&](std::int32_t at) {
        return std::pair<std::int32_t, std::int32_t>(
                   ends(model_.bars[static_cast<std::size_t>(at)])) == own;
      });
      if (same != static_cast<std::int32_t>(i) && count.add(i)) {
        other = same;
      }
    });
    if (count.bars > 0) {
      notes_.push_back(
          note(placeOf(count), "same-place", say(texts::noteSamePlace, {numberText(other + 1)})));
    }
  }

  void noteSize() {
    if (model_.unitCode < 0) {
      return;  // which is a problem already
    }
    Point low;
    Point high;
    low.fill(std::numeric_limits<float>::max());
    high.fill(std::numeric_limits<float>::lowest());
    bool any = false;
    eachExported([&](std::size_t /*i*/, const ModelBar& bar) {
      any = true;
      for (const std::int32_t end : {bar.start, bar.end}) {
        for (std::size_t axis = 0; axis < low.size(); ++axis) {
          low[axis] = std::min(low[axis], node(end)[axis]);
          high[axis] = std::max(high[axis], node(end)[axis]);
        }
      }
    });
    if (!any) {
      return;
    }
    double size = 0.0;
    float farthest = 0.0F;
    for (std::size_t axis = 0; axis < low.size(); ++axis) {
      size = std::max(size, (double{high[axis]} - double{low[axis]}) * factor_);
      farthest = std::max({farthest, std::fabs(high[axis]), std::fabs(low[axis])});
    }
    const std::string_view unit = unitNames[static_cast<std::size_t>(model_.unitCode)];
    constexpr double millimetresPerMetre = 1000.0;
    constexpr double millimetresPerKilometre = 1'000'000.0;
    if (size >= shortestBar && size < smallestModel) {
      notes_.push_back(
          note({.pointer = "/unit"}, "small-model",
               say(texts::noteSmallModel, {millimetreText(size / millimetresPerMetre), unit})));
    } else if (size > largestModel) {
      notes_.push_back(
          note({.pointer = "/unit"}, "large-model",
               say(texts::noteLargeModel,
                   {decimalText(size / millimetresPerKilometre, lengthDecimals), unit})));
    }
    const double step = (double{farthest} - double{std::nextafter(farthest, 0.0F)}) * factor_;
    if (step > largestStep) {
      notes_.push_back(note(
          {.pointer = "/nodes"}, "far-from-origin",
          say(texts::noteFarAway,
              {decimalText(double{farthest} * factor_ / millimetresPerKilometre, lengthDecimals),
               millimetreText(step)})));
    }
  }

  void noteDensities() {
    for (const ModelMaterial& material : model_.materials) {
      const double density = material.density;
      if (density > 0.0 && (density < smallestDensity || density > largestDensity)) {
        notes_.push_back(note({.pointer = "/materials/" + pointerPiece(material.name) + "/density"},
                              "unusual-density",
                              say(texts::noteDensity, {material.name, millimetreText(density)})));
      }
    }
  }

  void noteUnusedSections() {
    std::vector<bool> used(model_.sections.size());
    for (const ModelBar& bar : model_.bars) {
      used[static_cast<std::size_t>(bar.section)] = true;
    }
    constexpr int mostNames = 5;
    std::int32_t unused = 0;
    std::int32_t firstUnused = -1;
    std::string names;
    for (std::size_t i = 0; i < used.size(); ++i) {
      if (used[i]) {
        continue;
      }
      firstUnused = unused == 0 ? static_cast<std::int32_t>(i) : firstUnused;
      if (++unused <= mostNames) {
        names += (names.empty() ? "\"" : ", \"") + model_.sections[i].name + "\"";
      }
    }
    if (unused > 0) {
      names += unused > mostNames ? ", ..." : "";
      notes_.push_back(
          note({.pointer = sectionPointer(model_.sections[static_cast<std::size_t>(firstUnused)]),
                .section = firstUnused},
               "unused-section", say(texts::noteUnusedSections, {numberText(unused), names})));
    }
  }

  void noteUnusedNodes() {
    std::vector<bool> used(model_.nodes.size());
    for (const ModelBar& bar : model_.bars) {
      for (const std::int32_t end : {bar.start, bar.end}) {
        if (!isNode(model_, end)) {
          return;  // the node that is meant may be one that seems unused
        }
        used[static_cast<std::size_t>(end)] = true;
      }
    }
    const auto unused = std::count(used.begin(), used.end(), false);
    if (unused > 0) {
      const auto first = std::find(used.begin(), used.end(), false) - used.begin();
      notes_.push_back(
          note({.pointer = "/nodes/" + std::to_string(first)}, "unused-node",
               say(texts::noteUnusedNodes, {numberText(unused), std::to_string(first)})));
    }
  }

  const Model& model_;
  bool visibleOnly_;
  std::vector<Problem>& notes_;
  double factor_;
  std::vector<BarCount> exported_;  // by section
};

}  // namespace

std::vector<Problem> sectionNotes(const ModelSection& section, const Problem& place) {
  std::vector<Problem> notes;
  const Family* const family = familyOf(section);
  if (family == nullptr || !checkSection(section, {}).empty()) {
    return notes;  // what is wrong already need not be unusual, too
  }
  if (family->parts.front()->writer == ProfileWriter(Outline::pc)) {
    notes.push_back(note(place, "outline-touches-itself", say(texts::noteTouches, {section.text})));
  }
  if (const std::string unread = unreadNumber(section, *family); !unread.empty()) {
    notes.push_back(
        note(place, "unread-dimension",
             say(texts::noteUnread,
                 {section.text, family->word, dimensionText(*family, lastRead(*family)), unread})));
  }
  for (const DimensionCheck& check : dimensionChecks) {
    for (const DimensionUse& use : family->dimensions) {
      std::string message = check.rule(section, *family, use);
      if (!message.empty()) {
        notes.push_back(note(place, check.code, std::move(message), use.index));
      }
    }
  }
  return notes;
}

std::vector<Problem> checkPlausibility(const Model& model, bool visibleOnly) {
  std::vector<Problem> notes;
  BarNotes(model, visibleOnly, notes).run();
  return notes;
}

std::vector<Problem> checkEverything(const Model& model, bool visibleOnly, bool withNotes) {
  std::vector<Problem> problems = checkModel(model, visibleOnly);
  if (withNotes) {
    std::vector<Problem> notes = checkPlausibility(model, visibleOnly);
    std::move(notes.begin(), notes.end(), std::back_inserter(problems));
  } else {
    std::erase_if(problems, isNote);
  }
  return problems;
}

}  // namespace exportifc
