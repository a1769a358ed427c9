#include "Vyx/RbTreeMap.h"
#include "Vyx/Entity.h"
#include "support/Records.h"
#include "support/TreeChecks.h"
#include "support/Walks.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

using Vyx::Ptr;
using Tree = TreeOf<int>;
using Record = TreeRecord<int>;

class RbTreeMapTest : public testing::Test {
protected:
  void fill(std::initializer_list<int> keys) {
    for (int key : keys) enter(tree, key, 10 * key);
  }
  int keyOf(Record const* record) const { return record ? record->fwkKey() : -1; }
  Tree tree;
};

TEST_F(RbTreeMapTest, NewTreeIsEmptyWithVersionOne) {
  EXPECT_EQ(0U, tree.count());
  EXPECT_EQ(1U, tree.version());
  EXPECT_EQ(nullptr, tree.first());
  EXPECT_EQ(nullptr, tree.find(0));
  EXPECT_EQ(nullptr, tree.startAt(0));
  EXPECT_EQ(nullptr, tree.findNext(0));
  EXPECT_FALSE(Tree::IteratorConst(tree));
}

TEST_F(RbTreeMapTest, WalksAscend) {
  fill({5, 2, 8, 1, 9, 3, 7});
  EXPECT_EQ("1 2 3 5 7 8 9", keysOf(tree));
  Tree::IteratorConst at(tree);
  for (Tree::Walk walk(tree); walk; ++walk, ++at) EXPECT_EQ(at.member().ptr(), &*walk);
  EXPECT_FALSE(at);
}

TEST_F(RbTreeMapTest, InsertionAndRemovalRaiseTheVersionByOne) {
  fill({1, 2});
  EXPECT_EQ(3U, tree.version());
  EXPECT_EQ(2U, tree.count());
  EXPECT_EQ(1, tree._memberDel(1)->fwkKey());
  EXPECT_EQ(4U, tree.version());
  EXPECT_EQ(1U, tree.count());
}

TEST_F(RbTreeMapTest, RemovalOfAnAbsentKeyChangesNothing) {
  fill({1, 2});
  EXPECT_FALSE(tree._memberDel(3));
  EXPECT_EQ(3U, tree.version());
  EXPECT_EQ(2U, tree.count());
}

TEST_F(RbTreeMapTest, MemberOfNoTreeIsNotRemoved) {
  fill({1, 2});
  tree.memberDel(Vyx::ptrFromNew(new Record(1)));
  EXPECT_EQ(2U, tree.count());
  EXPECT_EQ(3U, tree.version());
}

TEST_F(RbTreeMapTest, ExistingKeyReplacesTheRecord) {
  fill({1, 2, 3});
  Ptr<Record> const old = tree.find(2);
  auto const fresh = enter(tree, 2, 77);
  EXPECT_EQ(3U, tree.count());
  EXPECT_EQ(5U, tree.version());
  EXPECT_EQ(fresh.ptr(), tree.find(2));
  EXPECT_EQ(77, tree.find(2)->value());
  EXPECT_EQ(1U, old->references());
  EXPECT_EQ("1 2 3", keysOf(tree));
}

TEST_F(RbTreeMapTest, ReplacedRootAndLeafLeaveAsWell) {
  fill({2, 1, 3});
  for (int key : {1, 2, 3}) enter(tree, key, key + 100);
  EXPECT_EQ(3, Record::alive());
  for (int key : {1, 2, 3}) EXPECT_EQ(key + 100, tree.find(key)->value());
}

TEST_F(RbTreeMapTest, EnteringTheSameMemberAgainChangesNothing) {
  fill({1, 2, 3});
  Ptr<Record> const member = tree.find(2);
  tree.memberIs(member);
  EXPECT_EQ(4U, tree.version());
  EXPECT_EQ("1 2 3", keysOf(tree));
}

