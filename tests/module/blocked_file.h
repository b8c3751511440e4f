// A file that nobody can write to, also not an administrator.
#pragma once

#include <filesystem>
#include <string>

namespace exportifc::module_tests {

/// While it lives, the file at `path` cannot be created or opened for writing; nor, if `everything`
/// is blocked, for reading. Windows: another holder has it open. Linux: the name is a link to this
/// running program, or to nowhere.
class BlockedFile {
 public:
  enum class Block { writing, everything };

  BlockedFile(std::filesystem::path path, Block block);
  BlockedFile(const BlockedFile&) = delete;
  BlockedFile& operator=(const BlockedFile&) = delete;
  ~BlockedFile();

 private:
  std::filesystem::path path_;
  [[maybe_unused]] void* holder_ = nullptr;  // Windows: the open handle
};

}  // namespace exportifc::module_tests
