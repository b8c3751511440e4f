// The model that the benchmarks export: the bars of a sample, repeated.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "model/bar_source.h"

namespace exportifc::bench {

/// Which bars of the sample are taken.
enum class Mix : std::uint8_t { all, builtUpOnly, simpleOnly };

/// Writes a batch model file of `bars` bars: those of the file `sample` over and over, each round
/// moved along X so that no two bars are equal.
void writeModel(const std::string& sample, Mix mix, std::size_t bars, const std::string& path);

/// A model that lies in memory, so that nothing but the export is measured.
class MemorySource final : public BarSource {
 public:
  /// Reads the batch model file at `path`.
  explicit MemorySource(const std::string& path);

  std::int32_t unitCode() override { return unitCode_; }
  std::int32_t barCount() override { return static_cast<std::int32_t>(bars_.size()); }
  bool next(std::int32_t index, SourceBar& bar) override;

 private:
  std::int32_t unitCode_;
  std::vector<SourceBar> bars_;
};

}  // namespace exportifc::bench
