// A random model answered through the host's callback: exported into memory, read back, compared
// with what the model says, and with the batch export of the same model where both formats can say
// it. Some hosts leave slots alone, some throw.
//
// Bytes: flags, unit, number of bars, then the bars; model() below reads them in this order.
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include <sanitizer/asan_interface.h>
#include <sys/mman.h>
#include <unistd.h>

#include "fuzz/byte_reader.h"
#include "fuzz/exchange_check.h"
#include "fuzz/expectation.h"
#include "fuzz/memory_export.h"
#include "fuzz/require.h"
#include "plugin/texts.h"
#include "tests/support/batch_text.h"
#include "tests/support/exchange_text.h"
#include "tests/support/low_memory.h"
#include "tests/support/section_words.h"

namespace {

using namespace exportifc;
using namespace exportifc::fuzz;

constexpr std::size_t mostBars = 12;
constexpr std::size_t nameField = 48;

/// What a name of the list begins with: all families first, as they stand in the table, then words
/// that are none, then the halves.
const std::vector<std::string>& families() {
  static const std::vector<std::string> words = [] {
    std::vector<std::string> all = test::familyWords();
    all.insert(all.end(), {"PERFIL", "", "x", "I"});
    const std::vector<std::string> halves = test::halfWords();
    all.insert(all.end(), halves.begin(), halves.end());
    return all;
  }();
  return words;
}

/// One record for each bar, below 4 GiB, so that an address fits its 32 bits; everything but the
/// two fields that the module may read is out of bounds.
class Records {
 public:
  Records() : lowMemory_(stride * mostBars), memory_(static_cast<char*>(lowMemory_.address())) {
    ASAN_POISON_MEMORY_REGION(memory_, stride * mostBars);
    for (std::size_t i = 0; i < mostBars; ++i) {
      ASAN_UNPOISON_MEMORY_REGION(memory_ + i * stride + offsetof(BarRecord, sectionName),
                                  nameField + sizeof(std::int32_t));
    }
  }

  void fill(std::size_t index, const std::string& name, std::int32_t quarterTurns) {
    BarRecord& record = at(index);
    std::memset(record.sectionName, 0, nameField);
    std::memcpy(record.sectionName, name.data(), name.size());
    record.quarterTurns = quarterTurns;
  }

  std::uint32_t addressOf(std::size_t index) {
    return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(&at(index)));
  }

 private:
  static constexpr std::size_t stride = 304;  // keeps each record on an eight-byte boundary

  BarRecord& at(std::size_t index) {
    return *reinterpret_cast<BarRecord*>(memory_ + index * stride);
  }

  test::LowMemory lowMemory_;
  char* memory_;
};

/// What a host throws when it has had enough.
enum class Thrown : std::uint8_t { nothing, standard, text, fileText, integer };

struct HostBar {
  ModelBar bar;
  std::array<float, 10> dims{};
  std::uint32_t unfilled = 0;  ///< a bit for each of the nine queries that this bar leaves alone
};

struct Host {
  std::int32_t unitCode = 0;
  std::int32_t reportedCount = 0;
  BarChoice choice = BarChoice::all;
  bool asBatch = false;  ///< only what the batch format can say
  Thrown thrown = Thrown::nothing;
  std::uint32_t throwAt = 0;  ///< number of the query that throws
  std::vector<HostBar> bars;

  // While it answers.
  std::uint32_t queries = 0;
};

Records& records() {
  static Records instance;
  return instance;
}

std::string shortest(float value) {
  std::array<char, 32> text{};
  const auto end = std::to_chars(text.data(), text.data() + text.size(), value).ptr;
  return {text.data(), end};
}

/// "family dimension dimension ...", as many dimensions as fit.
std::string sectionText(const std::string& family, std::span<float> dims) {
  std::string text = family;
  bool full = false;
  for (float& dim : dims) {
    const std::string next = " " + shortest(dim);
    full = full || text.size() + next.size() >= nameField;
    if (full) {
      dim = 0.0F;
    } else {
      text += next;
    }
  }
  return text;
}

