#include "library/frame/section_check.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <iterator>
#include <utility>

#include "library/frame/pointer.h"
#include "library/sections/rolled_sections.h"
#include "library/sections/section_catalogue.h"
#include "library/sections/section_text.h"
#include "library/text/messages.h"
#include "library/text/text_encoding.h"
#include "model/batch_source.h"
#include "step/number_format.h"

namespace exportifc {

namespace {

using Kind = SectionPiece::Kind;

constexpr std::size_t longestText = sizeof(BarRecord::sectionName) - 1;

/// The dimension as it reads in the file, where a tiny one is 0.
double asWritten(double value) {
  std::array<char, fixed5Capacity> text{};
  const char* const end = putFixed5(text.data(), value);
  double read = value;
  std::from_chars(text.data(), end, read);
  return read;
}

class SectionCheck {
 public:
  SectionCheck(const ModelSection& section, const Problem& place)
      : section_(section), place_(place) {}

  std::vector<Problem> run() {
    const std::string& text = section_.text;
    checkText();
    const std::string word = text.substr(0, text.find(' '));
    const Family* const family = findFamilyWord(word);
    if (text.find_first_not_of(' ') == std::string::npos) {
      add("empty-section", say(texts::problemEmptySection));
    } else if (family == nullptr) {
      add("unknown-family",
          say(texts::problemFamily, {withVisibleBlanks(word)}) + familyAdvice(text));
    } else if (family->parts.empty()) {
      add("family-without-profile", say(texts::problemNoProfile, {word}));
    } else {
      if (readsText()) {
        checkPieces(*family);
      }
      checkDimensions(*family);
    }
    return std::move(problems_);
  }

 private:
  Problem& add(const char* code, std::string message, int dimension = -1) {
    Problem problem = place_;
    problem.code = code;
    problem.message = std::move(message);
    problem.dimension = dimension;
    if (dimension >= 0 && !readsText() && !place_.pointer.empty()) {
      problem.pointer = sectionPointer(section_) + "/dims";
      if (dimension < section_.givenDims) {
        problem.pointer += "/" + std::to_string(dimension);
      }
    }
    return problems_.emplace_back(std::move(problem));
  }

  bool readsText() const { return section_.givenDims < 0; }

