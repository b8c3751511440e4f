// Rows of texts as lines whose columns stand below one another.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace exportifc {

/// Rows of equally many cells in UTF-8. Numbers stand at the right of their columns; `isText` says
/// which columns, from 0, hold texts instead.
std::vector<std::string> alignedLines(const std::vector<std::vector<std::string>>& rows,
                                      const std::function<bool(std::size_t column)>& isText);

}  // namespace exportifc
