// The commands of the program: each adds itself, with its options.
#pragma once

#include "cli/command.h"

namespace exportifc::cli {

Command addExport(CLI::App& program);
Command addCheck(CLI::App& program);
Command addProfiles(CLI::App& program);
Command addConvert(CLI::App& program);
Command addView(CLI::App& program);

}  // namespace exportifc::cli
