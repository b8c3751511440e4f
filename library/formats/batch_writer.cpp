#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "library/formats/batch_model.h"
#include "library/text/messages.h"
#include "model/batch_source.h"
#include "plugin/bar_export.h"

namespace exportifc {

namespace {

/// The shortest digits that read back as the same number, without an exponent.
std::string fixedText(float value) {
  std::array<char, 64> buffer{};
  const auto end =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::fixed);
  return {buffer.data(), end.ptr};
}

bool fitsOneLine(const std::string& text) {
  return text.find_first_of(std::string_view("\0\n\r\x1A", 4)) == std::string::npos;
}

/// What a batch text file of the model cannot hold, one line for each kind of loss.
class BatchLosses {
 public:
  explicit BatchLosses(const Model& model) {
    for (std::size_t i = 0; i < model.bars.size(); ++i) {
      const ModelBar& bar = model.bars[i];
      if (!barTypeOf(bar.type).isExported) {
        note(texts::lossType10, i);
        continue;
      }
      if (bar.type != 0) note(texts::lossType, i);
      if (!bar.visible) note(texts::lossVisible, i);
      if (bar.quarterTurns != 0) note(texts::lossQuarterTurns, i);
    }
    for (const ModelSection& section : model.sections) {
      if (section.dims != parseSectionDims(section.text)) {
        lines_.push_back(say(texts::lossDims, {section.name, section.text}));
      }
      if (section.name != section.text) {
        ++renamed_;
      }
    }
    for (const Count& count : counts_) {
      lines_.push_back(fill(*count.text, {numberText(count.bars), numberText(count.first + 1)}));
    }
    const auto add = [&](TextWith<1> text, std::int64_t count) {
      if (count > 0) {
        lines_.push_back(say<1>(text, {numberText(count)}));
      }
    };
    add(texts::lossNames, renamed_);
    add(texts::lossBarNames, std::count_if(model.barNames.begin(), model.barNames.end(),
                                           [](const std::string& name) { return !name.empty(); }));
    add(texts::lossLayers, std::count_if(model.barLayers.begin(), model.barLayers.end(),
                                         [](std::int32_t layer) { return layer >= 0; }));
    add(texts::lossMaterials, static_cast<std::int64_t>(model.materials.size()));
  }

  std::vector<std::string> take() { return std::move(lines_); }

 private:
  struct Count {
    const Text* text;
    std::int64_t bars;
    std::int64_t first;
  };

  void note(const Text& text, std::size_t bar) {
    for (Count& count : counts_) {
      if (count.text == &text) {
        ++count.bars;
        return;
      }
    }
    counts_.push_back({.text = &text, .bars = 1, .first = static_cast<std::int64_t>(bar)});
  }

  std::vector<Count> counts_;
  std::int64_t renamed_ = 0;
  std::vector<std::string> lines_;
};

/// A text that would end its line too early; empty when there is none.
std::string obstacleOf(const Model& model) {
  for (const ModelSection& section : model.sections) {
    if (!fitsOneLine(section.text)) {
      return say(texts::convertLineBreak, {section.name});
    }
  }
  return fitsOneLine(model.title) ? std::string() : say(texts::convertTitleBreak);
}

}  // namespace

Losses lossesInBatch(const Model& model) {
  return {.obstacle = obstacleOf(model), .lines = BatchLosses(model).take()};
}

void writeBatchModel(const Model& model, ByteSink& output) {
  const auto line = [&](std::string_view text) {
    output.write(text.data(), text.size());
    output.write("\r\n", 2);
  };
  const auto carried = std::count_if(model.bars.begin(), model.bars.end(), [](const ModelBar& bar) {
    return barTypeOf(bar.type).isExported;
  });
  line(std::to_string(model.nodes.size()));
  line(std::to_string(model.sections.size()));
  line(model.title);
  line(model.unitCode >= 0 && model.unitCode < 3
           ? unitNames[static_cast<std::size_t>(model.unitCode)]
           : std::string_view("?"));
  line(std::to_string(carried));
  for (std::size_t i = 0; i < model.bars.size(); ++i) {
    const ModelBar& bar = model.bars[i];
    if (!barTypeOf(bar.type).isExported) {
      continue;
    }
    const std::string number = std::to_string(i + 1);
    line("Barra " + number);
    for (const std::int32_t node : {bar.start, bar.end}) {
      for (const float coordinate : model.nodes[static_cast<std::size_t>(node)]) {
        line(fixedText(coordinate));
      }
    }
    line(fixedText(sectionAngle(bar.quarterTurns, bar.angle)));
    line(model.sections[static_cast<std::size_t>(bar.section)].text);
    line("");
    line(number);
    line("");
  }
}

}  // namespace exportifc
