#include "library/takeoff/takeoff.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <map>

#include "library/frame/model_check.h"
#include "library/frame/section_check.h"
#include "library/sections/section_figures.h"
#include "model/length_unit.h"

namespace exportifc {

namespace {

constexpr double metresPerMillimetre = 1e-3;
constexpr double gramsPerKilogram = 1e3;
constexpr double paintPerSquareMetre = 1e3;

/// A section before its bars are counted.
SectionTakeoff started(const Model& model, std::int32_t index, const TakeoffOptions& options) {
  const ModelSection& section = model.sections[static_cast<std::size_t>(index)];
  SectionTakeoff started{.section = index};
  const Family* const family = findFamilyWord(section.text.substr(0, section.text.find(' ')));
  const SectionFigures figures =
      family == nullptr ? SectionFigures{} : figuresOf(*family, section.dims);
  started.isDrawn = figures.pieces > 0;
  started.pieces = std::max(figures.pieces, 1);
  started.area = figures.area;
  started.perimeter = figures.perimeter;
  if (options.density) {
    started.density = *options.density;
  } else if (section.material >= 0) {
    const double own = model.materials[static_cast<std::size_t>(section.material)].density;
    started.density = own > 0.0 ? own : steelDensity;
  }
  return started;
}

std::int64_t barLength(const Model& model, const ModelBar& bar) {
  const auto& start = model.nodes[static_cast<std::size_t>(bar.start)];
  const auto& end = model.nodes[static_cast<std::size_t>(bar.end)];
  const double length =
      std::hypot(double{end[0]} - double{start[0]}, double{end[1]} - double{start[1]},
                 double{end[2]} - double{start[2]});
  return std::llround(length * millimetresPer(model.unitCode));
}

Quantities quantitiesOf(const SectionTakeoff& section, std::int64_t length) {
  const double metres = static_cast<double>(length) * metresPerMillimetre;
  const double surface = section.perimeter * metresPerMillimetre * metres;
  return {.bars = 1,
          .pieces = section.pieces,
          .length = length,
          .mass = std::llround(section.massPerMetre() * metres * gramsPerKilogram),
          .paint = std::llround(surface * paintPerSquareMetre),
          .shortest = length,
          .longest = length};
}

}  // namespace

void Quantities::add(const Quantities& other) {
  shortest = bars == 0 ? other.shortest : std::min(shortest, other.shortest);
  longest = std::max(longest, other.longest);
  bars += other.bars;
  pieces += other.pieces;
  length += other.length;
  mass += other.mass;
  paint += other.paint;
}

Takeoff takeoffOf(const Model& model, const TakeoffOptions& options) {
  const std::size_t count = model.sections.size();
  std::vector<SectionTakeoff> sections(count);
  std::vector<std::map<std::int64_t, Quantities, std::greater<>>> cuts(count);
  std::vector<LayerTakeoff> layers(model.layers.size() + 1);  // the first: none
  std::vector<GroupTakeoff> groups = {
      {.group = BarGroup::storey}, {.group = BarGroup::frame}, {.group = BarGroup::truss}};
  Takeoff takeoff;
  for (std::size_t i = 0; i < model.bars.size(); ++i) {
    const ModelBar& bar = model.bars[i];
    const auto at = static_cast<std::size_t>(bar.section);
    if (!isExported(bar, options.visibleOnly) || !fitsRecord(model.sections[at])) {
      continue;
    }
    if (sections[at].sum.bars == 0) {
      sections[at] = started(model, bar.section, options);
    }
    const std::int64_t length = barLength(model, bar);
    const Quantities own = quantitiesOf(sections[at], length);
    sections[at].sum.add(own);
    cuts[at][length].add(own);
    groups[static_cast<std::size_t>(barTypeOf(bar.type).group)].sum.add(own);
    layers[static_cast<std::size_t>(model.barLayers.empty() ? 0 : model.barLayers[i] + 1)].sum.add(
        own);
    takeoff.total.add(own);
  }
  for (std::size_t i = 0; i < count; ++i) {
    if (sections[i].sum.bars > 0) {
      takeoff.sections.push_back(sections[i]);
    }
    for (const auto& [length, sum] : cuts[i]) {
      takeoff.cuts.push_back({.section = static_cast<std::int32_t>(i), .sum = sum});
    }
  }
  const auto hasBars = [](const auto& row) { return row.sum.bars > 0; };
  std::copy_if(groups.begin(), groups.end(), std::back_inserter(takeoff.groups), hasBars);
  for (std::size_t i = 0; i < layers.size() && !model.barLayers.empty(); ++i) {
    layers[i].layer = static_cast<std::int32_t>(i) - 1;
    if (hasBars(layers[i])) {
      takeoff.layers.push_back(layers[i]);
    }
  }
  return takeoff;
}

}  // namespace exportifc
