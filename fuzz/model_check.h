// What holds for every model that a reader takes, whatever it was read from.
#pragma once

#include "library/frame/model.h"
#include "library/frame/model_error.h"

namespace exportifc::fuzz {

/// Its problems can be shown, its exchange file is the one that a second, simpler writer expects,
/// and written as JSON it reads back the same.
void requireSound(exportifc::Model model);

/// A refusal can be shown, and says of a place at most that it is one.
void requireShown(const ModelError& error);

}  // namespace exportifc::fuzz
