// The object itself: how it is found, made, attached and destroyed, and how notification reaches it.

#include "OneLog.h"

#include "Pbr/ConfigSa.h"
#include "Pbr/PbrActionContainerSa.h"
#include "Pbr/PbrActionSetDscpSa.h"
#include "Pbr/PbrFwdActionSa.h"
#include "PolicyMap/ActionSa.h"
#include "Vyx/MsgChannel.h"
#include "support/SlotOf.h"

namespace replication_test {
namespace {

using Sa = Pbr::PbrFwdAction::VyxNboAttrLogSa;
using EntitySa = Vyx::Entity::VyxNboAttrLogSa;
Kest::UniqueId const id(1, 2, 3);
Lomu::IpGenAddr const address("10.0.0.1");

class StreamAdapterTest : public testing::Test {
protected:
  Ptr<EntitySa> find(LogEnd const& on) { return entity().vyxNboAttrLogSa(Ptr<Out const>(on.out)); }
  Ptr<EntitySa> find() { return entity().vyxNboAttrLogSa(Ptr<Out const>()); }
  Vyx::Entity& entity() { return *action; }

  LogEnd log;
  LogEnd other;
  Ptr<Pbr::PbrFwdAction> stranger = Pbr::pbrFwdActionFactory("mail", id, Pbr::nexthopAction);
  Ptr<Pbr::PbrFwdAction> action = Pbr::pbrFwdActionFactory("web", id, Pbr::nexthopAction);
};

// Looking for an adapter.

TEST_F(StreamAdapterTest, EntityWithoutAdapterHasNone) {
  EXPECT_FALSE(find(log));
  EXPECT_FALSE(find());
}

TEST_F(StreamAdapterTest, AdapterIsFoundByItsLog) {
  auto const adapter = log.join(action);
  auto const second = other.join(action);
  EXPECT_EQ(adapter, find(log));
  EXPECT_EQ(second, find(other));
}

TEST_F(StreamAdapterTest, LaterReactorIsFoundBehindAnAdapterOfAnotherLog) {
  auto const later = log.join(action);
  other.join(stranger);
  auto const first = other.join(action);
  ASSERT_NE(first->entityId(), later->entityId());
  ASSERT_EQ(first.ptr(), action->vyxReactors().head()->vyxRawReactor());
  EXPECT_EQ(later, find(log));
  EXPECT_EQ(first, find(other));
}

TEST_F(StreamAdapterTest, StrangerOfTheSameIdDoesntEndTheWalk) {
  auto const later = log.join(action);
  auto const ofStranger = log.join(stranger);
  other.join(Pbr::pbrFwdActionFactory("ftp", id, Pbr::nexthopAction));
  auto const first = other.join(action);
  ASSERT_EQ(ofStranger->entityId(), first->entityId());
  EXPECT_EQ(later, find(log));
}

TEST_F(StreamAdapterTest, ConstLookUpFindsTheSame) {
  auto const adapter = log.join(action);
  Vyx::Entity const& constant = entity();
  EXPECT_EQ(adapter, constant.vyxNboAttrLogSa(Ptr<Out const>(log.out)));
}

TEST_F(StreamAdapterTest, ReactorsThatAreNoAdaptersArePassedOver) {
  struct Plain : Pbr::PbrFwdAction::Notifiee {};
  auto const plain = Vyx::ptrFromNew(new Plain);
  plain->isRegisteredNotifieeIs(true);
  plain->notifierIs(action);
  auto const adapter = log.join(action);
  EXPECT_EQ(adapter, find(log));
}

TEST_F(StreamAdapterTest, WithoutALogAnAdapterOfAUnifiedIdOnAReadyLogIsFound) {
  auto const adapter = log.join(action);
  log.in->inReadyFlagIs(1);
  EXPECT_FALSE(find());
  adapter->hasUnifiedEntityIdIs(true);
  EXPECT_EQ(adapter, find());
  log.in->inReadyFlagIs(0);
  EXPECT_FALSE(find());
}

TEST_F(StreamAdapterTest, AdapterIsFoundByItsIdOnALogThatKnowsItSo) {
  auto const adapter = log.join(action);
  log.demuxer->reactorDel(adapter->entityId());
  other.demuxer->reactorIs(adapter);
  EXPECT_EQ(adapter, find(other));
  other.demuxer->reactorDel(adapter->entityId());
  EXPECT_FALSE(find(other));
}

TEST_F(StreamAdapterTest, SameIdOfAnotherEntityIsNotFound) {
  auto const adapter = log.join(action);
  auto const stranger = other.join(Pbr::pbrFwdActionFactory("mail", id, Pbr::nexthopAction));
  ASSERT_EQ(adapter->entityId(), stranger->entityId());
  EXPECT_FALSE(find(other));
}

TEST_F(StreamAdapterTest, UnassignedIdIsNotLookedUp) {
  Ptr<StreamAdapter> const adapter = entity().vyxNboAttrLogSaIs(directFlags(), 0, log.out, nullptr);
  ASSERT_FALSE(adapter->entityId().isAssigned());
  other.demuxer->reactorIs(adapter);
  EXPECT_FALSE(find(other));
  other.demuxer->reactorDel(adapter->entityId());
}

TEST_F(StreamAdapterTest, LogWithoutDemuxerFindsNothing) {
  log.join(action);
  Ptr<Out> const bare = Vyx::ptrFromNew(new Out);
  EXPECT_FALSE(entity().vyxNboAttrLogSa(Ptr<Out const>(bare)));
}

TEST_F(StreamAdapterTest, LogWithoutDemuxerHidesALaterAdapterOnIt) {
  Ptr<Out> const bare = Vyx::ptrFromNew(new Out);
  auto const later = entity().vyxNboAttrLogSaIs(directFlags(), 0, bare, nullptr);
  ASSERT_EQ(later, entity().vyxNboAttrLogSa(Ptr<Out const>(bare)));
  log.join(action);
  EXPECT_FALSE(entity().vyxNboAttrLogSa(Ptr<Out const>(bare)));
}

// On a message channel.

class MsgChannelTest : public StreamAdapterTest {
protected:
  using Entry = Vyx::MsgChannel::Constrainer::VyxEntry;
  Ptr<EntitySa> onChannel(LogEnd& on, Entry* entry) {
    auto const adapter = entity().vyxNboAttrLogSaIs(directFlags(), 0, on.out, entry);
    adapter->vyxOnInit();
    on.in->inReadyFlagIs(1);
    return adapter;
  }
  Ptr<EntitySa> besides(Ptr<EntitySa> const& one) { return entity().vyxNboAttrLogSaForMsgChannel(one); }

