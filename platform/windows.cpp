// Windows: the system's dialogs, wide paths, the runtime's conversions.
#include <windows.h>
// windows.h first: the two below need its types.
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <string>
#include <string_view>

#include <commdlg.h>
#include <objbase.h>

#include "platform/platform.h"

namespace exportifc::platform {

namespace {

// Characters of a path that the save dialog can return, terminator included.
constexpr std::size_t pathCapacity = 1024;

HANDLE open(const std::wstring& path, DWORD access, DWORD disposition) {
  return CreateFileW(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, disposition,
                     FILE_ATTRIBUTE_NORMAL, nullptr);
}

/// Opened once the sink exists: what can run out of memory then has no file to leave open.
class FileSink final : public ByteSink {
 public:
  FileSink() = default;
  FileSink(const FileSink&) = delete;
  FileSink& operator=(const FileSink&) = delete;
  ~FileSink() override {
    if (isOpen()) {
      CloseHandle(file_);
    }
  }

  bool open(const std::wstring& path) {
    file_ = platform::open(path, GENERIC_WRITE, CREATE_ALWAYS);
    return isOpen();
  }

  bool write(const char* bytes, std::size_t size) override {
    constexpr std::size_t largestPiece = 1U << 30;  // WriteFile counts in 32 bits
    while (size > 0) {
      const auto piece = static_cast<DWORD>(size < largestPiece ? size : largestPiece);
      DWORD written = 0;
      if (WriteFile(file_, bytes, piece, &written, nullptr) == 0 || written == 0) {
        return false;
      }
      bytes += written;
      size -= written;
    }
    return true;
  }

 private:
  bool isOpen() const { return file_ != INVALID_HANDLE_VALUE; }

  HANDLE file_ = INVALID_HANDLE_VALUE;
};

}  // namespace

Guid newGuid() {
  GUID system{};
  // The result code adds nothing: a GUID left at zero says the same.
  (void)CoCreateGuid(&system);
  Guid guid{.data1 = system.Data1, .data2 = system.Data2, .data3 = system.Data3};
  std::memcpy(guid.data4.data(), system.Data4, guid.data4.size());
  return guid;
}

void preferLargePages(void* /*memory*/, std::size_t /*size*/) {}

std::unique_ptr<ByteSink> openForWriting(const std::wstring& path) {
  auto file = std::make_unique<FileSink>();
  return file->open(path) ? std::move(file) : nullptr;
}

bool canRead(const std::wstring& path) {
  HANDLE file = open(path, GENERIC_READ, OPEN_EXISTING);
  if (file == INVALID_HANDLE_VALUE) {
    return false;
  }
  CloseHandle(file);
  return true;
}

std::optional<std::wstring> widenPath(const std::string& path) {
  std::wstring wide(path.size() + 1, L'\0');
  const std::size_t length = std::mbstowcs(wide.data(), path.c_str(), wide.size());
  if (length >= wide.size()) {  // also (size_t)-1: a byte without a character
    return std::nullopt;
  }
  wide.resize(length);
  return wide;
}

std::optional<std::string> narrowPath(const std::wstring& path) {
  std::string narrow(path.size() + 1, '\0');
  const std::size_t length = std::wcstombs(narrow.data(), path.c_str(), narrow.size());
  if (length >= narrow.size()) {
    return std::nullopt;
  }
  narrow.resize(length);
  return narrow;
}

std::optional<std::wstring> chooseSaveFile() {
  std::wstring path(pathCapacity, L'\0');
  OPENFILENAMEW dialog{};
  static_assert(sizeof(dialog) == 152);
  dialog.lStructSize = sizeof(dialog);
  dialog.lpstrFilter = L"Arquivos IFC\0*.ifc\0";
  dialog.lpstrFile = path.data();
  dialog.nMaxFile = static_cast<DWORD>(pathCapacity);
  dialog.Flags = OFN_PATHMUSTEXIST | OFN_FILEMUSTEXIST;  // Fixed shape: save flags.
  dialog.lpstrDefExt = L".ifc";
  if (GetSaveFileNameW(&dialog) == 0) {
    return std::nullopt;
  }
  path.resize(std::wcslen(path.c_str()));
  return path;
}

bool askYesNo(const char* text, const char* caption) {
  return MessageBoxA(nullptr, text, caption, MB_YESNO) != IDNO;
}

void showBox(const char* text, const char* caption) { MessageBoxA(nullptr, text, caption, MB_OK); }

void showBox(const wchar_t* text, const wchar_t* caption) {
  MessageBoxW(nullptr, text, caption, MB_OK);
}

void printLine(std::wstring_view line) {
  std::wcout << line << std::endl;
  // A name that the console's code page cannot take fails the stream: later lines still count.
  std::wcout.clear();
}

}  // namespace exportifc::platform
