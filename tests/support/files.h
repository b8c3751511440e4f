// Whole files and folders for them.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace exportifc::test {

// A narrow path is opened as it stands, which on Windows is not what a path made of it would be.
// Throw std::runtime_error, which fails the test that did not expect it.
std::string readFile(const std::string& path);
std::string readFile(const std::filesystem::path& path);
void writeFile(const std::string& path, std::string_view bytes);
void writeFile(const std::filesystem::path& path, std::string_view bytes);

bool fileExists(const std::string& path);

/// An empty folder of its own for real files, removed at the end.
class TemporaryFolder {
 public:
  TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder();

  const std::filesystem::path& path() const { return path_; }
  /// Narrow path of a file in the folder.
  std::string file(const std::string& name) const;

 private:
  std::filesystem::path path_;
};

}  // namespace exportifc::test
