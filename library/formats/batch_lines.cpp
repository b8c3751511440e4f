#include "library/formats/batch_lines.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>

#include "library/frame/model.h"
#include "library/text/messages.h"
#include "library/text/text_encoding.h"
#include "model/host_number.h"

namespace exportifc {

namespace {

constexpr std::size_t mostValues = 20;  // of one file said one by one

// Of a bar, from 0.
constexpr std::size_t firstNumber = 1;
constexpr std::size_t angleLine = 7;
constexpr std::size_t sectionLine = 8;

constexpr std::int64_t unitLine = 4;  // of the file

constexpr std::string_view blanks = " \t\v\f";

std::string_view trimmed(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
  return text.substr(0, text.find_last_not_of(blanks) + 1);
}

bool isUnit(std::string_view text) {
  return std::find(unitNames.begin(), unitNames.end(), text) != unitNames.end();
}

void skipDigits(std::string_view& text, bool& any) {
  while (!text.empty() && text[0] >= '0' && text[0] <= '9') {
    text.remove_prefix(1);
    any = true;
  }
}

void skipOneOf(std::string_view& text, std::string_view characters) {
  if (!text.empty() && characters.find(text[0]) != std::string_view::npos) {
    text.remove_prefix(1);
  }
}

/// A number from its first to its last character, blanks apart.
bool isNumber(std::string_view text, bool whole = false) {
  text = trimmed(text);
  bool any = false;
  skipOneOf(text, "+-");
  skipDigits(text, any);
  if (!whole) {
    skipOneOf(text, ".,");
    skipDigits(text, any);
    if (any && !text.empty() && (text[0] == 'e' || text[0] == 'E')) {
      text.remove_prefix(1);
      any = false;
      skipOneOf(text, "+-");
      skipDigits(text, any);
    }
  }
  return any && text.empty();
}

/// A section text where a number would stand: it begins with a letter or 2L, 4L and has a digit.
bool looksLikeSection(const std::string& text) {
  const auto isLetter = [](char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); };
  return !isNumber(text) && text.find(' ') != std::string::npos &&
         std::any_of(text.begin(), text.end(), isLetter) &&
         text.find_first_of("0123456789") != std::string::npos;
}

/// As much of a line as fits a message.
std::string shown(std::string_view text) { return excerpt(toUtf8(text)); }

std::string shortest(float value) {
  std::array<char, 32> buffer{};
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
  return withDecimalSign({buffer.data(), end.ptr});
}

}  // namespace

void BatchLines::feed(std::string_view piece) {
  if (ended_) {
    return;
  }
  if (const std::size_t end = piece.find('\x1A'); end != std::string_view::npos) {
    piece = piece.substr(0, end);
    ended_ = true;
  }
  for (std::size_t feed = piece.find('\n'); feed != std::string_view::npos;
       feed = piece.find('\n')) {
    std::string_view text = piece.substr(0, feed);
    piece.remove_prefix(feed + 1);
    if (!pieces_.empty()) {
      text = pieces_.append(text);
    }
    if (text.ends_with('\r')) {
      text.remove_suffix(1);
    }
    line(text);
    pieces_.clear();
  }
  pieces_.append(piece);
}

void BatchLines::line(std::string_view text) {
  ++lines_;
  if (!text.empty()) {
    contentLines_ = std::max(lines_, headerLines);
  }
  if (lines_ <= headerLines + 1 && lines_ != unitLine && isUnit(trimmed(text))) {
    strayUnitLine_ = lines_;
  }
  if (lines_ <= headerLines) {
    headerLine(text);
    return;
  }
  const std::int64_t at = (lines_ - headerLines - 1) % barLines;
  bar_[static_cast<std::size_t>(at)] = text;
  if (at == barLines - 1) {
    checkBar();
  }
}

void BatchLines::headerLine(std::string_view text) {
  constexpr std::string_view mark = "\xEF\xBB\xBF";
  if (lines_ == 1 && text.starts_with(mark)) {
    text.remove_prefix(mark.size());
    add({.code = "byte-order-mark",
         .severity = Severity::note,
         .message = say(texts::batchMark),
         .place = {.line = 1}});
  }
  constexpr std::int64_t countLine = 5;
  if (lines_ == unitLine) {
    checkUnit(text);
  } else if (lines_ == 1 || lines_ == 2) {
    if (!isNumber(text, true)) {
      add({.code = "not-a-number",
           .severity = Severity::warning,
           .message = say(texts::batchHeaderCount, {shown(text)}),
           .place = {.line = lines_},
           .value = shown(text),
           .allowed = say(texts::allowedCount)});
    }
  } else if (lines_ == countLine) {
    announced_ = parseHostInteger(text);
    if (!isNumber(text, true) || announced_ < 0) {
      add({.code = "bar-count",
           .message = say(texts::batchBarCount,
                          {shown(text), numberText(std::max<std::int64_t>(announced_, 0))}),
           .place = {.line = lines_},
           .value = shown(text),
           .allowed = say(texts::allowedCount)});
    }
  }
}

