#include "library/sections/section_text.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <span>

#include "library/sections/section_catalogue.h"
#include "library/text/messages.h"
#include "model/batch_source.h"

namespace exportifc {

namespace {

constexpr std::string_view blanks = " \t\n\v\f\r";
constexpr std::string_view noBreakSpace = "\xC2\xA0";
constexpr std::string_view timesSign = "\xC3\x97";

bool isDigit(char c) { return c >= '0' && c <= '9'; }

std::size_t digitsFrom(std::string_view text, std::size_t at) {
  return std::min(text.find_first_not_of("0123456789", at), text.size());
}

/// How much of `text` the export reads as a number; 0: nothing. A point is a decimal sign like the
/// comma, except in words with "x".
std::size_t numberLength(std::string_view text, bool pointCounts) {
  const std::size_t sign = !text.empty() && (text[0] == '-' || text[0] == '+') ? 1 : 0;
  std::size_t at = digitsFrom(text, sign);
  std::size_t digits = at - sign;
  if (at < text.size() && (text[at] == ',' || (pointCounts && text[at] == '.'))) {
    const std::size_t end = digitsFrom(text, at + 1);
    digits += end - at - 1;
    at = end;
  }
  if (digits == 0) {
    return 0;
  }
  if (at < text.size() && (text[at] == 'e' || text[at] == 'E')) {
    const bool signedPower = at + 1 < text.size() && (text[at + 1] == '-' || text[at + 1] == '+');
    const std::size_t power = at + (signedPower ? 2 : 1);
    const std::size_t end = digitsFrom(text, power);
    at = power < text.size() && end > power ? end : at;
  }
  return at;
}

bool isNumber(std::string_view text) {
  return !text.empty() && numberLength(text, true) == text.size();
}

std::vector<std::string_view> wordsOf(std::string_view text) {
  std::vector<std::string_view> words;
  for (std::size_t at = 0; (at = text.find_first_not_of(blanks, at)) < text.size();) {
    const std::size_t end = std::min(text.find_first_of(blanks, at), text.size());
    words.push_back(text.substr(at, end - at));
    at = end;
  }
  return words;
}

std::string upper(std::string_view word) {
  std::string text(word);
  std::transform(text.begin(), text.end(), text.begin(), [](char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  });
  return text;
}

void replaceAll(std::string& text, std::string_view what, std::string_view by) {
  for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += by.size()) {
    text.replace(at, what.size(), by);
  }
}

/// The longest family word at the beginning of `word` behind which a number follows at once or
/// after one other character; with the number.
struct FamilyAndNumber {
  const Family* family = nullptr;
  std::string_view number{};
};

FamilyAndNumber splitFamily(std::string_view word) {
  FamilyAndNumber found;
  const std::string capitals = upper(word);
  for (const Family& family : families()) {
    const std::size_t length = family.word.size();
    if (family.parts.empty() || !capitals.starts_with(family.word) ||
        (found.family != nullptr && found.family->word.size() >= length)) {
      continue;
    }
    std::string_view rest = word.substr(length);
    constexpr std::string_view separators = "-_:;=/";
    if (rest.size() > 1 && separators.find(rest[0]) != std::string_view::npos) {
      rest.remove_prefix(1);
    }
    if (!rest.empty() && isDigit(rest[0])) {
      found = {.family = &family, .number = rest};
    }
  }
  return found;
}

/// The numbers of "200x100*8mm"; false when there is something else in it.
bool takeNumbers(std::string_view word, std::vector<std::string>& numbers) {
  // Of two commas, one at least is no decimal sign.
  const std::string_view separators =
      std::count(word.begin(), word.end(), ',') > 1 ? "xX*;-," : "xX*;-";
  std::size_t from = 0;
  for (std::size_t at = 0; at <= word.size(); ++at) {
    const bool ends =
        at == word.size() || (separators.find(word[at]) != std::string_view::npos && at > from &&
                              (word[at] != '-' || isDigit(word[at - 1])));
    if (!ends) {
      continue;
    }
    std::string_view piece = word.substr(from, at - from);
    from = at + 1;
    if (piece.ends_with("mm") || piece.ends_with("MM")) {
      piece.remove_suffix(2);
    }
    if (piece.empty() && at == word.size()) {
      break;  // "200x": the next word goes on
    }
    if (!isNumber(piece)) {
      return false;
    }
    std::string number(piece);
    if (looksGrouped(number)) {
      number.erase(number.find_first_of(".,"), 1);
    }
    numbers.push_back(std::move(number));
  }
  return true;
}

int lastDimension(const Family& family) {
  return family.dimensions.empty() ? -1 : family.dimensions.back().index;
}

/// Words that engineers use for shapes, and the entities of the families that have the shape.
struct ShapeWord {
  std::string_view word;
  std::string_view entity;
  std::string_view otherEntity{};
};

constexpr ShapeWord shapeWords[] = {
    {"I", "IFCISHAPEPROFILEDEF"},
    {"H", "IFCISHAPEPROFILEDEF"},
    {"IPN", "IFCISHAPEPROFILEDEF"},
    {"INP", "IFCISHAPEPROFILEDEF"},
    {"UB", "IFCISHAPEPROFILEDEF"},
    {"UC", "IFCISHAPEPROFILEDEF"},
    {"U", "IFCUSHAPEPROFILEDEF", "IFCCSHAPEPROFILEDEF"},
    {"UPN", "IFCUSHAPEPROFILEDEF"},
    {"UPE", "IFCUSHAPEPROFILEDEF"},
    {"UNP", "IFCUSHAPEPROFILEDEF"},
    {"UE", "IFCCSHAPEPROFILEDEF"},
    {"C", "IFCCSHAPEPROFILEDEF", "IFCUSHAPEPROFILEDEF"},
    {"T", "IFCTSHAPEPROFILEDEF"},
    {"RHS", "IFCRECTANGLEHOLLOWPROFILEDEF"},
    {"SHS", "IFCRECTANGLEHOLLOWPROFILEDEF"},
    {"CHS", "IFCCIRCLEHOLLOWPROFILEDEF"},
    {"PIPE", "IFCCIRCLEHOLLOWPROFILEDEF"},
    {"D", "IFCCIRCLEPROFILEDEF"},
    {"CH", "IFCRECTANGLEPROFILEDEF"},
    {"FB", "IFCRECTANGLEPROFILEDEF"},
    {"PL", "IFCRECTANGLEPROFILEDEF"},
    {"R", "IFCRECTANGLEPROFILEDEF"},
};

/// "; families of this shape: W, IPE", or nothing.
std::string sameShape(const std::string& word) {
  const auto* const known =
      std::find_if(std::begin(shapeWords), std::end(shapeWords),
                   [&](const ShapeWord& shape) { return shape.word == upper(word); });
  if (known == std::end(shapeWords)) {
    return {};
  }
  std::string list;
  for (const std::string_view entity : {known->entity, known->otherEntity}) {
    for (const Family& family : families()) {
      if (family.parts.size() == 1 && profileEntity(family) == entity) {
        list += (list.empty() ? "" : ", ") + family.word;
      }
    }
  }
  return say(texts::adviceShape, {list});
}

/// The letters before the first digit.
std::string lettersOf(std::string_view word) {
  return std::string(word.substr(0, word.find_first_of("0123456789")));
}

}  // namespace

