#include "cli/input_file.h"

#include "cli/failure.h"
#include "cli/messages.h"
#include "library/files/file_names.h"

namespace exportifc::cli {

void openInput(std::filebuf& file, const std::string& name) {
  if (const int error = exportifc::openInput(file, name); error != 0) {
    throw Failure(exitUnreadable, say(texts::cannotRead, {name, readErrorText(name, error)}));
  }
}

}  // namespace exportifc::cli
