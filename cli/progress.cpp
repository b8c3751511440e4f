#include "cli/progress.h"

#include <algorithm>
#include <cstdio>
#include <string>

#include "cli/messages.h"
#include "cli/system.h"
#include "library/text/text_encoding.h"

namespace exportifc::cli {

namespace {

constexpr std::size_t barWidth = 24;
constexpr const char* eraseLine = "\r\033[K";

}  // namespace

Progress::Progress(bool wanted, std::int64_t total)
    : shown_(wanted && total > 0 && system::errorIsTerminal()), total_(total) {}

Progress::~Progress() {
  if (shown_ && last_ != Clock::time_point{}) {
    std::fputs(eraseLine, stderr);
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

  const auto full = std::min(barWidth, static_cast<std::size_t>(share * barWidth));
  std::string line =
      "[" + std::string(full, '#') + std::string(barWidth - full, '-') + "] " +
      say(texts::progressLine, {decimalText(share * 100, 0), numberText(done), numberText(total_),
                                numberText(static_cast<std::int64_t>(rate)), decimalText(left, 0)});
  // A line that wraps cannot be rewritten in place.
  const auto columns = static_cast<std::size_t>(system::terminalColumns() - 1);
  if (characterCount(line) > columns) {
    line.resize(std::min(columns, line.size()));
  }
  std::fputs((eraseLine + line).c_str(), stderr);
}

}  // namespace exportifc::cli