std::vector<SectionPiece> sectionPieces(std::string_view text) {
  std::vector<SectionPiece> pieces;
  std::vector<std::string_view> words = wordsOf(text);
  int index = 0;
  for (std::size_t i = 1; i < words.size(); ++i) {
    const std::string_view word = words[i];
    if (word == "x") {
      continue;
    }
    const bool hasCross = word.find('x') != std::string_view::npos;
    for (std::size_t from = 0; from <= word.size();) {
      const std::size_t cross = word.find('x', from);
      const std::size_t end = std::min(cross, word.size());
      SectionPiece piece{
          .text = word.substr(from, end - from), .rest = {}, .word = word, .index = index};
      if (hasCross && cross == std::string_view::npos) {
        piece.kind = SectionPiece::Kind::dropped;
      } else {
        const std::size_t length = numberLength(piece.text, !hasCross);
        piece.rest = piece.text.substr(length);
        piece.kind = length == 0          ? SectionPiece::Kind::notANumber
                     : piece.rest.empty() ? SectionPiece::Kind::number
                                          : SectionPiece::Kind::cut;
        ++index;
      }
      if (piece.kind != SectionPiece::Kind::dropped || !piece.text.empty()) {
        pieces.push_back(piece);
      }
      from = end + 1;
    }
  }
  return pieces;
}

std::string millimetreText(double value) {
  // Without grouped thousands: texts that people copy must not have them.
  constexpr int decimals = 3;
  char buffer[64];
  const auto end =
      std::to_chars(buffer, buffer + sizeof(buffer), value, std::chars_format::fixed, decimals);
  std::string text(buffer, end.ptr);
  text.erase(text.find_last_not_of('0') + 1);
  if (text.ends_with('.')) {
    text.pop_back();
  }
  return withDecimalSign(std::move(text));
}

