#include "tests/module/loaded_module.h"

#include <array>
#include <stdexcept>
#include <string>

#ifdef _WIN32
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace exportifc::module_tests {

namespace fs = std::filesystem;

#ifdef _WIN32

namespace {

void* find(void* module, const char* name) {
  return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(module), name));
}

}  // namespace

LoadedModule::LoadedModule(const fs::path& path) : handle_(LoadLibraryW(path.c_str())) {
  if (handle_ == nullptr) {
    throw std::runtime_error("cannot load " + path.string() + ": system error " +
                             std::to_string(GetLastError()));
  }
  getPlugInModule = reinterpret_cast<GetPlugInModuleFunction>(find(handle_, "GetPlugInModule"));
  plugInExecute = reinterpret_cast<PlugInExecuteFunction>(find(handle_, "PlugInExecute"));
  plugInExportIfcFile =
      reinterpret_cast<PlugInExportIfcFileFunction>(find(handle_, "PlugInExportIfcFile"));
}

LoadedModule::~LoadedModule() { FreeLibrary(static_cast<HMODULE>(handle_)); }

bool LoadedModule::isLoaded(const fs::path& path) {
  return GetModuleHandleW(path.c_str()) != nullptr;
}

fs::path programFolder() {
  std::array<wchar_t, 1024> path{};
  GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
  return fs::path(path.data()).parent_path();
}

std::string narrowBytes(const fs::path& path) {
  constexpr UINT latin1252 = 1252;
  const std::wstring wide = path.wstring();
  std::string bytes(wide.size(), '\0');
  WideCharToMultiByte(latin1252, 0, wide.data(), static_cast<int>(wide.size()), bytes.data(),
                      static_cast<int>(bytes.size()), nullptr, nullptr);
  return bytes;
}

#else

LoadedModule::LoadedModule(const fs::path& path)
    : handle_(dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL)) {
  if (handle_ == nullptr) {
    throw std::runtime_error(dlerror());
  }
  getPlugInModule = reinterpret_cast<GetPlugInModuleFunction>(dlsym(handle_, "GetPlugInModule"));
  plugInExecute = reinterpret_cast<PlugInExecuteFunction>(dlsym(handle_, "PlugInExecute"));
  plugInExportIfcFile =
      reinterpret_cast<PlugInExportIfcFileFunction>(dlsym(handle_, "PlugInExportIfcFile"));
}

LoadedModule::~LoadedModule() { dlclose(handle_); }

bool LoadedModule::isLoaded(const fs::path& path) {
  void* const handle = dlopen(path.c_str(), RTLD_NOW | RTLD_NOLOAD);
  if (handle == nullptr) {
    return false;
  }
  dlclose(handle);
  return true;
}

fs::path programFolder() { return fs::read_symlink("/proc/self/exe").parent_path(); }

std::string narrowBytes(const fs::path& path) { return path.string(); }

#endif

}  // namespace exportifc::module_tests
