// Reading within one message: places, bounds, sections.

#include "Wire.h"

namespace {

using namespace Vyx::NboAttrLog;

struct Reading : testing::Test {
  // A message of the numbers 1, 2 and 3 of four bytes each.
  void SetUp() override {
    wire.write(variable(EntityId(1, 0), 10), 1U, 2U, 3U);
    ASSERT_TRUE(wire.pass());
  }
  std::string refused(auto call) { return refusal<Vyx::ProtocolException>(call); }

  Wire wire;
  In& in = *wire.in;
};

TEST_F(Reading, APlaceCanBeSeenAgain) {
  EXPECT_EQ(1U, in.nextU32());
  std::size_t const place = in.position();
  EXPECT_EQ(2U, in.nextU32());
  in.positionIs(place);
  EXPECT_EQ(2U, in.nextU32());
  EXPECT_EQ(4U, in.remaining());
}

TEST_F(Reading, APlaceBeyondTheEndIsRefused) {
  in.positionIs(12);
  in.expectEnd();
  EXPECT_EQ("position 13 is beyond the end of the message at 12", refused([&] { in.positionIs(13); }));
  EXPECT_EQ(12U, in.position());
}

TEST_F(Reading, TooFewBytesLeaveThePlaceAsItWas) {
  in.positionIs(8);
  EXPECT_EQ("8 bytes of message needed and 4 left", refused([&] { in.nextU64(); }));
  EXPECT_EQ(3U, in.nextU32());
}

TEST_F(Reading, TheRestCanBeSkipped) {
  in.nextU32();
  in.remainingSkip();
  in.expectEnd();
}

TEST_F(Reading, AnAnchorBoundsTheReading) {
  in.nextU32();
  {
    Vyx::ConnectionInSizeAnchor const anchor(wire.in, 4);
    EXPECT_EQ(4U, in.remaining());
    EXPECT_EQ(2U, in.nextU32());
    EXPECT_EQ("1 bytes of message needed and 0 left", refused([&] { in.nextU8(); }));
  }
  EXPECT_EQ(3U, in.nextU32());
  EXPECT_EQ("1 bytes of message needed and 0 left",
            refused([&] { Vyx::ConnectionInSizeAnchor const anchor(wire.in, 1); }));
}

TEST_F(Reading, BytesOfTheMessageCanBeChanged) {
  in.overwrite(4, EntityId(0x55, 0x44));
  in.positionIs(4);
  EXPECT_EQ(EntityId(0x55, 0x44), in.nextEntityId());
  EXPECT_DEATH(in.overwrite(5, EntityId()), "position <= payloadBytes");
}

TEST_F(Reading, ThereIsNothingToReadBehindTheLastMessage) {
  EXPECT_FALSE(in.nextMessage());
  EXPECT_THROW(in.nextU8(), Vyx::ProtocolException);
}

struct Sections : testing::Test {
  void SetUp() override {
    wire.out->nextHeaderIs(variable(EntityId(1, 0), 136));
    wire.out << Out::kTransactBegin;
    wire.out->currentPayloadSectionIs(Out::kTypeNames);
    wire.out << 1U << 2U;
    wire.out->currentPayloadSectionIs(Out::kConstructorValues);
    wire.out->currentPayloadSectionIs(Out::kEntityIdSection);
    wire.out << 4U << Out::kTransactEnd;
    ASSERT_TRUE(wire.pass());
  }
  std::string refused(auto call) { return refusal<Vyx::ProtocolException>(call); }

  Wire wire;
  In& in = *wire.in;
};

TEST_F(Sections, BoundTheReadingAndAreLeftWithWhatIsUnread) {
  in.sectionIs(1);
  EXPECT_EQ(8U, in.remaining());
  EXPECT_EQ(1U, in.nextU32());
  in.sectionEnd();
  in.sectionIs(3);
  EXPECT_EQ("1 bytes of message needed and 0 left", refused([&] { in.nextU8(); }));
  in.sectionEnd();
  in.sectionIs(4);
  EXPECT_EQ(4U, in.nextU32());
  in.sectionEnd();
  in.expectEnd();
}

TEST_F(Sections, AnotherThanTheExpectedIsRefused) {
  EXPECT_EQ("section 1 instead of 3", refused([&] { in.sectionIs(3); }));
}

TEST_F(Sections, EndWithTheirMessage) {
  in.sectionIs(1);
  wire.write(variable(EntityId(1, 0), 10), 1U, 2U, 3U);
  ASSERT_TRUE(wire.pass());
  EXPECT_EQ(12U, in.remaining());
}

TEST(Section, LongerThanItsMessageIsRefused) {
  Wire wire;
  wire.receive(frameOf("0000000000000001 00000088 01 01 000005 01020304"));
  ASSERT_TRUE(wire.in->nextMessage());
  EXPECT_EQ("section of 5 bytes in 4 bytes of message",
            refusal<Vyx::ProtocolException>([&] { wire.in->sectionIs(1); }));
}

} // namespace
