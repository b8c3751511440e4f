// Lines and columns of the values that JSON pointers name.
#pragma once

#include <streambuf>
#include <string>
#include <vector>

#include "library/frame/problem.h"

namespace exportifc {

/// Goes through a JSON text once. Of each pointer the place where its value begins, or that of the
/// nearest value around it; of a key that stands twice, the later. With `end`, the text counts up
/// to that place only: behind it, it need not be JSON.
std::vector<TextPlace> placesOf(std::streambuf& text, const std::vector<std::string>& pointers,
                                TextPlace end = {});

}  // namespace exportifc
