#include "library/frame/model_export.h"

#include <algorithm>
#include <exception>
#include <map>
#include <memory>
#include <new>
#include <utility>

#include "plugin/bar_export.h"
#include "step/preamble.h"
#include "step/step_writer.h"

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
    return target_.write(bytes, size);
  }

 private:
  ByteSink& target_;
  ExportResult& result_;
};

/// Keeps what the bars' writers say, once for each section.
class CollectedMessages final : public MessageReceiver {
 public:
  explicit CollectedMessages(const Model& model) : model_(model) {}

  void startBar(std::int32_t index) { bar_ = index; }

  void show(const Message& message) override {
    const std::int32_t section = model_.bars[static_cast<std::size_t>(bar_)].section;
    ModuleMessage& kept = messages_[{message.id, section}];
    if (kept.bars == 0) {
      kept = {.id = message.id, .section = section, .bars = 0, .firstBar = bar_};
    } else if (lastNoted_ == bar_) {
      return;  // both halves of one bar
    }
    ++kept.bars;
    lastNoted_ = bar_;
  }

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
  const Model& model_;
  std::int32_t bar_ = 0;
  std::int32_t lastNoted_ = -1;
  std::map<std::pair<MessageId, std::int32_t>, ModuleMessage> messages_;
};

/// Ends the loop over the bars.
struct Stopped {};

}  // namespace

ExportResult exportModel(const Model& model, bool visibleOnly, ByteSink& output,
                         const std::function<bool(std::int32_t bar)>& goesOn) {
  ExportResult result;
  CollectedMessages messages(model);
  StepWriter writer(std::make_unique<CountingSink>(output, result));
  ModelSource source(model, visibleOnly, [&](std::int32_t index) {
    result.lastBar = index + 1;
    messages.startBar(index);
    result.interrupted = !goesOn(index);
    if (result.interrupted || writer.stream.failed()) {
      throw Stopped();
    }
  });
  try {
    writer.writeHeader();
    writePreamble(writer);
    exportBars(writer, visibleOnly ? BarChoice::visibleOnly : BarChoice::all, source, messages);
    writer.writeFooter();
    result.complete = !writer.stream.failed();
  } catch (const Stopped&) {  // what of it is in the output is known already
  } catch (const std::exception& failure) {
    result.outOfMemory = dynamic_cast<const std::bad_alloc*>(&failure) != nullptr;
    result.failure = failure.what();
  }
  result.skipped = source.skipped();
  result.messages = messages.messages();
  return result;
}

}  // namespace exportifc
