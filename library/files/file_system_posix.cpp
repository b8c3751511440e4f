// Linux.
#include <cerrno>
#include <memory>

#include <sys/stat.h>
#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include "library/files/file_system.h"

namespace exportifc::files {

namespace {

/// Files and folders are what can be lost.
std::string identityText(const struct stat& status) {
  return S_ISREG(status.st_mode) || S_ISDIR(status.st_mode)
             ? std::to_string(status.st_dev) + ":" + std::to_string(status.st_ino)
             : "";
}

struct Close {
  void operator()(DIR* folder) const { ::closedir(folder); }
};

}  // namespace

std::filesystem::path anyLength(const std::filesystem::path& path) { return path; }

FileIdentity identityOf(const std::filesystem::path& path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0
             ? FileIdentity{.exists = true, .text = identityText(status)}
             : FileIdentity{};
}

std::string identityOfOpen(int file) {
  struct stat status {};
  return ::fstat(file, &status) == 0 ? identityText(status) : "";
}

std::filesystem::path comparable(const std::filesystem::path& path) { return path; }

std::string deviceIn(const std::filesystem::path& /*path*/) { return {}; }  // they have paths

std::vector<std::filesystem::path> namesIn(const std::filesystem::path& folder) {
  const std::unique_ptr<DIR, Close> entries(::opendir(folder.c_str()));
  std::vector<std::filesystem::path> names;
  for (const dirent* entry = nullptr;
       entries != nullptr && (entry = ::readdir(entries.get())) != nullptr;) {
    names.emplace_back(entry->d_name);
  }
  return names;
}

int processId() { return getpid(); }

int createFile(const std::filesystem::path& path) {
  constexpr int mode = 0666;
  return ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
}

int openForWriting(const std::filesystem::path& path) {
  return ::open(path.c_str(), O_WRONLY | O_CLOEXEC);
}

bool writeAll(int file, const char* bytes, std::size_t size, bool (*isInterrupted)()) {
  while (size > 0) {
    const ssize_t written = ::write(file, bytes, size);
    if (written < 0) {
      if (errno == EINTR && (isInterrupted == nullptr || !isInterrupted())) {
        continue;
      }
      return false;
    }
    bytes += written;
    size -= static_cast<std::size_t>(written);
  }
  return true;
}

bool flushToDisk(int file) { return ::fsync(file) == 0 || errno == EINVAL || errno == ENOTSUP; }

bool closeFile(int file) { return ::close(file) == 0; }

bool isWritable(const std::filesystem::path& path) { return ::access(path.c_str(), W_OK) == 0; }

}  // namespace exportifc::files
