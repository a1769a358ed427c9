// Mark and sweep between the markers of a walk, what is freed when a flow out is given up, and leaving a log.

#include "Transacting.h"

#include "Pbr/CheckpointAgentStatusSa.h"
#include "Pbr/CheckpointStatusSa.h"
#include "Pbr/ClassMapCheckpointStatusSa.h"
#include "Pbr/ConfigSa.h"
#include "Pbr/NexthopIndexAndL2AdjKeySa.h"
#include "Pbr/PbrAclCheckpointStatusSa.h"
#include "Pbr/PbrAclTypeCheckpointStatusSa.h"
#include "Pbr/PbrClassMapStatusSa.h"
#include "Pbr/PolicyMapCheckpointStatusSa.h"
#include "Pbr/StatusSa.h"

namespace replication_test {
namespace {

// Values.

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

TEST_F(ChildTransactionTest, ChildAnnouncedWithinATransactionStays) {
  transact(kBegin);
  log.message(Vyx::format("%016llx 00000102 11 00000004 6d61696c 00000004 0005 0006 00000002 %016llx",
                          adapter->entityId().value(), log.adapter(other)->entityId().value())
                  .charPtr());
  adapter->handleAttrDeserialization(258, {}, 0, nullptr);
  EXPECT_FALSE(isMarked(other));
  transact(kEnd);
  EXPECT_FALSE(container->fwdAction(id));
  EXPECT_EQ(other, container->fwdAction(otherId));
}

// Some of those that come stand before the place where the sweep is.
TEST_F(ChildTransactionTest, ChildWithoutAnAdapterThatComesDuringTheSweepGoesToo) {
  struct Adding : Pbr::PbrActionContainer::Notifiee {
    void onFwdAction(Kest::UniqueId const&) override {
      for (std::uint16_t i = 10; i < 60 && !isDone; ++i)
        notifier()->fwdActionIs("late", Kest::UniqueId(i, 0, i), Pbr::nexthopAction);
      isDone = true;
    }
    bool isDone = false;
  };
  adapter->flagIs(StreamAdapter::outAttachedFlag, false);
  transact(kBegin);
  auto const adding = Vyx::ptrFromNew(new Adding);
  adding->isRegisteredNotifieeIs(true);
  adding->notifierIs(container);
  transact(kEnd);
  EXPECT_TRUE(adding->isDone);
  EXPECT_EQ(0U, container->fwdActions());
}

// A child under that attribute, known to the other side.
template <class P, class C>
void expectMarkedAndSwept(Ptr<P> const& parent, Vyx::AttributeId aid, Ptr<C> const& child) {
  LogEnd log;
  auto const above = log.join(parent);
  auto const there = log.join(child);
  above->handleAttrTransaction(aid, kBegin, 0);
  EXPECT_TRUE(there->flag(StreamAdapter::flowOutHeldFlag)) << aid;
  above->handleAttrTransaction(aid, kEnd, 0);
  EXPECT_EQ(1U, log.demuxer->reactors().count()) << aid;
  EXPECT_FALSE(child->parent()) << aid;
}

TEST(ChildTransactions, EachKeyedChildAttributeIsMarkedAndSwept) {
  auto const container = Pbr::pbrActionContainerFactory("Pbr");
  expectMarkedAndSwept(container, 259, container->dscpActionIs("web", id, Pbr::Dscp(1)));
  auto const status = Pbr::statusFactory("pbr");
  expectMarkedAndSwept(status, 386, status->pbrClassMapStatusIs("web", id));
  auto const checkpoint = Pbr::checkpointStatusFactory("pbr");
  auto const agent = checkpoint->checkpointAgentStatusIs("agent");
  auto const policyMap = agent->pmapCkptStatusIs("p");
  auto const classMap = policyMap->cmapCkptStatusIs("c");
  auto const aclType = classMap->aclTypeCkptStatusIs(Acl::ip);
  expectMarkedAndSwept(aclType, 259, aclType->aclIs("in"));
  expectMarkedAndSwept(classMap, 260, aclType);
  expectMarkedAndSwept(policyMap, 258, classMap);
  expectMarkedAndSwept(agent, 258, policyMap);
  expectMarkedAndSwept(checkpoint, 258, agent);
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

TEST(FreeResyncState, OfABasesCollectionIsTheBases) {
  LogEnd log;
  auto const adapter = log.join(Pbr::statusFactory("pbr"));
  log.demuxer->createFlowOut(adapter, Vyx::ConnectDesc(), false, INT32_MAX);
  auto const flowOut = adapter->flowOut();
  flowOut->attrIdIs(259);
  Vyx::NboAttrLog::vyxBookmarkEnq<Name>(*flowOut, "web");
  adapter->freeResyncState(flowOut);
  EXPECT_FALSE(flowOut->bookmark());
}

TEST(FreeResyncState, OfATextKeepsTheBookmark) {
  LogEnd log;
  auto const adapter = log.join(Pbr::pbrClassMapStatusFactory("web", id));
  log.demuxer->createFlowOut(adapter, Vyx::ConnectDesc(), false, INT32_MAX);
  auto const flowOut = adapter->flowOut();
  flowOut->attrIdIs(387);
  Vyx::NboAttrLog::vyxBookmarkEnq<Kest::UniqueId>(*flowOut, id);
  adapter->freeResyncState(flowOut);
  EXPECT_TRUE(flowOut->bookmark());
  Vyx::NboAttrLog::vyxBookmarkDel<Kest::UniqueId>(*flowOut);
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

TEST(Remount, OnAnotherLogTakesTheTreeAlong) {
  LogEnd log;
  LogEnd next;
  Ptr<Pbr::Config> const config = Pbr::configFactory("pbr");
  config->pbrActions()->fwdActionIs("web", id, Pbr::nexthopAction);
  auto const adapter = log.join(config);
  adapter->doSerializeOrphan();
  adapter->doRemountSelf(next.out);
  EXPECT_EQ(0U, log.demuxer->reactors().count());
  EXPECT_EQ(5U, next.demuxer->reactors().count());
  EXPECT_EQ(0U, next.told().find("136 "));
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
