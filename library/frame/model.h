// A whole model in memory, as a model file has it.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "library/frame/problem.h"
#include "model/bar.h"
#include "model/bar_type.h"
#include "model/length_unit.h"

namespace exportifc {

/// What sections are made of.
struct ModelMaterial {
  std::string name;
  double density = 0.0;  ///< kg/m³; 0: the model does not say
  bool defined = true;   ///< false: sections refer to a name that the model does not define
};

/// A cross-section. Texts are UTF-8.
struct ModelSection {
  std::string name;  ///< by which bars refer to it
  std::string text;  ///< family word and dimensions: what the file will hold
  SectionDims dims{};
  int givenDims = -1;          ///< how many the model lists; below 0: they are read from the text
  bool defined = true;         ///< false: bars refer to a name that the model does not define
  std::int32_t material = -1;  ///< index into `Model::materials`; below 0: the model does not say
  std::string catalogue{};     ///< name in the catalogue of rolled sections; empty: not from there
  /// false: no family draws the shape that the model has, and the text only describes it. Then the
  /// height and width around it, in millimetres, or 0 when they are not known.
  bool isDrawn = true;
  std::array<float, 2> bounds{};
};

/// One bar; kept small, since a model may have millions.
struct ModelBar {
  std::int32_t start = 0;  ///< node index, from 0; may be out of range
  std::int32_t end = 0;
  std::int32_t section = 0;  ///< index into `Model::sections`, always in range
  float angle = 0.0F;        ///< of the section about the bar, radians
  std::int32_t quarterTurns = 0;
  std::uint8_t type = 0;  ///< 0 to 11
  bool visible = true;
};

enum class ModelFormat : std::uint8_t { json, batch, tables, saf, csv };

struct Model {
  ModelFormat format = ModelFormat::json;
  std::string title;
  std::int32_t unitCode = unknownLengthUnit;  ///< of `lengthUnits`
  std::vector<std::array<float, 3>> nodes;    ///< in the model's unit
  std::vector<ModelMaterial> materials;
  std::vector<ModelSection> sections;
  std::vector<ModelBar> bars;
  /// Names of the bars, and by index into `layers` what they are grouped by (below 0: nothing).
  /// One a bar, or none at all when the model has none: most have millions of bars and no names.
  std::vector<std::string> barNames;
  std::vector<std::int32_t> barLayers;
  std::vector<std::string> layers;
  /// Bars whose values stand where they should; those behind have a problem in `found`.
  std::size_t soundBars = static_cast<std::size_t>(-1);
  std::vector<Problem> found;  ///< by the reader: values that it takes otherwise than they stand
  std::int32_t announcedBars = 0;  ///< batch: what the header says, at least the bars present
};

/// Readable names of the bar types, by their number.
inline constexpr auto barTypeNames = [] {
  std::array<std::string_view, barTypeCount> names{};
  std::transform(std::begin(barTypes), std::end(barTypes), names.begin(),
                 [](const BarType& type) { return type.name; });
  return names;
}();

/// Unit words by unit code.
inline constexpr auto unitNames = [] {
  std::array<std::string_view, std::size(lengthUnits)> names{};
  std::transform(std::begin(lengthUnits), std::end(lengthUnits), names.begin(),
                 [](const LengthUnit& unit) { return unit.name; });
  return names;
}();

inline bool isNode(const Model& model, std::int32_t index) {
  return index >= 0 && static_cast<std::size_t>(index) < model.nodes.size();
}

}  // namespace exportifc