bool looksGrouped(std::string_view number) {
  // Above 3 m a grouped number would be no dimension either: "76.200" is three inches.
  constexpr std::size_t length = 5;
  return number.size() == length && number[0] >= '1' && number[0] <= '3' &&
         (number[1] == '.' || number[1] == ',') && digitsFrom(number, 2) == length &&
         (number[0] < '3' || number.substr(2) == "000");
}

namespace {

/// The words as the family and its dimensions; empty when they are no such thing.
std::string asSection(std::span<const std::string_view> words) {
  std::vector<std::string> numbers;
  const Family* family = findFamilyWord(upper(words.front()));
  if (family == nullptr) {
    const FamilyAndNumber split = splitFamily(words.front());
    family = split.family;
    if (family == nullptr || !takeNumbers(split.number, numbers)) {
      return {};
    }
  }
  for (const std::string_view word : words.subspan(1)) {
    const bool isRemark = static_cast<int>(numbers.size()) > lastDimension(*family);
    if (isRemark) {
      numbers.emplace_back(word);
    } else if (word != "x" && word != "X" && !takeNumbers(word, numbers)) {
      return {};
    }
  }
  std::string section = family->word;
  for (const std::string& number : numbers) {
    section += " " + number;
  }
  return section;
}

}  // namespace

std::string correctedText(const std::string& text) {
  std::string plain = text;
  replaceAll(plain, noBreakSpace, " ");
  replaceAll(plain, timesSign, "x");
  std::vector<std::string_view> words = wordsOf(plain);
  if (words.empty()) {
    return {};
  }
  std::string corrected = asSection(words);
  if (corrected.empty() && words.size() > 1) {
    // "2 L 75", "PERFIL W 200", "200 100 W"
    const std::string joined = std::string(words[0]).append(words[1]);
    const bool isJoined = findFamilyWord(upper(joined)) != nullptr;
    std::vector<std::string_view> others(words.begin() + 1, words.end());
    if (isJoined) {
      others.front() = joined;
    } else if (words.size() == 2 || findFamilyWord(words[1]) == nullptr) {
      others.assign(words.begin(), words.end() - 1);
      others.insert(others.begin(), words.back());
    }
    corrected = findFamilyWord(upper(others.front())) == nullptr ? "" : asSection(others);
  }
  return corrected == text ? std::string() : corrected;
}

std::string stillMissing(const std::string& text) {
  const Family* const family = findFamilyWord(text.substr(0, text.find(' ')));
  const auto given = static_cast<int>(sectionPieces(text).size());
  std::string missing;
  for (const DimensionUse& use : family->dimensions) {
    if (use.index >= given && !use.mayBeZero && !family->secondSideAnywhere) {
      missing += (missing.empty() ? "" : ", ") + dimensionText(*family, use.index);
    }
  }
  return missing.empty() ? missing : say(texts::adviceStillMissing, {missing});
}

std::string familyAdvice(const std::string& text) {
  const std::string word = text.substr(0, text.find(' '));
  const std::string corrected = correctedText(text);
  const std::string meant = corrected.substr(0, corrected.find(' '));
  std::string reason;
  if (word.empty()) {
    reason = say(texts::adviceLeadingBlank);
  } else if (word.find_first_of(blanks) != std::string::npos ||
             word.find(noBreakSpace) != std::string::npos) {
    reason = say(texts::adviceOtherBlank);
  } else if (!meant.empty() && upper(word) == meant) {
    reason = say(texts::adviceCase);
  } else if (!meant.empty() && upper(word).starts_with(meant)) {
    reason = say(texts::adviceBlankMissing, {meant});
  }
  if (!corrected.empty() && corrected == meant) {
    return say(texts::didYouMean, {meant});  // a family word alone
  }
  if (!corrected.empty()) {
    return reason + say(texts::adviceWrite, {corrected}) + stillMissing(corrected);
  }
  const std::string letters = lettersOf(word);
  std::string shape = sameShape(letters.empty() ? word : letters);
  if (!shape.empty()) {
    return shape;
  }
  std::string near = nearestFamily(word);
  near = near.empty() ? nearestFamily(letters) : near;
  return near.empty() ? reason : reason + say(texts::didYouMean, {near});
}

std::string dimensionText(const Family& family, int index) {
  const auto use = std::find_if(family.dimensions.begin(), family.dimensions.end(),
                                [&](const DimensionUse& one) { return one.index == index; });
  const std::string name = "d" + std::to_string(index);
  return use == family.dimensions.end() ? name : name + " (" + meaningText(use->meaning) + ")";
}

}  // namespace exportifc
