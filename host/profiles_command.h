// exportifc profiles
#pragma once

#include <string>

namespace exportifc::host {

struct ProfilesOptions {
  std::string family;     ///< empty: all
  std::string drawings;   ///< folder for the drawings; empty: none
  bool markdown = false;  ///< the page docs/profiles.md
};

int runProfilesCommand(const ProfilesOptions& options);

}  // namespace exportifc::host
