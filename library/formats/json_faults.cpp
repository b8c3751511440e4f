#include "library/formats/json_faults.h"

#include <algorithm>
#include <iterator>
#include <span>
#include <string_view>
#include <utility>

#include "library/formats/json_keys.h"
#include "library/text/messages.h"
#include "library/text/text_encoding.h"

namespace exportifc {

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isLetter(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' || c == '$' ||
         static_cast<unsigned char>(c) >= 0x80U;
}
bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

char closingOf(char bracket) { return bracket == '{' ? '}' : ']'; }

/// The place behind `text` when its first character stands at `place`.
TextPlace behind(TextPlace place, std::string_view text) {
  for (const char c : text) {
    if (c == '\n') {
      ++place.line;
      place.column = 1;
    } else if ((static_cast<unsigned char>(c) & 0xC0U) != 0x80U) {
      ++place.column;  // of the bytes of a character the first one counts
    }
  }
  return place;
}

std::string hexText(unsigned value, int digits) {
  constexpr std::string_view names = "0123456789ABCDEF";
  std::string text;
  for (int i = digits - 1; i >= 0; --i) {
    text += names[(value >> (4 * static_cast<unsigned>(i))) & 0xFU];
  }
  return text;
}

/// Words of other notations, and how JSON writes them.
struct Word {
  std::string_view found;  // in small letters
  std::string_view meant;  // empty: JSON has nothing like it
};
constexpr Word words[] = {{"true", "true"}, {"false", "false"},     {"null", "null"},
                          {"none", "null"}, {"nil", "null"},        {"undefined", "null"},
                          {"nan", ""},      {"infinity", ""},       {"inf", ""},
                          {"yes", "true"},  {"sim", "true"},        {"no", "false"},
                          {"não", "false"}, {"verdadeiro", "true"}, {"falso", "false"}};

/// Quotes that text programs put in place of the plain one.
constexpr std::string_view typographicQuotes[] = {"“", "”", "„", "‘", "’", "«", "»"};

/// The digits of a number, a point and an exponent as JSON has them.
bool isJsonNumber(std::string_view text) {
  const auto digits = [&] {
    const std::size_t before = text.size();
    while (!text.empty() && isDigit(text[0])) {
      text.remove_prefix(1);
    }
    return before - text.size();
  };
  const auto skip = [&](std::string_view characters) {
    const bool is = !text.empty() && characters.find(text[0]) != std::string_view::npos;
    text.remove_prefix(is ? 1 : 0);
    return is;
  };
  skip("-");
  const bool zero = text.starts_with('0');
  const std::size_t whole = digits();
  if (whole == 0 || (zero && whole > 1) || (skip(".") && digits() == 0)) {
    return false;
  }
  if (skip("eE")) {
    skip("+-");
    if (digits() == 0) {
      return false;
    }
  }
  return text.empty();
}

/// +5, .5, 5. and 007 as JSON writes them.
std::string mended(std::string_view number) {
  std::string sign;
  if (number.starts_with('+') || number.starts_with('-')) {
    sign = number[0] == '-' ? "-" : "";
    number.remove_prefix(1);
  }
  while (number.size() > 1 && number[0] == '0' && isDigit(number[1])) {
    number.remove_prefix(1);
  }
  std::string text = sign + (number.starts_with('.') ? "0" : "") + std::string(number);
  const std::size_t point = text.find('.');
  if (point != std::string::npos && (point + 1 == text.size() || !isDigit(text[point + 1]))) {
    text.insert(point + 1, "0");
  }
  return text;
}

/// Goes over the tokens in the order of the text and stops at the first that may not stand there.
class FaultFinder {
 public:
  explicit FaultFinder(const JsonSurroundings& around)
      : around_(around),
        text_(around.text),
        open_(around.open),
        before_(!around.begun          ? Before::nothing
                : around.behindClosing ? Before::value
                                       : Before::opening) {}

  std::optional<Problem> run() {
    while (!found_ && !givenUp_) {
      at_ = skipBlanks(at_);
      if (at_ == text_.size()) {
        if (around_.ended && !open_.empty()) {
          missingAtEnd();
        }
        break;
      }
      if (at_ > around_.stop) {
        break;
      }
      token();
    }
    return std::move(found_);
  }

