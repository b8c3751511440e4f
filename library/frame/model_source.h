// A model in memory, delivered to the export bar by bar.
#pragma once

#include <functional>

#include "library/frame/model.h"
#include "model/bar_source.h"

namespace exportifc {

/// Bars that the export leaves out, and why.
struct SkippedBars {
  std::int32_t invisible = 0;
  std::int32_t notExportedType = 0;
  std::int32_t withoutRecord = 0;
};

/// Answers as a host would. The bar's record lies in the source and is overwritten by the next bar.
class ModelSource final : public BarSource {
 public:
  /// `beforeBar` is called with the index of each bar; it may throw to end the export.
  ModelSource(const Model& model, bool visibleOnly, std::function<void(std::int32_t)> beforeBar)
      : model_(model), visibleOnly_(visibleOnly), beforeBar_(std::move(beforeBar)) {}

  std::int32_t unitCode() override { return model_.unitCode; }
  std::int32_t barCount() override { return static_cast<std::int32_t>(model_.bars.size()); }
  bool next(std::int32_t index, SourceBar& bar) override;

  const SkippedBars& skipped() const { return skipped_; }

 private:
  const BarRecord* recordOf(const ModelBar& bar);

  const Model& model_;
  bool visibleOnly_;
  std::function<void(std::int32_t)> beforeBar_;
  BarRecord record_{};
  SkippedBars skipped_;
};

}  // namespace exportifc
