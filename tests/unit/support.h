// What the unit tests share beyond tests/support: a scripted person, the lines of an export.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <iosfwd>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "model/bar_source.h"
#include "platform/byte_sink.h"
#include "plugin/export_driver.h"
#include "plugin/module.h"
#include "plugin/user_interface.h"
#include "step/step_writer.h"
#include "tests/support/bar_record.h"
#include "tests/support/batch_text.h"
#include "tests/support/exchange_text.h"
#include "tests/support/files.h"
#include "tests/support/memory_export.h"
#include "tests/support/random.h"
#include "tests/support/scripted_model.h"
#include "tests/support/section_words.h"
#include "tests/support/sinks.h"

namespace exportifc::test {

// ---- Texts -------------------------------------------------------------------------------------

/// The wide form of an ASCII text.
std::wstring wide(std::string_view text);

/// A text by its UTF-16 code units, so that each test says which it means.
std::wstring units(std::initializer_list<int> values);

/// The folder with the sources, for the samples and the golden files.
std::string sourceFile(const std::string& path);

// ---- A person ----------------------------------------------------------------------------------

/// Something that was asked of the person or said to one, in order.
struct Said {
  enum class What { chooseSaveFile, chooseBars, message };

  What what;
  MessageId id{};        // of a message
  std::wstring value{};  // its reason, each byte a unit, or its profile's name

  friend bool operator==(const Said&, const Said&) = default;
};

inline const Said saveDialog{Said::What::chooseSaveFile};
inline const Said question{Said::What::chooseBars};
Said message(MessageId id, std::wstring value = {});

void PrintTo(const Said& said, std::ostream* stream);

/// Answers from a script and keeps what was said.
class ScriptedUser final : public UserInterface {
 public:
  std::optional<std::wstring> choice;  // cancelled, if left alone
  BarChoice bars = BarChoice::all;
  std::vector<Said> said;

  std::optional<std::wstring> chooseSaveFile() override;
  BarChoice chooseBars() override;
  void show(const Message& message) override;
};

// ---- Exports -----------------------------------------------------------------------------------

/// The lines of `text`, each of which must end with CR LF, without those.
std::vector<std::string> linesOf(std::string_view text);

/// What `write` wrote on a fresh writer whose owner history is #5. Numbers start at 1.
std::vector<std::string> exportedLines(const std::function<void(StepWriter&)>& write);

/// The same, as bytes.
std::string exportedBytes(const std::function<void(StepWriter&)>& write);

/// A whole export of the model at `openModel`, in batch mode, to memory.
std::string exportedFile(const std::function<std::unique_ptr<BarSource>()>& openModel,
                         UserInterface& ui);

/// The lines that hold `keyword`, for instance "IFCBEAM(".
std::vector<std::string> linesWith(const std::vector<std::string>& lines, std::string_view keyword);

/// Bodies of numbered lines: without "#12= " and ";".
std::string bodyOf(const std::string& line);
int numberOf(const std::string& line);

}  // namespace exportifc::test
