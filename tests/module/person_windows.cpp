// A person at the screen: a thread finds the dialogs of this process and of the program it started,
// reads them control by control, and answers by posting commands, which needs no keyboard focus.
#include <windows.h>
// windows.h first: commdlg.h needs its types.
#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <thread>
#include <utility>

#include <commdlg.h>
#include <fcntl.h>
#include <io.h>

#include "tests/module/person.h"

namespace exportifc::module_tests {

namespace {

using std::chrono::steady_clock;

constexpr int messageControl = 0xFFFF;
// The file name stands in one of these, depending on the system's version.
constexpr std::array<int, 3> fileNameControls = {0x47C, 0x480, 0x3E9};
constexpr int fileTypesControl = 0x470;
constexpr UINT replyLimitMs = 5000;

std::atomic<DWORD> childProgram = 0;
std::atomic<HANDLE> childHandle = nullptr;

std::string utf8(const std::wstring& wide) {
  if (wide.empty()) {
    return {};
  }
  const auto length = static_cast<int>(wide.size());
  const int size =
      WideCharToMultiByte(CP_UTF8, 0, wide.data(), length, nullptr, 0, nullptr, nullptr);
  std::string bytes(static_cast<std::size_t>(size), '\0');
  WideCharToMultiByte(CP_UTF8, 0, wide.data(), length, bytes.data(), size, nullptr, nullptr);
  return bytes;
}

std::wstring wide(const std::string& utf8Text) {
  std::wstring text(utf8Text.size(), L'\0');
  const int size =
      MultiByteToWideChar(CP_UTF8, 0, utf8Text.data(), static_cast<int>(utf8Text.size()),
                          text.data(), static_cast<int>(text.size()));
  text.resize(static_cast<std::size_t>(size));
  return text;
}

/// Asks a window of another thread without waiting for ever; 0 when it does not reply.
LRESULT ask(HWND window, UINT message, WPARAM first = 0, LPARAM second = 0) {
  DWORD_PTR reply = 0;
  const LRESULT done =
      SendMessageTimeoutW(window, message, first, second, SMTO_NORMAL, replyLimitMs, &reply);
  return done == 0 ? 0 : static_cast<LRESULT>(reply);
}

std::string textOf(HWND window) {
  std::array<wchar_t, 2048> text{};
  ask(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()));
  return utf8(text.data());
}

std::string classOf(HWND window) {
  std::array<wchar_t, 64> name{};
  GetClassNameW(window, name.data(), static_cast<int>(name.size()));
  return utf8(name.data());
}

void press(HWND dialog, int button) {
  PostMessageW(dialog, WM_COMMAND, static_cast<WPARAM>(button),
               reinterpret_cast<LPARAM>(GetDlgItem(dialog, button)));
}

template <typename Visit>
void forEachChild(HWND parent, const Visit& visit) {
  for (HWND child = GetWindow(parent, GW_CHILD); child != nullptr;
       child = GetWindow(child, GW_HWNDNEXT)) {
    visit(child);
  }
}

bool isSaveDialog(HWND dialog) { return GetDlgItem(dialog, fileTypesControl) != nullptr; }

/// Everything of a dialog that the system chooses by the caller's flags: buttons with caption,
/// identifier and default, icon, owner.
std::string looksOf(HWND dialog) {
  std::string looks = GetWindow(dialog, GW_OWNER) == nullptr ? "no owner" : "an owner";
  forEachChild(dialog, [&](HWND child) {
    const int id = GetDlgCtrlID(child);
    if (IsWindowVisible(child) == 0 || (id & 0xFFFF) == messageControl) {
      return;
    }
    looks += "; " + classOf(child) + " " + std::to_string(id);
    if (classOf(child) == "Static" && ask(child, STM_GETICON) != 0) {
      looks += " with an icon";
    }
    if (classOf(child) == "Button") {
      const auto style = static_cast<unsigned>(GetWindowLongW(child, GWL_STYLE));
      looks += " " + quoted(textOf(child)) + " style " + std::to_string(style & BS_TYPEMASK);
    }
  });
  return looks;
}

/// The open dialogs of this process and its child program.
std::vector<HWND> openDialogs() {
  std::vector<HWND> dialogs;
  const auto collect = [](HWND window, LPARAM list) -> BOOL {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    const bool ours = process == GetCurrentProcessId() || process == childProgram;
    if (ours && IsWindowVisible(window) != 0 && classOf(window) == "#32770") {
      reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
    }
    return TRUE;
  };
  EnumWindows(collect, reinterpret_cast<LPARAM>(&dialogs));
  return dialogs;
}

void pause() { std::this_thread::sleep_for(std::chrono::milliseconds(5)); }

/// How the system itself shows a dialog: shown once, read, dismissed.
template <typename Show, typename Read>
auto readOwn(const Show& show, const Read& read) {
  std::thread dialogThread(show);
  std::vector<HWND> found;
  const auto start = steady_clock::now();
  while (found.empty()) {
    if (steady_clock::now() - start > std::chrono::seconds(patienceSeconds)) {
      std::fprintf(stderr, "no dialog appears on this screen; ending the test process\n");
      std::_Exit(3);
    }
    pause();
    found = openDialogs();
  }
  auto result = read(found.front());
  press(found.front(), IDOK);      // a message box with one button
  press(found.front(), IDCANCEL);  // the others
  press(found.front(), IDNO);
  dialogThread.join();
  return result;
}

struct SystemLooks {
  std::string yesNo;
  std::string ok;
  std::string saveCaption;
};

const SystemLooks& systemLooks() {
  static const SystemLooks looks = [] {
    const auto boxLooks = [](UINT type) {
      return readOwn([type] { MessageBoxW(nullptr, L"text", L"caption", type); }, looksOf);
    };
    return SystemLooks{.yesNo = boxLooks(MB_YESNO),
                       .ok = boxLooks(MB_OK),
                       .saveCaption = readOwn(
                           [] {
                             std::array<wchar_t, MAX_PATH> name{};
                             OPENFILENAMEW dialog{};
                             dialog.lStructSize = sizeof(dialog);
                             dialog.lpstrFile = name.data();
                             dialog.nMaxFile = static_cast<DWORD>(name.size());
                             GetSaveFileNameW(&dialog);
                           },
                           textOf)};
  }();
  return looks;
}

class Person {
 public:
  explicit Person(const std::vector<Dialog>& script, int complaints)
      : script_(script), complaints_(complaints) {
    systemLooks();  // before any dialog of the module is open
  }

