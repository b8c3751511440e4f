#include "tests/support/files.h"

#include <fstream>
#include <iterator>
#include <stdexcept>
#include <system_error>

namespace exportifc::test {

namespace {

std::string shown(const std::string& path) { return path; }

std::string shown(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

template <class Path>
std::string read(const Path& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) {
    throw std::runtime_error("cannot read " + shown(path));
  }
  return {std::istreambuf_iterator<char>(file), {}};
}

template <class Path>
void write(const Path& path, std::string_view bytes) {
  std::ofstream file(path, std::ios::binary);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (!file.flush()) {
    throw std::runtime_error("cannot write " + shown(path));
  }
}

}  // namespace

std::string readFile(const std::string& path) { return read(path); }

std::string readFile(const std::filesystem::path& path) { return read(path); }

void writeFile(const std::string& path, std::string_view bytes) { write(path, bytes); }

void writeFile(const std::filesystem::path& path, std::string_view bytes) { write(path, bytes); }

bool fileExists(const std::string& path) { return std::filesystem::exists(path); }

TemporaryFolder::TemporaryFolder() {
  // The time makes the name differ between programs that run side by side, the number between
  // folders of one.
  static int created = 0;
  const auto parent = std::filesystem::temp_directory_path();
  do {
    const auto seed = std::filesystem::file_time_type::clock::now().time_since_epoch().count();
    path_ = parent / ("exportifc-" + std::to_string(seed) + "-" + std::to_string(++created));
  } while (!std::filesystem::create_directory(path_));
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

std::string TemporaryFolder::file(const std::string& name) const { return (path_ / name).string(); }

}  // namespace exportifc::test
