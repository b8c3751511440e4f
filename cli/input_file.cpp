#include "cli/input_file.h"

#include <cerrno>
#include <filesystem>
#include <system_error>

#include "cli/failure.h"
#include "cli/messages.h"
#include "cli/output_file.h"
#include "cli/paths.h"

namespace exportifc::cli {

void openInput(std::filebuf& file, const std::string& name) {
  // Some systems open a folder like a file; then only reading would fail.
  std::error_code ignored;
  errno = std::filesystem::is_directory(pathOf(name), ignored) ? EISDIR : 0;
  if (errno != 0 || file.open(pathOf(name), std::ios::in | std::ios::binary) == nullptr) {
    throw Failure(exitUnreadable,
                  say(texts::cannotRead, {name, readErrorText(name, errno != 0 ? errno : ENOENT)}));
  }
}

}  // namespace exportifc::cli
