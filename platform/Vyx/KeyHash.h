// The 32-bit hash of each kind of key. The order of every walk follows it; it is not to be changed.

#pragma once

#include "Vyx/BitReverse.h"

#include <type_traits>

namespace Vyx {

// Texts, addresses and identifiers bring their own; numbers and enumerations are their own hash.
template <class K>
concept HashedKey = std::is_enum_v<K> || std::is_integral_v<K> || requires(K const& key) {
  key.hash();
};

template <HashedKey K> constexpr std::uint32_t keyHash(K const& key) {
  if constexpr (std::is_enum_v<K> || std::is_integral_v<K>)
    return static_cast<std::uint32_t>(key);
  else
    return key.hash();
}

template <class K> constexpr std::uint32_t reversedHash(K const& key) { return bitReverse(keyHash(key)); }

} // namespace Vyx
