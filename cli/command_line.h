// From the arguments to the exit code.
#pragma once

#include "cli/arguments.h"
#include "cli/console.h"
#include "cli/failure.h"

namespace exportifc::cli {

/// Runs the command that the arguments ask for.
ExitCode runCommandLine(const Arguments& arguments, Console& console);

}  // namespace exportifc::cli
