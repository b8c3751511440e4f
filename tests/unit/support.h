// What the unit tests share: sinks, a scripted person, scripted models, and the lines of an export.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "model/bar_source.h"
#include "platform/byte_sink.h"
#include "platform/user_interface.h"
#include "plugin/export_driver.h"
#include "plugin/module.h"
#include "step/step_writer.h"

namespace exportifc::test {

// ---- Numbers that are the same on every machine ------------------------------------------------

/// A generator in plain integer arithmetic: the same sequence with every compiler.
class Random {
 public:
  explicit Random(std::uint64_t seed) : state_(seed) {}

  std::uint64_t bits() {
    state_ += 0x9E3779B97F4A7C15U;
    std::uint64_t z = state_;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9U;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBU;
    return z ^ (z >> 31);
  }

  /// An integer from `low` to `high`, both included.
  std::int64_t integer(std::int64_t low, std::int64_t high) {
    const auto count = static_cast<std::uint64_t>(high - low) + 1;
    return low + static_cast<std::int64_t>(bits() % count);
  }

  /// A multiple of 1/64 from `low` to `high`, exact in single precision while small.
  float number(std::int64_t low, std::int64_t high) {
    return static_cast<float>(integer(low * 64, high * 64)) / 64.0F;
  }

  template <class List>
  const auto& pick(const List& list) {
    return list[static_cast<std::size_t>(integer(0, static_cast<std::int64_t>(list.size()) - 1))];
  }

 private:
  std::uint64_t state_;
};

/// Rounds of a random test: fewer where each costs more.
constexpr int rounds(int optimised) {
#if defined(__SANITIZE_ADDRESS__)
  return optimised / 20;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
  return optimised / 20;
#else
  return optimised;
#endif
#else
  return optimised;
#endif
}

// ---- Files -------------------------------------------------------------------------------------

/// What a sink got; outlives the sink.
struct Received {
  std::string bytes;
  std::vector<std::size_t> writes;  // size of each call
  bool closed = false;
};

/// Takes everything, or fails at the byte `room`: bytes before it are still taken.
class MemorySink final : public ByteSink {
 public:
  static constexpr std::size_t endless = static_cast<std::size_t>(-1);

  explicit MemorySink(Received& received, std::size_t room = endless)
      : received_(received), room_(room) {}
  MemorySink(const MemorySink&) = delete;
  MemorySink& operator=(const MemorySink&) = delete;
  ~MemorySink() override { received_.closed = true; }

  bool write(const char* bytes, std::size_t size) override;

 private:
  Received& received_;
  std::size_t room_;
};

/// An empty folder of its own for real files, removed at the end.
class TemporaryFolder {
 public:
  TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder();

  /// Narrow path of a file in the folder.
  std::string file(const std::string& name) const;

 private:
  std::string path_;
};

bool fileExists(const std::string& path);
std::string readFile(const std::string& path);
void writeFile(const std::string& path, std::string_view bytes);

/// The wide form of an ASCII text.
std::wstring wide(std::string_view text);

/// The folder with the sources, for the samples and the golden files.
std::string sourceFile(const std::string& path);

// ---- A person ----------------------------------------------------------------------------------

/// Something that was said to or asked of the person, in order. Narrow bytes stand as the units of
/// the same value.
struct Said {
  enum class How { saveDialog, question, narrowBox, wideBox, console };

  How how;
  std::wstring text;
  std::wstring caption;

  friend bool operator==(const Said&, const Said&) = default;
};

void PrintTo(const Said& said, std::ostream* stream);

/// Answers from a script and keeps what was said.
class ScriptedUser final : public UserInterface {
 public:
  SaveChoice choice;  // cancelled, if left alone
  bool answer = true;
  std::vector<Said> said;

  SaveChoice chooseSaveFile() override;
  bool ask(const char* text, const char* caption) override;
  void show(const char* text, const char* caption) override;
  void show(const wchar_t* text, const wchar_t* caption) override;
  void printLine(std::wstring_view line) override;
};

// ---- Models ------------------------------------------------------------------------------------

/// One bar of a scripted model.
struct ScriptedBar {
  std::string section = "W 1";
  float type = 0.0F;
  std::array<float, 3> start{0, 0, 0};
  std::array<float, 3> end{1000, 0, 0};
  SectionDims dims{200, 100, 10, 5};
  float angle = 0.0F;
  std::int32_t quarterTurns = 0;
  std::int32_t visible = 1;
  bool hasRecord = true;
};

BarRecord recordOf(std::string_view section, std::int32_t quarterTurns = 0);

/// A model in memory.
class ListSource final : public BarSource {
 public:
  explicit ListSource(std::vector<ScriptedBar> bars, std::int32_t unit = 2)
      : bars_(std::move(bars)), unit_(unit) {}

  std::int32_t unitCode() override { return unit_; }
  std::int32_t barCount() override { return static_cast<std::int32_t>(bars_.size()); }
  bool next(std::int32_t index, SourceBar& bar) override;

 private:
  std::vector<ScriptedBar> bars_;
  std::int32_t unit_;
  BarRecord record_{};
};

/// An address below 4 GiB that holds a copy of `record`, as hosts keep theirs. Stays until the
/// program ends.
std::uint32_t lowAddressOf(const BarRecord& record);

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

/// `text` with the 22 characters of each generated GlobalId replaced by "G"s. The constants of the
/// preamble stay.
std::string maskGlobalIds(std::string text);

/// The lines that hold `keyword`, for instance "IFCBEAM(".
std::vector<std::string> linesWith(const std::vector<std::string>& lines, std::string_view keyword);

/// Bodies of numbered lines: without "#12= " and ";".
std::string bodyOf(const std::string& line);
int numberOf(const std::string& line);

/// A module that is not loaded by anybody.
Module plainModule(std::string batchPath = {});

/// The functions of a module record that nobody calls.
std::int64_t noEntry();

}  // namespace exportifc::test
