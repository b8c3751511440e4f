// The measurements behind the table that bench.sh prints. Each prints lines "name value".
//
//   goals model SAMPLE all|built-up|simple BARS PATH   writes a model file
//   goals floor MODEL ROUNDS     whole export against a bare loop that writes the same lines
//   goals format MODEL ROUNDS    formatting alone, into a sink that counts bytes
//   goals read MODEL ROUNDS      reading a batch file
//   goals entities MODEL ROUNDS  entities per second, with and without a file
//   goals once MODEL             one export into a sink that counts bytes (for instruction counts)
//   goals export MODEL           one export to MODEL + "temp" (for peak memory and write counts)
//   goals registry               bytes the registry keeps for an entity (natively only)
//   goals linear SMALL LARGE ROUNDS   processor time per bar of a large model over a small one, and
//                                what of it is the system's
//
// Variants that are compared run in turn, in one process, and medians are reported: the machine
// may be shared, and its speed changes from second to second.
#include <algorithm>
#include <chrono>
#include <clocale>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <exception>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "bench/bench_model.h"
#include "model/batch_source.h"
#include "platform/platform.h"
#include "plugin/bar_export.h"
#include "plugin/export_driver.h"
#include "plugin/module.h"
#include "plugin/system_interface.h"
#include "step/entity_registry.h"
#include "step/preamble.h"
#include "step/step_writer.h"
#include "tests/support/files.h"
#include "tests/support/sinks.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <fcntl.h>
#include <malloc.h>
#include <unistd.h>
#endif

namespace exportifc::bench {

namespace {

using Seconds = double;

/// Processor time of this process, in the system's calls too. Windows: the time that passed.
Seconds processorTime() { return static_cast<Seconds>(std::clock()) / CLOCKS_PER_SEC; }

template <class Action>
Seconds timeOf(const Action& action) {
  const auto start = std::chrono::steady_clock::now();
  action();
  return std::chrono::duration<Seconds>(std::chrono::steady_clock::now() - start).count();
}

template <class Action>
Seconds processorTimeOf(const Action& action) {
  const Seconds start = processorTime();
  action();
  return processorTime() - start;
}

Seconds median(std::vector<Seconds> times) {
  std::sort(times.begin(), times.end());
  return times[times.size() / 2];
}

struct Comparison {
  Seconds first;               // median
  Seconds second;              // median
  double ratio;                // median of first / second, pair by pair
  double lowRatio, highRatio;  // a quarter of the pairs lies below, a quarter above
};

/// Runs two actions in turn, each first every other time.
template <class First, class Second>
Comparison compare(int rounds, const First& first, const Second& second) {
  std::vector<Seconds> firstTimes;
  std::vector<Seconds> secondTimes;
  std::vector<double> ratios;
  for (int round = 0; round < rounds; ++round) {
    if (round % 2 == 0) {
      firstTimes.push_back(first());
      secondTimes.push_back(second());
    } else {
      secondTimes.push_back(second());
      firstTimes.push_back(first());
    }
    ratios.push_back(firstTimes.back() / secondTimes.back());
  }
  std::sort(ratios.begin(), ratios.end());
  return {.first = median(firstTimes),
          .second = median(secondTimes),
          .ratio = ratios[ratios.size() / 2],
          .lowRatio = ratios[ratios.size() / 4],
          .highRatio = ratios[ratios.size() * 3 / 4]};
}

void print(const char* name, double value) {
  std::setlocale(LC_ALL, "C");  // an export leaves one with a decimal comma
  std::printf("%s %.4g\n", name, value);
}
void print(const char* name, std::size_t value) { std::printf("%s %zu\n", name, value); }

/// Everything that an export writes, into a sink.
void writeAll(BarSource& model, std::unique_ptr<ByteSink> sink) {
  StepWriter writer(std::move(sink));
  writer.writeHeader();
  writePreamble(writer);
  exportBars(writer, BarChoice::all, model, systemInterface());
  writer.writeFooter();
}

/// One batch export as the module runs it, to `model` + "temp"; the input stays.
void exportToFile(const std::string& model) {
  Module module(nullptr, nullptr);
  module.batchPath = model;
  runExport(module, systemServices());
}

/// The lines of a text, each with its line end.
std::vector<std::string_view> linesOf(std::string_view text) {
  std::vector<std::string_view> lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size() - 1) + 1;
    lines.push_back(text.substr(0, end));
    text.remove_prefix(end);
  }
  return lines;
}

[[noreturn]] void floorFailed() { throw std::runtime_error("cannot write the ready-made lines"); }

