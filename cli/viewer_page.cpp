#include "cli/viewer_page.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <system_error>
#include <vector>

#include "cli/failure.h"
#include "cli/messages.h"
#include "cli/output_file.h"
#include "cli/paths.h"
#include "cli/system.h"

namespace fs = std::filesystem;

namespace exportifc::cli {

namespace {

// In the page, each once: the exchange file, its name, and the notes, one a line, all in base 64.
constexpr std::string_view modelMark = "@EXPORTIFC_MODEL@";
constexpr std::string_view nameMark = "@EXPORTIFC_NAME@";
constexpr std::string_view notesMark = "@EXPORTIFC_NOTES@";

constexpr const char* viewerVariable = "EXPORTIFC_VIEWER";

std::string base64(std::string_view bytes) {
  constexpr std::string_view alphabet =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  text.reserve((bytes.size() + 2) / 3 * 4);
  for (std::size_t at = 0; at < bytes.size(); at += 3) {
    const std::size_t count = std::min<std::size_t>(3, bytes.size() - at);
    std::uint32_t group = 0;
    for (std::size_t i = 0; i < 3; ++i) {
      group = (group << 8) | (i < count ? static_cast<unsigned char>(bytes[at + i]) : 0U);
    }
    for (std::size_t i = 0; i < 4; ++i) {
      text.push_back(i <= count ? alphabet[(group >> (18 - 6 * i)) & 0x3F] : '=');
    }
  }
  return text;
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

std::string readWholeFile(const std::string& path) {
  if (isStandardStream(path)) {
    return {std::istreambuf_iterator<char>(std::cin), {}};
  }
  std::error_code ignored;
  errno = fs::is_directory(pathOf(path), ignored) ? EISDIR : 0;
  std::ifstream file;
  if (errno == 0) {
    file.open(pathOf(path), std::ios::binary);
  }
  if (!file.is_open()) {
    throw Failure(exitUnreadable,
                  say(texts::cannotRead, {path, readErrorText(path, errno != 0 ? errno : ENOENT)}));
  }
  return {std::istreambuf_iterator<char>(file), {}};
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

void writeViewerPage(const std::string& page, std::string_view exchangeFile,
                     const std::string& name, const std::string& output,
                     const std::vector<std::string>& notes) {
  std::string noteLines;
  for (const std::string& note : notes) {
    noteLines += (noteLines.empty() ? "" : "\n") + note;
  }
  struct Filling {
    std::string_view mark;
    std::string_view content;
  };
  const Filling fillings[] = {{modelMark, exchangeFile}, {nameMark, name}, {notesMark, noteLines}};
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
    file.write(base64(next->content));
    rest.remove_prefix(at + next->mark.size());
  }
  file.commit();
}

}  // namespace exportifc::cli
