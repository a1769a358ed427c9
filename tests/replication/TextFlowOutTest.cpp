// A text that crosses the log in pieces: when it is begun, where it stops and goes on.

#include "OneLog.h"

#include "Pbr/PbrClassMapStatusSa.h"

namespace replication_test {
namespace {

Kest::UniqueId const id(1, 2, 3);
constexpr Vyx::AttributeId kNothing = INT32_MAX;

class TextFlowOutTest : public testing::Test {
protected:
  using Sa = Pbr::PbrClassMapStatus::VyxNboAttrLogSa;

  void join(Vyx_BitSet flags = directFlags()) {
    adapter = log.join(status, flags);
    reader.joinAs(copy, adapter->entityId());
  }
  unsigned dirty() const { return adapter->flowOut()->vyxDirtyBitSet1()->word(); }
  // Owes the text.
  Ptr<Sa::FlowOut> owe() {
    log.demuxer->createFlowOut(adapter, Vyx::ConnectDesc(), false, kNothing);
    adapter->flowOut()->vyxDirtyBitSet1()->vyxIsNexthopGroupDirtyIs(true);
    return adapter->flowOut();
  }
  // A run that writes one piece of a text that is longer.
  void joinAndStop(Vyx_BitSet flags) {
    status->nexthopGroupIs(longText);
    join(flags);
    owe();
    log.allow(1);
    ASSERT_EQ(387, adapter->handleAttrFlowOut(387));
    ASSERT_TRUE(adapter->flowOut()->valueIter());
    log.allowAll();
  }
  void pass() { replication_test::pass(log, reader); }
  // Another text while one is half written.
  void expectBegunAnew(Vyx_BitSet flags) {
    joinAndStop(flags);
    pass();
    status->nexthopGroupIs("another");
    EXPECT_FALSE(adapter->flowOut()->valueIter());
    if (log.out->pendingBytes() == 0) adapter->handleAttrFlowOut(387);
    pass();
    EXPECT_EQ("another", copy->nexthopGroup());
  }

