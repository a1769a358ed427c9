// The order of the keyed tables is that of their keys' hashes read from the low bit up.

#pragma once

#include <cstdint>

namespace Vyx {

constexpr std::uint32_t bitReverse(std::uint32_t x) {
  x = ((x >> 1) & 0x55555555U) | ((x & 0x55555555U) << 1);
  x = ((x >> 2) & 0x33333333U) | ((x & 0x33333333U) << 2);
  x = ((x >> 4) & 0x0f0f0f0fU) | ((x & 0x0f0f0f0fU) << 4);
  return __builtin_bswap32(x);
}

// The lowest three bits alone, picked from their eight reverses.
constexpr std::uint32_t bitReverse3(std::uint32_t x) { return (0x73516240U >> 4 * (x & 7)) & 7; }

// Whether `a` read from the low bit up is less than `b` read so: the lowest bit in which they differ decides.
constexpr bool reverseLess(std::uint32_t a, std::uint32_t b) {
  std::uint32_t const differing = a ^ b;
  return (b & differing & -differing) != 0;
}

static_assert(bitReverse(1U) == 0x80000000U && bitReverse(0x12345678U) == 0x1e6a2c48U);
static_assert(bitReverse3(0xf1) == 4 && bitReverse3(3) == 6 && bitReverse3(5) == 5 && bitReverse3(6) == 3);
static_assert(reverseLess(4, 2) && !reverseLess(2, 4) && !reverseLess(2, 2) && reverseLess(0, 1));

} // namespace Vyx
