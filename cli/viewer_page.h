// The page that shows an exchange file.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

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

/// Writes `page` with the exchange file in it, under the given name, to `output`. The page shows
/// the notes, one below the other; a page made before there were notes shows none.
void writeViewerPage(const std::string& page, std::string_view exchangeFile,
                     const std::string& name, const std::string& output,
                     const std::vector<std::string>& notes = {});

/// A whole file. Throws a Failure.
std::string readWholeFile(const std::string& path);

}  // namespace exportifc::cli
