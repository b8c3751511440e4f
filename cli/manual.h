// The manual page and the shell completion, from the same options as the help.
#pragma once

#include <string>

namespace CLI {  // NOLINT(readability-identifier-naming): the library's own
class App;
}

namespace exportifc::cli {

/// The manual page as roff source.
std::string manualPage(const CLI::App& app);

/// A completion for bash.
std::string bashCompletion(const CLI::App& app);

}  // namespace exportifc::cli
