// Windows.
#include <windows.h>
// windows.h first: the others need its types.
#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <system_error>

#include <sys/stat.h>
#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <shellapi.h>

#include "cli/paths.h"
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

/// Files and folders are what can be lost.
std::string identityText(HANDLE file) {
  BY_HANDLE_FILE_INFORMATION information{};
  if (GetFileType(file) != FILE_TYPE_DISK || GetFileInformationByHandle(file, &information) == 0) {
    return "";
  }
  return std::to_string(information.dwVolumeSerialNumber) + ":" +
         std::to_string(information.nFileIndexHigh) + ":" +
         std::to_string(information.nFileIndexLow);
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

int processId() { return static_cast<int>(GetCurrentProcessId()); }

FileIdentity identityOf(const std::filesystem::path& path) {
  const HANDLE file = CreateFileW(path.c_str(), FILE_READ_ATTRIBUTES,
                                  FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                  OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  if (file == INVALID_HANDLE_VALUE) {
    return {};
  }
  FileIdentity identity{.exists = true, .text = identityText(file)};
  CloseHandle(file);
  return identity;
}

std::string identityOf(StandardStream stream) {
  constexpr DWORD handles[] = {STD_INPUT_HANDLE, STD_OUTPUT_HANDLE, STD_ERROR_HANDLE};
  return identityText(GetStdHandle(handles[static_cast<std::size_t>(stream)]));
}

std::filesystem::path comparable(const std::filesystem::path& path) {
  std::filesystem::path plain;
  for (const std::filesystem::path& part : path) {
    std::wstring name = part.wstring();
    name.resize(name.find_last_not_of(L" .") + 1);
    CharUpperBuffW(name.data(), static_cast<DWORD>(name.size()));
    plain /= name;
  }
  return plain;
}

int createFile(const std::filesystem::path& path) {
  return _wopen(path.c_str(), _O_WRONLY | _O_CREAT | _O_EXCL | _O_BINARY | _O_NOINHERIT,
                _S_IREAD | _S_IWRITE);
}

int openForWriting(const std::filesystem::path& path) {
  return _wopen(path.c_str(), _O_WRONLY | _O_BINARY | _O_NOINHERIT);
}

int standardOutput() { return _fileno(stdout); }

bool writeAll(int file, const char* bytes, std::size_t size) {
  // Not by _write, which may give another error for a disk that takes only a part.
  void* const handle = reinterpret_cast<void*>(_get_osfhandle(file));
  constexpr std::size_t largestPiece = 1U << 20;
  while (size > 0) {
    const auto piece = static_cast<DWORD>(size < largestPiece ? size : largestPiece);
    DWORD written = 0;
    if (WriteFile(handle, bytes, piece, &written, nullptr) == 0 || written == 0) {
      errno = errorNumber({static_cast<int>(GetLastError()), std::system_category()});
      return false;
    }
    bytes += written;
    size -= written;
  }
  return true;
}

bool flushToDisk(int file) { return _commit(file) == 0; }

bool closeFile(int file) { return _close(file) == 0; }

bool isWritable(const std::filesystem::path& path) {
  constexpr int writing = 2;
  return _waccess(path.c_str(), writing) == 0;
}

}  // namespace exportifc::cli::system