void BatchLines::checkUnit(std::string_view text) {
  if (isUnit(text)) {
    return;
  }
  std::string meant(trimmed(text));
  const bool blankBeside = isUnit(meant);
  for (char& c : meant) {
    c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  }
  const bool isMeant = isUnit(meant);
  add({.code = "unknown-unit",
       .severity = Severity::warning,
       .message = blankBeside ? say(texts::batchUnitBlank, {shown(text), meant})
                              : say(texts::problemUnit, {shown(text)}) +
                                    (isMeant ? say(texts::didYouMean, {meant}) : std::string()),
       .place = {.line = lines_},
       .value = shown(text),
       .allowed = "m, cm, mm",
       .suggestion = isMeant ? meant : ""});
}

/// The lines of the bar at hand, all twelve of them.
void BatchLines::checkBar() {
  const std::int64_t bar = (lines_ - headerLines - 1) / barLines;
  if (shifted_ || bar >= announced_) {
    return;
  }
  bool fits = !trimmed(bar_[sectionLine]).empty() && !isNumber(bar_[sectionLine]);
  for (std::size_t i = firstNumber; i <= angleLine; ++i) {
    fits = fits && isNumber(bar_[i]);
  }
  if (fits || reportShift()) {
    return;
  }
  for (std::size_t i = firstNumber; i <= angleLine; ++i) {
    if (!isNumber(bar_[i])) {
      addValue(static_cast<std::int64_t>(i), bar_[i]);
    }
  }
}

/// True when the section text stands in another line of the bar than it should, behind its angle:
/// then lines are missing or too many, and all that follow would be named for nothing.
bool BatchLines::reportShift() {
  if (looksLikeSection(bar_[sectionLine])) {
    return false;
  }
  for (std::size_t i = 2; i < bar_.size(); ++i) {
    if (i == sectionLine || !looksLikeSection(bar_[i]) || !isNumber(bar_[i - 1])) {
      continue;
    }
    shifted_ = true;
    const std::int64_t bar = (lines_ - headerLines - 1) / barLines;
    soundBars_ = static_cast<std::size_t>(bar);
    const auto at = static_cast<std::int64_t>(i);
    const auto missing = std::int64_t{sectionLine} - at;
    add({.code = "lines-shifted",
         .message = fill(missing > 0 ? texts::batchLinesMissing : texts::batchLinesTooMany,
                         {shown(bar_[i]), numberText(at + 1), numberText(std::abs(missing))}),
         .place = {.line = headerLines + barLines * bar + at + 1},
         .value = shown(bar_[i]),
         .bars = 1,
         .firstBar = static_cast<std::int32_t>(bar)});
    return true;
  }
  return false;
}

void BatchLines::addValue(std::int64_t barLine, const std::string& text) {
  const auto listed = std::count_if(problems_.begin(), problems_.end(), [](const Problem& problem) {
    return std::string_view(problem.code) == "not-a-number";
  });
  if (listed >= static_cast<std::ptrdiff_t>(mostValues)) {
    ++moreValues_;
    return;
  }
  const std::int64_t bar = (lines_ - headerLines - 1) / barLines;
  const std::string readAs = shortest(parseHostNumber(text));
  add({.code = "not-a-number",
       .message = trimmed(text).empty() ? say(texts::batchEmptyNumber, {readAs})
                                        : say(texts::batchNumber, {shown(text), readAs}),
       .place = {.line = headerLines + barLines * bar + barLine + 1},
       .value = shown(text),
       .allowed = say(texts::allowedNumber),
       .bars = 1,
       .firstBar = static_cast<std::int32_t>(bar)});
}

void BatchLines::finish() {
  if (!pieces_.empty()) {
    const std::string last = std::move(pieces_);
    pieces_.clear();
    line(last);
  }
  // The last bar may lack the lines that are not read.
  const std::int64_t rest = (lines_ - headerLines) % barLines;
  if (rest > std::int64_t{sectionLine}) {
    std::fill(bar_.begin() + rest, bar_.end(), std::string());
    checkBar();
  }
  if (moreValues_ > 0) {
    add({.code = "not-a-number",
         .message = say(texts::batchMoreNumbers, {numberText(moreValues_)})});
  }
  checkLastBar();
}

/// The lines at the end: of a bar that is cut, of bars that the header does not announce.
void BatchLines::checkLastBar() {
  const std::int64_t rest = (contentLines_ - headerLines) % barLines;
  const std::int64_t present = barsPresent();
  if (!shifted_ && rest > 0 && rest <= std::int64_t{sectionLine} && present <= announced_) {
    soundBars_ = static_cast<std::size_t>(present - 1);
    add({.code = "bar-cut",
         .message = say(texts::batchBarCut, {numberText(rest)}),
         .place = {.line = contentLines_},
         .bars = 1,
         .firstBar = static_cast<std::int32_t>(present - 1)});
  }
  if (!shifted_ && present > announced_ && announced_ >= 0) {
    add({.code = "more-bars",
         .severity = Severity::warning,
         .message = say(texts::batchMoreBars, {numberText(announced_), numberText(present)}),
         .place = {.line = headerLines},
         .value = std::to_string(announced_),
         .suggestion = std::to_string(present)});
  }
}

void BatchLines::add(Problem problem) { problems_.push_back(std::move(problem)); }

}  // namespace exportifc
