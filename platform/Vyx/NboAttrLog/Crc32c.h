// CRC-32C (Castagnoli): by the processor's instruction where it has one, else by tables of eight bytes a
// step.

#pragma once

#include "Vyx/NboAttrLog/ByteOrder.h"

#include <cstddef>

#if defined(__x86_64__) || defined(__i386__)
#define VYX_CRC32C_INSTRUCTION 1
#else
#define VYX_CRC32C_INSTRUCTION 0
#endif

namespace Vyx::NboAttrLog {

class Crc32c {
public:
  static std::uint32_t of(void const* bytes, std::size_t size) {
    return ~extend(~0U, static_cast<unsigned char const*>(bytes), size);
  }

  // Takes more bytes into a running state, which is ~0 at the beginning; the checksum is its complement.
  [[gnu::always_inline]] static std::uint32_t extend(std::uint32_t state, unsigned char const* at,
                                                     std::size_t size) {
#if VYX_CRC32C_INSTRUCTION
    if (__builtin_expect(hasInstruction_, true)) return byInstruction(state, at, size);
#endif
    return byTables(state, at, size);
  }

  // The same for a number of bytes that is known to the compiler.
  template <std::size_t N> [[gnu::always_inline]] static std::uint32_t of(unsigned char const* at) {
#if VYX_CRC32C_INSTRUCTION
    if (__builtin_expect(hasInstruction_, true)) return ~unrolled<N>(~0U, at);
#endif
    return of(at, N);
  }

  // The same for bytes of which at least one is there, and behind which kSlack more may be read: it takes the
  // same road for most of the short lengths.
  [[gnu::always_inline]] static std::uint32_t ofSlack(unsigned char const* at, std::size_t size) {
#if VYX_CRC32C_INSTRUCTION && defined(__x86_64__)
    if (__builtin_expect(hasInstruction_, true)) return ~bySlack(~0U, at, size);
#endif
    return of(at, size);
  }
  static constexpr std::size_t kSlack = 7;

  static std::uint32_t byTables(std::uint32_t state, unsigned char const* at, std::size_t size);

  // Whether the processor has the instruction, and this build can use it.
  static bool hasInstruction() { return hasInstruction_; }

#if VYX_CRC32C_INSTRUCTION
  // REQUIRES: hasInstruction().
  [[gnu::always_inline]] static std::uint32_t byInstruction(std::uint32_t state, unsigned char const* at,
                                                            std::size_t size) {
    for (; size >= 8; size -= 8, at += 8) step64(state, at);
    if (size & 4) {
      step32(state, at);
      at += 4;
    }
    if (size & 2) {
      asm("crc32w %1, %0" : "+r"(state) : "r"(loaded<std::uint16_t>(at)));
      at += 2;
    }
    if (size & 1) asm("crc32b %1, %0" : "+r"(state) : "q"(*at));
    return state;
  }

private:
  // Assembly, since functions for another processor's instructions can't be inlined.
  static void step32(std::uint32_t& state, unsigned char const* at) {
    asm("crc32l %1, %0" : "+r"(state) : "r"(loaded<std::uint32_t>(at)));
  }
  static void step64(std::uint32_t& state, unsigned char const* at) {
#if defined(__x86_64__)
    state = static_cast<std::uint32_t>(word(state, loaded<std::uint64_t>(at)));
#else
    step32(state, at);
    step32(state, at + 4);
#endif
  }
#if defined(__x86_64__)
  static std::uint64_t word(std::uint64_t state, std::uint64_t bytes) {
    asm("crc32q %1, %0" : "+r"(state) : "r"(bytes));
    return state;
  }
  // The last word has one to eight bytes. They are moved to its high end: zeros before them change nothing,
  // since the state goes into the word itself, but for what is left of it behind the bytes.
  static std::uint32_t bySlack(std::uint64_t state, unsigned char const* at, std::size_t size) {
    for (; size > 8; size -= 8, at += 8) state = word(state, loaded<std::uint64_t>(at));
    std::uint64_t const last = (loaded<std::uint64_t>(at) ^ state) << (64 - 8 * size);
    return static_cast<std::uint32_t>(word(0, last) ^ (state >> 4 * size >> 4 * size));
  }
#endif
  template <std::size_t N>
  [[gnu::always_inline]] static std::uint32_t unrolled(std::uint32_t state, unsigned char const* at) {
    if constexpr (N >= 8) {
      step64(state, at);
      return unrolled<N - 8>(state, at + 8);
    } else {
      return byInstruction(state, at, N);
    }
  }
  template <class U> static U loaded(unsigned char const* at) {
    U value;
    std::memcpy(&value, at, sizeof value);
    return value;
  }
#endif

private:
  static bool const hasInstruction_;
};

} // namespace Vyx::NboAttrLog
