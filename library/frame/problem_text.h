// Problems in words.
#pragma once

#include <cstdint>
#include <string>

#include "library/frame/model.h"
#include "library/frame/problem.h"
#include "library/text/text.h"

namespace exportifc {

/// "bar 7 (/bars/6)", or without the pointer for a batch text file.
std::string barText(const Model& model, std::int32_t index);

/// The message, behind its pointer if it has one.
std::string withPointer(const Problem& problem, const std::string& message);

/// What people read behind place and severity: the pointer, the bars, the message.
std::string problemText(const Model& model, const Problem& problem);

/// "model.json:12:7: error: …", with what of the place is known, without a name when it is empty.
std::string placedLine(const std::string& name, const Problem& problem, const std::string& text);

/// The word for people, in their language.
std::string severityText(Severity severity);

/// The word for programs: "error", "warning", "note".
const char* severityCode(Severity severity);

}  // namespace exportifc
