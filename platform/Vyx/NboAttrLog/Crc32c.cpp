#include "Vyx/NboAttrLog/Crc32c.h"

#include <array>

namespace Vyx::NboAttrLog {

namespace {

constexpr std::uint32_t kPolynomial = 0x82f63b78U; // Bit-reversed.

// tables[k][b]: what byte b does to the state with k further bytes behind it.
using Tables = std::array<std::array<std::uint32_t, 256>, 8>;

constexpr Tables makeTables() {
  Tables tables{};
  for (std::uint32_t byte = 0; byte < 256; ++byte) {
    std::uint32_t state = byte;
    for (int bit = 0; bit < 8; ++bit) state = state >> 1 ^ (state & 1 ? kPolynomial : 0);
    tables[0][byte] = state;
  }
  for (std::size_t k = 1; k < tables.size(); ++k)
    for (std::size_t byte = 0; byte < 256; ++byte) {
      std::uint32_t const before = tables[k - 1][byte];
      tables[k][byte] = before >> 8 ^ tables[0][before & 0xff];
    }
  return tables;
}

constexpr Tables kTables = makeTables();

std::uint32_t littleEndian32(unsigned char const* at) {
  return __builtin_bswap32(loadNetwork<std::uint32_t>(at));
}

bool processorHasInstruction() {
#if VYX_CRC32C_INSTRUCTION
  __builtin_cpu_init();
  return __builtin_cpu_supports("sse4.2");
#else
  return false;
#endif
}

} // namespace

// False until this library is initialised, which is slower and not wrong.
bool const Crc32c::hasInstruction_ = processorHasInstruction();

std::uint32_t Crc32c::byTables(std::uint32_t state, unsigned char const* at, std::size_t size) {
  for (; size >= 8; size -= 8, at += 8) {
    std::uint32_t const low = littleEndian32(at) ^ state;
    std::uint32_t const high = littleEndian32(at + 4);
    state = 0;
    for (std::size_t i = 0; i < 4; ++i)
      state ^= kTables[7 - i][low >> 8 * i & 0xff] ^ kTables[3 - i][high >> 8 * i & 0xff];
  }
  for (; size > 0; --size, ++at) state = state >> 8 ^ kTables[0][(state ^ *at) & 0xff];
  return state;
}

} // namespace Vyx::NboAttrLog
