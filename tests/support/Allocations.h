// Counts what goes through the global operator new of this process.

#pragma once

#include <cstddef>

namespace allocations {

// Blocks taken since the start.
std::size_t taken();
// Blocks taken and not given back.
std::size_t living();
// What these hold, as the system rounds it.
std::size_t livingBytes();

// RETURNS how many blocks the call takes.
template <class Call> std::size_t takenBy(Call call) {
  std::size_t const before = taken();
  call();
  return taken() - before;
}

} // namespace allocations
