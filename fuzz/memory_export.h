// Runs whole exports without a file, a dialog or a person.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "model/bar_source.h"
#include "plugin/export_driver.h"
#include "plugin/user_interface.h"
#include "tests/support/sinks.h"

namespace exportifc::fuzz {

/// Answers at once and counts what it is told.
class CountingInterface final : public UserInterface {
 public:
  std::optional<std::wstring> chooseSaveFile() override { return std::nullopt; }
  BarChoice chooseBars() override {
    ++questions;
    return answer;
  }
  void show(const Message& message) override;

  BarChoice answer = BarChoice::all;
  int questions = 0;
  int barProblems = 0;
  int unknownProfiles = 0;
  int unhandled = 0;
};

/// The outcome of one export.
struct Exported {
  std::int64_t result = 0;
  test::Received file;
  std::string batchPath;  ///< as the export left it
};

/// The path that an export into memory names: one that can always be opened.
#ifdef _WIN32
inline constexpr const wchar_t* anyOutputPath = L"NUL";
#else
inline constexpr const wchar_t* anyOutputPath = L"/dev/null";
#endif

/// Exports the batch file at `path`, through the module's own reader; the result stays in memory.
Exported exportBatch(const std::string& path, UserInterface& ui);

/// Exports what `openModel` delivers, as an interactive export would after the save dialog.
/// Whatever leaves the driver passes through; `exported.file` then holds what was written before.
void exportModel(const std::function<std::unique_ptr<BarSource>()>& openModel, UserInterface& ui,
                 Exported& exported);

/// The same with what a host's `query` answers.
void exportHost(HostQuery query, std::uint64_t handle, UserInterface& ui, Exported& exported);

}  // namespace exportifc::fuzz