 private:
  enum class Before : std::uint8_t { nothing, opening, key, colon, comma, value };
  enum class Kind : std::uint8_t { text, number, word, opening };

  // ---- the text
  std::size_t skipBlanks(std::size_t at) const {
    while (at < text_.size() && isBlank(text_[at])) {
      ++at;
    }
    return at;
  }
  char characterAt(std::size_t at) const { return at < text_.size() ? text_[at] : '\0'; }
  char next(std::size_t at) const { return characterAt(skipBlanks(at)); }
  bool inArray() const { return !open_.empty() && open_.back().character == '['; }
  bool inObject() const { return !open_.empty() && open_.back().character == '{'; }

  // ---- findings
  void found(std::size_t at, std::string message, std::string value = {},
             std::string suggestion = {}) {
    found_ = Problem{.code = "not-json",
                     .message = std::move(message),
                     .place = behind(around_.start, text_.substr(0, at)),
                     .value = std::move(value),
                     .suggestion = std::move(suggestion)};
  }
  /// "]" is missing before what stands there.
  void missing(std::size_t at) {
    const char open = open_.back().character;
    found(at,
          say(texts::jsonMissingBracket,
              {std::string(1, closingOf(open)), std::string(1, open), bracketPlace(open_.back())}),
          {}, std::string(1, closingOf(open)));
  }
  void missingAtEnd() {
    const char open = open_.back().character;
    found(text_.size(),
          say(texts::jsonEndsOpen,
              {std::string(1, closingOf(open)), std::string(1, open), bracketPlace(open_.back())}),
          {}, std::string(1, closingOf(open)));
  }
  static std::string bracketPlace(const OpenBracket& bracket) {
    return std::to_string(bracket.place.line) + ":" + std::to_string(bracket.place.column);
  }

  // ---- tokens
  void token() {
    const char c = text_[at_];
    if (open_.empty() && before_ == Before::value) {
      found(at_, say(c == '{' || c == '['   ? texts::jsonSecondModel
                     : c == '}' || c == ']' ? texts::jsonBracketTooMany
                                            : texts::jsonTextBehind));
      return;
    }
    switch (c) {
      case ',': comma(); break;
      case ':': colon(); break;
      case '{':
      case '[': opening(c); break;
      case '}':
      case ']': closing(c); break;
      case '"': quoted(); break;
      case '\'': singleQuoted(); break;
      case '#': found(at_, say(texts::jsonComment, {"#"}), "#"); break;
      case '/': slash(); break;
      default: word();
    }
  }

  void slash() {
    const std::string_view mark = text_.substr(at_, 2);
    if (mark == "//" || mark == "/*") {
      found(at_, say(texts::jsonComment, {mark}), std::string(mark));
    } else {
      givenUp_ = true;
    }
  }

  void comma() {
    switch (before_) {
      case Before::value:
        before_ = Before::comma;
        comma_ = at_++;
        break;
      case Before::opening:
      case Before::comma: found(at_, say(texts::jsonExtraComma), ","); break;
      case Before::key:
      case Before::colon: found(at_, say(texts::jsonValueMissing)); break;
      case Before::nothing: found(at_, say(texts::jsonNoStart));
    }
  }

  void colon() {
    if (before_ != Before::key) {
      givenUp_ = true;
      return;
    }
    before_ = Before::colon;
    ++at_;
  }

  std::string_view lastText() const {
    const std::string_view content = text_.substr(lastText_ + 1);
    return content.substr(0, content.find('"'));
  }

  static bool isOneOf(std::string_view key, std::span<const std::string_view> keys) {
    return std::find(keys.begin(), keys.end(), key) != keys.end();
  }

