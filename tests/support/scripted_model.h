// A model in memory, bar by bar.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "model/bar_source.h"

namespace exportifc::test {

/// One bar of a scripted model.
struct ScriptedBar {
  std::string section = "W 1";
  float type = 0.0F;
  std::array<float, 3> start{0, 0, 0};
  std::array<float, 3> end{1000, 0, 0};
  SectionDims dims{200, 100, 10, 5};
  float angle = 0.0F;
  std::int32_t quarterTurns = 0;
  std::int32_t visible = 1;
  bool hasRecord = true;
};

/// A model in memory.
class ListSource final : public BarSource {
 public:
  explicit ListSource(std::vector<ScriptedBar> bars, std::int32_t unit = 2)
      : bars_(std::move(bars)), unit_(unit) {}

  std::int32_t unitCode() override { return unit_; }
  std::int32_t barCount() override { return static_cast<std::int32_t>(bars_.size()); }
  bool next(std::int32_t index, SourceBar& bar) override;

 private:
  std::vector<ScriptedBar> bars_;
  std::int32_t unit_;
  BarRecord record_{};
};

}  // namespace exportifc::test
