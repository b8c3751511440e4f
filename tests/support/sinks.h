// Where exports of tests and benchmarks go.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <utility>

#include "platform/byte_sink.h"

namespace exportifc::test {

/// What a sink got; outlives the sink.
struct Received {
  std::string bytes;
  std::size_t writes = 0;    ///< calls
  std::size_t refusals = 0;  ///< calls of which not all bytes were taken
  bool closed = false;
};

/// Takes everything, or fails at the byte `room` as a full disk does: bytes before it are taken.
class MemorySink final : public ByteSink {
 public:
  static constexpr std::size_t endless = static_cast<std::size_t>(-1);

  explicit MemorySink(Received& received, std::size_t room = endless)
      : received_(received), room_(room) {}
  MemorySink(const MemorySink&) = delete;
  MemorySink& operator=(const MemorySink&) = delete;
  ~MemorySink() override { received_.closed = true; }

  bool write(const char* bytes, std::size_t size) override;

 private:
  Received& received_;
  std::size_t room_;
};

/// How much a sink was given; outlives the sink.
struct Counted {
  std::size_t lines = 0;
  std::size_t bytes = 0;
};

/// Counts what it is given and drops it.
class CountingSink final : public ByteSink {
 public:
  explicit CountingSink(Counted& counted) : counted_(counted) {}

  bool write(const char* bytes, std::size_t size) override;

 private:
  Counted& counted_;
};

/// Tells of each line before it takes it, and of its end.
class WatchedSink final : public ByteSink {
 public:
  explicit WatchedSink(std::function<void(const std::string&)> line,
                       std::function<void()> end = nullptr)
      : line_(std::move(line)), end_(std::move(end)) {}
  WatchedSink(const WatchedSink&) = delete;
  WatchedSink& operator=(const WatchedSink&) = delete;
  ~WatchedSink() override;

  bool write(const char* bytes, std::size_t size) override;

 private:
  std::function<void(const std::string&)> line_;
  std::function<void()> end_;
};

}  // namespace exportifc::test
