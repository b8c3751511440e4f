// Windows.
#include <windows.h>
// windows.h first: the others need its types.
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <fcntl.h>
#include <io.h>
#include <shellapi.h>

#include "cli/system.h"

namespace exportifc::cli::system {

namespace {

std::atomic<bool> interruptSeen = false;

BOOL WINAPI noteInterrupt(DWORD /*event*/) {
  interruptSeen = true;
  return TRUE;
}

std::string utf8(const wchar_t* wide) {
  const int size = WideCharToMultiByte(CP_UTF8, 0, wide, -1, nullptr, 0, nullptr, nullptr);
  std::string text(static_cast<std::size_t>(size), '\0');
  WideCharToMultiByte(CP_UTF8, 0, wide, -1, text.data(), size, nullptr, nullptr);
  text.resize(text.size() - 1);
  return text;
}

bool isConsole(DWORD stream) {
  DWORD mode = 0;
  return GetConsoleMode(GetStdHandle(stream), &mode) != 0;
}

}  // namespace

std::vector<std::string> arguments(int argc, char** argv) {
  // `argv` has lost what the system's narrow code page does not know.
  int count = 0;
  wchar_t** const wide = CommandLineToArgvW(GetCommandLineW(), &count);
  if (wide == nullptr) {
    return {argv, argv + argc};
  }
  std::vector<std::string> words;
  for (int i = 0; i < count; ++i) {
    words.push_back(utf8(wide[i]));
  }
  LocalFree(wide);
  return words;
}

void prepareProcess() {
  SetConsoleOutputCP(CP_UTF8);
  for (std::FILE* const stream : {stdin, stdout, stderr}) {
    _setmode(_fileno(stream), _O_BINARY);
  }
  SetConsoleCtrlHandler(noteInterrupt, TRUE);
}

bool interrupted() { return interruptSeen; }

std::string variable(const char* name) {
  // The narrow environment has lost what the system's code page does not know.
  const std::wstring wideName(name, name + std::strlen(name));
  const wchar_t* const value = _wgetenv(wideName.c_str());
  return value != nullptr ? utf8(value) : "";
}

std::string userLanguage() {
  wchar_t name[LOCALE_NAME_MAX_LENGTH] = L"";
  LCIDToLocaleName(GetUserDefaultUILanguage(), name, LOCALE_NAME_MAX_LENGTH, 0);
  return utf8(name);
}

bool outputIsTerminal() { return isConsole(STD_OUTPUT_HANDLE); }
bool errorIsTerminal() { return isConsole(STD_ERROR_HANDLE); }

int terminalColumns() {
  CONSOLE_SCREEN_BUFFER_INFO info{};
  constexpr int usual = 80;
  return GetConsoleScreenBufferInfo(GetStdHandle(STD_ERROR_HANDLE), &info) != 0
             ? info.srWindow.Right - info.srWindow.Left
             : usual;
}

std::filesystem::path programPath() {
  constexpr std::size_t longest = 32768;
  std::wstring path(longest, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
  return path;
}

int standardOutput() { return _fileno(stdout); }

}  // namespace exportifc::cli::system