  /// Whether what opens here, behind a colon, belongs to an object further out: the object of all
  /// sections, or materials, holds no list, each of them and each bar holds no object.
  bool belongsFurtherOut(char c) const {
    constexpr std::size_t listOfObjects = 2;
    const std::string_view key = lastText();
    return (open_.size() == listOfObjects && c == '[' && isOneOf(key, modelKeyNames)) ||
           (open_.size() > listOfObjects && c == '{' && !isOneOf(key, sectionKeyNames) &&
            !isOneOf(key, barKeyNames) && !isOneOf(key, materialKeyNames));
  }

  void opening(char c) {
    constexpr std::size_t listOfNumbers = 3;
    if (inArray() && open_.size() >= listOfNumbers) {
      missing(at_);
      return;
    }
    if (inObject() && before_ == Before::colon && belongsFurtherOut(c)) {
      missing(lastText_);
      return;
    }
    if (!takeValue(at_, Kind::opening)) {
      return;
    }
    open_.push_back({.character = c, .place = behind(around_.start, text_.substr(0, at_))});
    before_ = Before::opening;
    ++at_;
  }

  void closing(char c) {
    if (open_.empty()) {
      givenUp_ = true;
    } else if (before_ == Before::comma) {
      found(comma_, say(texts::jsonTrailingComma, {std::string(1, c)}), ",");
    } else if (before_ == Before::key || before_ == Before::colon) {
      found(at_, say(texts::jsonValueMissing));
    } else if (c != closingOf(open_.back().character)) {
      missing(at_);
    } else {
      open_.pop_back();
      before_ = Before::value;
      end_ = ++at_;
    }
  }

  /// Whether a value, or a key, may begin there.
  bool takeValue(std::size_t start, Kind kind) {
    const bool isKey = kind == Kind::text && next(at_) == ':';
    switch (before_) {
      case Before::nothing:
        if (kind != Kind::opening) {
          found(start, say(texts::jsonNoStart));
        }
        break;
      case Before::key: found(end_, say(texts::jsonMissingColon)); break;
      case Before::value:
        if (inArray() && isKey) {
          missing(start);
        } else {
          found(end_, say(texts::jsonMissingComma), {}, ",");
        }
        break;
      case Before::opening:
      case Before::comma:
        if ((inArray() && isKey) ||
            (inObject() && kind == Kind::opening && before_ == Before::comma)) {
          missing(start);
        } else if (inObject() && kind == Kind::number && before_ == Before::comma) {
          const std::string number(text_.substr(start, at_ - start));
          found(comma_, say(texts::jsonDecimalComma), "," + number, "." + number);
        } else if (inObject() && kind != Kind::text) {
          found(start, say(texts::jsonKeyExpected));
        }
        break;
      case Before::colon: break;
    }
    if (found_) {
      return false;
    }
    before_ = inObject() && before_ != Before::colon ? Before::key : Before::value;
    end_ = at_;
    return true;
  }

  void quoted() {
    const std::size_t start = at_++;
    while (!found_) {
      if (at_ == text_.size()) {
        if (around_.ended) {
          found(start, say(texts::jsonOpenText));
        }
        givenUp_ = true;
        return;
      }
      const char c = text_[at_];
      if (c == '"') {
        break;
      }
      if (c == '\n' || c == '\r') {
        found(start, say(texts::jsonOpenText));
      } else if (static_cast<unsigned char>(c) < 0x20U) {
        const std::string code = hexText(static_cast<unsigned char>(c), 4);
        const std::string escaped = c == '\t' ? "\\t" : "\\u" + code;
        found(at_, say(texts::jsonControl, {"U+" + code, escaped}), "U+" + code, escaped);
      } else if (c == '\\') {
        backslash();
      } else if (static_cast<unsigned char>(c) >= 0x80U) {
        skipCharacter();
      } else {
        ++at_;
      }
    }
    if (found_) {
      return;
    }
    ++at_;
    if (takeValue(start, Kind::text)) {
      lastText_ = start;
    }
  }

