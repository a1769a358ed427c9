#include "support/Random.h"

#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

std::uint32_t chosenSeed() {
  char const* const given = std::getenv("PBR_TEST_SEED");
  std::uint32_t const seed =
      given ? static_cast<std::uint32_t>(std::strtoul(given, nullptr, 10)) : std::random_device()();
  std::printf("PBR_TEST_SEED=%lu\n", static_cast<unsigned long>(seed));
  return seed;
}

} // namespace

Random::Random() : Random(chosenSeed()) {}

Random::Random(std::uint32_t seed)
    : engine_(seed), trace_(__FILE__, __LINE__, "PBR_TEST_SEED=" + std::to_string(seed)) {}
