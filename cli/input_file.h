// A file that the user names as input.
#pragma once

#include <fstream>
#include <string>

namespace exportifc::cli {

/// Opens it to read its bytes; throws a Failure with the system's reason when it cannot.
void openInput(std::filebuf& file, const std::string& name);

}  // namespace exportifc::cli
