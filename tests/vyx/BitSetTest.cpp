#include "Vyx/BitSet.h"

#include <gtest/gtest.h>

namespace {

TEST(BitSet, BeginsEmpty) { EXPECT_EQ(0U, Vyx_BitSet().word()); }

TEST(BitSet, SetsAndClearsOneBitAtATime) {
  Vyx_BitSet flags;
  flags.bitIs(0, true);
  flags.bitIs(28, true);
  EXPECT_EQ(0x10000001U, flags.word());
  flags.bitIs(0, false);
  EXPECT_EQ(0x10000000U, flags.word());
  EXPECT_TRUE(flags.bit(28));
  EXPECT_FALSE(flags.bit(0));
}

TEST(BitSet, SettingTwiceIsSettingOnce) {
  Vyx_BitSet flags;
  flags.bitIs(7, true);
  flags.bitIs(7, true);
  EXPECT_EQ(0x80U, flags.word());
  flags.bitIs(7, false);
  flags.bitIs(7, false);
  EXPECT_EQ(Vyx_BitSet(), flags);
}

TEST(BitSetDeathTest, SettingOutsideTheSetEndsTheProcess) {
  Vyx_BitSet flags;
  EXPECT_DEATH(flags.bitIs(-1, true), "^Vyx/BitSet:37: assertion failed: pos>=0 && pos<bits\n$");
  EXPECT_DEATH(flags.bitIs(29, true), "^Vyx/BitSet:37: assertion failed: pos>=0 && pos<bits\n$");
}

TEST(BitSetDeathTest, ClearingOutsideTheSetEndsTheProcess) {
  Vyx_BitSet flags;
  EXPECT_DEATH(flags.bitIs(-1, false), "^Vyx/BitSet:43: assertion failed: pos>=0 && pos<bits\n$");
  EXPECT_DEATH(flags.bitIs(29, false), "^Vyx/BitSet:43: assertion failed: pos>=0 && pos<bits\n$");
}

TEST(BitSet, WidthIsTheSetsOwn) {
  Vyx::BitSet<3, unsigned> three;
  three.bitIs(2, true);
  EXPECT_EQ(4U, three.word());
  EXPECT_DEATH(three.bitIs(3, true), "Vyx/BitSet:37");
}

} // namespace
