// Linux.
#include <atomic>
#include <csignal>
#include <cstdlib>

#include <sys/ioctl.h>
#include <unistd.h>

#include "cli/system.h"

namespace exportifc::cli::system {

namespace {

std::atomic<bool> interruptSeen = false;  // by a handler, for all threads
static_assert(std::atomic<bool>::is_always_lock_free);

void noteInterrupt(int /*signal*/) { interruptSeen = true; }

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

int standardOutput() { return STDOUT_FILENO; }

}  // namespace exportifc::cli::system
