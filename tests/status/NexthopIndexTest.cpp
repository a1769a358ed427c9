#include "Pbr/NexthopIndex.h"

#include "support/TextForms.h"

namespace {

using Pbr::NexthopIndex;

static_assert(NexthopIndex::nexthopIndexNone == 18446744073709551615ULL);
static_assert(sizeof(NexthopIndex) == 8);

TEST(NexthopIndex, DefaultIsNoneAndFalse) {
  EXPECT_EQ(NexthopIndex::nexthopIndexNone, NexthopIndex().value());
  EXPECT_EQ(NexthopIndex(NexthopIndex::nexthopIndexNone), NexthopIndex());
  EXPECT_TRUE(!NexthopIndex());
}

TEST(NexthopIndex, ZeroIsAnOrdinaryIndexBelowNone) {
  EXPECT_FALSE(!NexthopIndex(0));
  EXPECT_NE(NexthopIndex(), NexthopIndex(0));
  EXPECT_LT(NexthopIndex(0), NexthopIndex());
}

TEST(NexthopIndex, ComparesTheWholeOfSixtyFourBitsWithoutSign) {
  expectAscends<NexthopIndex>({0,
                               1,
                               0xffffffffULL,
                               0x100000000ULL,
                               0x100000001ULL,
                               0x7fffffffffffffffULL,
                               0x8000000000000000ULL,
                               0xfffffffeffffffffULL,
                               {}});
}

TEST(NexthopIndex, TextIsPlainDecimal) {
  EXPECT_EQ("0", valueToStrep(NexthopIndex(0)));
  EXPECT_EQ("4294967296", valueToStrep(NexthopIndex(0x100000000ULL)));
  EXPECT_EQ("18446744073709551615", valueToStrep(NexthopIndex()));
  EXPECT_EQ("18446744073709551615", printed(NexthopIndex()));
  for (unsigned long long value : {0ULL, 7ULL, 0xffffffffULL, 0x100000000ULL, ~0ULL})
    expectReadsBack(NexthopIndex(value));
}

TEST(NexthopIndex, NumberReadersRefusalIsPassedOnUnderTheAttributesName) {
  EXPECT_EQ("value: U64: \"18446744073709551616\": 18446744073709551616 is above 18446744073709551615",
            refusal<NexthopIndex>("18446744073709551616"));
  EXPECT_EQ("value: U64: \"none\": no number", refusal<NexthopIndex>("none"));
  EXPECT_EQ("value: U64: \"-1\": no number", refusal<NexthopIndex>("-1"));
  EXPECT_EQ("value: U64: \"\": no number", refusal<NexthopIndex>(""));
}

TEST(NexthopIndex, WhatIsLeftOverIsJunk) {
  EXPECT_EQ("junk at column 2 deserializing 10 ", refusal<NexthopIndex>("10 "));
}

TEST(NexthopIndex, TextConstructorMovesThePosition) {
  Vyx::String8 const text("46 and on");
  Vyx::StrepIterator8 at = text.begin();
  EXPECT_EQ(46U, NexthopIndex(at, text.end()).value());
  EXPECT_EQ(2U, at.position());
}

} // namespace
