#include "tests/support/files.h"

#include <fstream>
#include <iterator>
#include <stdexcept>

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

}  // namespace exportifc::test
