#include "Vyx/Assert.h"

#include <gtest/gtest.h>

namespace {

TEST(AssertDeathTest, TellsSourceLineAndCondition) {
  EXPECT_DEATH(Vyx::require(false, "a < b", "Vyx/Some", 7), "^Vyx/Some:7: assertion failed: a < b\n$");
}

TEST(AssertDeathTest, EndsByAbort) {
  EXPECT_EXIT(Vyx::assertionFailed("never", "Vyx/Some", 1), testing::KilledBySignal(SIGABRT), "never");
}

TEST(Assert, InvariantThatHoldsPasses) { Vyx::require(true, "a < b", "Vyx/Some", 7); }

} // namespace
