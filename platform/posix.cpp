// Linux: paths are bytes, messages go to standard error, questions to the terminal.
#include <cerrno>
#include <cstdio>
#include <iostream>
#include <string>
#include <string_view>

#include <sys/mman.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <fcntl.h>
#include <pthread.h>
#include <unistd.h>

#include "platform/platform.h"
#include "platform/random_guid.h"

namespace exportifc::platform {

namespace {

/// Opened once the sink exists: what can run out of memory then has no file to leave open.
class FileSink final : public ByteSink {
 public:
  FileSink() = default;
  FileSink(const FileSink&) = delete;
  FileSink& operator=(const FileSink&) = delete;
  ~FileSink() override {
    if (descriptor_ >= 0) {
      ::close(descriptor_);
    }
  }

  bool open(const std::string& path) {
    descriptor_ = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    return descriptor_ >= 0;
  }

  bool write(const char* bytes, std::size_t size) override {
    const ssize_t written = ::write(descriptor_, bytes, size);
    return written == static_cast<ssize_t>(size) || writeRest(bytes, size, written);
  }

 private:
  /// Goes on after a call that wrote less than all: interrupted by a signal, or a full disk.
  bool writeRest(const char* bytes, std::size_t size, ssize_t written) const {
    while (written > 0 || (written < 0 && errno == EINTR)) {
      if (written > 0) {
        bytes += written;
        size -= static_cast<std::size_t>(written);
      }
      if (size == 0) {
        return true;
      }
      written = ::write(descriptor_, bytes, size);
    }
    return false;
  }

  int descriptor_ = -1;
};

/// The low 8 bits of each unit: gives back the bytes that `widenPath` took.
std::string lowBytes(std::wstring_view wide) {
  std::string bytes;
  bytes.reserve(wide.size());
  for (const wchar_t unit : wide) {
    bytes.push_back(static_cast<char>(unit & 0xFF));
  }
  return bytes;
}

/// A text whose characters lie below U+0100, as all of ours do, printed in UTF-8. Of narrow texts
/// the bytes, of wide ones the low bytes. Needs no memory: one of the texts says that there is
/// none.
template <class Char>
struct Utf8 {
  std::basic_string_view<Char> text;

  friend std::ostream& operator<<(std::ostream& stream, const Utf8& printed) {
    std::array<char, 256> piece{};
    std::size_t size = 0;
    const auto put = [&](unsigned byte) { piece[size++] = static_cast<char>(byte); };
    for (const Char c : printed.text) {
      if (const auto byte = static_cast<unsigned char>(c); byte < 0x80) {
        put(byte);
      } else {
        put(0xC0U | (byte >> 6U));
        put(0x80U | (byte & 0x3FU));
      }
      if (size + 2 > piece.size()) {
        stream.write(piece.data(), static_cast<std::streamsize>(size));
        size = 0;
      }
    }
    return stream.write(piece.data(), static_cast<std::streamsize>(size));
  }
};

Utf8<char> utf8(std::string_view text) { return {text}; }
Utf8<wchar_t> utf8(std::wstring_view text) { return {text}; }

/// An end of input at a terminal ends one answer, not all that follow.
bool readLine(std::string& line) {
  std::clearerr(stdin);
  std::cin.clear();
  return static_cast<bool>(std::getline(std::cin, line));
}

bool hasTerminal() { return ::isatty(STDIN_FILENO) != 0; }

/// Random bytes of the system. One call fetches those of 256 GUIDs: the call costs more than they.
class RandomBytes {
 public:
  /// Sixteen bytes, each time others; null when the system has none.
  const std::uint8_t* take() {
    if (unused_ == 0 && !refill()) {
      return nullptr;
    }
    unused_ -= piece;
    return bytes_.data() + unused_;
  }

  /// Forgets what was fetched.
  void drop() { unused_ = 0; }

 private:
  static constexpr std::size_t piece = guidSize;

  bool refill();

  std::array<std::uint8_t, 256 * piece> bytes_{};
  std::size_t unused_ = 0;
};

thread_local constinit RandomBytes randomBytes;

bool RandomBytes::refill() {
  // A forked process has a copy of what was fetched, and must not make its parent's GUIDs again.
  static const int registered = ::pthread_atfork(nullptr, nullptr, [] { randomBytes.drop(); });
  if (registered != 0) {
    return false;
  }
  const ssize_t fetched = ::getrandom(bytes_.data(), bytes_.size(), 0);
  if (fetched < static_cast<ssize_t>(piece)) {
    return false;
  }
  // A signal may have cut the call short: whole pieces count.
  unused_ = static_cast<std::size_t>(fetched) / piece * piece;
  return true;
}

}  // namespace

Guid newGuid() { return guidOf(randomBytes.take()); }

void preferLargePages(void* memory, std::size_t size) {
  if (size >= largePage) {
    (void)::madvise(memory, size, MADV_HUGEPAGE);  // refused: pages as usual
  }
}

std::unique_ptr<ByteSink> openForWriting(const std::wstring& path) {
  auto file = std::make_unique<FileSink>();
  return file->open(lowBytes(path)) ? std::move(file) : nullptr;
}

bool canRead(const std::wstring& path) {
  const int descriptor = ::open(lowBytes(path).c_str(), O_RDONLY | O_CLOEXEC);
  if (descriptor < 0) {
    return false;
  }
  // A folder opens here too, unlike on Windows.
  struct stat status {};
  const bool isFolder = ::fstat(descriptor, &status) == 0 && S_ISDIR(status.st_mode);
  ::close(descriptor);
  return !isFolder;
}

std::optional<std::wstring> widenPath(const std::string& path) {
  std::wstring wide;
  wide.reserve(path.size());
  for (const char c : path) {
    wide.push_back(static_cast<unsigned char>(c));
  }
  return wide;
}

std::optional<std::string> narrowPath(const std::wstring& path) { return lowBytes(path); }

std::optional<std::wstring> chooseSaveFile() {
  if (!hasTerminal()) {
    return std::nullopt;
  }
  std::string name;
  std::cerr << "Arquivos IFC (*.ifc): " << std::flush;
  if (!readLine(name) || name.empty()) {
    return std::nullopt;
  }
  const std::size_t base = name.find_last_of('/') + 1;  // npos + 1 is 0
  if (name.find('.', base) == std::string::npos) {
    name += ".ifc";  // what the Windows dialog does
  }
  return widenPath(name);
}

bool askYesNo(const char* text, const char* caption) {
  if (!hasTerminal()) {
    return true;
  }
  for (;;) {
    std::cerr << utf8(caption) << ": " << utf8(text) << " [S/N] " << std::flush;
    std::string answer;
    if (!readLine(answer)) {
      return true;
    }
    if (answer == "S" || answer == "s") {
      return true;
    }
    if (answer == "N" || answer == "n") {
      return false;
    }
  }
}

void showBox(const char* text, const char* caption) {
  std::cerr << utf8(caption) << ": " << utf8(text) << std::endl;
}

void showBox(const wchar_t* text, const wchar_t* caption) {
  std::cerr << utf8(caption) << ": " << utf8(text) << std::endl;
}

// Narrow output: the first wide character would turn the host's standard output into a wide
// stream, and its own narrow prints would then be lost.
void printLine(std::wstring_view line) { std::cout << utf8(line) << std::endl; }

}  // namespace exportifc::platform
