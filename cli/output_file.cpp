#include "cli/output_file.h"

#include <system_error>
#include <utility>

#include "cli/failure.h"
#include "cli/messages.h"
#include "cli/system.h"
#include "library/files/file_names.h"
#include "library/files/file_system.h"
#include "library/files/paths.h"

namespace fs = std::filesystem;

namespace exportifc::cli {

MadeFolder::MadeFolder(const std::string& name) {
  std::error_code error;
  for (fs::path path = pathOf(name); !path.empty() && !fs::exists(path, error);
       path = path.parent_path()) {
    made_.push_back(path);
  }
  fs::create_directories(pathOf(name), error);
  if (error) {
    removeEmpty();
    throw Failure(exitNotWritten,
                  say(texts::cannotMakeFolder, {name, systemErrorText(files::errorNumber(error))}));
  }
}

void MadeFolder::removeEmpty() const {
  std::error_code ignored;
  for (const fs::path& path : made_) {
    if (fs::is_empty(path, ignored) && !ignored) {
      fs::remove(path, ignored);
    }
  }
}

OutputFile::OutputFile(std::string target)
    : target_(std::move(target)),
      file_(isStandardStream(target_) ? WholeFile(system::standardOutput(), system::interrupted)
                                      : WholeFile(pathOf(target_), system::interrupted)) {
  if (failed()) {
    throw Failure(exitNotWritten, failureText());
  }
}

void OutputFile::commit() {
  if (!file_.commit()) {
    throw Failure(exitNotWritten, failureText());
  }
}

std::string OutputFile::failureText() const {
  const std::string name = isStandardStream(target_) ? say(texts::standardOutput) : target_;
  return say(texts::cannotWrite, {name, writeErrorText(target_, file_.error())});
}

}  // namespace exportifc::cli
