#include "library/formats/json_places.h"

#include <map>
#include <optional>
#include <string_view>

#include <nlohmann/json.hpp>

#include "library/formats/json_model.h"
#include "library/frame/pointer.h"

namespace exportifc {

namespace {

constexpr std::size_t none = static_cast<std::size_t>(-1);

/// The wanted pointers as a tree, by their pieces.
class WantedTree {
 public:
  WantedTree() : nodes_(1) {}

  std::size_t add(std::string_view pointer) {
    std::size_t node = 0;
    while (!pointer.empty()) {
      pointer.remove_prefix(1);  // the slash
      const std::string_view piece = pointer.substr(0, pointer.find('/'));
      pointer.remove_prefix(piece.size());
      const auto [found, isNew] = nodes_[node].inner.try_emplace(std::string(piece), nodes_.size());
      const std::size_t next = found->second;
      if (isNew) {
        nodes_.push_back({.outer = node});
      }
      node = next;
    }
    return node;
  }

  /// The node of `piece` inside of `node`; none when it is not wanted.
  std::size_t inner(std::size_t node, const std::string& piece) const {
    if (node == none) {
      return none;
    }
    const auto found = nodes_[node].inner.find(piece);
    return found == nodes_[node].inner.end() ? none : found->second;
  }

  bool isLeaf(std::size_t node) const { return node == none || nodes_[node].inner.empty(); }

  void found(std::size_t node, TextPlace place) {
    if (node != none) {
      nodes_[node].place = place;
    }
  }

  TextPlace place(std::size_t node) const {
    while (nodes_[node].place.line == 0 && node != 0) {
      node = nodes_[node].outer;
    }
    return nodes_[node].place;
  }

 private:
  struct Node {
    std::map<std::string, std::size_t> inner{};
    std::size_t outer = 0;
    TextPlace place{};
  };
  std::vector<Node> nodes_;
};

/// Walks over the tokens; it trusts the text to be JSON as far as it counts.
class PlaceScanner {
 public:
  PlaceScanner(std::streambuf& text, TextPlace end, WantedTree& wanted)
      : text_(text), end_(end), wanted_(wanted) {}

  void run() {
    skipMark();
    for (char c = 0; skipBlanks() && peek(c);) {
      switch (c) {
        case ',':
          take();
          if (!around_.empty() && around_.back().isArray) {
            ++around_.back().index;
          }
          break;
        case ':':
          take();
          atValue_ = true;
          break;
        case ']':
        case '}':
          take();
          if (around_.empty()) {
            return;
          }
          around_.pop_back();
          break;
        default:
          if (!token(c)) {
            return;
          }
      }
    }
  }

 private:
  struct Around {
    bool isArray = false;
    std::size_t node = none;
    std::size_t index = 0;      // array: of the item at hand
    std::size_t member = none;  // object: node of the key at hand
  };

  /// A key, or a value's first character and the whole of a scalar. False when the text is no JSON.
  bool token(char first) {
    const TextPlace place = place_;
    const bool isKey = !around_.empty() && !around_.back().isArray && !atValue_;
    if (isKey) {
      std::string name;
      if (!quoted(name)) {
        return false;
      }
      Around& object = around_.back();
      object.member = wanted_.inner(object.node, pointerPiece(name));
      wanted_.found(object.member, place);
      return true;
    }
    const std::size_t node = nodeHere();
    wanted_.found(node, place);
    atValue_ = false;
    if (first == '{' || first == '[') {
      take();
      around_.push_back({.isArray = first == '[', .node = node});
      return true;
    }
    std::string ignored;
    return first == '"' ? quoted(ignored) : bare();
  }

  std::size_t nodeHere() const {
    if (around_.empty()) {
      return 0;
    }
    const Around& here = around_.back();
    if (!here.isArray) {
      return here.member;
    }
    return wanted_.isLeaf(here.node) ? none : wanted_.inner(here.node, std::to_string(here.index));
  }

