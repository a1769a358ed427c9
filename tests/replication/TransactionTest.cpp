// Mark and sweep between the markers of a walk, the sync mode, and what is freed when a flow out is given up.

#include "OneLog.h"

#include "Pbr/ClassMapCheckpointStatusSa.h"
#include "Pbr/ConfigSa.h"
#include "Pbr/NexthopIndexAndL2AdjKeySa.h"
#include "Pbr/PbrAclCheckpointStatusSa.h"
#include "Pbr/PbrActionContainerSa.h"
#include "Pbr/PbrActionSetDscpSa.h"
#include "Pbr/PbrClassMapStatusSa.h"
#include "Pbr/PbrFwdActionSa.h"
#include "PolicyMap/ClassMapTypeConfigSa.h"
#include "PolicyMap/PolicyMapTypeConfigSa.h"
#include "Vyx/Dir.h"

namespace replication_test {
namespace {

constexpr auto kBegin = StreamAdapter::attrTransactionBegin;
constexpr auto kAbort = StreamAdapter::attrTransactionAbort;
constexpr auto kEnd = StreamAdapter::attrTransactionEnd;
EntityId const kMe = EntityId::fromValue(0x8000000000000003);
Kest::UniqueId const id(1, 2, 3);
Kest::UniqueId const otherId(4, 5, 6);
Lomu::IpGenAddr const one("10.0.0.1");
Lomu::IpGenAddr const two("10.0.0.2");

// Values.

class TransactionTest : public testing::Test {
protected:
  TransactionTest() : adapter(log.joinAs(action, kMe, directFlags())) {
    adapter->flagIs(StreamAdapter::outAttachedFlag, false);
    action->nexthopIs(one, true);
    action->nexthopIs(two, true);
    adapter->flagIs(StreamAdapter::outAttachedFlag, true);
  }
  bool isMarked(Lomu::IpGenAddr const& key) { return action->nexthopIterator(key)->vyxMarkedForDeletion(); }
  void transact(StreamAdapter::AttrTransactionType type) { adapter->handleAttrTransaction(387, type, 0); }
  void messageFor(std::string const& lastByte) {
    log.message("8000000000000003 00000183 01 00000004 0a0000" + lastByte + " 00000000 00000000 00000000 01");
    adapter->handleAttrDeserialization(387, {}, 21, nullptr);
  }

