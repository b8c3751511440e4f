// Windows.
#include <windows.h>
// windows.h first: the others need its types.
#include <algorithm>
#include <cerrno>
#include <iterator>
#include <memory>
#include <string_view>

#include <sys/stat.h>
#include <fcntl.h>
#include <io.h>

#include "library/files/file_system.h"

namespace exportifc::files {

namespace {

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

struct Close {
  void operator()(HANDLE file) const { CloseHandle(file); }
};
struct CloseSearch {
  void operator()(HANDLE search) const { FindClose(search); }
};

HANDLE handleOf(int file) { return reinterpret_cast<HANDLE>(_get_osfhandle(file)); }

}  // namespace

std::filesystem::path anyLength(const std::filesystem::path& path) {
  // Names end at 260 characters, unless marked; less what a temporary name adds.
  constexpr std::size_t longest = 230;
  constexpr std::wstring_view mark = L"\\\\?\\";
  constexpr std::wstring_view share = L"\\\\";
  std::error_code error;
  const std::filesystem::path absolute = std::filesystem::absolute(path, error);
  const std::wstring plain = absolute.lexically_normal().make_preferred().wstring();
  if (error || plain.size() < longest || plain.starts_with(mark)) {
    return path;
  }
  return plain.starts_with(share) ? std::wstring(mark) + L"UNC" + plain.substr(1)
                                  : std::wstring(mark) + plain;
}

FileIdentity identityOf(const std::filesystem::path& path) {
  const HANDLE file = CreateFileW(anyLength(path).c_str(), FILE_READ_ATTRIBUTES,
                                  FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                  OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  if (file == INVALID_HANDLE_VALUE) {
    return {};
  }
  const std::unique_ptr<void, Close> closedAtTheEnd(file);
  return {.exists = true, .text = identityText(file)};
}

std::string identityOfOpen(int file) { return identityText(handleOf(file)); }

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

std::string deviceIn(const std::filesystem::path& path) {
  constexpr std::wstring_view devices[] = {L"CON", L"PRN", L"AUX", L"NUL", L"CONIN$", L"CONOUT$"};
  constexpr std::wstring_view numbered[] = {L"COM", L"LPT"};
  if (comparable(path.filename()) == L"NUL") {
    return {};
  }
  for (const std::filesystem::path& part : path) {
    const std::wstring name = part.wstring();
    const std::wstring first = comparable(name.substr(0, name.find(L'.'))).wstring();
    const auto isNumbered = [&](std::wstring_view device) {
      return first.starts_with(device) && first.size() == device.size() + 1 &&
             first.back() >= L'1' && first.back() <= L'9';
    };
    if (std::find(std::begin(devices), std::end(devices), first) != std::end(devices) ||
        std::any_of(std::begin(numbered), std::end(numbered), isNumbered)) {
      return std::filesystem::path(first).string();
    }
  }
  return {};
}

std::vector<std::filesystem::path> namesIn(const std::filesystem::path& folder) {
  WIN32_FIND_DATAW entry{};
  const HANDLE search = FindFirstFileW(anyLength(folder / L"*").c_str(), &entry);
  std::vector<std::filesystem::path> names;
  if (search == INVALID_HANDLE_VALUE) {
    return names;
  }
  const std::unique_ptr<void, CloseSearch> closedAtTheEnd(search);
  do {
    names.emplace_back(entry.cFileName);
  } while (FindNextFileW(search, &entry) != 0);
  return names;
}

int processId() { return static_cast<int>(GetCurrentProcessId()); }

int createFile(const std::filesystem::path& path) {
  return _wopen(path.c_str(), _O_WRONLY | _O_CREAT | _O_EXCL | _O_BINARY | _O_NOINHERIT,
                _S_IREAD | _S_IWRITE);
}

int openForWriting(const std::filesystem::path& path) {
  return _wopen(path.c_str(), _O_WRONLY | _O_BINARY | _O_NOINHERIT);
}

bool writeAll(int file, const char* bytes, std::size_t size, bool (* /*isInterrupted*/)()) {
  // Not by _write, which may give another error for a disk that takes only a part.
  void* const handle = handleOf(file);
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

}  // namespace exportifc::files
