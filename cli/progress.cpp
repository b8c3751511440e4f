#include "cli/progress.h"

#include <algorithm>
#include <cstdio>

#include "cli/messages.h"
#include "library/text/text_encoding.h"

namespace exportifc::cli {

namespace {

constexpr const char* eraseLine = "\r\033[K";

}  // namespace

void StatusLine::show(const std::string& text) {
  if (shown_) {
    // A line that wraps cannot be rewritten in place.
    const auto columns = static_cast<std::size_t>(system::terminalColumns() - 1);
    std::fputs((eraseLine + std::string(firstCharacters(text, columns))).c_str(), stderr);
    isThere_ = true;
  }
}

void StatusLine::erase() {
  if (isThere_) {
    std::fputs(eraseLine, stderr);
    isThere_ = false;
  }
}

void Progress::update(std::int64_t done) {
  constexpr auto interval = std::chrono::milliseconds(100);
  const auto now = Clock::now();
  if (now - last_ < interval) {
    return;
  }
  last_ = now;
  const double seconds = std::chrono::duration<double>(now - started_).count();
  const double share = static_cast<double>(done) / static_cast<double>(total_);
  const double rate = seconds > 0 ? static_cast<double>(done) / seconds : 0;
  const double left = rate > 0 ? static_cast<double>(total_ - done) / rate : 0;

  constexpr std::size_t barWidth = 24;
  const auto full = std::min(barWidth, static_cast<std::size_t>(share * barWidth));
  line_.show("[" + std::string(full, '#') + std::string(barWidth - full, '-') + "] " +
             say(texts::progressLine,
                 {decimalText(share * 100, 0), numberText(done), numberText(total_),
                  numberText(static_cast<std::int64_t>(rate)), decimalText(left, 0)}));
}

}  // namespace exportifc::cli