Host hostOf(ByteReader& bytes) {
  Host host;
  const std::uint8_t flags = bytes.byte();
  host.asBatch = (flags & 1U) != 0;
  host.choice = (flags & 2U) != 0 ? BarChoice::visibleOnly : BarChoice::all;
  const bool careless = (flags & 4U) != 0;
  if ((flags & 8U) != 0 && !host.asBatch) {
    host.thrown = static_cast<Thrown>(bytes.byte() % 5);
    host.throwAt = bytes.byte();
  }
  const std::uint8_t unit = bytes.byte();
  host.unitCode = unit == 0xFF ? bytes.int32() : unit % 4;
  const std::size_t count = bytes.byte() % (mostBars + 1);
  host.reportedCount = static_cast<std::int32_t>(count);
  if (count == 0 && careless) {
    host.reportedCount = bytes.int32();
    host.reportedCount = host.reportedCount > 0 ? -host.reportedCount : host.reportedCount;
  }
  for (std::size_t i = 0; i < count; ++i) {
    HostBar& hostBar = host.bars.emplace_back();
    ModelBar& bar = hostBar.bar;
    const std::uint8_t bits = bytes.byte();
    bar.angle = bytes.real();
    for (float& coordinate : bar.start) {
      coordinate = bytes.real();
    }
    for (float& coordinate : bar.end) {
      coordinate = bytes.real();
    }
    const std::uint8_t family = bytes.byte();
    const bool known = family < families().size();
    std::string name = known ? families()[family] : bytes.text(nameField);
    const std::size_t dims = bytes.byte() % (hostBar.dims.size() + 1);
    for (std::size_t d = 0; d < dims; ++d) {
      hostBar.dims[d] = bytes.real();
    }
    if (host.asBatch) {
      const auto notFinite = [](float value) { return !std::isfinite(value); };
      for (std::span<float> values :
           {std::span<float>(bar.start), std::span<float>(bar.end), std::span<float>(&bar.angle, 1),
            std::span<float>(hostBar.dims)}) {
        for (float& value : values) {
          value = notFinite(value) ? 0.0F : value;
        }
      }
      // A text without blanks and "x", of which a family of the list is the beginning.
      name = families()[family % families().size()];
      bar.name = name.empty() || name == "x" ? "?" : name;
      bar.name = sectionText(bar.name, std::span(hostBar.dims).first(dims));
      continue;
    }
    bar.type = bytes.real();
    bar.visible = (bits & 1U) != 0 ? 0 : bytes.int32();
    bar.quarterTurns = (bits & 2U) != 0 ? bytes.int32() : 0;
    bar.hasRecord = (bits & 4U) == 0;
    if (known && (bits & 8U) != 0) {
      name += ' ' + bytes.text(nameField - 1 - name.size());
    }
    bar.name = name;
    if (careless) {
      hostBar.unfilled =
          static_cast<std::uint32_t>(bytes.byte()) | (static_cast<std::uint32_t>(bits >> 7) << 8U);
    }
  }
  return host;
}

void throwAway(Thrown kind) {
  switch (kind) {
    case Thrown::nothing: return;
    case Thrown::standard: throw std::runtime_error("host");
    case Thrown::text: throw "host";
    case Thrown::fileText: throw static_cast<const char*>(texts::fileCreationFailed);
    case Thrown::integer: throw 1;
  }
}

