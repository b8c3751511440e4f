// What a model file says wrongly, and where.
#pragma once

#include <cstdint>
#include <string>

namespace exportifc {

/// Where in a text something stands, both from 1; 0 when it is not known.
struct TextPlace {
  std::int64_t line = 0;
  std::int64_t column = 0;  ///< in characters
};

enum class Severity : std::uint8_t {
  error,    ///< a bar or the file comes out wrong
  warning,  ///< the file is sound, but perhaps not what was meant
  note,     ///< unusual; alone it is no problem
};

/// One problem, once for all bars that have it.
struct Problem {
  const char* code = "";  ///< for programs
  Severity severity = Severity::error;
  std::string message{};  ///< in the user's language
  /// JSON pointer of the value; empty for the model as a whole. In a batch text file the lines are
  /// counted from the pointer that the value would have in a JSON model.
  std::string pointer{};
  TextPlace place{};            ///< `locate` fills it in
  std::string cell{};           ///< in a workbook, instead of line and column: "bars!C12"
  std::string file{};           ///< in a folder of tables, the one that has the place: "bars.csv"
  std::string value{};          ///< what stands there, where it is one value
  std::string allowed{};        ///< what may stand there
  std::string suggestion{};     ///< what was probably meant
  std::int32_t section = -1;    ///< index into the model's sections
  std::int32_t dimension = -1;  ///< index into its dimensions
  std::int32_t bars = 0;        ///< how many bars; 0: the model as a whole
  std::int32_t firstBar = -1;   ///< index
};

/// Something in a file that the model does not carry over.
inline constexpr const char* notReadCode = "not-read";

inline bool isNote(const Problem& problem) { return problem.severity == Severity::note; }

}  // namespace exportifc
