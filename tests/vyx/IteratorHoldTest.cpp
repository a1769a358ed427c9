// What an iterator does to the count of its member, and that the member outlives its leaving.

#include "Vyx/LinkQueue.h"
#include "support/Records.h"
#include "support/ThreadSafePointers.h"
#include "support/Walks.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <vector>

namespace {

struct HashKind {
  using Map = HashOf<unsigned>;
  using Record = HashRecord<unsigned>;
};
struct TreeKind {
  using Map = TreeOf<unsigned>;
  using Record = TreeRecord<unsigned>;
};

template <class Kind> class IteratorHold : public testing::Test {
protected:
  using Map = typename Kind::Map;
  using Record = typename Kind::Record;
  using At = typename Map::IteratorConst;

  ~IteratorHold() override { EXPECT_EQ(static_cast<int>(map.count() + other.count()), Record::alive()); }

  // Keys 0, 1, 2; a member's value is ten times its key.
  void fill(Map& of) {
    for (unsigned key = 0; key < 3; ++key) enter(of, key, static_cast<int>(10 * key));
  }
  static std::uint32_t count(At const& at) { return at.current()->references(); }

  Map map;
  Map other;
};

using Kinds = testing::Types<HashKind, TreeKind>;
TYPED_TEST_SUITE(IteratorHold, Kinds);

TYPED_TEST(IteratorHold, QuietWalkCountsNothing) {
  this->fill(this->map);
  for (typename TestFixture::At at(this->map); at; ++at) EXPECT_EQ(1U, this->count(at));
}

TYPED_TEST(IteratorHold, WithThreadsEveryStepHoldsFromTheStart) {
  ThreadSafePointers const on;
  this->fill(this->map);
  typename TestFixture::At at(this->map);
  auto const copy = at;
  EXPECT_EQ(3U, this->count(at));
  ++at;
  EXPECT_EQ(2U, this->count(at));
  EXPECT_EQ(2U, this->count(copy));
}

TYPED_TEST(IteratorHold, WalkThatBeganBeforeTheThreadsGoesOn) {
  this->fill(this->map);
  typename TestFixture::At at(this->map);
  ThreadSafePointers const on;
  this->map._memberDel(at.key());
  EXPECT_EQ(1U, this->count(at));
  ++at;
  EXPECT_EQ(2U, this->count(at));
}

TYPED_TEST(IteratorHold, EveryIteratorHoldsTheMemberThatLeaves) {
  this->fill(this->map);
  typename TestFixture::At const at(this->map, 1);
  auto const copy = at;
  typename TestFixture::At const second(this->map, 1);
  this->map._memberDel(1);
  EXPECT_EQ(3U, this->count(at));
  EXPECT_EQ(at.current(), copy.current());
  EXPECT_EQ(10, second.current()->value());
}

TYPED_TEST(IteratorHold, TheLastIteratorEndsTheMember) {
  this->fill(this->map);
  std::optional<typename TestFixture::At> at(std::in_place, this->map, 1U);
  auto copy = std::make_unique<typename TestFixture::At>(*at);
  this->map._memberDel(1);
  at.reset();
  EXPECT_EQ(3, TestFixture::Record::alive());
  copy.reset();
  EXPECT_EQ(2, TestFixture::Record::alive());
}

TYPED_TEST(IteratorHold, StepLetsTheMemberThatLeftGo) {
  this->fill(this->map);
  typename TestFixture::At at(this->map);
  this->map._memberDel(at.key());
  ++at;
  EXPECT_EQ(2, TestFixture::Record::alive());
  EXPECT_EQ(1U, this->count(at));
}

TYPED_TEST(IteratorHold, RemovalElsewhereDisturbsNoWalk) {
  this->fill(this->map);
  this->fill(this->other);
  unsigned met = 0;
  for (typename TestFixture::At at(this->map); at; ++at, ++met) {
    this->other._memberDel(met);
    EXPECT_EQ(static_cast<int>(10 * at.key()), at.current()->value());
  }
  EXPECT_EQ(3U, met);
}

TYPED_TEST(IteratorHold, NestedWalksMayEmptyTheMap) {
  this->fill(this->map);
  unsigned met = 0;
  for (typename TestFixture::At outer(this->map); outer; ++outer, ++met)
    for (typename TestFixture::At inner(this->map); inner; ++inner) {
      this->map._memberDel(inner.key());
      EXPECT_EQ(static_cast<int>(10 * outer.key()), outer.current()->value());
    }
  EXPECT_EQ(1U, met);
  EXPECT_EQ(0U, this->map.count());
}

TYPED_TEST(IteratorHold, CopyOfOneWhoseMemberLeftHoldsItToo) {
  this->fill(this->map);
  typename TestFixture::At const at(this->map, 2);
  this->map._memberDel(2);
  auto const copy = at;
  EXPECT_EQ(2U, this->count(copy));
}

TYPED_TEST(IteratorHold, AssignmentTakesAndLetsGo) {
  this->fill(this->map);
  typename TestFixture::At one(this->map, 1);
  typename TestFixture::At const two(this->map, 2);
  this->map._memberDel(1);
  this->map._memberDel(2);
  one = two;
  EXPECT_EQ(1, static_cast<int>(this->map.count()));
  EXPECT_EQ(2, TestFixture::Record::alive());
  EXPECT_EQ(2U, this->count(one));
}

TYPED_TEST(IteratorHold, AssignmentOfAQuietOneLetsGo) {
  this->fill(this->map);
  typename TestFixture::At one(this->map, 1);
  this->map._memberDel(1);
  one = typename TestFixture::At(this->map, 2);
  EXPECT_EQ(2, TestFixture::Record::alive());
  EXPECT_EQ(1U, this->count(one));
  this->map._memberDel(2);
  EXPECT_EQ(1U, this->count(one));
}

TYPED_TEST(IteratorHold, AssignmentToItselfKeepsTheMember) {
  this->fill(this->map);
  typename TestFixture::At at(this->map, 1);
  auto const& same = at;
  at = same;
  EXPECT_EQ(1U, this->count(at));
  this->map._memberDel(1);
  at = same;
  EXPECT_EQ(1U, this->count(at));
  EXPECT_EQ(10, at.current()->value());
}

TYPED_TEST(IteratorHold, OneAtTheEndStaysThere) {
  typename TestFixture::At at(this->map);
  this->fill(this->map);
  at = typename TestFixture::At(this->map, 3);
  EXPECT_FALSE(at);
  this->map._memberDel(0);
  EXPECT_FALSE(at);
}

TYPED_TEST(IteratorHold, MayEndInAnyOrder) {
  this->fill(this->map);
  std::vector<std::unique_ptr<typename TestFixture::At>> all;
  for (int i = 0; i < 5; ++i) all.push_back(std::make_unique<typename TestFixture::At>(this->map, 1U));
  for (std::size_t gone : {2U, 0U, 4U}) all[gone].reset();
  this->map._memberDel(1);
  EXPECT_EQ(2U, this->count(*all[1]));
  EXPECT_EQ(2U, this->count(*all[3]));
}

TEST(HashIteratorHold, MemberOutlivesItsCollection) {
  {
    std::optional<HashOf<unsigned>> map(std::in_place);
    enter(*map, 1U, 10);
    HashOf<unsigned>::IteratorConst const at(*map);
    map.reset();
    EXPECT_EQ(10, at.current()->value());
    EXPECT_EQ(1, HashRecord<unsigned>::alive());
  }
  EXPECT_EQ(0, HashRecord<unsigned>::alive());
}

TEST(TreeIteratorHold, ReplacedMemberIsHeld) {
  TreeOf<unsigned> tree;
  enter(tree, 1U, 10);
  TreeOf<unsigned>::IteratorConst const at(tree);
  enter(tree, 1U, 20);
  EXPECT_EQ(10, at.current()->value());
  EXPECT_EQ(1U, at.current()->references());
}

TEST(TreeIteratorHold, AssignedTreeLeavesTheMember) {
  TreeOf<unsigned> tree;
  enter(tree, 1U, 10);
  TreeOf<unsigned>::IteratorConst at(tree);
  tree = TreeOf<unsigned>();
  EXPECT_EQ(10, at.current()->value());
  ++at;
  EXPECT_FALSE(at);
}

// Its end walks the collection that is being emptied.
class Prying final : public Vyx::PtrInterface {
public:
  using Map = Vyx::HashMap<Prying, unsigned>;
  Prying(unsigned key, Map& map, std::vector<Map::IteratorConst>& seen) : key_(key), map_(map), seen_(seen) {}
  ~Prying() override {
    if (seen_.size() < 2) seen_.emplace_back(map_);
  }
  unsigned fwkKey() const { return key_; }
  Vyx::HashLink fwkHmNext_;

private:
  unsigned key_;
  Map& map_;
  std::vector<Map::IteratorConst>& seen_;
};

TEST(HashIteratorHold, EndOfAMemberMayLookAtTheRest) {
  std::vector<Prying::Map::IteratorConst> seen;
  seen.reserve(2);
  std::optional<Prying::Map> map(std::in_place);
  for (unsigned key = 0; key < 8; ++key) map->newMember(Vyx::ptrFromNew(new Prying(key, *map, seen)));
  map.reset();
  ASSERT_EQ(2U, seen.size());
  EXPECT_EQ(4U, seen[0].key());
  EXPECT_EQ(1U, seen[0].current()->references());
}

class Waiting final : public Vyx::PtrInterface {
public:
  explicit Waiting(unsigned key) : key_(key) {}
  unsigned fwkQkey() const { return key_; }
  Vyx::Ptr<Vyx::PtrInterface> fwkQNext_;

private:
  unsigned key_;
};

TEST(QueueIteratorHold, MemberThatIsTakenOutIsHeld) {
  Vyx::LinkQueue<Waiting, unsigned> queue;
  for (unsigned key : {1U, 2U}) queue.enq(Vyx::ptrFromNew(new Waiting(key)));
  Vyx::LinkQueue<Waiting, unsigned>::IteratorConst at(queue);
  EXPECT_EQ(1U, at.current()->references());
  queue.deq();
  EXPECT_EQ(1U, at.key());
  EXPECT_EQ(1U, at.current()->references());
  ++at;
  EXPECT_EQ(2U, at.key());
}

} // namespace