TEST_F(RbTreeMapTest, RemovedMemberHasNoLinksAndMayEnterAgain) {
  fill({4, 2, 6, 1, 3, 5, 7});
  Ptr<Record> const member = tree._memberDel(4);
  EXPECT_EQ(1U, member->references());
  EXPECT_FALSE(member->fwkRbLinks_.left);
  EXPECT_FALSE(member->fwkRbLinks_.right);
  EXPECT_EQ(nullptr, member->fwkRbLinks_.parent);
  EXPECT_EQ("1 2 3 5 6 7", keysOf(tree));
  tree.memberIs(member);
  EXPECT_EQ("1 2 3 4 5 6 7", keysOf(tree));
}

TEST_F(RbTreeMapTest, NextOfTheLargestKeyIsNone) {
  fill({10, 20, 30});
  EXPECT_EQ(nullptr, tree.findNext(30));
  EXPECT_EQ(nullptr, tree.findNext(31));
}

TEST_F(RbTreeMapTest, NextOfAnAbsentKeyIsTheNextLarger) {
  fill({10, 20, 30});
  EXPECT_EQ(10, keyOf(tree.findNext(5)));
  EXPECT_EQ(20, keyOf(tree.findNext(15)));
  EXPECT_EQ(30, keyOf(tree.findNext(29)));
}

TEST_F(RbTreeMapTest, NextOfAKeyIsStrictlyBehindIt) {
  fill({10, 20, 30, 40, 50, 60, 70});
  for (int key = 10; key < 70; key += 10) EXPECT_EQ(key + 10, keyOf(tree.findNext(key)));
}

TEST_F(RbTreeMapTest, SearchFromAKeyIsALowerBound) {
  fill({10, 20, 30});
  EXPECT_EQ("20 30", keysFrom(tree, 20));
  EXPECT_EQ("20 30", keysFrom(tree, 11));
  EXPECT_EQ("10 20 30", keysFrom(tree, -1));
  EXPECT_EQ("", keysFrom(tree, 31));
}

TEST_F(RbTreeMapTest, DeletingTheCurrentMemberLandsOnTheNext) {
  fill({4, 2, 6, 1, 3, 5, 7});
  Tree::IteratorConst at(tree, 4);
  tree._memberDel(4);
  EXPECT_EQ(40, at.member()->value());
  ++at;
  EXPECT_EQ(5, at.key());
  EXPECT_EQ(tree.version(), at.version());
}

TEST_F(RbTreeMapTest, DeletingTheLastMemberLandsOnNone) {
  fill({1, 2, 3});
  Tree::IteratorConst at(tree, 3);
  tree._memberDel(3);
  EXPECT_FALSE(++at);
}

TEST_F(RbTreeMapTest, MemberInsertedDirectlyBehindIsMet) {
  fill({1, 3});
  Tree::IteratorConst at(tree);
  fill({2, 0});
  EXPECT_EQ("1 2 3", keysFrom(at));
}

TEST_F(RbTreeMapTest, ReplacedMemberUnderAnIteratorIsLeftBehind) {
  fill({1, 2, 3});
  Tree::IteratorConst at(tree, 2);
  enter(tree, 2, 99);
  EXPECT_EQ(20, at.member()->value());
  ++at;
  EXPECT_EQ(3, at.key());
}

TEST_F(RbTreeMapTest, PlaceThatIsNoLongerGoodIsLookedForAgain) {
  fill({1, 3});
  auto const place = tree.place(5);
  EXPECT_EQ(nullptr, place.member);
  tree._memberDel(3);
  fill({9, 7});
  tree.newMember(Vyx::ptrFromNew(new Record(5)), place);
  EXPECT_EQ("1 5 7 9", keysOf(tree));
  EXPECT_EQ(4U, TreeChecks<Record>::check(tree));
}

TEST_F(RbTreeMapTest, IteratorsReleaseThroughTheCollection) {
  fill({1});
  {
    Tree::IteratorConst at(tree);
    Tree::IteratorConst const copy = at;
    tree._memberDel(1);
    EXPECT_EQ(2U, at.current()->references());
    at = Tree::IteratorConst(tree);
    EXPECT_FALSE(at);
    EXPECT_EQ(1, Record::alive());
  }
  EXPECT_EQ(0, Record::alive());
}

