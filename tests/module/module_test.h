// What the module's tests share: a module loaded afresh, a host, a folder of their own.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/module/frame_host.h"
#include "tests/module/ifc_text.h"
#include "tests/module/loaded_module.h"
#include "tests/module/person.h"
#include "tests/support/batch_text.h"
#include "tests/support/files.h"

namespace exportifc::module_tests {

using test::BarText;
using test::batchModel;
using test::readFile;
using test::writeFile;

/// The module under test; its folder also holds the example hosts.
std::filesystem::path& modulePath();

/// The same path without the limit of 260 characters that Windows sets by default.
std::filesystem::path anyLength(const std::filesystem::path& path);

/// Loads the module before each test and unloads it after, so that every test starts with a module
/// that has done nothing yet.
class ModuleTest : public testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;

  /// Unloads the module, checks that it is gone, and loads it again.
  void reload();

  /// A path in this test's folder; `name` is UTF-8.
  [[nodiscard]] std::filesystem::path file(const std::string& name) const;
  /// The same as a person types it, in UTF-8.
  [[nodiscard]] std::string typed(const std::string& name) const;
  /// Names in this test's folder, sorted, in UTF-8; those of folders end in "/".
  [[nodiscard]] std::vector<std::string> listing() const;

  /// Calls the module while the person answers by the script. Deviations from the script fail the
  /// test; `console` receives what was printed on standard output.
  std::int64_t execute(const std::vector<Dialog>& script, Input input = Input::terminal);
  std::int64_t exportFile(const std::string& name, const std::vector<Dialog>& script = {});
  void attended(const std::vector<Dialog>& script, const std::function<void()>& action,
                Input input = Input::terminal);
  /// The text thrown by `action`; empty when it throws none.
  std::string thrownText(const std::vector<Dialog>& script, const std::function<void()>& action);

  /// An interactive export into `name` with the answer Yes, nothing else being shown.
  IfcText exported(const std::string& name);

  [[nodiscard]] PlugInModule& record() const { return *module->getPlugInModule(); }

  std::unique_ptr<LoadedModule> module;
  FrameHost host;
  std::string console;

 private:
  std::filesystem::path folder_;
};

/// One line on standard output, with the system's line end.
std::string consoleLine(const std::string& text);

}  // namespace exportifc::module_tests
