// A person at a terminal: standard input is a pseudo terminal, standard error a pipe that this
// person reads, byte by byte as the script says, before typing.
#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <stdexcept>
#include <thread>
#include <utility>

#include <sys/wait.h>
#include <fcntl.h>
#include <poll.h>
#include <stdio_ext.h>
#include <unistd.h>

#include "tests/module/person.h"

namespace exportifc::module_tests {

namespace {

std::atomic<pid_t> childProgram = 0;

int checked(int result, const char* what) {
  if (result < 0) {
    std::perror(what);
    throw std::runtime_error(what);
  }
  return result;
}

/// Puts another file in the place of a standard descriptor, until the end of its life.
class Redirection {
 public:
  Redirection(int descriptor, int replacement)
      : descriptor_(descriptor), saved_(checked(::fcntl(descriptor, F_DUPFD_CLOEXEC, 3), "fcntl")) {
    checked(::dup2(replacement, descriptor), "dup2");
    ::close(replacement);
  }
  Redirection(const Redirection&) = delete;
  Redirection& operator=(const Redirection&) = delete;
  ~Redirection() {
    ::dup2(saved_, descriptor_);
    ::close(saved_);
  }
  [[nodiscard]] int saved() const { return saved_; }

 private:
  int descriptor_;
  int saved_;
};

struct Terminal {
  int master = -1;
  int slave = -1;
};

Terminal openTerminal() {
  Terminal terminal;
  terminal.master = checked(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC), "posix_openpt");
  checked(::grantpt(terminal.master), "grantpt");
  checked(::unlockpt(terminal.master), "unlockpt");
  std::array<char, 64> name{};
  checked(-::ptsname_r(terminal.master, name.data(), name.size()), "ptsname");
  terminal.slave = checked(::open(name.data(), O_RDWR | O_NOCTTY | O_CLOEXEC), "open terminal");
  return terminal;
}

/// What the module writes to standard error for a dialog, byte by byte.
std::string expectedBytes(const Dialog& dialog) {
  switch (dialog.kind) {
    case Dialog::Kind::saveFile: return "Arquivos IFC (*.ifc): ";
    case Dialog::Kind::yesNo: return dialog.caption + ": " + dialog.text + " [S/N] ";
    default: return dialog.caption + ": " + dialog.text + "\n";
  }
}

std::string keysFor(const Dialog& dialog) {
  if (!dialog.keys.empty()) {
    return dialog.keys;
  }
  switch (dialog.kind) {
    case Dialog::Kind::saveFile: return dialog.fileName + "\n";  // an empty line cancels
    case Dialog::Kind::yesNo: return dialog.accepts ? "S\n" : "N\n";
    default: return "";
  }
}

class Person {
 public:
  Person(const std::vector<Dialog>& script, int screen, int keyboard, int complaints)
      : script_(script), screen_(screen), keyboard_(keyboard), complaints_(complaints) {}

  /// Until the last writer of the screen is gone.
  void sit() {
    using std::chrono::steady_clock;
    auto lastSign = steady_clock::now();
    for (;;) {
      pollfd screen{.fd = screen_, .events = POLLIN, .revents = 0};
      const int ready = ::poll(&screen, 1, 100);
      if (ready > 0) {
        std::array<char, 4096> bytes{};
        const ssize_t count = ::read(screen_, bytes.data(), bytes.size());
        if (count <= 0) {
          break;
        }
        pending_.append(bytes.data(), static_cast<std::size_t>(count));
        react();
        lastSign = steady_clock::now();
      } else if (steady_clock::now() - lastSign > std::chrono::seconds(patienceSeconds)) {
        giveUp();
        lastSign = steady_clock::now();
      }
    }
    if (!pending_.empty() && !lost_) {
      problems_.push_back("unexpected on standard error: " + quoted(pending_));
    }
    for (; next_ < script_.size() && !lost_; ++next_) {
      problems_.push_back("did not appear: " + quoted(expectedBytes(script_[next_])));
    }
  }

  void leave() { closeKeyboard(); }

  std::vector<std::string> takeProblems() { return std::move(problems_); }

