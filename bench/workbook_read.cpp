// Reading a model from a workbook against unzipping its parts and parsing their XML, with nothing
// made of either.
//
//   workbook_read NAME MODEL.xlsx ROUNDS     results are called workbook_NAME_...
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <expat.h>

#include "library/formats/format.h"
#include "library/packing/zip_reader.h"
#include "platform/byte_sink.h"

namespace {

using exportifc::Format;

class BareParser final : public exportifc::ByteSink {
 public:
  BareParser() : parser_(XML_ParserCreate(nullptr)) {}
  BareParser(const BareParser&) = delete;
  BareParser& operator=(const BareParser&) = delete;
  ~BareParser() override { XML_ParserFree(parser_); }

  bool write(const char* bytes, std::size_t size) override {
    return XML_Parse(parser_, bytes, static_cast<int>(size), XML_FALSE) == XML_STATUS_OK;
  }

 private:
  XML_Parser parser_;
};

void readModel(const char* path) {
  std::filebuf file;
  if (file.open(path, std::ios::in | std::ios::binary) == nullptr) {
    throw std::runtime_error("cannot read it");
  }
  const Format& workbooks = exportifc::formatOf(exportifc::ModelFormat::tables);
  if (workbooks.read(file).bars.empty()) {
    throw std::runtime_error("no bars");
  }
}

void parseParts(const char* path) {
  std::ifstream file(path, std::ios::binary);
  exportifc::ZipReader zip(file);
  for (const exportifc::ZipMember& member : zip.members()) {
    BareParser parser;
    zip.unpack(member, parser);
  }
}

template <class Read>
double timeOf(const char* path, const Read& read) {
  const auto start = std::chrono::steady_clock::now();
  read(path);
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

void run(const std::string& name, const char* path, int rounds) {
  std::vector<double> ours;
  std::vector<double> bare;
  std::vector<double> ratios;
  for (int round = 0; round < rounds; ++round) {
    ours.push_back(timeOf(path, readModel));
    bare.push_back(timeOf(path, parseParts));
    ratios.push_back(ours.back() / bare.back());
  }
  std::printf("workbook_%s_seconds %.4g\n", name.c_str(), median(ours));
  std::printf("workbook_%s_bare_seconds %.4g\n", name.c_str(), median(bare));
  std::printf("workbook_%s_ratio %.4g\n", name.c_str(), median(ratios));
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) {
    return 2;
  }
  try {
    run(argv[1], argv[2], std::max(1, std::atoi(argv[3])));
    return 0;
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "workbook_read: %s\n", failure.what());
    return 1;
  }
}
