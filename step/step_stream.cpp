#include "step/step_stream.h"

namespace exportifc {

namespace {

// Lines are short, but each real reserves room for its largest value.
constexpr std::size_t usualLine = 4096;

}  // namespace

StepStream::StepStream(std::unique_ptr<ByteSink> sink)
    : sink_(std::move(sink)), buffer_(usualLine), failed_(sink_ == nullptr) {}

void StepStream::grow(std::size_t size) { buffer_.resize(size); }

void StepStream::finish(LineCursor line) {
  char* end = line.at;
  if (line.cut != nullptr) {
    end = line.cut;
    failed_ = true;
  } else {
    *end++ = '\r';
    *end++ = '\n';
  }
  if (!sink_->write(buffer_.data(), static_cast<std::size_t>(end - buffer_.data()))) {
    failed_ = true;
  }
}

}  // namespace exportifc
