// The interface through which the bar loop gets a model, wherever the model lies.
#pragma once

#include <cstdint>

#include "model/bar.h"

namespace exportifc {

/// Delivers a model bar by bar: `unitCode`, then `barCount`, then `next` once for each index.
class BarSource {
 public:
  BarSource() = default;
  BarSource(const BarSource&) = delete;
  BarSource& operator=(const BarSource&) = delete;
  virtual ~BarSource() = default;

  /// The code of one of the `lengthUnits`; with any other, coordinates are millimetres.
  virtual std::int32_t unitCode() = 0;

  /// Number of bars; negative counts as none.
  virtual std::int32_t barCount() = 0;

  /// Fills `bar` with the bar at `index`, from 0. False when the model has no more bars. A null
  /// record in `bar` is a bar that cannot be exported.
  virtual bool next(std::int32_t index, SourceBar& bar) = 0;

  /// Lets go of what the model lies in; no bar is asked for afterwards. Destruction does the same.
  virtual void close() {}
};

}  // namespace exportifc
