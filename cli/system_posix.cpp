// Linux.
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdlib>

#include <sys/ioctl.h>
#include <sys/stat.h>
#include <fcntl.h>
#include <unistd.h>

#include "cli/system.h"

namespace exportifc::cli::system {

namespace {

std::atomic<bool> interruptSeen = false;  // by a handler, for all threads
static_assert(std::atomic<bool>::is_always_lock_free);

void noteInterrupt(int /*signal*/) { interruptSeen = true; }

/// Files and folders are what can be lost.
std::string identityText(const struct stat& status) {
  return S_ISREG(status.st_mode) || S_ISDIR(status.st_mode)
             ? std::to_string(status.st_dev) + ":" + std::to_string(status.st_ino)
             : "";
}

}  // namespace

std::vector<std::string> arguments(int argc, char** argv) { return {argv, argv + argc}; }

void prepareProcess() {
  struct sigaction action {};
  action.sa_handler = noteInterrupt;
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    sigaction(signal, &action, nullptr);
  }
  action.sa_handler = SIG_IGN;
  for (const int signal : {SIGPIPE, SIGXFSZ}) {  // the write fails instead
    sigaction(signal, &action, nullptr);
  }
}

bool interrupted() { return interruptSeen; }

std::string variable(const char* name) {
  const char* const value = std::getenv(name);
  return value != nullptr ? value : "";
}

std::string userLanguage() { return ""; }  // variables are all there is

bool outputIsTerminal() { return isatty(STDOUT_FILENO) != 0; }
bool errorIsTerminal() { return isatty(STDERR_FILENO) != 0; }

int terminalColumns() {
  winsize size{};
  constexpr int usual = 80;
  return ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : usual;
}

std::filesystem::path programPath() { return std::filesystem::read_symlink("/proc/self/exe"); }

int processId() { return getpid(); }

FileIdentity identityOf(const std::filesystem::path& path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0
             ? FileIdentity{.exists = true, .text = identityText(status)}
             : FileIdentity{};
}

std::string identityOf(StandardStream stream) {
  struct stat status {};  // the descriptors are numbered in the same order
  return ::fstat(static_cast<int>(stream), &status) == 0 ? identityText(status) : "";
}

std::filesystem::path comparable(const std::filesystem::path& path) { return path; }

int createFile(const std::filesystem::path& path) {
  constexpr int mode = 0666;
  return ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
}

int openForWriting(const std::filesystem::path& path) {
  return ::open(path.c_str(), O_WRONLY | O_CLOEXEC);
}

int standardOutput() { return STDOUT_FILENO; }

bool writeAll(int file, const char* bytes, std::size_t size) {
  while (size > 0) {
    const ssize_t written = ::write(file, bytes, size);
    if (written < 0) {
      if (errno == EINTR && !interrupted()) {
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

}  // namespace exportifc::cli::system
