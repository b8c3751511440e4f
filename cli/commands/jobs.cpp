#include "cli/commands/jobs.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <system_error>

#include "cli/console.h"
#include "cli/failure.h"
#include "cli/messages.h"
#include "cli/paths.h"
#include "cli/system.h"

namespace fs = std::filesystem;

namespace exportifc::cli {

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

/// The jobs of one call: those before `reported_` are over and told, those before `started_` run.
class JobRun {
 public:
  JobRun(const std::vector<Job>& jobs, int limit, bool quiet)
      : jobs_(jobs), limit_(limit), showsProgress_(!quiet && system::errorIsTerminal()) {}

  int run() {
    while (reported_ < workers_.size() || (workers_.size() < jobs_.size() && !stopping_)) {
      startMore();
      stopIfAsked();
      showProgress();
      reportEnded();
      constexpr int pause = 10;
      system::sleepMilliseconds(pause);
    }
    if (stopping_) {
      reportError(say(texts::stoppedByUser));
      return exitNotWritten;
    }
    return code_;
  }

 private:
  static bool isRunning(const std::unique_ptr<system::Worker>& worker) { return !worker->ended(); }

  std::ptrdiff_t running() const {
    return std::count_if(workers_.begin(), workers_.end(), isRunning);
  }

  void startMore() {
    while (!stopping_ && workers_.size() < jobs_.size() && running() < limit_) {
      const std::size_t next = workers_.size();
      try {
        workers_.push_back(std::make_unique<system::Worker>(
            jobs_[next].arguments, folder_.report(next, "out"), folder_.report(next, "err")));
      } catch (const std::system_error& failure) {
        throw Failure(exitNotWritten,
                      say(texts::workerFailed, {jobs_[next].model, failure.what()}));
      }
    }
  }

  void stopIfAsked() {
    if (!system::interrupted() || stopping_) {
      return;
    }
    stopping_ = true;
    for (const auto& worker : workers_) {
      if (isRunning(worker)) {
        worker->interrupt();
      }
    }
  }

  void showProgress() const {
    if (showsProgress_) {
      const auto done = static_cast<std::int64_t>(workers_.size()) - running();
      const std::string text =
          say(texts::jobsProgress,
              {numberText(done), numberText(static_cast<std::int64_t>(jobs_.size()))});
      std::fputs((eraseLine + text).c_str(), stderr);
    }
  }

  void reportEnded() {
    for (; reported_ < workers_.size() && workers_[reported_]->ended(); ++reported_) {
      if (showsProgress_) {
        std::fputs(eraseLine, stderr);
      }
      pass(folder_.report(reported_, "out"), stdout);
      pass(folder_.report(reported_, "err"), stderr);
      code_ = std::max(code_, workers_[reported_]->exitCode());
    }
  }

  static constexpr const char* eraseLine = "\r\033[K";

  const std::vector<Job>& jobs_;
  int limit_;
  bool showsProgress_;
  ReportFolder folder_;
  std::vector<std::unique_ptr<system::Worker>> workers_;
  std::size_t reported_ = 0;
  int code_ = exitOk;
  bool stopping_ = false;
};

}  // namespace

int runJobs(const std::vector<Job>& jobs, int limit, bool quiet) {
  return JobRun(jobs, limit, quiet).run();
}

}  // namespace exportifc::cli
