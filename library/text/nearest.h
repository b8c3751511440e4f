// The word that was probably meant, and lists of words.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace exportifc {

/// Letters to insert, drop, change or swap with their neighbour to make one word the other.
std::size_t editDistance(std::string_view a, std::string_view b);

/// The known word nearest to `word`, case apart; empty when none comes close.
std::string nearest(std::string_view word, std::span<const std::string> known);
std::string nearest(std::string_view word, std::span<const std::string_view> known);

/// "a, b, c".
std::string joined(std::span<const std::string_view> words);

}  // namespace exportifc