  Ptr<Entry> entry = Vyx::ptrFromNew(new Entry);
};

TEST_F(MsgChannelTest, AnotherAdapterOfTheSameEntryIsFound) {
  auto const one = onChannel(log, entry.ptr());
  EXPECT_FALSE(besides(one));
  auto const two = onChannel(other, entry.ptr());
  EXPECT_EQ(two, besides(one));
  EXPECT_EQ(one, besides(two));
}

TEST_F(MsgChannelTest, AdapterOfAnotherEntryIsNotFound) {
  auto const one = onChannel(log, entry.ptr());
  auto const elsewhere = Vyx::ptrFromNew(new Entry);
  onChannel(other, elsewhere.ptr());
  EXPECT_FALSE(besides(one));
}

TEST_F(MsgChannelTest, WithoutAnEntryAUnifiedIdCounts) {
  auto const one = onChannel(log, nullptr);
  auto const two = onChannel(other, nullptr);
  EXPECT_FALSE(besides(one));
  two->hasUnifiedEntityIdIs(true);
  EXPECT_EQ(two, besides(one));
}

TEST_F(MsgChannelTest, AdapterOnALogThatIsNotReadyIsNotFound) {
  auto const one = onChannel(log, entry.ptr());
  onChannel(other, entry.ptr());
  other.in->inReadyFlagIs(0);
  EXPECT_FALSE(besides(one));
}

TEST_F(MsgChannelTest, AdapterWithoutAnIdIsNotFound) {
  auto const one = onChannel(log, entry.ptr());
  entity().vyxNboAttrLogSaIs(directFlags(), 0, other.out, entry.ptr());
  other.in->inReadyFlagIs(1);
  EXPECT_FALSE(besides(one));
}

// Making and refreshing.

TEST_F(StreamAdapterTest, WithoutALogNoAdapterIsMade) {
  EXPECT_EQ("null ValidPtr", refusal<Vyx::RangeException>(
                                 [&] { entity().vyxNboAttrLogSaIs(directFlags(), 0, nullptr, nullptr); }));
}

TEST_F(StreamAdapterTest, EqualFlagsChangeNothing) {
  auto const adapter = log.join(action);
  adapter->flagIs(StreamAdapter::childAnnouncedFlag, true);
  auto const before = adapter->vyx_bitSet();
  EXPECT_EQ(adapter, entity().vyxNboAttrLogSaIs(directFlags(), 0, log.out, nullptr));
  EXPECT_EQ(before, adapter->vyx_bitSet());
}

TEST_F(StreamAdapterTest, HandedOnFlagsAreReplacedAndOthersKept) {
  auto const adapter = log.join(action);
  adapter->flagIs(StreamAdapter::childAnnouncedFlag, true);
  auto const fresh = flagsOf({StreamAdapter::readOnlyFlag, StreamAdapter::flowOutOffFlag});
  EXPECT_EQ(adapter, entity().vyxNboAttrLogSaIs(fresh, 0, log.out, nullptr));
  EXPECT_EQ(flagsOf({StreamAdapter::readOnlyFlag, StreamAdapter::childAnnouncedFlag}), adapter->vyx_bitSet());
}

TEST_F(StreamAdapterTest, AdapterOfAForeignClassGivesWay) {
  Ptr<PolicyMap::Action> const base = action;
  Ptr<StreamAdapter> const foreign =
      PolicyMap::Action::VyxNboAttrLogSa::VyxNboAttrLogSaIs(directFlags(), base, 0, log.out, nullptr);
  foreign->vyxOnInit();
  ASSERT_EQ(foreign.ptr(), find(log).ptr());
  auto const adapter = entity().vyxNboAttrLogSaIs(directFlags(), 0, log.out, nullptr);
  EXPECT_NE(foreign.ptr(), adapter.ptr());
  EXPECT_TRUE(Vyx::dynamicPtrCast<Sa>(adapter));
  EXPECT_EQ(nullptr, log.demuxer->reactor(foreign->entityId()));
}

TEST_F(StreamAdapterTest, FreshAdapterIsNotified) {
  auto const adapter = log.join(action);
  EXPECT_TRUE(adapter->hasNotificationActive());
  action->recursiveIs(true);
  EXPECT_EQ("388", log.told());
}

// Taking away.

TEST_F(StreamAdapterTest, DelTakesTheAdapterFromTheDemuxer) {
  auto const adapter = log.join(action);
  EXPECT_EQ(adapter, entity().vyxNboAttrLogSaDel(Ptr<Out const>(log.out)));
  EXPECT_EQ(nullptr, log.demuxer->reactor(adapter->entityId()));
}

TEST_F(StreamAdapterTest, DelOfWhatIsNotThereIsNull) {
  EXPECT_FALSE(entity().vyxNboAttrLogSaDel(Ptr<Out const>(log.out)));
}

TEST_F(StreamAdapterTest, DelOnALogWithoutDemuxerChangesNothing) {
  Ptr<Out> const bare = Vyx::ptrFromNew(new Out);
  auto const adapter = entity().vyxNboAttrLogSaIs(directFlags(), 0, bare, nullptr);
  EXPECT_FALSE(entity().vyxNboAttrLogSaDel(Ptr<Out const>(bare)));
  EXPECT_EQ(adapter, entity().vyxNboAttrLogSa(Ptr<Out const>(bare)));
}

// Being made, and ending.

// The adapter objects in the entity's list.
int listed(Pbr::PbrFwdAction const& action) {
  int count = 0;
  for (Vyx::Entity::NotifieeConst const* at = action.vyxReactors().head(); at;
       at = Vyx::ReactorList::next(at))
    ++count;
  return count;
}

TEST_F(StreamAdapterTest, OneReactorOnlyIsRegistered) {
  auto const adapter = log.join(action);
  EXPECT_EQ(1, listed(*action));
  auto const* const reactor = action->vyxReactors().head();
  EXPECT_EQ(adapter.ptr(), reactor->vyxRawReactor());
  EXPECT_EQ(adapter.ptr(), reactor->vyxReactor().ptr());
  EXPECT_TRUE(reactor->isRegisteredNotifiee());
  EXPECT_TRUE(reactor->isWeakReference());
}

TEST_F(StreamAdapterTest, AdapterHoldsItsEntityUnlessItIsWeak) {
  auto const before = action->references();
  auto const adapter = log.join(action);
  EXPECT_EQ(before + 1, action->references());
  adapter->isWeakReferenceIs(true);
  EXPECT_EQ(before, action->references());
  auto weak = directFlags();
  weak.bitIs(StreamAdapter::weakAdapterFlag, true);
  EXPECT_TRUE(other.join(action, weak)->isWeakReference());
  EXPECT_EQ(before, action->references());
}

TEST_F(StreamAdapterTest, EndOfTheAdapterUnlinksItsReactor) {
  auto const before = action->references();
  Sa::VyxNboAttrLogSaIs(directFlags(), action, 0, log.out, nullptr);
  EXPECT_EQ(0, listed(*action));
  EXPECT_EQ(before, action->references());
}

TEST_F(StreamAdapterTest, ReactorThatOutlivesItsAdapterIsSilent) {
  auto adapter = Sa::VyxNboAttrLogSaIs(directFlags(), action, 0, log.out, nullptr);
  Ptr<Vyx::Entity::NotifieeConst> const reactor = action->vyxReactors().head();
  adapter = nullptr;
  EXPECT_EQ(reactor.ptr(), reactor->vyxRawReactor());
  reactor->isRegisteredNotifieeIs(true);
  reactor->notifierIs(Ptr<Vyx::PtrInterface const>(action));
  reactor->hasNotificationActiveIs(true);
  ASSERT_EQ(1, listed(*action));
  action->recursiveIs(true);
  action->nexthopIs(address, true);
  reactor->onZeroReferences();
  EXPECT_EQ("", log.told());
  reactor->notifierIs(nullptr);
}

TEST_F(StreamAdapterTest, MadeWithinAMessageWhileTheLogSyncsItEndsItsTransactions) {
  action->nexthopIs(address, true);
  action->nexthopIterator(address)->vyxMarkedForDeletionIs(true);
  log.demuxer->phaseIs(Demuxer::syncing);
  Sa::VyxNboAttrLogSaIs(flagsOf({StreamAdapter::isActiveFlag}), action, 0, log.out, nullptr);
  EXPECT_EQ(0U, action->nexthops());
}

TEST_F(StreamAdapterTest, MadeOnALiveLogOrOutsideAMessageItStartsNothing) {
  action->nexthopIs(address, true);
  action->nexthopIterator(address)->vyxMarkedForDeletionIs(true);
  log.demuxer->phaseIs(Demuxer::syncing);
  Sa::VyxNboAttrLogSaIs(directFlags(), action, 0, log.out, nullptr);
  log.demuxer->phaseIs(Demuxer::live);
  Sa::VyxNboAttrLogSaIs(flagsOf({StreamAdapter::isActiveFlag}), action, 0, log.out, nullptr);
  EXPECT_EQ(1U, action->nexthops());
}

// The notifier.

TEST_F(StreamAdapterTest, AnotherNotifierTakesTheReactorAlong) {
  auto const adapter = log.join(action);
  Ptr<Pbr::PbrFwdAction> const next = Pbr::pbrFwdActionFactory("mail", id, Pbr::nexthopAction);
  auto const held = action->references();
  auto const free = next->references();
  adapter->notifierIs(Ptr<Vyx::PtrInterface const>(next));
  EXPECT_EQ(0, listed(*action));
  EXPECT_EQ(1, listed(*next));
  EXPECT_EQ(held - 1, action->references());
  EXPECT_EQ(free + 1, next->references());
  EXPECT_EQ(next, adapter->notifier());
  EXPECT_EQ(next.ptr(), adapter->vyxNotifierEntity());
  EXPECT_EQ(next.ptr(), static_cast<Sa const&>(*adapter).vyxNotifierEntity());
}

TEST_F(StreamAdapterTest, NewNotifierUnregistersTheAdapterItself) {
  struct Asked : Sa {
    using Sa::Sa;
    void isRegisteredNotifieeIs(bool registered) const override { ++(registered ? entered : left); }
    mutable int entered = 0;
    mutable int left = 0;
  };
  auto const adapter = Vyx::ptrFromNew(new Asked(directFlags(), action, 0, log.out, nullptr));
  adapter->notifierIs(Ptr<Vyx::PtrInterface const>(stranger));
  EXPECT_LT(0, adapter->left);
  EXPECT_EQ(0, adapter->entered);
}

TEST_F(StreamAdapterTest, HoldsNotifierTakesOneMoreReferenceAlong) {
  auto const adapter = log.join(action);
  auto const held = action->references();
  adapter->holdsNotifierIs(true);
  EXPECT_EQ(held + 1, action->references());
  Ptr<Pbr::PbrFwdAction> const next = Pbr::pbrFwdActionFactory("mail", id, Pbr::nexthopAction);
  auto const free = next->references();
  adapter->notifierIs(Ptr<Vyx::PtrInterface const>(next));
  EXPECT_EQ(held - 1, action->references());
  EXPECT_EQ(free + 2, next->references());
}

// Notification.

TEST_F(StreamAdapterTest, DoNotificationReachesTheReactionOfEachId) {
  auto const adapter = log.join(action);
  Lomu::IpGenAddr key = address;
  for (Vyx::AttributeId aid : {6, 388, 389}) adapter->doNotification(aid, nullptr);
  EXPECT_EQ("6 388 389", log.told());
  adapter->doNotification(387, &key);
  adapter->doNotification(-387, &key);
  EXPECT_EQ("-387 -387", log.told());
  action->nexthopIs(address, true);
  log.sent();
  adapter->doNotification(-387, &key);
  EXPECT_EQ("387", log.told());
}

TEST_F(StreamAdapterTest, DoNotificationOfAnUnknownIdDoesNothing) {
  auto const adapter = log.join(action);
  for (Vyx::AttributeId aid : {0, 386, 390, -388, -6}) adapter->doNotification(aid, nullptr);
  EXPECT_EQ("", log.told());
}

TEST_F(StreamAdapterTest, ConfigHasNoNegatedIds) {
  Ptr<Pbr::Config> const config = Pbr::configFactory("pbr");
  auto const adapter = log.join(config);
  for (Vyx::AttributeId aid : {-258, -259, -260, -261, -262, -263}) adapter->doNotification(aid, nullptr);
  EXPECT_EQ("", log.told());
  for (Vyx::AttributeId aid : {258, 259, 260}) adapter->doNotification(aid, nullptr);
  EXPECT_EQ("258 259 260", log.told());
}

TEST_F(StreamAdapterTest, ContainersIdsComeWithTheirKey) {
  Ptr<Pbr::PbrActionContainer> const container = Pbr::pbrActionContainerFactory("Pbr");
  auto const adapter = log.join(container);
  Kest::UniqueId key = id;
  for (Vyx::AttributeId aid : {258, -258, 259, -259}) adapter->doNotification(aid, &key);
  EXPECT_EQ("-258 -258 -259 -259", log.told());
}

struct Counting : Sa {
  using Sa::Sa;
  void onRecursive() override { ++heard; }
  int heard = 0;
};

TEST_F(StreamAdapterTest, DoNotificationGoesThroughTheTable) {
  auto const adapter = Vyx::ptrFromNew(new Counting(directFlags(), action, 0, log.out, nullptr));
  adapter->doNotification(388, nullptr);
  EXPECT_EQ(1, adapter->heard);
}

TEST_F(StreamAdapterTest, ReactorDoesntGoThroughTheTable) {
  auto const adapter = Vyx::ptrFromNew(new Counting(directFlags(), action, 0, log.out, nullptr));
  adapter->hasNotificationActiveIs(true);
  adapter->vyxOnInit();
  action->recursiveIs(true);
  EXPECT_EQ(0, adapter->heard);
  EXPECT_EQ("388", log.told());
}

TEST_F(StreamAdapterTest, InstantiateSerializesNoValues) {
  action->nexthopIs(address, true);
  log.join(action)->vyxInstantiateSerialize();
  EXPECT_EQ("", log.told());
}

TEST_F(StreamAdapterTest, InstantiateGoesThroughTheTable) {
  using ConfigSa = Pbr::Config::VyxNboAttrLogSa;
  struct Instantiated : ConfigSa {
    using ConfigSa::ConfigSa;
    void onPbrActions() override { heard += "261 "; }
    void onCmapType() override { heard += "262 "; }
    void onPmapType() override { heard += "263 "; }
    std::string heard;
  };
  Ptr<Pbr::Config> const config = Pbr::configFactory("pbr");
  auto const adapter = Vyx::ptrFromNew(new Instantiated(directFlags(), config, 0, log.out, nullptr));
  adapter->vyxInstantiateSerialize();
  EXPECT_EQ("261 262 263 ", adapter->heard);
}

TEST_F(StreamAdapterTest, FailureToWriteReachesTheLogNotTheSetter) {
  log.join(action);
  std::string const tooLong(kDefaultMaxLength + 1, 'x');
  EXPECT_NO_THROW(action->nexthopGroupIs(Vyx::Name(tooLong)));
  EXPECT_FALSE(log.demuxer->failure().empty());
  EXPECT_EQ("", log.told());
}

TEST_F(StreamAdapterTest, NotificationIsActiveInBothOrInNeither) {
  auto const adapter = log.join(action);
  Vyx::Entity::NotifieeConst* const reactor = action->vyxReactors().head();
  adapter->hasNotificationActiveIs(false);
  EXPECT_FALSE(reactor->hasNotificationActive());
  reactor->hasNotificationActiveIs(true);
  EXPECT_TRUE(adapter->hasNotificationActive());
  reactor->hasNotificationActiveIs(false);
  EXPECT_FALSE(adapter->hasNotificationActive());
}

TEST_F(StreamAdapterTest, UnchangedNotificationReachesNeitherBaseNorReactor) {
  auto const adapter = log.join(action);
  Vyx::Entity::NotifieeConst* const reactor = action->vyxReactors().head();
  reactor->vyxMarkedForDeletionIs(true); // It then doesn't pass on to the stream adapter.
  reactor->hasNotificationActiveIs(false);
  EXPECT_TRUE(adapter->hasNotificationActive());
  adapter->hasNotificationActiveIs(true);
  EXPECT_FALSE(reactor->hasNotificationActive());
  reactor->vyxMarkedForDeletionIs(false);
}

TEST_F(StreamAdapterTest, ReactorWithoutReferencesGoesSilent) {
  auto const adapter = log.join(action);
  Vyx::Entity::NotifieeConst* const reactor = action->vyxReactors().head();
  reactor->onZeroReferences();
  EXPECT_FALSE(reactor->hasNotificationActive());
  EXPECT_FALSE(adapter->hasNotificationActive());
}

// Zombies.

TEST_F(StreamAdapterTest, ZombieHearsNothingUntilItIsRevived) {
  auto const adapter = log.join(action);
  EXPECT_FALSE(adapter->vyxDoZombieReactors(false));
  EXPECT_TRUE(adapter->vyxDoZombieReactors(true));
  EXPECT_TRUE(adapter->vyxMarkedForDeletion());
  action->recursiveIs(true);
  EXPECT_EQ("", log.told());
  EXPECT_FALSE(adapter->vyxDoZombieReactors(false));
  EXPECT_FALSE(adapter->vyxMarkedForDeletion());
  action->recursiveIs(false);
  EXPECT_EQ("388", log.told());
}

TEST_F(StreamAdapterTest, RevivedReactorDoesntWakeItsStreamAdapter) {
  auto const adapter = log.join(action);
  Vyx::Entity::NotifieeConst* const reactor = action->vyxReactors().head();
  adapter->vyxDoZombieReactors(true);
  ASSERT_FALSE(adapter->hasNotificationActive());
  adapter->vyxDoZombieReactors(false);
  EXPECT_TRUE(reactor->hasNotificationActive());
  EXPECT_FALSE(adapter->hasNotificationActive());
}

// Slots.

TEST(StreamAdapterSlots, OverriddenOperationsFollowEachOther) {
  using Base = StreamAdapter;
  std::size_t const first = slotCount<Vyx::PtrInterface::NotifieeConst>();
  std::size_t const constEntity = slotOf<Vyx::Entity const* (Base::*)() const>(&Base::vyxNotifierEntity);
  std::size_t const entity = slotOf<Vyx::Entity* (Base::*)()>(&Base::vyxNotifierEntity);
  expectSlotsFrom(
      first, {slotOf(&Base::handleAttrFlowOut), slotOf(&Base::freeResyncState),
              slotOf(&Base::vyxInstantiateSerialize), constEntity, entity, slotOf(&Base::doSerializeOrphan),
              slotOf(&Base::handleAttrDeserialization), slotOf(&Base::handleAttrTransaction),
              slotOf(&Base::flowOutIs), slotOf(&Base::doNotification), slotOf(&Base::syncModeIs),
              slotOf(&Base::vyxDoZombieReactors), slotOf(&Base::doRemountSelf), slotCount<Base>()});
  EXPECT_LT(slotOf(&Base::hasNotificationActiveIs),
            slotOf<void (Base::*)(Ptr<Vyx::PtrInterface const> const&)>(&Base::notifierIs));
  EXPECT_LT(slotOf<void (Base::*)(Ptr<Vyx::PtrInterface const> const&)>(&Base::notifierIs), first);
}

TEST(StreamAdapterSlots, ReactionsFollowInTheOrderOfTheAttributes) {
  std::size_t const own = slotOf(&StreamAdapter::doRemountSelf) + 1;
  using Action = Pbr::PbrFwdAction::VyxNboAttrLogSa;
  expectSlotsFrom(own, {slotOf(&PolicyMap::Action::VyxNboAttrLogSa::onIsNondestructing),
                        slotOf(&Action::onNexthop), slotOf(&Action::onRecursive),
                        slotOf(&Action::onNexthopGroup)});
  using Config = Pbr::Config::VyxNboAttrLogSa;
  expectSlotsFrom(own,
                  {slotOf(&Config::onIsNondestructing), slotOf(&Config::onPbrUnresolvedNexthopActionDrop),
                   slotOf(&Config::onBgpPbrRedirect), slotOf(&Config::onPbrEnableNonAgingMacAddr),
                   slotOf(&Config::onPbrActions), slotOf(&Config::onCmapType), slotOf(&Config::onPmapType)});
  using Container = Pbr::PbrActionContainer::VyxNboAttrLogSa;
  expectSlotsFrom(own, {slotOf(&Container::onIsNondestructing), slotOf(&Container::onFwdAction),
                        slotOf(&Container::onDscpAction)});
}

} // namespace
} // namespace replication_test
