// What becomes of a change: it is written at once, or owed and written by a later run, which stops and
// resumes.

#include "OneLog.h"

#include "Pbr/CheckpointAgentStatusSa.h"
#include "Pbr/CheckpointStatusSa.h"
#include "Pbr/ClassMapCheckpointStatusSa.h"
#include "Pbr/ConfigCopyHandlerDirSa.h"
#include "Pbr/ConfigSa.h"
#include "Pbr/NexthopIndexAndL2AdjKeySa.h"
#include "Pbr/PbrAclCheckpointStatusSa.h"
#include "Pbr/PbrAclTypeCheckpointStatusSa.h"
#include "Pbr/PbrActionContainerSa.h"
#include "Pbr/PbrActionSetDscpSa.h"
#include "Pbr/PbrClassMapStatusSa.h"
#include "Pbr/PbrCopy.h"
#include "Pbr/PbrFwdActionSa.h"
#include "Pbr/PolicyMapCheckpointStatusSa.h"
#include "Pbr/PolicyMapCopyHandlerSa.h"
#include "Pbr/StatusSa.h"

namespace replication_test {
namespace {

Kest::UniqueId const id(1, 2, 3);
Lomu::IpGenAddr const address("10.0.0.1");
constexpr std::size_t kSmall = 512;
constexpr Vyx::AttributeId kNothing = INT32_MAX;

class FlowOutTest : public testing::Test {
protected:
  using Sa = Pbr::PbrFwdAction::VyxNboAttrLogSa;

  Ptr<Sa> join(Vyx_BitSet flags = directFlags()) { return adapter = log.join(action, flags); }
  // What is owed of the type's own attributes.
  unsigned dirty() const { return adapter->flowOut()->vyxDirtyBitSet1()->word(); }
  Ptr<Sa::FlowOut> owe(Vyx::AttributeId from = kNothing) {
    log.demuxer->createFlowOut(adapter, Vyx::ConnectDesc(), false, from);
    return adapter->flowOut();
  }
  void addThree() {
    for (char const* text : {"10.0.0.1", "10.0.0.2", "10.0.0.3"})
      action->nexthopIs(Lomu::IpGenAddr(text), true);
  }

