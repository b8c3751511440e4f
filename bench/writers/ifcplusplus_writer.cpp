// How fast IfcPlusPlus writes the entities of an exchange file.
//
//   ifcplusplus_writer EXPORTED.ifc OUT.ifc ROUNDS
//
// Outside the clock the file is read into the library's objects (it knows IFC4 and converts). On
// the clock: WriterSTEP into a string stream ("kept"); and the same followed by copying the stream
// to a file, in one piece as its users do and with one write call for each line ("written",
// "flushed").
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include <ifcpp/model/BuildingModel.h>
#include <ifcpp/reader/ReaderSTEP.h>
#include <ifcpp/writer/WriterSTEP.h>
#include <fcntl.h>
#include <unistd.h>

namespace {

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start) {
  return std::chrono::duration<double>(Clock::now() - start).count();
}

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

void writeLines(const std::string& text, const char* path) {
  const int file = ::open(path, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find('\n', at), text.size() - 1) + 1;
    if (::write(file, text.data() + at, end - at) < 0) {
      std::abort();
    }
    at = end;
  }
  ::close(file);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) {
    return 2;
  }
  // The library reports on both streams; the results go out by printf.
  std::cout.setstate(std::ios::failbit);
  std::cerr.setstate(std::ios::failbit);
  const int rounds = std::max(1, std::atoi(argv[3]));

  auto model = std::make_shared<BuildingModel>();
  ReaderSTEP reader;
  std::stringstream content;
  content << std::ifstream(argv[1], std::ios::binary).rdbuf();
  std::string text = content.str();
  reader.loadModelFromString(text, model);  // from a file it takes no other name than "….ifc"
  const auto entities = static_cast<double>(model->getMapIfcEntities().size());

  std::vector<double> kept;
  std::vector<double> written;
  std::vector<double> flushed;
  for (int round = 0; round < rounds; ++round) {
    auto start = Clock::now();
    std::stringstream stream;
    WriterSTEP writer;
    writer.writeModelToStream(stream, model);
    kept.push_back(secondsSince(start));

    std::remove(argv[2]);
    start = Clock::now();
    {
      std::ofstream file(argv[2], std::ios::binary);
      file << stream.rdbuf();
    }
    written.push_back(kept.back() + secondsSince(start));

    std::remove(argv[2]);
    text = stream.str();
    start = Clock::now();
    writeLines(text, argv[2]);
    flushed.push_back(kept.back() + secondsSince(start));
  }
  std::printf("ifcplusplus_entities %.0f\n", entities);
  std::printf("ifcplusplus_kept_per_s %.0f\n", entities / median(kept));
  std::printf("ifcplusplus_written_per_s %.0f\n", entities / median(written));
  std::printf("ifcplusplus_flushed_per_s %.0f\n", entities / median(flushed));
  return entities > 0 ? 0 : 1;
}