std::int32_t answer(std::uint64_t handle, std::int32_t index, std::int32_t code, void* out) {
  Host& host = *reinterpret_cast<Host*>(handle);
  if (host.queries++ == host.throwAt) {
    throwAway(host.thrown);
  }
  const auto fill = [&](const auto& value) { std::memcpy(out, &value, sizeof(value)); };
  if (code == EXPORTIFC_LENGTH_UNIT || code == EXPORTIFC_BAR_COUNT) {
    require(index == 0, "a model-wide query with an index");
    fill(code == EXPORTIFC_LENGTH_UNIT ? host.unitCode : host.reportedCount);
    return 0;
  }
  // Nodes: two a bar, so that a bar's ends are 2 i and 2 i + 1.
  const auto node = static_cast<std::size_t>(index);
  const std::size_t barIndex = code == EXPORTIFC_NODE_COORDINATES ? node / 2 : node;
  require(barIndex < host.bars.size(), "a query outside the model");
  const HostBar& hostBar = host.bars[barIndex];
  const ModelBar& bar = hostBar.bar;
  const auto isLeftAlone = [&](unsigned query) { return (hostBar.unfilled >> query & 1U) != 0; };
  switch (code) {
    case EXPORTIFC_BAR_TYPE:
      if (!isLeftAlone(0)) fill(bar.type);
      break;
    case EXPORTIFC_BAR_VISIBLE:
      if (!isLeftAlone(1)) fill(bar.visible);
      break;
    case EXPORTIFC_BAR_RECORD: {
      std::uint32_t zero = 0;
      require(std::memcmp(out, &zero, sizeof(zero)) == 0, "the record's slot was not cleared");
      if (bar.hasRecord && !isLeftAlone(2)) fill(records().addressOf(barIndex));
      break;
    }
    case EXPORTIFC_BAR_ANGLE:
      if (!isLeftAlone(3)) fill(bar.angle);
      break;
    case EXPORTIFC_SECTION_DIMS:
      if (!isLeftAlone(4)) fill(hostBar.dims);
      break;
    case EXPORTIFC_BAR_START_NODE:
      if (!isLeftAlone(5)) fill(static_cast<std::int32_t>(2 * barIndex));
      break;
    case EXPORTIFC_BAR_END_NODE:
      if (!isLeftAlone(6)) fill(static_cast<std::int32_t>(2 * barIndex + 1));
      break;
    case EXPORTIFC_NODE_COORDINATES:
      if (!isLeftAlone(node % 2 == 0 ? 7 : 8)) fill(node % 2 == 0 ? bar.start : bar.end);
      break;
    default: fail("a query that is not part of the protocol");
  }
  return 0;
}

/// The model as the module sees it: what a bar leaves alone stays as the bar before left it.
Model modelOf(const Host& host) {
  Model model;
  model.unitCode = host.unitCode;
  model.leaveOutHidden = host.choice == BarChoice::visibleOnly;
  ModelBar seen;
  seen.visible = 0;
  std::size_t startNode = 0;
  std::size_t endNode = 0;
  for (std::size_t i = 0; i < host.bars.size(); ++i) {
    const auto isFilled = [&](std::size_t bar, unsigned query) {
      return (host.bars[bar].unfilled >> query & 1U) == 0;
    };
    const ModelBar& told = host.bars[i].bar;
    seen.name = told.name;
    seen.quarterTurns = told.quarterTurns;
    seen.hasRecord = told.hasRecord && isFilled(i, 2);
    if (isFilled(i, 0)) seen.type = told.type;
    if (isFilled(i, 1)) seen.visible = told.visible;
    if (isFilled(i, 3)) seen.angle = told.angle;
    if (isFilled(i, 5)) startNode = 2 * i;
    if (isFilled(i, 6)) endNode = 2 * i + 1;
    const auto node = [&](std::size_t index, std::array<float, 3>& coordinates) {
      const HostBar& bar = host.bars[index / 2];
      if (isFilled(index / 2, index % 2 == 0 ? 7 : 8)) {
        coordinates = index % 2 == 0 ? bar.bar.start : bar.bar.end;
      }
    };
    node(startNode, seen.start);
    node(endNode, seen.end);
    model.bars.push_back(seen);
  }
  return model;
}