/// The floor: ready-made lines, one write call each, nothing else; all of them `times` times.
void writeLines(const std::vector<std::string_view>& lines, const std::string& path,
                int times = 1) {
#ifdef _WIN32
  const HANDLE file = CreateFileA(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                  nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  for (; times > 0; --times) {
    for (const std::string_view line : lines) {
      DWORD written = 0;
      if (WriteFile(file, line.data(), static_cast<DWORD>(line.size()), &written, nullptr) == 0) {
        floorFailed();
      }
    }
  }
  CloseHandle(file);
#else
  const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  for (; times > 0; --times) {
    for (const std::string_view line : lines) {
      if (::write(file, line.data(), line.size()) != static_cast<ssize_t>(line.size())) {
        floorFailed();
      }
    }
  }
  ::close(file);
#endif
}

void floor(const std::string& model, int rounds) {
  const std::string exported = model + "temp";
  const std::string copied = model + "floor";
  exportToFile(model);
  const std::string content = test::readFile(exported);
  const auto lines = linesOf(content);
  // A new file each time: cutting an old one to nothing costs, too.
  const auto exportTime = [&] {
    std::filesystem::remove(exported);
    return timeOf([&] { exportToFile(model); });
  };
  const auto floorTime = [&] {
    std::filesystem::remove(copied);
    return timeOf([&] { writeLines(lines, copied); });
  };
  const Comparison result = compare(rounds, exportTime, floorTime);
  // Once more by processor time: what others on this machine took is not in it.
  const Comparison byProcessor = compare(
      rounds, [&] { return processorTimeOf(exportTime); },
      [&] { return processorTimeOf(floorTime); });
  std::filesystem::remove(exported);
  std::filesystem::remove(copied);
  const auto perLine = [&](Seconds time) { return time * 1e9 / static_cast<double>(lines.size()); };
  print("floor_ratio", result.ratio);
  print("floor_ratio_low_quarter", result.lowRatio);
  print("floor_ratio_high_quarter", result.highRatio);
  print("floor_ratio_by_processor_time", byProcessor.ratio);
  print("export_ns_per_line", perLine(result.first));
  print("floor_ns_per_line", perLine(result.second));
  print("lines", lines.size());
  // Given by the system and the same for any exporter: three identifiers an element.
  constexpr int guids = 20000;
  print("guid_ns", timeOf([] {
                     for (int i = 0; i < guids; ++i) {
                       (void)platform::newGuid();
                     }
                   }) * 1e9 /
                       guids);
}

void format(const std::string& path, int rounds) {
  MemorySource model(path);
  std::vector<Seconds> times;
  std::vector<Seconds> processorTimes;
  test::Counted counted;
  for (int round = 0; round < rounds; ++round) {
    counted = {};
    processorTimes.push_back(processorTimeOf([&] {
      times.push_back(
          timeOf([&] { writeAll(model, std::make_unique<test::CountingSink>(counted)); }));
    }));
  }
  const auto lines = static_cast<double>(counted.lines);
  print("format_ns_per_line", median(times) * 1e9 / lines);
  print("format_ns_per_line_by_processor_time", median(processorTimes) * 1e9 / lines);
  print("format_ns_per_line_min", *std::min_element(times.begin(), times.end()) * 1e9 / lines);
  print("format_mb_per_s", static_cast<double>(counted.bytes) / median(times) / 1e6);
}

void read(const std::string& path, int rounds) {
  const auto megabytes = static_cast<double>(std::filesystem::file_size(path)) / 1e6;
  // The bars dropped as they are read; and the whole loop, with the output dropped line by line.
  const auto barsDropped = [&] {
    return timeOf([&] {
      BatchSource model(path);
      SourceBar bar;
      for (std::int32_t i = 0; i < model.barCount() && model.next(i, bar); ++i) {
      }
    });
  };
  const auto outputDropped = [&] {
    return timeOf([&] {
      BatchSource model(path);
      writeAll(model, nullptr);
    });
  };
  const Comparison result = compare(rounds, barsDropped, outputDropped);
  print("read_mb_per_s", megabytes / result.first);
  print("read_export_dropped_mb_per_s", megabytes / result.second);
}

void entities(const std::string& path, int rounds) {
  const std::string exported = path + "temp";
  test::Received kept;
  const auto keptTime = [&] {
    return timeOf([&] {
      BatchSource model(path);
      kept = {};
      writeAll(model, std::make_unique<test::MemorySink>(kept));
    });
  };
  const auto flushedTime = [&] {
    std::filesystem::remove(exported);
    return timeOf([&] { exportToFile(path); });
  };
  const Comparison result = compare(rounds, keptTime, flushedTime);
  std::filesystem::remove(exported);
  const auto lines = linesOf(kept.bytes);
  const auto count = static_cast<double>(std::count_if(
      lines.begin(), lines.end(), [](std::string_view line) { return line.front() == '#'; }));
  print("ours_entities", static_cast<std::size_t>(count));
  print("ours_kept_per_s", static_cast<std::size_t>(count / result.first));
  print("ours_flushed_per_s", static_cast<std::size_t>(count / result.second));
}

void once(const std::string& path) {
  BatchSource model(path);
  test::Counted counted;
  writeAll(model, std::make_unique<test::CountingSink>(counted));
  print("lines", counted.lines);
}

#ifndef _WIN32
/// Bytes that the allocator has given out, its own headers included.
std::size_t allocatedBytes() {
  const auto heap = mallinfo2();
  return heap.uordblks + heap.hblkhd;
}

void registry() {
  constexpr std::size_t entities = 1000000;
  EntityRegistry registry;
  const std::size_t before = allocatedBytes();
  for (std::size_t i = 0; i < entities; ++i) {
    registry.addPlain();
  }
  print("registry_bytes_per_entity",
        static_cast<double>(allocatedBytes() - before) / static_cast<double>(entities));
}
#endif

/// The large model once against the small one as often as makes the same bars.
void linear(const std::string& small, const std::string& large, int rounds) {
  MemorySource smallModel(small);
  MemorySource largeModel(large);
  const int repeats = largeModel.barCount() / smallModel.barCount();
  const auto compareExports = [&](const auto& exportSmall, const auto& exportLarge) {
    return compare(
               rounds, [&] { return processorTimeOf(exportLarge); },
               [&] {
                 return processorTimeOf([&] {
                   for (int i = 0; i < repeats; ++i) {
                     exportSmall();
                   }
                 });
               })
        .ratio;
  };
  const auto toFile = [](const std::string& model) {
    exportToFile(model);
    std::filesystem::remove(model + "temp");
  };
  const auto toCounter = [](MemorySource& model) {
    test::Counted counted;
    writeAll(model, std::make_unique<test::CountingSink>(counted));
  };
  // What the system takes more for a large file than for many small ones, whoever writes it.
  exportToFile(small);
  const std::string content = test::readFile(small + "temp");
  const auto lines = linesOf(content);
  const auto floorOf = [&](int times) {
    writeLines(lines, small + "floor", times);
    std::filesystem::remove(small + "floor");
  };
  std::filesystem::remove(small + "temp");
  print("linear_ratio", compareExports([&] { toFile(small); }, [&] { toFile(large); }));
  print("linear_floor_ratio", compareExports([&] { floorOf(1); }, [&] { floorOf(repeats); }));
  print("linear_format_ratio",
        compareExports([&] { toCounter(smallModel); }, [&] { toCounter(largeModel); }));
}

int run(const std::vector<std::string>& arguments) {
  const auto is = [&](std::string_view command, std::size_t count) {
    return arguments.size() == count + 1 && arguments[0] == command;
  };
  const auto rounds = [&] { return std::max(1, std::stoi(arguments.back())); };
  if (is("model", 4)) {
    const Mix mix = arguments[2] == "built-up" ? Mix::builtUpOnly
                    : arguments[2] == "simple" ? Mix::simpleOnly
                                               : Mix::all;
    writeModel(arguments[1], mix, std::stoul(arguments[3]), arguments[4]);
  } else if (is("floor", 2)) {
    floor(arguments[1], rounds());
  } else if (is("format", 2)) {
    format(arguments[1], rounds());
  } else if (is("read", 2)) {
    read(arguments[1], rounds());
  } else if (is("entities", 2)) {
    entities(arguments[1], rounds());
  } else if (is("once", 1)) {
    once(arguments[1]);
  } else if (is("export", 1)) {
    exportToFile(arguments[1]);
#ifndef _WIN32
  } else if (is("registry", 0)) {
    registry();
#endif
  } else if (is("linear", 3)) {
    linear(arguments[1], arguments[2], rounds());
  } else {
    std::fprintf(stderr, "goals: see the head of bench/goals.cpp for its commands\n");
    return 2;
  }
  return 0;
}

}  // namespace

}  // namespace exportifc::bench

int main(int argc, char** argv) {
  try {
    return exportifc::bench::run({argv + 1, argv + argc});
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "goals: %s\n", failure.what());
    return 1;
  }
}
