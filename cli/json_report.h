// What a command did, as one JSON object for programs.
#pragma once

#include <functional>
#include <string>

#include "cli/console.h"
#include "cli/failure.h"

namespace exportifc::cli {

using ReportedAction = std::function<ExitCode(Console& console)>;

/// Runs `action` and prints the one object on `output`, however it ends. Throws a Failure when
/// that is not taken.
ExitCode reportAsJson(Console& output, const ReportedAction& action);

/// Runs `action` for one of several models: for programs what it says becomes an object of the
/// list "models". Lets `Interrupted` pass.
ExitCode reportModel(Console& console, const std::string& model, const ReportedAction& action);

}  // namespace exportifc::cli
