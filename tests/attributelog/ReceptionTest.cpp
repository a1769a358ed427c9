// Bytes as they come: in pieces, cut short, changed on the way.

#include "Wire.h"

namespace {

using namespace Vyx::NboAttrLog;

Bytes threeMessages() {
  Wire wire;
  wire.write(scalarHeader<bool>(EntityId(1, 0), 10), true);
  wire.write(variable(EntityId(3, 0), 11), Vyx::String8("hello"));
  wire.write(scalarHeader<unsigned long long>(EntityId(5, 0), 12), 0x1122334455667788ULL);
  return wire.sent();
}

void expectThreeMessages(In& in, auto const& nextMessage) {
  ASSERT_TRUE(nextMessage());
  EXPECT_EQ(10, in.header().attrId);
  EXPECT_TRUE(in.nextbool());
  ASSERT_TRUE(nextMessage());
  EXPECT_EQ("hello", in.nextString());
  ASSERT_TRUE(nextMessage());
  EXPECT_EQ(0x1122334455667788ULL, in.nextU64());
  in.expectEnd();
}

TEST(Reception, PiecesOfEverySizeMakeTheSameMessages) {
  Bytes const bytes = threeMessages();
  for (std::size_t piece = 1; piece <= bytes.size(); ++piece) {
    Wire wire;
    std::size_t at = 0;
    expectThreeMessages(*wire.in, [&] {
      while (!wire.in->nextMessage()) {
        if (at == bytes.size()) return false;
        std::size_t const some = std::min(piece, bytes.size() - at);
        wire.receive(std::span(bytes).subspan(at, some));
        at += some;
      }
      return true;
    });
    EXPECT_FALSE(wire.in->nextMessage());
    EXPECT_EQ(0U, wire.in->waiting());
  }
}

TEST(Reception, ACutAtAnyByteIsAnUnfinishedMessage) {
  Bytes const bytes = threeMessages();
  for (std::size_t size = 0; size < bytes.size(); ++size) {
    Wire wire;
    wire.receive(std::span(bytes).first(size));
    int messages = 0;
    while (wire.in->nextMessage()) ++messages;
    EXPECT_LT(messages, 3);
    EXPECT_EQ(wire.in->waiting() == 0, size == 0 || size == 21 || size == 50) << size;
  }
}

// Whom the coming messages are for, four of them at most.
std::vector<EntityId> upcoming(std::span<unsigned char const> bytes) {
  Wire wire;
  wire.receive(bytes);
  std::vector<EntityId> entities(4);
  entities.resize(wire.in->upcoming(entities));
  return entities;
}

TEST(Reception, ComingMessagesAreLookedAtAsFarAsTheyAreThere) {
  Bytes const bytes = threeMessages();
  std::vector<EntityId> const all{EntityId(1, 0), EntityId(3, 0), EntityId(5, 0)};
  for (std::size_t size = 0; size <= bytes.size(); ++size) {
    std::size_t const whole = (size >= 21) + (size >= 50) + (size == bytes.size());
    std::vector<EntityId> const expected(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(whole));
    EXPECT_EQ(expected, upcoming(std::span(bytes).first(size))) << size;
  }
}

TEST(Reception, ComingMessagesInARowForOneEntityCountOnce) {
  Wire wire;
  for (unsigned low : {3U, 3U, 5U, 3U, 7U}) wire.write(scalarHeader<bool>(EntityId(low, 0), 10), true);
  EXPECT_EQ((std::vector{EntityId(3, 0), EntityId(5, 0), EntityId(3, 0)}), upcoming(wire.sent()));
}

TEST(Reception, NoLookGoesBeyondALengthThatCannotBe) {
  EXPECT_TRUE(upcoming(Bytes(100, 0x00)).empty());
  EXPECT_TRUE(upcoming(Bytes(100, 0xff)).empty());
}

TEST(Reception, AChangedBitAnywhereIsRefused) {
  Wire original;
  original.write(variable(EntityId(3, 0), 11), Vyx::String8("hello"));
  Bytes const bytes = original.sent();
  for (std::size_t bit = 0; bit < 8 * bytes.size(); ++bit) {
    Bytes changed = bytes;
    changed[bit / 8] ^= static_cast<unsigned char>(1U << bit % 8);
    Wire wire(1024, 256);
    wire.receive(changed);
    // A longer length waits for bytes that may never come.
    bool const longer = bit / 8 < 3 && changed[2] > bytes[2] && changed[0] == 0 && changed[1] == 0;
    if (longer)
      EXPECT_FALSE(wire.in->nextMessage()) << bit;
    else
      EXPECT_THROW(wire.in->nextMessage(), Vyx::ProtocolException) << bit;
  }
}

TEST(Reception, ALengthOutOfBoundsIsToldBeforeTheMessageIsThere) {
  EXPECT_EQ("message of 9000000 bytes is longer than 1048576", Wire().readerOf("89 54 40"));
  EXPECT_EQ("message of 257 bytes is longer than 256", Wire(1024, 256).readerOf("00 01 01"));
  EXPECT_EQ("message of 12 bytes is shorter than its header of 13", Wire().readerOf("00 00 0c"));
  EXPECT_EQ("nothing was thrown", Wire().readerOf("89 54"));
}

TEST(Reception, WrongBytesAreNamed) {
  EXPECT_EQ("checksum 0xf68aac5b instead of 0xf68aac5a",
            Wire().readerOf("00 00 0e 80 00 00 00 00 00 00 05 00 00 01 84 02 01 f6 8a ac 5b"));
  EXPECT_EQ("form 0x9f is unknown", Wire().readerOf(hexOf(frameOf("0000000000000001 00000002 9f"))));
  EXPECT_EQ("payload of 2 bytes in a message of fixed length 4",
            Wire().readerOf(hexOf(frameOf("0000000000000001 00000002 04 0001"))));
}

TEST(Reception, EveryByteThatIsNoFormIsRefused) {
  for (unsigned form = 0; form < 256; ++form) {
    Wire wire;
    char head[40];
    std::snprintf(head, sizeof head, "0000000000000001 00000002 %02x", form);
    wire.receive(frameOf(head));
    bool const lacksPayload = form < 0x40 && ((form & 15U) == 2 || (form & 15U) == 4 || (form & 15U) == 6);
    if (isForm(static_cast<std::uint8_t>(form)) && !lacksPayload)
      EXPECT_TRUE(wire.in->nextMessage()) << form;
    else
      EXPECT_THROW(wire.in->nextMessage(), Vyx::ProtocolException) << form;
  }
}

TEST(Reception, WhatIsNoMessageStaysNone) {
  Wire wire;
  wire.receive(bytesOf("ff ff ff"));
  EXPECT_THROW(wire.in->nextMessage(), Vyx::ProtocolException);
  EXPECT_THROW(wire.in->nextMessage(), Vyx::ProtocolException);
  wire.in->reset();
  EXPECT_FALSE(wire.in->nextMessage());
}

TEST(Reception, MessagesBeforeTheBadOneAreRead) {
  Wire wire;
  wire.write(scalarHeader<bool>(EntityId(1, 0), 10), true);
  wire.receive(wire.sent());
  wire.receive(bytesOf("00 00 00"));
  EXPECT_TRUE(wire.in->nextMessage());
  EXPECT_THROW(wire.in->nextMessage(), Vyx::ProtocolException);
}

TEST(Reception, AMessageEndsWhenTheNextIsAskedFor) {
  Wire wire;
  wire.receive(threeMessages());
  ASSERT_TRUE(wire.in->nextMessage());
  EXPECT_EQ("1 bytes left over in message", refusal<Vyx::ProtocolException>([&] { wire.in->expectEnd(); }));
  ASSERT_TRUE(wire.in->nextMessage());
  EXPECT_EQ("hello", wire.in->nextString());
  EXPECT_EQ("1 bytes of message needed and 0 left",
            refusal<Vyx::ProtocolException>([&] { wire.in->nextU8(); }));
}

TEST(Reception, BytesMayComeWhileAMessageIsRead) {
  Bytes const bytes = threeMessages();
  Wire wire(64);
  wire.receive(std::span(bytes).first(60));
  ASSERT_TRUE(wire.in->nextMessage());
  ASSERT_TRUE(wire.in->nextMessage());
  EXPECT_EQ(5U, wire.in->nextU32());
  wire.receive(std::span(bytes).subspan(60));
  EXPECT_EQ(4U, wire.in->position());
  EXPECT_EQ('h', wire.in->nextU8());
  EXPECT_EQ(11, wire.in->header().attrId);
  EXPECT_TRUE(wire.in->nextMessage());
}

TEST(Reception, NoSpaceIsGivenWhileMessagesWait) {
  Wire wire(64);
  wire.receive(threeMessages());
  EXPECT_EQ(64U, wire.in->waiting());
  EXPECT_TRUE(wire.in->space().empty());
  ASSERT_TRUE(wire.in->nextMessage());
  ASSERT_TRUE(wire.in->nextMessage());
  EXPECT_FALSE(wire.in->space().empty());
}

TEST(Reception, ALongMessageMakesTheBufferGrowForItsTime) {
  Wire wire(64);
  wire.write(variable(EntityId(1, 0), 10), Vyx::String8(std::string(100000, 'x')));
  ASSERT_TRUE(wire.pass());
  EXPECT_EQ(100000U, wire.in->nextString().length());
  EXPECT_FALSE(wire.in->nextMessage());
  EXPECT_EQ(64U, wire.in->space().size());
}

} // namespace
