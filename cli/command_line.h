// From the arguments to the exit code.
#pragma once

#include <span>

#include "cli/arguments.h"
#include "cli/command.h"
#include "cli/console.h"
#include "cli/failure.h"

namespace exportifc::cli {

/// Runs that of the commands that the arguments ask for.
ExitCode runCommandLine(std::span<MakeCommand* const> commands, const Arguments& arguments,
                        Console& console);

}  // namespace exportifc::cli
