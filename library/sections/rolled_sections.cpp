#include "library/sections/rolled_sections.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <iterator>
#include <unordered_map>
#include <utility>

#include "library/text/nearest.h"

namespace exportifc {

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

/// A name taken apart: "HE 180 B" is HEB and 180, whatever stands between them.
struct NameParts {
  std::string letters;
  std::vector<std::string> numbers;  // "38.7": with a point, without zeros at the end

  std::string key() const {
    std::string text = letters;
    for (std::size_t i = 0; i < numbers.size(); ++i) {
      text += (i == 0 ? "" : "x") + numbers[i];
    }
    return text;
  }
};

/// Signs of two bytes that people write between sizes or before them.
constexpr std::string_view skippedSigns[] = {"\xC3\x97" /* × */, "\xC2\xA0" /* hard blank */,
                                             "\xC3\x98" /* Ø */, "\xC3\xB8" /* ø */};

std::size_t skippedAt(std::string_view text) {
  for (const std::string_view sign : skippedSigns) {
    if (text.starts_with(sign)) {
      return sign.size();
    }
  }
  return std::string_view(" \t-_*/").find(text[0]) == std::string_view::npos ? 0 : 1;
}

/// A number off the front: digits, and decimals behind a point or a comma.
std::string takeNumber(std::string_view& text) {
  const auto digits = [&] {
    std::size_t count = 0;
    while (count < text.size() && isDigit(text[count])) {
      ++count;
    }
    const std::string_view found = text.substr(0, count);
    text.remove_prefix(count);
    return found;
  };
  std::string number(digits());
  if (text.size() > 1 && (text[0] == '.' || text[0] == ',') && isDigit(text[1])) {
    text.remove_prefix(1);
    std::string decimals(digits());
    decimals.erase(decimals.find_last_not_of('0') + 1);
    number += decimals.empty() ? decimals : "." + decimals;
  }
  return number;
}

/// What names end in and does not tell one size from another: catalogues mark wide flanges so.
void dropEnding(std::string& name) {
  for (const std::string_view ending : {"*", "(H)", "KG/M", "MM"}) {
    name.erase(name.find_last_not_of(' ') + 1);
    if (name.ends_with(ending)) {
      name.erase(name.size() - ending.size());
    }
  }
}

struct SeriesAlias {
  std::string_view letters;
  std::string_view series;
};
constexpr SeriesAlias aliases[] = {{"IPBL", "HEA"}, {"IPB", "HEB"},  {"IPBV", "HEM"},
                                   {"UNP", "UPN"},  {"TUBO", "CHS"}, {"RO", "CHS"},
                                   {"QRO", "SHS"},  {"RRO", "RHS"}};

/// Equal sides need not be written twice, and make a rectangle a square.
void shortenEqualSides(NameParts& parts) {
  constexpr std::size_t sidesAndThickness = 3;
  if (parts.numbers.size() != sidesAndThickness) {
    return;
  }
  const bool equal = parts.numbers[0] == parts.numbers[1];
  if (parts.letters == "TUBO") {
    parts.letters = equal ? "SHS" : "RHS";
  } else if (parts.letters == "RHS" && equal) {
    parts.letters = "SHS";
  }
  if (equal && (parts.letters == "SHS" || parts.letters == "L")) {
    parts.numbers.erase(parts.numbers.begin());
  }
}

NameParts partsOf(std::string_view written) {
  std::string name(written);
  for (char& c : name) {
    c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  }
  dropEnding(name);
  NameParts parts;
  bool behindNumber = false;
  for (std::string_view rest = name; !rest.empty();) {
    const std::size_t skipped = skippedAt(rest);
    if (skipped > 0) {
      rest.remove_prefix(skipped);
    } else if (isDigit(rest[0])) {
      parts.numbers.push_back(takeNumber(rest));
      behindNumber = true;
    } else {
      if (!behindNumber || rest[0] != 'X') {
        parts.letters += rest[0];
      }
      rest.remove_prefix(1);
      behindNumber = false;
    }
  }
  shortenEqualSides(parts);
  const auto* const alias =
      std::find_if(std::begin(aliases), std::end(aliases),
                   [&](const SeriesAlias& one) { return one.letters == parts.letters; });
  if (alias != std::end(aliases)) {
    parts.letters = alias->series;
  }
  return parts;
}

using Index = std::unordered_map<std::string, const RolledSection*>;

const Index& sectionsByKey() {
  static const Index index = [] {
    Index made;
    for (const RolledSection& section : rolledSections()) {
      made.emplace(partsOf(section.name).key(), &section);
    }
    return made;
  }();
  return index;
}

constexpr std::size_t mostNames = 4;
constexpr std::size_t longestName = 60;

std::vector<std::string> namesOf(std::vector<std::pair<double, const RolledSection*>> ranked) {
  std::stable_sort(ranked.begin(), ranked.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
  std::vector<std::string> names;
  for (std::size_t i = 0; i < std::min(mostNames, ranked.size()); ++i) {
    names.emplace_back(ranked[i].second->name);
  }
  return names;
}

double valueOf(const std::string& number) {
  double value = 0.0;
  std::from_chars(number.data(), number.data() + number.size(), value);
  return value;
}

/// How far two sizes of a series lie apart; a number that one of them lacks does not count.
double distance(const NameParts& a, const NameParts& b) {
  double sum = 0.0;
  for (std::size_t i = 0; i < std::min(a.numbers.size(), b.numbers.size()); ++i) {
    sum += std::fabs(std::log(valueOf(a.numbers[i]) / valueOf(b.numbers[i])));
  }
  return sum;
}

std::vector<std::string> nearestOfSeries(NameParts wanted, RolledSeries series) {
  if (series == RolledSeries::RHS && wanted.numbers.size() > 1 &&
      valueOf(wanted.numbers[0]) < valueOf(wanted.numbers[1])) {
    std::swap(wanted.numbers[0], wanted.numbers[1]);
  }
  std::vector<std::pair<double, const RolledSection*>> ranked;
  for (const RolledSection& section : rolledSections(series)) {
    ranked.emplace_back(distance(wanted, partsOf(section.name)), &section);
  }
  return namesOf(std::move(ranked));
}

/// The names with the fewest letters changed.
std::vector<std::string> nearestByLetters(const std::string& key) {
  std::size_t least = key.size() / 3 + 1;  // more changes make another name
  std::vector<std::pair<double, const RolledSection*>> ranked;
  for (const RolledSection& section : rolledSections()) {
    const std::size_t changes = editDistance(key, partsOf(section.name).key());
    if (changes < least) {
      ranked.clear();
      least = changes;
    }
    if (changes == least && least <= key.size() / 3) {
      ranked.emplace_back(0.0, &section);
    }
  }
  return namesOf(std::move(ranked));
}

std::string numberText(double value) {
  std::array<char, 32> buffer{};
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
  return {buffer.data(), end.ptr};
}

}  // namespace

const RolledSeriesFacts* findRolledSeries(std::string_view name) {
  const NameParts parts = partsOf(name);
  const auto all = rolledSeries();
  const auto found = std::find_if(all.begin(), all.end(), [&](const RolledSeriesFacts& facts) {
    return parts.numbers.empty() && facts.name == parts.letters;
  });
  return found == all.end() ? nullptr : &*found;
}

const RolledSection* findRolledSection(std::string_view name) {
  if (name.size() > longestName) {
    return nullptr;
  }
  const auto found = sectionsByKey().find(partsOf(name).key());
  return found == sectionsByKey().end() ? nullptr : found->second;
}

std::vector<const RolledSection*> rolledSectionsBeginning(std::string_view name) {
  std::vector<const RolledSection*> sections;
  if (name.size() > longestName) {
    return sections;
  }
  const NameParts wanted = partsOf(name);
  for (const RolledSection& section : rolledSections()) {
    const NameParts parts = partsOf(section.name);
    if (parts.letters.starts_with(wanted.letters) &&
        wanted.numbers.size() <= parts.numbers.size() &&
        std::equal(wanted.numbers.begin(), wanted.numbers.end(), parts.numbers.begin())) {
      sections.push_back(&section);
    }
  }
  return sections;
}

std::vector<std::string> nearestRolledSections(std::string_view name) {
  if (name.size() > longestName) {
    return {};
  }
  const NameParts wanted = partsOf(name);
  const RolledSeriesFacts* const series = findRolledSeries(wanted.letters);
  return series != nullptr && !wanted.numbers.empty()
             ? nearestOfSeries(wanted, static_cast<RolledSeries>(series - rolledSeries().data()))
             : nearestByLetters(wanted.key());
}

std::string sectionText(const RolledSection& section) {
  const bool isChannel = section.series == RolledSeries::UPN || section.series == RolledSeries::UPE;
  double third = section.flangeThickness;
  double fourth = section.webThickness;
  if (isChannel) {
    std::swap(third, fourth);  // the families of channels read the web first
  }
  std::string text(factsOf(section.series).familyWord);
  for (const double value : {section.depth, section.width, third, fourth}) {
    text += ' ' + numberText(value);
  }
  return text;
}

}  // namespace exportifc
