// Random numbers that are the same on every machine.
#pragma once

#include <cstddef>
#include <cstdint>

namespace exportifc::test {

/// A generator in plain integer arithmetic: the same sequence with every compiler.
class Random {
 public:
  explicit Random(std::uint64_t seed) : state_(seed) {}

  std::uint64_t bits() {
    state_ += 0x9E3779B97F4A7C15U;
    std::uint64_t z = state_;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9U;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBU;
    return z ^ (z >> 31);
  }

  /// An integer from `low` to `high`, both included.
  std::int64_t integer(std::int64_t low, std::int64_t high) {
    const auto count = static_cast<std::uint64_t>(high - low) + 1;
    return low + static_cast<std::int64_t>(bits() % count);
  }

  /// A multiple of 1/64 from `low` to `high`, exact in single precision while small.
  float number(std::int64_t low, std::int64_t high) {
    return static_cast<float>(integer(low * 64, high * 64)) / 64.0F;
  }

  /// Any of 2^24 numbers from `low` up to `high`.
  float between(float low, float high) {
    return low + (high - low) * static_cast<float>(bits() >> 40) / 0x1p24F;
  }

  /// True once in `times`.
  bool once(std::int64_t times) { return integer(1, times) == 1; }

  template <class List>
  const auto& pick(const List& list) {
    return list[static_cast<std::size_t>(integer(0, static_cast<std::int64_t>(list.size()) - 1))];
  }

 private:
  std::uint64_t state_;
};

/// Rounds of a random test: fewer where each costs more.
constexpr int rounds(int optimised) {
#if defined(__SANITIZE_ADDRESS__)
  return optimised / 20;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
  return optimised / 20;
#else
  return optimised;
#endif
#else
  return optimised;
#endif
}

}  // namespace exportifc::test
