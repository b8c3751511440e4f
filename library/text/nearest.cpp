#include "library/text/nearest.h"

#include <algorithm>
#include <vector>

namespace exportifc {

namespace {

std::string lowered(std::string_view word) {
  std::string text(word);
  for (char& c : text) {
    c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  }
  return text;
}

}  // namespace

std::size_t editDistance(std::string_view a, std::string_view b) {
  // Three rows of the table: two before the one at hand, for swapped neighbours.
  std::vector<std::size_t> before(b.size() + 1);
  std::vector<std::size_t> above(b.size() + 1);
  std::vector<std::size_t> row(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j) {
    above[j] = j;
  }
  for (std::size_t i = 1; i <= a.size(); ++i) {
    row[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t change = above[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
      row[j] = std::min({above[j] + 1, row[j - 1] + 1, change});
      if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
        row[j] = std::min(row[j], before[j - 2] + 1);
      }
    }
    before.swap(above);
    above.swap(row);
  }
  return above[b.size()];
}

std::string nearest(std::string_view word, std::span<const std::string> known) {
  const std::string wanted = lowered(word);
  std::string best;
  // More changes than half the word make another word.
  std::size_t bestDistance = wanted.size() / 2 + 1;
  for (const std::string& candidate : known) {
    const std::size_t distance = editDistance(wanted, lowered(candidate));
    if (distance < bestDistance) {
      bestDistance = distance;
      best = candidate;
    }
  }
  return best;
}

std::string nearest(std::string_view word, std::span<const std::string_view> known) {
  return nearest(word, std::vector<std::string>(known.begin(), known.end()));
}

std::string joined(std::span<const std::string_view> words) {
  std::string text;
  for (const std::string_view word : words) {
    text.append(text.empty() ? "" : ", ").append(word);
  }
  return text;
}

}  // namespace exportifc
