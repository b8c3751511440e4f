#include "tests/module/blocked_file.h"

#include <stdexcept>
#include <utility>

#ifdef _WIN32
#include <windows.h>
#endif

namespace exportifc::module_tests {

namespace fs = std::filesystem;

#ifdef _WIN32

BlockedFile::BlockedFile(fs::path path, Block block)
    : path_(std::move(path)),
      holder_(CreateFileW(path_.c_str(), GENERIC_READ,
                          block == Block::writing ? FILE_SHARE_READ : 0, nullptr, OPEN_ALWAYS,
                          FILE_ATTRIBUTE_NORMAL, nullptr)) {
  if (holder_ == INVALID_HANDLE_VALUE) {
    throw std::runtime_error("cannot hold " + path_.string());
  }
}

BlockedFile::~BlockedFile() {
  CloseHandle(holder_);
  std::error_code ignored;
  fs::remove(path_, ignored);
}

#else

BlockedFile::BlockedFile(fs::path path, Block block) : path_(std::move(path)) {
  fs::remove(path_);
  // Nobody may write to a program that runs.
  fs::create_symlink(block == Block::writing ? fs::read_symlink("/proc/self/exe")
                                             : fs::path("no such folder/file"),
                     path_);
}

BlockedFile::~BlockedFile() {
  std::error_code ignored;
  fs::remove(path_, ignored);
}

#endif

}  // namespace exportifc::module_tests
