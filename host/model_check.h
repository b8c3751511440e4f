// What would go wrong with a model.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/model.h"

namespace exportifc::host {

/// One problem, once for all bars that have it.
struct Problem {
  const char* code = "";        ///< for programs
  bool isError = true;          ///< false: the file is sound, but perhaps not what was meant
  std::string message{};        ///< in the user's language
  std::int32_t section = -1;    ///< index into the model's sections
  std::int32_t dimension = -1;  ///< index into its dimensions
  std::int32_t bars = 0;        ///< how many bars; 0: the model as a whole
  std::int32_t firstBar = -1;   ///< index
};

/// Bars that an export writes.
bool isExported(const ModelBar& bar, bool visibleOnly);

/// Node indexes out of range and sections that are not defined: with these, nothing can be
/// exported.
std::vector<Problem> checkReferences(const Model& model);

/// Section texts with characters at which the file would end, of bars that are exported.
std::vector<Problem> checkCharacters(const Model& model, bool visibleOnly);

/// Everything, in the order: references, characters, sections, bars, the model as a whole.
std::vector<Problem> checkModel(const Model& model, bool visibleOnly);

/// "bar 7 (/bars/6)", or without the pointer for a batch text file.
std::string barText(const Model& model, std::int32_t index);

/// The problem as one line for people: its bars, then its message.
std::string problemText(const Model& model, const Problem& problem);

/// Writes what the file cannot hold as plain letters.
void transliterate(Model& model);

}  // namespace exportifc::host
