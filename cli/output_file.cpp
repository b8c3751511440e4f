#include "cli/output_file.h"

#include <cerrno>
#include <cstring>
#include <system_error>
#include <utility>

#include "cli/failure.h"
#include "cli/messages.h"
#include "cli/paths.h"
#include "cli/system.h"

namespace fs = std::filesystem;

namespace exportifc::cli {

namespace {

constexpr std::size_t bufferSize = 1U << 16;

struct ErrorText {
  int error;
  const Text& text;
};

constexpr ErrorText errorTexts[] = {
    {ENOSPC, texts::errorNoSpace},
    {EACCES, texts::errorNotAllowed},
    {EPERM, texts::errorNotAllowed},
    {ENOENT, texts::errorNoFolder},
    {ENOTDIR, texts::errorNotAFolder},
    {EROFS, texts::errorReadOnly},
    {EPIPE, texts::errorClosedPipe},
    {EISDIR, texts::errorIsFolder},
    {EFBIG, texts::errorTooBig},
    {ENAMETOOLONG, texts::errorNameTooLong},
    {EINTR, texts::errorInterrupted},
    {EINVAL, texts::errorBadName},  // Windows: it has characters that names cannot have
};

/// A name beside the file, different for each file and process. Systems take 255 characters.
fs::path temporaryName(const fs::path& name) {
  constexpr std::size_t longest = 200;
  fs::path temporary = name;
  if (name.native().size() > longest) {
    temporary = name.native().substr(0, longest);
    temporary += "." + std::to_string(fs::hash_value(name));
  }
  temporary += "." + std::to_string(system::processId()) + ".part";
  return temporary;
}

}  // namespace

fs::path behindLinks(const fs::path& path) {
  std::error_code ignored;
  fs::path end = path;
  constexpr int most = 40;  // as many as systems follow
  for (int links = 0; links < most && fs::is_symlink(fs::symlink_status(end, ignored)); ++links) {
    const fs::path next = fs::read_symlink(end, ignored);
    if (next.empty()) {
      break;
    }
    end = end.parent_path() / next;  // which is `next` alone when that is absolute
  }
  return end;
}

std::string systemErrorText(int error) {
  for (const ErrorText& row : errorTexts) {
    if (row.error == error) {
      return say(row.text);
    }
  }
  return std::generic_category().message(error);
}

namespace {

/// The folder of a file that cannot be there because it has none; otherwise empty.
std::string missingFolder(const std::string& name) {
  std::error_code ignored;
  const fs::path folder = behindLinks(pathOf(name)).parent_path();
  return folder.empty() || fs::exists(folder, ignored) ? "" : textOf(folder);
}

}  // namespace

std::string readErrorText(const std::string& name, int error) {
  std::error_code ignored;
  if (error == EACCES || error == EPERM) {
    return say(texts::errorMayNotRead);
  }
  if (name.find_first_of("*?") != std::string::npos && !fs::exists(pathOf(name), ignored)) {
    return say(texts::errorNoMatch);  // or the shell has not expanded it, as on Windows
  }
  const std::string unlisted = name.substr(0, name.find_last_not_of(",;") + 1);
  if (error == ENOENT && unlisted != name && fs::exists(pathOf(unlisted), ignored)) {
    return say(texts::errorNoFile) + say(texts::didYouMean, {unlisted});
  }
  return error == ENOENT && missingFolder(name).empty() ? say(texts::errorNoFile)
                                                        : writeErrorText(name, error);
}

std::string writeErrorText(const std::string& name, int error) {
  const std::string folder = error == ENOENT ? missingFolder(name) : "";
  return folder.empty() ? systemErrorText(error) : say(texts::errorThisFolder, {folder});
}

MadeFolder::MadeFolder(const std::string& name) {
  std::error_code error;
  for (fs::path path = pathOf(name); !path.empty() && !fs::exists(path, error);
       path = path.parent_path()) {
    made_.push_back(path);
  }
  fs::create_directories(pathOf(name), error);
  if (error) {
    removeEmpty();
    throw Failure(exitNotWritten, say(texts::cannotMakeFolder,
                                      {name, systemErrorText(system::errorNumber(error))}));
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

OutputFile::OutputFile(std::string target) : target_(std::move(target)) {
  buffer_.reserve(bufferSize);
  open();
  if (failed()) {
    throw Failure(exitNotWritten, failureText());
  }
}

void OutputFile::open() {
  if (isStandardStream(target_)) {
    opened(system::standardOutput());
    return;
  }
  finalPath_ = behindLinks(pathOf(target_));
  std::error_code ignored;
  const fs::file_status status = fs::status(finalPath_, ignored);
  // Asked of the system: not every library knows NUL.
  const system::FileIdentity identity = system::identityOf(finalPath_);
  const bool isDevice = identity.exists && identity.text.empty();
  if (fs::is_directory(status)) {
    error_ = EISDIR;
  } else if (isDevice) {
    opened(system::openForWriting(finalPath_));
  } else if (fs::exists(status) && !system::isWritable(finalPath_)) {
    error_ = EACCES;
  } else {
    createBeside(status);
  }
}

void OutputFile::opened(int file) {
  file_ = file;
  error_ = file < 0 ? errno : 0;
}

/// The temporary file, with the permissions of the one that it will replace.
void OutputFile::createBeside(const fs::file_status& replaced) {
  const fs::path path = finalPath_.parent_path() / temporaryName(finalPath_.filename());
  opened(system::createFile(path));
  if (failed()) {
    return;
  }
  temporaryPath_ = path;
  if (fs::exists(replaced)) {
    std::error_code ignored;
    fs::permissions(path, replaced.permissions(), ignored);
  }
}

OutputFile::~OutputFile() {
  if (file_ >= 0 && file_ != system::standardOutput()) {
    system::closeFile(file_);
  }
  if (!temporaryPath_.empty()) {
    std::error_code ignored;
    fs::remove(temporaryPath_, ignored);
  }
}

bool OutputFile::write(const char* bytes, std::size_t size) {
  if (buffer_.size() + size > bufferSize) {
    flush();
  }
  if (size > bufferSize) {
    if (!failed() && !system::writeAll(file_, bytes, size)) {
      error_ = errno;
    }
  } else {
    buffer_.insert(buffer_.end(), bytes, bytes + size);
  }
  return !failed();
}

void OutputFile::flush() {
  if (!failed() && !system::writeAll(file_, buffer_.data(), buffer_.size())) {
    error_ = errno;
  }
  buffer_.clear();
}

void OutputFile::commit() {
  flush();
  if (!temporaryPath_.empty()) {
    if (!failed() && !system::flushToDisk(file_)) {
      error_ = errno;
    }
    // Some file systems report a full disk only here.
    if (!system::closeFile(file_) && !failed()) {
      error_ = errno;
    }
    file_ = -1;
  }
  std::error_code renamed;
  if (!failed() && !temporaryPath_.empty()) {
    fs::rename(temporaryPath_, finalPath_, renamed);
    error_ = renamed ? system::errorNumber(renamed) : 0;
  }
  if (failed()) {
    throw Failure(exitNotWritten, failureText());
  }
  temporaryPath_.clear();
}

std::string OutputFile::failureText() const {
  const std::string name = isStandardStream(target_) ? say(texts::standardOutput) : target_;
  return say(texts::cannotWrite, {name, writeErrorText(target_, error_)});
}

}  // namespace exportifc::cli
