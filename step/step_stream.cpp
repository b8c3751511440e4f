#include "step/step_stream.h"

namespace exportifc {

namespace {

// Lines are short, but each real reserves room for its largest value.
constexpr std::size_t usualLine = 4096;
constexpr std::size_t lineEnd = 2;

}  // namespace

StepStream::StepStream(std::unique_ptr<ByteSink> sink)
    : sink_(std::move(sink)), buffer_(usualLine), failed_(sink_ == nullptr) {}

char* StepStream::reserve(std::size_t size) {
  if (buffer_.size() < size + lineEnd) {
    buffer_.resize(size + lineEnd);
  }
  return buffer_.data();
}

void StepStream::finish(const LineCursor& cursor) {
  if (failed_) {
    return;
  }
  char* end = cursor.at;
  if (cursor.cut != nullptr) {
    end = cursor.cut;
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
