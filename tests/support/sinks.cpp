#include "tests/support/sinks.h"

#include <algorithm>

namespace exportifc::test {

bool MemorySink::write(const char* bytes, std::size_t size) {
  const std::size_t free = room_ - std::min(room_, received_.bytes.size());
  received_.bytes.append(bytes, std::min(size, free));
  ++received_.writes;
  received_.refusals += size <= free ? 0 : 1;
  return size <= free;
}

bool CountingSink::write(const char* /*bytes*/, std::size_t size) {
  ++counted_.lines;
  counted_.bytes += size;
  return true;
}

WatchedSink::~WatchedSink() {
  if (end_) {
    end_();
  }
}

bool WatchedSink::write(const char* bytes, std::size_t size) {
  line_({bytes, size});
  return true;
}

}  // namespace exportifc::test
