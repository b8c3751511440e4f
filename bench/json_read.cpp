// Reading the JSON model against the library's own parser with a handler that drops everything.
//
//   json_read MODEL.json ROUNDS
#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "library/formats/json_model.h"

namespace {

struct DropsAll final : nlohmann::json::json_sax_t {
  bool null() override { return true; }
  bool boolean(bool) override { return true; }
  bool number_integer(std::int64_t) override { return true; }
  bool number_unsigned(std::uint64_t) override { return true; }
  bool number_float(double, const std::string&) override { return true; }
  bool string(std::string&) override { return true; }
  bool binary(nlohmann::json::binary_t&) override { return true; }
  bool start_object(std::size_t) override { return true; }
  bool key(std::string&) override { return true; }
  bool end_object() override { return true; }
  bool start_array(std::size_t) override { return true; }
  bool end_array() override { return true; }
  bool parse_error(std::size_t, const std::string&, const nlohmann::json::exception&) override {
    return false;
  }
};

template <class Read>
double timeOf(const char* path, const Read& read) {
  std::ifstream file(path, std::ios::binary);
  const auto start = std::chrono::steady_clock::now();
  read(file);
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

void run(const char* path, int rounds) {
  std::vector<double> ours;
  std::vector<double> library;
  std::vector<double> ratios;
  for (int round = 0; round < rounds; ++round) {
    ours.push_back(
        timeOf(path, [](std::istream& file) { (void)exportifc::readJsonModel(*file.rdbuf()); }));
    library.push_back(timeOf(path, [](std::istream& file) {
      DropsAll handler;
      (void)nlohmann::json::sax_parse(file, &handler);
    }));
    ratios.push_back(ours.back() / library.back());
  }
  std::ifstream file(path, std::ios::binary | std::ios::ate);
  const auto megabytes = static_cast<double>(file.tellg()) / 1e6;
  std::printf("json_mb_per_s %.4g\n", megabytes / median(ours));
  std::printf("json_library_mb_per_s %.4g\n", megabytes / median(library));
  std::printf("json_ratio %.4g\n", median(ratios));
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    return 2;
  }
  try {
    run(argv[1], std::max(1, std::atoi(argv[2])));
    return 0;
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "json_read: %s\n", failure.what());
    return 1;
  }
}