  LogEnd log{Demuxer::accepting, kSmall};
  Ptr<Pbr::PbrFwdAction> action = Pbr::pbrFwdActionFactory("web", id, Pbr::nexthopAction);
  Ptr<Sa> adapter;
};

// Reactions.

TEST_F(FlowOutTest, RelayedSyncModeWritesAndMarksNothing) {
  join()->flagIs(StreamAdapter::syncRelayFlag, true);
  action->recursiveIs(true);
  action->nexthopIs(address, true);
  EXPECT_EQ("", log.told());
  EXPECT_FALSE(adapter->flowOut());
}

TEST_F(FlowOutTest, ChangeThatComesFromTheLogWritesNothing) {
  join();
  log.demuxer->flowInIs(adapter->entityId())->aidIs(388);
  action->recursiveIs(true);
  EXPECT_EQ("", log.told());
  action->nexthopIs(address, true);
  EXPECT_EQ("387", log.told());
}

TEST_F(FlowOutTest, HeldOffActiveOrUnattachedAdapterWritesNothing) {
  join();
  for (auto flag :
       {StreamAdapter::flowOutHeldFlag, StreamAdapter::flowOutOffFlag, StreamAdapter::isActiveFlag}) {
    adapter->flagIs(flag, true);
    action->recursiveIs(!action->recursive());
    EXPECT_EQ("", log.told()) << flag;
    adapter->flagIs(flag, false);
  }
  adapter->flagIs(StreamAdapter::outAttachedFlag, false);
  action->recursiveIs(!action->recursive());
  EXPECT_EQ("", log.told());
}

TEST_F(FlowOutTest, ReactionClearsIsActiveHoweverItEnds) {
  join()->flagIs(StreamAdapter::isActiveFlag, true);
  action->recursiveIs(true);
  EXPECT_FALSE(adapter->flag(StreamAdapter::isActiveFlag));
  adapter->flagIs(StreamAdapter::isActiveFlag, true);
  adapter->onNexthop(address);
  EXPECT_FALSE(adapter->flag(StreamAdapter::isActiveFlag));
}

TEST_F(FlowOutTest, ReadOnlyAdapterRefusesTheChange) {
  join(followerFlags());
  EXPECT_EQ("read-only entity web, attribute recursive",
            refusal<Vyx::ReadOnlyException>([&] { action->recursiveIs(true); }));
  EXPECT_EQ("read-only entity web, attribute nexthop",
            refusal<Vyx::ReadOnlyException>([&] { adapter->onNexthop(address); }));
  EXPECT_EQ("read-only entity web, attribute nexthop",
            refusal<Vyx::ReadOnlyException>([&] { adapter->vyxHandleNexthopSerializeColl(); }));
  EXPECT_EQ("", log.told());
}

TEST_F(FlowOutTest, WithRoomADirectChangeIsWrittenAndNothingIsOwed) {
  join();
  action->recursiveIs(true);
  action->nexthopGroupIs("g");
  action->nexthopIs(address, true);
  action->nexthopDel(address);
  EXPECT_EQ("388 389 387 -387", log.told());
  EXPECT_FALSE(adapter->flowOut());
}

TEST_F(FlowOutTest, WithoutRoomADirectChangeOwesThatAttributeAlone) {
  join();
  log.fill();
  action->recursiveIs(true);
  ASSERT_TRUE(adapter->flowOut());
  EXPECT_EQ(2U, dirty());
  EXPECT_EQ(388, adapter->flowOut()->attrId());
  EXPECT_EQ("", log.told());
}

TEST_F(FlowOutTest, ForceFlowOutOwesEvenWithRoom) {
  join()->flagIs(StreamAdapter::forceFlowOutFlag, true);
  action->nexthopIs(address, true);
  EXPECT_EQ(1U, dirty());
  EXPECT_EQ("", log.told());
}

TEST_F(FlowOutTest, InAScheduledRunADirectChangeIsWrittenInSpiteOfEverything) {
  join()->flagIs(StreamAdapter::forceFlowOutFlag, true);
  adapter->flagIs(StreamAdapter::handlingScheduledFlowOutFlag, true);
  log.fill();
  action->recursiveIs(true);
  EXPECT_EQ("388", log.told());
  EXPECT_FALSE(adapter->flowOut());
}

TEST_F(FlowOutTest, PoliteChangeIsWrittenWithRoomAndOwedWithout) {
  join(politeFlags());
  action->recursiveIs(true);
  EXPECT_EQ("388", log.told());
  log.fill();
  action->recursiveIs(false);
  EXPECT_EQ(2U, dirty());
  EXPECT_EQ("", log.told());
}

TEST_F(FlowOutTest, WrittenPoliteScalarIsOwedNoMore) {
  join(politeFlags());
  owe()->vyxDirtyBitSet1()->vyxIsRecursiveDirtyIs(true);
  adapter->flagIs(StreamAdapter::handlingScheduledFlowOutFlag, true);
  adapter->onRecursive();
  EXPECT_EQ(0U, dirty());
  EXPECT_EQ("388", log.told());
}

TEST_F(FlowOutTest, WrittenPoliteMemberLeavesItsCollectionOwed) {
  join(politeFlags());
  owe()->vyxDirtyBitSet1()->vyxIsNexthopDirtyIs(true);
  adapter->flagIs(StreamAdapter::handlingScheduledFlowOutFlag, true);
  adapter->onNexthop(address);
  EXPECT_EQ(1U, dirty());
  EXPECT_EQ("-387", log.told());
}

TEST_F(FlowOutTest, ManyChangesAreOwedOnceAndWrittenWithTheLastValue) {
  join();
  log.fill();
  for (char const* text : {"a", "b", "c"}) action->nexthopGroupIs(text);
  log.sent();
  EXPECT_TRUE(log.demuxer->runFlowOuts());
  LogEnd reader(Demuxer::connecting);
  Ptr<Pbr::PbrFwdAction> const copy = Pbr::pbrFwdActionFactory("web", id, Pbr::nexthopAction);
  reader.joinAs(copy, adapter->entityId());
  Bytes const bytes = log.sent();
  reader.receive(bytes);
  reader.apply();
  EXPECT_EQ("c", copy->nexthopGroup());
  EXPECT_EQ(20U + 5, bytes.size());
  EXPECT_FALSE(adapter->flowOut());
}

TEST_F(FlowOutTest, MissingKeyIsWrittenNegatedWithTheKeyAlone) {
  join();
  adapter->vyxHandleNexthopSerializeSing(address, false, true);
  EXPECT_EQ(20U + 20, log.out->pendingBytes());
  EXPECT_EQ("-387", log.told());
  adapter->vyxHandleNexthopSerializeSing(address, false, false);
  EXPECT_EQ(20U + 21, log.out->pendingBytes());
}

// Dirty bits.

template <class Sa, class X> unsigned dirtyFrom(X const& entity, Vyx::AttributeId first) {
  LogEnd log;
  auto const adapter = log.join(entity);
  log.demuxer->createFlowOut(adapter, Vyx::ConnectDesc(), false, first);
  return adapter->flowOut()->vyxDirtyBitSet1()->word();
}
// The bits of the attributes from each of these ids on, and none from beyond the last.
template <class X> void expectBits(Ptr<X> const& entity, std::initializer_list<Vyx::AttributeId> ids) {
  using Sa = typename X::VyxNboAttrLogSa;
  unsigned const all = (1U << ids.size()) - 1;
  unsigned below = 0;
  for (Vyx::AttributeId aid : ids) {
    EXPECT_EQ(all & ~below, dirtyFrom<Sa>(entity, aid)) << aid;
    below = below << 1 | 1;
    EXPECT_EQ(all & ~below, dirtyFrom<Sa>(entity, aid + 1)) << aid;
  }
  EXPECT_EQ(all, dirtyFrom<Sa>(entity, 0));
  EXPECT_EQ(0U, dirtyFrom<Sa>(entity, kNothing));
}
template <class X> Ptr<X> named() { return Vyx::ptrFromNew(new X("x")); }

TEST(DirtyBits, StandInTheOrderOfTheAttributes) {
  expectBits(Pbr::pbrFwdActionFactory("web", id, Pbr::nexthopAction), {387, 388, 389});
  expectBits(named<Pbr::PbrActionContainer>(), {6, 258, 259});
  expectBits(named<Pbr::Config>(), {6, 258, 259, 260, 261, 262, 263});
  expectBits(Pbr::nexthopIndexAndL2AdjKeyFactory(Pbr::NexthopSet()), {6, 259, 260, 261, 262, 263});
  expectBits(Pbr::pbrClassMapStatusFactory("web", id), {386, 387, 388});
  expectBits(named<Pbr::Status>(), {386});
  expectBits(named<Pbr::PbrAclCheckpointStatus>(), {6, 258, 259, 260});
  expectBits(Ptr<Pbr::PbrAclTypeCheckpointStatus>(
                 Vyx::ptrFromNew(new Pbr::PbrAclTypeCheckpointStatus("x", Acl::ip))),
             {6, 259});
  expectBits(named<Pbr::ClassMapCheckpointStatus>(), {6, 258, 259, 260});
  expectBits(named<Pbr::PolicyMapCheckpointStatus>(), {6, 258, 259});
  expectBits(named<Pbr::CheckpointAgentStatus>(), {6, 258});
  expectBits(named<Pbr::CheckpointStatus>(), {6, 258});
  expectBits(named<Pbr::ConfigCopyHandlerDir>(), {6, 258});
  expectBits(Pbr::policyMapCopyHandlerFactory(), {642});
}

TEST(DirtyBits, AreSetAndClearedByName) {
  Pbr::Config::VyxNboAttrLogSa::VyxDirtyBitSet0 config;
  config.vyxIsIsNondestructingDirtyIs(true);
  config.vyxIsBgpPbrRedirectDirtyIs(true);
  config.vyxIsPmapTypeDirtyIs(true);
  EXPECT_EQ(1U | 4U | 64U, config.word());
  config.vyxIsBgpPbrRedirectDirtyIs(false);
  EXPECT_EQ(1U | 64U, config.word());
  Pbr::PbrFwdAction::VyxNboAttrLogSa::VyxDirtyBitSet1 action;
  action.vyxIsNexthopDirtyIs(true);
  action.vyxIsNexthopGroupDirtyIs(true);
  EXPECT_EQ(1U | 4U, action.word());
  Pbr::PbrClassMapStatus::VyxNboAttrLogSa::VyxDirtyBitSet1 status;
  status.vyxIsNexthopIndexAndL2AdjKeyDirtyIs(true);
  EXPECT_EQ(4U, status.word());
  Pbr::PolicyMapCopyHandler::VyxNboAttrLogSa::VyxDirtyBitSet3 handler;
  handler.vyxIsConfigDirtyIs(true);
  EXPECT_EQ(1U, handler.word());
}

TEST_F(FlowOutTest, AnyLevelsBitMakesTheFlowOutDirty) {
  join();
  auto const flowOut = owe();
  EXPECT_FALSE(flowOut->hasDirtyAttributes());
  flowOut->vyxDirtyBitSet1()->vyxIsNexthopGroupDirtyIs(true);
  EXPECT_TRUE(flowOut->hasDirtyAttributes());
  flowOut->vyxDirtyBitSet1()->vyxIsNexthopGroupDirtyIs(false);
  PolicyMap::Action::VyxNboAttrLogSa::FlowOut& base = *flowOut;
  base.dirty()->vyxIsIsNondestructingDirtyIs(true);
  EXPECT_TRUE(flowOut->hasDirtyAttributes());
}

// Runs.

TEST_F(FlowOutTest, FullRunWritesEverythingInOrder) {
  action->nexthopIs(address, true);
  join();
  owe(0);
  EXPECT_EQ(0, adapter->handleAttrFlowOut(0));
  EXPECT_EQ("6 387.0 387 387.2 388 389", log.told());
}

TEST_F(FlowOutTest, RunBeginsAtTheAttributeGiven) {
  join();
  owe(0);
  EXPECT_EQ(0, adapter->handleAttrFlowOut(387));
  EXPECT_EQ("387.0 387.2 388 389", log.told());
  EXPECT_EQ(0, adapter->handleAttrFlowOut(389));
  EXPECT_EQ("389", log.told());
}

TEST_F(FlowOutTest, RunFromNoRungWritesNothing) {
  join();
  owe(0);
  for (Vyx::AttributeId aid : {390, 1000, kNothing}) EXPECT_EQ(0, adapter->handleAttrFlowOut(aid));
  EXPECT_EQ("", log.told());
}

TEST_F(FlowOutTest, RunWithoutAFlowOutWritesNothing) {
  join();
  EXPECT_EQ(0, adapter->handleAttrFlowOut(0));
  EXPECT_EQ("", log.told());
  EXPECT_FALSE(adapter->flag(StreamAdapter::handlingScheduledFlowOutFlag));
}

TEST_F(FlowOutTest, ScheduledFlagIsRestored) {
  join();
  owe(0);
  adapter->handleAttrFlowOut(0);
  EXPECT_FALSE(adapter->flag(StreamAdapter::handlingScheduledFlowOutFlag));
  adapter->flagIs(StreamAdapter::handlingScheduledFlowOutFlag, true);
  adapter->handleAttrFlowOut(0);
  EXPECT_TRUE(adapter->flag(StreamAdapter::handlingScheduledFlowOutFlag));
}

TEST_F(FlowOutTest, CollectionIsOwedNoMoreOnceItsWalkIsDoneAndDirectScalarsStayMarked) {
  join();
  owe(0);
  adapter->handleAttrFlowOut(0);
  EXPECT_EQ(2U | 4U, dirty());
}

// The policy is asked before each level's first rung, and behind each rung.
TEST_F(FlowOutTest, StopsBehindEachRungAndSaysWhereToResume) {
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

TEST_F(FlowOutTest, BehindACollectionAStopWithNothingDirtyIsTheEnd) {
  join();
  owe()->vyxDirtyBitSet1()->vyxIsNexthopDirtyIs(true);
  log.allow(0);
  EXPECT_EQ(0, adapter->handleAttrFlowOut(387));
}

TEST_F(FlowOutTest, RunFollowsAttrId) {
  join();
  auto const flowOut = owe();
  adapter->handleAttrFlowOut(387);
  EXPECT_EQ(389, flowOut->attrId());
}

TEST_F(FlowOutTest, SuspendedFlowResumesAtTheAttributeOfTheStop) {
  struct Suspending : Sa {
    using Sa::Sa;
    void onRecursive() override { flowOut()->vyxDataBitsIs(FlowOut::flowOutSuspendedBit); }
  };
  auto const suspending = Vyx::ptrFromNew(new Suspending(directFlags(), action, 0, log.out, nullptr));
  suspending->vyxOnInit();
  log.demuxer->createFlowOut(suspending, Vyx::ConnectDesc(), false, 0);
  EXPECT_EQ(388, suspending->handleAttrFlowOut(388));
}

TEST_F(FlowOutTest, RunClearsTheSuspension) {
  join();
  auto const flowOut = owe();
  flowOut->vyxDataBitsIs(0xff);
  EXPECT_EQ(0, adapter->handleAttrFlowOut(388));
  EXPECT_EQ(0xef, flowOut->vyxDataBits());
}

TEST_F(FlowOutTest, PendingAbortsGoOutBeforeAnythingElseAndOnlyOnce) {
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

TEST_F(FlowOutTest, LadderOfAFirstLevelBeginsAtNondestructing) {
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

TEST_F(FlowOutTest, TypeWithoutOwnAttributesForwardsToItsBase) {
  Ptr<Pbr::PbrActionSetDscp> const dscp = Pbr::pbrActionSetDscpFactory("web", id, Pbr::Dscp(1));
  auto const top = log.join(dscp);
  log.demuxer->createFlowOut(top, Vyx::ConnectDesc(), false, 0);
  EXPECT_EQ(0, top->handleAttrFlowOut(0));
  EXPECT_EQ("6", log.told());
}

// Walks.

TEST_F(FlowOutTest, EmptyCollectionIsABeginAndAnEnd) {
  join();
  owe()->attrIdIs(387);
  EXPECT_TRUE(adapter->vyxHandleNexthopSerializeColl());
  EXPECT_EQ("387.0 387.2", log.told());
}

TEST_F(FlowOutTest, OutsideItsAttributeAWalkHasNoEndMarker) {
  join();
  owe()->attrIdIs(388);
  EXPECT_TRUE(adapter->vyxHandleNexthopSerializeColl());
  EXPECT_EQ("387.0", log.told());
}

TEST_F(FlowOutTest, WithoutAFlowOutAWalkHasNoMarkers) {
  addThree();
  join();
  EXPECT_TRUE(adapter->vyxHandleNexthopSerializeColl());
  EXPECT_EQ("387 387 387", log.told());
}

TEST_F(FlowOutTest, GuardsOfAWalk) {
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

TEST_F(FlowOutTest, StoppedWalkResumesBehindWhatIsWrittenInTheSameTransaction) {
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

TEST_F(FlowOutTest, EveryKeyIsWrittenOnceHoweverOftenAWalkStops) {
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

TEST_F(FlowOutTest, StopBehindTheLastKeyEndsTheTransactionAndLeavesNoBookmark) {
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

TEST_F(FlowOutTest, BookmarkedKeyThatIsGoneResumesAtTheNextOne) {
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

TEST_F(FlowOutTest, SecondBookmarkAborts) {
  addThree();
  join();
  auto const flowOut = owe();
  Vyx::NboAttrLog::vyxBookmarkEnq<Lomu::IpGenAddr>(*flowOut, address);
  EXPECT_DEATH(Vyx::NboAttrLog::vyxBookmarkEnq<Lomu::IpGenAddr>(*flowOut, address),
               "^Vyx/NboAttrLogFlow:23: assertion failed: !rsc->bookmark\\(\\)\n$");
  Vyx::NboAttrLog::vyxBookmarkDel<Lomu::IpGenAddr>(*flowOut);
}

TEST_F(FlowOutTest, ChangeBeforeThePlaceOfAStopIsWrittenAfterAll) {
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
TEST_F(FlowOutTest, ChangeBehindAStoppedWalkIsWrittenAfterAll) {
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

TEST_F(FlowOutTest, WalkThatWaitsForAnIncomingOneGoesOnBehindIt) {
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

} // namespace
} // namespace replication_test
