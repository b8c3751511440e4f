#include "library/sections/section_catalogue.h"

#include <algorithm>
#include <span>
#include <unordered_map>
#include <variant>

#include "library/text/messages.h"
#include "library/text/nearest.h"
#include "profiles/table_order.h"

namespace exportifc {

namespace {

using enum Meaning;

struct MeaningName {
  Meaning meaning;
  const Text& text;
};

// clang-format off
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
static_assert(standsInOrder(meaningNames, &MeaningName::meaning, betweenCentres));

/// All words are ASCII.
std::string narrow(std::wstring_view word) {
  std::string text;
  for (const wchar_t c : word) {
    text.push_back(static_cast<char>(c));
  }
  return text;
}

/// The dimensions that the arguments read, each once.
void addDimensions(Family& family, std::span<const FamilyArgument> arguments) {
  for (const FamilyArgument& argument : arguments) {
    if (argument.from == Dimension::zero) {
      continue;
    }
    const bool anySide = argument.from == Dimension::rectangleSide;
    family.secondSideAnywhere |= anySide;
    const int index = static_cast<int>(anySide ? Dimension::d3 : argument.from);
    if (std::none_of(family.dimensions.begin(), family.dimensions.end(),
                     [&](const DimensionUse& use) { return use.index == index; })) {
      family.dimensions.push_back({.index = index,
                                   .from = argument.from,
                                   .meaning = argument.meaning,
                                   .mayBeZero = argument.mayBeZero});
    }
  }
  std::sort(family.dimensions.begin(), family.dimensions.end(),
            [](const DimensionUse& a, const DimensionUse& b) { return a.index < b.index; });
}

std::vector<Family> catalogue() {
  std::vector<Family> all;
  for (const SectionFamily& row : sectionFamilies()) {
    Family family{.word = narrow(row.word)};
    if (std::any_of(all.begin(), all.end(),
                    [&](const Family& f) { return f.word == family.word; })) {
      continue;  // a row that never decides
    }
    for (const FamilyRow& profile : familyTable()) {
      if (profile.family == &row) {
        family.parts.push_back(&profile);
      }
    }
    addDimensions(family, row.arguments);
    all.push_back(std::move(family));
  }
  return all;
}

}  // namespace

std::span<const Family> families() {
  static const std::vector<Family> all = catalogue();
  return all;
}

const Family* findFamilyWord(std::string_view word) {
  static const auto byWord = [] {
    std::unordered_map<std::string, const Family*> map;
    for (const Family& family : families()) {
      map.emplace(family.word, &family);
      for (const FamilyRow* const part : family.parts) {
        map.emplace(narrow(part->name), &family);
      }
    }
    return map;
  }();
  const auto found = byWord.find(std::string(word));
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

bool measuresWhole(Meaning meaning) {
  switch (meaning) {
    case depth:
    case width:
    case leg:
    case diameter:
    case flangeWidth:
    case topFlangeWidth:
    case bottomFlangeWidth:
    case overWebs:
    case hatHeight:
    case overBoth:
    case overCorners:
    case betweenCentres: return true;
    default: return false;
  }
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

}  // namespace exportifc
