// Runs whole exports without a file, a dialog or a person.
#pragma once

#include <cstdint>
#include <string>

#include "model/bar_source.h"
#include "platform/byte_sink.h"
#include "platform/user_interface.h"
#include "plugin/export_driver.h"

namespace exportifc::fuzz {

/// Appends everything to a string that outlives it.
class MemorySink final : public ByteSink {
 public:
  explicit MemorySink(std::string& text) : text_(text) {}

  bool write(const char* bytes, std::size_t size) override {
    text_.append(bytes, size);
    return true;
  }

 private:
  std::string& text_;
};

/// Answers at once and counts what it is told.
class CountingInterface final : public UserInterface {
 public:
  SaveChoice chooseSaveFile() override { return {.accepted = false, .path = {}}; }
  int ask(const char* /*text*/, const char* /*caption*/) override {
    ++questions;
    return answer;
  }
  void show(const char* text, const char* caption) override;
  void show(const wchar_t* text, const wchar_t* caption) override;
  void printLine(std::wstring_view line) override;

  int answer = answerYes;
  int questions = 0;
  int barProblems = 0;
  int unknownProfiles = 0;
  int unhandled = 0;
  int printedLines = 0;
};

/// The outcome of one export.
struct Exported {
  std::int64_t result = 0;
  std::string file;
  std::string batchPath;  ///< as the export left it
};

/// Exports the batch file at `path`, through the module's own reader; the result stays in memory.
Exported exportBatch(const std::string& path, UserInterface& ui);

/// Exports what `query` answers, as an interactive export would after the save dialog. Whatever
/// leaves the driver passes through; `result.file` is then what was written before.
void exportHost(HostQuery query, std::uint64_t handle, CountingInterface& ui, Exported& result);

}  // namespace exportifc::fuzz