  void checkText() {
    const std::string& text = section_.text;
    if (!fitsRecord(section_)) {
      add("text-too-long", say(texts::problemTooLong,
                               {text, std::to_string(text.size()), std::to_string(longestText)}));
    }
    if (text.find_first_of("'\\") != std::string::npos) {
      add("quote-character", say(texts::problemQuote, {text}));
    }
    if (text.find("*/") != std::string::npos) {
      add("comment-end", say(texts::problemComment, {text}));
    }
    if (std::any_of(text.begin(), text.end(),
                    [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7F'; })) {
      add("control-character", say(texts::problemControl));
    }
  }

  static bool reads(const Family& family, int index) {
    const auto& uses = family.dimensions;
    return std::any_of(uses.begin(), uses.end(),
                       [&](const DimensionUse& use) { return use.index == index; }) ||
           (family.secondSideAnywhere && index >= 1 && index <= 3);
  }

  /// Whether the dimension measures the whole section. Only then a number of 1 to 3 is suspicious.
  static bool isOverall(const Family& family, int index) {
    return std::any_of(
        family.dimensions.begin(), family.dimensions.end(),
        [&](const DimensionUse& use) { return use.index == index && measuresWhole(use.meaning); });
  }

  /// What the export reads otherwise than it is written.
  void checkPieces(const Family& family) {
    const std::vector<SectionPiece> pieces = sectionPieces(section_.text);
    given_ = 0;
    for (const SectionPiece& piece : pieces) {
      given_ += piece.kind == Kind::dropped ? 0 : 1;
      const bool isFine = piece.kind == Kind::number &&
                          !(looksGrouped(piece.text) && isOverall(family, piece.index));
      // What is not read moves all that follows.
      const bool counts = piece.kind == Kind::dropped
                              ? piece.index <= family.dimensions.back().index
                              : reads(family, piece.index);
      if (!isFine && counts && !isGlued_) {
        checkPiece(family, piece);
      }
    }
  }

  void checkPiece(const Family& family, const SectionPiece& piece) {
    const std::string name = dimensionText(family, piece.index);
    const std::string text(piece.text);
    const std::string read =
        piece.kind == Kind::dropped ? std::string() : millimetreText(valueAt(piece.index));
    const bool joins = piece.isGlued() || joinsNumbers(piece);
    isGlued_ |= joins;  // which explains what is wrong behind it
    unread_[static_cast<std::size_t>(piece.index)] = true;
    if (joins) {
      const std::string corrected = correctedText(section_.text);
      const std::string word(piece.word);
      add("glued-dimensions",
          (piece.kind == Kind::dropped
               ? say(texts::problemGlued, {section_.text, word, text})
               : say(texts::problemGluedCut, {section_.text, word, text, read})) +
              (corrected.empty()
                   ? std::string(say(texts::adviceBlanks))
                   : say(texts::adviceWriteBlanks, {corrected}) + stillMissing(corrected)),
          piece.index);
    } else if (piece.kind == Kind::notANumber) {
      add("not-a-number", say(texts::problemNotANumber, {section_.text, name, text}), piece.index);
    } else if (piece.kind == Kind::cut) {
      const bool isRight = piece.rest == "mm" || piece.rest == ";";
      add("number-cut",
          say(texts::problemNumberCut, {section_.text, name, text, read}) + cutAdvice(piece.rest),
          piece.index)
          .severity = isRight ? Severity::warning : Severity::error;
    } else {
      std::string grouped = text;
      grouped.erase(1, 1);
      add("grouped-thousands",
          say(texts::problemGrouped,
              {section_.text, name, text, millimetreText(valueAt(piece.index)), grouped}),
          piece.index)
          .severity = Severity::warning;
      unread_[static_cast<std::size_t>(piece.index)] = false;
    }
  }

  /// Whether "200X100", "200*100" or "200,100,8" has what people write between two dimensions.
  static bool joinsNumbers(const SectionPiece& piece) {
    const std::string_view rest = piece.rest;
    if (!rest.empty() && std::count(piece.text.begin(), piece.text.end(), ',') > 1) {
      return true;
    }
    constexpr std::string_view signs[] = {"X", "*", ";", "-", "\xC3\x97"};
    return std::any_of(std::begin(signs), std::end(signs), [&](std::string_view sign) {
      return rest.size() > sign.size() && rest.starts_with(sign) && rest[sign.size()] >= '0' &&
             rest[sign.size()] <= '9';
    });
  }

  static std::string cutAdvice(std::string_view rest) {
    if (rest[0] == '.' || rest[0] == ',') {
      return say(texts::adviceNoThousands);
    }
    return say(texts::adviceMillimetres);
  }

  double valueAt(int index) const { return double{section_.dims[static_cast<std::size_t>(index)]}; }

  /// A dimension behind the last one that is given, in the text or in the list.
  bool isMissing(int index) const { return index >= (readsText() ? given_ : section_.givenDims); }

  void checkDimensions(const Family& family) {
    for (const DimensionUse& use : family.dimensions) {
      const double value = asWritten(dimensionValue(use.from, section_.dims));
      const bool anySide = use.from == Dimension::rectangleSide;
      const std::string name = "d" + std::to_string(use.index);
      const std::string order = anySide ? say(texts::adviceSecondSide, {say(texts::secondSide)})
                                        : say(texts::adviceOrder, {family.word, orderOf(family)});
      if (!std::isfinite(value)) {
        add("not-finite", say(texts::problemNotFinite, {name, meaningText(use.meaning)}),
            use.index);
      } else if (unread_[static_cast<std::size_t>(use.index)] || value > 0.0 ||
                 (value == 0.0 && use.mayBeZero)) {
        continue;
      } else if (value == 0.0 && isMissing(anySide ? 1 : use.index)) {
        if (!isGlued_) {  // what is glued is not missing
          add("missing-dimension",
              say(texts::problemMissing, {section_.text, name, meaningText(use.meaning)}) +
                  (std::exchange(saidOrder_, true) ? std::string() : order),
              use.index);
        }
      } else {
        add("not-positive",
            say(texts::problemNegative,
                {section_.text, name, meaningText(use.meaning), millimetreText(value)}) +
                (anySide ? order : std::string()),
            use.index);
      }
    }
  }

  static std::string orderOf(const Family& family) {
    std::string order;
    for (const DimensionUse& use : family.dimensions) {
      order += (order.empty() ? "" : ", ") + dimensionText(family, use.index);
    }
    return order;
  }

  const ModelSection& section_;
  const Problem& place_;
  std::vector<Problem> problems_{};
  int given_ = 0;  // pieces of the text
  bool saidOrder_ = false;
  bool isGlued_ = false;
  std::array<bool, SectionDims{}.size()> unread_{};  // said already: not what is written
};

}  // namespace

bool fitsRecord(const ModelSection& section) { return section.text.size() <= longestText; }

bool isFromCatalogue(const ModelSection& section) {
  const RolledSection* const rolled =
      section.catalogue.empty() ? nullptr : findRolledSection(section.catalogue);
  return rolled != nullptr && sectionText(*rolled) == section.text &&
         section.dims == parseSectionDims(section.text);
}

std::vector<Problem> checkSection(const ModelSection& section, const Problem& place) {
  return SectionCheck(section, place).run();
}

}  // namespace exportifc
