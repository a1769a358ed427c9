// Entities that hang below others: how a child gets its adapter, is announced, and goes.

#include "OneLog.h"

#include "Pbr/ConfigSa.h"
#include "Pbr/NexthopIndexAndL2AdjKeySa.h"
#include "Pbr/PbrActionContainerSa.h"
#include "Pbr/PbrActionSetDscpSa.h"
#include "Pbr/PbrClassMapStatusSa.h"
#include "Pbr/PbrFwdActionSa.h"
#include "Pbr/StatusSa.h"
#include "PolicyMap/ClassMapTypeConfigSa.h"
#include "PolicyMap/PolicyMapTypeConfigSa.h"

namespace replication_test {
namespace {

Kest::UniqueId const id(1, 2, 3);
Kest::UniqueId const otherId(4, 5, 6);

class NestedAdapterTest : public testing::Test {
protected:
  // A child that this log hasn't heard of.
  Ptr<Pbr::PbrFwdAction> silentChild(Kest::UniqueId const& key = id) {
    adapter->flagIs(StreamAdapter::outAttachedFlag, false);
    auto const child = container->fwdActionIs("web", key, Pbr::nexthopAction);
    adapter->flagIs(StreamAdapter::outAttachedFlag, true);
    return child;
  }
  Ptr<Pbr::PbrFwdAction::VyxNboAttrLogSa> adapterIs(Ptr<Pbr::PbrFwdAction> const& child,
                                                    Vyx_BitSet flags = directFlags()) {
    return adapter->fwdActionNboAttrLogAdapterIs(flags, child, 1, log.out, nullptr);
  }

