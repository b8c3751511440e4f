// What the program says on its two streams.
#pragma once

#include <string>

#include "cli/failure.h"
#include "cli/messages.h"

namespace exportifc::cli {

/// One line on standard output. Throws a Failure when nobody can read it any more.
void printLine(const std::string& line);

/// One line on standard error.
void printError(const std::string& line);

/// "exportifc: error: …", "exportifc: warning: …" on standard error.
void reportError(const std::string& message);
void reportWarning(const std::string& message);

/// Why a command ended, on standard error.
void reportFailure(const Failure& failure);

}  // namespace exportifc::cli