TEST_F(RbTreeMapTest, DefaultKeyIsNoBookmark) {
  fill({0, 1});
  EXPECT_FALSE(Tree::IteratorConst(tree).hasBookmark());
  EXPECT_TRUE(Tree::IteratorConst(tree, 1).hasBookmark());
  EXPECT_FALSE(Tree::IteratorConst(tree, 2).hasBookmark());
  EXPECT_FALSE(Tree::IteratorConst().hasBookmark());
}

TEST_F(RbTreeMapTest, CopySharesNoRecord) {
  fill({1, 2, 3});
  Tree other;
  enter(other, 9);
  other = tree;
  EXPECT_EQ("1 2 3", keysOf(other));
  for (int key : {1, 2, 3}) {
    EXPECT_NE(tree.find(key), other.find(key));
    EXPECT_EQ(10 * key, other.find(key)->value());
  }
  EXPECT_EQ(6, Record::alive());
}

TEST_F(RbTreeMapTest, CopyCountsItsReleaseAndEachInsertion) {
  fill({1, 2, 3});
  Tree other;
  enter(other, 9);
  other = tree;
  EXPECT_EQ(3U, other.count());
  EXPECT_EQ(2U + 1U + 3U, other.version());
}

TEST_F(RbTreeMapTest, CopyOfAnEmptyTreeEmptiesAndRaisesTheVersion) {
  fill({1, 2});
  tree = Tree();
  EXPECT_EQ(0U, tree.count());
  EXPECT_EQ(4U, tree.version());
  EXPECT_EQ(0, Record::alive());
}

TEST_F(RbTreeMapTest, AssignmentToItselfChangesNothing) {
  fill({1, 2});
  Record* const member = tree.find(1);
  tree = *&tree;
  EXPECT_EQ(3U, tree.version());
  EXPECT_EQ(member, tree.find(1));
}

TEST_F(RbTreeMapTest, CopiedTreeIsFreshAndDeep) {
  fill({1, 2, 3});
  Tree const copy(tree);
  EXPECT_EQ("1 2 3", keysOf(copy));
  EXPECT_NE(tree.find(2), copy.find(2));
}

TEST_F(RbTreeMapTest, MemberHeldElsewhereOutlivesTheTree) {
  auto shortLived = std::make_unique<Tree>();
  auto const held = enter(*shortLived, 2);
  enter(*shortLived, 1);
  enter(*shortLived, 3);
  shortLived = nullptr;
  EXPECT_EQ(1, Record::alive());
  EXPECT_EQ(1U, held->references());
  EXPECT_FALSE(held->fwkRbLinks_.left || held->fwkRbLinks_.right || held->fwkRbLinks_.parent);
}

TEST_F(RbTreeMapTest, AnyPathOfDeletionEndsEmpty) {
  for (int step : {1, 2, 3, 5, 7}) {
    for (int key = 0; key < 64; ++key) enter(tree, key);
    for (int key = 0, n = 0; n < 64; key = (key + step) % 64, ++n)
      while (!tree._memberDel(key)) key = (key + 1) % 64;
    EXPECT_EQ(0U, tree.count());
    EXPECT_EQ(nullptr, tree.first());
  }
  EXPECT_EQ(0, Record::alive());
}

TEST_F(RbTreeMapTest, ChildHeldElsewhereHasNoParentWhenTheTreeEnds) {
  struct Child final : Vyx::Entity {
    explicit Child(Vyx::Name name, int = 0) : Entity(std::move(name)) {}
    Vyx::Name fwkKey() const { return name(); }
    int value() const { return 0; }
    Vyx::RbTreeLinks fwkRbLinks_;
  };
  struct Parent final : Vyx::Entity {
    Vyx::RbTreeMap<Child, Vyx::Name> children;
  };
  auto parent = Vyx::ptrFromNew(new Parent);
  auto const child = Vyx::ptrFromNew(new Child("edge"));
  parent->children.newMember(child);
  child->parentIs(Vyx::Ptr<Vyx::Entity>(parent));
  parent = nullptr;
  EXPECT_EQ(nullptr, child->vyxParent());
}

} // namespace
