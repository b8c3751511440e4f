// What a structure is made of: numbers, lengths, masses and surfaces of its bars.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "library/frame/model.h"
#include "model/bar_type.h"

namespace exportifc {

/// Of structural steel, kg/m³.
inline constexpr double steelDensity = 7850.0;

struct TakeoffOptions {
  bool visibleOnly = false;
  /// kg/m³ for all bars; without it the density of a section's material, or that of steel.
  std::optional<double> density{};
};

/// Sums of some bars. Each bar is rounded once, to a millimetre, a gram and a thousandth of a
/// square metre, and everything else adds up those whole numbers: totals are the sums of what is
/// printed.
struct Quantities {
  std::int64_t bars = 0;
  std::int64_t pieces = 0;    ///< a bar of two halves has two
  std::int64_t length = 0;    ///< mm, of the bars
  std::int64_t mass = 0;      ///< g, of all pieces
  std::int64_t paint = 0;     ///< 0.001 m²
  std::int64_t shortest = 0;  ///< mm
  std::int64_t longest = 0;   ///< mm

  void add(const Quantities& other);
};

/// One section with its bars.
struct SectionTakeoff {
  std::int32_t section = 0;       ///< index into the model's sections
  int pieces = 0;                 ///< that a bar of it has
  bool isDrawn = false;           ///< otherwise it has neither mass nor surface here
  double area = 0.0;              ///< mm², of all pieces
  double perimeter = 0.0;         ///< mm that paint reaches
  double density = steelDensity;  ///< kg/m³
  Quantities sum{};

  double massPerMetre() const { return area * density * 1e-6; }  ///< kg/m
};

/// Bars of one section and one length.
struct CutLength {
  std::int32_t section = 0;
  Quantities sum{};
};

/// Bars that are gathered in the file, or in the model, under one name.
struct GroupTakeoff {
  BarGroup group = BarGroup::storey;
  Quantities sum{};
};
struct LayerTakeoff {
  std::int32_t layer = -1;  ///< index into the model's layers; below 0: bars without one
  Quantities sum{};
};

/// Only what has bars is listed.
struct Takeoff {
  std::vector<SectionTakeoff> sections;  ///< in the model's order
  std::vector<CutLength> cuts;           ///< the same, the longest first
  std::vector<GroupTakeoff> groups;      ///< in the order of `BarGroup`
  std::vector<LayerTakeoff> layers;      ///< those without one first; empty when the model has none
  Quantities total;
};

/// The take-off of the bars that an export writes. The references of the model must be sound.
Takeoff takeoffOf(const Model& model, const TakeoffOptions& options);

}  // namespace exportifc
