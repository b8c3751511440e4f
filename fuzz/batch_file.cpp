// Any bytes as a batch model file: exported into memory and compared with what a second, simpler
// reader makes of the same bytes.
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include <sys/mman.h>
#include <unistd.h>

#include "fuzz/exchange_check.h"
#include "fuzz/expectation.h"
#include "fuzz/memory_export.h"
#include "fuzz/require.h"

namespace {

using namespace exportifc;
using namespace exportifc::fuzz;

/// A file in memory that the module opens by its path.
class ModelFile {
 public:
  ModelFile() : descriptor_(memfd_create("model", 0)) {
    require(descriptor_ >= 0, "no file in memory");
    path_ = "/proc/self/fd/" + std::to_string(descriptor_);
  }

  void fill(const std::uint8_t* data, std::size_t size) const {
    require(ftruncate(descriptor_, 0) == 0, "cannot empty the file");
    require(pwrite(descriptor_, data, size, 0) == static_cast<ssize_t>(size), "cannot fill it");
  }

  const std::string& path() const { return path_; }

 private:
  int descriptor_;
  std::string path_;
};

std::vector<std::string> linesOf(std::string_view bytes) {
  bytes = bytes.substr(0, bytes.find('\x1A'));
  std::vector<std::string> lines;
  while (!bytes.empty()) {
    const std::size_t feed = bytes.find('\n');
    std::string line(bytes.substr(0, feed));
    if (feed != std::string_view::npos && line.ends_with('\r')) {
      line.pop_back();
    }
    lines.push_back(line);
    bytes.remove_prefix(feed == std::string_view::npos ? bytes.size() : feed + 1);
  }
  return lines;
}

/// A line without the blanks in front. Byte A0 is one too, as it is to the module's runtime.
std::string withoutBlanks(const std::string& line) {
  const std::size_t start = line.find_first_not_of(" \t\n\v\f\r\xA0");
  return start == std::string::npos ? std::string() : line.substr(start);
}

/// What the C library reads under the classic locale, once decimal commas are points. Hexadecimal
/// numbers, "inf" and "nan" are no numbers to the module: reading stops at their letter.
float numberOf(const std::string& line) {
  std::string text = withoutBlanks(line);
  for (char& c : text) {
    c = c == ',' ? '.' : c;
  }
  text = text.substr(0, text.find_first_not_of("0123456789+-.eE"));
  return static_cast<float>(std::strtod(text.c_str(), nullptr));
}

Model modelOf(std::string_view bytes) {
  const std::vector<std::string> lines = linesOf(bytes);
  std::size_t next = 0;
  const auto line = [&] { return next < lines.size() ? lines[next++] : std::string(); };
  line();
  line();
  line();
  const std::string unit = line();
  Model model;
  model.unitCode = unit == "m" ? 0 : unit == "cm" ? 1 : 2;
  // strtoll stops at its own limits, far outside 32 bits.
  const long long count = std::strtoll(withoutBlanks(line()).c_str(), nullptr, 10);
  for (long long i = 0; i < count && next < lines.size(); ++i) {
    ModelBar bar;
    line();
    for (float& coordinate : bar.start) {
      coordinate = numberOf(line());
    }
    for (float& coordinate : bar.end) {
      coordinate = numberOf(line());
    }
    bar.angle = numberOf(line());
    bar.name = line().c_str();  // up to a NUL in the text
    bar.hasRecord = bar.name.size() < 48;
    line();
    line();
    line();
    model.bars.push_back(bar);
  }
  return model;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const ModelFile file;
  file.fill(data, size);
  const Model model = modelOf({reinterpret_cast<const char*>(data), size});

  CountingInterface ui;
  const Exported exported = exportBatch(file.path(), ui);

  require(exported.result == 1, "the export did not return 1");
  require(exported.batchPath == file.path() + "temp", "the output path was not handed back");
  require(ui.questions == 0, "a batch export asked a question");
  require(ui.unhandled == 0, "a batch export failed");
  const std::string difference = compareWithModel(exported.file.bytes, model);
  if (!difference.empty()) {
    fail(difference);
  }
  const Messages messages = expectedMessages(model);
  require(ui.barProblems == messages.barProblems, "bar problems shown");
  require(ui.unknownProfiles == messages.unknownProfiles, "unknown profiles shown");
  if (hasPlainNames(model)) {
    const std::string fault = checkExchange(exported.file.bytes);
    if (!fault.empty()) {
      fail(fault);
    }
  }
  return 0;
}
