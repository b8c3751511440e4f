#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string>
#include <string_view>

#include "library/formats/json_model.h"
#include "library/frame/section_check.h"
#include "library/text/json_text.h"
#include "model/batch_source.h"

namespace exportifc {

namespace {

/// The shortest digits that read back as the same number.
template <class Number>
std::string shortest(Number value) {
  if (value == Number{} && std::signbit(value)) {
    return "-0.0";  // readers take -0 for an integer, which has no sign at zero
  }
  std::array<char, 32> buffer{};
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
  return {buffer.data(), end.ptr};
}

/// Writes the entries of one list, each on a line of its own.
class JsonLines {
 public:
  explicit JsonLines(ByteSink& output) : output_(output) {}

  void write(std::string_view text) { output_.write(text.data(), text.size()); }
  void begin(std::string_view text) {
    write(text);
    separator_ = "\n    ";
  }
  void entry(const std::string& text) {
    write(separator_ + text);
    separator_ = ",\n    ";
  }

 private:
  ByteSink& output_;
  std::string separator_;
};

std::string nodeText(const std::array<float, 3>& node) {
  return "[" + shortest(node[0]) + ", " + shortest(node[1]) + ", " + shortest(node[2]) + "]";
}

/// The dimensions are listed where the text would give others.
std::string sectionText(const Model& model, const ModelSection& section) {
  const bool isRolled = isFromCatalogue(section);
  std::string text =
      jsonText(section.name) + (isRolled ? ": {\"catalogue\": " + jsonText(section.catalogue)
                                         : ": {\"text\": " + jsonText(section.text));
  if (!isRolled && section.dims != parseSectionDims(section.text)) {
    const auto last = std::find_if(section.dims.rbegin(), section.dims.rend(),
                                   [](float dim) { return dim != 0.0F; });
    text += ", \"dims\": [";
    const char* comma = "";
    for (auto dim = section.dims.begin(); dim != last.base(); ++dim) {
      text += comma + shortest(*dim);
      comma = ", ";
    }
    text += "]";
  }
  if (section.material >= 0) {
    text += ", \"material\": " +
            jsonText(model.materials[static_cast<std::size_t>(section.material)].name);
  }
  return text + "}";
}

std::string materialText(const ModelMaterial& material) {
  const bool hasDensity = material.density > 0.0;
  return jsonText(material.name) +
         (hasDensity ? ": {\"density\": " + shortest(material.density) + "}" : ": {}");
}

/// Values that are the usual ones are left out.
std::string barText(const Model& model, std::size_t index) {
  const ModelBar& bar = model.bars[index];
  std::string text =
      "{\"nodes\": [" + std::to_string(bar.start) + ", " + std::to_string(bar.end) +
      "], \"section\": " + jsonText(model.sections[static_cast<std::size_t>(bar.section)].name);
  if (bar.type != 0) {
    text += ", \"type\": " + jsonText(barTypeNames[bar.type]);
  }
  if (!bar.visible) {
    text += ", \"visible\": false";
  }
  if (bar.angle != 0.0F) {
    text += ", \"angle\": " + shortest(bar.angle);
  }
  if (bar.quarterTurns != 0) {
    text += ", \"quarterTurns\": " + std::to_string(bar.quarterTurns);
  }
  if (!model.barNames.empty() && !model.barNames[index].empty()) {
    text += ", \"name\": " + jsonText(model.barNames[index]);
  }
  if (!model.barLayers.empty() && model.barLayers[index] >= 0) {
    text +=
        ", \"layer\": " + jsonText(model.layers[static_cast<std::size_t>(model.barLayers[index])]);
  }
  return text + "}";
}

}  // namespace

void writeJsonModel(const Model& model, ByteSink& output) {
  JsonLines lines(output);
  lines.write("{\n");
  if (!model.title.empty()) {
    lines.write("  \"title\": " + jsonText(model.title) + ",\n");
  }
  const auto unit =
      static_cast<std::size_t>(model.unitCode >= 0 && model.unitCode <= 2 ? model.unitCode : 2);
  lines.begin("  \"unit\": " + jsonText(unitNames[unit]) + ",\n  \"nodes\": [");
  for (const auto& node : model.nodes) {
    lines.entry(nodeText(node));
  }
  lines.write("\n  ]");
  if (!model.materials.empty()) {
    lines.begin(",\n  \"materials\": {");
    for (const ModelMaterial& material : model.materials) {
      lines.entry(materialText(material));
    }
    lines.write("\n  }");
  }
  lines.begin(",\n  \"sections\": {");
  for (const ModelSection& section : model.sections) {
    lines.entry(sectionText(model, section));
  }
  lines.begin("\n  },\n  \"bars\": [");
  for (std::size_t i = 0; i < model.bars.size(); ++i) {
    lines.entry(barText(model, i));
  }
  lines.write("\n  ]\n}\n");
}

}  // namespace exportifc
