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

static_assert(bitReverse(1U) == 0x80000000U && bitReverse(0x12345678U) == 0x1e6a2c48U);

} // namespace Vyx
