// How far an export is, for a person who waits.
#pragma once

#include <chrono>
#include <cstdint>

#include "cli/system.h"

namespace exportifc::cli {

/// A line on the terminal that is rewritten in place; nothing at all when standard error is not
/// one. Erased on destruction.
class Progress {
 public:
  Progress(bool wanted, std::int64_t total);
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress();

  /// Cheap enough to be called for each bar. False when the user asked the program to end.
  bool at(std::int64_t done) {
    if (shown_ && (done & 0xFF) == 0) {
      update(done);
    }
    return !system::interrupted();
  }

 private:
  using Clock = std::chrono::steady_clock;

  void update(std::int64_t done);

  bool shown_;
  std::int64_t total_;
  Clock::time_point started_ = Clock::now();
  Clock::time_point last_{};
};

}  // namespace exportifc::cli
