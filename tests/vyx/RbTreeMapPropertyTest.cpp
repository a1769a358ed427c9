// The ordered tree under random scripts, against std::map.

#include "support/Random.h"
#include "support/Records.h"
#include "support/TreeChecks.h"
#include "support/Walks.h"

#include <map>

namespace {

using Tree = TreeOf<int>;
using Record = TreeRecord<int>;
using Model = std::map<int, int>;

class RbTreeMapProperty : public testing::Test {
protected:
  int anyKey() { return static_cast<int>(random.below(300)) - 100; }

  // An existing key is replaced.
  void insert(int key) {
    model[key] = ++made;
    auto const place = tree.place(key);
    EXPECT_EQ(tree.find(key), place.member);
    if (random.oneIn(4))
      enter(tree, key, made);
    else
      tree.newMember(Vyx::ptrFromNew(new Record(key, made)), place);
  }
  void remove(int key) {
    auto const member = tree._memberDel(key);
    EXPECT_EQ(model.erase(key), member ? 1U : 0U);
    EXPECT_TRUE(!member || member->references() == (member.ptr() == standing ? 2 : 1));
  }
  void change(std::uint32_t insertsInTen) {
    int const key = anyKey();
    if (random.below(10) < insertsInTen)
      insert(key);
    else
      remove(key);
  }

  void check() { check(tree, model); }
  void check(Tree const& of, Model const& expected) {
    ASSERT_EQ(expected.size(), of.count());
    ASSERT_EQ(expected.size(), TreeChecks<Record>::check(of));
    auto next = expected.begin();
    for (Tree::Walk at(of); at; ++at, ++next) {
      ASSERT_EQ(next->first, at->fwkKey());
      ASSERT_EQ(next->second, at->value());
      ASSERT_EQ(&*at, of.find(next->first));
    }
    ASSERT_TRUE(next == expected.end());
    checkSearches(of, expected);
  }
  void checkSearches(Tree const& of, Model const& expected) {
    int const key = anyKey();
    auto const keyAt = [&](Model::const_iterator at) {
      return at == expected.end() ? nullptr : of.find(at->first);
    };
    ASSERT_EQ(keyAt(expected.find(key)), of.find(key));
    ASSERT_EQ(keyAt(expected.lower_bound(key)), of.startAt(key));
    ASSERT_EQ(keyAt(expected.upper_bound(key)), of.findNext(key));
  }

  void walkWithChanges() {
    Tree::IteratorConst at(tree);
    while (at) {
      standing = at.member().ptr();
      int const key = at.key();
      int const value = at.member()->value();
      if (random.oneIn(3)) remove(key);
      for (std::uint32_t n = random.below(4); n > 0; --n) change(5);
      ASSERT_EQ(value, at.member()->value());
      auto const next = model.upper_bound(key);
      ++at;
      ASSERT_EQ(next != model.end(), static_cast<bool>(at));
      ASSERT_TRUE(!at || next->first == at.key());
    }
    standing = nullptr;
  }

  Random random;
  Record const* standing = nullptr; // A walk stands on it, and holds it.
  int made = 0;
  Tree tree;
  Model model;
};

TEST_F(RbTreeMapProperty, InsertionsAndRemovals) {
  for (int step = 0; step < 2000 && !HasFailure(); ++step) {
    change(step < 900 ? 7 : 4);
    check();
  }
}

TEST_F(RbTreeMapProperty, AscendingAndDescendingInsertions) {
  for (int key = 0; key < 300 && !HasFailure(); ++key) {
    insert(key % 2 ? key : -key);
    check();
  }
}

TEST_F(RbTreeMapProperty, VersionRisesByOneWithEachChange) {
  for (int step = 0; step < 500; ++step) {
    std::uint32_t const before = tree.version();
    int const key = anyKey();
    bool const there = tree.find(key) != nullptr;
    if (random.oneIn(2)) {
      insert(key);
      EXPECT_EQ(before + 1, tree.version());
    } else {
      remove(key);
      EXPECT_EQ(before + (there ? 1 : 0), tree.version());
    }
  }
}

TEST_F(RbTreeMapProperty, WalksWithChangesInTheirBody) {
  for (int walk = 0; walk < 60 && !HasFailure(); ++walk) {
    for (int n = 0; n < 15; ++n) change(7);
    walkWithChanges();
    check();
  }
}

TEST_F(RbTreeMapProperty, CopiesAreDeepAndGoTheirOwnWay) {
  Tree copy;
  for (int round = 0; round < 40 && !HasFailure(); ++round) {
    for (int n = 0; n < 20; ++n) change(7);
    copy = tree;
    Model const asCopied = model;
    EXPECT_EQ(static_cast<int>(tree.count() + copy.count()), Record::alive());
    for (int n = 0; n < 20; ++n) change(3);
    check(copy, asCopied);
    check();
  }
}

} // namespace
