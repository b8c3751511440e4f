#include "cli/output_format.h"

#include <algorithm>
#include <vector>

#include "cli/exchange_file.h"
#include "cli/failure.h"
#include "cli/messages.h"
#include "cli/model_file.h"
#include "cli/paths.h"
#include "library/text/file_extension.h"

namespace exportifc::cli {

const OutputKind exchangeFileKind{".ifc", texts::formatExchange, "export"};
const OutputKind pageKind{".html", texts::formatPage, "view"};
const OutputKind takeoffKind{".csv", texts::formatTakeoff, "takeoff"};

namespace {

OutputKind kindOf(const Format& format) { return {format.extension, format.name, "convert"}; }

std::vector<OutputKind> allKinds() {
  std::vector<OutputKind> kinds{exchangeFileKind,
                                {zippedExtension, exchangeFileKind.name, exchangeFileKind.command},
                                pageKind,
                                {".htm", pageKind.name, pageKind.command},
                                takeoffKind};
  for (const Format& format : formats()) {
    kinds.push_back(kindOf(format));
  }
  return kinds;
}

}  // namespace

void requireExtension(const std::string& output, const OutputKind& written) {
  const std::string extension = extensionOf(output);
  for (const OutputKind& kind : allKinds()) {
    if (kind.extension == extension && &kind.name != &written.name) {
      throw Failure(exitBadUse,
                    say(texts::useExtension, {output, say(written.name), extension, say(kind.name),
                                              written.extension, kind.command}));
    }
  }
}

const Format& convertedFormat(const std::string& model, const Format& read,
                              const std::string& output) {
  const auto all = formats();
  const auto other = std::find_if(all.begin(), all.end(),
                                  [&](const Format& format) { return format.id != read.id; });
  const std::string extension = extensionOf(output);
  const auto named = std::find_if(
      all.begin(), all.end(), [&](const Format& format) { return format.extension == extension; });
  if (named == all.end()) {
    requireExtension(output, kindOf(*other));
    return *other;
  }
  if (named->id == read.id) {
    throw Failure(exitBadUse,
                  say(texts::convertSameFormat, {output, displayName(model), say(read.name),
                                                 say(other->name), other->extension}));
  }
  return *named;
}

}  // namespace exportifc::cli
