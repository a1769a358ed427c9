// Memory that will soon be read, so that nobody has to wait for it.

#pragma once

#include <cstddef>

namespace Vyx {

constexpr std::size_t kCacheLine = 64;

// Memory anywhere, and none for null.
inline void askFor(void const* object, std::size_t bytes) {
  auto const* const at = static_cast<char const*>(object);
  for (std::size_t i = 0; i < bytes; i += kCacheLine) __builtin_prefetch(at + i);
  __builtin_prefetch(at + bytes - 1);
}

} // namespace Vyx
