#include "Vyx/ReactorList.h"
#include "support/Reactors.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using Vyx::Ptr;

class ReactorListTest : public testing::Test {
protected:
  ReactorListTest() {
    for (char const* id : {"a", "b", "c"}) listeners.push_back(Vyx::ptrFromNew(new Listener(id)));
  }
  void linkAll() {
    for (auto const& listener : listeners) list.linkTail(listener.ptr());
  }
  // One more, which outlives the list like the others.
  Listener* more(char const* id) {
    listeners.push_back(Vyx::ptrFromNew(new Listener(id)));
    return listeners.back().ptr();
  }
  Listener* at(std::size_t i) const { return listeners[i].ptr(); }

  std::vector<Ptr<Listener>> listeners;
  Listeners list;
};

TEST_F(ReactorListTest, NewListIsEmpty) {
  EXPECT_TRUE(list.empty());
  EXPECT_EQ(0U, list.count());
  EXPECT_EQ(0U, list.version());
  EXPECT_EQ(nullptr, list.head());
  EXPECT_FALSE(Listeners::LrIteratorConst(list));
}

TEST_F(ReactorListTest, TailKeepsTheOrderOfRegistration) {
  linkAll();
  EXPECT_EQ("a b c ", idsOf(list));
}

TEST_F(ReactorListTest, HeadComesBeforeEverythingLinked) {
  linkAll();
  list.linkHead(more("first"));
  EXPECT_EQ("first a b c ", idsOf(list));
}

TEST_F(ReactorListTest, HeadOfAnEmptyListIsItsTailToo) {
  list.linkHead(at(1));
  list.linkTail(at(2));
  EXPECT_EQ("b c ", idsOf(list));
}

TEST_F(ReactorListTest, EveryChangeRaisesTheVersion) {
  linkAll();
  EXPECT_EQ(3U, list.version());
  EXPECT_EQ(3U, list.count());
  list.unlink(at(1));
  EXPECT_EQ(4U, list.version());
  EXPECT_EQ(2U, list.count());
  list.linkHead(at(1));
  EXPECT_EQ(5U, list.version());
}

TEST_F(ReactorListTest, ListCountsNobody) {
  linkAll();
  for (auto const& listener : listeners) EXPECT_EQ(1U, listener->references());
}

TEST_F(ReactorListTest, UnlinkingTheTailMovesTheTail) {
  linkAll();
  list.unlink(at(2));
  list.linkTail(more("last"));
  EXPECT_EQ("a b last ", idsOf(list));
}

TEST_F(ReactorListTest, UnlinkingTheHeadAndTheOnlyOneWorks) {
  linkAll();
  list.unlink(at(0));
  list.unlink(at(1));
  EXPECT_EQ("c ", idsOf(list));
  list.unlink(at(2));
  EXPECT_TRUE(list.empty());
  list.linkTail(at(0));
  EXPECT_EQ("a ", idsOf(list));
}

TEST_F(ReactorListTest, UnlinkedReactorHasNoNext) {
  linkAll();
  list.unlink(at(0));
  EXPECT_EQ(nullptr, Listeners::next(at(0)));
}

TEST_F(ReactorListTest, UnlinkingAStrangerIsNoErrorAndNoChange) {
  linkAll();
  list.unlink(more("stranger"));
  EXPECT_EQ(3U, list.version());
  EXPECT_EQ("a b c ", idsOf(list));
}

TEST_F(ReactorListTest, LettingAllGoUnlinksEach) {
  linkAll();
  list.deleteAll();
  EXPECT_TRUE(list.empty());
  EXPECT_EQ(4U, list.version());
  EXPECT_EQ(nullptr, list.head());
  for (auto const& listener : listeners) {
    EXPECT_EQ(nullptr, Listeners::next(listener.ptr()));
    EXPECT_EQ(1U, listener->references());
  }
  linkAll();
  EXPECT_EQ("a b c ", idsOf(list));
}

TEST_F(ReactorListTest, LettingAllGoRaisesTheVersionOfAnEmptyListToo) {
  list.deleteAll();
  EXPECT_EQ(1U, list.version());
}

TEST_F(ReactorListTest, EndOfTheListLeavesWeakReactorsUnattached) {
  struct Lamp final : Vyx::Entity {
    Vyx::ListRaw<Vyx::Entity::NotifieeConst> reactors;
  };
  auto lamp = Vyx::ptrFromNew(new Lamp);
  at(0)->isWeakReferenceIs(true);
  at(0)->notifierIs(Ptr<Vyx::PtrInterface const>(lamp));
  lamp->vyxReferenceDec(); // What a weak reactor gives back.
  lamp->reactors.linkTail(at(0));
  lamp = nullptr;
  EXPECT_EQ(nullptr, at(0)->vyxNotifier());
}

} // namespace
