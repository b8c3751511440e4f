// The caller's function as a sink.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "exportifc/library.h"
#include "platform/byte_sink.h"

namespace exportifc::api {

/// Hands the caller large pieces: a call for each line would cost more than the line.
class CallerSink final : public ByteSink {
 public:
  CallerSink(ExportIfcWrite write, void* context) : write_(write), context_(context) {
    held_.reserve(pieceSize);
  }

  bool write(const char* bytes, std::size_t size) override {
    if (held_.size() + size > pieceSize) {
      flush();
    }
    if (size > pieceSize) {
      hand({bytes, size});
    } else {
      held_.append(bytes, size);
    }
    return takes_;
  }

  bool flush() {
    hand(held_);
    held_.clear();
    return takes_;
  }

 private:
  void hand(std::string_view piece) {
    if (takes_ && !piece.empty()) {
      takes_ = write_(context_, piece.data(), piece.size()) != 0;
    }
  }

  static constexpr std::size_t pieceSize = std::size_t{1} << 16;

  ExportIfcWrite write_;
  void* context_;
  std::string held_;
  bool takes_ = true;
};

}  // namespace exportifc::api
