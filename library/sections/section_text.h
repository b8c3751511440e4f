// A section text piece by piece, with what the export makes of each.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace exportifc {

struct Family;

/// Something behind the family word.
struct SectionPiece {
  enum class Kind : std::uint8_t {
    number,
    notANumber,  ///< "oito": read as 0
    cut,         ///< "6mm": read up to `rest`
    dropped,     ///< "6" in "200x100x6": not read at all
  };
  Kind kind = Kind::number;
  std::string_view text;  ///< into the section text
  std::string_view rest;  ///< of a cut one: what is not read
  std::string_view word;  ///< in which it stands; longer than `text` when pieces are glued by "x"
  int index = 0;          ///< of the dimension that it gives, or that a dropped one would give

  bool isGlued() const { return word.size() != text.size(); }
};

/// The pieces in their order; they point into `text`.
std::vector<SectionPiece> sectionPieces(std::string_view text);

/// A dimension for people: "200", "8.5".
std::string millimetreText(double value);

/// "1.200" or "1,200": read as 1.2, but it may mean 1200 to people who group thousands.
bool looksGrouped(std::string_view number);

/// The text as it was probably meant: a known family word, single blanks, plain numbers. Empty when
/// that cannot be said. Dimensions that the family reads may still be missing.
std::string correctedText(const std::string& text);

/// What a corrected text still lacks: ", and also d3 (thickness)"; empty when nothing.
std::string stillMissing(const std::string& text);

/// What to do about a text whose family word is not known, as the end of a sentence: why it is
/// not, what to write instead, or the nearest word. Empty when there is nothing to say.
std::string familyAdvice(const std::string& text);

/// The name of a dimension of the family with what it measures: "d2 (flange thickness)".
std::string dimensionText(const Family& family, int index);

}  // namespace exportifc
