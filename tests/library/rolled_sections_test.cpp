#include "library/sections/rolled_sections.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <ostream>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "library/frame/section_check.h"
#include "library/sections/section_catalogue.h"
#include "library/sections/section_shape.h"
#include "model/batch_source.h"
#include "tests/library/library_test.h"
#include "tests/library/polygon.h"

namespace exportifc {
namespace {

constexpr double steel = 7850.0;  // kg/m³

std::string found(std::string_view name) {
  const RolledSection* const section = findRolledSection(name);
  return section == nullptr ? "nothing" : std::string(section->name);
}

using Names = std::vector<std::string>;

// ---- figures

/// What the drawn shape may weigh of the published mass: fillets are left out, and the corners of
/// hollow sections are sharp. Masses in names of W and HP are rounded by their catalogues.
struct Tolerance {
  RolledSeries series;
  double least, most;      // drawn area × density / mass
  double publishedWithin;  // published area × density against the mass
};

constexpr Tolerance tolerances[] = {
    {RolledSeries::IPE, 0.950, 0.975, 0.008}, {RolledSeries::HEA, 0.940, 0.980, 0.004},
    {RolledSeries::HEB, 0.954, 0.982, 0.004}, {RolledSeries::HEM, 0.976, 0.986, 0.004},
    {RolledSeries::UPN, 0.988, 1.006, 0.005}, {RolledSeries::UPE, 0.957, 0.985, 0.005},
    {RolledSeries::L, 0.985, 0.999, 0.005},   {RolledSeries::W, 0.950, 1.003, 0.031},
    {RolledSeries::HP, 0.971, 0.998, 0.010},  {RolledSeries::CHS, 0.990, 1.005, 0.007},
    {RolledSeries::SHS, 1.003, 1.046, 0.006}, {RolledSeries::RHS, 1.003, 1.046, 0.006},
};

double drawnArea(const RolledSection& section) {
  const std::string text = sectionText(section);
  const Family* const family = findFamilyWord(text.substr(0, text.find(' ')));
  if (family == nullptr || family->parts.size() != 1) {
    ADD_FAILURE() << text;
    return 0.0;
  }
  const PlacedShape shape =
      shapeOf(*family->parts.front(), parseSectionDims(text), simpleFlangeSide);
  return test::momentsOf(shape.rings).area;
}

class RolledFigures : public testing::TestWithParam<Tolerance> {};

TEST_P(RolledFigures, DrawWhatIsPublished) {
  const Tolerance& tolerance = GetParam();
  constexpr double squareMillimetres = 1e-6;  // in square metres
  constexpr double squareCentimetres = 1e-4;
  for (const RolledSection& section : rolledSections(tolerance.series)) {
    const double drawn = drawnArea(section) * squareMillimetres * steel / section.mass;
    EXPECT_GE(drawn, tolerance.least) << section.name;
    EXPECT_LE(drawn, tolerance.most) << section.name;
    EXPECT_NEAR(section.area * squareCentimetres * steel / section.mass, 1.0,
                tolerance.publishedWithin)
        << section.name;
  }
}

/// The first number of the name, by which a series is ordered; then the others, or the mass.
std::vector<double> orderOf(const RolledSection& section) {
  std::vector<double> numbers;
  std::string digits(section.name.substr(section.name.find(' ') + 1));
  std::replace(digits.begin(), digits.end(), 'x', ' ');
  for (std::size_t at = 0; at < digits.size();) {
    std::size_t read = 0;
    numbers.push_back(std::stod(digits.substr(at), &read));
    at += read;
  }
  return numbers;
}

TEST_P(RolledFigures, GrowWithTheName) {
  const auto sections = rolledSections(GetParam().series);
  ASSERT_GE(sections.size(), 12U);
  for (std::size_t i = 1; i < sections.size(); ++i) {
    const RolledSection& smaller = sections[i - 1];
    const RolledSection& larger = sections[i];
    const std::vector<double> a = orderOf(smaller);
    const std::vector<double> b = orderOf(larger);
    EXPECT_LT(a, b) << larger.name;
    const bool sameSides = std::equal(a.begin(), a.end() - 1, b.begin(), b.end() - 1);
    if (sameSides) {
      EXPECT_LT(smaller.mass, larger.mass) << larger.name;
      EXPECT_LE(smaller.area, larger.area) << larger.name;
    }
    if (a.size() == 1) {
      EXPECT_LT(smaller.depth, larger.depth) << larger.name;
      EXPECT_LE(smaller.flangeThickness, larger.flangeThickness + 1.5) << larger.name;
    }
  }
}

TEST_P(RolledFigures, AreSoundSections) {
  for (const RolledSection& section : rolledSections(GetParam().series)) {
    const std::string text = sectionText(section);
    EXPECT_LE(text.size(), 47U) << text;
    EXPECT_TRUE(std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; }))
        << text;
    EXPECT_EQ(test::briefs(checkSection(test::sectionOf(text), {})), Names()) << text;
    EXPECT_EQ(section.series, GetParam().series);
    EXPECT_TRUE(section.name.starts_with(factsOf(section.series).name)) << section.name;
  }
}

