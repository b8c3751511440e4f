#include "host/jobs.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <system_error>

#include "host/console.h"
#include "host/failure.h"
#include "host/messages.h"
#include "host/paths.h"
#include "host/system.h"

namespace fs = std::filesystem;

namespace exportifc::host {

namespace {

/// A folder of its own for what the workers say; gone at the end.
class ReportFolder {
 public:
  ReportFolder()
      : path_(fs::temp_directory_path() /
              ("exportifc." + std::to_string(system::processId()) + ".jobs")) {
    fs::create_directories(path_);
  }
  ReportFolder(const ReportFolder&) = delete;
  ReportFolder& operator=(const ReportFolder&) = delete;
  ~ReportFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
  }

  fs::path report(std::size_t job, const char* stream) const {
    return path_ / (std::to_string(job) + "." + stream);
  }

 private:
  fs::path path_;
};

void pass(const fs::path& report, std::FILE* stream) {
  std::ifstream file(report, std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  std::fwrite(text.data(), 1, text.size(), stream);
  std::fflush(stream);
}

}  // namespace

int runJobs(const std::vector<Job>& jobs, int limit, bool quiet) {
  const ReportFolder folder;
  std::vector<std::unique_ptr<system::Worker>> workers(jobs.size());
  std::size_t started = 0;
  std::size_t reported = 0;
  int code = exitOk;
  bool stopping = false;
  const bool showProgress = !quiet && system::errorIsTerminal();
  while (reported < started || (started < jobs.size() && !stopping)) {
    const auto isRunning = [](const auto& worker) { return worker && !worker->ended(); };
    while (!stopping && started < jobs.size() &&
           std::count_if(workers.begin(), workers.end(), isRunning) < limit) {
      try {
        workers[started] = std::make_unique<system::Worker>(
            jobs[started].arguments, folder.report(started, "out"), folder.report(started, "err"));
      } catch (const std::system_error& failure) {
        throw Failure(exitNotWritten,
                      say(texts::workerFailed, {jobs[started].model, failure.what()}));
      }
      ++started;
    }
    if (system::interrupted() && !stopping) {
      stopping = true;
      for (const auto& worker : workers) {
        if (isRunning(worker)) {
          worker->interrupt();
        }
      }
    }
    if (showProgress) {
      const auto running = std::count_if(workers.begin(), workers.end(), isRunning);
      std::fputs(("\r\033[K" + say(texts::jobsProgress,
                                   {numberText(static_cast<std::int64_t>(started) - running),
                                    numberText(static_cast<std::int64_t>(jobs.size()))}))
                     .c_str(),
                 stderr);
    }
    while (reported < started && workers[reported]->ended()) {
      if (showProgress) {
        std::fputs("\r\033[K", stderr);
      }
      pass(folder.report(reported, "out"), stdout);
      pass(folder.report(reported, "err"), stderr);
      code = std::max(code, workers[reported]->exitCode());
      ++reported;
    }
    constexpr int pause = 10;
    system::sleepMilliseconds(pause);
  }
  if (stopping) {
    reportError(say(texts::stoppedByUser));
    return exitNotWritten;
  }
  return code;
}

}  // namespace exportifc::host
