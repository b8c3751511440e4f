// What would go wrong with a model.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "library/frame/model.h"
#include "library/frame/problem.h"

namespace exportifc {

/// Millimetres below which a bar has no direction.
inline constexpr double shortestBar = 0.01;

/// Bars that an export does not leave out for their type or visibility.
bool isExported(const ModelBar& bar, bool visibleOnly);

/// Node indexes out of range, sections that are not defined, and shapes that no family draws: with
/// these, nothing can be exported.
std::vector<Problem> checkReferences(const Model& model);

/// Section texts with characters at which the file would end, of bars that are exported.
std::vector<Problem> checkCharacters(const Model& model, bool visibleOnly);

/// Every error and warning, in the order: references, what the reader found, characters, sections,
/// bars, the model as a whole. What is only unusual, `checkPlausibility` says.
std::vector<Problem> checkModel(const Model& model, bool visibleOnly);

/// Has shapes that no family draws come out as the rectangles around them, under their own names.
void drawBounds(Model& model);

/// What the reader found and left out, for a summary.
std::vector<Problem> notRead(const Model& model);

/// Writes what the file cannot hold as plain letters.
void transliterate(Model& model);

}  // namespace exportifc
