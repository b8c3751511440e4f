#include "library/files/file_names.h"

#include <cerrno>
#include <iterator>
#include <system_error>

#include "library/files/file_system.h"
#include "library/files/paths.h"
#include "library/text/messages.h"

namespace fs = std::filesystem;

namespace exportifc {

namespace {

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

/// The folder of a file that cannot be there because it has none; otherwise empty.
std::string missingFolder(const std::string& name) {
  std::error_code ignored;
  const fs::path folder = behindLinks(pathOf(name)).parent_path();
  return folder.empty() || fs::exists(folder, ignored) ? "" : textOf(folder);
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

std::string identityOf(const fs::path& path) {
  std::error_code ignored;
  fs::path there = fs::absolute(behindLinks(path), ignored);
  const files::FileIdentity itself = files::identityOf(there);
  if (itself.exists) {
    return itself.text;
  }
  // A file that is not there yet: the folder that is, and the way on from it.
  fs::path rest;
  files::FileIdentity folder;
  while (!folder.exists && there.has_relative_path()) {
    rest = rest.empty() ? there.filename() : there.filename() / rest;
    there = there.parent_path();
    folder = files::identityOf(behindLinks(there));
  }
  return folder.text + "/" + textOf(files::comparable(rest.lexically_normal()));
}

int openInput(std::filebuf& file, const std::string& name) {
  // Some systems open a folder like a file; then only reading would fail.
  const fs::path path = files::anyLength(pathOf(name));
  std::error_code ignored;
  if (fs::is_directory(path, ignored)) {
    return EISDIR;
  }
  errno = 0;
  if (file.open(path, std::ios::in | std::ios::binary) != nullptr) {
    return 0;
  }
  return errno != 0 ? errno : ENOENT;
}

int readAll(const std::string& name, std::string& bytes) {
  std::filebuf file;
  if (const int error = openInput(file, name); error != 0) {
    return error;
  }
  constexpr std::streamsize piece = 1 << 20;
  try {
    for (std::streamsize got = piece; got == piece;) {
      const std::size_t before = bytes.size();
      bytes.resize(before + static_cast<std::size_t>(piece));
      got = file.sgetn(bytes.data() + before, piece);
      bytes.resize(before + static_cast<std::size_t>(got));
    }
    return 0;
  } catch (const std::ios_base::failure&) {
    return EIO;
  }
}

std::string systemErrorText(int error) {
  for (const ErrorText& row : errorTexts) {
    if (row.error == error) {
      return say(row.text);
    }
  }
  return std::generic_category().message(error);
}

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

}  // namespace exportifc
