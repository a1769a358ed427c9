// What becomes of a change: it is written at once, or owed.

#include "OneAction.h"

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
#include "Pbr/PolicyMapCheckpointStatusSa.h"
#include "Pbr/PolicyMapCopyHandlerSa.h"
#include "Pbr/StatusSa.h"
#include "support/Allocations.h"

namespace replication_test {
namespace {

Kest::UniqueId const id(1, 2, 3);
constexpr Vyx::AttributeId kNothing = INT32_MAX;

class FlowOutTest : public OneAction {};

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

TEST_F(FlowOutTest, ActiveReactionWithinItsTransactionClearsIsActive) {
  join()->flagIs(StreamAdapter::isActiveFlag, true);
  log.demuxer->flowInIs(adapter->entityId())->aidIs(388);
  action->recursiveIs(true);
  EXPECT_FALSE(adapter->flag(StreamAdapter::isActiveFlag));
  EXPECT_EQ("", log.told());
}

TEST_F(FlowOutTest, RelayLeavesIsActiveAlone) {
  join()->flagIs(StreamAdapter::isActiveFlag, true);
  adapter->flagIs(StreamAdapter::syncRelayFlag, true);
  action->recursiveIs(true);
  EXPECT_TRUE(adapter->flag(StreamAdapter::isActiveFlag));
}

TEST_F(FlowOutTest, AdapterWithoutALogWritesNothing) {
  action->nexthopIs(address, true);
  auto const alone = Sa::VyxNboAttrLogSaIs(directFlags(), action, 0, nullptr, nullptr);
  alone->onRecursive();
  alone->onNexthop(address);
  EXPECT_TRUE(alone->vyxHandleNexthopSerializeColl());
  EXPECT_FALSE(alone->flowOut());
  auto const status = Pbr::pbrClassMapStatusFactory("web", id);
  using StatusSa = Pbr::PbrClassMapStatus::VyxNboAttrLogSa;
  EXPECT_TRUE(StatusSa::VyxNboAttrLogSaIs(directFlags(), status, 0, nullptr, nullptr)
                  ->vyxHandleNexthopGroupSerialize());
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

TEST_F(FlowOutTest, DirectChangeIsWrittenThoughAnotherIsOwed) {
  join();
  owe()->vyxDirtyBitSet1()->vyxIsRecursiveDirtyIs(true);
  action->nexthopGroupIs("g");
  EXPECT_EQ("389", log.told());
  EXPECT_EQ(2U, dirty());
}

TEST_F(FlowOutTest, DirectChangesTakeNoMemory) {
  action->nexthopIs(address, true);
  join();
  Lomu::IpGenAddr const absent("10.9.9.9");
  auto const all = [&] {
    adapter->onRecursive();
    adapter->onNexthop(address);
    adapter->onNexthop(absent);
  };
  all();
  EXPECT_EQ("388 387 -387", log.told());
  EXPECT_EQ(0U, allocations::takenBy(all));
}

TEST_F(FlowOutTest, RecordLeftOpenIsNotRepeatedForAPlainValue) {
  action->nexthopIs(address, true);
  join();
  log.out->nextHeaderIs({adapter->entityId(), 388, false, 1});
  EXPECT_THROW(adapter->onNexthop(address), Vyx::AttrLogRecordException);
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

TEST_F(FlowOutTest, PoliteMemberWithoutRoomOwesItsCollection) {
  join(politeFlags());
  log.fill();
  action->nexthopIs(address, true);
  EXPECT_EQ(1U, dirty());
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

} // namespace
} // namespace replication_test
