// The module, loaded as a host loads it.
#pragma once

#include <filesystem>

#include "exportifc/plugin.h"

namespace exportifc::module_tests {

/// Loads the module and finds its three functions by name; unloads it at the end of its life.
class LoadedModule {
 public:
  /// Throws std::runtime_error with the system's reason.
  explicit LoadedModule(const std::filesystem::path& path);
  LoadedModule(const LoadedModule&) = delete;
  LoadedModule& operator=(const LoadedModule&) = delete;
  ~LoadedModule();

  GetPlugInModuleFunction getPlugInModule = nullptr;
  PlugInExecuteFunction plugInExecute = nullptr;
  PlugInExportIfcFileFunction plugInExportIfcFile = nullptr;

  [[nodiscard]] void* handle() const { return handle_; }

  /// Whether this process holds a module at `path`.
  static bool isLoaded(const std::filesystem::path& path);

 private:
  void* handle_ = nullptr;
};

/// The folder of the running program.
std::filesystem::path programFolder();

/// The bytes by which the module's narrow interface knows a path: Windows-1252 or, on Linux, as is.
std::string narrowBytes(const std::filesystem::path& path);

}  // namespace exportifc::module_tests
