#include "library/sections/profile_drawing.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "library/sections/section_catalogue.h"
#include "library/sections/section_shape.h"
#include "tests/library/library_test.h"
#include "tests/library/polygon.h"

namespace exportifc {
namespace {

using test::Box;
using test::InLanguage;
using test::Ring;
using test::Rings;

std::vector<Family> drawnFamilies() {
  std::vector<Family> drawn;
  const auto all = families();
  std::copy_if(all.begin(), all.end(), std::back_inserter(drawn),
               [](const Family& family) { return !family.parts.empty(); });
  return drawn;
}

/// What `pattern` finds in a text, its groups as numbers.
std::vector<std::vector<double>> numbersIn(const std::string& text, const char* pattern) {
  const std::regex expression(pattern);
  std::vector<std::vector<double>> found;
  for (std::sregex_iterator at(text.begin(), text.end(), expression), end; at != end; ++at) {
    auto& row = found.emplace_back();
    for (std::size_t i = 1; i < at->size(); ++i) {
      row.push_back(std::stod((*at)[i].str()));
    }
  }
  return found;
}

struct Line {
  Point2 from;
  Point2 to;
  double length() const { return std::hypot(to.x - from.x, to.y - from.y); }
};

/// An SVG drawing taken apart; y points up again.
struct Drawing {
  explicit Drawing(const std::string& svg) : text(svg) {
    const std::size_t begin = svg.find(" d=\"M") + 4;
    std::string path = svg.substr(begin, svg.find('"', begin) - begin);
    for (std::size_t at = 0; (at = path.find('M', at)) != std::string::npos; ++at) {
      Ring& ring = rings.emplace_back();
      for (const auto& point :
           numbersIn(path.substr(at, path.find('Z', at) - at), "([-.0-9]+),([-.0-9]+)")) {
        ring.push_back({.x = point[0], .y = -point[1]});
      }
    }
    for (
        const auto& row : numbersIn(
            svg,
            R"re(class="dim" x1="([-.0-9]+)" y1="([-.0-9]+)" x2="([-.0-9]+)" y2="([-.0-9]+)")re")) {
      lines.push_back({{row[0], -row[1]}, {row[2], -row[3]}});
    }
    const auto view =
        numbersIn(svg, R"re(viewBox="([-.0-9]+) ([-.0-9]+) ([-.0-9]+) ([-.0-9]+)")re").at(0);
    box = {
        .left = view[0], .right = view[0] + view[2], .bottom = -view[1] - view[3], .top = -view[1]};
  }

