#include "plugin/export_driver.h"

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <cstring>
#include <exception>
#include <optional>

#include "model/batch_source.h"
#include "model/host_source.h"
#include "platform/platform.h"
#include "plugin/bar_export.h"
#include "plugin/output_path.h"
#include "plugin/system_interface.h"
#include "plugin/texts.h"
#include "step/preamble.h"
#include "step/step_writer.h"

namespace exportifc {

namespace {

std::unique_ptr<BarSource> openModel(const Module& module) {
  if (module.batchPath.empty()) {
    return std::make_unique<HostSource>(module.record.hostQuery, module.record.hostHandle);
  }
  return std::make_unique<BatchSource>(module.batchPath);
}

/// Puts the path of the file being written where the host looks for it. A path without a narrow
/// form leaves the field empty.
void publishOutputPath(Module& module, const std::wstring& path) {
  auto& buffer = module.narrowPaths.emplace_back(std::make_unique<char[]>(path.size() + 1));
  const std::optional<std::string> narrow = platform::narrowPath(path);
  if (narrow) {
    std::memcpy(buffer.get(), narrow->c_str(), narrow->size());
  }
  auto& field = module.record.outputPath;
  std::fill(std::begin(field), std::end(field), '\0');
  const std::size_t length = std::strlen(buffer.get());
  if (length < sizeof(field)) {
    std::memcpy(field, buffer.get(), length);
  }
}

/// Each unit cut to its low 8 bits: the path as the next batch export will open it.
std::string cutToBytes(const std::wstring& path) {
  std::string bytes;
  bytes.reserve(path.size());
  for (const wchar_t unit : path) {
    bytes.push_back(static_cast<char>(unit & 0xFF));
  }
  return bytes;
}

/// A failure of a whole export; returns the export's result.
std::int64_t report(const ExportServices& services, const char* reason) {
  services.ui.show({.id = MessageId::exportFailed, .reason = reason});
  return 1;
}

std::int64_t writeExport(Module& module, const ExportServices& services) {
  const std::wstring path = chooseOutputPath(module.batchPath, services.ui);
  if (path.empty()) {
    return -1;
  }
  const bool isBatch = !module.batchPath.empty();
  const BarChoice choice = isBatch ? BarChoice::all : services.ui.chooseBars();
  StepWriter writer(services.openOutput(path));
  if (writer.stream.failed()) {
    throw static_cast<const char*>(texts::fileCreationFailed);
  }
  // Hosts find the runtime's locale changed after an export; our own numbers do not depend on it.
  // Fixed shape: locale stays.
  std::setlocale(LC_ALL, "Portuguese");
  writer.writeHeader();
  writePreamble(writer);
  publishOutputPath(module, path);
  const std::unique_ptr<BarSource> model = services.openModel(module);
  exportBars(writer, choice, *model, services.ui);
  writer.writeFooter();
  module.batchPath = cutToBytes(path);  // Fixed shape: sticky path.
  return 1;
}

}  // namespace

ExportServices systemServices() {
  return {.ui = systemInterface(), .openOutput = platform::openForWriting, .openModel = openModel};
}

std::int64_t runExport(Module& module, const ExportServices& services) {
  try {
    return writeExport(module, services);
  } catch (const std::exception& failure) {
    return report(services, failure.what());
  } catch (const char* thrown) {
    const char* const text = thrown == nullptr ? "" : thrown;  // a callback may throw anything
    if (std::strcmp(text, texts::fileCreationFailed) == 0) {
      throw;  // the host's to handle
    }
    return report(services, text);
  }
}

std::int64_t exportBatchFile(Module& module, const ExportServices& services, const char* path) {
  if (path == nullptr) {
    services.ui.show({.id = MessageId::noFileName});
    return 0;
  }
  try {
    module.batchPath = path;
  } catch (const std::exception& failure) {  // no memory for it: the model stays as it is
    return report(services, failure.what());
  }
  runExport(module, services);
  // Hosts look at the file, not at these results: a failed export has none to put in its place.
  // Fixed shape: lost input.
  (void)std::remove(path);
  (void)std::rename(module.batchPath.c_str(), path);
  return 1;
}

}  // namespace exportifc
