// The page that shows an exchange file.
#pragma once

#include <string>
#include <string_view>

namespace exportifc::host {

/// The built page without a model: `chosen` if not empty, else the file that EXPORTIFC_VIEWER
/// names, else viewer.html beside the program or in ../share/exportifc. Throws a Failure.
std::string readViewerTemplate(const std::string& chosen);

/// Writes `page` with the exchange file in it, under the given name, to `output`.
void writeViewerPage(const std::string& page, std::string_view exchangeFile,
                     const std::string& name, const std::string& output);

/// A whole file. Throws a Failure.
std::string readWholeFile(const std::string& path);

}  // namespace exportifc::host