INSTANTIATE_TEST_SUITE_P(Series, RolledFigures, testing::ValuesIn(tolerances),
                         [](const testing::TestParamInfo<Tolerance>& info) {
                           return std::string(factsOf(info.param.series).name);
                         });

TEST(RolledSections, AreAllInTheirSeries) {
  std::size_t count = 0;
  for (std::size_t i = 0; i < rolledSeries().size(); ++i) {
    EXPECT_EQ(rolledSeries()[i].name, tolerances[i].series == static_cast<RolledSeries>(i)
                                          ? factsOf(tolerances[i].series).name
                                          : "out of order");
    count += rolledSections(static_cast<RolledSeries>(i)).size();
  }
  EXPECT_EQ(count, rolledSections().size());
}

/// From printed tables, figure by figure: what other checks cannot see is a row in another's place.
TEST(RolledSections, HaveTheFiguresOfTheStandards) {
  const auto row = [](std::string_view name) {
    const RolledSection* const s = findRolledSection(name);
    return s == nullptr ? std::vector<double>()
                        : std::vector<double>{s->depth,        s->width, s->flangeThickness,
                                              s->webThickness, s->mass,  s->area};
  };
  using Row = std::vector<double>;
  EXPECT_EQ(row("IPE 300"), (Row{300, 150, 10.7, 7.1, 42.2, 53.8}));
  EXPECT_EQ(row("HEA 200"), (Row{190, 200, 10, 6.5, 42.3, 53.8}));
  EXPECT_EQ(row("HEB 180"), (Row{180, 180, 14, 8.5, 51.2, 65.3}));
  EXPECT_EQ(row("HEM 300"), (Row{340, 310, 39, 21, 238, 303.1}));
  EXPECT_EQ(row("UPN 200"), (Row{200, 75, 11.5, 8.5, 25.3, 32.2}));
  EXPECT_EQ(row("UPE 200"), (Row{200, 80, 11, 6, 22.8, 29}));
  EXPECT_EQ(row("L 75x75x8"), (Row{75, 75, 8, 8, 8.99, 11.4}));
  EXPECT_EQ(row("W 310x38.7"), (Row{310, 165, 9.7, 5.8, 38.7, 49.7}));
  EXPECT_EQ(row("W 360x509"), (Row{445, 417, 62.7, 39.1, 509, 652}));
  EXPECT_EQ(row("HP 310x79"), (Row{299, 306, 11, 11, 79, 100}));
  EXPECT_EQ(row("CHS 114.3x4"), (Row{114.3, 114.3, 4, 4, 10.9, 13.9}));
  EXPECT_EQ(row("SHS 100x100x5"), (Row{100, 100, 5, 5, 14.7, 18.7}));
  EXPECT_EQ(row("RHS 150x100x6.3"), (Row{150, 100, 6.3, 6.3, 23.1, 29.5}));
}

TEST(RolledSections, HaveTheTextOfTheirFamily) {
  const auto text = [](std::string_view name) { return sectionText(*findRolledSection(name)); };
  EXPECT_EQ(text("HEB 180"), "HE 180 180 14 8.5");
  EXPECT_EQ(text("IPE 80"), "IPE 80 46 5.2 3.8");
  EXPECT_EQ(text("UPN 200"), "ULAM 200 75 8.5 11.5");
  EXPECT_EQ(text("UPE 200"), "UAP 200 80 6 11");
  EXPECT_EQ(text("L 45x45x4.5"), "LLAM 45 45 4.5 4.5");
  EXPECT_EQ(text("W 310x38.7"), "W 310 165 9.7 5.8");
  EXPECT_EQ(text("HP 250x85"), "HP 254 260 14.4 14.4");
  EXPECT_EQ(text("CHS 114.3x4"), "TUBO 114.3 114.3 4 4");
  EXPECT_EQ(text("RHS 150x100x6"), "BOX 150 100 6 6");
}

// ---- names

TEST(FindRolledSection, KnowsEachByItsOwnName) {
  std::set<const RolledSection*> all;
  for (const RolledSection& section : rolledSections()) {
    EXPECT_EQ(found(section.name), section.name);
    all.insert(findRolledSection(section.name));
  }
  EXPECT_EQ(all.size(), rolledSections().size());
}