  LogEnd log{Demuxer::connecting};
  Ptr<Pbr::PbrFwdAction> action = Pbr::pbrFwdActionFactory("web", id, Pbr::nexthopAction);
  Ptr<Pbr::PbrFwdAction::VyxNboAttrLogSa> adapter;
};

TEST_F(TransactionTest, BeginAndEndOfAnEmptyCollectionDoNothing) {
  action->nexthopDelAll();
  transact(kBegin);
  transact(kEnd);
  EXPECT_EQ(0U, action->nexthops());
}

TEST_F(TransactionTest, BeginMarksEveryEntryAndOpensAFlowIn) {
  transact(kBegin);
  EXPECT_TRUE(isMarked(one) && isMarked(two));
  ASSERT_TRUE(log.demuxer->flowIn(kMe));
  EXPECT_EQ(387, log.demuxer->flowIn(kMe)->aid());
  EXPECT_FALSE(log.demuxer->flowIn(kMe)->handlingTransaction());
}

TEST_F(TransactionTest, WhatWasHeardOfStays) {
  transact(kBegin);
  messageFor("01");
  messageFor("02");
  transact(kEnd);
  EXPECT_EQ(2U, action->nexthops());
}

TEST_F(TransactionTest, WhatWasNotHeardOfIsDeletedWithoutAnEcho) {
  transact(kBegin);
  messageFor("02");
  transact(kEnd);
  EXPECT_EQ(1U, action->nexthops());
  EXPECT_TRUE(action->nexthop(two));
  EXPECT_EQ("", log.told());
  EXPECT_FALSE(adapter->flag(StreamAdapter::isActiveFlag));
}

TEST_F(TransactionTest, EndClosesTheFlowIn) {
  transact(kBegin);
  transact(kEnd);
  EXPECT_EQ(nullptr, log.demuxer->flowIn(kMe));
}

TEST_F(TransactionTest, FlowInKnowsThatTheSweepRuns) {
  struct Looking : Pbr::PbrFwdAction::Notifiee {
    void onNexthop(Lomu::IpGenAddr const&) override {
      wasHandled = demuxer->flowIn(kMe) && demuxer->flowIn(kMe)->handlingTransaction();
    }
    Demuxer* demuxer = nullptr;
    bool wasHandled = false;
  };
  auto const looking = Vyx::ptrFromNew(new Looking);
  looking->demuxer = log.demuxer.ptr();
  looking->isRegisteredNotifieeIs(true);
  looking->notifierIs(action);
  transact(kBegin);
  transact(kEnd);
  EXPECT_TRUE(looking->wasHandled);
}

TEST_F(TransactionTest, EndWithoutABeginDeletesNothing) {
  transact(kEnd);
  EXPECT_EQ(2U, action->nexthops());
}

TEST_F(TransactionTest, AbortNeitherDeletesNorUnmarks) {
  transact(kBegin);
  transact(kAbort);
  EXPECT_EQ(2U, action->nexthops());
  EXPECT_TRUE(isMarked(one) && isMarked(two));
  transact(kEnd);
  EXPECT_EQ(0U, action->nexthops());
}

TEST_F(TransactionTest, OpenTransactionOfAnotherAttributeIsKept) {
  log.demuxer->flowInIs(kMe)->aidIs(388);
  transact(kBegin);
  EXPECT_EQ(388, log.demuxer->flowIn(kMe)->aid());
  transact(kEnd);
  EXPECT_EQ(388, log.demuxer->flowIn(kMe)->aid());
  EXPECT_FALSE(log.demuxer->flowIn(kMe)->handlingTransaction());
}

TEST_F(TransactionTest, RelayedBeginOpensNoFlowIn) {
  adapter->flagIs(StreamAdapter::syncRelayFlag, true);
  transact(kBegin);
  EXPECT_EQ(nullptr, log.demuxer->flowIn(kMe));
  EXPECT_TRUE(isMarked(one));
}

TEST_F(TransactionTest, AttributeWithoutAMarkRunsTheHeadAlone) {
  adapter->handleAttrTransaction(388, kBegin, 0);
  EXPECT_EQ(388, log.demuxer->flowIn(kMe)->aid());
  EXPECT_FALSE(isMarked(one));
}

TEST_F(TransactionTest, ReactorThatDeletesDuringTheSweepDoesntDisturbIt) {
  struct Deleting : Pbr::PbrFwdAction::Notifiee {
    void onNexthop(Lomu::IpGenAddr const&) override { of->nexthopDel(last); }
    Pbr::PbrFwdAction* of = nullptr;
    Lomu::IpGenAddr last;
  };
  for (int i = 3; i < 40; ++i)
    action->nexthopIs(Lomu::IpGenAddr(("10.0.0." + std::to_string(i)).c_str()), true);
  transact(kBegin);
  auto const deleting = Vyx::ptrFromNew(new Deleting);
  deleting->of = action.ptr();
  deleting->last = two;
  deleting->isRegisteredNotifieeIs(true);
  deleting->notifierIs(action);
  transact(kEnd);
  EXPECT_EQ(0U, action->nexthops());
}

TEST(ValueTransactions, SweepTheOtherCollectionsOfValuesToo) {
  LogEnd log;
  Ptr<Pbr::NexthopIndexAndL2AdjKey> const resolved = Pbr::nexthopIndexAndL2AdjKeyFactory(Pbr::NexthopSet());
  resolved->viasUsedIs(one, true);
  auto const vias = log.join(resolved);
  vias->handleAttrTransaction(263, kBegin, 0);
  vias->handleAttrTransaction(263, kEnd, 0);
  EXPECT_FALSE(resolved->viasUsedIteratorConst());
  auto const acl = Vyx::ptrFromNew(new Pbr::PbrAclCheckpointStatus("in"));
  acl->ruleStatusIs(Acl::UniqueId(1, 2, 3), Acl::RuleCheckpointStatus(1, 2));
  auto const rules = log.join(acl);
  rules->handleAttrTransaction(258, kBegin, 0);
  rules->handleAttrTransaction(258, kEnd, 0);
  EXPECT_FALSE(acl->ruleStatusIteratorConst());
}

// Children.

class ChildTransactionTest : public testing::Test {
protected:
  ChildTransactionTest() : adapter(log.join(container)) {
    child = container->fwdActionIs("web", id, Pbr::nexthopAction);
    other = container->fwdActionIs("mail", otherId, Pbr::nexthopAction);
    log.sent();
  }
  bool isMarked(Ptr<Pbr::PbrFwdAction> const& of) {
    return log.adapter(of)->flag(StreamAdapter::flowOutHeldFlag);
  }
  void transact(StreamAdapter::AttrTransactionType type) { adapter->handleAttrTransaction(258, type, 0); }

