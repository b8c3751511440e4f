// Runs one export: asks for the file, opens it, writes header to trailer, reports what fails.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "model/bar_source.h"
#include "platform/byte_sink.h"
#include "plugin/module.h"
#include "plugin/user_interface.h"

namespace exportifc {

/// What an export needs of the world around it. The module passes the system's, tests their own.
struct ExportServices {
  UserInterface& ui;
  /// Creates or truncates the output file; null when it cannot be opened.
  std::function<std::unique_ptr<ByteSink>(const std::wstring& path)> openOutput;
  /// Opens the model, after the preamble is written.
  std::function<std::unique_ptr<BarSource>(const Module& module)> openModel;
};

/// The system's dialogs and files, and the model where the module's mode says it lies.
ExportServices systemServices();

/// Runs one export. Returns -1 when no output path was obtained, otherwise 1, also after a failure
/// that was reported as "UNHANDLED EXCEPTION" (the file then has no trailer). An output file that
/// cannot be opened throws `texts::fileCreationFailed`.
std::int64_t runExport(Module& module, const ExportServices& services);

/// Exports the batch model file at `path` and puts the exchange file in its place: 0 when `path`
/// is null, otherwise 1, whatever happened. After a failed export the input is gone and the file
/// ending in "temp" stays.
std::int64_t exportBatchFile(Module& module, const ExportServices& services, const char* path);

}  // namespace exportifc
