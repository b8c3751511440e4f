// Linux.
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <system_error>

#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <fcntl.h>
#include <spawn.h>
#include <unistd.h>

#include "cli/system.h"

extern char**
    environ;  // NOLINT(readability-redundant-declaration): the C library need not declare it

namespace exportifc::cli::system {

namespace {

volatile std::sig_atomic_t interruptSeen = 0;

void noteInterrupt(int /*signal*/) { interruptSeen = 1; }

/// Files and folders are what can be lost.
std::string identityText(const struct stat& status) {
  return S_ISREG(status.st_mode) || S_ISDIR(status.st_mode)
             ? std::to_string(status.st_dev) + ":" + std::to_string(status.st_ino)
             : "";
}

class SpawnActions {
 public:
  SpawnActions() { posix_spawn_file_actions_init(&actions_); }
  SpawnActions(const SpawnActions&) = delete;
  SpawnActions& operator=(const SpawnActions&) = delete;
  ~SpawnActions() { posix_spawn_file_actions_destroy(&actions_); }

  void open(int descriptor, const char* path, int flags) {
    constexpr int mode = 0600;
    posix_spawn_file_actions_addopen(&actions_, descriptor, path, flags, mode);
  }
  const posix_spawn_file_actions_t* get() const { return &actions_; }

 private:
  posix_spawn_file_actions_t actions_{};
};

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

bool interrupted() { return interruptSeen != 0; }

std::string variable(const char* name) {
  const char* const value = std::getenv(name);
  return value != nullptr ? value : "";
}

Language userLanguage() { return Language::english; }  // variables are all there is

bool inputIsTerminal() { return isatty(STDIN_FILENO) != 0; }
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

Worker::Worker(const std::vector<std::string>& arguments, const std::filesystem::path& output,
               const std::filesystem::path& errors) {
  const std::string program = programPath();
  std::vector<std::string> words = {program};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> argv;
  argv.reserve(words.size() + 1);
  for (std::string& word : words) {
    argv.push_back(word.data());
  }
  argv.push_back(nullptr);
  SpawnActions actions;
  actions.open(STDIN_FILENO, "/dev/null", O_RDONLY);
  actions.open(STDOUT_FILENO, output.c_str(), O_WRONLY | O_CREAT | O_TRUNC);
  actions.open(STDERR_FILENO, errors.c_str(), O_WRONLY | O_CREAT | O_TRUNC);
  const int error =
      posix_spawn(&process_, program.c_str(), actions.get(), nullptr, argv.data(), environ);
  if (error != 0) {
    throw std::system_error(error, std::generic_category(), program);
  }
}

Worker::~Worker() {
  if (exitCode_ < 0) {
    interrupt();
    int status = 0;
    waitpid(process_, &status, 0);
  }
}

bool Worker::ended() {
  constexpr int firstSignalCode = 128;  // as shells count
  int status = 0;
  if (exitCode_ < 0 && waitpid(process_, &status, WNOHANG) == process_) {
    exitCode_ = WIFEXITED(status) ? WEXITSTATUS(status) : firstSignalCode + WTERMSIG(status);
  }
  return exitCode_ >= 0;
}

void Worker::interrupt() const { kill(process_, SIGTERM); }

void sleepMilliseconds(int milliseconds) {
  constexpr useconds_t microseconds = 1000;
  usleep(static_cast<useconds_t>(milliseconds) * microseconds);
}

}  // namespace exportifc::cli::system