/// The same model in the batch format.
std::string batchText(const Host& host) {
  const std::array<const char*, 4> units = {"m", "cm", "mm", "in"};
  const bool known = host.unitCode >= 0 && host.unitCode < 3;
  const char* const unit = units[known ? static_cast<std::size_t>(host.unitCode) : 3];
  std::string text = test::textOf(test::headerLines(unit, std::to_string(host.reportedCount)));
  const auto texts = [](const std::array<float, 3>& point) {
    return std::array{shortest(point[0]), shortest(point[1]), shortest(point[2])};
  };
  for (const HostBar& hostBar : host.bars) {
    const ModelBar& bar = hostBar.bar;
    text += test::textOf(test::barLines({.section = bar.name,
                                         .start = texts(bar.start),
                                         .end = texts(bar.end),
                                         .angle = shortest(bar.angle)}));
  }
  return text;
}

std::string exportAsBatch(const Host& host) {
  static const int descriptor = memfd_create("model", 0);
  static const std::string path = "/proc/self/fd/" + std::to_string(descriptor);
  const std::string text = batchText(host);
  require(ftruncate(descriptor, 0) == 0, "cannot empty the file");
  require(pwrite(descriptor, text.data(), text.size(), 0) == static_cast<ssize_t>(text.size()),
          "cannot fill the file");
  CountingInterface ui;
  const Exported exported = exportBatch(path, ui);
  require(exported.result == 1 && ui.unhandled == 0, "the batch export failed");
  return exported.file.bytes;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  ByteReader bytes(data, size);
  Host host = hostOf(bytes);
  for (std::size_t i = 0; i < host.bars.size(); ++i) {
    ModelBar& bar = host.bars[i].bar;
    records().fill(i, bar.name, bar.quarterTurns);
    bar.name = bar.name.substr(0, bar.name.find('\0'));
  }
  const Model model = modelOf(host);

  CountingInterface ui;
  ui.answer = host.choice;
  Exported exported;
  Thrown left = Thrown::nothing;
  try {
    exportHost(&answer, reinterpret_cast<std::uintptr_t>(&host), ui, exported);
  } catch (const char*) {
    left = Thrown::fileText;
  } catch (int) {
    left = Thrown::integer;
  }
  require(ui.questions == 1, "the question about hidden bars");

  const bool threw = host.thrown != Thrown::nothing && host.queries > host.throwAt;
  if (threw) {
    const bool reported = host.thrown == Thrown::standard || host.thrown == Thrown::text;
    require(left == (reported ? Thrown::nothing : host.thrown), "what leaves the driver");
    require(ui.unhandled == (reported ? 1 : 0), "what the driver reports");
    require(!reported || exported.result == 1, "the result of a failed export");
    require(exported.batchPath.empty(), "a failed export changed the mode");
    const std::string difference = compareStart(exported.file.bytes, model);
    if (!difference.empty()) {
      fail(difference);
    }
    return 0;
  }
  require(left == Thrown::nothing && ui.unhandled == 0, "an export failed by itself");
  require(exported.result == 1, "the export did not return 1");
  require(exported.batchPath == "/dev/null", "the output path was not handed back");
  require(host.queries == 2 + 9 * host.bars.size(), "nine queries a bar");

  std::string fault = compareWithModel(exported.file.bytes, model);
  if (fault.empty() && hasPlainNames(model)) {
    fault = checkExchange(exported.file.bytes);
  }
  if (!fault.empty()) {
    fail(fault);
  }
  const Messages messages = expectedMessages(model);
  require(ui.barProblems == messages.barProblems, "bar problems shown");
  require(ui.unknownProfiles == messages.unknownProfiles, "unknown profiles shown");

  if (host.asBatch) {
    require(test::maskGlobalIds(exportAsBatch(host)) == test::maskGlobalIds(exported.file.bytes),
            "the two modes disagree");
  }
  return 0;
}
