// exportifc check
#pragma once

#include <string>
#include <vector>

namespace exportifc::cli {

struct CheckOptions {
  std::vector<std::string> models;
  bool visibleOnly = false;
  bool notes = true;  ///< also say what is only unusual
  bool json = false;  ///< for programs
};

/// Says what would go wrong, without writing a file.
int runCheckCommand(const CheckOptions& options);

}  // namespace exportifc::cli
