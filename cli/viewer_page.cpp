#include "cli/viewer_page.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <system_error>
#include <vector>

#include "cli/failure.h"
#include "cli/input_file.h"
#include "cli/messages.h"
#include "cli/output_file.h"
#include "cli/system.h"
#include "library/files/paths.h"
#include "library/packing/base64_sink.h"
#include "library/packing/deflate_sink.h"

namespace fs = std::filesystem;

namespace exportifc::cli {

namespace {

// In the page, each once: the exchange file, packed by gzip, its name, and the notes, one a line,
// all in base 64.
constexpr std::string_view modelMark = "@EXPORTIFC_MODEL@";
constexpr std::string_view nameMark = "@EXPORTIFC_NAME@";
constexpr std::string_view notesMark = "@EXPORTIFC_NOTES@";

constexpr const char* viewerVariable = "EXPORTIFC_VIEWER";

/// The page unpacks no more.
constexpr std::uint64_t mostBytes = 1ULL << 30;

/// Takes what the page unpacks; so a zip that seems to have no end has one.
class LimitedSink final : public ByteSink {
 public:
  explicit LimitedSink(ByteSink& next) : next_(next) {}

  bool write(const char* bytes, std::size_t size) override {
    taken_ += size;
    return !isExceeded() && next_.write(bytes, size);
  }
  bool isExceeded() const { return taken_ > mostBytes; }

 private:
  ByteSink& next_;
  std::uint64_t taken_ = 0;
};

std::string readWholeFile(const std::string& path) {
  if (isStandardStream(path)) {
    return {std::istreambuf_iterator<char>(std::cin), {}};
  }
  std::filebuf file;
  openInput(file, path);
  return {std::istreambuf_iterator<char>(&file), {}};
}

void writePacked(const PageContent& content, ByteSink& sink) {
  DeflateSink packed(sink, DeflateFrame::gzip);
  LimitedSink limited(packed);
  content.writeExchangeFile(limited);
  if (limited.isExceeded()) {
    throw Failure(exitNotWritten, say(texts::tooLargeForPage, {content.name}));
  }
  packed.finish();
}

std::string lines(const std::vector<std::string>& texts) {
  std::string all;
  for (const std::string& text : texts) {
    all += (all.empty() ? "" : "\n") + text;
  }
  return all;
}

}  // namespace

std::vector<fs::path> viewerPagePlaces() {
  const fs::path folder = system::programPath().parent_path();
  return {folder / "viewer.html", folder.parent_path() / "share" / "exportifc" / "viewer.html"};
}

std::string viewerTemplatePath(const std::string& chosen) {
  if (!chosen.empty()) {
    return chosen;
  }
  if (std::string named = system::variable(viewerVariable); !named.empty()) {
    return named;
  }
  std::error_code ignored;
  for (const fs::path& place : viewerPagePlaces()) {
    if (fs::exists(place, ignored)) {
      return textOf(place);
    }
  }
  return "";
}

bool isOwnPage(std::string_view start) {
  return start.find("<title>exportIFC</title>") != std::string_view::npos &&
         start.find(nameMark) == std::string_view::npos;
}

std::string readViewerTemplate(const std::string& path) {
  if (path.empty()) {
    throw Failure(exitUnreadable, say(texts::noTemplate, {textOf(viewerPagePlaces().front())}));
  }
  const auto refuse = [&](const std::string& reason) {
    throw Failure(exitUnreadable, path == system::variable(viewerVariable)
                                      ? say(texts::namedByVariable, {reason, viewerVariable})
                                      : reason);
  };
  std::string page;
  try {
    page = readWholeFile(path);
  } catch (const Failure& failure) {
    refuse(failure.what());
  }
  if (page.find(modelMark) == std::string::npos || page.find(nameMark) == std::string::npos) {
    refuse(say(texts::badTemplate, {path}));
  }
  return page;
}

void writeViewerPage(const std::string& page, const PageContent& content,
                     const std::string& output) {
  struct Filling {
    std::string_view mark;
    std::function<void(Base64Sink&)> write;
  };
  const Filling fillings[] = {
      {modelMark, [&](Base64Sink& sink) { writePacked(content, sink); }},
      {nameMark, [&](Base64Sink& sink) { sink.write(content.name); }},
      {notesMark, [&](Base64Sink& sink) { sink.write(lines(content.notes)); }}};
  OutputFile file(output);
  std::string_view rest = page;
  while (!rest.empty()) {
    const auto* const next = std::min_element(
        std::begin(fillings), std::end(fillings),
        [&](const auto& a, const auto& b) { return rest.find(a.mark) < rest.find(b.mark); });
    const std::size_t at = rest.find(next->mark);
    file.write(rest.substr(0, at));
    if (at == std::string_view::npos) {
      break;
    }
    Base64Sink letters(file);
    next->write(letters);
    letters.finish();
    rest.remove_prefix(at + next->mark.size());
  }
  file.commit();
}

}  // namespace exportifc::cli
