// Numbers in network byte order at any address.
//
// What is stored is an object of its own type, not a run of characters: so the compiler sees that a store
// into a buffer changes none of the fields of whoever owns the buffer, and keeps those in registers.

#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <new>

namespace Vyx::NboAttrLog {

static_assert(std::endian::native == std::endian::little || std::endian::native == std::endian::big);

template <class U> constexpr U networkOrder(U value) {
  if constexpr (sizeof(U) == 1 || std::endian::native == std::endian::big)
    return value;
  else if constexpr (sizeof(U) == 2)
    return __builtin_bswap16(value);
  else if constexpr (sizeof(U) == 4)
    return __builtin_bswap32(value);
  else
    return __builtin_bswap64(value);
}

// `U` is an unsigned integer.
template <class U> struct [[gnu::packed]] Stored {
  enum class Word : U {};
  Word word;
};

template <class U> void storeNetwork(unsigned char* at, U value) {
  new (at) Stored<U>{static_cast<typename Stored<U>::Word>(networkOrder(value))};
}

template <class U> U loadNetwork(unsigned char const* at) {
  U value;
  std::memcpy(&value, at, sizeof value);
  return networkOrder(value);
}

inline void storeNetwork24(unsigned char* at, std::uint32_t value) {
  storeNetwork(at, static_cast<std::uint8_t>(value >> 16));
  storeNetwork(at + 1, static_cast<std::uint16_t>(value));
}

inline std::uint32_t loadNetwork24(unsigned char const* at) {
  return static_cast<std::uint32_t>(at[0]) << 16 | loadNetwork<std::uint16_t>(at + 1);
}

} // namespace Vyx::NboAttrLog
