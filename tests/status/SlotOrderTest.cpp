// The order of the entries that the types of the status add to the reactor interfaces.

#include "Pbr/Pbr.h"

#include "support/SlotOf.h"

namespace {

constexpr std::size_t kOwnOperation = 26;
constexpr std::size_t kNondestructing = 31;
constexpr std::size_t kOwnEntry = kNondestructing + 1;

using ById = Kest::UniqueId const&;

TEST(EntitySlots, TypesOfTheStatusAddNone) {
  EXPECT_EQ(kOwnOperation, slotCount<Pbr::NexthopIndexAndL2AdjKey>());
  EXPECT_EQ(kOwnOperation, slotCount<Pbr::PbrClassMapStatus>());
  EXPECT_EQ(kOwnOperation, slotCount<Pbr::Status>());
}

TEST(ReactorSlots, AdjKeysEntriesFollowEachOther) {
  using R = Pbr::NexthopIndexAndL2AdjKey::NotifieeConst;
  EXPECT_EQ(kNondestructing, slotOf(&R::onIsNondestructing));
  expectSlotsFrom(kOwnEntry, {slotOf(&R::onNexthopIndex), slotOf(&R::onNexthopIndexPublishCounter),
                              slotOf(&R::onNexthopIndexDelCounter), slotOf(&R::onL2AdjKey),
                              slotOf<void (R::*)(Lomu::IpGenAddr const&)>(&R::onViasUsed),
                              slotOf(&R::onViasUsedvyxImmediate), slotOf<void (R::*)()>(&R::onViasUsed),
                              slotCount<R>()});
}

TEST(ReactorSlots, ClassMapStatusesEntriesFollowThoseOfTheBase) {
  using B = PolicyMap::ClassMapStatus::NotifieeConst;
  using R = Pbr::PbrClassMapStatus::NotifieeConst;
  EXPECT_EQ(kNondestructing, slotOf(&R::onIsNondestructing));
  expectSlotsFrom(kOwnEntry, {slotOf<void (B::*)(PolicyMap::ClassMapMatchOption)>(&B::onMatch),
                              slotOf(&B::onMatchvyxImmediate), slotOf<void (B::*)()>(&B::onMatch),
                              slotOf(&B::onRuleStatus), slotOf(&R::onActionType), slotOf(&R::onNexthopGroup),
                              slotOf(&R::onNexthopIndexAndL2AdjKey), slotCount<R>()});
}

TEST(ReactorSlots, StatusesEntriesFollowThoseOfTheBase) {
  using B = PolicyMap::PolicyMapTypeStatus::NotifieeConst;
  using R = Pbr::Status::NotifieeConst;
  using Keyless = void (B::*)();
  EXPECT_EQ(kNondestructing, slotOf(&R::onIsNondestructing));
  expectSlotsFrom(kOwnEntry, {slotOf(&B::onType), slotOf<void (B::*)(Vyx::Name)>(&B::onStatus),
                              slotOf(&B::onStatusvyxImmediate), slotOf<Keyless>(&B::onStatus),
                              slotOf<void (B::*)(PolicyMap::IntfErrorKey const&)>(&B::onIntfDisallowed),
                              slotOf(&B::onIntfDisallowedvyxImmediate), slotOf<Keyless>(&B::onIntfDisallowed),
                              slotOf<void (B::*)(ById)>(&B::onResult), slotOf(&B::onResultvyxImmediate),
                              slotOf<Keyless>(&B::onResult), slotOf(&B::onCountersPerRule),
                              slotOf<void (B::*)(ById)>(&B::onClassMapStatus),
                              slotOf(&B::onClassMapStatusvyxImmediate), slotOf<Keyless>(&B::onClassMapStatus),
                              slotOf(&B::onInitialized), slotOf<void (R::*)(ById)>(&R::onPbrClassMapStatus),
                              slotOf(&R::onPbrClassMapStatusvyxImmediate),
                              slotOf<void (R::*)()>(&R::onPbrClassMapStatus), slotCount<R>()});
}

TEST(ReactorSlots, WritableReactorsAddNone) {
  EXPECT_EQ(slotCount<Pbr::Status::NotifieeConst>(), slotCount<Pbr::Status::Notifiee>());
  EXPECT_EQ(slotCount<Pbr::PbrClassMapStatus::NotifieeConst>(),
            slotCount<Pbr::PbrClassMapStatus::Notifiee>());
}

} // namespace
