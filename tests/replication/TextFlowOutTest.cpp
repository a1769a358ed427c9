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
