#include "profiles/outlines.h"

#include <array>
#include <cmath>
#include <utility>

namespace exportifc {

namespace {

using Points = std::vector<OutlinePoint>;

/// A hat lying open side down: `height`, `width` over the webs, `brim` width, `thickness`.
Points hat(double height, double width, double brim, double thickness) {
  const double inner = (width + brim) - 2 * thickness;
  const double outer = (width + brim) - thickness;
  return {
      {0, 0},
      {brim, 0},
      {brim, height - thickness},
      {inner, height - thickness},
      {inner, 0},
      {inner + brim, 0},
      {inner + brim, thickness},
      {outer, thickness},
      {outer, height},
      {brim - thickness, height},
      {brim - thickness, thickness},
      {0, thickness},
      {0, 0},
  };
}

/// A lipped Z: height, top and bottom flange widths, top and bottom lips, thickness.
Points lippedZ(const ProfileArguments& a) {
  const double height = a[1];
  const double top = a[2];
  const double bottom = a[3];
  const double topLip = a[4];
  const double bottomLip = a[5];
  const double thickness = a[6];
  const double web = bottom - thickness;
  return {
      {0, bottomLip},
      {thickness, bottomLip},
      {thickness, thickness},
      {web, thickness},
      {web, height},
      {web + top, height},
      {web + top, height - topLip},
      {(web + top) - thickness, height - topLip},
      {(web + top) - thickness, height - thickness},
      {bottom, height - thickness},
      {bottom, 0},
      {0, 0},
      {0, bottomLip},
  };
}

/// A lipped Z with equal flanges and lips: height, flange width, lip, thickness.
Points symmetricZ(const ProfileArguments& a) {
  const double height = a[1];
  const double flange = a[2];
  const double lip = a[3];
  const double thickness = a[4];
  const double web = flange - thickness;
  const double right = flange + web;
  return {
      {0, lip},
      {thickness, lip},
      {thickness, thickness},
      {web, thickness},
      {web, height},
      {right, height},
      {right, height - lip},
      {right - thickness, height - lip},
      {right - thickness, height - thickness},
      {flange, height - thickness},
      {flange, 0},
      {0, 0},
      {0, lip},
  };
}

/// A box of two webs between flanges: depth, flange width, flange thickness, web thickness,
/// distance over the outer faces of the webs. One closed line cannot have a hole, so it cuts the
/// head of the left web from the top flange: that line is drawn twice, there and back.
/// Fixed shape: turned outlines.
Points twoWebBox(const ProfileArguments& a) {
  const double flange = a[3];
  const double web = a[4];
  const double h = 0.5 * a[1];
  const double w = 0.5 * a[2];
  const double g = 0.5 * a[5];
  return {
      {0, h},
      {w, h},
      {w, h - flange},
      {g, h - flange},
      {g, flange - h},
      {w, flange - h},
      {w, -h},
      {-w, -h},
      {-w, flange - h},
      {-g, flange - h},
      {-g, h - flange},
      {web - g, h - flange},
      {web - g, flange - h},
      {g - web, flange - h},
      {g - web, h - flange},
      {-w, h - flange},
      {-w, h},
      {0, h},
  };
}

/// A welded I with unequal flanges: depth, top flange width and thickness, bottom flange width and
/// thickness, web thickness.
Points weldedI(const ProfileArguments& a) {
  const double h = 0.5 * a[1];
  const double top = 0.5 * a[2];
  const double topFlange = a[3];
  const double bottom = 0.5 * a[4];
  const double bottomFlange = a[5];
  const double web = 0.5 * a[6];
  return {
      {0, h},
      {top, h},
      {top, h - topFlange},
      {web, h - topFlange},
      {web, bottomFlange - h},
      {bottom, bottomFlange - h},
      {bottom, -h},
      {-bottom, -h},
      {-bottom, bottomFlange - h},
      {-web, bottomFlange - h},
      {-web, h - topFlange},
      {-top, h - topFlange},
      {-top, h},
      {0, h},
  };
}

void turn(Points& points, double angle) {
  const double cosine = std::cos(angle);
  const double sine = std::sin(angle);
  for (OutlinePoint& point : points) {
    point = {.x = point.x * cosine - point.y * sine,
             .y = point.x * sine + point.y * cosine,
             .z = point.z};
  }
}

/// Makes `origin` the outline's origin, in the outline's plane.
Points movedTo(Points points, const OutlinePoint& origin) {
  for (OutlinePoint& point : points) {
    point.x -= origin.x;
    point.y -= origin.y;
  }
  return points;
}

/// Centres the outline on its bounding box.
Points centred(Points points) {
  const OutlinePoint centre = boundingBoxCentre(points);
  return movedTo(std::move(points), centre);
}

/// The hat that hangs from y = 0: half its height below its own centre.
/// Fixed shape: turned outlines.
Points hangingHat(const ProfileArguments& a) {
  Points points = hat(a[1], a[2], a[3], a[4]);
  OutlinePoint origin = boundingBoxCentre(points);
  origin.y += 0.5 * a[1];
  return movedTo(std::move(points), origin);
}

/// Half of two hats whose brims face each other across a gap: turned on its side and moved away
/// from the axis. `side` is +1 for the half at positive x, -1 for the other.
Points hatHalf(const ProfileArguments& a, double angle, double side) {
  Points points = centred(hat(a[2], a[1], a[3], a[4]));
  turn(points, angle);
  for (OutlinePoint& point : points) {
    point.x += side * (0.5 * (a[2] + a[5]));
  }
  return points;
}

// The quarter turns as the library's cosine and sine see them: not exact zeros and ones.
// Fixed shape: turned outlines.
constexpr double quarterTurn = 1.5707963267948966;
constexpr double threeQuarterTurns = 4.71238898038469;

std::int32_t writeClosedProfile(StepWriter& writer, const HostText& name, const Points& points) {
  const Ref polyline{writePolyline(writer, points)};
  return writer.writeEntity("IFCARBITRARYCLOSEDPROFILEDEF(.AREA., '", name, "', ", polyline, ")");
}

}  // namespace

std::vector<OutlinePoint> outlinePoints(Outline outline, const ProfileArguments& a) {
  switch (outline) {
    case Outline::cart: return hangingHat(a);
    case Outline::icarFirst: return hatHalf(a, quarterTurn, 1.0);
    case Outline::icarSecond: return hatHalf(a, threeQuarterTurns, -1.0);
    case Outline::z: return centred(lippedZ(a));
    case Outline::zs: return centred(symmetricZ(a));
    case Outline::pc: return centred(twoWebBox(a));
    case Outline::psa: return centred(weldedI(a));
  }
  return {};
}

std::int32_t writeOutlineProfile(StepWriter& writer, Outline outline, const HostText& name,
                                 const ProfileArguments& arguments) {
  return writeClosedProfile(writer, name, outlinePoints(outline, arguments));
}

std::int32_t writeUnknownProfile(StepWriter& writer) {
  static const Points square = {{-2, -2}, {2, -2}, {2, 2}, {-2, 2}, {-2, -2}};
  return writeClosedProfile(writer, L"UnknownProfile", square);
}

}  // namespace exportifc
