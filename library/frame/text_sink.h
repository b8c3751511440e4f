// An output that stays in memory.
#pragma once

#include <cstddef>
#include <string>

#include "platform/byte_sink.h"

namespace exportifc {

/// Appends everything to a text, which must outlive it.
class TextSink final : public ByteSink {
 public:
  explicit TextSink(std::string& text) : text_(text) {}

  bool write(const char* bytes, std::size_t size) override {
    text_.append(bytes, size);
    return true;
  }

 private:
  std::string& text_;
};

}  // namespace exportifc