TEST(FindRolledSection, TakesNamesAsPeopleWriteThem) {
  const std::map<std::string, Names> written = {
      {"HEB 180", {"HEB180", "heb 180", "HE 180 B", "he180b", "HE-B 180", " HEB  180 ", "IPB 180"}},
      {"HEA 200", {"HE 200 A", "HE A 200", "IPBl 200", "hea_200"}},
      {"HEM 100", {"HE100M", "IPBv 100"}},
      {"IPE 300", {"IPE300", "ipe-300", "IPE 300 mm", "IPE 300.0"}},
      {"W 310x38.7",
       {"W 310x38,7", "W310 X 38.7", "W310*38.7", "W 310 × 38,70", "w310x38.7", "W 310 38.7",
        "W 310 x 38,7 kg/m", "W-310-38.7"}},
      {"W 150x13", {"W 150x13.0", "W 150 x 13,0", "W150X13"}},
      {"W 200x35.9", {"W 200 x 35,9 (H)"}},
      {"W 200x100", {"W 200 x 100,0 (H)*"}},
      {"HP 310x79", {"HP 310 x 79,0 (H)", "HP310X79"}},
      {"UPN 200", {"UPN-200", "upn200", "UNP 200"}},
      {"L 75x75x8", {"L75x8", "L 75x75x8.0", "l 75 75 8", "L75X75X8", "L 75/75/8", "L 75*8"}},
      {"CHS 114.3x4", {"CHS114.3/4.0", "TUBO 114,3x4", "tubo Ø114.3 x 4,0", "RO 114.3x4"}},
      {"SHS 100x100x5",
       {"SHS 100x5", "SHS100/100/5.0", "RHS 100x100x5", "TUBO 100x100x5", "QRO100x5"}},
      {"RHS 150x100x6", {"RHS150x100x6,0", "TUBO 150 x 100 x 6", "RRO 150x100x6"}},
  };
  for (const auto& [name, ways] : written) {
    for (const std::string& way : ways) {
      EXPECT_EQ(found(way), name) << way;
    }
  }
}

TEST(FindRolledSection, TakesNothingElse) {
  for (const char* const name : {"",
                                 " ",
                                 "HEB",
                                 "180",
                                 "HE 180",
                                 "HEB 185",
                                 "IPE 300 A",
                                 "L 100x50x8",
                                 "RHS 100x150x6",
                                 "W 12x26",
                                 "2L 75x75x8",
                                 "HEB 180 200",
                                 "W 310x38.7.1",
                                 "W 310x38.7x5",
                                 "RHS 100x5",
                                 "L 75",
                                 "IPE 300\"",
                                 "\xFF",
                                 "x",
                                 "HEB 18 0"}) {
    EXPECT_EQ(found(name), "nothing") << name;
  }
  EXPECT_EQ(found("HEB 180" + std::string(1000, ' ')), "nothing");
}

TEST(FindRolledSeries, ByItsName) {
  EXPECT_EQ(findRolledSeries("heb")->name, "HEB");
  EXPECT_EQ(findRolledSeries("HE B")->name, "HEB");
  EXPECT_EQ(findRolledSeries("tubo")->name, "CHS");
  EXPECT_EQ(findRolledSeries("HEB 180"), nullptr);
  EXPECT_EQ(findRolledSeries("HE"), nullptr);
  EXPECT_EQ(findRolledSeries(""), nullptr);
}

Names beginning(std::string_view name) {
  Names names;
  for (const RolledSection* const section : rolledSectionsBeginning(name)) {
    names.emplace_back(section->name);
  }
  return names;
}

TEST(RolledSectionsBeginning, WithLettersAndNumbers) {
  EXPECT_EQ(beginning("HE 300"), (Names{"HEA 300", "HEB 300", "HEM 300"}));
  EXPECT_EQ(beginning("l75"), (Names{"L 75x75x6", "L 75x75x8"}));
  EXPECT_EQ(beginning("SHS 90x90x8"), (Names{"SHS 90x90x8"}));
  EXPECT_EQ(beginning("W 130"), (Names{"W 130x23.8", "W 130x28.1"}));
  EXPECT_EQ(beginning("UP").size(), 30U);
  EXPECT_EQ(beginning("").size(), rolledSections().size());
  EXPECT_EQ(beginning("IPN"), Names());
  EXPECT_EQ(beginning("HEB 18"), Names());
  EXPECT_EQ(beginning("HEB 180 5"), Names());
  EXPECT_EQ(beginning(std::string(1000, 'W')), Names());
}

TEST(NearestRolledSections, AreOfTheSameSeriesFirst) {
  EXPECT_EQ(nearestRolledSections("HEB 185"), (Names{"HEB 180", "HEB 200", "HEB 160", "HEB 220"}));
  EXPECT_EQ(nearestRolledSections("W 310x39").front(), "W 310x38.7");
  EXPECT_EQ(nearestRolledSections("W 305x38").front(), "W 310x38.7");
  EXPECT_EQ(nearestRolledSections("L 100x50x8").size(), 4U);
  EXPECT_EQ(nearestRolledSections("RHS 100x150x6").front(), "RHS 150x100x6");
  EXPECT_EQ(nearestRolledSections("TUBO 114x4").front(), "CHS 114.3x4");
}

TEST(NearestRolledSections, MayMissALetter) {
  EXPECT_EQ(nearestRolledSections("HE 180"), (Names{"HEA 180", "HEB 180", "HEM 180"}));
  EXPECT_EQ(nearestRolledSections("HBE 180"), (Names{"HEB 180"}));
  EXPECT_EQ(nearestRolledSections("IPF300"), (Names{"IPE 300"}));
  EXPECT_EQ(nearestRolledSections("column of the gate"), Names());
  EXPECT_EQ(nearestRolledSections(""), Names());
  EXPECT_EQ(nearestRolledSections("W 0x0").size(), 4U);
  EXPECT_EQ(nearestRolledSections(std::string(100000, 'W')), Names());
}

}  // namespace
}  // namespace exportifc
