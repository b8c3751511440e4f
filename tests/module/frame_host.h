// A host application: a frame in memory and the callback that answers the module's queries.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "exportifc/plugin.h"
#include "tests/support/bar_record.h"

namespace exportifc::module_tests {

struct FrameBar {
  std::string section = "W 200";
  std::array<float, 10> dims{};
  float type = 1;
  std::int32_t visible = 1;
  float angle = 0;
  std::int32_t quarterTurns = 0;
  std::int32_t startNode = 0;
  std::int32_t endNode = 1;
  bool hasRecord = true;
};

struct Query {
  std::uint64_t handle = 0;
  std::int32_t index = 0;
  std::int32_t code = 0;
  bool hasSlot = false;

  friend bool operator==(const Query&, const Query&) = default;
};

/// The queries come without a pointer to their host: the one constructed last answers them.
class FrameHost {
 public:
  static constexpr std::size_t mostBars = 10000;

  FrameHost();
  FrameHost(const FrameHost&) = delete;
  FrameHost& operator=(const FrameHost&) = delete;
  ~FrameHost();

  /// Stores the callback and the handle in the module's record.
  void connect(PlugInModule& record) const;

  std::int32_t unit = 2;
  std::vector<FrameBar> bars;
  /// Answered instead of the number of bars.
  std::optional<std::int32_t> barCount;
  std::map<std::int32_t, std::array<float, 3>> nodes = {{0, {0, 0, 0}}, {1, {5000, 0, 0}}};
  std::uint64_t handle = 0xFEDCBA9876543210;

  /// From now on nobody can read the records.
  void dropRecords() { records_.forbid(); }

  /// Every query so far, in order.
  std::vector<Query> queries;
  /// Called before each answer; may throw.
  std::function<void(const Query&)> before;
  /// Slots that this host leaves alone.
  std::function<bool(const Query&)> ignores;
  /// Writes 8 bytes into the slot of the bar record, garbage above the address.
  bool writesWholePointers = false;

 private:
  static std::int32_t answer(std::uint64_t handle, std::int32_t index, std::int32_t code,
                             void* out);
  void fill(const Query& query, void* out);

  test::LowRecords records_{mostBars};
};

}  // namespace exportifc::module_tests
