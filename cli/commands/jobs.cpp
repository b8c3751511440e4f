#include "cli/commands/jobs.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <deque>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

#include "cli/messages.h"
#include "cli/progress.h"
#include "cli/system.h"

namespace exportifc::cli {

namespace {

std::string countText(std::size_t count) { return numberText(static_cast<std::int64_t>(count)); }

ExitCode reportInterrupt(std::size_t done, std::size_t count, Console& console) {
  console.reportError(interruptedCode, count == 1 ? say(texts::stoppedByUser)
                                                  : say(texts::stoppedAfterModels,
                                                        {countText(done), countText(count)}));
  return exitNotWritten;
}

class SideBySide {
 public:
  SideBySide(std::size_t count, const Job& job, bool showsProgress, Console& console)
      : job_(job), status_(showsProgress), console_(console) {
    for (std::size_t i = 0; i < count; ++i) {
      reports_.emplace_back(console);
    }
  }

  ExitCode run(std::size_t limit) {
    showProgress();
    work(std::min(limit, reports_.size()));
    status_.erase();
    if (done_ == reports_.size()) {
      return code_;
    }
    for (; reported_ < reports_.size(); ++reported_) {  // what ended behind a stopped one
      repeat(reports_[reported_]);
    }
    return reportInterrupt(done_, reports_.size(), console_);
  }

 private:
  struct Report {
    explicit Report(const Console& console) : said(console) {}

    KeptConsole said;
    bool hasEnded = false;
  };

  /// Returns when all jobs have ended, or the user has stopped them.
  void work(std::size_t threadCount) {
    std::vector<std::jthread> threads;
    try {
      for (std::size_t i = 0; i < threadCount; ++i) {
        threads.emplace_back([this] { takeJobs(); });
      }
    } catch (const std::system_error&) {
      takeJobs();  // as many at a time as the system allows, at least one
    }
  }

  void takeJobs() {
    for (std::size_t i = next_++; i < reports_.size() && !system::interrupted(); i = next_++) {
      try {
        const ExitCode code = job_(i, reports_[i].said);
        end(i, code);
      } catch (const Interrupted&) {
        return;
      }
    }
  }

  /// The thread that ends a job says what has come to its turn by that.
  void end(std::size_t index, ExitCode code) {
    const std::lock_guard<std::mutex> lock(mutex_);
    reports_[index].hasEnded = true;
    code_ = std::max(code_, code);
    failed_ += code == exitOk ? 0 : 1;
    ++done_;
    status_.erase();
    for (; reported_ < reports_.size() && reports_[reported_].hasEnded; ++reported_) {
      repeat(reports_[reported_]);
    }
    showProgress();
  }
  void repeat(const Report& report) {
    if (!report.hasEnded) {
      return;
    }
    try {
      report.said.repeat(console_);
    } catch (const Failure& failure) {
      console_.reportFailure(failure);
      code_ = std::max(code_, failure.code());
    }
  }

  void showProgress() {
    std::string text = say(texts::jobsProgress, {countText(done_), countText(reports_.size())});
    if (failed_ > 0) {
      text += say(texts::jobsFailed, {countText(failed_)});
    }
    status_.show(text);
  }

  const Job& job_;
  std::atomic<std::size_t> next_ = 0;
  std::mutex mutex_;            // of what follows
  std::deque<Report> reports_;  // they stay where they are
  std::size_t done_ = 0;
  std::size_t failed_ = 0;
  std::size_t reported_ = 0;
  ExitCode code_ = exitOk;
  StatusLine status_;
  Console& console_;
};

}  // namespace

ExitCode runInTurn(std::size_t count, const Job& job, Console& console) {
  ExitCode code = exitOk;
  for (std::size_t i = 0; i < count; ++i) {
    try {
      if (system::interrupted()) {
        throw Interrupted();
      }
      code = std::max(code, job(i, console));
    } catch (const Interrupted&) {
      return reportInterrupt(i, count, console);
    }
  }
  return code;
}

ExitCode runSideBySide(std::size_t count, std::size_t limit, const Job& job, bool showsProgress,
                       Console& console) {
  return SideBySide(count, job, showsProgress, console).run(limit);
}

}  // namespace exportifc::cli
