#include "library/sections/section_shape.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <numbers>
#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "library/sections/section_catalogue.h"
#include "tests/library/polygon.h"

namespace exportifc {
namespace {

using test::Moments;
using test::momentsOf;
using test::Ring;
using test::Rings;

// ---- what each family looks like, put together from plates

struct Plate {
  double left, bottom, right, top;
};
using Plates = std::vector<Plate>;

/// A plate by its size and its middle.
Plate plate(double width, double height, double x = 0, double y = 0) {
  return {.left = x - width / 2,
          .bottom = y - height / 2,
          .right = x + width / 2,
          .top = y + height / 2};
}

// All are centred on their bounding box. h: height over all, b: width over all, tw: web, tf:
// flange, t: any wall.

Plates unequalI(double h, double bTop, double tTop, double bBottom, double tBottom, double tw) {
  return {plate(bTop, tTop, 0, (h - tTop) / 2),
          plate(bBottom, tBottom, 0, (tBottom - h) / 2),
          {.left = -tw / 2, .bottom = tBottom - h / 2, .right = tw / 2, .top = h / 2 - tTop}};
}

Plates iShape(double h, double b, double tf, double tw) { return unequalI(h, b, tf, b, tf, tw); }

/// The web at the left.
Plates channel(double h, double b, double tw, double tf) {
  return {plate(b, tf, 0, (h - tf) / 2), plate(b, tf, 0, (tf - h) / 2),
          plate(tw, h - 2 * tf, (tw - b) / 2)};
}

Plates lippedChannel(double h, double b, double lip, double t) {
  Plates plates = channel(h, b, t, t);
  plates.push_back(plate(t, lip - t, (b - t) / 2, (h - lip - t) / 2));
  plates.push_back(plate(t, lip - t, (b - t) / 2, (lip + t - h) / 2));
  return plates;
}

/// The corner at the lower left.
Plates angle(double leg, double t) {
  return {plate(t, leg, (t - leg) / 2), plate(leg - t, t, t / 2, (t - leg) / 2)};
}

/// The flange above.
Plates tee(double h, double b, double tf, double tw) {
  return {plate(b, tf, 0, (h - tf) / 2), plate(tw, h - tf, 0, -tf / 2)};
}

Plates rectangle(double b, double h) { return {plate(b, h)}; }

Plates hollowRectangle(double b, double h, double t) {
  return {plate(b, t, 0, (h - t) / 2), plate(b, t, 0, (t - h) / 2),
          plate(t, h - 2 * t, (t - b) / 2), plate(t, h - 2 * t, (b - t) / 2)};
}

/// The crown above; `over`: over the two webs.
Plates hat(double h, double over, double brim, double t) {
  const double web = (over - t) / 2;
  return {plate(over, t, 0, (h - t) / 2), plate(t, h - 2 * t, web), plate(t, h - 2 * t, -web),
          plate(brim, t, over / 2 - t + brim / 2, (t - h) / 2),
          plate(brim, t, t - over / 2 - brim / 2, (t - h) / 2)};
}

/// The bottom flange at the left with its lip standing, the top one at the right with its lip
/// hanging.
Plates lippedZ(double h, double top, double bottom, double topLip, double bottomLip, double t) {
  const double left = -(top + bottom - t) / 2;
  const double web = left + bottom - t;
  return {{.left = web, .bottom = t - h / 2, .right = web + t, .top = h / 2 - t},
          {.left = left, .bottom = -h / 2, .right = web + t, .top = t - h / 2},
          {.left = web, .bottom = h / 2 - t, .right = -left, .top = h / 2},
          {.left = -left - t, .bottom = h / 2 - topLip, .right = -left, .top = h / 2 - t},
          {.left = left, .bottom = t - h / 2, .right = left + t, .top = bottomLip - h / 2}};
}

Plates twoWebBox(double h, double b, double tf, double tw, double over) {
  return {plate(b, tf, 0, (h - tf) / 2), plate(b, tf, 0, (tf - h) / 2),
          plate(tw, h - 2 * tf, (over - tw) / 2), plate(tw, h - 2 * tf, (tw - over) / 2)};
}

/// Plates turned about the middle of their box, counter-clockwise in degrees, then moved.
struct Half {
  Plates plates;
  double turn = 0;
  double x = 0;
  double y = 0;
};

Half at(double turn, double x, double y, Plates plates) {
  return {.plates = std::move(plates), .turn = turn, .x = x, .y = y};
}

Rings ringsOf(const Half& half) {
  const double cosine = std::cos(half.turn * std::numbers::pi / 180);
  const double sine = std::sin(half.turn * std::numbers::pi / 180);
  Rings rings;
  for (const Plate& plate : half.plates) {
    Ring& ring = rings.emplace_back();
    for (const Point2& corner :
         {Point2{plate.left, plate.bottom}, Point2{plate.right, plate.bottom},
          Point2{plate.right, plate.top}, Point2{plate.left, plate.top}}) {
      ring.push_back({.x = half.x + corner.x * cosine - corner.y * sine,
                      .y = half.y + corner.x * sine + corner.y * cosine});
    }
  }
  return rings;
}

/// Two channels with their webs `gap` apart, open to the outside.
std::vector<Half> backToBack(double b, double gap, const Plates& shape) {
  return {at(180, -(gap + b) / 2, 0, shape), at(0, (gap + b) / 2, 0, shape)};
}

/// Two channels open to each other, `over` wide together.
std::vector<Half> faceToFace(double b, double over, const Plates& shape) {
  return {at(0, (b - over) / 2, 0, shape), at(180, (over - b) / 2, 0, shape)};
}

struct Expected {
  std::string word;
  SectionDims dims;
  double area;  ///< of one half
  std::vector<Half> halves;
};

void PrintTo(const Expected& row, std::ostream* stream) { *stream << row.word; }

double diagonalOf(double leg) { return leg * std::numbers::sqrt2 / 2; }

double angleArea(double leg, double t) { return t * (2 * leg - t); }
double channelArea(double h, double b, double tw, double tf) {
  return 2 * b * tf + (h - 2 * tf) * tw;
}
double lippedArea(double h, double b, double lip, double t) {
  return t * (h + 2 * b + 2 * lip - 4 * t);
}
double zArea(double h, double top, double bottom, double topLip, double bottomLip, double t) {
  return t * (h + top + bottom + topLip + bottomLip - 4 * t);
}

std::vector<Expected> expectedSections() {
  std::vector<Expected> rows;
  const auto simple = [&](const std::string& word, const SectionDims& dims, double area,
                          Half half) {
    rows.push_back({word, dims, area, {std::move(half)}});
  };
  const auto builtUp = [&](const std::string& word, const SectionDims& dims, double area,
                           std::vector<Half> halves) {
    rows.push_back({word, dims, area, std::move(halves)});
  };

  for (const char* const word :
       {"ILAM", "CS", "W", "HP", "PS", "VS", "VSE", "CSE", "CVS", "HE", "IPE"}) {
    simple(word, {200, 100, 12, 7}, 2 * 100 * 12 + 176 * 7, at(0, 0, 0, iShape(200, 100, 12, 7)));
  }
  for (const char* const word : {"TW", "TS", "WT"}) {
    simple(word, {150, 120, 9, 6}, 120 * 9 + 141 * 6, at(180, 0, 0, tee(150, 120, 9, 6)));
  }
  simple("TEE", {60, 0, 0, 7}, 60 * 7 + 53 * 7, at(270, 0, 0, tee(60, 60, 7, 7)));

  // The corner points down, to the right, or to the lower right.
  for (const char* const word : {"L", "LLM"}) {
    simple(word, {60, 0, 0, 5}, angleArea(60, 5), at(45, 0, 0, angle(60, 5)));
  }
  simple("LLM_EN", {60, 0, 0, 5}, angleArea(60, 5), at(135, 0, 0, angle(60, 5)));
  for (const char* const word : {"LFF", "LLAM", "LLAM_EN"}) {
    simple(word, {60, 0, 0, 5}, angleArea(60, 5), at(90, 0, 0, angle(60, 5)));
  }

  const SectionDims pair = {50, 0, 0, 5, 12};
  const Plates leg = angle(50, 5);
  for (const char* const word : {"2L", "2LLM"}) {
    builtUp(word, pair, angleArea(50, 5), backToBack(50, 12, leg));
  }
  for (const char* const word : {"LL", "LLLM"}) {
    builtUp(word, {50, 0, 0, 5, 80}, angleArea(50, 5), {at(180, 40, 0, leg), at(270, -40, 0, leg)});
  }
  const double reach = 6 + diagonalOf(50);
  for (const char* const word : {"><", "VVLM"}) {
    builtUp(word, pair, angleArea(50, 5), {at(45, reach, 0, leg), at(225, -reach, 0, leg)});
  }
  const double inside = 70 - diagonalOf(50);
  for (const char* const word : {"<>", "LVLM"}) {
    builtUp(word, {50, 0, 0, 5, 140}, angleArea(50, 5),
            {at(225, inside, 0, leg), at(45, -inside, 0, leg)});
  }
  for (const char* const word : {"LX", "LXLM"}) {
    builtUp(word, pair, angleArea(50, 5), {at(0, 31, 31, leg), at(180, -31, -31, leg)});
  }
  for (const char* const word : {"LZ", "LZLM"}) {
    builtUp(word, pair, angleArea(50, 5), {at(270, 31, 31, leg), at(90, -31, -31, leg)});
  }

  // A single folded channel has the back of its web on the bar's axis; a rolled one is centred.
  simple("[", {200, 75, 0, 6}, channelArea(200, 75, 6, 6),
         at(180, -37.5, 0, channel(200, 75, 6, 6)));
  simple("UENR", {150, 60, 20, 3}, lippedArea(150, 60, 20, 3),
         at(180, -30, 0, lippedChannel(150, 60, 20, 3)));
  for (const char* const word : {"ULAM", "UAP"}) {
    simple(word, {203, 57, 6, 10}, channelArea(203, 57, 6, 10),
           at(180, 0, 0, channel(203, 57, 6, 10)));
  }
  builtUp("][", {180, 70, 5, 9}, channelArea(180, 70, 5, 5),
          backToBack(70, 9, channel(180, 70, 5, 5)));
  builtUp("[]", {160, 55, 0, 4, 125}, channelArea(160, 55, 4, 4),
          faceToFace(55, 125, channel(160, 55, 4, 4)));
  builtUp("2ULM", {203, 57, 6, 10, 8}, channelArea(203, 57, 6, 10),
          backToBack(57, 8, channel(203, 57, 6, 10)));
  builtUp("UULM", {152, 49, 5, 9, 120}, channelArea(152, 49, 5, 9),
          faceToFace(49, 120, channel(152, 49, 5, 9)));
  builtUp("UUE", {150, 60, 20, 3, 7}, lippedArea(150, 60, 20, 3),
          faceToFace(60, 127, lippedChannel(150, 60, 20, 3)));
  builtUp("IENR", {200, 75, 25, 4, 6}, lippedArea(200, 75, 25, 4),
          backToBack(75, 6, lippedChannel(200, 75, 25, 4)));
  // Lip to lip, whatever the fifth number says.
  builtUp("CA", {140, 50, 18, 3, 33}, lippedArea(140, 50, 18, 3),
          faceToFace(50, 100, lippedChannel(140, 50, 18, 3)));

  simple("BOX", {150, 90, 0, 5}, 2 * 5 * (150 + 90 - 10), at(0, 0, 0, hollowRectangle(90, 150, 5)));
  simple("EC", {80, 0, 0, 12}, 80 * 12, at(0, 0, 0, rectangle(12, 80)));
  // The width is the last of three that is there.
  simple("RET", {90, 40, 20, 15}, 90 * 15, at(0, 0, 0, rectangle(15, 90)));
  simple("RET", {90, 40, 20, 0.0005F}, 90 * 20, at(0, 0, 0, rectangle(20, 90)));
  simple("RET", {90, 40}, 90 * 40, at(0, 0, 0, rectangle(40, 90)));
  simple("PC", {400, 250, 12, 8, 180}, 2 * 250 * 12 + 2 * 8 * 376,
         at(0, 0, 0, twoWebBox(400, 250, 12, 8, 180)));
  simple("PSA", {350, 200, 12, 140, 9, 7}, 200 * 12 + 140 * 9 + 329 * 7,
         at(0, 0, 0, unequalI(350, 200, 12, 140, 9, 7)));
  // The outer face of the crown lies on the bar's axis; those of two face each other.
  simple("CART", {120, 80, 25, 3}, 3 * (80 + 50 + 2 * 114), at(0, 0, -60, hat(120, 80, 25, 3)));
  builtUp("ICAR", {130, 60, 20, 3, 11}, 3 * (130 + 40 + 2 * 54),
          {at(90, 35.5, 0, hat(60, 130, 20, 3)), at(270, -35.5, 0, hat(60, 130, 20, 3))});
  for (const char* const word : {"Z", "ZI"}) {
    simple(word, {200, 70, 60, 25, 20, 4, 99}, zArea(200, 70, 60, 25, 20, 4),
           at(0, 0, 0, lippedZ(200, 70, 60, 25, 20, 4)));
  }
  for (const char* const word : {"ZS", "ZSI"}) {
    simple(word, {150, 50, 17, 3}, zArea(150, 50, 50, 17, 17, 3),
           at(0, 0, 0, lippedZ(150, 50, 50, 17, 17, 3)));
  }
  return rows;
}

// ---- what the library draws

Rings drawn(const FamilyRow& row, const SectionDims& dims, int flangeSide) {
  const PlacedShape shape = shapeOf(row, dims, flangeSide);
  Rings rings = shape.rings;
  for (Ring& ring : rings) {
    for (Point2& point : ring) {
      point = shape.placed(point);
    }
  }
  return rings;
}

int flangeSideOf(const Family& family) {
  return family.parts.size() == 1 ? simpleFlangeSide : halfFlangeSide;
}

class SectionShapes : public testing::TestWithParam<Expected> {};

TEST_P(SectionShapes, AreThoseOfTheirPlates) {
  const Family* const family = findFamilyWord(GetParam().word);
  ASSERT_NE(family, nullptr);
  ASSERT_EQ(family->parts.size(), GetParam().halves.size());
  for (std::size_t i = 0; i < family->parts.size(); ++i) {
    const Rings rings = drawn(*family->parts[i], GetParam().dims, flangeSideOf(*family));
    const Rings plates = ringsOf(GetParam().halves[i]);
    const Moments found = momentsOf(rings);
    const Moments wanted = momentsOf(plates);
    constexpr double near = 1e-9;
    EXPECT_NEAR(wanted.area, GetParam().area, near * wanted.area) << "the plates themselves";
    EXPECT_NEAR(found.area, GetParam().area, near * wanted.area);
    const double size = std::sqrt(wanted.xx + wanted.yy);
    EXPECT_NEAR(found.x, wanted.x, near * size) << "half " << i;
    EXPECT_NEAR(found.y, wanted.y, near * size) << "half " << i;
    EXPECT_NEAR(found.xx, wanted.xx, near * size * size) << "half " << i;
    EXPECT_NEAR(found.yy, wanted.yy, near * size * size) << "half " << i;
    EXPECT_NEAR(found.xy, wanted.xy, near * size * size) << "half " << i;
    const test::Box box = test::boxOf(rings);
    const test::Box box2 = test::boxOf(plates);
    EXPECT_NEAR(box.left, box2.left, near * size);
    EXPECT_NEAR(box.right, box2.right, near * size);
    EXPECT_NEAR(box.bottom, box2.bottom, near * size);
    EXPECT_NEAR(box.top, box2.top, near * size);
  }
}

INSTANTIATE_TEST_SUITE_P(OfEachFamily, SectionShapes, testing::ValuesIn(expectedSections()));

TEST(SectionShape, EveryFamilyIsExpectedHereOrRound) {
  const auto rows = expectedSections();
  for (const Family& family : families()) {
    const bool isRound = family.word == "RED" || family.word == "FRED" || family.word == "TUBO";
    const bool isExpected = std::any_of(
        rows.begin(), rows.end(), [&](const Expected& row) { return row.word == family.word; });
    EXPECT_EQ(isExpected, !isRound && !family.parts.empty()) << family.word;
  }
}

/// Of a circle the drawing has a polygon of 72 corners.
double polygonArea(double radius) {
  return 36 * radius * radius * std::sin(2 * std::numbers::pi / 72);
}

TEST(SectionShape, RoundOnesAreNearlyRound) {
  for (const std::string word : {"RED", "FRED"}) {
    const Rings rings = drawn(*findFamilyWord(word)->parts[0], {25}, simpleFlangeSide);
    ASSERT_EQ(rings.size(), 1U);
    const Moments found = momentsOf(rings);
    EXPECT_NEAR(found.area, polygonArea(12.5), 1e-9);
    EXPECT_NEAR(found.area, std::numbers::pi * 12.5 * 12.5, 0.002 * found.area);
    EXPECT_NEAR(found.x, 0, 1e-9);
    EXPECT_NEAR(found.y, 0, 1e-9);
    for (const Point2& point : rings[0]) {
      EXPECT_NEAR(std::hypot(point.x, point.y), 12.5, 1e-9);
    }
  }
  const Rings tube = drawn(*findFamilyWord("TUBO")->parts[0], {42, 0, 0, 4}, simpleFlangeSide);
  ASSERT_EQ(tube.size(), 2U);
  EXPECT_NEAR(momentsOf({tube[0]}).area, polygonArea(21), 1e-9);
  EXPECT_NEAR(momentsOf({tube[1]}).area, polygonArea(17), 1e-9);
}

TEST(SectionShape, HolesLieInside) {
  for (const char* const word : {"BOX", "TUBO"}) {
    const Rings rings = drawn(*findFamilyWord(word)->parts[0], {150, 90, 0, 5}, simpleFlangeSide);
    ASSERT_EQ(rings.size(), 2U) << word;
    const test::Box outer = test::boxOf({rings[0]});
    const test::Box inner = test::boxOf({rings[1]});
    EXPECT_NEAR(inner.left - outer.left, 5, 1e-9) << word;
    EXPECT_NEAR(outer.right - inner.right, 5, 1e-9) << word;
    EXPECT_NEAR(inner.bottom - outer.bottom, 5, 1e-9) << word;
    EXPECT_NEAR(outer.top - inner.top, 5, 1e-9) << word;
  }
}

TEST(SectionShape, OutlinesAreClosed) {
  const SectionDims dims = {200, 90, 27, 9, 22, 4, 3};
  for (const Family& family : families()) {
    for (const FamilyRow* const row : family.parts) {
      for (const Ring& ring : shapeOf(*row, dims, flangeSideOf(family)).rings) {
        ASSERT_GE(ring.size(), 4U) << family.word;
        if (std::holds_alternative<Outline>(row->writer)) {
          EXPECT_EQ(ring.front().x, ring.back().x) << family.word;
          EXPECT_EQ(ring.front().y, ring.back().y) << family.word;
        }
      }
    }
  }
}

TEST(PlacedShape, TurnsAndMoves) {
  const PlacedShape shape{.rings = {}, .position = {10, 20}, .xAxis = {0, 1}};
  const Point2 point = shape.placed({3, 4});
  EXPECT_EQ(point.x, 6);
  EXPECT_EQ(point.y, 23);
}

}  // namespace
}  // namespace exportifc
