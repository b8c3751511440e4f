// exportifc view
#pragma once

#include <string>

namespace exportifc::cli {

struct ViewOptions {
  std::string input;   ///< a model or an exchange file
  std::string output;  ///< empty: beside the input, .html
  std::string viewerTemplate;
  bool visibleOnly = false;
  bool transliterate = false;
  bool notes = true;  ///< of a model, the page also shows what is only unusual
};

/// Writes one page that shows the structure, from a model or from an exchange file.
int runViewCommand(const ViewOptions& options);

}  // namespace exportifc::cli
