// Standard rolled sections, by the names that people give them.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace exportifc {

enum class RolledSeries : std::uint8_t { IPE, HEA, HEB, HEM, UPN, UPE, L, W, HP, CHS, SHS, RHS };

struct RolledSeriesFacts {
  std::string_view name;        ///< "HEB"
  std::string_view familyWord;  ///< which draws it: "HE"
  std::string_view standard;    ///< where its figures stand
};

/// One size of a series. Millimetres; an angle and a hollow section have one thickness, which
/// stands in both places, and a pipe is as wide as it is deep.
struct RolledSection {
  std::string_view name;  ///< "HEB 180", "W 310x38.7", "L 75x75x8"
  RolledSeries series;
  double depth;
  double width;
  double flangeThickness;
  double webThickness;
  double mass;  ///< kg/m, as published
  double area;  ///< cm², as published, with its fillets
};

/// In the order of `RolledSeries`.
std::span<const RolledSeriesFacts> rolledSeries();
const RolledSeriesFacts& factsOf(RolledSeries series);

/// All sizes, series by series, each from its smallest on.
std::span<const RolledSection> rolledSections();
std::span<const RolledSection> rolledSections(RolledSeries series);

/// The series of that name, case and blanks apart; null when there is none.
const RolledSeriesFacts* findRolledSeries(std::string_view name);

/// The section of that name, however it is written: "HEB180", "he 180 b", "W310*38,70",
/// "L 75x8". Null when the catalogue has no such one.
const RolledSection* findRolledSection(std::string_view name);

/// All whose names begin so: "HE" and "HE 300" are of three series, "L 75" of two thicknesses.
std::vector<const RolledSection*> rolledSectionsBeginning(std::string_view name);

/// A few names that come close, nearest first; empty when none does.
std::vector<std::string> nearestRolledSections(std::string_view name);

/// The family word and its dimensions as the file holds them: "HE 180 180 14 8.5".
std::string sectionText(const RolledSection& section);

}  // namespace exportifc
