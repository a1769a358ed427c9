// The order of the entries that the levels of the checkpoint tree add to the reactor interfaces.

#include "Pbr/Pbr.h"

#include "support/SlotOf.h"

namespace {

constexpr std::size_t kOwnOperation = 26;
constexpr std::size_t kVersion = 30;
constexpr std::size_t kNondestructing = 31;
constexpr std::size_t kOwnEntry = kNondestructing + 1;

// A keyed collection's three entries.
template <class Reactor, class Key> struct Entries {
  void (Reactor::*keyed)(Key);
  void (Reactor::*immediate)();
  void (Reactor::*keyless)();
};
template <class Reactor, class Key>
void expectEntries(std::size_t first, Entries<Reactor, Key> const& entries) {
  expectSlotsFrom(first, {slotOf(entries.keyed), slotOf(entries.immediate), slotOf(entries.keyless)});
}

TEST(EntitySlots, LevelsAddNone) {
  EXPECT_EQ(kOwnOperation, slotCount<Pbr::CheckpointStatus>());
  EXPECT_EQ(kOwnOperation, slotCount<Pbr::CheckpointAgentStatus>());
  EXPECT_EQ(kOwnOperation, slotCount<Pbr::PolicyMapCheckpointStatus>());
  EXPECT_EQ(kOwnOperation, slotCount<Pbr::ClassMapCheckpointStatus>());
  EXPECT_EQ(kOwnOperation, slotCount<Pbr::PbrAclTypeCheckpointStatus>());
  EXPECT_EQ(kOwnOperation, slotCount<Pbr::PbrAclCheckpointStatus>());
}

TEST(ReactorSlots, RootHasThreeEntries) {
  using R = Pbr::CheckpointStatus::NotifieeConst;
  expectEntries<R, Vyx::Name>(
      kOwnEntry,
      {&R::onCheckpointAgentStatus, &R::onCheckpointAgentStatusvyxImmediate, &R::onCheckpointAgentStatus});
  EXPECT_EQ(kOwnEntry + 3, slotCount<R>());
}

TEST(ReactorSlots, AgentHasThreeEntries) {
  using R = Pbr::CheckpointAgentStatus::NotifieeConst;
  expectEntries<R, Vyx::Name>(kOwnEntry,
                              {&R::onPmapCkptStatus, &R::onPmapCkptStatusvyxImmediate, &R::onPmapCkptStatus});
  EXPECT_EQ(kOwnEntry + 3, slotCount<R>());
}

TEST(ReactorSlots, PolicyMapsTimeFollowsItsClassMaps) {
  using R = Pbr::PolicyMapCheckpointStatus::NotifieeConst;
  expectEntries<R, Vyx::Name>(kOwnEntry,
                              {&R::onCmapCkptStatus, &R::onCmapCkptStatusvyxImmediate, &R::onCmapCkptStatus});
  EXPECT_EQ(kOwnEntry + 3, slotOf(&R::onCkptTimestamp));
  EXPECT_EQ(kOwnEntry + 4, slotCount<R>());
}

TEST(ReactorSlots, ClassMapsVersionTakesTheSlotOfAllReactors) {
  using R = Pbr::ClassMapCheckpointStatus::NotifieeConst;
  EXPECT_EQ(kOwnEntry, slotOf(&R::onPktMatch));
  expectEntries<R, Acl::AclType>(
      kOwnEntry + 1, {&R::onAclTypeCkptStatus, &R::onAclTypeCkptStatusvyxImmediate, &R::onAclTypeCkptStatus});
  EXPECT_EQ(kOwnEntry + 4, slotCount<R>());
  EXPECT_EQ(kVersion, slotOf(&R::onVersion));
  EXPECT_EQ(kVersion, slotOf(&Vyx::Entity::NotifieeConst::onVersion));
}

TEST(ReactorSlots, KindHasThreeEntriesAndNoneForItsType) {
  using R = Pbr::PbrAclTypeCheckpointStatus::NotifieeConst;
  expectEntries<R, Vyx::Name>(kOwnEntry, {&R::onAcl, &R::onAclvyxImmediate, &R::onAcl});
  EXPECT_EQ(kOwnEntry + 3, slotCount<R>());
}

TEST(ReactorSlots, AclsVersionTakesTheSlotOfAllReactors) {
  using R = Pbr::PbrAclCheckpointStatus::NotifieeConst;
  EXPECT_EQ(kNondestructing, slotOf(&R::onIsNondestructing));
  expectEntries<R, Acl::UniqueId const&>(kOwnEntry,
                                         {&R::onRuleStatus, &R::onRuleStatusvyxImmediate, &R::onRuleStatus});
  EXPECT_EQ(kOwnEntry + 3, slotOf(&R::onTimestamp));
  EXPECT_EQ(kOwnEntry + 4, slotCount<R>());
  EXPECT_EQ(kVersion, slotOf(&R::onVersion));
}

} // namespace
