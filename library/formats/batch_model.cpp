#include "library/formats/batch_model.h"

#include <bit>
#include <cstring>
#include <istream>
#include <string>
#include <unordered_map>
#include <unordered_set>

#include "library/formats/batch_lines.h"
#include "library/formats/started_text.h"
#include "library/frame/model_error.h"
#include "library/text/messages.h"
#include "library/text/text_encoding.h"
#include "model/batch_source.h"

namespace exportifc {

namespace {

using Point = std::array<float, 3>;

/// The coordinates' bits: -0 is written with its sign, so it is another point than 0.
using PointBits = std::array<std::uint32_t, 3>;

PointBits bitsOf(const Point& point) { return std::bit_cast<PointBits>(point); }

struct PointHash {
  std::size_t operator()(const PointBits& point) const {
    std::uint64_t hash = 0;
    for (const std::uint32_t coordinate : point) {
      hash = hash * 0x9E3779B97F4A7C15U + coordinate;
    }
    return static_cast<std::size_t>(hash ^ (hash >> 32));
  }
};

/// Numbers what it is shown: equal values get the index of the first.
template <class Value, class Hash = std::hash<Value>>
class Numbering {
 public:
  /// The index, and whether the value is new.
  std::pair<std::int32_t, bool> operator()(const Value& value) {
    const auto next = static_cast<std::int32_t>(seen_.size());
    const auto [found, isNew] = seen_.emplace(value, next);
    return {found->second, isNew};
  }

 private:
  std::unordered_map<Value, std::int32_t, Hash> seen_;
};

}  // namespace

Model readBatchModel(std::streambuf& text) {
  StartedText pieces(text);
  BatchLines lines;
  pieces.watch([&](std::string_view piece) { lines.feed(piece); });
  std::istream stream(&pieces);
  BatchReader reader(stream);
  if (reader.unitCode() < 0 && reader.barCount() <= 0) {
    const std::int64_t unitLine = lines.strayUnitLine();
    throw ModelError({.code = "not-a-model",
                      .message = unitLine == 0
                                     ? say(texts::notAModel)
                                     : say(texts::batchUnitLine, {std::to_string(unitLine)}),
                      .place = {.line = unitLine}});
  }
  Model model;
  model.format = ModelFormat::batch;
  model.title = toUtf8(reader.title());
  model.unitCode = reader.unitCode();
  model.announcedBars = reader.barCount();

  Numbering<PointBits, PointHash> nodes;
  Numbering<std::string> sections;
  std::unordered_set<std::string> names;
  const auto nodeAt = [&](const Point& point) {
    const auto [index, isNew] = nodes(bitsOf(point));
    if (isNew) {
      model.nodes.push_back(point);
    }
    return index;
  };
  const auto sectionOf = [&](const std::string& line) {
    const auto [index, isNew] = sections(line);
    if (isNew) {
      // A record's text ends at the first NUL; the dimensions are read from the whole line.
      std::string content = toUtf8(line.c_str());
      std::string name = content;
      while (!names.insert(name).second) {
        name += '\'';
      }
      model.sections.push_back(
          {.name = std::move(name), .text = std::move(content), .dims = parseSectionDims(line)});
    }
    return index;
  };

  BatchBar bar;
  for (std::int32_t i = 0; i < reader.barCount() && reader.next(bar); ++i) {
    model.bars.push_back({.start = nodeAt(bar.start),
                          .end = nodeAt(bar.end),
                          .section = sectionOf(bar.sectionText),
                          .angle = bar.angle});
  }
  pieces.drain();
  lines.finish();
  model.soundBars = lines.soundBars();
  model.found = lines.problems();
  return model;
}

}  // namespace exportifc
