// The order of the virtual operations that the types of the model add to those of the runtime.

#include "Pbr/Pbr.h"

#include "support/SlotOf.h"

namespace {

// Where an entity's own operations begin, and a reactor's entries behind onIsNondestructing.
constexpr std::size_t kOwnOperation = 26;
constexpr std::size_t kNondestructing = 31;
constexpr std::size_t kOwnEntry = kNondestructing + 1;

TEST(EntitySlots, ComparisonIsTheOneThatActionsAdd) {
  EXPECT_EQ(kOwnOperation, slotOf(&PolicyMap::Action::equalTo));
  EXPECT_EQ(kOwnOperation, slotOf(&Pbr::PbrFwdAction::equalTo));
  EXPECT_EQ(kOwnOperation, slotOf(&Pbr::PbrActionSetDscp::equalTo));
}

TEST(EntitySlots, OtherTypesAddNone) {
  EXPECT_EQ(kOwnOperation, slotCount<Vyx::Entity>());
  EXPECT_EQ(kOwnOperation, slotCount<Pbr::Config>());
  EXPECT_EQ(kOwnOperation, slotCount<Pbr::PbrActionContainer>());
  EXPECT_EQ(kOwnOperation + 1, slotCount<PolicyMap::Action>());
  EXPECT_EQ(kOwnOperation + 1, slotCount<Pbr::PbrFwdAction>());
  EXPECT_EQ(kOwnOperation + 1, slotCount<Pbr::PbrActionSetDscp>());
}

TEST(EntitySlots, FrameOperationsStandInTheSlotsOfTheRuntime) {
  EXPECT_EQ(3U, slotOf(&Pbr::Config::isNondestructingIs));
  EXPECT_EQ(4U, slotOf(&Pbr::Config::zeroReferencesIs));
  EXPECT_EQ(5U, slotOf(&Pbr::PbrFwdAction::fwkType));
  EXPECT_EQ(17U, slotOf(&Pbr::PbrFwdAction::attributeString));
  EXPECT_EQ(21U, slotOf(&Pbr::PbrFwdAction::vyxHasAttrLogInterface));
}

TEST(ReactorSlots, FwdActionsEntriesFollowEachOther) {
  using R = Pbr::PbrFwdAction::NotifieeConst;
  EXPECT_EQ(kNondestructing, slotOf(&R::onIsNondestructing));
  expectSlotsFrom(kOwnEntry, {slotOf<void (R::*)(Lomu::IpGenAddr const&)>(&R::onNexthop),
                              slotOf(&R::onNexthopvyxImmediate), slotOf<void (R::*)()>(&R::onNexthop),
                              slotOf(&R::onRecursive), slotOf(&R::onNexthopGroup), slotCount<R>()});
}

TEST(ReactorSlots, SetDscpAddsNoEntry) {
  EXPECT_EQ(kOwnEntry, slotCount<PolicyMap::Action::NotifieeConst>());
  EXPECT_EQ(kOwnEntry, slotCount<Pbr::PbrActionSetDscp::NotifieeConst>());
}

TEST(ReactorSlots, ContainersEntriesFollowEachOther) {
  using R = Pbr::PbrActionContainer::NotifieeConst;
  using Keyed = void (R::*)(Kest::UniqueId const&);
  using Keyless = void (R::*)();
  EXPECT_EQ(kNondestructing, slotOf(&R::onIsNondestructing));
  expectSlotsFrom(kOwnEntry,
                  {slotOf<Keyed>(&R::onFwdAction), slotOf(&R::onFwdActionvyxImmediate),
                   slotOf<Keyless>(&R::onFwdAction), slotOf<Keyed>(&R::onDscpAction),
                   slotOf(&R::onDscpActionvyxImmediate), slotOf<Keyless>(&R::onDscpAction), slotCount<R>()});
}

TEST(ReactorSlots, ConfigsEntriesFollowEachOther) {
  using R = Pbr::Config::NotifieeConst;
  EXPECT_EQ(kNondestructing, slotOf(&R::onIsNondestructing));
  expectSlotsFrom(kOwnEntry, {slotOf(&R::onPbrUnresolvedNexthopActionDrop), slotOf(&R::onBgpPbrRedirect),
                              slotOf(&R::onPbrEnableNonAgingMacAddr), slotOf(&R::onPbrActions),
                              slotOf(&R::onCmapType), slotOf(&R::onPmapType), slotCount<R>()});
}

TEST(ReactorSlots, PolicyMapTypesEntriesFollowEachOther) {
  using R = PolicyMap::PolicyMapTypeConfig::NotifieeConst;
  using ByIntf = void (R::*)(Lomu::IntfId);
  using Keyless = void (R::*)();
  expectSlotsFrom(kOwnEntry, {slotOf<void (R::*)(Vyx::Name)>(&R::onPmap), slotOf(&R::onPmapvyxImmediate),
                              slotOf<Keyless>(&R::onPmap), slotOf<ByIntf>(&R::onIntf),
                              slotOf(&R::onIntfvyxImmediate), slotOf<Keyless>(&R::onIntf),
                              slotOf<ByIntf>(&R::onIntfFallback), slotOf(&R::onIntfFallbackvyxImmediate),
                              slotOf<Keyless>(&R::onIntfFallback), slotCount<R>()});
}

TEST(ReactorSlots, ClassActionsEntriesFollowEachOther) {
  using R = PolicyMap::ClassAction::NotifieeConst;
  expectSlotsFrom(kOwnEntry,
                  {slotOf(&R::onSequence), slotOf<void (R::*)(PolicyMap::ActionType)>(&R::onPolicyAction),
                   slotOf(&R::onPolicyActionvyxImmediate), slotOf<void (R::*)()>(&R::onPolicyAction),
                   slotCount<R>()});
}

TEST(ReactorSlots, MapsEntriesFollowEachOther) {
  using R = PolicyMap::PolicyMapConfig::NotifieeConst;
  expectSlotsFrom(kOwnEntry, {slotOf<void (R::*)(Kest::UniqueId const&)>(&R::onSubconfig),
                              slotOf(&R::onSubconfigvyxImmediate), slotOf<void (R::*)()>(&R::onSubconfig),
                              slotOf(&R::onCurrentSubConfig), slotCount<R>()});
}

TEST(ReactorSlots, WritableReactorsAddNone) {
  EXPECT_EQ(slotCount<Pbr::PbrFwdAction::NotifieeConst>(), slotCount<Pbr::PbrFwdAction::Notifiee>());
  EXPECT_EQ(slotCount<Pbr::Config::NotifieeConst>(), slotCount<Pbr::Config::Notifiee>());
}

} // namespace
