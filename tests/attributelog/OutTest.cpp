// The writer's buffer: what may be sent, how much there is room for, what becomes of unfinished messages.

#include "Wire.h"

#include "support/Allocations.h"

namespace {

using namespace Vyx::NboAttrLog;

MsgHeader const kFlag = scalarHeader<bool>(EntityId(1, 0), 10);
constexpr std::size_t kFlagFrame = 21;

Vyx::String8 textOf(std::size_t bytes) { return std::string(bytes, 'x'); }

TEST(Out, OnlyFinishedMessagesArePending) {
  Wire wire;
  wire.out->nextHeaderIs(kFlag);
  wire.out << Out::kTransactBegin << true;
  EXPECT_EQ(0U, wire.out->pendingBytes());
  wire.out << Out::kTransactEnd;
  EXPECT_EQ(kFlagFrame, wire.out->pendingBytes());
}

TEST(Out, AnUnfinishedMessageIsToldOnceAndIsGone) {
  Wire wire;
  wire.write(kFlag, true);
  wire.out->nextHeaderIs(kFlag);
  wire.out << Out::kTransactBegin << true;
  EXPECT_EQ("message was begun while another one is open",
            refusal<Vyx::AttrLogRecordException>([&] { wire.out->nextHeaderIs(kFlag); }));
  wire.write(kFlag, false);
  EXPECT_EQ(2 * kFlagFrame, wire.out->pendingBytes());
}

TEST(Out, AnAbandonedMessageIsGoneInSilence) {
  Wire wire;
  wire.out->nextHeaderIs(variable(EntityId(1, 0), 10));
  wire.out->currentPayloadSectionIs(Out::kTypeNames);
  EXPECT_TRUE(wire.out->isOpen());
  wire.out->abandon();
  EXPECT_FALSE(wire.out->isOpen());
  wire.write(kFlag, true);
  EXPECT_EQ(kFlagFrame, wire.out->pendingBytes());
}

TEST(Out, APayloadOfAnotherLengthThanItsHeaderSaysIsRefused) {
  Wire wire;
  EXPECT_EQ("payload of 4 bytes in a message of fixed length 1",
            refusal<Vyx::InternalException>([&] { wire.write(kFlag, 7U); }));
  EXPECT_EQ("payload of 0 bytes in a message of fixed length 1",
            refusal<Vyx::InternalException>([&] { wire.write(kFlag); }));
  wire.write(kFlag, true);
  EXPECT_EQ(kFlagFrame, wire.out->pendingBytes());
}

TEST(Out, TokensOutsideOfAMessageAreRefused) {
  Wire wire;
  EXPECT_EQ("no message is open", refusal<Vyx::InternalException>([&] { wire.out << Out::kTransactBegin; }));
  EXPECT_EQ("no message is open", refusal<Vyx::InternalException>([&] { wire.out << Out::kTransactEnd; }));
  EXPECT_EQ(0U, wire.out->pendingBytes());
}

TEST(Out, TheFrontIsTakenInPieces) {
  Wire wire;
  wire.write(kFlag, true);
  Bytes const whole(wire.out->pending().begin(), wire.out->pending().end());
  wire.out->consumed(5);
  wire.write(kFlag, true);
  ASSERT_EQ(2 * kFlagFrame - 5, wire.out->pendingBytes());
  EXPECT_EQ(hexOf(std::span(whole).subspan(5)), hexOf(wire.out->pending().first(kFlagFrame - 5)));
  EXPECT_EQ(hexOf(whole), hexOf(wire.out->pending().subspan(kFlagFrame - 5)));
}

TEST(Out, AnEmptyBufferIsAlwaysSufficient) {
  Wire wire(40);
  EXPECT_TRUE(wire.out->hasSufficientBuffer());
  wire.write(variable(EntityId(1, 0), 10), textOf(500));
  EXPECT_FALSE(wire.out->hasSufficientBuffer());
  EXPECT_EQ(0U, wire.out->room());
  wire.sent();
  EXPECT_TRUE(wire.out->hasSufficientBuffer());
  EXPECT_EQ(40U, wire.out->room());
}

TEST(Out, AQuarterOfASmallBufferIsKeptInReserve) {
  Wire wire(80);
  wire.write(kFlag, true);
  wire.write(kFlag, true);
  EXPECT_EQ(38U, wire.out->room());
  EXPECT_TRUE(wire.out->hasSufficientBuffer());
  wire.write(kFlag, true);
  EXPECT_FALSE(wire.out->hasSufficientBuffer());
  EXPECT_EQ(17U, wire.out->room());
}

TEST(Out, OfALargeBufferFourKilobytesAreKeptInReserve) {
  Wire wire(65536);
  wire.write(variable(EntityId(1, 0), 10), textOf(65536 - 4096 - 24));
  EXPECT_EQ(65536U - 4096, wire.out->pendingBytes());
  EXPECT_TRUE(wire.out->hasSufficientBuffer());
  wire.write(kFlag, true);
  EXPECT_FALSE(wire.out->hasSufficientBuffer());
}

TEST(Out, ASlowReaderThatTakesALittleEachTimeMakesNoBufferGrow) {
  Wire wire(1000);
  wire.write(kFlag, true);
  std::size_t const usual = wire.out->bufferBytes();
  for (int i = 0; i < 10000; ++i) {
    while (wire.out->hasSufficientBuffer() && wire.out->room() > 100) wire.write(kFlag, true);
    wire.out->consumed(std::min<std::size_t>(37, wire.out->pendingBytes()));
  }
  EXPECT_EQ(usual, wire.out->bufferBytes());
}

TEST(Out, ALongMessageMakesTheBufferGrowUntilItIsTaken) {
  Wire wire(1000);
  wire.write(kFlag, true);
  std::size_t const usual = wire.out->bufferBytes();
  wire.write(variable(EntityId(1, 0), 10), textOf(100000));
  EXPECT_LT(100000U, wire.out->bufferBytes());
  EXPECT_EQ(kFlagFrame + 100024, wire.out->pendingBytes());
  wire.out->consumed(50000);
  EXPECT_LT(100000U, wire.out->bufferBytes());
  wire.sent();
  EXPECT_EQ(0U, wire.out->bufferBytes());
  wire.write(kFlag, true);
  EXPECT_EQ(usual, wire.out->bufferBytes());
}

TEST(Out, WhatIsWrittenSurvivesTheMoves) {
  Wire wire(100);
  wire.in = Vyx::ptrFromNew(new In); // Takes all at once.
  std::string expected;
  for (int i = 0; i < 50; ++i) {
    wire.write(variable(EntityId(1, 0), i), textOf(static_cast<std::size_t>(i * i)));
    if (i % 3 == 0) wire.receive(wire.sent());
    while (wire.in->nextMessage()) expected += std::to_string(wire.in->header().attrId) + ' ';
  }
  wire.receive(wire.sent());
  while (wire.in->nextMessage()) expected += std::to_string(wire.in->header().attrId) + ' ';
  std::string all;
  for (int i = 0; i < 50; ++i) all += std::to_string(i) + ' ';
  EXPECT_EQ(all, expected);
}

TEST(Out, AMessageAboveTheLimitIsRefusedAndGone) {
  Wire wire(1000, 300);
  auto const tooLong = [&](std::size_t bytes) {
    return refusal<Vyx::InternalException>([&] { wire.write(variable(EntityId(1, 0), 10), textOf(bytes)); });
  };
  EXPECT_EQ("nothing was thrown", tooLong(300 - 13 - 4));
  EXPECT_EQ("message of 301 bytes is longer than 300", tooLong(300 - 13 - 3));
  EXPECT_EQ("message of 5017 bytes is longer than 300", tooLong(5000));
  EXPECT_EQ(307U, wire.out->pendingBytes());
  wire.write(kFlag, true);
}

TEST(Out, NothingIsKeptForNobody) {
  Wire wire;
  wire.write(kFlag, true);
  wire.out->connectedIs(false);
  EXPECT_EQ(0U, wire.out->pendingBytes());
  wire.write(kFlag, true);
  EXPECT_EQ(0U, wire.out->pendingBytes());
  EXPECT_TRUE(wire.out->hasSufficientBuffer());
  wire.out->connectedIs(true);
  wire.write(kFlag, true);
  EXPECT_EQ(kFlagFrame, wire.out->pendingBytes());
}

TEST(Out, TheHookHearsOfEachFinishedMessageAndMayTakeIt) {
  Wire wire;
  std::size_t taken = 0;
  wire.out->committedHookIs(
      [](void* context, Out& out) {
        *static_cast<std::size_t*>(context) += out.pendingBytes();
        out.consumed(out.pendingBytes());
      },
      &taken);
  wire.write(kFlag, true);
  EXPECT_EQ(kFlagFrame, taken);
  wire.out->messageIs(kFlag, false);
  EXPECT_EQ(2 * kFlagFrame, taken);
  EXPECT_EQ(0U, wire.out->pendingBytes());
  wire.out->committedHookIs(nullptr, nullptr);
  wire.write(kFlag, true);
  EXPECT_EQ(2 * kFlagFrame, taken);
}

TEST(Out, GoesThroughTheVirtualInterfaceToo) {
  Wire wire;
  Vyx::Ptr<Vyx::Connection::Out> const base = wire.out;
  wire.out->nextHeaderIs(variable(EntityId(1, 0), 10));
  base << Out::kTransactBegin;
  base->append("abc", 3);
  base->append(nullptr, 0);
  base << Out::kTransactEnd;
  ASSERT_TRUE(wire.pass());
  EXPECT_EQ(3U, wire.in->payloadBytes());
}

TEST(Out, ASmallMessageTakesNoMemory) {
  Wire wire;
  wire.write(kFlag, true);
  ASSERT_TRUE(wire.pass());
  EXPECT_FALSE(wire.in->nextMessage());
  EXPECT_EQ(0U, allocations::takenBy([&] {
              for (int i = 0; i < 100; ++i) wire.write(scalarHeader<unsigned>(EntityId(1, 0), 10), 7U);
            }));
  wire.receive(wire.sent());
  EXPECT_EQ(0U, allocations::takenBy([&] {
              while (wire.in->nextMessage()) {
                EXPECT_EQ(7U, wire.in->nextU32());
                wire.in->expectEnd();
              }
            }));
}

} // namespace
