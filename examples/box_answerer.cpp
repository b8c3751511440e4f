#include "examples/box_answerer.h"

#ifndef _WIN32

class BoxAnswerer::Watch {};

BoxAnswerer::BoxAnswerer() = default;
BoxAnswerer::~BoxAnswerer() = default;

#else

#include <array>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <thread>

#include <windows.h>

namespace {

std::string utf8(const std::wstring& wide) {
  const int size = WideCharToMultiByte(CP_UTF8, 0, wide.c_str(), -1, nullptr, 0, nullptr, nullptr);
  std::string text(static_cast<std::size_t>(size), '\0');
  WideCharToMultiByte(CP_UTF8, 0, wide.c_str(), -1, text.data(), size, nullptr, nullptr);
  text.resize(text.size() - 1);
  return text;
}

std::wstring textOf(HWND window) {
  std::array<wchar_t, 1024> text{};
  GetWindowTextW(window, text.data(), static_cast<int>(text.size()));
  return text.data();
}

/// Presses the affirmative button of a message box that has one.
BOOL CALLBACK answerBox(HWND window, LPARAM /*unused*/) {
  constexpr int messageText = 0xFFFF;  // control with the text of a message box
  DWORD process = 0;
  std::array<wchar_t, 16> className{};
  GetWindowThreadProcessId(window, &process);
  GetClassNameW(window, className.data(), static_cast<int>(className.size()));
  const HWND message = GetDlgItem(window, messageText);
  if (process != GetCurrentProcessId() || std::wstring(className.data()) != L"#32770" ||
      message == nullptr || IsWindowVisible(window) == 0) {
    return TRUE;
  }
  // A box with one OK button gives it the identifier IDOK or IDCANCEL.
  for (const int button : {IDYES, IDOK, IDCANCEL}) {
    if (GetDlgItem(window, button) != nullptr) {
      std::printf("%s: %s\n", utf8(textOf(window)).c_str(), utf8(textOf(message)).c_str());
      SendMessageW(window, WM_COMMAND, static_cast<WPARAM>(button), 0);
      break;
    }
  }
  return TRUE;
}

}  // namespace

class BoxAnswerer::Watch {
 public:
  Watch() : thread_([this] { run(); }) {}
  Watch(const Watch&) = delete;
  Watch& operator=(const Watch&) = delete;
  ~Watch() {
    stopped_ = true;
    thread_.join();
  }

 private:
  void run() {
    while (!stopped_) {
      EnumWindows(answerBox, 0);
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
  }

  std::atomic<bool> stopped_ = false;
  std::thread thread_;
};

BoxAnswerer::BoxAnswerer() : watch_(std::make_unique<Watch>()) {}
BoxAnswerer::~BoxAnswerer() = default;

#endif