  LogEnd log;
  Ptr<Pbr::PbrActionContainer> container = Pbr::pbrActionContainerFactory("Pbr");
  Ptr<Pbr::PbrActionContainer::VyxNboAttrLogSa> adapter;
  Ptr<Pbr::PbrFwdAction> child;
  Ptr<Pbr::PbrFwdAction> other;
};

TEST_F(ChildTransactionTest, BeginMarksTheAdaptersAndEndDeletesWhatIsMarked) {
  transact(kBegin);
  EXPECT_TRUE(isMarked(child) && isMarked(other));
  log.adapter(other)->flagIs(StreamAdapter::flowOutHeldFlag, false);
  transact(kEnd);
  EXPECT_FALSE(container->fwdAction(id));
  EXPECT_EQ(other, container->fwdAction(otherId));
  EXPECT_EQ("", log.told());
  EXPECT_FALSE(adapter->flag(StreamAdapter::isActiveFlag));
}

TEST_F(ChildTransactionTest, EndWithoutABeginDeletesWhatIsNotOnThisLog) {
  log.adapter(child)->doRemountSelf(nullptr);
  transact(kEnd);
  EXPECT_FALSE(container->fwdAction(id));
  EXPECT_EQ(other, container->fwdAction(otherId));
}

TEST_F(ChildTransactionTest, AbortDeletesNothing) {
  log.adapter(child)->doRemountSelf(nullptr);
  transact(kBegin);
  transact(kAbort);
  EXPECT_EQ(2U, container->fwdActions());
  EXPECT_TRUE(isMarked(other));
}

TEST_F(ChildTransactionTest, OtherCollectionIsLeftAlone) {
  container->dscpActionIs("voice", id, Pbr::Dscp(1));
  transact(kBegin);
  transact(kEnd);
  EXPECT_EQ(1U, container->dscpActions());
}

TEST(SingleChildTransaction, MarksAndDeletesNothing) {
  LogEnd log;
  Ptr<Pbr::Config> const config = Pbr::configFactory("pbr");
  auto const adapter = log.join(config);
  auto const child = log.join(config->pbrActions());
  adapter->handleAttrTransaction(261, kBegin, 0);
  EXPECT_TRUE(child->flag(StreamAdapter::flowOutHeldFlag));
  adapter->handleAttrTransaction(261, kEnd, 0);
  EXPECT_TRUE(config->pbrActions());
  adapter->handleAttrTransaction(262, kBegin, 0);
  adapter->handleAttrTransaction(262, kEnd, 0);
  EXPECT_TRUE(config->cmapType());
}

// Text in pieces.

class TextTransactionTest : public testing::Test {
protected:
  void begin(Vyx::AttributeId aid) {
    Vyx::NboAttrLog::vyxFlowInIteratorIs(*log.demuxer->flowInIs(adapter->entityId()), aid,
                                         Vyx::TextIterator());
  }
  FlowIn* flowIn() const { return log.demuxer->flowIn(adapter->entityId()); }

