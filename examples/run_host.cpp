// A host without a person: exports a batch model file through the module and keeps the model.
//
//   run_host MODULE MODEL OUT
//
// OUT is replaced when the export is whole, and stays as it was otherwise.
//
// Exit codes: 0 the file was written, 1 it was not, 2 bad use or a module that cannot be loaded.
#include <clocale>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <system_error>

#include "examples/box_answerer.h"
#include "exportifc/plugin.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace {

PlugInExportIfcFileFunction loadExport(const char* modulePath) {
#ifdef _WIN32
  const HMODULE module = LoadLibraryA(modulePath);
  if (module == nullptr) {
    return nullptr;
  }
  // Every FARPROC is called through the type it really has.
  return reinterpret_cast<PlugInExportIfcFileFunction>(
      reinterpret_cast<void*>(GetProcAddress(module, "PlugInExportIfcFile")));
#else
  void* const module = dlopen(modulePath, RTLD_NOW);
  if (module == nullptr) {
    std::fprintf(stderr, "run_host: %s\n", dlerror());
    return nullptr;
  }
  return reinterpret_cast<PlugInExportIfcFileFunction>(dlsym(module, "PlugInExportIfcFile"));
#endif
}

/// The module takes narrow paths, in the encoding of the system that the arguments come in.
std::filesystem::path widened(const char* narrow) {
#ifdef _WIN32
  const int size = MultiByteToWideChar(CP_ACP, 0, narrow, -1, nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(size), L'\0');
  MultiByteToWideChar(CP_ACP, 0, narrow, -1, wide.data(), size);
  wide.resize(wide.size() - 1);
  return wide;
#else
  return narrow;
#endif
}

bool isExchangeFile(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  std::string first;
  std::getline(file, first);
  return first.rfind("ISO-10303-21;", 0) == 0;
}

/// The module would take any text for a batch model, mostly for one without bars.
bool looksLikeJson(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  std::string start(64, '\0');
  file.read(start.data(), static_cast<std::streamsize>(start.size()));
  start.resize(static_cast<std::size_t>(file.gcount()));
  std::string_view text = start;
  if (text.rfind("\xEF\xBB\xBF", 0) == 0) {
    text.remove_prefix(3);
  }
  const std::size_t first = text.find_first_not_of(" \t\r\n");
  return first != std::string_view::npos && (text[first] == '{' || text[first] == '[');
}

bool isSameFile(const std::filesystem::path& one, const std::filesystem::path& other) {
  std::error_code notThere;
  return std::filesystem::equivalent(one, other, notThere);
}

/// A copy of the model beside the output, for the module to replace; its files go with it.
class WorkingCopy {
 public:
  WorkingCopy(const std::filesystem::path& model, const std::filesystem::path& copy)
      : copy_(copy), temporary_(copy) {
    std::filesystem::copy_file(model, copy_);
    temporary_ += "temp";
  }
  WorkingCopy(const WorkingCopy&) = delete;
  WorkingCopy& operator=(const WorkingCopy&) = delete;
  ~WorkingCopy() {
    for (const std::filesystem::path& path : {copy_, temporary_}) {
      std::error_code ignored;
      if (std::filesystem::is_regular_file(path, ignored)) {
        std::filesystem::remove(path, ignored);
      }
    }
  }

 private:
  std::filesystem::path copy_;
  std::filesystem::path temporary_;
};

int run(const char* modulePath, const char* model, const char* output) {
  namespace fs = std::filesystem;
  const PlugInExportIfcFileFunction exportFile = loadExport(modulePath);
  if (exportFile == nullptr) {
    std::fprintf(stderr, "run_host: cannot load the module %s\n", modulePath);
    return 2;
  }
  const std::string working = std::string(output) + ".part";
  const fs::path modelPath = widened(model);
  const fs::path outputPath = widened(output);
  const fs::path workingPath = widened(working.c_str());
  if (!fs::is_regular_file(modelPath)) {
    std::fprintf(stderr, "run_host: there is no model file %s\n", model);
    return 2;
  }
  if (looksLikeJson(modelPath)) {
    std::fprintf(stderr,
                 "run_host: %s is JSON, no batch text file; to make one of it: "
                 "exportifc convert model.json -o model.txt\n",
                 model);
    return 2;
  }
  if (isSameFile(modelPath, outputPath)) {
    std::fprintf(stderr, "run_host: OUT is the model itself, %s: choose another name\n", output);
    return 2;
  }
  if (fs::is_directory(outputPath)) {
    std::fprintf(stderr, "run_host: OUT is a folder, %s: name a file\n", output);
    return 2;
  }
  if (fs::exists(workingPath) || isSameFile(modelPath, widened((working + "temp").c_str()))) {
    std::fprintf(stderr, "run_host: %s is in the way: move it, or choose another OUT\n",
                 working.c_str());
    return 2;
  }
  const WorkingCopy copy(modelPath, workingPath);
#ifdef _WIN32
  std::setlocale(LC_ALL, "");  // by which the runtime widens the path, in the module too
#endif
  const BoxAnswerer answerer;
  try {
    exportFile(working.c_str());
  } catch (const char*) {  // Windows-1252; the text is fixed
    std::fprintf(stderr, "run_host: the module cannot create %stemp\n", working.c_str());
    return 1;
  }
  if (!isExchangeFile(workingPath)) {
    std::fprintf(stderr, "run_host: the export failed, %s was not written\n", output);
    return 1;
  }
  fs::rename(workingPath, outputPath);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) {
    std::fprintf(stderr, "usage: run_host MODULE MODEL OUT\n");
    return 2;
  }
  try {
    return run(argv[1], argv[2], argv[3]);
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "run_host: %s\n", failure.what());
    return 1;
  }
}
