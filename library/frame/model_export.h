// One model into one output, by the module's own writers.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "library/frame/model.h"
#include "library/frame/model_source.h"
#include "platform/byte_sink.h"
#include "plugin/user_interface.h"

namespace exportifc {

/// A message of the module, once for all bars of one section.
struct ModuleMessage {
  MessageId id = MessageId::unknownProfile;
  std::int32_t section = 0;
  std::int32_t bars = 0;
  std::int32_t firstBar = 0;  ///< index
};

/// The kinds of element that a bar can become.
inline constexpr std::array<std::string_view, 3> elementKeywords = {"IFCBEAM", "IFCCOLUMN",
                                                                    "IFCMEMBER"};

struct ExportResult {
  SkippedBars skipped;
  std::array<std::int64_t, elementKeywords.size()> elements{};
  std::vector<ModuleMessage> messages;
  std::int64_t bytes = 0;
  std::int64_t lines = 0;
  bool complete = false;     ///< the whole file was handed to the output
  bool interrupted = false;  ///< by the caller
  std::int32_t lastBar = 0;  ///< from 1: where an incomplete export stopped
  bool outOfMemory = false;
  std::string failure;  ///< the exception that ended it, if that is why
};

/// Writes the exchange file of `model`, whose references must be sound, to `output`. Asks before
/// each bar, by its index, whether to go on; stops there, or where the output refuses anything.
ExportResult exportModel(const Model& model, bool visibleOnly, ByteSink& output,
                         const std::function<bool(std::int32_t bar)>& goesOn);

}  // namespace exportifc