  LogEnd log;
  Ptr<Pbr::PbrActionContainer> container = Pbr::pbrActionContainerFactory("Pbr");
  Ptr<Pbr::PbrActionContainer::VyxNboAttrLogSa> adapter = log.join(container);
};

// The three operations.

TEST_F(NestedAdapterTest, NobodyFindsAChildsAdapterThroughTheParent) {
  auto const child = container->fwdActionIs("web", id, Pbr::nexthopAction);
  ASSERT_TRUE(log.adapter(child));
  EXPECT_FALSE(adapter->fwdActionNboAttrLogAdapter(child));
  auto const& constant = *adapter;
  EXPECT_FALSE(constant.fwdActionNboAttrLogAdapter(child));
  Ptr<Pbr::PbrFwdAction const> const looker = child; // Who may only look can ask, too.
  EXPECT_FALSE(adapter->fwdActionNboAttrLogAdapter(looker));
  EXPECT_FALSE(constant.fwdActionNboAttrLogAdapter(looker));
}

TEST_F(NestedAdapterTest, AdapterIsMadeNamedAndAnnouncedAlone) {
  auto const child = silentChild();
  auto const made = adapterIs(child);
  EXPECT_EQ(made, log.adapter(child));
  EXPECT_TRUE(made->entityId().isAssigned());
  EXPECT_EQ(directFlags(), made->vyx_bitSet());
  EXPECT_EQ("258+", log.told());
}

TEST_F(NestedAdapterTest, AnnouncedChildIsNotAnnouncedAgainButGetsItsFlags) {
  auto const child = container->fwdActionIs("web", id, Pbr::nexthopAction);
  auto const there = log.adapter(child);
  log.sent();
  EXPECT_EQ(there, adapterIs(child, followerFlags()));
  EXPECT_EQ("", log.told());
  EXPECT_TRUE(there->flag(StreamAdapter::readOnlyFlag));
  EXPECT_TRUE(there->flag(StreamAdapter::childAnnouncedFlag));
}

TEST_F(NestedAdapterTest, KnownChildThatIsNotAnnouncedIsAnnouncedUnderItsId) {
  auto const child = silentChild();
  auto const there = log.join(child);
  EXPECT_EQ(there, adapterIs(child));
  EXPECT_EQ("258+", log.told());
}

TEST_F(NestedAdapterTest, AdapterDelTakesTheChildOffTheLog) {
  EXPECT_FALSE(adapter->fwdActionNboAttrLogAdapterDel(nullptr));
  EXPECT_FALSE(adapter->fwdActionNboAttrLogAdapterDel(silentChild(otherId)));
  auto const child = container->fwdActionIs("web", id, Pbr::nexthopAction);
  auto const there = log.adapter(child);
  EXPECT_EQ(there, adapter->fwdActionNboAttrLogAdapterDel(child));
  EXPECT_FALSE(log.adapter(child));
  EXPECT_EQ(nullptr, log.demuxer->reactor(there->entityId()));
}

// The reaction.

TEST_F(NestedAdapterTest, NewChildIsAnnouncedAndThenTold) {
  container->fwdActionIs("web", id, Pbr::nexthopAction);
  EXPECT_EQ("258+ 6 387.0 387.2 388 389", log.told());
}

TEST_F(NestedAdapterTest, ChildGetsTheFlagsThatAreHandedOnAndNoOthers) {
  adapter->flagIs(StreamAdapter::readOnlyProxyFlag, true);
  adapter->flagIs(StreamAdapter::childAnnouncedFlag, true);
  auto const child = log.adapter(container->fwdActionIs("web", id, Pbr::nexthopAction));
  EXPECT_EQ(flagsOf({StreamAdapter::outAttachedFlag, StreamAdapter::directFlowOutFlag,
                     StreamAdapter::readOnlyProxyFlag, StreamAdapter::childAnnouncedFlag}),
            child->vyx_bitSet());
}

TEST_F(NestedAdapterTest, RemovedKeyedChildIsItsKeyAlone) {
  container->fwdActionIs("web", id, Pbr::nexthopAction);
  log.sent();
  container->fwdActionDel(id);
  EXPECT_EQ(20U + 8, log.out->pendingBytes());
  EXPECT_EQ("-258", log.told());
}

TEST_F(NestedAdapterTest, RemovedSingleChildIsAnEmptyMessage) {
  Ptr<Pbr::Config> const config = Pbr::configFactory("pbr");
  log.join(config);
  config->cmapTypeDel();
  EXPECT_EQ(20U, log.out->pendingBytes());
  EXPECT_EQ("-262", log.told());
}

TEST_F(NestedAdapterTest, RemovedChildLeavesTheDemuxer) {
  container->fwdActionIs("web", id, Pbr::nexthopAction);
  ASSERT_EQ(2U, log.demuxer->reactors().count());
  container->fwdActionDel(id);
  EXPECT_EQ(1U, log.demuxer->reactors().count());
}

TEST_F(NestedAdapterTest, WhileAMessageIsAppliedARemovalWritesNothing) {
  container->fwdActionIs("web", id, Pbr::nexthopAction);
  log.sent();
  adapter->flagIs(StreamAdapter::isActiveFlag, true);
  container->fwdActionDel(id);
  EXPECT_EQ("", log.told());
  EXPECT_FALSE(adapter->flag(StreamAdapter::isActiveFlag));
}

TEST_F(NestedAdapterTest, ReadOnlyParentRefusesAChild) {
  adapter->flagIs(StreamAdapter::readOnlyFlag, true);
  EXPECT_THROW(container->fwdActionIs("web", id, Pbr::nexthopAction), Vyx::ReadOnlyException);
  EXPECT_EQ("", log.told());
}

TEST_F(NestedAdapterTest, ReadOnlyParentTakesAChildThatComesWithAMessage) {
  adapter->flagIs(StreamAdapter::readOnlyFlag, true);
  log.message("8000000000000003 00000102 11 00000003 776562 00000001 0002 0003 00000002 0000000000000005");
  adapter->handleAttrDeserialization(258, {}, 0, nullptr);
  EXPECT_TRUE(container->fwdAction(id));
}

TEST_F(NestedAdapterTest, ChildOfAHeldParentIsMountedAllTheSameWithinAMessage) {
  adapter->flagIs(StreamAdapter::flowOutHeldFlag, true);
  log.message("8000000000000003 00000102 11 00000003 776562 00000001 0002 0003 00000002 0000000000000005");
  adapter->handleAttrDeserialization(258, {}, 0, nullptr);
  EXPECT_EQ(EntityId(5, 0), log.adapter(container->fwdAction(id))->entityId());
}

TEST_F(NestedAdapterTest, ParentWithoutAnIdOfItsOwnLeavesItInTheMessage) {
  Ptr<Pbr::PbrActionContainer> const nameless = Pbr::pbrActionContainerFactory("Pbr");
  Ptr<StreamAdapter> const unnamed = nameless->vyxNboAttrLogSaIs(directFlags(), 0, log.out, nullptr);
  log.message("8000000000000003 00000102 11 00000003 776562 00000001 0002 0003 00000002 0000000000000005");
  unnamed->handleAttrDeserialization(258, {}, 0, nullptr);
  EXPECT_EQ(EntityId(5, 0), log.adapter(nameless->fwdAction(id))->entityId());
  log.in->positionIs(19);
  EXPECT_EQ(unnamed->entityId(), log.in->nextEntityId());
  nameless->fwdActionDel(id);
  unnamed->doRemountSelf(nullptr);
}

TEST_F(NestedAdapterTest, ParentWithAnIdLeavesTheMessageAsItCame) {
  log.message("8000000000000003 00000102 11 00000003 776562 00000001 0002 0003 00000002 0000000000000005");
  adapter->handleAttrDeserialization(258, {}, 0, nullptr);
  log.in->positionIs(19);
  EXPECT_EQ(EntityId(5, 0), log.in->nextEntityId());
}

// The other side replaces its own, so both have the same child under the same id.
TEST_F(NestedAdapterTest, AnnouncementThatHasCrossedTheOwnOneIsPassedOver) {
  auto const child = container->fwdActionIs("web", id, Pbr::nexthopAction);
  auto const announcedAs = log.adapter(child)->entityId();
  log.message("8000000000000003 00000102 11 00000003 776562 00000001 0002 0003 00000001 0000000000000005");
  adapter->handleAttrDeserialization(258, {}, 0, nullptr);
  ASSERT_EQ(child, container->fwdAction(id));
  EXPECT_EQ(announcedAs, log.adapter(child)->entityId());
  EXPECT_TRUE(log.demuxer->wasGiven(EntityId(5, 0)));
}

TEST_F(NestedAdapterTest, FailureWhileAChildIsJoinedLeavesNothingOwedAndIsActiveClear) {
  log.message("8000000000000003 00000102 11 8000000000000003");
  adapter->flagIs(StreamAdapter::isActiveFlag, true);
  container->fwdActionIs("web", id, Pbr::nexthopAction);
  EXPECT_EQ("fwdAction of Pbr: entity id 8000000000000003 is in use", log.demuxer->failure());
  EXPECT_FALSE(adapter->flag(StreamAdapter::isActiveFlag));
  EXPECT_FALSE(adapter->flowOut());
}

TEST_F(NestedAdapterTest, RelayedSyncModeAnnouncesNoChild) {
  adapter->flagIs(StreamAdapter::syncRelayFlag, true);
  auto const child = container->fwdActionIs("web", id, Pbr::nexthopAction);
  EXPECT_FALSE(log.adapter(child));
  EXPECT_EQ("", log.told());
}

TEST_F(NestedAdapterTest, IncomingTransactionAnnouncesNoChildBeforeItsEnd) {
  adapter->handleAttrTransaction(258, StreamAdapter::attrTransactionBegin, 0);
  auto const child = container->fwdActionIs("web", id, Pbr::nexthopAction);
  EXPECT_EQ("", log.told());
  adapter->handleAttrTransaction(258, StreamAdapter::attrTransactionEnd, 0);
  EXPECT_EQ(child, container->fwdAction(id));
  EXPECT_TRUE(log.demuxer->runFlowOuts());
  EXPECT_EQ("258.0 258+ 6 387.0 387.2 388 389 258.2", log.told());
}

TEST_F(NestedAdapterTest, WithoutRoomAChildIsOwed) {
  log.fill();
  auto const child = container->fwdActionIs("web", id, Pbr::nexthopAction);
  EXPECT_EQ("", log.told());
  EXPECT_FALSE(log.adapter(child));
  EXPECT_TRUE(log.demuxer->runFlowOuts());
  EXPECT_EQ("258.0 258+ 6 387.0 387.2 388 389 258.2", log.told());
}

TEST_F(NestedAdapterTest, RemovedSingleChildIsOwedWithoutRoom) {
  Ptr<Pbr::Config> const config = Pbr::configFactory("pbr");
  log.join(config);
  log.fill();
  config->cmapTypeDel();
  EXPECT_EQ("", log.told());
  EXPECT_TRUE(log.demuxer->runFlowOuts());
  EXPECT_EQ("-262", log.told());
}

// Leaving the log.

// Does something more when it leaves the log.
struct Leaving : Pbr::PbrFwdAction::VyxNboAttrLogSa {
  using VyxNboAttrLogSa::VyxNboAttrLogSa;
  void doRemountSelf(Ptr<Out> const& out) override {
    VyxNboAttrLogSa::doRemountSelf(out);
    if (auto const once = std::exchange(leave, nullptr)) once();
  }
  std::function<void()> leave;
};

class LeavingTest : public NestedAdapterTest {
protected:
  Ptr<Leaving> leaving() {
    auto const made = Vyx::make<Leaving>(directFlags(), silentChild(), 0U, log.out, nullptr);
    made->hasNotificationActiveIs(true);
    made->vyxOnInit();
    return made;
  }
};

TEST_F(LeavingTest, RemountGoesFromParentToChild) {
  auto const child = leaving();
  bool parentIsThere = true;
  child->leave = [&] { parentIsThere = log.demuxer->reactor(adapter->entityId()); };
  adapter->doRemountSelf(nullptr);
  EXPECT_FALSE(parentIsThere);
  EXPECT_EQ(0U, log.demuxer->reactors().count());
}

TEST_F(LeavingTest, ChildThatComesDuringTheRemountLeavesTooWhereverItStands) {
  auto const child = leaving();
  child->leave = [&] {
    for (std::uint16_t i = 10; i < 60; ++i)
      log.join(container->fwdActionIs("late", Kest::UniqueId(i, 0, i), Pbr::nexthopAction));
  };
  adapter->doRemountSelf(nullptr);
  EXPECT_EQ(51U, container->fwdActions());
  EXPECT_EQ(0U, log.demuxer->reactors().count());
}

// Walks and resync.

TEST_F(NestedAdapterTest, InAScheduledRunTheChildIsToldAtOnce) {
  silentChild();
  adapter->flagIs(StreamAdapter::handlingScheduledFlowOutFlag, true);
  adapter->onFwdAction(id);
  EXPECT_EQ("258+ 6 387.0 387.2 388 389", log.told());
}

TEST_F(NestedAdapterTest, InAFullSyncTheChildIsToldAtOnce) {
  silentChild();
  adapter->syncModeIs(StreamAdapter::syncModeFull);
  adapter->onFwdAction(id);
  EXPECT_EQ("258+ 6 387.0 387.2 388 389", log.told());
}

// The other side's sweep deletes what isn't announced between the markers.
TEST_F(NestedAdapterTest, WalkAnnouncesItsChildrenAnewButTellsThemOnce) {
  container->fwdActionIs("web", id, Pbr::nexthopAction);
  log.sent();
  log.demuxer->createFlowOut(adapter, Vyx::ConnectDesc(), false, 258);
  EXPECT_EQ(0, adapter->handleAttrFlowOut(258));
  EXPECT_EQ("258.0 258+ 258.2 259.0 259.2", log.told());
}

TEST_F(NestedAdapterTest, InstantiateSerializesEveryChildAttribute) {
  silentChild();
  adapter->flagIs(StreamAdapter::outAttachedFlag, false);
  container->dscpActionIs("voice", id, Pbr::Dscp(1));
  adapter->flagIs(StreamAdapter::outAttachedFlag, true);
  adapter->vyxInstantiateSerialize();
  EXPECT_EQ("258+ 6 387.0 387.2 388 389 259+ 6", log.told());
}

TEST(InstantiateSerialize, OfAConfigWritesItsThreeChildren) {
  LogEnd log;
  Ptr<Pbr::Config> const config = Pbr::configFactory("pbr");
  auto const adapter = log.join(config);
  adapter->vyxInstantiateSerialize();
  std::string const told = log.told();
  std::size_t const first = told.find("261+");
  std::size_t const second = told.find("262+");
  EXPECT_EQ(0U, first);
  EXPECT_LT(first, second);
  EXPECT_LT(second, told.find("263+"));
}

// The two failures.

TEST_F(NestedAdapterTest, RecordLeftOpenIsAnsweredByRepeating) {
  log.out->nextHeaderIs({adapter->entityId(), 1, true});
  container->fwdActionIs("web", id, Pbr::nexthopAction);
  EXPECT_EQ("258+ 6 387.0 387.2 388 389", log.told());
}

class ReferenceTest : public testing::Test {
protected:
  unsigned dirty() const { return adapter->flowOut()->vyxDirtyBitSet1()->word(); }

