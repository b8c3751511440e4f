#include "fuzz/exchange_check.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <set>
#include <stdexcept>
#include <unordered_set>
#include <vector>

namespace exportifc::fuzz {

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isUpper(char c) { return (c >= 'A' && c <= 'Z') || c == '_'; }

bool isGlobalId(std::string_view text) {
  const auto inAlphabet = [](char c) {
    return isDigit(c) || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' || c == '$';
  };
  return text.size() == 22 && text[0] >= '0' && text[0] <= '3' &&
         std::all_of(text.begin(), text.end(), inAlphabet);
}

/// Entities that start with a GlobalId.
bool isRooted(std::string_view keyword) {
  static const std::set<std::string_view> rooted = {"IFCPROJECT",
                                                    "IFCBUILDING",
                                                    "IFCBUILDINGSTOREY",
                                                    "IFCBEAM",
                                                    "IFCCOLUMN",
                                                    "IFCMEMBER",
                                                    "IFCELEMENTASSEMBLY",
                                                    "IFCPROPERTYSET",
                                                    "IFCRELAGGREGATES",
                                                    "IFCRELDEFINESBYPROPERTIES",
                                                    "IFCRELCONTAINEDINSPATIALSTRUCTURE"};
  return rooted.contains(keyword);
}

struct Fault : std::runtime_error {
  using std::runtime_error::runtime_error;
};

class Reader {
 public:
  explicit Reader(std::string_view file) : file_(file) {}

  void read() {
    checkLineEnds();
    header();
    for (skip(); peek() == '#'; skip()) {
      instance();
    }
    word("ENDSEC;");
    word("END-ISO-10303-21;");
    skip();
    expect(at_ == file_.size(), "text after the trailer");
    for (const std::int64_t number : references_) {
      if (!numbers_.contains(number)) {
        throw Fault("reference to #" + std::to_string(number));
      }
    }
  }

 private:
  static constexpr std::int64_t firstGenerated = 5006;

  /// `fault` names what is missing or wrong.
  void expect(bool holds, std::string_view fault) const {
    if (!holds) {
      throw Fault(std::string(fault) + " at byte " + std::to_string(at_) + ": " +
                  std::string(file_.substr(at_ < 40 ? 0 : at_ - 40, 80)));
    }
  }

  char peek() const { return at_ < file_.size() ? file_[at_] : '\0'; }

  bool take(char c) {
    if (peek() != c) {
      return false;
    }
    ++at_;
    return true;
  }

  void need(char c) { expect(take(c), std::string_view(&c, 1)); }

  /// Blanks, line ends and comments.
  void skip() {
    for (;;) {
      if (peek() == ' ' || peek() == '\r' || peek() == '\n') {
        ++at_;
      } else if (file_.substr(at_, 2) == "/*") {
        const std::size_t end = file_.find("*/", at_ + 2);
        expect(end != std::string_view::npos, "comment without an end");
        at_ = end + 2;
      } else {
        return;
      }
    }
  }

  void word(std::string_view text) {
    skip();
    expect(file_.substr(at_, text.size()) == text, text);
    at_ += text.size();
  }

  void checkLineEnds() {
    for (at_ = 0; at_ < file_.size(); ++at_) {
      const char c = file_[at_];
      expect(c != '\n' || (at_ > 0 && file_[at_ - 1] == '\r'), "LF without CR");
      expect(c != '\r' || (at_ + 1 < file_.size() && file_[at_ + 1] == '\n'), "CR without LF");
      expect((c >= ' ' && c <= '~') || c == '\r' || c == '\n', "a byte that is not printable");
    }
    expect(file_.ends_with("\r\n"), "no line end at the end");
    at_ = 0;
  }

  void header() {
    word("ISO-10303-21;");
    word("HEADER;");
    for (const std::string_view entity : {"FILE_DESCRIPTION", "FILE_NAME", "FILE_SCHEMA"}) {
      word(entity);
      list();
      need(';');
    }
    word("ENDSEC;");
    word("DATA;");
  }

  void instance() {
    need('#');
    const std::int64_t number = integer();
    expect(numbers_.insert(number).second, "number given twice");
    if (number >= firstGenerated) {
      expect(number == nextGenerated_, "generated number out of order");
      ++nextGenerated_;
    }
    skip();
    need('=');
    skip();
    const std::string_view name = keyword();
    expect(name.starts_with("IFC"), "not an IFC entity");
    const std::size_t listStart = at_;
    list();
    need(';');
    if (isRooted(name)) {
      expect(file_.substr(listStart, 2) == "('" && file_[listStart + 24] == '\'', "no GlobalId");
      const std::string_view id = file_.substr(listStart + 2, 22);
      expect(isGlobalId(id), "malformed GlobalId");
      expect(globalIds_.insert(id).second, "GlobalId given twice");
    }
  }

  std::string_view keyword() {
    const std::size_t start = at_;
    while (isUpper(peek()) || (at_ > start && isDigit(peek()))) {
      ++at_;
    }
    expect(at_ > start, "no keyword");
    return file_.substr(start, at_ - start);
  }

  std::int64_t integer() {
    expect(isDigit(peek()), "no digit");
    std::int64_t value = 0;
    for (; isDigit(peek()); ++at_) {
      value = value * 10 + (peek() - '0');
      expect(value <= 0x7FFFFFFF, "number too large");
    }
    return value;
  }

  /// "(" values ")", also empty.
  void list() {
    need('(');
    skip();
    if (take(')')) {
      return;
    }
    do {
      skip();
      value();
      skip();
    } while (take(','));
    need(')');
  }

  void value() {
    switch (const char c = peek()) {
      case '$':
      case '*': ++at_; return;
      case '(': list(); return;
      case '#':
        ++at_;
        references_.push_back(integer());
        return;
      case '\'':
        ++at_;
        while (peek() != '\'') {
          expect(at_ < file_.size() && peek() != '\\' && peek() != '\r', "text without an end");
          ++at_;
        }
        ++at_;
        return;
      case '.':
        ++at_;
        keyword();
        need('.');
        return;
      default:
        if (isUpper(c)) {
          keyword();
          list();
        } else {
          number();
        }
    }
  }

  void number() {
    if (!take('-')) {
      take('+');
    }
    if (isDigit(peek())) {
      while (isDigit(peek())) {
        ++at_;
      }
      if (take('.')) {
        while (isDigit(peek())) {
          ++at_;
        }
      }
      return;
    }
    const bool notFinite = file_.substr(at_, 3) == "nan" || file_.substr(at_, 3) == "inf";
    expect(notFinite, "not a value");
    at_ += 3;
  }

  std::string_view file_;
  std::size_t at_ = 0;
  std::int64_t nextGenerated_ = firstGenerated;
  std::unordered_set<std::int64_t> numbers_;
  std::vector<std::int64_t> references_;
  std::unordered_set<std::string_view> globalIds_;
};

}  // namespace

std::string checkExchange(std::string_view file) {
  try {
    Reader(file).read();
  } catch (const Fault& fault) {
    return fault.what();
  }
  return {};
}

}  // namespace exportifc::fuzz
