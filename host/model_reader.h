// A model from wherever the user says.
#pragma once

#include <string>

#include "host/model.h"

namespace exportifc::host {

/// Reads the model `name`: a JSON model (it begins with "{" or "[", or its name ends in .json),
/// otherwise a batch text file; "-" is standard input. Throws a Failure that names place and
/// reason.
Model readModel(const std::string& name);

/// Throws the Failure of `readModel` when there is no such file to read.
void requireReadable(const std::string& name);

/// `name`, or the word for standard input.
std::string displayName(const std::string& name);

}  // namespace exportifc::host
