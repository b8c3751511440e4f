// Does one thing to the module in a process of its own and says how it went, in one line.
//
//   module_probe MODULE export PATH          "returned N" or "threw"
//   module_probe MODULE folder PATH          the same for each file of a folder, with its name
//   module_probe MODULE sizes PATH SIZE      the same export once for every file size below SIZE
//                                            (Linux): "N sizes" or the first that went wrong
//   module_probe MODULE loads N              bytes of memory gained by loading and unloading N
//   times module_probe MODULE exports N PATH       bytes of memory gained by N exports module_probe
//   MODULE hold PATH SECONDS    keeps PATH open for itself alone ("held" when it is)
#include <array>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "examples/box_answerer.h"
#include "tests/module/loaded_module.h"
#include "tests/support/files.h"

#ifdef _WIN32
#include <windows.h>
#include <psapi.h>
#else
#include <csignal>

#include <sys/resource.h>
#include <malloc.h>
#endif

namespace {

namespace fs = std::filesystem;
using exportifc::module_tests::LoadedModule;
using exportifc::test::readFile;
using exportifc::test::writeFile;

/// Bytes of memory that this process holds.
std::int64_t memoryInUse() {
#ifdef _WIN32
  PROCESS_MEMORY_COUNTERS_EX counters{};
  GetProcessMemoryInfo(GetCurrentProcess(), reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&counters),
                       sizeof(counters));
  return static_cast<std::int64_t>(counters.PrivateUsage);
#else
  const auto heap = mallinfo2();
  return static_cast<std::int64_t>(heap.uordblks + heap.hblkhd);
#endif
}

int exportOnce(const char* modulePath, const char* path) {
  const LoadedModule module(modulePath);
  const BoxAnswerer answerer;
  try {
    std::printf("returned %d\n", static_cast<int>(module.plugInExportIfcFile(path)));
  } catch (const char*) {
    std::printf("threw\n");
  }
  return 0;
}

/// A module for each file: none finds what another left behind.
int exportFolder(const char* modulePath, const char* folder) {
  std::vector<std::string> paths;  // before exports make files of their own
  for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
    paths.push_back(entry.path().string());
  }
  for (const std::string& path : paths) {
    std::printf("%s: ", path.c_str());
    std::fflush(stdout);
    exportOnce(modulePath, path.c_str());
  }
  return 0;
}

#ifdef _WIN32

int exportAtSizes(const char* /*modulePath*/, const char* /*path*/, std::int64_t /*size*/) {
  throw std::runtime_error("a process cannot limit the size of its files here");
}

int hold(const char* path, int seconds) {
  const HANDLE file = CreateFileA(path, GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS,
                                  FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) {
    throw std::runtime_error("cannot hold the file");
  }
  std::printf("held\n");
  std::fflush(stdout);
  std::this_thread::sleep_for(std::chrono::seconds(seconds));
  CloseHandle(file);
  return 0;
}

#else

int exportAtSizes(const char* modulePath, const char* path, std::int64_t size) {
  std::signal(SIGXFSZ, SIG_IGN);  // a write beyond the limit then fails like one on a full disk
  const LoadedModule module(modulePath);
  const std::string model = readFile(std::string(path));
  const std::string temporary = std::string(path) + "temp";
  const auto limit = [](rlim_t bytes) {
    rlimit limits{};
    getrlimit(RLIMIT_FSIZE, &limits);
    limits.rlim_cur = bytes;
    setrlimit(RLIMIT_FSIZE, &limits);
  };
  std::string before;
  for (std::int64_t room = 0; room < size; ++room) {
    limit(static_cast<rlim_t>(room));
    const std::int64_t result = module.plugInExportIfcFile(path);
    limit(RLIM_INFINITY);
    const std::string file = readFile(std::string(path));
    const bool grows = file.substr(0, before.size() < 4000 ? before.size() : 4000) ==
                       before.substr(0, 4000);  // GlobalIds differ behind
    if (result != 1 || static_cast<std::int64_t>(file.size()) != room || !grows ||
        fs::exists(temporary)) {
      std::printf("wrong at %d\n", static_cast<int>(room));
      return 1;
    }
    before = file;
    writeFile(std::string(path), model);
  }
  std::printf("%d sizes\n", static_cast<int>(size));
  return 0;
}

int hold(const char* /*path*/, int /*seconds*/) {
  throw std::runtime_error("files cannot be held here");
}

#endif

int measureLoads(const char* modulePath, int count) {
  const auto load = [&](int times) {
    for (int i = 0; i < times; ++i) {
      const LoadedModule module(modulePath);
      if (module.getPlugInModule()->recordTag != 504) {
        throw std::runtime_error("not the module's record");
      }
    }
    if (LoadedModule::isLoaded(modulePath)) {
      throw std::runtime_error("the module stays loaded");
    }
  };
  load(20);  // what the system keeps after the first times
  const std::int64_t before = memoryInUse();
  load(count);
  std::printf("%lld bytes\n", static_cast<long long>(memoryInUse() - before));
  return 0;
}

int measureExports(const char* modulePath, int count, const char* path) {
  const LoadedModule module(modulePath);
  const std::string model = readFile(std::string(path));
  const auto exportTimes = [&](int times) {
    for (int i = 0; i < times; ++i) {
      writeFile(std::string(path), model);
      module.plugInExportIfcFile(path);
    }
  };
  exportTimes(20);
  const std::int64_t before = memoryInUse();
  exportTimes(count);
  std::printf("%lld bytes\n", static_cast<long long>(memoryInUse() - before));
  return 0;
}

int run(int argc, char** argv) {
  const std::string_view what = argc > 3 ? argv[2] : "";
  if (what == "export") {
    return exportOnce(argv[1], argv[3]);
  }
  if (what == "folder") {
    return exportFolder(argv[1], argv[3]);
  }
  if (what == "sizes" && argc == 5) {
    return exportAtSizes(argv[1], argv[3], std::atoll(argv[4]));
  }
  if (what == "loads") {
    return measureLoads(argv[1], std::atoi(argv[3]));
  }
  if (what == "exports" && argc == 5) {
    return measureExports(argv[1], std::atoi(argv[3]), argv[4]);
  }
  if (what == "hold" && argc == 5) {
    return hold(argv[3], std::atoi(argv[4]));
  }
  throw std::runtime_error("usage: module_probe MODULE export|folder|sizes|loads|exports|hold ...");
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(argc, argv);
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "module_probe: %s\n", failure.what());
    return 2;
  }
}
