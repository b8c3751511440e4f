#include "cli/output_format.h"

#include <algorithm>
#include <vector>

#include "cli/exchange_file.h"
#include "cli/failure.h"
#include "cli/messages.h"
#include "cli/model_file.h"
#include "library/files/paths.h"
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
    // What is called .zip may be anything.
    if (format.write != nullptr && format.id != ModelFormat::csv) {
      kinds.push_back(kindOf(format));
    }
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
  std::vector<const Format*> others;
  std::string extensions;
  for (const Format& format : formats()) {
    if (format.write != nullptr && format.id != read.id) {
      others.push_back(&format);
      extensions.append(extensions.empty() ? "" : ", ").append(format.extension);
    }
  }
  const std::string extension = extensionOf(output);
  const auto named = std::find_if(others.begin(), others.end(), [&](const Format* format) {
    return format->extension == extension;
  });
  if (extension == takeoffKind.extension) {
    const std::string folder = output.substr(0, output.size() - extension.size()) + "/";
    throw Failure(exitBadUse, say(texts::convertCsv, {output, folder}));
  }
  if (named != others.end()) {
    return **named;
  }
  if (read.write != nullptr && read.extension == extension) {
    throw Failure(exitBadUse, say(texts::convertSameFormat,
                                  {output, displayName(model), say(read.name), extensions}));
  }
  OutputKind written = kindOf(*others.front());
  written.extension = extensions;
  requireExtension(output, written);
  return *others.front();
}

}  // namespace exportifc::cli
