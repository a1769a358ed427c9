#include "Pbr/Dscp.h"

#include "support/TextForms.h"

namespace {

using Pbr::Dscp;

constexpr char const* kOutOfRange = "Dscp::value < Dscp::min or > Dscp::invalid not allowed";

static_assert(Dscp::min == 0 && Dscp::max == 63 && Dscp::invalid == 64);
static_assert(sizeof(Dscp) == 1);

TEST(Dscp, DefaultIsInvalidAndFalse) {
  EXPECT_EQ(64, Dscp().value());
  EXPECT_TRUE(!Dscp());
  EXPECT_FALSE(!Dscp(63));
  EXPECT_FALSE(!Dscp(0));
}

TEST(Dscp, MarkerForNoneIsALegalContent) {
  EXPECT_EQ(Dscp(), Dscp(64));
  EXPECT_EQ(Dscp(), Vyx::strepToValue<Dscp>("64"));
  Dscp dscp(10);
  dscp.valueIs(64);
  EXPECT_TRUE(!dscp);
}

TEST(Dscp, AboveTheMarkerIsRefused) {
  EXPECT_EQ(kOutOfRange, rangeMessage([] { Dscp(65); }));
  EXPECT_EQ(kOutOfRange, rangeMessage([] { Dscp(255); }));
  EXPECT_EQ(kOutOfRange, refusal<Dscp>("65"));
  EXPECT_EQ(kOutOfRange, refusal<Dscp>("255"));
}

TEST(Dscp, RefusedWriteLeavesTheBadValue) {
  Dscp dscp(10);
  EXPECT_EQ(kOutOfRange, rangeMessage([&] { dscp.valueIs(65); }));
  EXPECT_EQ(65, dscp.value());
  EXPECT_FALSE(!dscp);
}

TEST(Dscp, WritingTheValueThatIsThereRaisesNothing) {
  Dscp dscp(10);
  EXPECT_THROW(dscp.valueIs(200), Vyx::RangeException);
  EXPECT_NO_THROW(dscp.valueIs(200));
  EXPECT_EQ(200, dscp.value());
}

TEST(Dscp, TextIsPlainDecimal) {
  EXPECT_EQ("46", valueToStrep(Dscp(46)));
  EXPECT_EQ("64", printed(Dscp()));
  for (unsigned value = 0; value <= 64; ++value) expectReadsBack(Dscp(static_cast<unsigned char>(value)));
}

TEST(Dscp, NumberReadersRefusalIsPassedOnUnderTheAttributesName) {
  EXPECT_EQ("value: U8: \"256\": 256 is above 255", refusal<Dscp>("256"));
  EXPECT_EQ("value: U8: \"ef\": no number", refusal<Dscp>("ef"));
  EXPECT_EQ("value: U8: \"\": no number", refusal<Dscp>(""));
}

TEST(Dscp, WhatIsLeftOverIsJunk) { EXPECT_EQ("junk at column 2 deserializing 10x", refusal<Dscp>("10x")); }

TEST(Dscp, TextConstructorMovesThePosition) {
  Vyx::String8 const text("46 and on");
  Vyx::StrepIterator8 at = text.begin();
  EXPECT_EQ(46, Dscp(at, text.end()).value());
  EXPECT_EQ(2U, at.position());
}

TEST(Dscp, IsMadeFromItsByte) {
  Dscp dscp = static_cast<unsigned char>(12);
  EXPECT_EQ(12, dscp.value());
  expectAscends<Dscp>({Dscp(0), Dscp(12), Dscp(63), Dscp()});
}

} // namespace
