// The pieces a line of the exchange file is composed of.
//
// A writer names the pieces in the order of the file:
//   writer.writeEntity("IFCLOCALPLACEMENT(#111, ", Ref{placement}, ")")
// Plain text stands as it is, a double becomes a real with five decimals, and wide text (names that
// the host gave) becomes one byte per character.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>

#include "step/number_format.h"

namespace exportifc {

/// A reference to another entity: "#5006". Made once and written with every line that refers to it.
class Ref {
 public:
  explicit Ref(std::int32_t number) : number_(number) {}
  explicit Ref(const ReadyInteger& number) : number_(number) {}

  operator std::int32_t() const { return number_.value(); }
  char* put(char* at) const {
    *at = '#';
    return number_.put(at + 1);
  }

 private:
  ReadyInteger number_;
};

/// References separated by ", ": "#5006, #5007". The numbers belong to the caller.
struct RefList {
  std::span<const std::int32_t> numbers;
};

/// A real in general notation with six digits, "1e+06": the format of comments.
struct General {
  double value;
};

/// The text of a `NumberPattern`, taken apart when it is compiled.
class PatternText {
 public:
  /// A number and the text before it.
  struct Number {
    std::string_view before;
    std::size_t source = 0;  // of the values; 0: `x`
    double factor = 1.0;
  };

  constexpr PatternText(const char* pattern) : text_(pattern), rest_(pattern) {
    std::size_t end = 0;
    while ((end = rest_.find_first_of("ahx")) != std::string_view::npos) {
      const bool isX = rest_[end] == 'x';
      numbers_[count_++] = {.before = rest_.substr(0, end),
                            .source = isX ? 0 : static_cast<std::size_t>(rest_[end + 1] - '0'),
                            .factor = rest_[end] == 'h' ? 0.5 : 1.0};
      rest_.remove_prefix(end + (isX ? 1 : 2));
    }
  }

  constexpr operator std::string_view() const { return text_; }
  constexpr std::span<const Number> numbers() const { return {numbers_.data(), count_}; }
  constexpr std::string_view rest() const { return rest_; }

 private:
  std::string_view text_;
  std::array<Number, 4> numbers_{};
  std::size_t count_ = 0;
  std::string_view rest_;  // behind the last number
};

/// Text in which "a1" to "a9" stand for the numbers values[1] to values[9], "h1" to "h9" for their
/// halves and "x" for the number `x`; every other character stands for itself.
struct NumberPattern {
  PatternText text;
  std::span<const double> values;
  double x = 0.0;
};

/// Where the next character goes. `cut` marks the first character that the file cannot hold
/// (above U+00FF): the output ends there. Handed on by value, so that it stays in registers:
/// through a reference each piece would wait for the one before it to reach the memory.
struct LineCursor {
  char* at = nullptr;
  char* cut = nullptr;
};

/// Room that a piece needs at most.
template <std::size_t Size>
constexpr std::size_t maxLength(const char (&)[Size]) {
  return Size - 1;
}
constexpr std::size_t maxLength(std::string_view text) { return text.size(); }
constexpr std::size_t maxLength(std::wstring_view text) { return 2 * text.size(); }
constexpr std::size_t maxLength(double) { return fixed5Capacity; }
constexpr std::size_t maxLength(General) { return general6Capacity; }
constexpr std::size_t maxLength(const Ref&) { return integerCapacity + 1; }
constexpr std::size_t maxLength(RefList list) {
  return list.numbers.size() * (integerCapacity + 3);
}
constexpr std::size_t maxLength(const NumberPattern& pattern) {
  return std::string_view(pattern.text).size() * fixed5Capacity;
}

// Each writes its piece and returns where the next one goes.

/// A literal: its length is known when this is compiled, which makes it a few moves.
template <std::size_t Size>
inline LineCursor put(LineCursor line, const char (&literal)[Size]) {
  std::memcpy(line.at, literal, Size - 1);
  return {line.at + (Size - 1), line.cut};
}

inline LineCursor put(LineCursor line, std::string_view text) {
  std::memcpy(line.at, text.data(), text.size());
  return {line.at + text.size(), line.cut};
}

inline LineCursor put(LineCursor line, double value) {
  return {putFixed5(line.at, value), line.cut};
}
inline LineCursor put(LineCursor line, General real) {
  return {putGeneral6(line.at, real.value), line.cut};
}
inline LineCursor put(LineCursor line, const Ref& reference) {
  return {reference.put(line.at), line.cut};
}

LineCursor put(LineCursor line, RefList list);
LineCursor put(LineCursor line, std::wstring_view text);
LineCursor put(LineCursor line, const NumberPattern& pattern);

}  // namespace exportifc
