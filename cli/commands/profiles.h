// exportifc profiles
#pragma once

#include <string>
#include <vector>

namespace exportifc::cli {

struct ProfilesOptions {
  /// A family word, or a section text, in one argument or several; empty: all families.
  std::vector<std::string> words;
  std::string drawings;   ///< folder for the drawings; empty: none
  bool markdown = false;  ///< the page docs/profiles.md
};

int runProfilesCommand(const ProfilesOptions& options);

}  // namespace exportifc::cli
