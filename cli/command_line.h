// The arguments of the program.
#pragma once

#include <string>
#include <vector>

namespace exportifc::cli {

/// Runs the command that the arguments (without the program's name) ask for; returns the exit code.
int runCommandLine(const std::vector<std::string>& arguments);

}  // namespace exportifc::cli
