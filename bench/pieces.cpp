// What the pieces of an export cost, one by one (Google Benchmark).
//
//   pieces [--benchmark_...]
#include <array>
#include <charconv>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "elements/bar_axes.h"
#include "elements/bar_element.h"
#include "model/batch_source.h"
#include "model/host_number.h"
#include "platform/platform.h"
#include "profiles/profile_dispatch.h"
#include "step/global_id.h"
#include "step/number_format.h"
#include "step/step_writer.h"
#include "tests/support/random.h"
#include "tests/support/sinks.h"

namespace exportifc::bench {

namespace {

/// Coordinates as an export meets them: single-precision metres, widened, in millimetres.
std::vector<double> coordinates() {
  test::Random random(1);
  std::vector<double> values(1024);
  for (double& value : values) {
    value = static_cast<float>(random.integer(0, 39999)) / 1000.0F * 1000.0;
  }
  return values;
}

template <class Put>
void putAll(benchmark::State& state, const Put& put) {
  const std::vector<double> values = coordinates();
  std::array<char, fixed5Capacity> text{};
  std::size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(put(text, values[i++ % values.size()]));
    benchmark::ClobberMemory();
  }
}

using Text = std::array<char, fixed5Capacity>;

void fixed5(benchmark::State& state) {
  putAll(state, [](Text& text, double value) { return putFixed5(text.data(), value); });
}
BENCHMARK(fixed5);

void fixed5ByLibrary(benchmark::State& state) {
  putAll(state, [](Text& text, double value) {
    return std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed, 5)
        .ptr;
  });
}
BENCHMARK(fixed5ByLibrary);

void general6(benchmark::State& state) {
  putAll(state, [](Text& text, double value) { return putGeneral6(text.data(), value); });
}
BENCHMARK(general6);

void general6ByLibrary(benchmark::State& state) {
  putAll(state, [](Text& text, double value) {
    return std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::general,
                         6)
        .ptr;
  });
}
BENCHMARK(general6ByLibrary);

void integer(benchmark::State& state) {
  Text text{};
  std::int32_t number = 5006;
  for (auto _ : state) {
    benchmark::DoNotOptimize(putInteger(text.data(), number++));
    benchmark::ClobberMemory();
  }
}
BENCHMARK(integer);

void integerByLibrary(benchmark::State& state) {
  Text text{};
  std::int32_t number = 5006;
  for (auto _ : state) {
    benchmark::DoNotOptimize(std::to_chars(text.data(), text.data() + text.size(), number++).ptr);
    benchmark::ClobberMemory();
  }
}
BENCHMARK(integerByLibrary);

void hostNumber(benchmark::State& state) {
  const std::array<std::string, 4> texts = {"0", "31.257", "-12,5", "6.0125"};
  std::size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(parseHostNumber(texts[i++ % texts.size()]));
  }
}
BENCHMARK(hostNumber);

void guid(benchmark::State& state) {
  for (auto _ : state) {
    benchmark::DoNotOptimize(platform::newGuid());
  }
}
BENCHMARK(guid);

void guidCompressed(benchmark::State& state) {
  const platform::Guid guid = platform::newGuid();
  Text text{};
  for (auto _ : state) {
    benchmark::DoNotOptimize(compressGuid(text.data(), guid));
    benchmark::ClobberMemory();
  }
}
BENCHMARK(guidCompressed);

void barAxes(benchmark::State& state) {
  Matrix3 axes{};
  double dx = 1000.0;
  for (auto _ : state) {
    barAxesMatrix(0.5, dx, 500.0, 2000.0, 0.01, axes);
    benchmark::DoNotOptimize(axes);
    dx += 1.0;
  }
}
BENCHMARK(barAxes);

void profile(benchmark::State& state) {
  test::Counted counted;
  StepWriter writer(std::make_unique<test::CountingSink>(counted));
  const SectionDims dims = parseSectionDims("W 352 171 9.8 6.9");
  for (auto _ : state) {
    benchmark::DoNotOptimize(writeProfile(writer, L"W 352 171 9.8 6.9", dims, simpleFlangeSide));
  }
  state.SetItemsProcessed(state.iterations() * 4);  // entities
}
BENCHMARK(profile)->Iterations(200000);  // a registry that grows for ever is no measure

void element(benchmark::State& state) {
  test::Counted counted;
  StepWriter writer(std::make_unique<test::CountingSink>(counted));
  BarGeometry bar;
  bar.end = {.x = 31257.0, .y = 6000.5, .z = 3000.25};
  bar.sectionName = L"W 352 171 9.8 6.9";
  bar.sectionLabel = L"W";
  for (auto _ : state) {
    benchmark::DoNotOptimize(writeBar(writer, bar, 5006));
  }
  state.SetItemsProcessed(state.iterations() * 14);
}
BENCHMARK(element)->Iterations(200000);

}  // namespace

}  // namespace exportifc::bench

BENCHMARK_MAIN();
