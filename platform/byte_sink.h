// The interface of an open output file.
#pragma once

#include <cstddef>

namespace exportifc {

/// Takes the file's bytes in order, one call per line. Destruction closes it.
class ByteSink {
 public:
  ByteSink() = default;
  ByteSink(const ByteSink&) = delete;
  ByteSink& operator=(const ByteSink&) = delete;
  virtual ~ByteSink() = default;

  /// Hands `size` bytes to the system before it returns. False when not all of them were taken;
  /// the caller then writes no more.
  virtual bool write(const char* bytes, std::size_t size) = 0;
};

}  // namespace exportifc