 private:
  void react() {
    while (!lost_ && next_ < script_.size() && !pending_.empty()) {
      const Dialog& dialog = script_[next_];
      const std::string expected = expectedBytes(dialog);
      if (pending_.compare(0, expected.size(), expected) == 0) {
        pending_.erase(0, expected.size());
        ++next_;
        if (dialog.meanwhile) {
          dialog.meanwhile();
        }
        type(keysFor(dialog));
      } else if (expected.compare(0, pending_.size(), pending_) == 0) {
        return;  // the rest is still on its way
      } else {
        lose("expected " + quoted(expected) + " on standard error, found " + quoted(pending_));
      }
    }
    if (!lost_ && next_ == script_.size() && !pending_.empty()) {
      lose("unexpected on standard error: " + quoted(pending_));
    }
  }

  /// Nothing sensible can be typed any more: whatever is asked finds the end of the input.
  void lose(const std::string& problem) {
    problems_.push_back(problem);
    lost_ = true;
    closeKeyboard();
  }

  void type(const std::string& keys) {
    if (keyboard_ >= 0 && !keys.empty() && ::write(keyboard_, keys.data(), keys.size()) < 0) {
      lose("the terminal takes no keys");
    }
  }

  void closeKeyboard() {
    if (keyboard_ >= 0) {
      ::close(keyboard_);
      keyboard_ = -1;
    }
  }

  void giveUp() {
    if (!lost_) {
      lose("nothing happened for " + std::to_string(patienceSeconds) + " s");
      return;
    }
    if (childProgram > 0) {
      ::kill(childProgram, SIGKILL);
    }
    ::dprintf(complaints_, "the export hangs; ending the test process: %s\n",
              problems_.back().c_str());
    std::_Exit(3);
  }

  const std::vector<Dialog>& script_;
  int screen_;
  int keyboard_;
  int complaints_;  // the real standard error
  std::size_t next_ = 0;
  std::string pending_;
  bool lost_ = false;
  std::vector<std::string> problems_;
};

std::string contents(std::FILE* file) {
  std::string bytes;
  std::rewind(file);
  for (int c = std::fgetc(file); c != EOF; c = std::fgetc(file)) {
    bytes.push_back(static_cast<char>(c));
  }
  return bytes;
}

}  // namespace

void attend(const std::vector<Dialog>& script, const std::function<void()>& action,
            Attendance& result, Input input) {
  std::FILE* const console = std::tmpfile();
  std::array<int, 2> screen{};
  checked(::pipe2(screen.data(), O_CLOEXEC), "pipe");
  const Terminal terminal =
      input == Input::terminal
          ? openTerminal()
          : Terminal{.slave = checked(::open("/dev/null", O_RDONLY | O_CLOEXEC), "/dev/null")};
  std::exception_ptr thrown;
  std::fflush(nullptr);
  {
    const int complaints = checked(::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 3), "fcntl");
    Person person(script, screen[0], terminal.master, complaints);
    std::thread attendant;
    {
      const Redirection in(STDIN_FILENO, terminal.slave);
      const Redirection out(STDOUT_FILENO, checked(::dup(::fileno(console)), "dup"));
      const Redirection error(STDERR_FILENO, screen[1]);
      attendant = std::thread([&person] { person.sit(); });
      try {
        action();
      } catch (...) {
        thrown = std::current_exception();
      }
      std::fflush(nullptr);
    }
    attendant.join();
    person.leave();
    ::close(complaints);
    result.problems = person.takeProblems();
  }
  ::close(screen[0]);
  result.console = contents(console);
  std::fclose(console);
  if (thrown) {
    std::rethrow_exception(thrown);
  }
}

int runProgram(const std::vector<std::string>& command, Answers /*answers*/) {
  std::vector<std::string> words = command;
  std::vector<char*> arguments(words.size() + 1);  // the last stays null
  std::transform(words.begin(), words.end(), arguments.begin(),
                 [](std::string& word) { return word.data(); });
  const pid_t child = checked(::fork(), "fork");
  if (child == 0) {
    ::execv(arguments[0], arguments.data());
    ::_exit(127);
  }
  childProgram = child;
  int status = 0;
  while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  childProgram = 0;
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void resetStandardInput() {
  __fpurge(stdin);
  std::clearerr(stdin);
  std::cin.clear();
}

}  // namespace exportifc::module_tests