  void sit() {
    lastSign_ = steady_clock::now();
    while (!left_) {
      const std::vector<HWND> open = openDialogs();
      // A closed dialog's handle may come back as another dialog.
      std::erase_if(answered_, [&](HWND dialog) {
        return std::find(open.begin(), open.end(), dialog) == open.end();
      });
      for (const HWND dialog : open) {
        if (std::find(answered_.begin(), answered_.end(), dialog) == answered_.end()) {
          answered_.push_back(dialog);
          meet(dialog);
          lastSign_ = steady_clock::now();
        }
      }
      if (steady_clock::now() - lastSign_ > std::chrono::seconds(patienceSeconds)) {
        giveUp(open);
        lastSign_ = steady_clock::now();
      }
      pause();
    }
    for (; next_ < script_.size(); ++next_) {
      const Dialog& missing = script_[next_];
      complain("did not appear: " + (missing.kind == Dialog::Kind::saveFile
                                         ? std::string("the save dialog")
                                         : quoted(missing.caption + ": " + missing.text)));
    }
  }

  void leave() { left_ = true; }

  std::vector<std::string> takeProblems() { return std::move(problems_); }

 private:
  void meet(HWND dialog) {
    if (next_ == script_.size()) {
      complain("unexpected: " + describe(dialog));
      dismiss(dialog);
      return;
    }
    const Dialog& expected = script_[next_];
    if (isSaveDialog(dialog) != (expected.kind == Dialog::Kind::saveFile)) {
      complain("expected " + quoted(expected.caption + ": " + expected.text) + ", found " +
               describe(dialog));
      dismiss(dialog);
      return;
    }
    ++next_;
    if (expected.kind == Dialog::Kind::saveFile) {
      readSaveDialog(dialog);
    } else {
      readBox(dialog, expected);
    }
    if (expected.meanwhile) {
      expected.meanwhile();
    }
    answer(dialog, expected);
  }

