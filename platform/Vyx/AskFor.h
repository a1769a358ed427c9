// Memory that will soon be read, so that nobody has to wait for it.

#pragma once

#include <cstddef>
#include <cstdint>

namespace Vyx {

constexpr std::size_t kCacheLine = 64;

// Memory anywhere, and none for null, so places are reckoned with numbers.
inline void askFor(void const* object, std::size_t bytes) {
  auto const at = reinterpret_cast<std::uintptr_t>(object);
  auto const ask = [](std::uintptr_t place) { __builtin_prefetch(reinterpret_cast<void const*>(place)); };
  for (std::size_t i = 0; i < bytes; i += kCacheLine) ask(at + i);
  ask(at + bytes - 1);
}

} // namespace Vyx
