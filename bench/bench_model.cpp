#include "bench/bench_model.h"

#include <array>
#include <cstdio>
#include <fstream>
#include <stdexcept>

#include "model/batch_source.h"
#include "model/host_number.h"
#include "model/line_reader.h"
#include "profiles/section_name.h"

namespace exportifc::bench {

namespace {

using BarLines = std::array<std::string, 12>;

constexpr std::size_t firstX = 1;
constexpr std::size_t secondX = 4;
constexpr std::size_t sectionText = 8;

bool belongs(const BarLines& bar, Mix mix) {
  const std::string& text = bar[sectionText];
  const std::wstring wide(text.begin(), text.end());
  std::wstring first;
  std::wstring second;
  const bool builtUp = splitBuiltUpProfile(profileFamilyOf(wide), first, second);
  return mix == Mix::all || builtUp == (mix == Mix::builtUpOnly);
}

std::string moved(const std::string& x, double by) {
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%.3f", double{parseHostNumber(x)} + by);
  return text.data();
}

}  // namespace

void writeModel(const std::string& sample, Mix mix, std::size_t bars, const std::string& path) {
  LineReader reader(sample);
  const auto nextLine = [&](std::string& line) {
    std::string_view text;
    const bool any = reader.next(text);
    line = text;
    return any;
  };
  std::array<std::string, 5> header;
  for (std::string& line : header) {
    nextLine(line);
  }
  header[4] = std::to_string(bars);
  std::vector<BarLines> sampleBars;
  BarLines bar;
  while (nextLine(bar[0])) {
    for (std::size_t i = 1; i < bar.size(); ++i) {
      nextLine(bar[i]);
    }
    if (belongs(bar, mix)) {
      sampleBars.push_back(bar);
    }
  }
  if (sampleBars.empty()) {
    throw std::runtime_error("no such bars in " + sample);
  }

  std::ofstream file(path, std::ios::binary);
  for (const std::string& line : header) {
    file << line << "\r\n";
  }
  constexpr double roundOffset = 31.257;  // metres
  for (std::size_t i = 0; i < bars; ++i) {
    bar = sampleBars[i % sampleBars.size()];
    const double offset = roundOffset * static_cast<double>(i / sampleBars.size());
    bar[firstX] = moved(bar[firstX], offset);
    bar[secondX] = moved(bar[secondX], offset);
    for (const std::string& line : bar) {
      file << line << "\r\n";
    }
  }
  file.close();
  if (!file) {
    throw std::runtime_error("cannot write " + path);
  }
}

MemorySource::MemorySource(const std::string& path) {
  BatchSource file(path);
  unitCode_ = file.unitCode();
  SourceBar bar;
  for (std::int32_t i = 0; i < file.barCount() && file.next(i, bar); ++i) {
    bars_.push_back(bar);
  }
}

bool MemorySource::next(std::int32_t index, SourceBar& bar) {
  bar = bars_[static_cast<std::size_t>(index)];
  return true;
}

}  // namespace exportifc::bench
