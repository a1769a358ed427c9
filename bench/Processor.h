// Measuring a piece of an iteration by what the thread has used of the processor: others may wait for it,
// too.

#pragma once

#include <benchmark/benchmark.h>

#include <time.h>

namespace Bench {

// In seconds.
inline double processorTime() {
  timespec now;
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

// Only what `step` does counts. REQUIRES: the benchmark is one of UseManualTime.
template <class Step> void timed(benchmark::State& state, Step const& step) {
  double const begun = processorTime();
  step();
  state.SetIterationTime(processorTime() - begun);
}

} // namespace Bench
