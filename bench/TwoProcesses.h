// A writer and a reader in processes of their own, started together, timed by the clock that both share.

#pragma once

#include <functional>
#include <string>

namespace Bench {

// Both are children of this process and end with `_exit`; what they throw, or a minute without an end, fails
// the measurement. `open…` comes before the start and isn't timed. The writer stays until the reader has
// ended.
struct Parties {
  std::function<void()> openWriter;
  std::function<void()> write;
  std::function<void()> openReader;
  std::function<void()> read;
};

// Times are in seconds.
struct Taken {
  double fromStartToEnd; // Of `read`.
  double byWriter;       // Of the processor, for `write`.
  double byReader;       // Of the processor, for `read`.
  double allocationsByReader;
};

// THROWS: std::runtime_error.
Taken timeBetween(Parties const& parties);

} // namespace Bench