  void readBox(HWND dialog, const Dialog& expected) {
    const bool yesNo = expected.kind == Dialog::Kind::yesNo;
    same("caption", textOf(dialog), expected.caption);
    same("text", textOf(GetDlgItem(dialog, messageControl)), expected.text);
    same("looks", looksOf(dialog), yesNo ? systemLooks().yesNo : systemLooks().ok);
  }

  void readSaveDialog(HWND dialog) {
    same("caption", textOf(dialog), systemLooks().saveCaption);
    same("file name at first", textOf(fileName(dialog)), "");
    const HWND types = GetDlgItem(dialog, fileTypesControl);
    same("number of file types", std::to_string(ask(types, CB_GETCOUNT)), "1");
    same("file type", textOf(types), "Arquivos IFC");
    same("owner", GetWindow(dialog, GW_OWNER) == nullptr ? "none" : "some", "none");
  }

  void answer(HWND dialog, const Dialog& expected) {
    switch (expected.kind) {
      case Dialog::Kind::saveFile: {
        const std::wstring name = wide(expected.fileName);
        if (expected.accepts) {
          ask(fileName(dialog), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(name.c_str()));
        }
        press(dialog, expected.accepts ? IDOK : IDCANCEL);
        break;
      }
      case Dialog::Kind::yesNo: press(dialog, expected.accepts ? IDYES : IDNO); break;
      case Dialog::Kind::ok: dismiss(dialog); break;
    }
  }

  static HWND fileName(HWND dialog) {
    for (const int control : fileNameControls) {
      if (const HWND window = GetDlgItem(dialog, control); window != nullptr) {
        return window;
      }
    }
    return nullptr;
  }

  static void dismiss(HWND dialog) {
    // One of these exists; the button of a box that has only OK carries IDOK or IDCANCEL.
    for (const int button : {IDNO, IDCANCEL, IDOK}) {
      if (GetDlgItem(dialog, button) != nullptr) {
        press(dialog, button);
        return;
      }
    }
    PostMessageW(dialog, WM_CLOSE, 0, 0);
  }

  static std::string describe(HWND dialog) {
    std::string text = isSaveDialog(dialog) ? "the save dialog" : quoted(textOf(dialog));
    forEachChild(dialog, [&](HWND child) {
      text += "\n    " + classOf(child) + " " + std::to_string(GetDlgCtrlID(child)) + " " +
              quoted(textOf(child));
    });
    return text;
  }

  void same(const char* what, const std::string& found, const std::string& expected) {
    if (found != expected) {
      complain(std::string(what) + ": expected " + quoted(expected) + ", found " + quoted(found));
    }
  }

  void complain(const std::string& problem) { problems_.push_back(problem); }

  void giveUp(const std::vector<HWND>& open) {
    complain("nothing happened for " + std::to_string(patienceSeconds) + " s");
    for (const HWND dialog : open) {
      complain("still open: " + describe(dialog));
      dismiss(dialog);
    }
    if (gaveUp_ || open.empty()) {
      if (const HANDLE child = childHandle; child != nullptr) {
        TerminateProcess(child, 3);
      }
      std::string report = "the export hangs; ending the test process:\n";
      for (const std::string& problem : problems_) {
        report += problem + "\n";
      }
      _write(complaints_, report.data(), static_cast<unsigned>(report.size()));
      std::_Exit(3);
    }
    gaveUp_ = true;
  }

