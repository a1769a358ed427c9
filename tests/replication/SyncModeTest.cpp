// The sync mode of an adapter, which begins and ends the transactions of what hangs below.

#include "Transacting.h"

#include "Pbr/ConfigSa.h"
#include "PolicyMap/ClassMapTypeConfigSa.h"
#include "PolicyMap/PolicyMapTypeConfigSa.h"
#include "Vyx/Dir.h"

namespace replication_test {
namespace {

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

TEST_F(TransactionTest, RelayedBeginFromTheLogOpensNoFlowIn) {
  log.demuxer->phaseIs(Demuxer::syncing);
  log.message("8000000000000003 00000087 04 00000002");
  adapter->handleAttrDeserialization(135, {}, 4, nullptr);
  EXPECT_TRUE(isMarked(one));
  EXPECT_EQ(nullptr, log.demuxer->flowIn(kMe));
}

// The reaction to what is swept has ended the message's doing before the other reactor is called.
TEST_F(TransactionTest, ReactorsChangeDuringARelayIsNotWritten) {
  struct Changing : Pbr::PbrFwdAction::Notifiee {
    void onNexthop(Lomu::IpGenAddr const&) override { notifier()->recursiveIs(true); }
  };
  auto const changing = Vyx::ptrFromNew(new Changing);
  changing->isRegisteredNotifieeIs(true);
  changing->notifierIs(action);
  log.demuxer->phaseIs(Demuxer::syncing);
  log.message("8000000000000003 00000087 04 00000002");
  adapter->handleAttrDeserialization(135, {}, 4, nullptr);
  log.message("8000000000000003 00000087 04 00000001");
  adapter->handleAttrDeserialization(135, {}, 4, nullptr);
  EXPECT_TRUE(action->recursive());
  EXPECT_EQ("", log.told());
}

TEST(SyncMode, OfAnAdapterWithoutAnIdIsRelayedToNobody) {
  EntityId const unassigned = EntityId::fromValue(4);
  LogEnd log(Demuxer::connecting);
  auto const adapter = log.joinAs(Pbr::pbrFwdActionFactory("web", id, Pbr::nexthopAction), unassigned);
  ASSERT_EQ(adapter.ptr(), log.demuxer->reactor(unassigned));
  log.message("0000000000000004 00000087 04 00000001");
  adapter->handleAttrDeserialization(135, {}, 4, nullptr);
  EXPECT_EQ(StreamAdapter::syncModeNone, adapter->syncMode());
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

TEST_F(TransactionTest, ModeLiveLeavesAnotherEntitysEntryAlone) {
  auto const dir = Vyx::ptrFromNew(new Vyx::Dir("roots"));
  Ptr<Pbr::PbrFwdAction> const other = Pbr::pbrFwdActionFactory("web", otherId, Pbr::nexthopAction);
  Vyx::Dir::Entry& before = dir->entryIs("web");
  before.entityIs(other);
  Vyx::Dir::Entry& entry = dir->entryIs("path");
  entry.entityIs(action);
  log.message("8000000000000003 00000087 04 00000001");
  adapter->handleAttrDeserialization(135, {}, 4, nullptr);
  EXPECT_EQ(Vyx::Dir::absent, before.state());
  EXPECT_EQ(Vyx::Dir::complete, entry.state());
}

// So that what the watcher changes is written.
TEST_F(TransactionTest, ModeLiveIsToldOutsideOfTheMessage) {
  struct Watching : Vyx::Dir::Watcher {
    void onState(Name const&, Vyx::Dir::State) override { of->recursiveIs(true); }
    Pbr::PbrFwdAction* of = nullptr;
  } watching;
  watching.of = action.ptr();
  auto const dir = Vyx::ptrFromNew(new Vyx::Dir("roots"));
  dir->watcherIs(&watching);
  dir->entryIs("path").entityIs(action);
  log.message("8000000000000003 00000087 04 00000001");
  adapter->handleAttrDeserialization(135, {}, 4, nullptr);
  EXPECT_EQ("388", log.told());
}

TEST_F(TransactionTest, SyncModeWithoutADemuxerIsOnlyKept) {
  auto const alone =
      Pbr::PbrFwdAction::VyxNboAttrLogSa::VyxNboAttrLogSaIs(directFlags(), action, 0, nullptr, nullptr);
  Vyx::IsActiveAnchor const active(*alone);
  alone->syncModeIs(StreamAdapter::syncModeFull);
  EXPECT_EQ(StreamAdapter::syncModeFull, alone->syncMode());
  EXPECT_FALSE(isMarked(one));
}

// The transactions of a type with more than one collection.

// Tells which child attributes change.
struct ChangesOfContainer : Pbr::PbrActionContainer::Notifiee {
  void onFwdAction(Kest::UniqueId const&) override { told += "258 "; }
  void onDscpAction(Kest::UniqueId const&) override { told += "259 "; }
  std::string told;
};

class TwoCollectionsTest : public testing::Test {
protected:
  TwoCollectionsTest() {
    container->dscpActionIs("voice", id, Pbr::Dscp(1));
    container->fwdActionIs("web", id, Pbr::nexthopAction);
    changes->isRegisteredNotifieeIs(true);
    changes->notifierIs(container);
  }

  LogEnd log;
  Ptr<Pbr::PbrActionContainer> container = Pbr::pbrActionContainerFactory("Pbr");
  Ptr<ChangesOfContainer> changes = Vyx::ptrFromNew(new ChangesOfContainer);
};

TEST_F(TwoCollectionsTest, MadeWithinAMessageItEndsTheTransactionOfEachCollection) {
  auto flags = directFlags();
  flags.bitIs(StreamAdapter::isActiveFlag, true);
  log.join(container, flags);
  EXPECT_EQ("258 259 ", changes->told);
  EXPECT_EQ(0U, container->fwdActions() + container->dscpActions());
}

TEST_F(TwoCollectionsTest, MadeOnALiveLogItEndsNothing) {
  auto flags = directFlags();
  flags.bitIs(StreamAdapter::isActiveFlag, true);
  log.demuxer->phaseIs(Demuxer::live);
  log.join(container, flags);
  EXPECT_EQ("", changes->told);
}

TEST_F(TwoCollectionsTest, SyncModeTakesTheAttributesInAscendingOrderToTheLast) {
  auto const adapter = log.join(container);
  adapter->doSerializeOrphan();
  for (auto mode : {StreamAdapter::syncModeFull, StreamAdapter::syncModeLive}) {
    EXPECT_EQ("", changes->told);
    adapter->flagIs(StreamAdapter::isActiveFlag, true);
    adapter->syncModeIs(mode);
  }
  EXPECT_EQ("258 259 ", changes->told);
}

} // namespace
} // namespace replication_test