  std::string text;
  Rings rings;
  std::vector<Line> lines;  // dimension lines, each followed by its two ticks
  Box box;
};

TEST(ExampleDimensions, AreToldFromEachOther) {
  for (const Family& family : drawnFamilies()) {
    const SectionDims dims = exampleDimensions(family);
    std::set<float> lengths;
    for (const DimensionUse& use : family.dimensions) {
      const float length = dims[static_cast<std::size_t>(use.index)];
      EXPECT_GT(length, 0.0F) << family.word;
      EXPECT_TRUE(lengths.insert(length).second) << family.word << " d" << use.index;
    }
    EXPECT_EQ(static_cast<std::size_t>(std::count(dims.begin(), dims.end(), 0.0F)),
              dims.size() - lengths.size())
        << family.word;
  }
}

TEST(DrawProfile, DrawsTheShapesOfAllParts) {
  for (const Family& family : drawnFamilies()) {
    const Drawing drawing(drawProfile(family));
    Rings wanted;
    for (const FamilyRow* const row : family.parts) {
      const PlacedShape shape =
          shapeOf(*row, exampleDimensions(family),
                  family.parts.size() == 1 ? simpleFlangeSide : halfFlangeSide);
      for (const Ring& ring : shape.rings) {
        Ring& placed = wanted.emplace_back();
        for (const Point2& point : ring) {
          placed.push_back(shape.placed(point));
        }
      }
    }
    ASSERT_EQ(drawing.rings.size(), wanted.size()) << family.word;
    for (std::size_t i = 0; i < wanted.size(); ++i) {
      ASSERT_EQ(drawing.rings[i].size(), wanted[i].size()) << family.word;
      for (std::size_t j = 0; j < wanted[i].size(); ++j) {
        EXPECT_NEAR(drawing.rings[i][j].x, wanted[i][j].x, 0.00501) << family.word;
        EXPECT_NEAR(drawing.rings[i][j].y, wanted[i][j].y, 0.00501) << family.word;
      }
    }
  }
}

TEST(DrawProfile, MeasuresEachDimensionOnTheDrawing) {
  for (const Family& family : drawnFamilies()) {
    const SectionDims dims = exampleDimensions(family);
    const Drawing drawing(drawProfile(family));
    ASSERT_EQ(drawing.lines.size(), 3 * family.dimensions.size()) << family.word;
    for (std::size_t i = 0; i < family.dimensions.size(); ++i) {
      const DimensionUse& use = family.dimensions[i];
      const auto length = double{dims[static_cast<std::size_t>(use.index)]};
      EXPECT_NEAR(drawing.lines[3 * i].length(), length, 0.015) << family.word << " d" << use.index;
      // Once in the drawing, once in the legend.
      const std::string name = "d" + std::to_string(use.index);
      EXPECT_NE(drawing.text.find(">" + name + "</text>"), std::string::npos) << family.word;
      EXPECT_NE(drawing.text.find(">" + name + "  " + meaningText(use.meaning) + "</text>"),
                std::string::npos)
          << family.word;
    }
  }
}

TEST(DrawProfile, TicksStandAcrossTheirLine) {
  for (const Family& family : drawnFamilies()) {
    const Drawing drawing(drawProfile(family));
    for (std::size_t i = 0; i < drawing.lines.size(); i += 3) {
      const Line& line = drawing.lines[i];
      for (const std::size_t end : {std::size_t{1}, std::size_t{2}}) {
        const Line& tick = drawing.lines[i + end];
        const Point2& at = end == 1 ? line.from : line.to;
        EXPECT_NEAR(tick.length(), 8, 0.02) << family.word;
        EXPECT_NEAR(0.5 * (tick.from.x + tick.to.x), at.x, 0.02) << family.word;
        EXPECT_NEAR(0.5 * (tick.from.y + tick.to.y), at.y, 0.02) << family.word;
        const double product = (line.to.x - line.from.x) * (tick.to.x - tick.from.x) +
                               (line.to.y - line.from.y) * (tick.to.y - tick.from.y);
        EXPECT_NEAR(product / line.length(), 0, 0.02) << family.word;
      }
    }
  }
}

TEST(DrawProfile, FitsItsPaper) {
  for (const Family& family : drawnFamilies()) {
    const Drawing drawing(drawProfile(family));
    const auto isInside = [&](const Point2& point) {
      return point.x > drawing.box.left && point.x < drawing.box.right &&
             point.y > drawing.box.bottom && point.y < drawing.box.top;
    };
    for (const Ring& ring : drawing.rings) {
      EXPECT_TRUE(std::all_of(ring.begin(), ring.end(), isInside)) << family.word;
    }
    for (
        const auto& row : numbersIn(
            drawing.text,
            R"re(<line class="[a-z]+" x1="([-.0-9]+)" y1="([-.0-9]+)" x2="([-.0-9]+)" y2="([-.0-9]+)")re")) {
      EXPECT_TRUE(isInside({row[0], -row[1]}) && isInside({row[2], -row[3]})) << family.word;
    }
    for (const auto& row : numbersIn(drawing.text, R"re(<text x="([-.0-9]+)" y="([-.0-9]+)")re")) {
      EXPECT_TRUE(isInside({row[0], -row[1]})) << family.word;
    }
  }
}

TEST(DrawProfile, WordsWithBracketsAreText) {
  const std::string drawing = drawProfile(*findFamilyWord("<>"));
  EXPECT_NE(drawing.find("<title>&lt;&gt;</title>"), std::string::npos);
  EXPECT_EQ(drawing.find("<>"), std::string::npos);
  EXPECT_NE(drawProfile(*findFamilyWord("[]")).find("<title>[]</title>"), std::string::npos);
}

TEST(DrawProfile, AWordWithAnAmpersandIsText) {
  Family family = *findFamilyWord("W");
  family.word = "W&B";
  EXPECT_NE(drawProfile(family).find("<title>W&amp;B</title>"), std::string::npos);
}

TEST(DrawProfile, ADimensionThatTheShapeDoesNotHaveIsNamedOnly) {
  const std::pair<const char*, Meaning> foreign[] = {
      {"W", Meaning::lip}, {"2L", Meaning::betweenCentres}, {"2L", Meaning::overCorners}};
  for (const auto& [word, meaning] : foreign) {
    Family family = *findFamilyWord(word);
    const std::size_t lines = Drawing(drawProfile(family)).lines.size();
    family.dimensions.push_back({.index = 9, .meaning = meaning});
    const Drawing drawing(drawProfile(family));
    EXPECT_EQ(drawing.lines.size(), lines) << word;
    EXPECT_NE(drawing.text.find(">d9  "), std::string::npos) << word;
  }
}

TEST(DrawProfile, IsTheOneOfTheDocuments) {
  for (const Family& family : drawnFamilies()) {
    const std::string path = EXPORTIFC_SOURCE_FOLDER "/docs/profiles/" + drawingName(family);
    std::ifstream file(path, std::ios::binary);
    const std::string kept{std::istreambuf_iterator<char>(file), {}};
    EXPECT_EQ(drawProfile(family), kept) << path;
  }
}

TEST(DrawProfile, SpeaksTheLanguageOfTheUser) {
  const InLanguage portuguese(Language::portuguese);
  const std::string drawing = drawProfile(*findFamilyWord("RET"));
  EXPECT_NE(drawing.find(">d0  altura</text>"), std::string::npos);
  EXPECT_NE(drawing.find("a largura é d3, ou d2, ou d1"), std::string::npos);
}

}  // namespace
}  // namespace exportifc
