#include "tests/support/exchange_text.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace exportifc::test {

namespace {

constexpr std::size_t idLength = 22;
constexpr std::string_view idCharacters =
    "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz_$";

/// Where the identifier stands in a line "#1= KEYWORD('identifier', ...", if it does.
std::size_t generatedId(std::string_view line) {
  const std::size_t equals = line.find_first_not_of("0123456789", 1);
  if (!line.starts_with('#') || equals == std::string_view::npos ||
      line.substr(equals, 2) != "= ") {
    return std::string_view::npos;
  }
  const std::size_t quote = line.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ", equals + 2);
  if (quote == std::string_view::npos || line.substr(quote, 2) != "('") {
    return std::string_view::npos;
  }
  const std::string_view id = line.substr(quote + 2, idLength);
  const bool whole = line.find_first_not_of(idCharacters, quote + 2) == quote + 2 + idLength &&
                     line[quote + 2 + idLength] == '\'' && id.front() <= '3';
  return whole ? quote + 2 : std::string_view::npos;
}

}  // namespace

std::string maskGlobalIds(std::string text) {
  for (std::size_t start = 0; start < text.size();) {
    const std::size_t end = std::min(text.find('\n', start), text.size());
    const std::size_t id = generatedId(std::string_view(text).substr(start, end - start));
    if (id != std::string_view::npos) {
      text.replace(start + id, idLength, idLength, 'G');
    }
    start = end + 1;
  }
  return text;
}

}  // namespace exportifc::test