  LogEnd log;
  LogEnd reader{Demuxer::connecting};
  Ptr<Pbr::PbrClassMapStatus> status = Pbr::pbrClassMapStatusFactory("web", id);
  Ptr<Pbr::PbrClassMapStatus> copy = Pbr::pbrClassMapStatusFactory("web", id);
  std::string const longText = std::string(Vyx::kLongestTextPiece * 2, 'a') + "b";
  Ptr<Sa> adapter;
};

TEST_F(TextFlowOutTest, LongTextIsWrittenInPiecesAndReadWhole) {
  join();
  status->nexthopGroupIs(longText);
  Bytes const bytes = log.sent();
  reader.receive(bytes);
  reader.apply();
  EXPECT_EQ(3U * 21 + longText.size(), bytes.size());
  EXPECT_EQ(longText, copy->nexthopGroup());
  EXPECT_EQ(nullptr, reader.demuxer->flowIn(adapter->entityId()));
}

TEST_F(TextFlowOutTest, WithoutMuchRoomATextIsOwedFromItsStart) {
  join();
  while (log.out->room() >= Vyx::kTextStartRoom)
    log.out->messageIs({Vyx::kOrphanEntityId, 0x7777, false, 8}, std::uint64_t{0});
  ASSERT_TRUE(log.out->hasSufficientBuffer());
  status->nexthopGroupIs("short");
  ASSERT_TRUE(adapter->flowOut());
  EXPECT_EQ(2U, dirty());
  EXPECT_EQ(387, adapter->flowOut()->attrId());
  EXPECT_EQ(1U, adapter->flowOut()->outstandingKeys());
  ASSERT_TRUE(adapter->flowOut()->valueIter());
  EXPECT_EQ("", log.told());
  EXPECT_TRUE(log.demuxer->runFlowOuts());
  EXPECT_EQ("387", log.told());
}

TEST_F(TextFlowOutTest, DisconnectedLogTakesNoText) {
  join();
  log.out->connectedIs(false);
  status->nexthopGroupIs("short");
  EXPECT_TRUE(adapter->flowOut());
}

TEST_F(TextFlowOutTest, StoppedTextGoesOnWhereItStopped) {
  join();
  log.demuxer->createFlowOut(adapter, Vyx::ConnectDesc(), false, 386);
  status->nexthopGroupIs(longText);
  log.sent();
  log.allow(2); // Behind 386, and one piece.
  EXPECT_EQ(387, adapter->handleAttrFlowOut(386));
  EXPECT_TRUE(adapter->flowOut()->valueIter());
  EXPECT_EQ(2U, dirty() & 2U);
  EXPECT_EQ("386 387", log.told());
  log.allowAll();
  EXPECT_EQ(0, adapter->handleAttrFlowOut(387));
  EXPECT_EQ("387 387 388", log.told());
  EXPECT_FALSE(adapter->flowOut()->valueIter());
  EXPECT_EQ(0U, dirty() & 2U);
}

TEST_F(TextFlowOutTest, PoliteStoppedTextGoesOnWhereItStopped) {
  joinAndStop(politeFlags());
  EXPECT_EQ(2U, dirty());
  EXPECT_EQ(0U, adapter->flowOut()->outstandingKeys());
  auto const before = log.out->messages();
  EXPECT_EQ(0, adapter->handleAttrFlowOut(387));
  EXPECT_EQ(before + 2, log.out->messages());
  pass();
  EXPECT_EQ(longText, copy->nexthopGroup());
  EXPECT_FALSE(adapter->flowOut()->valueIter());
  EXPECT_EQ(0U, dirty());
}

TEST_F(TextFlowOutTest, PoliteTextWithoutAFlowOutIsWrittenAtOnce) {
  join(politeFlags());
  status->nexthopGroupIs(longText);
  EXPECT_EQ("387 387 387", log.told());
  EXPECT_FALSE(adapter->flowOut());
}

TEST_F(TextFlowOutTest, TextThatChangesBetweenItsPiecesIsBegunAnew) { expectBegunAnew(directFlags()); }
TEST_F(TextFlowOutTest, PoliteTextThatChangesBetweenItsPiecesIsBegunAnew) { expectBegunAnew(politeFlags()); }

TEST_F(TextFlowOutTest, TextInARunStopsWhereTheLogHasNoRoom) {
  status->nexthopGroupIs("short");
  join();
  owe();
  log.fill();
  EXPECT_EQ(387, adapter->handleAttrFlowOut(387));
  EXPECT_TRUE(adapter->flowOut()->valueIter());
  EXPECT_EQ(2U, dirty());
  EXPECT_EQ(0U, adapter->flowOut()->outstandingKeys());
  EXPECT_EQ("", log.told());
  EXPECT_EQ(0, adapter->handleAttrFlowOut(387));
  EXPECT_EQ("387", log.told());
}

TEST_F(TextFlowOutTest, TextInARunGoesOnWithoutAConnection) {
  status->nexthopGroupIs(longText);
  join();
  owe();
  log.out->connectedIs(false);
  EXPECT_EQ(0, adapter->handleAttrFlowOut(387));
  EXPECT_FALSE(adapter->flowOut()->valueIter());
  EXPECT_EQ(0U, dirty());
}

// However little room there is behind its first piece.
TEST_F(TextFlowOutTest, TextBegunWithoutAFlowOutIsWrittenToItsEnd) {
  LogEnd tight(Demuxer::accepting, Vyx::kTextStartRoom);
  LogEnd far(Demuxer::connecting);
  auto const writer = tight.join(status);
  far.joinAs(copy, writer->entityId());
  std::string const longer = longText + longText;
  status->nexthopGroupIs(longer);
  EXPECT_FALSE(writer->flowOut());
  replication_test::pass(tight, far);
  EXPECT_EQ(longer, copy->nexthopGroup());
}

TEST_F(TextFlowOutTest, TextIsBegunAtExactlyThatRoom) {
  LogEnd enough(Demuxer::accepting, Vyx::kTextStartRoom);
  LogEnd scarce(Demuxer::accepting, Vyx::kTextStartRoom - 1);
  auto const written = enough.join(status);
  auto const owed = scarce.join(status);
  status->nexthopGroupIs("short");
  EXPECT_EQ("387", enough.told());
  EXPECT_FALSE(written->flowOut());
  EXPECT_EQ("", scarce.told());
  EXPECT_TRUE(owed->flowOut());
}

TEST_F(TextFlowOutTest, TextChangedBesideAFlowOutIsOwedFromItsStart) {
  join();
  log.demuxer->createFlowOut(adapter, Vyx::ConnectDesc(), false, kNothing);
  log.fill();
  status->nexthopGroupIs("short");
  EXPECT_EQ(2U, dirty());
  EXPECT_TRUE(adapter->flowOut()->valueIter());
  EXPECT_EQ(0U, adapter->flowOut()->outstandingKeys());
  EXPECT_EQ("", log.told());
}

TEST_F(TextFlowOutTest, TextThatIsOwedBelowThePlaceOfAStopIsWritten) {
  join();
  log.demuxer->createFlowOut(adapter, Vyx::ConnectDesc(), false, kNothing)->vyxResumeAidIs(388);
  log.fill();
  status->nexthopGroupIs("short");
  log.sent();
  EXPECT_TRUE(log.demuxer->runFlowOuts());
  EXPECT_EQ("387", log.told());
}

TEST_F(TextFlowOutTest, PoliteTextWithAFlowOutIsOwedOutsideARun) {
  join(politeFlags());
  log.demuxer->createFlowOut(adapter, Vyx::ConnectDesc(), false, kNothing);
  EXPECT_FALSE(adapter->vyxHandleNexthopGroupSerialize());
  EXPECT_EQ(2U, dirty());
  EXPECT_EQ("", log.told());
}

TEST_F(TextFlowOutTest, GuardsOfAText) {
  join();
  for (auto flag : {StreamAdapter::syncRelayFlag, StreamAdapter::flowOutHeldFlag,
                    StreamAdapter::flowOutOffFlag, StreamAdapter::isActiveFlag}) {
    adapter->flagIs(flag, true);
    EXPECT_TRUE(adapter->vyxHandleNexthopGroupSerialize());
    EXPECT_FALSE(adapter->flag(StreamAdapter::isActiveFlag));
    adapter->flagIs(flag, false);
  }
  log.demuxer->flowInIs(adapter->entityId())->aidIs(387);
  EXPECT_TRUE(adapter->vyxHandleNexthopGroupSerialize());
  EXPECT_EQ("", log.told());
}

TEST_F(TextFlowOutTest, ReadOnlyTextIsRefused) {
  join(followerFlags());
  EXPECT_EQ("read-only entity web, attribute nexthopGroup",
            refusal<Vyx::ReadOnlyException>([&] { adapter->vyxHandleNexthopGroupSerialize(); }));
}

TEST_F(TextFlowOutTest, SecondSavedPositionAborts) {
  join();
  log.demuxer->createFlowOut(adapter, Vyx::ConnectDesc(), false, kNothing);
  Vyx::String8 const text("abc");
  Vyx::NboAttrLog::vyxFlowOutValueEnq(*adapter->flowOut(), text.begin());
  EXPECT_DEATH(Vyx::NboAttrLog::vyxFlowOutValueEnq(*adapter->flowOut(), text.begin()),
               "^Vyx/NboAttrLogFlow:51: assertion failed: !rsc->valueIter\\(\\)\n$");
}

} // namespace
} // namespace replication_test
