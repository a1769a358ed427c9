// The order of virtual operations is what separately compiled classes rely on.

#include "Vyx/Entity.h"
#include "Vyx/LinkQueue.h"
#include "Vyx/ListRaw.h"
#include "Vyx/StreamAdapter.h"
#include "Vyx/VyxType.h"
#include "support/Records.h"
#include "support/SlotOf.h"

namespace {

using Vyx::Entity;
using Vyx::Ptr;
using Vyx::PtrInterface;
using Reactor = Vyx::PtrInterface::NotifieeConst;
using LogOut = Vyx::NboAttrLog::Out;
using LogSa = Vyx::Entity::VyxNboAttrLogSa;

// A class's own slots begin behind the six of PtrInterface and the destructor's two.
constexpr std::size_t kFirstOwn = 8;

TEST(SlotOrder, PtrInterfaceOpensEveryTable) {
  expectSlotsFrom(0, {slotOf(&PtrInterface::hasNotificationActiveIs), slotOf(&PtrInterface::vyxAuditErrors),
                      slotOf(&PtrInterface::auditErrors), slotOf(&PtrInterface::isNondestructingIs),
                      slotOf(&PtrInterface::zeroReferencesIs), slotOf(&PtrInterface::fwkType)});
  EXPECT_EQ(kFirstOwn, slotCount<PtrInterface>());
}

TEST(SlotOrder, DestructorTakesTheTwoSlotsBehindTheType) {
  EXPECT_EQ(5U, slotOf(&PtrInterface::fwkType));
  EXPECT_EQ(8U, slotOf(&Reactor::vyxReactor));
  EXPECT_EQ(8U, slotOf(&Entity::name));
}

TEST(SlotOrder, ReactorRoot) {
  expectSlotsFrom(kFirstOwn,
                  {slotOf(&Reactor::vyxReactor),
                   slotOf(&Reactor::vyxRawReactor),
                   slotOf(&Reactor::isStreamAdapter),
                   slotOf(&Reactor::isRegisteredNotifieeIs),
                   slotOf(&Reactor::vyx_bitSetIs),
                   slotOf(&Reactor::name),
                   slotOf(&Reactor::notifierIs),
                   slotOf(&Reactor::handleNotification),
                   slotOf(&Reactor::handleDefault),
                   slotOf(&Reactor::onAttribute),
                   slotOf(&Reactor::onNotification),
                   slotOf(&Reactor::onCollectionNotification),
                   slotOf<void (Reactor::*)()>(&Reactor::onNotificationException),
                   slotOf<void (Reactor::*)(Vyx::AttributeId)>(&Reactor::onNotificationException),
                   slotOf<void (Reactor::*)(Vyx::AttributeId)>(&Reactor::handleNotificationException),
                   slotOf<void (Reactor::*)()>(&Reactor::handleNotificationException),
                   slotOf(&Reactor::onZeroReferences),
                   slotOf(&Reactor::activityPtr),
                   slotOf<Vyx::Activity* (Reactor::*)()>(&Reactor::vyxFwkActivity),
                   slotOf<Vyx::Activity const* (Reactor::*)() const>(&Reactor::vyxFwkActivity),
                   slotOf(&Reactor::actsm)});
  EXPECT_EQ(29U, slotCount<Reactor>());
}

TEST(SlotOrder, ReactorOnAnEntityAddsTwo) {
  expectSlotsFrom(29, {slotOf(&Entity::NotifieeConst::onParent), slotOf(&Entity::NotifieeConst::onVersion)});
  EXPECT_EQ(31U, slotCount<Entity::NotifieeConst>());
}

TEST(SlotOrder, WritableReactorAddsNone) {
  EXPECT_EQ(slotCount<Entity::NotifieeConst>(), slotCount<Entity::Notifiee>());
}

TEST(SlotOrder, OverridingKeepsTheSlot) {
  EXPECT_EQ(slotOf(&Reactor::notifierIs), slotOf(&Entity::NotifieeConst::notifierIs));
  EXPECT_EQ(slotOf(&PtrInterface::fwkType),
            slotOf(static_cast<Vyx::VyxType const* (Entity::*)() const>(&Entity::fwkType)));
}

TEST(SlotOrder, Entity) {
  expectSlotsFrom(
      kFirstOwn, {slotOf(&Entity::name), slotOf<Ptr<Entity const> (Entity::*)() const>(&Entity::parent),
                  slotOf<Ptr<Entity> (Entity::*)()>(&Entity::parent), slotOf(&Entity::parentIs),
                  slotOf(&Entity::parentAttr), slotOf(&Entity::parentAttrId), slotOf(&Entity::parentAttrIdIs),
                  slotOf(&Entity::uriPath), slotOf(&Entity::fullName), slotOf(&Entity::attributeString),
                  slotOf(&Entity::vyxNotifieeAdapterIs), slotOf(&Entity::handleParent),
                  slotOf<Ptr<LogSa> (Entity::*)(Ptr<LogOut const> const&) const>(&Entity::vyxNboAttrLogSa),
                  slotOf(&Entity::vyxHasAttrLogInterface),
                  slotOf<Ptr<LogSa> (Entity::*)(Ptr<LogOut const> const&)>(&Entity::vyxNboAttrLogSa),
                  slotOf(&Entity::vyxNboAttrLogSaForMsgChannel), slotOf(&Entity::vyxNboAttrLogSaIs),
                  slotOf(&Entity::vyxNboAttrLogSaDel)});
  EXPECT_EQ(26U, slotCount<Entity>());
}

TEST(SlotOrder, CollectionHasFiveBehindItsDestructor) {
  using Vyx::BaseCollection;
  expectSlotsFrom(2, {slotOf(&BaseCollection::iteratorMoreLeft), slotOf(&BaseCollection::iteratorIncr),
                      slotOf(&BaseCollection::iteratorDelete), slotOf(&BaseCollection::iteratorStrep),
                      slotOf(&BaseCollection::iteratorSpaceCopy)});
  EXPECT_EQ(7U, slotCount<BaseCollection>());
}

TEST(SlotOrder, NoKindOfCollectionAddsToTheTable) {
  EXPECT_EQ(7U, slotCount<HashOf<int>>());
  EXPECT_EQ(7U, slotCount<TreeOf<int>>());
  EXPECT_EQ(7U, slotCount<Vyx::ListRaw<Entity::NotifieeConst>>());
  EXPECT_EQ(7U, slotCount<Vyx::VyxType::AttributeQ>());
}

TEST(SlotOrder, HashTableOperations) {
  using Table = Vyx::HashMapVTableGeneric;
  expectSlotsFrom(0, {slotOf(&Table::hash), slotOf(&Table::keyEquals), slotOf(&Table::keyLessThan),
                      slotOf(&Table::setNext)});
}

TEST(SlotOrder, HashIteratorHasItsBookmarkBeforeTheDestructor) {
  using Iterator = HashOf<int>::IteratorConst;
  EXPECT_EQ(0U, slotOf(&Iterator::hasBookmark));
  EXPECT_EQ(3U, slotCount<Iterator>());
  EXPECT_EQ(3U, slotCount<HashOf<int>::Iterator>());
}

TEST(SlotOrder, OtherIteratorsHaveTheirBookmarkBehindTheDestructor) {
  EXPECT_EQ(2U, slotOf(&TreeOf<int>::IteratorConst::hasBookmark));
  EXPECT_EQ(2U, slotOf(&Vyx::VyxType::AttributeQ::IteratorConst::hasBookmark));
  EXPECT_EQ(3U, slotCount<TreeOf<int>::IteratorConst>());
}

} // namespace
