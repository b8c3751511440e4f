// How far an export is, for a person who waits.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

#include "cli/system.h"

namespace exportifc::cli {

/// A line on standard error, which must be a terminal, that is rewritten in place.
class StatusLine {
 public:
  /// One that is not shown takes every call and does nothing.
  explicit StatusLine(bool shown) : shown_(shown) {}
  StatusLine(const StatusLine&) = delete;
  StatusLine& operator=(const StatusLine&) = delete;
  ~StatusLine() { erase(); }

  bool shown() const { return shown_; }
  void show(const std::string& text);
  void erase();

 private:
  bool shown_;
  bool isThere_ = false;
};

/// The status line of the bars of one model.
class Progress {
 public:
  Progress(bool shown, std::int64_t total) : line_(shown && total > 0), total_(total) {}

  /// Cheap enough to be called for each bar. False when the user asked the program to end.
  bool at(std::int64_t done) {
    if (line_.shown() && (done & 0xFF) == 0) {
      update(done);
    }
    return !system::interrupted();
  }

 private:
  using Clock = std::chrono::steady_clock;

  void update(std::int64_t done);

  StatusLine line_;
  std::int64_t total_;
  Clock::time_point started_ = Clock::now();
  Clock::time_point last_{};
};

}  // namespace exportifc::cli
