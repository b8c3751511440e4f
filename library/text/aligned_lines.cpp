#include "library/text/aligned_lines.h"

#include <algorithm>

#include "library/text/text_encoding.h"

namespace exportifc {

std::vector<std::string> alignedLines(const std::vector<std::vector<std::string>>& rows,
                                      const std::function<bool(std::size_t column)>& isText) {
  std::vector<std::string> lines(rows.size());
  for (std::size_t i = 0; i < rows.front().size(); ++i) {
    std::size_t width = 0;
    for (const auto& row : rows) {
      width = std::max(width, characterCount(row[i]));
    }
    for (std::size_t at = 0; at < rows.size(); ++at) {
      const std::string& cell = rows[at][i];
      const std::string blanks(width - characterCount(cell), ' ');
      lines[at] += (i == 0 ? "" : "  ") + (isText(i) ? cell + blanks : blanks + cell);
    }
  }
  for (std::string& line : lines) {
    line.erase(line.find_last_not_of(' ') + 1);
  }
  return lines;
}

}  // namespace exportifc
