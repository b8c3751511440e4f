// Gets the model from the host application, query by query.
#pragma once

#include <cstdint>

#include "exportifc/plugin.h"
#include "model/bar_source.h"

namespace exportifc {

/// Asks the host's callback, nine calls a bar in a fixed order. The callback is not checked: it
/// must be set before the first call.
class HostSource final : public BarSource {
 public:
  HostSource(HostQuery query, std::uint64_t handle) : query_(query), handle_(handle) {}

  std::int32_t unitCode() override;
  std::int32_t barCount() override;
  bool next(std::int32_t index, SourceBar& bar) override;

 private:
  void ask(std::int32_t index, std::int32_t code, void* slot) {
    query_(handle_, index, code, slot);
  }

  HostQuery query_;
  std::uint64_t handle_;
  // Kept from bar to bar: a host that does not answer leaves the node of the bar before.
  std::int32_t startNode_ = 0;
  std::int32_t endNode_ = 0;
};

}  // namespace exportifc
