// One counted 32-bit word, changed by plain or by locked operations as the runtime's switch says.

#pragma once

#include "Vyx/VFPtrInterface.h"

#include <cstdint>

namespace Vyx {

// Inlined always: the two forms together look larger to the compiler than the one that runs.

// The locked forms order the last release before the destruction that follows it.
[[gnu::always_inline]] inline void countRaise(std::uint32_t& word) {
  if (__builtin_expect(VFPtrInterface::enableThreadSafePointers, false))
    __atomic_fetch_add(&word, 1U, __ATOMIC_RELAXED);
  else
    ++word;
}

// RETURNS the word after the change.
[[gnu::always_inline]] inline std::uint32_t countLower(std::uint32_t& word) {
  if (__builtin_expect(VFPtrInterface::enableThreadSafePointers, false))
    return __atomic_sub_fetch(&word, 1U, __ATOMIC_ACQ_REL);
  return --word;
}

// Sets or clears bits of a counted word. RETURNS the word after the change.
inline std::uint32_t countBitsIs(std::uint32_t& word, std::uint32_t bits, bool on) {
  if (VFPtrInterface::enableThreadSafePointers)
    return on ? __atomic_or_fetch(&word, bits, __ATOMIC_ACQ_REL)
              : __atomic_and_fetch(&word, ~bits, __ATOMIC_ACQ_REL);
  return word = on ? word | bits : word & ~bits;
}

} // namespace Vyx
