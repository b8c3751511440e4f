#include "host/section_catalogue.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <unordered_map>
#include <variant>

#include "host/messages.h"
#include "host/nearest.h"
#include "profiles/section_name.h"

namespace exportifc::host {

namespace {

using enum Meaning;

/// The arguments of the parametric variants from `first` up to the next row.
struct ParametricMeanings {
  Parametric first;
  std::array<Meaning, 5> arguments;
  std::size_t count;
};

// clang-format off
constexpr ParametricMeanings parametricMeanings[] = {
    {Parametric::I1,  {depth, width, flangeThickness, webThickness}, 4},
    {Parametric::U1,  {depth, width, thickness, gap}, 4},
    {Parametric::U3,  {depth, width, thickness, overBoth}, 4},
    {Parametric::U5,  {depth, width, thickness}, 3},
    {Parametric::U6,  {depth, width, webThickness, flangeThickness}, 4},
    {Parametric::U7,  {depth, width, webThickness, flangeThickness, overBoth}, 5},
    {Parametric::U9,  {depth, width, webThickness, flangeThickness, gap}, 5},
    {Parametric::C1,  {depth, width, lip, thickness}, 4},
    {Parametric::C2,  {depth, width, lip, thickness, gap}, 5},
    {Parametric::RH,  {depth, width, thickness}, 3},
    {Parametric::L1,  {leg, thickness}, 2},
    {Parametric::L4,  {leg, thickness, gap}, 3},
    {Parametric::L6,  {leg, thickness, betweenCentres}, 3},
    {Parametric::L8,  {leg, thickness, gap}, 3},
    {Parametric::L10, {leg, thickness, overCorners}, 3},
    {Parametric::L12, {leg, thickness, gap}, 3},
    {Parametric::T1,  {leg, thickness}, 2},
    {Parametric::T2,  {depth, width, flangeThickness, webThickness}, 4},
    {Parametric::CI,  {diameter}, 1},
    {Parametric::CH,  {diameter, thickness}, 2},
    {Parametric::R,   {depth, width}, 2},
};

struct OutlineMeanings {
  Outline outline;
  std::array<Meaning, 6> arguments;
  std::size_t count;
};

constexpr OutlineMeanings outlineMeanings[] = {
    {Outline::cart,       {depth, overWebs, brim, thickness}, 4},
    {Outline::icarFirst,  {overWebs, hatHeight, brim, thickness, gap}, 5},
    {Outline::icarSecond, {overWebs, hatHeight, brim, thickness, gap}, 5},
    {Outline::z,          {depth, topFlangeWidth, bottomFlangeWidth, topLip, bottomLip, thickness}, 6},
    {Outline::zs,         {depth, flangeWidth, lip, thickness}, 4},
    {Outline::pc,         {depth, flangeWidth, flangeThickness, webThickness, overWebs}, 5},
    {Outline::psa,        {depth, topFlangeWidth, topFlangeThickness, bottomFlangeWidth, bottomFlangeThickness, webThickness}, 6},
};

struct MeaningName {
  Meaning meaning;
  const Text& text;
};

constexpr MeaningName meaningNames[] = {
    {depth, texts::meaningDepth},
    {width, texts::meaningWidth},
    {leg, texts::meaningLeg},
    {diameter, texts::meaningDiameter},
    {thickness, texts::meaningThickness},
    {webThickness, texts::meaningWebThickness},
    {flangeThickness, texts::meaningFlangeThickness},
    {topFlangeThickness, texts::meaningTopFlangeThickness},
    {bottomFlangeThickness, texts::meaningBottomFlangeThickness},
    {flangeWidth, texts::meaningFlangeWidth},
    {topFlangeWidth, texts::meaningTopFlangeWidth},
    {bottomFlangeWidth, texts::meaningBottomFlangeWidth},
    {lip, texts::meaningLip},
    {topLip, texts::meaningTopLip},
    {bottomLip, texts::meaningBottomLip},
    {brim, texts::meaningBrim},
    {overWebs, texts::meaningOverWebs},
    {hatHeight, texts::meaningHatHeight},
    {gap, texts::meaningGap},
    {overBoth, texts::meaningOverBoth},
    {overCorners, texts::meaningOverCorners},
    {betweenCentres, texts::meaningBetweenCentres},
};
// clang-format on

/// One dimension read twice, as by families with equal flanges and lips.
Meaning merged(Meaning first, Meaning second) {
  if (first == topFlangeWidth && second == bottomFlangeWidth) {
    return flangeWidth;
  }
  if (first == topLip && second == bottomLip) {
    return lip;
  }
  return first;
}

/// All words are ASCII.
std::string narrow(std::wstring_view word) {
  std::string text;
  for (const wchar_t c : word) {
    text.push_back(static_cast<char>(c));
  }
  return text;
}

void addDimensions(Family& family, const FamilyRow& row) {
  const auto meanings = argumentMeanings(row);
  for (std::size_t i = 0; i < meanings.size(); ++i) {
    const Argument argument = row.arguments[i];
    if (argument == Argument::none || argument == Argument::zero) {
      continue;
    }
    family.secondSideAnywhere |= argument == Argument::rectangleSide;
    const int index = argument == Argument::rectangleSide
                          ? 3
                          : static_cast<int>(argument) - static_cast<int>(Argument::d0);
    const auto known = std::find_if(family.dimensions.begin(), family.dimensions.end(),
                                    [&](const DimensionUse& use) { return use.index == index; });
    if (known == family.dimensions.end()) {
      family.dimensions.push_back({.index = index, .meaning = meanings[i]});
    } else {
      known->meaning = merged(known->meaning, meanings[i]);
    }
  }
  std::sort(family.dimensions.begin(), family.dimensions.end(),
            [](const DimensionUse& a, const DimensionUse& b) { return a.index < b.index; });
}

std::vector<Family> catalogue() {
  std::vector<Family> all;
  const auto known = [&](const std::string& word) {
    return std::any_of(all.begin(), all.end(), [&](const Family& f) { return f.word == word; });
  };
  const auto builtUp = builtUpFamilies();
  std::wstring first;
  std::wstring second;
  for (const FamilyRow& row : familyTable()) {
    const auto base = std::find_if(builtUp.begin(), builtUp.end(), [&](std::wstring_view word) {
      splitBuiltUpProfile(word, first, second);
      return row.family == first || row.family == second;
    });
    Family family{.word = narrow(base == builtUp.end() ? row.family : *base)};
    if (known(family.word)) {
      continue;  // the second half, or a row that never decides
    }
    if (base == builtUp.end()) {
      family.parts = {&row};
    } else {
      family.parts = {findFamily(first), findFamily(second)};
    }
    addDimensions(family, row);
    all.push_back(std::move(family));
  }
  for (const std::wstring_view word : builtUp) {
    if (!known(narrow(word))) {
      all.push_back({.word = narrow(word)});
    }
  }
  return all;
}

}  // namespace

std::span<const Meaning> argumentMeanings(const FamilyRow& row) {
  if (const auto* const variant = std::get_if<Parametric>(&row.writer)) {
    const auto next =
        std::find_if(std::begin(parametricMeanings), std::end(parametricMeanings),
                     [&](const ParametricMeanings& meanings) { return meanings.first > *variant; });
    const ParametricMeanings& found = *std::prev(next);
    return {found.arguments.data(), found.count};
  }
  const auto outline = std::get<Outline>(row.writer);
  const auto* const found =
      std::find_if(std::begin(outlineMeanings), std::end(outlineMeanings),
                   [&](const OutlineMeanings& meanings) { return meanings.outline == outline; });
  return {found->arguments.data(), found->count};
}

std::span<const Family> families() {
  static const std::vector<Family> all = catalogue();
  return all;
}

const Family* findFamilyWord(std::string_view word) {
  static const auto byWord = [] {
    std::unordered_map<std::string_view, const Family*> map;
    for (const Family& family : families()) {
      map.emplace(family.word, &family);
    }
    return map;
  }();
  const auto found = byWord.find(word);
  return found == byWord.end() ? nullptr : found->second;
}

std::string nearestFamily(std::string_view word) {
  static const auto words = [] {
    std::vector<std::string> all;
    for (const Family& family : families()) {
      all.push_back(family.word);
    }
    return all;
  }();
  return nearest(word, words);
}

std::string meaningText(Meaning meaning) {
  return say(meaningNames[static_cast<std::size_t>(meaning)].text);
}

std::string_view profileEntity(const Family& family) {
  if (family.parts.empty()) {
    return "IFCARBITRARYCLOSEDPROFILEDEF";
  }
  const auto* const variant = std::get_if<Parametric>(&family.parts.front()->writer);
  return variant == nullptr ? "IFCARBITRARYCLOSEDPROFILEDEF" : parametricRow(*variant).keyword;
}

std::string drawingName(const Family& family) {
  std::string name;
  const auto spelt = [&](std::string_view word) {
    name.append(name.empty() ? "" : "-").append(word);
  };
  for (const char c : family.word) {
    switch (c) {
      case '[': spelt("open"); break;
      case ']': spelt("close"); break;
      case '<': spelt("less"); break;
      case '>': spelt("greater"); break;
      default: name.push_back(c);
    }
  }
  return name + ".svg";
}

}  // namespace exportifc::host
