#include "fuzz/model_check.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <sstream>
#include <string>
#include <utility>

#include "fuzz/exchange_check.h"
#include "fuzz/expectation.h"
#include "fuzz/memory_export.h"
#include "fuzz/require.h"
#include "library/formats/json_model.h"
#include "library/frame/model_check.h"
#include "library/frame/model_source.h"
#include "library/frame/problem_text.h"
#include "library/frame/text_sink.h"
#include "library/text/text_encoding.h"

namespace exportifc::fuzz {

namespace {

/// A negative zero may lose its sign; nothing in JSON is not a number.
bool same(const float* a, const float* b, std::size_t count) { return std::equal(a, a + count, b); }

using Named = std::pair<std::string, double>;
Named materialOf(const exportifc::Model& model, const ModelSection& section) {
  if (section.material < 0) {
    return {};
  }
  const ModelMaterial& material = model.materials[static_cast<std::size_t>(section.material)];
  return {material.name, material.density};
}

/// Of a bar its own name and that of its layer.
std::pair<std::string, std::string> namesOf(const exportifc::Model& model, std::size_t bar) {
  const bool hasLayer = !model.barLayers.empty() && model.barLayers[bar] >= 0;
  return {model.barNames.empty() ? std::string() : model.barNames[bar],
          hasLayer ? model.layers[static_cast<std::size_t>(model.barLayers[bar])] : std::string()};
}

void requireSame(const exportifc::Model& a, const exportifc::Model& b) {
  require(a.title == b.title && a.unitCode == b.unitCode, "title or unit changed");
  require(a.nodes.size() == b.nodes.size(), "nodes were lost");
  for (std::size_t i = 0; i < a.nodes.size(); ++i) {
    require(same(a.nodes[i].data(), b.nodes[i].data(), 3), "a coordinate changed");
  }
  require(a.bars.size() == b.bars.size(), "bars were lost");
  require(a.barNames.empty() || a.barNames.size() == a.bars.size(), "bars without a name's place");
  require(a.barLayers.empty() || a.barLayers.size() == a.bars.size(), "bars without a layer's");
  for (std::size_t i = 0; i < a.bars.size(); ++i) {
    const exportifc::ModelBar& x = a.bars[i];
    const exportifc::ModelBar& y = b.bars[i];
    require(x.start == y.start && x.end == y.end && x.type == y.type && x.visible == y.visible &&
                x.quarterTurns == y.quarterTurns && same(&x.angle, &y.angle, 1),
            "a bar changed");
    const ModelSection& s = a.sections[static_cast<std::size_t>(x.section)];
    const ModelSection& t = b.sections[static_cast<std::size_t>(y.section)];
    require(s.name == t.name && s.text == t.text && s.defined == t.defined &&
                s.catalogue == t.catalogue,
            "a section changed");
    require(materialOf(a, s) == materialOf(b, t), "a material changed");
    require(namesOf(a, i) == namesOf(b, i), "a bar's name or layer changed");
    require(same(s.dims.data(), t.dims.data(), s.dims.size()), "a dimension changed");
  }
}

std::string written(const exportifc::Model& model) {
  std::string text;
  TextSink sink(text);
  writeJsonModel(model, sink);
  return text;
}

fuzz::Model modelOf(const exportifc::Model& known) {
  fuzz::Model model;
  model.unitCode = known.unitCode;
  for (const exportifc::ModelBar& bar : known.bars) {
    const std::string& text = known.sections[static_cast<std::size_t>(bar.section)].text;
    model.bars.push_back({.hasRecord = text.size() < sizeof(BarRecord::sectionName),
                          .type = static_cast<float>(bar.type),
                          .visible = bar.visible ? 1 : 0,
                          .quarterTurns = bar.quarterTurns,
                          .angle = bar.angle,
                          .start = known.nodes[static_cast<std::size_t>(bar.start)],
                          .end = known.nodes[static_cast<std::size_t>(bar.end)],
                          .name = text.c_str()});
  }
  return model;
}

void exportAndCompare(const exportifc::Model& known) {
  const fuzz::Model model = modelOf(known);
  CountingInterface ui;
  Exported exported;
  fuzz::exportModel(
      [&] { return std::make_unique<ModelSource>(known, false, [](std::int32_t) {}); }, ui,
      exported);
  require(exported.result == 1 && ui.unhandled == 0, "the export failed");
  std::string fault = compareWithModel(exported.file.bytes, model);
  if (fault.empty() && hasPlainNames(model)) {
    fault = checkExchange(exported.file.bytes);
  }
  if (!fault.empty()) {
    fail(fault);
  }
  if (checkCharacters(known, false).empty()) {
    require(exported.file.bytes.ends_with("END-ISO-10303-21;\r\n"),
            "a model without unwritable characters gives half a file");
  }
}

}  // namespace

void requireSound(exportifc::Model model) {
  for (const Problem& problem : checkModel(model, false)) {
    const std::string line = problemText(model, problem);
    require(!line.empty() && isUtf8(line), "a problem that cannot be shown");
  }
  if (checkReferences(model).empty()) {
    exportAndCompare(model);
    std::stringbuf again(written(model), std::ios::in);
    requireSame(model, readJsonModel(again));
    transliterate(model);
    require(checkCharacters(model, false).empty(), "transliterated, still unwritable");
  }
}

void requireShown(const ModelError& error) {
  require(*error.what() != '\0' && isUtf8(error.what()), "a message that cannot be shown");
  const Problem& problem = error.problem();
  require(isUtf8(problem.pointer) && isUtf8(problem.cell) && isUtf8(problem.file),
          "a place that cannot be shown");
  require(problem.place.line >= 0 && problem.place.column >= 0, "a place before the first");
}

}  // namespace exportifc::fuzz