  LogEnd log;
  Ptr<Pbr::PbrClassMapStatus> status = Pbr::pbrClassMapStatusFactory("web", id);
  Ptr<Pbr::PbrClassMapStatus::VyxNboAttrLogSa> adapter = log.join(status);
};

TEST_F(TextTransactionTest, AbortAndEndGiveTheTextUp) {
  for (auto type : {kAbort, kEnd}) {
    begin(387);
    adapter->handleAttrTransaction(387, type, 0);
    EXPECT_EQ(nullptr, flowIn());
  }
}

TEST_F(TextTransactionTest, BeginLeavesTheTextAsItStands) {
  begin(387);
  adapter->handleAttrTransaction(387, kBegin, 0);
  ASSERT_TRUE(flowIn());
  EXPECT_TRUE(flowIn()->iter());
  EXPECT_EQ(387, flowIn()->aid());
}

TEST_F(TextTransactionTest, TextOfAnotherAttributeIsKept) {
  begin(386);
  adapter->handleAttrTransaction(387, kEnd, 0);
  ASSERT_TRUE(flowIn());
  EXPECT_TRUE(flowIn()->iter());
}

// The sync mode.

TEST_F(TransactionTest, SyncModeOfAnInactiveAdapterMarksNothing) {
  log.demuxer->phaseIs(Demuxer::syncing);
  adapter->syncModeIs(StreamAdapter::syncModeFull);
  EXPECT_EQ(StreamAdapter::syncModeFull, adapter->syncMode());
  EXPECT_FALSE(isMarked(one));
}

TEST_F(TransactionTest, SyncModeWithinAMessageBeginsAndEndsTheTransactions) {
  log.demuxer->phaseIs(Demuxer::syncing);
  Vyx::IsActiveAnchor const active(*adapter);
  adapter->syncModeIs(StreamAdapter::syncModeFull);
  EXPECT_TRUE(isMarked(one) && isMarked(two));
  adapter->flagIs(StreamAdapter::isActiveFlag, true);
  adapter->syncModeIs(StreamAdapter::syncModeLive);
  EXPECT_EQ(0U, action->nexthops());
}

TEST_F(TransactionTest, SyncModeOnALiveLogMarksNothing) {
  log.demuxer->phaseIs(Demuxer::live);
  Vyx::IsActiveAnchor const active(*adapter);
  adapter->syncModeIs(StreamAdapter::syncModeFull);
  EXPECT_FALSE(isMarked(one));
}

TEST(SyncMode, OfConfigAndContainerReachesEachChildAttribute) {
  LogEnd log;
  Ptr<Pbr::Config> const config = Pbr::configFactory("pbr");
  auto const adapter = log.join(config);
  auto const actions = log.join(config->pbrActions());
  auto const cmap = log.join(config->cmapType());
  auto const pmap = log.join(config->pmapType());
  auto const fwd = log.adapter(config->pbrActions()->fwdActionIs("web", id, Pbr::nexthopAction));
  auto const dscp = log.adapter(config->pbrActions()->dscpActionIs("web", id, Pbr::Dscp(1)));
  Vyx::IsActiveAnchor const active(*adapter);
  adapter->syncModeIs(StreamAdapter::syncModeFull);
  for (StreamAdapter* one :
       {static_cast<StreamAdapter*>(actions.ptr()), static_cast<StreamAdapter*>(cmap.ptr()),
        static_cast<StreamAdapter*>(pmap.ptr())})
    EXPECT_TRUE(one->flag(StreamAdapter::flowOutHeldFlag));
  Vyx::IsActiveAnchor const activeToo(*actions);
  actions->syncModeIs(StreamAdapter::syncModeFull);
  EXPECT_TRUE(fwd->flag(StreamAdapter::flowOutHeldFlag));
  EXPECT_TRUE(dscp->flag(StreamAdapter::flowOutHeldFlag));
}

TEST_F(TransactionTest, SyncModeFromTheLogIsRelayedToTheAdaptersOfThisEntityOnly) {
  LogEnd second{Demuxer::connecting};
  LogEnd third{Demuxer::connecting};
  auto const same = second.joinAs(action, kMe);
  auto const stranger = third.joinAs(Pbr::pbrFwdActionFactory("mail", id, Pbr::nexthopAction), kMe);
  log.message("8000000000000003 00000087 04 00000001");
  adapter->handleAttrDeserialization(135, {}, 4, nullptr);
  EXPECT_EQ(StreamAdapter::syncModeLive, adapter->syncMode());
  EXPECT_EQ(StreamAdapter::syncModeLive, same->syncMode());
  EXPECT_EQ(StreamAdapter::syncModeNone, stranger->syncMode());
  EXPECT_FALSE(same->flag(StreamAdapter::syncRelayFlag));
}

TEST_F(TransactionTest, NothingIsWrittenDuringARelay) {
  log.demuxer->phaseIs(Demuxer::syncing);
  log.message("8000000000000003 00000087 04 00000002");
  adapter->handleAttrDeserialization(135, {}, 4, nullptr);
  EXPECT_TRUE(isMarked(one));
  log.message("8000000000000003 00000087 04 00000001");
  adapter->handleAttrDeserialization(135, {}, 4, nullptr);
  EXPECT_EQ(0U, action->nexthops());
  EXPECT_EQ("", log.told());
}

TEST_F(TransactionTest, UnknownSyncModeIsRefused) {
  log.message("8000000000000003 00000087 04 00000003");
  EXPECT_THROW(adapter->handleAttrDeserialization(135, {}, 4, nullptr), Vyx::RangeException);
  EXPECT_FALSE(adapter->flag(StreamAdapter::isActiveFlag));
}

TEST_F(TransactionTest, ModeLiveCompletesTheEntryOfTheDirectory) {
  auto const dir = Vyx::ptrFromNew(new Vyx::Dir("roots"));
  Vyx::Dir::Entry& entry = dir->entryIs("path");
  entry.entityIs(action);
  log.message("8000000000000003 00000087 04 00000002");
  adapter->handleAttrDeserialization(135, {}, 4, nullptr);
  EXPECT_EQ(Vyx::Dir::absent, entry.state());
  log.message("8000000000000003 00000087 04 00000001");
  adapter->handleAttrDeserialization(135, {}, 4, nullptr);
  EXPECT_EQ(3, entry.state());
}

// Giving a flow out up.

TEST_F(TransactionTest, FreeResyncStateDropsTheBookmarkOfItsCollectionOnly) {
  log.demuxer->createFlowOut(adapter, Vyx::ConnectDesc(), false, INT32_MAX);
  auto const flowOut = adapter->flowOut();
  flowOut->attrIdIs(387);
  Vyx::NboAttrLog::vyxBookmarkEnq<Lomu::IpGenAddr>(*flowOut, one);
  for (Vyx::AttributeId aid : {0, 6, 388, 389}) {
    flowOut->attrIdIs(aid);
    adapter->freeResyncState(flowOut);
    EXPECT_TRUE(flowOut->bookmark()) << aid;
  }
  flowOut->attrIdIs(387);
  adapter->freeResyncState(flowOut);
  EXPECT_FALSE(flowOut->bookmark());
}

TEST_F(ChildTransactionTest, FreeResyncStateFreesAtBothCollections) {
  log.demuxer->createFlowOut(adapter, Vyx::ConnectDesc(), false, INT32_MAX);
  auto const flowOut = adapter->flowOut();
  for (Vyx::AttributeId aid : {258, 259}) {
    flowOut->attrIdIs(aid);
    Vyx::NboAttrLog::vyxBookmarkEnq<Kest::UniqueId>(*flowOut, id);
    adapter->freeResyncState(flowOut);
    EXPECT_FALSE(flowOut->bookmark());
  }
}

TEST_F(TransactionTest, FlowOutThatIsGivenUpTakesItsBookmarkAlong) {
  log.demuxer->createFlowOut(adapter, Vyx::ConnectDesc(), false, INT32_MAX);
  auto const flowOut = adapter->flowOut();
  flowOut->attrIdIs(387);
  Vyx::NboAttrLog::vyxBookmarkEnq<Lomu::IpGenAddr>(*flowOut, one);
  flowOut->attrIdIs(388);
  log.demuxer->flowOutDel(*adapter);
  EXPECT_FALSE(flowOut->bookmark());
  EXPECT_FALSE(adapter->flowOut());
}

// Leaving the log.

TEST_F(TransactionTest, RemountWithoutALogLeavesIt) {
  adapter->doRemountSelf(nullptr);
  EXPECT_EQ(nullptr, log.demuxer->reactor(kMe));
  EXPECT_FALSE(adapter->notifier());
  action->recursiveIs(true);
  EXPECT_EQ("", log.told());
}

TEST_F(TransactionTest, RemountOnAnotherLogAnnouncesItThere) {
  LogEnd next;
  adapter->doRemountSelf(next.out);
  EXPECT_EQ(nullptr, log.demuxer->reactor(kMe));
  ASSERT_TRUE(next.adapter(action));
  EXPECT_EQ("136 6 387.0 387 387 387.2 388 389", next.told());
}

TEST(Remount, TakesTheWholeTreeOffTheLog) {
  LogEnd log;
  Ptr<Pbr::Config> const config = Pbr::configFactory("pbr");
  config->pbrActions()->fwdActionIs("web", id, Pbr::nexthopAction);
  auto const adapter = log.join(config);
  adapter->doSerializeOrphan();
  ASSERT_EQ(5U, log.demuxer->reactors().count());
  adapter->doRemountSelf(nullptr);
  EXPECT_EQ(0U, log.demuxer->reactors().count());
  EXPECT_TRUE(config->pbrActions()->fwdAction(id));
}

} // namespace
} // namespace replication_test
