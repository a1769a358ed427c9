// What a message does to the entity that it is about.

#include "Reading.h"

#include "Pbr/NexthopIndexAndL2AdjKeySa.h"
#include "PolicyMap/ClassMapTypeConfigSa.h"
#include "Vyx/MsgChannel.h"

namespace replication_test {
namespace {

// Applying and draining.

TEST_F(ActionReading, EachAttributeIsApplied) {
  apply("00000006 02 01");
  EXPECT_TRUE(entity->isNondestructing());
  apply("00000006 02 00");
  apply("00000183 01" + std::string(kAddress) + "01");
  EXPECT_TRUE(entity->nexthop(address));
  apply("00000184 02 01");
  EXPECT_TRUE(entity->recursive());
  apply("00000185 01 00000001 67");
  EXPECT_EQ("g", entity->nexthopGroup());
  apply("fffffe7d 01" + std::string(kAddress));
  EXPECT_EQ(0U, entity->nexthops());
  EXPECT_EQ("", log.told());
}

TEST_F(ActionReading, EachAttributeIsDrainedAndTheOwnValueWrittenInstead) {
  drain("00000006 02 01");
  drain("00000183 01" + std::string(kAddress) + "01");
  drain("fffffe7d 01" + std::string(kAddress));
  drain("00000184 02 01");
  drain("00000185 01 00000001 67");
  EXPECT_FALSE(entity->isNondestructing());
  EXPECT_EQ(0U, entity->nexthops());
  EXPECT_FALSE(entity->recursive());
  EXPECT_EQ("", entity->nexthopGroup());
  EXPECT_EQ("6 -387 -387 388 389", log.told());
}

// A derived adapter's reaction runs in place of the one that it overrides.
TEST_F(ActionReading, DrainGoesThroughTheTable) {
  struct Counting : Pbr::PbrFwdAction::VyxNboAttrLogSa {
    using VyxNboAttrLogSa::VyxNboAttrLogSa;
    void onRecursive() override { ++calls; }
    int calls = 0;
  };
  auto const counting = Vyx::make<Counting>(directFlags(), entity, 0U, log.out, nullptr);
  source.message(std::string(kHead) + "00000184 02 01");
  counting->handleAttrDeserialization(388, {}, 1, source.in);
  EXPECT_EQ(1, counting->calls);
  EXPECT_EQ("", log.told());
}

TEST_F(ActionReading, RemovalOfAnAbsentKeyDoesNothing) {
  entity->nexthopIs(Lomu::IpGenAddr("10.0.0.2"), true);
  apply("fffffe7d 01" + std::string(kAddress));
  EXPECT_EQ(1U, entity->nexthops());
}

TEST_F(ActionReading, LastOfTwoValuesOfAKeyWins) {
  apply("00000183 01" + std::string(kAddress) + "01");
  apply("00000183 01" + std::string(kAddress) + "00");
  EXPECT_FALSE(entity->nexthop(address));
  EXPECT_EQ(1U, entity->nexthops());
}

TEST_F(ActionReading, MessageUnmarksItsEntry) {
  entity->nexthopIs(address, true);
  entity->nexthopIterator(address)->vyxMarkedForDeletionIs(true);
  apply("00000183 01" + std::string(kAddress) + "01");
  EXPECT_FALSE(entity->nexthopIterator(address)->vyxMarkedForDeletion());
}

TEST_F(ActionReading, WithoutAnyLogNothingHappens) {
  auto const alone =
      Pbr::PbrFwdAction::VyxNboAttrLogSa::VyxNboAttrLogSaIs(directFlags(), entity, 0, nullptr, nullptr);
  alone->handleAttrDeserialization(388, {}, 1, nullptr);
  EXPECT_FALSE(entity->recursive());
}

TEST_F(ActionReading, AnUnknownAttributeIsRefusedByWord) {
  EXPECT_EQ("attribute 999 is unknown to Pbr::PbrFwdAction",
            refusal<Vyx::ProtocolException>([&] { apply("000003e7 01"); }));
}

// The guards before.

TEST_F(ActionReading, SecondCallDuringAFirstIsRefused) {
  adapter->flagIs(StreamAdapter::isActiveFlag, true);
  log.message(std::string(kHead) + "00000184 02 01");
  EXPECT_EQ("entity reactor is already active", refusal<Vyx::InternalException>([&] {
              adapter->handleAttrDeserialization(388, {}, 1, nullptr);
            }));
  EXPECT_FALSE(entity->recursive());
  EXPECT_TRUE(adapter->flag(StreamAdapter::isActiveFlag));
}

TEST_F(ActionReading, DrainingDoesntMindAFirstCall) {
  adapter->flagIs(StreamAdapter::isActiveFlag, true);
  drain("00000184 02 01");
  EXPECT_FALSE(entity->recursive());
}

TEST_F(ActionReading, ReadOnlyProxyTakesNoWrites) {
  adapter->flagIs(StreamAdapter::readOnlyProxyFlag, true);
  log.message(std::string(kHead) + "00000184 02 01");
  EXPECT_EQ("write-update from readonly proxy: web", refusal<Vyx::InternalException>([&] {
              adapter->handleAttrDeserialization(388, {}, 1, nullptr);
            }));
  EXPECT_FALSE(entity->recursive());
  EXPECT_FALSE(adapter->flag(StreamAdapter::isActiveFlag));
}

TEST_F(ActionReading, ReadOnlyProxyTakesTheSyncModeAndDrains) {
  adapter->flagIs(StreamAdapter::readOnlyProxyFlag, true);
  apply("00000087 04 00000001");
  EXPECT_EQ(StreamAdapter::syncModeLive, adapter->syncMode());
  drain("00000184 02 01");
}

TEST_F(ActionReading, IsActiveIsSetWhileAMessageIsApplied) {
  struct Looking : Pbr::PbrFwdAction::Notifiee {
    void onRecursive() override { wasActive = adapter->flag(StreamAdapter::isActiveFlag); }
    StreamAdapter* adapter = nullptr;
    bool wasActive = false;
  };
  auto const looking = Vyx::ptrFromNew(new Looking);
  looking->adapter = adapter.ptr();
  looking->isRegisteredNotifieeIs(true);
  looking->notifierIs(entity);
  adapter->flagIs(StreamAdapter::syncRelayFlag, true); // Or its own reaction, which comes first, clears it.
  apply("00000184 02 01");
  EXPECT_TRUE(looking->wasActive);
  EXPECT_FALSE(adapter->flag(StreamAdapter::isActiveFlag));
}

TEST_F(ActionReading, AfterAFailureIsActiveIsClear) {
  log.message(std::string(kHead) + "00000183 01 00000004");
  EXPECT_THROW(adapter->handleAttrDeserialization(387, {}, 4, nullptr), Vyx::ProtocolException);
  EXPECT_FALSE(adapter->flag(StreamAdapter::isActiveFlag));
  EXPECT_EQ(0U, entity->nexthops());
}

// Enumerators and code points.

TEST_F(StatusReading, UnknownEnumeratorIsCountedAndItsNumberKept) {
  apply("00000182 01 00000063");
  EXPECT_EQ(99, static_cast<int>(entity->actionType()));
  EXPECT_EQ(1U, log.demuxer->unknownEnums());
  apply("00000182 01 00000002");
  EXPECT_EQ(1U, log.demuxer->unknownEnums());
}

TEST_F(StatusReading, DrainedUnknownEnumeratorIsCountedOnTheOwnLog) {
  drain("00000182 01 00000063");
  EXPECT_EQ(1U, log.demuxer->unknownEnums());
  EXPECT_EQ(0U, source.demuxer->unknownEnums());
}

TEST_F(StatusReading, DrainedReferenceIsReadAndTheOwnWritten) {
  source.joinAs(Pbr::nexthopIndexAndL2AdjKeyFactory(Pbr::NexthopSet()), kChild);
  drain("00000184 01 8000000000000005");
  EXPECT_FALSE(entity->nexthopIndexAndL2AdjKey());
  EXPECT_EQ("388", log.told());
}

TEST_F(StatusReading, ReferenceToAnUnknownEntityIsRefused) {
  EXPECT_EQ("entity id 8000000000000063 is unknown",
            refusal<Vyx::ProtocolException>([&] { apply("00000184 01 8000000000000063"); }));
  EXPECT_FALSE(entity->nexthopIndexAndL2AdjKey());
}

TEST_F(StatusReading, ReferenceToAnEntityOfAnotherTypeIsRefused) {
  log.joinAs(Pbr::configFactory("pbr"), kChild);
  EXPECT_THROW(apply("00000184 01 8000000000000005"), Vyx::ProtocolException);
  EXPECT_FALSE(entity->nexthopIndexAndL2AdjKey());
}

// Text in pieces: a byte of flags, 1 for the first, 2 for "more follow", then the run.

TEST_F(StatusReading, TextInOnePieceLeavesNothingBehind) {
  apply("00000183 01 01 6162");
  EXPECT_EQ("ab", entity->nexthopGroup());
  EXPECT_EQ(nullptr, log.demuxer->flowIn(kMe));
}

TEST_F(StatusReading, TextIsSetOnceItIsWhole) {
  apply("00000183 01 03 6162");
  ASSERT_TRUE(log.demuxer->flowIn(kMe));
  EXPECT_EQ(387, log.demuxer->flowIn(kMe)->aid());
  EXPECT_TRUE(log.demuxer->flowIn(kMe)->iter());
  apply("00000183 01 02 63");
  EXPECT_EQ("", entity->nexthopGroup());
  apply("00000183 01 00 64");
  EXPECT_EQ("abcd", entity->nexthopGroup());
  EXPECT_EQ(nullptr, log.demuxer->flowIn(kMe));
}

TEST_F(StatusReading, MessageWithoutPayloadIsTheEmptyText) {
  entity->nexthopGroupIs("old");
  apply("00000183 01");
  EXPECT_EQ("", entity->nexthopGroup());
}

TEST_F(StatusReading, MessageWithoutPayloadEndsATextThatWasComing) {
  entity->nexthopGroupIs("old");
  apply("00000183 01 03 6162");
  apply("00000183 01");
  EXPECT_EQ("", entity->nexthopGroup());
  EXPECT_EQ(nullptr, log.demuxer->flowIn(kMe));
}

// Changes a text that has come.
struct Replacing : Pbr::PbrClassMapStatus::Notifiee {
  void onNexthopGroup() override { notifier()->nexthopGroupIs("mine"); }
};

TEST_F(StatusReading, ReactorMayChangeTheTextThatHasJustBecomeWhole) {
  auto const replacing = Vyx::ptrFromNew(new Replacing);
  replacing->isRegisteredNotifieeIs(true);
  replacing->notifierIs(entity);
  apply("00000183 01 03 6162");
  apply("00000183 01 00 63");
  EXPECT_EQ("mine", entity->nexthopGroup());
  EXPECT_EQ(nullptr, log.demuxer->flowIn(kMe));
  EXPECT_EQ(0U, log.out->pendingBytes()); // Until the text has come to its end.
  EXPECT_TRUE(log.demuxer->runFlowOuts());
  EXPECT_EQ(hexOf(frameOf(std::string(kHead) + "00000183 01 01 6d696e65")), hexOf(log.sent()));
}

TEST_F(StatusReading, FirstPieceBeginsAnew) {
  apply("00000183 01 03 6162");
  apply("00000183 01 01 78");
  EXPECT_EQ("x", entity->nexthopGroup());
}

TEST_F(StatusReading, PieceThatContinuesNothingIsRefused) {
  EXPECT_THROW(apply("00000183 01 00 61"), Vyx::ProtocolException);
  EXPECT_EQ("", entity->nexthopGroup());
}

TEST_F(StatusReading, DrainedTextIsNotAssembled) {
  drain("00000183 01 03 6162");
  EXPECT_EQ(nullptr, log.demuxer->flowIn(kMe));
  EXPECT_EQ("387", log.told());
}

TEST_F(StatusReading, SecondStoredTextAborts) {
  auto const flowIn = log.demuxer->flowInIs(kMe);
  Vyx::NboAttrLog::vyxFlowInIteratorIs(*flowIn, 387, Vyx::TextIterator());
  EXPECT_DEATH(Vyx::NboAttrLog::vyxFlowInIteratorIs(*flowIn, 387, Vyx::TextIterator()),
               "^Vyx/NboAttrLogFlow:128: assertion failed: !rrc->iter\\(\\)\n$");
}

// Children.

TEST_F(ContainerReading, AnnouncedChildTakesTheWritersIdAndIsNotAnnouncedBack) {
  apply(announced(kNexthop, kFive));
  auto const child = entity->fwdAction(id);
  ASSERT_TRUE(child);
  EXPECT_EQ("web", child->className());
  EXPECT_EQ(Pbr::nexthopAction, child->fwdActionType());
  EXPECT_EQ(kChild, log.adapter(child)->entityId());
  EXPECT_FALSE(log.adapter(child)->flag(StreamAdapter::flowOutHeldFlag));
  EXPECT_TRUE(log.adapter(child)->flag(StreamAdapter::childAnnouncedFlag));
  EXPECT_EQ("", log.told());
}

TEST_F(ContainerReading, SameAnnouncementKeepsTheChild) {
  apply(announced(kNexthop, kFive));
  auto const child = entity->fwdAction(id);
  child->vyxMarkedForDeletionIs(true);
  apply(announced(kNexthop, kFive));
  EXPECT_EQ(child, entity->fwdAction(id));
  EXPECT_FALSE(child->vyxMarkedForDeletion());
}

TEST_F(ContainerReading, ChildThatStoodThereWithoutAnIdIsJoinedToIt) {
  adapter->flagIs(StreamAdapter::outAttachedFlag, false);
  auto const child = entity->fwdActionIs("web", id, Pbr::nexthopAction);
  ASSERT_FALSE(log.adapter(child));
  apply(announced(kNexthop, kFive));
  EXPECT_EQ(child, entity->fwdAction(id));
  EXPECT_EQ(kChild, log.adapter(child)->entityId());
}

TEST_F(ContainerReading, OtherConstructorValueReplacesTheChild) {
  apply(announced(kNexthop, kFive));
  auto const child = entity->fwdAction(id);
  apply(announced(kDrop, kSeven));
  auto const fresh = entity->fwdAction(id);
  EXPECT_NE(child, fresh);
  EXPECT_EQ(Pbr::dropAction, fresh->fwdActionType());
  EXPECT_EQ(kOther, log.adapter(fresh)->entityId());
  EXPECT_EQ("", log.told());
}

TEST_F(ContainerReading, OtherIdReplacesTheChild) {
  apply(announced(kNexthop, kFive));
  auto const child = entity->fwdAction(id);
  apply(announced(kNexthop, kSeven));
  EXPECT_NE(child, entity->fwdAction(id));
  EXPECT_EQ(kOther, log.adapter(entity->fwdAction(id))->entityId());
  EXPECT_EQ("", log.told());
}

TEST_F(ContainerReading, AnnouncementWithAnUnassignedIdMakesNothing) {
  EXPECT_THROW(apply(announced(kNexthop, "8000000000000004")), Vyx::ProtocolException);
  EXPECT_EQ(0U, entity->fwdActions());
}

TEST_F(ContainerReading, UnknownEnumeratorMakesAChildWithThatNumber) {
  apply(announced("00000063", kFive));
  EXPECT_EQ(99, static_cast<int>(entity->fwdAction(id)->fwdActionType()));
  EXPECT_EQ(1U, log.demuxer->unknownEnums());
}

TEST_F(ContainerReading, CodePointsEndAt64) {
  apply("00000103 11 00000003 776562" + std::string(kId) + "40" + kFive);
  EXPECT_EQ(64, entity->dscpAction(id)->dscp().value());
  entity->dscpActionDel(id);
  log.message(std::string(kHead) + "00000103 11 00000003 776562" + kId + "41" + kSeven);
  EXPECT_EQ("Dscp::value < Dscp::min or > Dscp::invalid not allowed",
            refusal<Vyx::RangeException>([&] { adapter->handleAttrDeserialization(259, {}, 0, nullptr); }));
  EXPECT_EQ(0U, entity->dscpActions());
  EXPECT_FALSE(adapter->flag(StreamAdapter::isActiveFlag));
}

TEST_F(ContainerReading, DrainedAnnouncementMakesNothing) {
  drain(announced(kNexthop, kFive));
  EXPECT_EQ(0U, entity->fwdActions());
  EXPECT_EQ("-258", log.told());
}

TEST_F(ContainerReading, RemovalDeletesAndDrainedRemovalDoesNot) {
  apply(announced(kNexthop, kFive));
  drain("fffffefe 01" + std::string(kId));
  EXPECT_EQ(1U, entity->fwdActions());
  log.sent();
  apply("fffffefe 01" + std::string(kId));
  EXPECT_EQ(0U, entity->fwdActions());
  EXPECT_EQ("", log.told());
}

TEST_F(ContainerReading, ConstrainerKnowsIdAndParentWhileTheChildIsMade) {
  struct Looking : Pbr::PbrActionContainer::Notifiee {
    void onFwdAction(Kest::UniqueId const&) override {
      eid = Vyx::MsgChannel::constrainer()->deserializingEid();
      parent = Vyx::MsgChannel::constrainer()->deserializingInParent();
    }
    EntityId eid;
    Vyx::Entity* parent = nullptr;
  };
  Vyx::MsgChannel::constrainerIs(Vyx::ptrFromNew(new Vyx::MsgChannel::Constrainer));
  auto const looking = Vyx::ptrFromNew(new Looking);
  looking->isRegisteredNotifieeIs(true);
  looking->notifierIs(entity);
  apply(announced(kNexthop, kFive));
  EXPECT_EQ(kChild, looking->eid);
  EXPECT_EQ(entity.ptr(), looking->parent);
  EXPECT_EQ(EntityId(), Vyx::MsgChannel::constrainer()->deserializingEid());
  EXPECT_EQ(nullptr, Vyx::MsgChannel::constrainer()->deserializingInParent());
  Vyx::MsgChannel::constrainerIs(nullptr);
}

TEST(EidAnchor, NestedAnchorsRestoreWhatWasThere) {
  Vyx::MsgChannel::constrainerIs(Vyx::ptrFromNew(new Vyx::MsgChannel::Constrainer));
  auto const& constrainer = Vyx::MsgChannel::constrainer();
  Ptr<Pbr::Config> const parent = Pbr::configFactory("pbr");
  {
    Vyx::MsgChannel::DeserializingEidAnchor const outer(kChild, parent.ptr());
    { Vyx::MsgChannel::DeserializingEidAnchor const inner(kOther, nullptr); }
    EXPECT_EQ(kChild, constrainer->deserializingEid());
    EXPECT_EQ(parent.ptr(), constrainer->deserializingInParent());
  }
  EXPECT_EQ(EntityId(), constrainer->deserializingEid());
  EXPECT_EQ(nullptr, constrainer->deserializingInParent());
  Vyx::MsgChannel::constrainerIs(nullptr);
}

TEST(ChannelReading, AnnouncementSetsTheModeOfTheEntry) {
  LogEnd log(Demuxer::connecting);
  Ptr<Pbr::PbrActionContainer> const container = Pbr::pbrActionContainerFactory("Pbr");
  auto const entry = Vyx::ptrFromNew(new Vyx::MsgChannel::Constrainer::VyxEntry);
  auto const adapter = container->vyxNboAttrLogSaIs(directFlags(), 0, log.out, entry.ptr());
  adapter->doEntityIdIs(kMe, log.demuxer, true);
  log.message(kHead + std::string("00000102 11 00000003 776562") + kId + "00000002" + "8000000000000005");
  adapter->handleAttrDeserialization(258, {}, 0, nullptr);
  EXPECT_EQ(1, entry->mode());
  log.message(kHead + std::string("00000087 04 00000001"));
  adapter->handleAttrDeserialization(135, {}, 4, nullptr);
  EXPECT_EQ(3, entry->mode());
}

TEST_F(ConfigReading, SingleChildThatStoodThereIsJoinedToItsId) {
  auto const child = entity->cmapType();
  apply("00000106 11 00000003 506272 8000000000000005");
  EXPECT_EQ(child, entity->cmapType());
  EXPECT_EQ(kChild, log.adapter(child)->entityId());
}

TEST_F(ConfigReading, SingleChildOfAnotherIdIsReplaced) {
  apply("00000106 11 00000003 506272 8000000000000005");
  auto const child = entity->cmapType();
  apply("00000106 11 00000003 506272 8000000000000007");
  EXPECT_NE(child, entity->cmapType());
  EXPECT_EQ(kOther, log.adapter(entity->cmapType())->entityId());
}

TEST_F(ConfigReading, DrainedSingleChildIsNotTouchedAndTheOwnOneAnnounced) {
  auto const child = entity->cmapType();
  drain("00000106 11 00000003 506272 8000000000000005");
  EXPECT_EQ(child, entity->cmapType());
  ASSERT_TRUE(log.adapter(child));
  EXPECT_NE(kChild, log.adapter(child)->entityId());
  EXPECT_EQ(0U, log.told().find("262+ "));
}

TEST_F(ConfigReading, RemovalOfASingleChildHasNoPayload) {
  drain("fffffefa 00");
  EXPECT_TRUE(entity->cmapType());
  log.sent();
  apply("fffffefa 00");
  EXPECT_FALSE(entity->cmapType());
  EXPECT_EQ("", log.told());
}

} // namespace
} // namespace replication_test
