#include "library/frame/model_export.h"

#include <algorithm>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <utility>

#include "library/text/text_encoding.h"
#include "plugin/export_driver.h"

namespace exportifc {

namespace {

/// Passes the file on and counts what is in it.
class CountingSink final : public ByteSink {
 public:
  CountingSink(ByteSink& target, ExportResult& result) : target_(target), result_(result) {}

  bool write(const char* bytes, std::size_t size) override {
    const std::string_view line(bytes, size);
    result_.bytes += static_cast<std::int64_t>(size);
    ++result_.lines;                                  // the writer hands over whole lines
    const std::size_t keyword = line.find("= ") + 2;  // npos + 2 is 1: no keyword there
    const std::string_view name =
        line.substr(std::min(keyword, size), line.find('(') - std::min(keyword, size));
    const auto found = std::find(elementKeywords.begin(), elementKeywords.end(), name);
    if (found != elementKeywords.end()) {
      ++result_.elements[static_cast<std::size_t>(found - elementKeywords.begin())];
    }
    ended_ = line.starts_with("END-ISO-10303-21;");
    return target_.write(bytes, size);
  }

  bool ended() const { return ended_; }

 private:
  ByteSink& target_;
  ExportResult& result_;
  bool ended_ = false;
};

/// The driver owns its sink; this one stays with us.
class BorrowedSink final : public ByteSink {
 public:
  explicit BorrowedSink(ByteSink& sink) : sink_(sink) {}
  bool write(const char* bytes, std::size_t size) override { return sink_.write(bytes, size); }

 private:
  ByteSink& sink_;
};

class BorrowedSource final : public BarSource {
 public:
  explicit BorrowedSource(BarSource& source) : source_(source) {}
  std::int32_t unitCode() override { return source_.unitCode(); }
  std::int32_t barCount() override { return source_.barCount(); }
  bool next(std::int32_t index, SourceBar& bar) override { return source_.next(index, bar); }

 private:
  BarSource& source_;
};

#ifdef _WIN32
constexpr const wchar_t* nullDevice = L"NUL";
#else
constexpr const wchar_t* nullDevice = L"/dev/null";
#endif

/// Answers in the user's place and keeps what the module says.
class UnattendedInterface final : public UserInterface {
 public:
  UnattendedInterface(const Model& model, bool visibleOnly)
      : model_(model), visibleOnly_(visibleOnly) {}

  /// The driver probes the file it is given by truncating it. Ours is open already, so it gets a
  /// file that nobody misses; `openOutput` hands it the real one.
  std::optional<std::wstring> chooseSaveFile() override { return nullDevice; }

  BarChoice chooseBars() override { return visibleOnly_ ? BarChoice::visibleOnly : BarChoice::all; }

  void show(const Message& message) override {
    if (message.id == MessageId::exportFailed) {
      failure_ = toUtf8(message.reason);
    } else {
      note(message.id);
    }
  }

  void startBar(std::int32_t index) { bar_ = index; }

  const std::string& failure() const { return failure_; }
  /// In the order of their first bars.
  std::vector<ModuleMessage> messages() const {
    std::vector<ModuleMessage> sorted;
    for (const auto& [key, message] : messages_) {
      sorted.push_back(message);
    }
    std::sort(sorted.begin(), sorted.end(),
              [](const auto& a, const auto& b) { return a.firstBar < b.firstBar; });
    return sorted;
  }

 private:
  void note(MessageId id) {
    const std::int32_t section = model_.bars[static_cast<std::size_t>(bar_)].section;
    ModuleMessage& message = messages_[{id, section}];
    if (message.bars == 0) {
      message = {.id = id, .section = section, .bars = 0, .firstBar = bar_};
    } else if (lastNoted_ == bar_) {
      return;  // both halves of one bar
    }
    ++message.bars;
    lastNoted_ = bar_;
  }

  const Model& model_;
  bool visibleOnly_;
  std::int32_t bar_ = 0;
  std::int32_t lastNoted_ = -1;
  std::map<std::pair<MessageId, std::int32_t>, ModuleMessage> messages_;
  std::string failure_;
};

struct Stopped : std::runtime_error {
  Stopped() : std::runtime_error("") {}
};

std::int64_t nothing() { return 0; }

}  // namespace

ExportResult exportModel(const Model& model, bool visibleOnly, ByteSink& output,
                         const std::function<bool(std::int32_t bar)>& goesOn) {
  ExportResult result;
  CountingSink counter(output, result);
  UnattendedInterface ui(model, visibleOnly);
  std::int32_t current = -1;
  ModelSource source(model, visibleOnly, [&](std::int32_t index) {
    current = index;
    ui.startBar(index);
    result.interrupted = !goesOn(index);
    // The empty write tells whether the output has refused anything.
    if (result.interrupted || !output.write("", 0)) {
      throw Stopped();
    }
  });
  Module module(&nothing, &nothing);
  runExport(
      module,
      {.ui = ui,
       .openOutput =
           [&](const std::wstring& /*path*/) { return std::make_unique<BorrowedSink>(counter); },
       .openModel =
           [&](const Module& /*module*/) { return std::make_unique<BorrowedSource>(source); },
       .changesLocale = false});
  result.skipped = source.skipped();
  result.messages = ui.messages();
  result.complete = counter.ended() && !result.interrupted && output.write("", 0);
  result.lastBar = current + 1;
  result.driverFailure = ui.failure();
  return result;
}

}  // namespace exportifc
