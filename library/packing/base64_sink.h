// Base 64 of what is written.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/byte_sink.h"

namespace exportifc {

/// Hands base 64 on to another sink, in one line. The last letters come with `finish`.
class Base64Sink final : public ByteSink {
 public:
  explicit Base64Sink(ByteSink& next) : next_(next) {}

  bool write(const char* bytes, std::size_t size) override;
  bool write(std::string_view text) { return write(text.data(), text.size()); }

  /// Nothing may be written after it.
  bool finish();

 private:
  void addGroup(std::size_t count);

  ByteSink& next_;
  std::string letters_;  // of one call
  std::uint32_t group_ = 0;
  std::size_t held_ = 0;  // bytes in the group
};

}  // namespace exportifc
