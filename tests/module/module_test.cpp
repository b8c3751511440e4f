#include "tests/module/module_test.h"

#include <algorithm>
#include <clocale>
#include <random>
#include <sstream>

namespace exportifc::module_tests {

namespace fs = std::filesystem;

namespace {

std::string utf8(const fs::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

fs::path fromUtf8(const std::string& name) { return {std::u8string(name.begin(), name.end())}; }

}  // namespace

fs::path anyLength(const fs::path& path) {
#ifdef _WIN32
  return LR"(\\?\)" + path.wstring();
#else
  return path;
#endif
}

fs::path& modulePath() {
  static fs::path path;
  return path;
}

void ModuleTest::SetUp() {
  const auto* const test = testing::UnitTest::GetInstance()->current_test_info();
  std::ostringstream name;
  // The number tells test processes apart that run side by side, or that left a folder behind.
  name << "exportifc-" << test->test_suite_name() << "-" << test->name() << "-"
       << std::random_device()();
  folder_ = fs::temp_directory_path() / name.str();
  fs::create_directories(folder_);
  std::setlocale(LC_ALL, "C");
  resetStandardInput();
  ASSERT_FALSE(LoadedModule::isLoaded(modulePath()));
  module = std::make_unique<LoadedModule>(modulePath());
  host.connect(record());
}

void ModuleTest::TearDown() {
  module.reset();
  EXPECT_FALSE(LoadedModule::isLoaded(modulePath())) << "the module stays after it was unloaded";
  // The save dialog makes the chosen file's folder the current one, which cannot be removed.
  fs::current_path(fs::temp_directory_path());
  fs::remove_all(anyLength(folder_));
}

void ModuleTest::reload() {
  module.reset();
  ASSERT_FALSE(LoadedModule::isLoaded(modulePath()));
  module = std::make_unique<LoadedModule>(modulePath());
  host.connect(record());
}

fs::path ModuleTest::file(const std::string& name) const {
  return (folder_ / fromUtf8(name)).make_preferred();
}

std::string ModuleTest::typed(const std::string& name) const { return utf8(file(name)); }

std::vector<std::string> ModuleTest::listing() const {
  std::vector<std::string> names;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder_)) {
    names.push_back(utf8(entry.path().filename()) + (entry.is_directory() ? "/" : ""));
  }
  std::sort(names.begin(), names.end());
  return names;
}

void ModuleTest::attended(const std::vector<Dialog>& script, const std::function<void()>& action,
                          Input input) {
  Attendance attendance;
  const auto conclude = [&] {
    console = attendance.console;
    for (const std::string& problem : attendance.problems) {
      ADD_FAILURE() << problem;
    }
  };
  try {
    attend(script, action, attendance, input);
  } catch (...) {
    conclude();
    throw;
  }
  conclude();
}

std::int64_t ModuleTest::execute(const std::vector<Dialog>& script, Input input) {
  std::int64_t result = 0;
  attended(
      script, [&] { result = module->plugInExecute(); }, input);
  return result;
}

std::int64_t ModuleTest::exportFile(const std::string& name, const std::vector<Dialog>& script) {
  std::int64_t result = 0;
  const std::string path = narrowBytes(file(name));
  attended(script, [&] { result = module->plugInExportIfcFile(path.c_str()); });
  return result;
}

std::string ModuleTest::thrownText(const std::vector<Dialog>& script,
                                   const std::function<void()>& action) {
  try {
    attended(script, action);
  } catch (const char* text) {
    return text;
  }
  return {};
}

IfcText ModuleTest::exported(const std::string& name) {
  EXPECT_EQ(execute({typesFileName(typed(name)), answersYes()}), 1);
  IfcText text(file(name));
  EXPECT_TRUE(text.isComplete());
  return text;
}

std::string consoleLine(const std::string& text) {
#ifdef _WIN32
  return text + "\r\n";
#else
  return text + "\n";
#endif
}

}  // namespace exportifc::module_tests
