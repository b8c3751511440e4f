// A text whose beginning can be looked at before it is read.
#pragma once

#include <array>
#include <functional>
#include <streambuf>
#include <string_view>

namespace exportifc {

/// Passes a text on in pieces, also one that cannot be read twice.
class StartedText final : public std::streambuf {
 public:
  /// `text` must outlive it.
  explicit StartedText(std::streambuf& text) : text_(text) { underflow(); }

  /// What of the beginning is read; empty for an empty text.
  std::string_view start() const { return {eback(), static_cast<std::size_t>(egptr() - eback())}; }

  /// `watch` sees each piece, from the beginning on.
  void watch(std::function<void(std::string_view)> watcher) {
    watch_ = std::move(watcher);
    watch_(start());
  }

  /// Reads on to the end, for the watcher.
  void drain() {
    while (underflow() != traits_type::eof()) {
      setg(eback(), egptr(), egptr());
    }
  }

 protected:
  int_type underflow() override {
    if (gptr() != egptr()) {
      return traits_type::to_int_type(*gptr());
    }
    const auto size = text_.sgetn(piece_.data(), static_cast<std::streamsize>(piece_.size()));
    setg(piece_.data(), piece_.data(), piece_.data() + size);
    if (watch_ && size > 0) {
      watch_(start());
    }
    return size > 0 ? traits_type::to_int_type(*gptr()) : traits_type::eof();
  }

 private:
  std::streambuf& text_;
  std::array<char, 16384> piece_{};
  std::function<void(std::string_view)> watch_;
};

}  // namespace exportifc
