// Checks that a table indexed by an enumeration is in its order.
#pragma once

#include <cstddef>

namespace exportifc {

/// Whether the rows stand in the order of the enumeration that `key` names them by, from its first
/// value to `last`, each once.
template <class Row, std::size_t size, class Key>
consteval bool standsInOrder(const Row (&table)[size], Key Row::*key, Key last) {
  for (std::size_t i = 0; i < size; ++i) {
    if (static_cast<std::size_t>(table[i].*key) != i) {
      return false;
    }
  }
  return static_cast<std::size_t>(last) + 1 == size;
}

}  // namespace exportifc
