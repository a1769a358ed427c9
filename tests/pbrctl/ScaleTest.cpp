#include "Trees.h"

#include <chrono>

namespace Pbrctl {
namespace {

std::string pbrMapOf(unsigned sequences) {
  std::string text;
  for (unsigned i = 1; i <= sequences; ++i)
    text += "pbr-map M seq " + std::to_string(i) + "\n match src-ip 10." + std::to_string(i >> 8 & 255) +
            "." + std::to_string(i & 255) + ".0/24\n set nexthop 192.0.2." + std::to_string(1 + i % 250) +
            "\nexit\n!\n";
  return text;
}

// The best of a few, so that a busy machine doesn't count.
double secondsToLoad(unsigned sequences) {
  std::string const text = pbrMapOf(sequences);
  double best = 1e9;
  for (int round = 0; round < 3; ++round) {
    auto const begin = std::chrono::steady_clock::now();
    auto const tree = treeOf(text);
    std::chrono::duration<double> const took = std::chrono::steady_clock::now() - begin;
    EXPECT_EQ(sequences, tree->pmapType()->pmap("M")->currentSubConfig()->classActions());
    best = std::min(best, took.count());
  }
  return best;
}

// Sixteen times the content in at most sixty times the time: what is quadratic takes two hundred and
// fifty-six.
TEST(Scale, LoadingIsLinear) { EXPECT_LT(secondsToLoad(16000), 60 * secondsToLoad(1000)); }

} // namespace
} // namespace Pbrctl
