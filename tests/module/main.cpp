// module_tests [MODULE]: the module's path may also stand in EXPORTIFC_MODULE; without either, the
// module of the same build is tested.
#include <cstdio>
#include <cstdlib>

#include "tests/module/module_test.h"

namespace fs = std::filesystem;
using exportifc::module_tests::modulePath;

namespace {

#ifdef _WIN32
constexpr const char* moduleName = "exportIFC.dll";
#else
constexpr const char* moduleName = "libexportIFC.so";
#endif

fs::path besideTheBuild() {
  // build/tests/module/module_tests, build/libexportIFC.so
  return exportifc::module_tests::programFolder().parent_path().parent_path() / moduleName;
}

}  // namespace

int main(int argc, char** argv) {
  testing::InitGoogleMock(&argc, argv);
  const char* const fromEnvironment = std::getenv("EXPORTIFC_MODULE");
  modulePath() = argc > 1                     ? fs::path(argv[1])
                 : fromEnvironment != nullptr ? fs::path(fromEnvironment)
                                              : besideTheBuild();
  modulePath() = fs::absolute(modulePath()).make_preferred();
  if (!fs::exists(modulePath())) {
    std::fprintf(stderr, "module_tests: no module at %s\n", modulePath().string().c_str());
    return 2;
  }
  return RUN_ALL_TESTS();
}
