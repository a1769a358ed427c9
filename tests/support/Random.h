// Random numbers for one test. The seed is told with every failure of its scope; PBR_TEST_SEED repeats a run.

#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <random>

class Random {
public:
  Random();

  std::uint32_t bits() { return static_cast<std::uint32_t>(engine_()); }
  // REQUIRES: `count` is not 0. RETURNS a number below it.
  std::uint32_t below(std::uint32_t count) { return bits() % count; }
  bool oneIn(std::uint32_t count) { return below(count) == 0; }

private:
  explicit Random(std::uint32_t seed);

  std::mt19937 engine_;
  testing::ScopedTrace trace_;
};
