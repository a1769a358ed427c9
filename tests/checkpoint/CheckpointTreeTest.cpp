// The collections of the five upper levels: what is claimed holds for each of them.

#include "CheckpointListeners.h"

#include "support/Invariants.h"

namespace {

using Vyx::Ptr;

// What every level's collection can do.
template <class Owner, class Member, class Key, class At> struct Operations {
  Ptr<Member> (Owner::*is)(Key);
  Ptr<Member> (Owner::*add)(Key);
  Ptr<Member> (Owner::*get)(Key) const;
  Ptr<Member> (Owner::*del)(Key);
  Ptr<Member> (Owner::*delAt)(At&);
  void (Owner::*delAll)();
  void (Owner::*notify)(Key);
  std::uint32_t (Owner::*count)() const;
  At (Owner::*at)();
  At (Owner::*atKey)(Key);
};

struct Agents {
  using Owner = Pbr::CheckpointStatus;
  using Member = Pbr::CheckpointAgentStatus;
  using Key = Vyx::Name;
  using Listener = RootListener;
  using At = Owner::CheckpointAgentStatusIterator;
  static constexpr char const* name = "agent";
  static constexpr int id = 258;
  static constexpr Operations<Owner, Member, Key, At> operations{
      &Owner::checkpointAgentStatusIs,       &Owner::newCheckpointAgentStatus,
      &Owner::checkpointAgentStatus,         &Owner::checkpointAgentStatusDel,
      &Owner::checkpointAgentStatusDel,      &Owner::checkpointAgentStatusDelAll,
      &Owner::checkpointAgentStatusNotify,   &Owner::checkpointAgentStatuses,
      &Owner::checkpointAgentStatusIterator, &Owner::checkpointAgentStatusIterator};
};

struct PolicyMaps {
  using Owner = Pbr::CheckpointAgentStatus;
  using Member = Pbr::PolicyMapCheckpointStatus;
  using Key = Vyx::Name;
  using Listener = AgentListener;
  using At = Owner::PmapCkptStatusIterator;
  static constexpr char const* name = "pmap";
  static constexpr int id = 258;
  static constexpr Operations<Owner, Member, Key, At> operations{
      &Owner::pmapCkptStatusIs,      &Owner::newPmapCkptStatus, &Owner::pmapCkptStatus,
      &Owner::pmapCkptStatusDel,     &Owner::pmapCkptStatusDel, &Owner::pmapCkptStatusDelAll,
      &Owner::pmapCkptStatusNotify,  &Owner::pmapCkptStatuses,  &Owner::pmapCkptStatusIterator,
      &Owner::pmapCkptStatusIterator};
};

struct ClassMaps {
  using Owner = Pbr::PolicyMapCheckpointStatus;
  using Member = Pbr::ClassMapCheckpointStatus;
  using Key = Vyx::Name;
  using Listener = PmapListener;
  using At = Owner::CmapCkptStatusIterator;
  static constexpr char const* name = "cmap";
  static constexpr int id = 258;
  static constexpr Operations<Owner, Member, Key, At> operations{
      &Owner::cmapCkptStatusIs,      &Owner::newCmapCkptStatus, &Owner::cmapCkptStatus,
      &Owner::cmapCkptStatusDel,     &Owner::cmapCkptStatusDel, &Owner::cmapCkptStatusDelAll,
      &Owner::cmapCkptStatusNotify,  &Owner::cmapCkptStatuses,  &Owner::cmapCkptStatusIterator,
      &Owner::cmapCkptStatusIterator};
};

struct AclTypes {
  using Owner = Pbr::ClassMapCheckpointStatus;
  using Member = Pbr::PbrAclTypeCheckpointStatus;
  using Key = Acl::AclType;
  using Listener = CmapListener;
  using At = Owner::AclTypeCkptStatusIterator;
  static constexpr char const* name = "aclType";
  static constexpr int id = 260;
  static constexpr Operations<Owner, Member, Key, At> operations{
      &Owner::aclTypeCkptStatusIs,      &Owner::newAclTypeCkptStatus, &Owner::aclTypeCkptStatus,
      &Owner::aclTypeCkptStatusDel,     &Owner::aclTypeCkptStatusDel, &Owner::aclTypeCkptStatusDelAll,
      &Owner::aclTypeCkptStatusNotify,  &Owner::aclTypeCkptStatuses,  &Owner::aclTypeCkptStatusIterator,
      &Owner::aclTypeCkptStatusIterator};
};

struct Acls {
  using Owner = Pbr::PbrAclTypeCheckpointStatus;
  using Member = Pbr::PbrAclCheckpointStatus;
  using Key = Vyx::Name;
  using Listener = AclTypeListener;
  using At = Owner::AclIterator;
  static constexpr char const* name = "acl";
  static constexpr int id = 259;
  static constexpr Operations<Owner, Member, Key, At> operations{
      &Owner::aclIs,     &Owner::newAcl,    &Owner::acl,  &Owner::aclDel,      &Owner::aclDel,
      &Owner::aclDelAll, &Owner::aclNotify, &Owner::acls, &Owner::aclIterator, &Owner::aclIterator};
};

// An entity of that level.
template <class X> Ptr<X> made() { return Vyx::make<X>("one"); }
template <> Ptr<Pbr::PbrAclTypeCheckpointStatus> made() {
  return Vyx::make<Pbr::PbrAclTypeCheckpointStatus>("one", Acl::ip);
}

template <class K> K keyOf(unsigned n) { return static_cast<K>(n); }
template <> Vyx::Name keyOf(unsigned n) { return Vyx::String8("number ") + Vyx::valueToStrep(n); }

template <class L> class CheckpointLevel : public testing::Test {
protected:
  using Owner = typename L::Owner;
  using Member = typename L::Member;
  using Key = typename L::Key;

  ~CheckpointLevel() override {
    if (owner) checkInvariants(*owner);
  }

  Heard heard;
  Ptr<Owner> owner = made<Owner>();
  Ptr<typename L::Listener> const listener = listen<typename L::Listener>(owner, heard);

  std::string told() { return heard.take(); }
  static std::string line(Key const& key) {
    using Vyx::valueToStrep;
    return std::string(L::name) + " " + std::string(Vyx::String8(valueToStrep(key)).view());
  }
  static std::string line(unsigned n) { return line(keyOf<Key>(n)); }

  Ptr<Member> is(unsigned n) { return ((*owner).*L::operations.is)(keyOf<Key>(n)); }
  Ptr<Member> add(unsigned n) { return ((*owner).*L::operations.add)(keyOf<Key>(n)); }
  Ptr<Member> get(unsigned n) { return ((*owner).*L::operations.get)(keyOf<Key>(n)); }
  Ptr<Member> del(unsigned n) { return ((*owner).*L::operations.del)(keyOf<Key>(n)); }
  Ptr<Member> delAt(typename L::At& at) { return ((*owner).*L::operations.delAt)(at); }
  void delAll() { ((*owner).*L::operations.delAll)(); }
  void notify(unsigned n) { ((*owner).*L::operations.notify)(keyOf<Key>(n)); }
  std::uint32_t count() { return ((*owner).*L::operations.count)(); }
  typename L::At at() { return ((*owner).*L::operations.at)(); }
  typename L::At at(unsigned n) { return ((*owner).*L::operations.atKey)(keyOf<Key>(n)); }

  // The members 1, 2, 3, unheard.
  void fill() {
    for (unsigned n : {1U, 2U, 3U}) is(n);
    told();
  }
  std::string linesInOrder() {
    Heard lines;
    for (auto walk = at(); walk; ++walk) lines.note(line(Key(walk.key())));
    return lines.take();
  }
};

using Levels = testing::Types<Agents, PolicyMaps, ClassMaps, AclTypes, Acls>;
TYPED_TEST_SUITE(CheckpointLevel, Levels);

TYPED_TEST(CheckpointLevel, StartsEmpty) {
  EXPECT_EQ(0U, this->count());
  EXPECT_FALSE(this->at());
  EXPECT_FALSE(this->get(1));
}

TYPED_TEST(CheckpointLevel, NewMemberIsAttachedAndTold) {
  auto const member = this->is(1);
  EXPECT_EQ(this->line(1), this->told());
  EXPECT_EQ(member, this->get(1));
  EXPECT_EQ(this->owner, member->parent());
  EXPECT_EQ(TypeParam::id, member->parentAttrId());
  EXPECT_EQ(keyOf<typename TypeParam::Key>(1), member->fwkKey());
  EXPECT_EQ(2U, member->references());
}

TYPED_TEST(CheckpointLevel, MemberIsThereAndAttachedWhenTheReactorsRun) {
  bool attached = false;
  this->listener->during = [&] {
    auto const member = this->get(1);
    attached = member && member->parent() == this->owner;
  };
  this->is(1);
  EXPECT_TRUE(attached);
}

TYPED_TEST(CheckpointLevel, KeyThatIsThereGivesTheMemberAndIsNotTold) {
  auto const member = this->is(1);
  this->told();
  EXPECT_EQ(member, this->is(1));
  EXPECT_EQ("", this->told());
  EXPECT_EQ(1U, this->count());
}

TYPED_TEST(CheckpointLevel, NewOneIsAttachedAndNobodyIsTold) {
  auto const member = this->add(1);
  EXPECT_EQ("", this->told());
  EXPECT_EQ(member, this->get(1));
  EXPECT_EQ(this->owner, member->parent());
  EXPECT_EQ(TypeParam::id, member->parentAttrId());
}

TYPED_TEST(CheckpointLevel, RemovedMemberIsReturnedDetachedAndTold) {
  auto const member = this->is(1);
  this->told();
  EXPECT_EQ(member, this->del(1));
  EXPECT_EQ(this->line(1), this->told());
  EXPECT_FALSE(member->parent());
  EXPECT_EQ(1U, member->references());
}

TYPED_TEST(CheckpointLevel, RemovedMemberIsGoneAndHasNoParentWhenTheReactorsRun) {
  auto const member = this->is(1);
  bool gone = false;
  this->listener->during = [&] { gone = !this->get(1) && !member->parent(); };
  this->del(1);
  EXPECT_TRUE(gone);
}

TYPED_TEST(CheckpointLevel, AbsentKeyGivesNullAndIsNotTold) {
  this->fill();
  EXPECT_FALSE(this->del(7));
  EXPECT_EQ("", this->told());
}

TYPED_TEST(CheckpointLevel, RemovalUnderAnIteratorReturnsTheMember) {
  this->fill();
  auto at = this->at(2);
  auto const member = this->get(2);
  EXPECT_EQ(member, this->delAt(at));
  EXPECT_EQ(this->line(2), this->told());
  EXPECT_FALSE(member->parent());
}

TYPED_TEST(CheckpointLevel, RemovalUnderAnIteratorOnNoMemberGivesNull) {
  auto at = this->at();
  EXPECT_FALSE(this->delAt(at));
  EXPECT_EQ("", this->told());
}

TYPED_TEST(CheckpointLevel, RemovalOfAllTellsOfEachInOrderAndNeverWithoutAKey) {
  this->fill();
  std::string const each = this->linesInOrder();
  this->delAll();
  EXPECT_EQ(each, this->told());
  EXPECT_EQ(0U, this->count());
}

TYPED_TEST(CheckpointLevel, NotifyTellsOfAnyKey) {
  this->notify(9);
  EXPECT_EQ(this->line(9), this->told());
}

TYPED_TEST(CheckpointLevel, ExceptionComesBackWithTheAttributesId) {
  this->listener->during = [] { throw 1; };
  auto const member = this->is(1);
  EXPECT_EQ(this->line(1) + " !" + std::to_string(TypeParam::id), this->told());
  EXPECT_EQ(member, this->get(1));
}

TYPED_TEST(CheckpointLevel, IsWalkedByReversedHashWhateverTheRecordSays) {
  for (unsigned n = 1; n <= 50; ++n) this->is(n);
  std::uint32_t last = 0;
  unsigned met = 0;
  for (auto walk = this->at(); walk; ++walk, ++met) {
    EXPECT_LE(last, Vyx::reversedHash(walk.member()->fwkKey()));
    last = Vyx::reversedHash(walk.member()->fwkKey());
  }
  EXPECT_EQ(50U, met);
}

TYPED_TEST(CheckpointLevel, EndsSilentlyAndMembersThatAreHeldLoseTheirParent) {
  this->fill();
  auto const member = this->get(2);
  this->listener->isWeakReferenceIs(true);
  this->owner = nullptr;
  EXPECT_EQ("", this->told());
  EXPECT_FALSE(member->parent());
}

} // namespace
