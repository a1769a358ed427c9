// The keys that a walk over a keyed collection meets, as text, and the order that a hash table owes.

#pragma once

#include "Vyx/KeyHash.h"

#include <cstdint>
#include <sstream>
#include <string>

// The iterator's keys from where it stands to the end, with blanks between.
template <class Iterator> std::string keysFrom(Iterator at) {
  std::ostringstream text;
  for (char const* blank = ""; at; ++at, blank = " ") text << blank << at.key();
  return text.str();
}
template <class Collection> std::string keysOf(Collection const& collection) {
  return keysFrom(typename Collection::IteratorConst(collection));
}
template <class Collection, class K> std::string keysFrom(Collection const& collection, K const& key) {
  return keysFrom(typename Collection::IteratorConst(collection, key));
}

// The 32 bits of a word in the other order, one by one.
inline std::uint32_t reversedBits(std::uint32_t word) {
  std::uint32_t reversed = 0;
  for (int bit = 0; bit < 32; ++bit, word >>= 1) reversed = (reversed << 1) | (word & 1U);
  return reversed;
}

// Whether the one key comes before the other in every table: by reversed hash, then by key.
struct TableOrder {
  template <class K> bool operator()(K const& a, K const& b) const {
    std::uint32_t const left = reversedBits(Vyx::keyHash(a));
    std::uint32_t const right = reversedBits(Vyx::keyHash(b));
    return left != right ? left < right : a < b;
  }
};