  LogEnd log;
  Ptr<Pbr::Status> parent = Pbr::statusFactory("status");
  Ptr<Pbr::PbrClassMapStatus> status = Pbr::pbrClassMapStatusFactory("web", id);
  Ptr<Pbr::PbrClassMapStatus::VyxNboAttrLogSa> adapter = log.join(status);
  Ptr<Pbr::NexthopIndexAndL2AdjKey> resolved = Pbr::nexthopIndexAndL2AdjKeyFactory(Pbr::NexthopSet());
};

TEST_F(ReferenceTest, EntityOfNoTreeIsAnnouncedByItselfBeforeTheReference) {
  status->nexthopIndexAndL2AdjKeyIs(resolved);
  std::string const told = log.told();
  EXPECT_EQ(0U, told.find("136 "));
  EXPECT_EQ(told.size() - 4, told.rfind(" 388"));
  EXPECT_TRUE(log.adapter(resolved)->isWeakReference());
}

TEST_F(ReferenceTest, EntityThatWillBeAnnouncedMakesTheReferenceWait) {
  auto const above = log.join(parent);
  resolved->parentIs(parent);
  status->nexthopIndexAndL2AdjKeyIs(resolved);
  EXPECT_EQ("", log.told());
  ASSERT_TRUE(adapter->flowOut());
  EXPECT_EQ(4U, dirty());
  EXPECT_TRUE(adapter->flowOut()->isSuspended());
  EXPECT_EQ(388, adapter->flowOut()->attrId());
  resolved->parentIs(nullptr);
}

TEST_F(ReferenceTest, NextRunBeginsAtTheReferenceThatWaits) {
  auto const above = log.join(parent);
  resolved->parentIs(parent);
  status->nexthopIndexAndL2AdjKeyIs(resolved);
  EXPECT_FALSE(log.demuxer->runFlowOuts());
  EXPECT_EQ(388, adapter->flowOut()->vyxResumeAid());
  EXPECT_EQ(1U, log.demuxer->waitingFlowOuts());
  log.join(resolved)->flagIs(StreamAdapter::childAnnouncedFlag, true);
  EXPECT_TRUE(log.demuxer->runFlowOuts());
  EXPECT_EQ("388", log.told());
  resolved->parentIs(nullptr);
}

TEST_F(ReferenceTest, RecordLeftOpenIsAnsweredByRepeating) {
  log.join(resolved)->flagIs(StreamAdapter::childAnnouncedFlag, true);
  log.out->nextHeaderIs({adapter->entityId(), 1, true});
  status->nexthopIndexAndL2AdjKeyIs(resolved);
  EXPECT_EQ("388", log.told());
}

// Both sides, through the log.

TEST(NestedTree, IsTheSameOnBothSidesAfterAnyChange) {
  LogEnd writer(Demuxer::accepting);
  LogEnd reader(Demuxer::connecting);
  Ptr<Pbr::Config> const left = Pbr::configFactory("pbr");
  Ptr<Pbr::Config> const right = Pbr::configFactory("pbr");
  auto const adapter = writer.join(left);
  adapter->flagIs(StreamAdapter::childAnnouncedFlag, true);
  reader.joinAs(right, adapter->entityId());
  adapter->doThis();
  pass(writer, reader);
  EXPECT_EQ(treeText(*left), treeText(*right));
  auto const actions = left->pbrActions();
  actions->fwdActionIs("web", id, Pbr::nexthopAction)->nexthopIs(Lomu::IpGenAddr("10.0.0.1"), true);
  actions->dscpActionIs("voice", otherId, Pbr::Dscp(46));
  pass(writer, reader);
  EXPECT_EQ(treeText(*left), treeText(*right));
  actions->fwdActionDel(id);
  left->pmapTypeDel();
  pass(writer, reader);
  EXPECT_EQ(treeText(*left), treeText(*right));
}

} // namespace
} // namespace replication_test