  /// A text in quotes and its content.
  bool quoted(std::string& content) {
    char c = 0;
    if (!peek(c) || c != '"') {
      return false;
    }
    std::string raw;
    bool escapes = false;
    do {
      raw += take();
      if (raw.back() == '\\') {
        escapes = true;
        if (!peek(c)) {
          return false;
        }
        raw += take();
      }
    } while (peek(c) && c != '"');
    if (!peek(c)) {
      return false;
    }
    raw += take();
    if (!escapes) {
      content = raw.substr(1, raw.size() - 2);
      return true;
    }
    const auto parsed = nlohmann::json::parse(raw, nullptr, false);
    content = parsed.is_string() ? parsed.get<std::string>() : std::string();
    return true;
  }

  /// A number, true, false, null.
  bool bare() {
    bool any = false;
    for (char c = 0;
         peek(c) && std::string_view(" \t\r\n,:]}[{\"").find(c) == std::string_view::npos;) {
      take();
      any = true;
    }
    return any;
  }

  bool skipBlanks() {
    for (char c = 0; peek(c); take()) {
      if (c != ' ' && c != '\t' && c != '\r' && c != '\n') {
        return true;
      }
    }
    return false;
  }

  /// The mark that some editors put before UTF-8 is no character.
  void skipMark() {
    if (text_.sgetc() == 0xEF) {
      for (int i = 0; i < 3; ++i) {
        text_.sbumpc();
      }
    }
  }

  bool peek(char& c) const {
    const bool isOver =
        end_.line > 0 && (place_.line > end_.line || (place_.line == end_.line && end_.column > 0 &&
                                                      place_.column > end_.column));
    const auto next = text_.sgetc();
    c = std::char_traits<char>::to_char_type(next);
    return !isOver && next != std::char_traits<char>::eof();
  }

  char take() {
    const char c = std::char_traits<char>::to_char_type(text_.sbumpc());
    if (c == '\n') {
      ++place_.line;
      place_.column = 1;
    } else if ((static_cast<unsigned char>(c) & 0xC0U) != 0x80U) {
      ++place_.column;
    }
    return c;
  }

  std::streambuf& text_;
  TextPlace end_;
  WantedTree& wanted_;
  TextPlace place_{.line = 1, .column = 1};
  bool atValue_ = false;  // behind a colon
  std::vector<Around> around_;
};

}  // namespace

std::vector<TextPlace> placesOf(std::streambuf& text, const std::vector<std::string>& pointers,
                                TextPlace end) {
  WantedTree wanted;
  std::vector<std::size_t> nodes;
  nodes.reserve(pointers.size());
  for (const std::string& pointer : pointers) {
    nodes.push_back(wanted.add(pointer));
  }
  PlaceScanner(text, end, wanted).run();
  std::vector<TextPlace> places;
  places.reserve(nodes.size());
  for (const std::size_t node : nodes) {
    places.push_back(wanted.place(node));
  }
  return places;
}

void locateInJson(std::streambuf* text, std::vector<Problem>& problems, TextPlace readTo) {
  const bool ended = readTo.line > 0;
  if (text != nullptr && !problems.empty()) {
    std::vector<std::string> pointers;
    pointers.reserve(problems.size());
    for (const Problem& problem : problems) {
      pointers.push_back(problem.pointer);
    }
    const std::vector<TextPlace> places = placesOf(*text, pointers, readTo);
    for (std::size_t i = 0; i < problems.size(); ++i) {
      // The model as a whole has no line, but where its reading ended has.
      if (problems[i].place.line == 0 && (ended || !problems[i].pointer.empty())) {
        problems[i].place = places[i];
      }
    }
  }
  for (Problem& problem : problems) {
    if (problem.place.line == 0) {
      problem.place.line = readTo.line;
    }
  }
}

}  // namespace exportifc