  void backslash() {
    constexpr std::size_t longest = 6;  // \u00E7
    const std::string_view escape = text_.substr(at_, longest);
    const auto isHex = [](char c) {
      return isDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
    };
    const bool isCode = escape.size() == longest && escape[1] == 'u' &&
                        std::all_of(escape.begin() + 2, escape.end(), isHex);
    const bool isKnown = escape.size() > 1 &&
                         std::string_view("\"\\/bfnrt").find(escape[1]) != std::string_view::npos;
    if (isCode || isKnown) {
      at_ += isCode ? longest : 2;
    } else {
      found(at_, say(texts::jsonBackslash), "\\", "\\\\");
    }
  }

  /// Over a character of several bytes.
  void skipCharacter() {
    constexpr std::size_t longest = 4;
    for (std::size_t size = 2; size <= longest && at_ + size <= text_.size(); ++size) {
      if (isUtf8(text_.substr(at_, size))) {
        at_ += size;
        return;
      }
    }
    const std::string byte = "0x" + hexText(static_cast<unsigned char>(text_[at_]), 2);
    found(at_, say(texts::jsonNotUtf8, {byte}), byte);
  }

  void singleQuoted() {
    const std::size_t end = text_.find_first_of("'\r\n", at_ + 1);
    const std::string content =
        toUtf8(text_.substr(at_ + 1, end == std::string_view::npos ? end : end - at_ - 1));
    found(at_, say(texts::jsonDoubleQuotes, {content}), "'" + content + "'", '"' + content + '"');
  }

  /// A number, true, false, null, or what looks like it or should stand in quotes.
  void word() {
    const std::size_t start = at_;
    while (at_ < text_.size() && !isBlank(text_[at_]) &&
           std::string_view(",:]}[{\"'").find(text_[at_]) == std::string_view::npos) {
      if (static_cast<unsigned char>(text_[at_]) >= 0x80U) {
        skipCharacter();
        if (found_) {
          return;
        }
      } else {
        ++at_;
      }
    }
    const std::string text(text_.substr(start, at_ - start));
    const auto isQuote = [&](std::string_view quote) { return text.starts_with(quote); };
    if (const auto* const quote =
            std::find_if(std::begin(typographicQuotes), std::end(typographicQuotes), isQuote);
        quote != std::end(typographicQuotes)) {
      found(start, say(texts::jsonTypographicQuote, {*quote}), std::string(*quote), "\"");
    } else if (start > 0 && text_[start - 1] == '"' && isLetter(text[0])) {
      found(lastText_, say(texts::jsonOpenText));  // its end is the beginning of the next text
    } else if (isDigit(text[0]) || text[0] == '-' || text[0] == '+' || text[0] == '.') {
      number(start, text);
    } else if (isLetter(text[0])) {
      bareWord(start, text);
    } else {
      givenUp_ = true;
    }
  }

  static const Word* knownWord(std::string_view text) {
    std::string lowered(text);
    for (char& c : lowered) {
      c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    }
    const auto* const known = std::find_if(std::begin(words), std::end(words),
                                           [&](const Word& word) { return word.found == lowered; });
    return known == std::end(words) ? nullptr : known;
  }

  void number(std::size_t start, const std::string& text) {
    if (isJsonNumber(text)) {
      takeValue(start, Kind::number);
      return;
    }
    const std::string right = mended(text);
    const Word* const known = knownWord(std::string_view(text).substr(1));
    if (isJsonNumber(right)) {
      found(start, say(texts::jsonWrittenSo, {text, right}), text, right);
    } else if (known != nullptr && known->meant.empty()) {
      found(start, say(texts::jsonNotFinite, {text}), text);
    } else {
      found(start, say(texts::jsonNoNumber, {text}), text);
    }
  }

  void bareWord(std::size_t start, const std::string& text) {
    const bool isKey = next(at_) == ':' && inObject();
    const Word* const known = isKey ? nullptr : knownWord(text);
    if (isKey) {
      found(start, say(texts::jsonKeyQuotes, {text}), text, '"' + text + '"');
    } else if (known == nullptr) {
      found(start, say(texts::jsonTextQuotes, {text}), text, '"' + text + '"');
    } else if (known->meant.empty()) {
      found(start, say(texts::jsonNotFinite, {text}), text);
    } else if (known->meant != text) {
      found(start, say(texts::jsonWrittenSo, {text, known->meant}), text,
            std::string(known->meant));
    } else {
      takeValue(start, Kind::word);
    }
  }

