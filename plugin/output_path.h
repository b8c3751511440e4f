// Chooses the file that an export writes.
#pragma once

#include <string>

#include "plugin/user_interface.h"

namespace exportifc {

/// The path of the file to write; empty when the user has none to give.
///
/// Batch mode (`batchPath` not empty): that path followed by "temp"; one that does not fit 1,024
/// characters or has no wide form throws `texts::fileCreationFailed`. Interactive mode: the save
/// dialog's choice, probed by creating and reopening the file; one that fails is reported.
std::wstring chooseOutputPath(const std::string& batchPath, UserInterface& ui);

}  // namespace exportifc