  const std::vector<Dialog>& script_;
  int complaints_;  // the real standard error
  std::atomic<bool> left_ = false;
  std::size_t next_ = 0;
  std::vector<HWND> answered_;
  std::vector<std::string> problems_;
  steady_clock::time_point lastSign_;
  bool gaveUp_ = false;
};

/// Standard output, collected in a file that is gone when it is closed.
class ConsoleCapture {
 public:
  ConsoleCapture() {
    std::array<wchar_t, MAX_PATH> folder{};
    std::array<wchar_t, MAX_PATH> name{};
    GetTempPathW(static_cast<DWORD>(folder.size()), folder.data());
    GetTempFileNameW(folder.data(), L"con", 0, name.data());
    std::fflush(stdout);
    saved_ = _dup(1);
    file_ = _wopen(name.data(), _O_RDWR | _O_CREAT | _O_TRUNC | _O_TEMPORARY | _O_BINARY, 0600);
    if (saved_ < 0 || file_ < 0 || _dup2(file_, 1) != 0) {
      throw std::runtime_error("cannot redirect standard output");
    }
    // As a console or a pipe has it: line feeds become CR LF.
    _setmode(1, _O_TEXT);
  }
  ConsoleCapture(const ConsoleCapture&) = delete;
  ConsoleCapture& operator=(const ConsoleCapture&) = delete;
  ~ConsoleCapture() { restore(); }

  std::string finish() {
    restore();
    std::string bytes;
    std::array<char, 4096> piece{};
    _lseek(file_, 0, SEEK_SET);
    for (int count = 1; count > 0;) {
      count = _read(file_, piece.data(), static_cast<unsigned>(piece.size()));
      bytes.append(piece.data(), static_cast<std::size_t>(std::max(count, 0)));
    }
    _close(file_);
    return bytes;
  }

 private:
  void restore() {
    if (saved_ >= 0) {
      std::fflush(stdout);
      _dup2(saved_, 1);
      _close(saved_);
      saved_ = -1;
    }
  }

  int saved_ = -1;
  int file_ = -1;
};

}  // namespace

void attend(const std::vector<Dialog>& script, const std::function<void()>& action,
            Attendance& result, Input /*input*/) {
  const int complaints = _dup(2);
  Person person(script, complaints);
  std::exception_ptr thrown;
  {
    ConsoleCapture capture;
    std::thread attendant([&person] { person.sit(); });
    try {
      action();
    } catch (...) {
      thrown = std::current_exception();
    }
    person.leave();
    attendant.join();
    result.console = capture.finish();
  }
  result.problems = person.takeProblems();
  _close(complaints);
  if (thrown) {
    std::rethrow_exception(thrown);
  }
}

int runProgram(const std::vector<std::string>& command, Answers answers) {
  std::wstring line;
  for (const std::string& argument : command) {
    line += L"\"" + wide(argument) + L"\" ";
  }
  std::fflush(nullptr);
  STARTUPINFOW startup{};
  startup.cb = sizeof(startup);
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
  startup.hStdOutput = reinterpret_cast<HANDLE>(_get_osfhandle(1));
  startup.hStdError = reinterpret_cast<HANDLE>(_get_osfhandle(2));
  SetHandleInformation(startup.hStdOutput, HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT);
  PROCESS_INFORMATION process{};
  if (CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup,
                     &process) == 0) {
    throw std::runtime_error("cannot start " + command.front());
  }
  childHandle = process.hProcess;
  childProgram = answers == Answers::person ? process.dwProcessId : 0;
  WaitForSingleObject(process.hProcess, INFINITE);  // the person ends a program that hangs
  childProgram = 0;
  childHandle = nullptr;
  DWORD code = 0;
  GetExitCodeProcess(process.hProcess, &code);
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return static_cast<int>(code);
}

void resetStandardInput() {}

}  // namespace exportifc::module_tests