  const JsonSurroundings& around_;
  std::string_view text_;
  std::vector<OpenBracket> open_;
  Before before_;
  std::size_t at_ = 0;
  std::size_t comma_ = 0;     // the last
  std::size_t end_ = 0;       // of the last value or key
  std::size_t lastText_ = 0;  // where the last text begins
  bool givenUp_ = false;
  std::optional<Problem> found_;
};

/// In blocks of a fixed length, which compilers turn into vector instructions: byte by byte it took
/// a twentieth of the reading, from feed to feed a fiftieth.
std::int64_t feedsIn(std::string_view text) {
  constexpr std::size_t block = 64;
  std::int64_t feeds = 0;
  for (; text.size() >= block; text.remove_prefix(block)) {
    std::uint8_t here = 0;
    for (std::size_t i = 0; i < block; ++i) {
      here = static_cast<std::uint8_t>(here + (text[i] == '\n' ? 1 : 0));
    }
    feeds += here;
  }
  return feeds + std::count(text.begin(), text.end(), '\n');
}

}  // namespace

std::optional<Problem> nameFault(const JsonSurroundings& around) {
  return FaultFinder(around).run();
}

void JsonText::skipMark() {
  if (sgetc() == 0xEF) {
    sbumpc();
    sbumpc();
    sbumpc();
    keptPlace_.column = -1;
    bracketOffset_ = offset();
  }
}

TextPlace JsonText::placeOf(const char* end) const {
  TextPlace place = keptPlace_;
  std::string_view line(kept(), static_cast<std::size_t>(end - kept()));
  if (const std::size_t feed = line.rfind('\n'); feed != std::string_view::npos) {
    place.line += feedsIn(line.substr(0, feed + 1));
    place.column = 0;
    line.remove_prefix(feed + 1);
  }
  // Of the bytes of a character in UTF-8 the first one counts.
  place.column += std::count_if(line.begin(), line.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U;
  });
  return place;
}

void JsonText::opened(char bracket) {
  if (depth_ < mostDepth) {
    open_[depth_] = {.character = bracket,
                     .offset = offset(),
                     .place = depth_ < outerDepth ? place() : TextPlace{}};
  }
  ++depth_;
  markBracket(false);
}

JsonSurroundings JsonText::surroundings() {
  JsonSurroundings around;
  const char* const start = heldFrom(bracketOffset_);
  if (start == nullptr) {
    return around;
  }
  around.start = placeOf(start);
  ++around.start.column;
  around.begun = depth_ > 0 || behindClosing_;
  around.behindClosing = behindClosing_;
  for (std::size_t i = 0; i < std::min(depth_, mostDepth); ++i) {
    const char* const held = heldFrom(open_[i].offset);
    around.open.push_back(
        {.character = open_[i].character,
         .place = i < outerDepth || held == nullptr ? open_[i].place : placeOf(held)});
  }
  around.text.assign(start, static_cast<std::size_t>(egptr() - start));
  around.stop = static_cast<std::size_t>(gptr() - start);
  std::array<char, keptSize> ahead{};
  const auto size = text_.sgetn(ahead.data(), static_cast<std::streamsize>(ahead.size()));
  around.text.append(ahead.data(), static_cast<std::size_t>(size));
  around.ended = size < static_cast<std::streamsize>(ahead.size());
  return around;
}

JsonText::int_type JsonText::underflow() {
  if (gptr() != egptr()) {
    return traits_type::to_int_type(*gptr());
  }
  const char* const end = egptr();
  const auto keep = std::min(keptSize, static_cast<std::size_t>(end - kept()));
  keptPlace_ = placeOf(end - keep);
  pieceOffset_ = offset();
  std::copy(end - keep, end, piece() - keep);
  keptNow_ = keep;
  const auto size = text_.sgetn(piece(), static_cast<std::streamsize>(pieceSize));
  setg(piece(), piece(), piece() + size);
  return size > 0 ? traits_type::to_int_type(*gptr()) : traits_type::eof();
}

}  // namespace exportifc
