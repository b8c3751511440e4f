// The page that shows an exchange file.
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/byte_sink.h"

namespace exportifc::cli {

/// Where the page lies that comes with the program, the first place first.
std::vector<std::filesystem::path> viewerPagePlaces();

/// The page without a model: `chosen` if not empty, else the file that EXPORTIFC_VIEWER names, else
/// the one that comes with the program; empty when there is none.
std::string viewerTemplatePath(const std::string& chosen);

/// Reads what `viewerTemplatePath` found. Throws a Failure.
std::string readViewerTemplate(const std::string& path);

/// Whether a file that begins so is such a page with a model in it.
bool isOwnPage(std::string_view start);

/// What the page shows.
struct PageContent {
  std::string name;  ///< of the exchange file
  std::function<void(ByteSink& sink)> writeExchangeFile;
  std::vector<std::string>
      notes{};  ///< one below the other; a page made before there were notes shows none
};

/// Writes `page` with its content to `output`. The exchange file is packed on its way.
void writeViewerPage(const std::string& page, const PageContent& content,
                     const std::string& output);

}  // namespace exportifc::cli
