#include "library/files/whole_file.h"

#include <cerrno>
#include <string>
#include <system_error>

#include "library/files/file_names.h"
#include "library/files/file_system.h"

namespace fs = std::filesystem;

namespace exportifc {

namespace {

constexpr std::size_t bufferSize = 1U << 16;

/// A name beside the file, different for each file and process. Systems take 255 characters.
fs::path temporaryName(const fs::path& name) {
  constexpr std::size_t longest = 200;
  fs::path temporary = name;
  if (name.native().size() > longest) {
    temporary = name.native().substr(0, longest);
    temporary += "." + std::to_string(fs::hash_value(name));
  }
  temporary += "." + std::to_string(files::processId()) + ".part";
  return temporary;
}

}  // namespace

WholeFile::WholeFile(const fs::path& target, IsInterrupted isInterrupted)
    : isInterrupted_(isInterrupted) {
  buffer_.reserve(bufferSize);
  open(target);
}

WholeFile::WholeFile(int openFile, IsInterrupted isInterrupted)
    : isInterrupted_(isInterrupted), isOurs_(false) {
  buffer_.reserve(bufferSize);
  opened(openFile);
}

void WholeFile::open(const fs::path& target) {
  finalPath_ = files::anyLength(behindLinks(target));
  std::error_code ignored;
  const fs::file_status status = fs::status(finalPath_, ignored);
  // Asked of the system: not every library knows NUL.
  const files::FileIdentity identity = files::identityOf(finalPath_);
  const bool isDevice = identity.exists && identity.text.empty();
  if (fs::is_directory(status)) {
    error_ = EISDIR;
  } else if (isDevice) {
    opened(files::openForWriting(finalPath_));
  } else if (fs::exists(status) && !files::isWritable(finalPath_)) {
    error_ = EACCES;
  } else {
    createBeside(status);
  }
}

void WholeFile::opened(int file) {
  file_ = file;
  error_ = file < 0 ? errno : 0;
}

/// The temporary file, with the permissions of the one that it will replace.
void WholeFile::createBeside(const fs::file_status& replaced) {
  // Kept first: if memory ran out once the file is there, nobody would remove it.
  temporaryPath_ = finalPath_.parent_path() / temporaryName(finalPath_.filename());
  opened(files::createFile(temporaryPath_));
  if (failed()) {
    temporaryPath_.clear();
  } else if (fs::exists(replaced)) {
    std::error_code ignored;
    fs::permissions(temporaryPath_, replaced.permissions(), ignored);
  }
}

WholeFile::~WholeFile() {
  if (file_ >= 0 && isOurs_) {
    files::closeFile(file_);
  }
  if (!temporaryPath_.empty()) {
    std::error_code ignored;
    fs::remove(temporaryPath_, ignored);
  }
}

bool WholeFile::write(const char* bytes, std::size_t size) {
  if (buffer_.size() + size > bufferSize) {
    flush();
  }
  if (size > bufferSize) {
    if (!failed() && !files::writeAll(file_, bytes, size, isInterrupted_)) {
      error_ = errno;
    }
  } else {
    buffer_.insert(buffer_.end(), bytes, bytes + size);
  }
  return !failed();
}

void WholeFile::flush() {
  if (!failed() && !files::writeAll(file_, buffer_.data(), buffer_.size(), isInterrupted_)) {
    error_ = errno;
  }
  buffer_.clear();
}

bool WholeFile::commit() {
  flush();
  if (!temporaryPath_.empty()) {
    if (!failed() && !files::flushToDisk(file_)) {
      error_ = errno;
    }
    // Some file systems report a full disk only here.
    if (!files::closeFile(file_) && !failed()) {
      error_ = errno;
    }
    file_ = -1;
  }
  std::error_code renamed;
  if (!failed() && !temporaryPath_.empty()) {
    fs::rename(temporaryPath_, finalPath_, renamed);
    error_ = renamed ? files::errorNumber(renamed) : 0;
  }
  if (!failed()) {
    temporaryPath_.clear();
  }
  return !failed();
}

}  // namespace exportifc
