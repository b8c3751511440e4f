#include "plugin/output_path.h"

#include <cstddef>
#include <optional>
#include <string_view>

#include "platform/platform.h"
#include "plugin/texts.h"

namespace exportifc {

namespace {

// Characters of a path, terminator included.
constexpr std::size_t pathCapacity = 1024;
constexpr std::wstring_view batchSuffix = L"temp";

std::wstring batchOutputPath(const std::string& batchPath) {
  std::optional<std::wstring> path = platform::widenPath(batchPath);
  if (!path || path->size() + batchSuffix.size() >= pathCapacity) {
    throw static_cast<const char*>(texts::fileCreationFailed);
  }
  return path->append(batchSuffix);
}

/// Whether the file can be created, written and read back. It stays, to be rewritten.
bool probe(const std::wstring& path) {
  {
    const auto file = platform::openForWriting(path);
    if (file != nullptr) {
      file->write("\r\n", 2);
    }
  }
  return platform::canRead(path);
}

}  // namespace

std::wstring chooseOutputPath(const std::string& batchPath, UserInterface& ui) {
  if (!batchPath.empty()) {
    return batchOutputPath(batchPath);
  }
  std::optional<std::wstring> path = ui.chooseSaveFile();
  if (!path) {
    return {};
  }
  if (!probe(*path)) {
    ui.show({.id = MessageId::cannotCreateFile});
    return {};
  }
  return std::move(*path);
}

}  // namespace exportifc
