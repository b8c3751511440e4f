// Many models, one after the other or side by side.
#pragma once

#include <cstddef>
#include <functional>

#include "cli/console.h"
#include "cli/failure.h"

namespace exportifc::cli {

/// What is done for the model of this number, counted from 0. Says why it fails on the console
/// that it is given, and throws only `Interrupted`.
using Job = std::function<ExitCode(std::size_t index, Console& console)>;

/// Both return the highest exit code; when the user stops them they say how far they came.
ExitCode runInTurn(std::size_t count, const Job& job, Console& console);

/// At most `limit` at a time, each in a thread. What a job says comes out in one piece, in the
/// order of the models. With `showsProgress` a line on the terminal counts the models.
ExitCode runSideBySide(std::size_t count, std::size_t limit, const Job& job, bool showsProgress,
                       Console& console);

}  // namespace exportifc::cli
