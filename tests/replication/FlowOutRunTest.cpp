// The runs that write what is owed: in which order, where they stop, and where they go on.

#include "OneAction.h"

#include "Pbr/PbrActionContainerSa.h"
#include "Pbr/PbrActionSetDscpSa.h"
#include "support/Allocations.h"
#include "support/SlotOf.h"

#include <gmock/gmock.h>

namespace replication_test {
namespace {

class FlowOutRunTest : public OneAction {
protected:
  // Runs as the policy says; it is asked by way of `asked`, which may do something else, too.
  void ask(std::function<bool()> asked) {
    asked_ = std::move(asked);
    log.demuxer->throttleIs([](void* context) { return (*static_cast<std::function<bool()>*>(context))(); },
                            &asked_);
  }
  void suspend() {
    auto const flowOut = adapter->flowOut();
    flowOut->vyxDataBitsIs(flowOut->vyxDataBits() | FlowOut::flowOutSuspendedBit);
  }
  // The policy that suspends, but doesn't stop.
  void suspendWhenAsked() {
    ask([this] { return suspend(), true; });
  }
  Lomu::IpGenAddr keyAt(unsigned place) const {
    auto at = action->nexthopIteratorConst();
    while (place-- > 0) ++at;
    return at.key();
  }
  Lomu::IpGenAddr bookmark() const {
    return *static_cast<Lomu::IpGenAddr const*>(adapter->flowOut()->bookmark());
  }

private:
  std::function<bool()> asked_;
};

// Runs.

TEST_F(FlowOutRunTest, FullRunWritesEverythingInOrder) {
  action->nexthopIs(address, true);
  join();
  owe(0);
  EXPECT_EQ(0, adapter->handleAttrFlowOut(0));
  EXPECT_EQ("6 387.0 387 387.2 388 389", log.told());
}

TEST_F(FlowOutRunTest, RunBeginsAtTheAttributeGiven) {
  join();
  owe(0);
  EXPECT_EQ(0, adapter->handleAttrFlowOut(387));
  EXPECT_EQ("387.0 387.2 388 389", log.told());
  EXPECT_EQ(0, adapter->handleAttrFlowOut(389));
  EXPECT_EQ("389", log.told());
}

TEST_F(FlowOutRunTest, RunFromNoRungWritesNothing) {
  join();
  owe(0);
  for (Vyx::AttributeId aid : {390, 1000, kNothing}) EXPECT_EQ(0, adapter->handleAttrFlowOut(aid));
  EXPECT_EQ("", log.told());
}

TEST_F(FlowOutRunTest, RunWithoutAFlowOutWritesNothing) {
  join();
  EXPECT_EQ(0, adapter->handleAttrFlowOut(0));
  EXPECT_EQ("", log.told());
  EXPECT_FALSE(adapter->flag(StreamAdapter::handlingScheduledFlowOutFlag));
}

TEST_F(FlowOutRunTest, ScheduledFlagIsRestored) {
  join();
  owe(0);
  adapter->handleAttrFlowOut(0);
  EXPECT_FALSE(adapter->flag(StreamAdapter::handlingScheduledFlowOutFlag));
  adapter->flagIs(StreamAdapter::handlingScheduledFlowOutFlag, true);
  adapter->handleAttrFlowOut(0);
  EXPECT_TRUE(adapter->flag(StreamAdapter::handlingScheduledFlowOutFlag));
}

TEST_F(FlowOutRunTest, ScheduledFlagIsRestoredWhenTheRunThrows) {
  join(followerFlags());
  owe(0);
  EXPECT_THROW(adapter->handleAttrFlowOut(387), Vyx::ReadOnlyException);
  EXPECT_FALSE(adapter->flag(StreamAdapter::handlingScheduledFlowOutFlag));
}

TEST_F(FlowOutRunTest, RunWithoutAFlowOutClearsTheScheduledFlagMeanwhile) {
  join()->flagIs(StreamAdapter::handlingScheduledFlowOutFlag, true);
  int asked = 0;
  ask([&] {
    EXPECT_FALSE(adapter->flag(StreamAdapter::handlingScheduledFlowOutFlag));
    return ++asked;
  });
  adapter->handleAttrFlowOut(0);
  EXPECT_LT(0, asked);
  EXPECT_TRUE(adapter->flag(StreamAdapter::handlingScheduledFlowOutFlag));
}

TEST_F(FlowOutRunTest, CollectionIsOwedNoMoreOnceItsWalkIsDoneAndDirectScalarsStayMarked) {
  join();
  owe(0);
  adapter->handleAttrFlowOut(0);
  EXPECT_EQ(2U | 4U, dirty());
}

// The policy is asked before each level's first rung, and behind each rung.
TEST_F(FlowOutRunTest, StopsBehindEachRungAndSaysWhereToResume) {
  join();
  owe(0);
  log.allow(0);
  EXPECT_EQ(6, adapter->handleAttrFlowOut(0));
  EXPECT_EQ("", log.told());
  log.allow(1);
  EXPECT_EQ(387, adapter->handleAttrFlowOut(0));
  EXPECT_EQ("6", log.told());
  log.allow(0);
  EXPECT_EQ(388, adapter->handleAttrFlowOut(387));
  EXPECT_EQ("387.0 387.2", log.told());
  log.allow(0);
  EXPECT_EQ(389, adapter->handleAttrFlowOut(388));
  EXPECT_EQ("388", log.told());
  log.allow(0);
  EXPECT_EQ(0, adapter->handleAttrFlowOut(389));
  EXPECT_EQ("389", log.told());
}

TEST_F(FlowOutRunTest, BehindACollectionAStopWithNothingDirtyIsTheEnd) {
  join();
  owe()->vyxDirtyBitSet1()->vyxIsNexthopDirtyIs(true);
  log.allow(0);
  EXPECT_EQ(0, adapter->handleAttrFlowOut(387));
}

TEST_F(FlowOutRunTest, RunFollowsAttrId) {
  join();
  auto const flowOut = owe();
  adapter->handleAttrFlowOut(387);
  EXPECT_EQ(389, flowOut->attrId());
}

TEST_F(FlowOutRunTest, SuspendedFlowResumesAtTheAttributeOfTheStop) {
  struct Suspending : Sa {
    using Sa::Sa;
    void onRecursive() override { suspend(); }
    void onNexthopGroup() override { suspend(); }
    void suspend() { flowOut()->vyxDataBitsIs(FlowOut::flowOutSuspendedBit); }
  };
  auto const suspending = Vyx::ptrFromNew(new Suspending(directFlags(), action, 0, log.out, nullptr));
  suspending->vyxOnInit();
  log.demuxer->createFlowOut(suspending, Vyx::ConnectDesc(), false, 0);
  EXPECT_EQ(388, suspending->handleAttrFlowOut(388));
  EXPECT_EQ(389, suspending->handleAttrFlowOut(389));
}

TEST_F(FlowOutRunTest, SuspendedCollectionResumesAtItself) {
  addThree();
  join();
  oweNexthops();
  suspendWhenAsked();
  EXPECT_EQ(387, adapter->handleAttrFlowOut(387));
  EXPECT_EQ(1U, dirty());
  log.allowAll();
  EXPECT_EQ(0, adapter->handleAttrFlowOut(387));
  EXPECT_FALSE(adapter->flowOut()->bookmark());
}

TEST_F(FlowOutRunTest, RunClearsTheSuspension) {
  join();
  auto const flowOut = owe();
  flowOut->vyxDataBitsIs(0xff);
  EXPECT_EQ(0, adapter->handleAttrFlowOut(388));
  EXPECT_EQ(0xef, flowOut->vyxDataBits());
}

TEST_F(FlowOutRunTest, PendingAbortsGoOutBeforeAnythingElseAndOnlyOnce) {
  join();
  auto const flowOut = owe();
  flowOut->vyxDirtyBitSet1()->vyxIsRecursiveDirtyIs(true);
  flowOut->pendingAbortIs(387, true);
  adapter->handleAttrFlowOut(0);
  EXPECT_EQ("387.1 388", log.told());
  EXPECT_EQ(0U, flowOut->pendingAborts().count());
  adapter->handleAttrFlowOut(0);
  EXPECT_EQ("388", log.told());
}

TEST_F(FlowOutRunTest, EveryPendingAbortIsSent) {
  join();
  auto const flowOut = owe();
  for (Vyx::AttributeId aid : {6, 387, 388, 389}) flowOut->pendingAbortIs(aid, true);
  adapter->handleAttrFlowOut(0);
  EXPECT_EQ(0U, flowOut->pendingAborts().count());
  std::string const told = ' ' + log.told() + ' ';
  for (char const* marker : {" 6.1 ", " 387.1 ", " 388.1 ", " 389.1 "})
    EXPECT_THAT(told, testing::HasSubstr(marker));
}

TEST_F(FlowOutRunTest, AbortThatIsTakenBackIsNotSent) {
  join();
  auto const flowOut = owe();
  flowOut->pendingAbortIs(387, true);
  flowOut->pendingAbortIs(387, false);
  EXPECT_EQ(0U, flowOut->pendingAborts().count());
  adapter->handleAttrFlowOut(0);
  EXPECT_EQ("", log.told());
}

TEST_F(FlowOutRunTest, AbandonedWalkIsAbortedByTheNextRun) {
  addThree();
  join();
  oweNexthops();
  log.allow(0);
  adapter->handleAttrFlowOut(387);
  ASSERT_TRUE(adapter->flowOut()->bookmark());
  log.told();
  log.allowAll();
  adapter->doThis();
  EXPECT_EQ("387.1 6 387.0 387 387 387 387.2 388 389", log.told());
}

TEST_F(FlowOutRunTest, LadderOfAFirstLevelBeginsAtNondestructing) {
  Ptr<Pbr::PbrActionContainer> const container = Pbr::pbrActionContainerFactory("Pbr");
  auto const top = log.join(container);
  log.demuxer->createFlowOut(top, Vyx::ConnectDesc(), false, 0);
  log.allow(0);
  EXPECT_EQ(6, top->handleAttrFlowOut(0));
  log.allow(0);
  EXPECT_EQ(258, top->handleAttrFlowOut(6));
  log.allow(0);
  EXPECT_EQ(259, top->handleAttrFlowOut(258));
  log.allow(0);
  EXPECT_EQ(0, top->handleAttrFlowOut(259));
  EXPECT_EQ("6 258.0 258.2 259.0 259.2", log.told());
}

TEST_F(FlowOutRunTest, TypeWithoutOwnAttributesForwardsToItsBase) {
  Ptr<Pbr::PbrActionSetDscp> const dscp = Pbr::pbrActionSetDscpFactory("web", id, Pbr::Dscp(1));
  auto const top = log.join(dscp);
  log.demuxer->createFlowOut(top, Vyx::ConnectDesc(), false, 0);
  EXPECT_EQ(0, top->handleAttrFlowOut(0));
  EXPECT_EQ("6", log.told());
}

// Walks.

TEST_F(FlowOutRunTest, EmptyCollectionIsABeginAndAnEnd) {
  join();
  owe()->attrIdIs(387);
  EXPECT_TRUE(adapter->vyxHandleNexthopSerializeColl());
  EXPECT_EQ("387.0 387.2", log.told());
}

TEST_F(FlowOutRunTest, OutsideItsAttributeAWalkHasNoEndMarker) {
  join();
  owe()->attrIdIs(388);
  EXPECT_TRUE(adapter->vyxHandleNexthopSerializeColl());
  EXPECT_EQ("387.0", log.told());
}

TEST_F(FlowOutRunTest, WithoutAFlowOutAWalkHasNoMarkers) {
  addThree();
  join();
  EXPECT_TRUE(adapter->vyxHandleNexthopSerializeColl());
  EXPECT_EQ("387 387 387", log.told());
}

TEST_F(FlowOutRunTest, GuardsOfAWalk) {
  addThree();
  join()->flagIs(StreamAdapter::syncRelayFlag, true);
  EXPECT_FALSE(adapter->vyxHandleNexthopSerializeColl());
  adapter->flagIs(StreamAdapter::syncRelayFlag, false);
  log.demuxer->flowInIs(adapter->entityId())->aidIs(387);
  EXPECT_FALSE(adapter->vyxHandleNexthopSerializeColl());
  log.demuxer->flowInDel(adapter->entityId());
  adapter->flagIs(StreamAdapter::flowOutHeldFlag, true);
  EXPECT_TRUE(adapter->vyxHandleNexthopSerializeColl());
  EXPECT_EQ("", log.told());
}

TEST_F(FlowOutRunTest, StoppedWalkResumesBehindWhatIsWrittenInTheSameTransaction) {
  addThree();
  join();
  auto const flowOut = owe();
  flowOut->vyxDirtyBitSet1()->vyxIsNexthopDirtyIs(true);
  log.allow(0);
  EXPECT_EQ(387, adapter->handleAttrFlowOut(387));
  EXPECT_EQ("387.0 387", log.told());
  EXPECT_TRUE(flowOut->bookmark());
  EXPECT_EQ(1U, dirty());
  log.allow(1);
  EXPECT_EQ(0, adapter->handleAttrFlowOut(387));
  EXPECT_EQ("387 387 387.2", log.told());
  EXPECT_FALSE(flowOut->bookmark());
  EXPECT_EQ(0U, dirty());
}

TEST_F(FlowOutRunTest, StopOfAWalkTakesOneKey) {
  addThree();
  join();
  oweNexthops();
  log.fill();
  log.sent();
  log.allow(0);
  EXPECT_EQ(1U, allocations::takenBy([&] { adapter->handleAttrFlowOut(387); }));
}

TEST_F(FlowOutRunTest, SuspendedWalkStaysAtItsKey) {
  addThree();
  join();
  owe()->attrIdIs(387);
  suspend();
  EXPECT_FALSE(adapter->vyxHandleNexthopSerializeColl());
  EXPECT_EQ("387.0 387", log.told());
  EXPECT_EQ(keyAt(0), bookmark());
}

TEST_F(FlowOutRunTest, SuspendedWalkWithoutRoomStaysAtItsKey) {
  addThree();
  join();
  owe()->attrIdIs(387);
  suspend();
  log.allow(0);
  EXPECT_FALSE(adapter->vyxHandleNexthopSerializeColl());
  EXPECT_EQ("387.0 387", log.told());
  EXPECT_EQ(keyAt(0), bookmark());
}

TEST_F(FlowOutRunTest, BitSetByThePolicyIsNotSeenByTheWalk) {
  addThree();
  join();
  owe()->attrIdIs(387);
  suspendWhenAsked();
  EXPECT_FALSE(adapter->vyxHandleNexthopSerializeColl());
  EXPECT_EQ("387.0 387 387", log.told());
  EXPECT_EQ(keyAt(1), bookmark());
}

TEST_F(FlowOutRunTest, EveryKeyIsWrittenOnceHoweverOftenAWalkStops) {
  addThree();
  join();
  owe()->vyxDirtyBitSet1()->vyxIsNexthopDirtyIs(true);
  LogEnd reader(Demuxer::connecting);
  Ptr<Pbr::PbrFwdAction> const copy = Pbr::pbrFwdActionFactory("web", id, Pbr::nexthopAction);
  reader.joinAs(copy, adapter->entityId());
  for (Vyx::AttributeId at = 387; at != 0;) {
    log.allow(0);
    at = adapter->handleAttrFlowOut(at);
    pass(log, reader);
  }
  EXPECT_EQ(treeText(*action), treeText(*copy));
}

TEST_F(FlowOutRunTest, StopBehindTheLastKeyEndsTheTransactionAndLeavesNoBookmark) {
  addThree();
  join();
  auto const flowOut = owe();
  flowOut->vyxDirtyBitSet1()->vyxIsNexthopDirtyIs(true);
  log.allow(2);
  adapter->handleAttrFlowOut(387);
  EXPECT_EQ("387.0 387 387 387 387.2", log.told());
  EXPECT_FALSE(flowOut->bookmark());
  EXPECT_EQ(0U, dirty());
}

TEST_F(FlowOutRunTest, BookmarkedKeyThatIsGoneResumesAtTheNextOne) {
  addThree();
  join();
  auto const flowOut = owe();
  flowOut->attrIdIs(387);
  auto const first = action->nexthopIteratorConst();
  auto second = first;
  ++second;
  Vyx::NboAttrLog::vyxBookmarkEnq<Lomu::IpGenAddr>(*flowOut, second.key());
  action->nexthopDel(Lomu::IpGenAddr(second.key()));
  log.sent();
  EXPECT_TRUE(adapter->vyxHandleNexthopSerializeColl());
  EXPECT_EQ("387 387.2", log.told());
}

TEST_F(FlowOutRunTest, SecondBookmarkAborts) {
  addThree();
  join();
  auto const flowOut = owe();
  Vyx::NboAttrLog::vyxBookmarkEnq<Lomu::IpGenAddr>(*flowOut, address);
  EXPECT_DEATH(Vyx::NboAttrLog::vyxBookmarkEnq<Lomu::IpGenAddr>(*flowOut, address),
               "^Vyx/NboAttrLogFlow:23: assertion failed: !rsc->bookmark\\(\\)\n$");
  Vyx::NboAttrLog::vyxBookmarkDel<Lomu::IpGenAddr>(*flowOut);
}

TEST_F(FlowOutRunTest, ChangeBeforeThePlaceOfAStopIsWrittenAfterAll) {
  addThree();
  join();
  owe(0);
  log.allow(4); // As above.
  log.demuxer->runFlowOuts();
  log.sent();
  log.fill();
  action->isNondestructingIs(true);
  log.sent();
  log.allowAll();
  EXPECT_TRUE(log.demuxer->runFlowOuts());
  EXPECT_NE(std::string::npos, log.told().find(" 6"));
  action->isNondestructingIs(false);
}

// A key that a stopped walk has passed may change before the walk goes on.
TEST_F(FlowOutRunTest, ChangeBehindAStoppedWalkIsWrittenAfterAll) {
  addThree();
  join();
  LogEnd reader(Demuxer::connecting);
  Ptr<Pbr::PbrFwdAction> const copy = Pbr::pbrFwdActionFactory("web", id, Pbr::nexthopAction);
  reader.joinAs(copy, adapter->entityId());
  owe()->vyxDirtyBitSet1()->vyxIsNexthopDirtyIs(true);
  log.allow(4); // Its turn, around the rung of the base, before the own ones; not behind the first key.
  log.demuxer->runFlowOuts();
  ASSERT_TRUE(adapter->flowOut()->bookmark());
  pass(log, reader);
  ASSERT_EQ(1U, copy->nexthops());
  Lomu::IpGenAddr const passed = copy->nexthopIteratorConst().key();
  log.fill();
  action->nexthopDel(passed);
  pass(log, reader);
  log.allowAll();
  EXPECT_TRUE(log.demuxer->runFlowOuts());
  pass(log, reader);
  EXPECT_EQ(treeText(*action), treeText(*copy));
}

TEST_F(FlowOutRunTest, WalkThatWaitsForAnIncomingOneGoesOnBehindIt) {
  addThree();
  join();
  log.fill();
  action->nexthopDel(address);
  log.sent();
  log.demuxer->flowInIs(adapter->entityId())->aidIs(387);
  EXPECT_FALSE(log.demuxer->runFlowOuts());
  EXPECT_EQ("", log.told());
  log.demuxer->flowInDel(adapter->entityId());
  EXPECT_TRUE(log.demuxer->runFlowOuts());
  EXPECT_EQ("387.0 387 387 387.2", log.told());
}

TEST_F(FlowOutRunTest, RunGoesOnAboveAWalkThatItsGuardsRefuse) {
  addThree();
  join();
  owe(387);
  log.demuxer->flowInIs(adapter->entityId())->aidIs(387);
  EXPECT_EQ(0, adapter->handleAttrFlowOut(387));
  EXPECT_EQ("388 389", log.told());
  EXPECT_EQ(1U, dirty() & 1U);
  log.allow(0);
  EXPECT_EQ(387, adapter->handleAttrFlowOut(387));
  EXPECT_EQ("", log.told());
}

TEST_F(FlowOutRunTest, RefusedWalkIsWrittenWhenWhatRefusedItIsOver) {
  addThree();
  join();
  owe(0);
  log.demuxer->flowInIs(adapter->entityId())->aidIs(387);
  EXPECT_FALSE(log.demuxer->runFlowOuts());
  EXPECT_EQ("6 388 389", log.told());
  log.demuxer->flowInDel(adapter->entityId());
  EXPECT_TRUE(log.demuxer->runFlowOuts());
  EXPECT_EQ("387.0 387 387 387 387.2 388 389", log.told());
}

// The attributes above would take its bookmark for theirs.
TEST_F(FlowOutRunTest, StoppedWalkStopsTheRunEvenIfThereIsRoomAgain) {
  addThree();
  join();
  owe(387);
  bool isFirst = true;
  ask([&] { return !std::exchange(isFirst, false); });
  EXPECT_EQ(387, adapter->handleAttrFlowOut(387));
  EXPECT_EQ("387.0 387", log.told());
}

// The table.

TEST(FlowOutSlots, OperationsStandInTheirOrder) {
  using Forward = FlowOut::ForwardRefIterator;
  using Aborts = FlowOut::PendingAbortIterator;
  std::size_t const first = slotCount<Vyx::PtrInterface>();
  expectSlotsFrom(first, {slotOf(&FlowOut::hasDirtyAttributes),
                          slotOf<Ptr<StreamAdapter> (FlowOut::*)(unsigned)>(&FlowOut::forwardRefDel),
                          slotOf<Ptr<StreamAdapter> (FlowOut::*)(Forward&)>(&FlowOut::forwardRefDel),
                          slotOf(&FlowOut::forwardRefNotify),
                          slotOf(&FlowOut::forwardRefEnq),
                          slotOf(&FlowOut::forwardRefDeq),
                          slotOf(&FlowOut::forwardRefIs),
                          slotOf(&FlowOut::attrIdIs),
                          slotOf(&FlowOut::bookmarkIs),
                          slotOf(&FlowOut::entityIdStatusIs),
                          slotOf(&FlowOut::entityIdSeqnoIs),
                          slotOf(&FlowOut::valueIterIs),
                          slotOf(&FlowOut::valueIterKeyIs),
                          slotOf(&FlowOut::outstandingKeysInc),
                          slotOf(&FlowOut::outstandingKeysIs),
                          slotOf(&FlowOut::vyxDataBitsIs),
                          slotOf(&FlowOut::indIs),
                          slotOf(&FlowOut::entityVersionIs),
                          slotOf<bool (FlowOut::*)(Vyx::AttributeId)>(&FlowOut::pendingAbortDel),
                          slotOf<bool (FlowOut::*)(Aborts&)>(&FlowOut::pendingAbortDel),
                          slotOf(&FlowOut::pendingAbortNotify),
                          slotOf(&FlowOut::pendingAbortIs),
                          slotOf(&FlowOut::streamAdapterIs),
                          slotCount<FlowOut>()});
}

} // namespace
} // namespace replication_test
