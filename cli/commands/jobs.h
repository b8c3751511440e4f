// Many models side by side.
#pragma once

#include <string>
#include <vector>

namespace exportifc::cli {

/// One model for a process of its own.
struct Job {
  std::string model;
  std::vector<std::string> arguments;  ///< of the program
};

/// Runs the jobs, at most `limit` at a time: the core exports one model at a time in a process.
/// What each says comes out in one piece, in the order of the jobs. Returns the highest exit code.
int runJobs(const std::vector<Job>& jobs, int limit, bool quiet);

}  // namespace exportifc::cli
