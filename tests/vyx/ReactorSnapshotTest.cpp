// A round is a copied vector of counted pointers to the reactors, whatever happens to the list meanwhile.

#include "support/Reactors.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace {

using Vyx::Ptr;

class ReactorSnapshotTest : public testing::Test {
protected:
  // Makes and links reactors; the fixture is their only holder.
  void make(std::initializer_list<char const*> ids) {
    for (char const* id : ids) makeOne(id);
  }
  void makeOne(std::string const& id) {
    held.push_back(Vyx::ptrFromNew(new Listener(id, &heard)));
    held.back()->linkTo(*list);
  }
  // The held reactor of that id, where it stands.
  Ptr<Listener>& at(std::string const& id) {
    for (auto& listener : held)
      if (listener && listener->id == id) return listener;
    ADD_FAILURE() << "nobody holds " << id;
    return held.front();
  }
  void drop(std::string const& id) { at(id) = nullptr; }
  // What one round makes heard.
  std::string round() {
    heard.clear();
    runLazyRound(*list);
    EXPECT_FALSE(Vyx::ReactorSnapshot::anyActive());
    return heard;
  }
  template <class Entry> void on(std::string const& id, Entry entry) { at(id)->entry = std::move(entry); }
  void dropList() {
    list = nullptr;
    for (auto& listener : held)
      if (listener) listener->listIsGone();
  }

  std::string heard;
  std::unique_ptr<Listeners> list = std::make_unique<Listeners>();
  std::vector<Ptr<Listener>> held;
};

TEST_F(ReactorSnapshotTest, RoundCallsEveryReactorInTheListsOrder) {
  make({"a", "b", "c"});
  EXPECT_EQ("a b c ", round());
}

TEST_F(ReactorSnapshotTest, RoundOverAnEmptyListCallsNobody) { EXPECT_EQ("", round()); }

TEST_F(ReactorSnapshotTest, QuietRoundCountsNobody) {
  make({"a", "b"});
  on("a", [](Listener& self) { EXPECT_EQ(1U, self.references()); });
  EXPECT_EQ("a b ", round());
}

TEST_F(ReactorSnapshotTest, ReactorAddedDuringARoundIsNotCalledInIt) {
  make({"a", "b"});
  on("a", [&](Listener& self) {
    self.entry = nullptr;
    makeOne("late");
  });
  EXPECT_EQ("a b ", round());
  EXPECT_EQ("a b late ", round());
}

TEST_F(ReactorSnapshotTest, ReactorLinkedAtTheHeadDuringARoundIsNotCalledInIt) {
  make({"a", "b"});
  auto const first = Vyx::ptrFromNew(new Listener("first", &heard));
  on("a", [&](Listener&) { list->linkHead(first.ptr()); });
  EXPECT_EQ("a b ", round());
  list->unlink(first.ptr());
}

TEST_F(ReactorSnapshotTest, DroppedReactorIsPassedOver) {
  make({"a", "b", "c"});
  on("a", [&](Listener&) { drop("b"); });
  EXPECT_EQ("a ~b c ", round());
  EXPECT_EQ("a c ", idsOf(*list));
}

TEST_F(ReactorSnapshotTest, SeveralDroppedInARowArePassedOver) {
  make({"a", "b", "c", "d"});
  on("a", [&](Listener&) {
    drop("c");
    drop("b");
  });
  EXPECT_EQ("a ~b ~c d ", round());
}

TEST_F(ReactorSnapshotTest, LastReactorDroppedEndsTheRound) {
  make({"a", "b"});
  on("a", [&](Listener&) { drop("b"); });
  EXPECT_EQ("a ~b ", round());
}

TEST_F(ReactorSnapshotTest, UnlinkedReactorThatIsHeldElsewhereIsCalled) {
  make({"a", "b", "c"});
  on("a", [&](Listener&) { at("b")->unlink(); });
  EXPECT_EQ("a b c ", round());
  EXPECT_EQ("a c ", round());
}

TEST_F(ReactorSnapshotTest, DroppedReactorThatAnotherHoldsIsCalled) {
  make({"a", "b"});
  Ptr<Listener> const other = at("b");
  on("a", [&](Listener&) { drop("b"); });
  EXPECT_EQ("a b ", round());
}

TEST_F(ReactorSnapshotTest, ReactorTakenUpAgainBeforeItsTurnIsCalled) {
  make({"a", "b", "c"});
  Listener* const c = at("c").ptr();
  Ptr<Listener> again;
  on("a", [&](Listener&) { drop("c"); });
  on("b", [&](Listener&) { again = c; });
  EXPECT_EQ("a b c ", round());
}

TEST_F(ReactorSnapshotTest, ReactorAlreadyCalledDiesAtOnce) {
  make({"a", "b", "c"});
  on("b", [&](Listener&) { drop("a"); });
  EXPECT_EQ("a b ~a c ", round());
}

TEST_F(ReactorSnapshotTest, ReactorThatDropsItselfLivesToTheEndOfItsEntry) {
  make({"a", "b"});
  on("a", [&](Listener&) {
    drop("a");
    heard += "still ";
  });
  EXPECT_EQ("a still ~a b ", round());
}

TEST_F(ReactorSnapshotTest, RelinkedReactorIsCalledOnce) {
  make({"a", "b", "c"});
  on("a", [&](Listener&) {
    at("b")->unlink();
    at("b")->linkTo(*list);
  });
  EXPECT_EQ("a b c ", round());
  EXPECT_EQ("a c b ", idsOf(*list));
}

TEST_F(ReactorSnapshotTest, ListMayEndDuringARound) {
  make({"a", "b", "c"});
  Listener* const b = at("b").ptr();
  on("a", [&, b](Listener&) {
    drop("b");
    dropList();
    b->listIsGone();
  });
  heard.clear();
  runLazyRound(*list);
  EXPECT_EQ("a ~b c ", heard);
}

TEST_F(ReactorSnapshotTest, EmptiedListDoesNotEndTheRound) {
  make({"a", "b", "c"});
  on("a", [&](Listener&) { list->deleteAll(); });
  EXPECT_EQ("a b c ", round());
  EXPECT_EQ("", round());
}

TEST_F(ReactorSnapshotTest, NestedRoundCallsEverybodyAgain) {
  make({"a", "b"});
  on("a", [&](Listener& self) {
    self.entry = nullptr;
    runLazyRound(*list);
  });
  EXPECT_EQ("a a b b ", round());
}

TEST_F(ReactorSnapshotTest, ReactorDroppedInANestedRoundIsHeldByBoth) {
  make({"a", "b", "c"});
  on("a", [&](Listener& self) {
    self.entry = [&](Listener&) { drop("b"); };
    runLazyRound(*list);
  });
  // Two rounds hold it in the inner one, so that it is called there; in the outer one nobody else does.
  EXPECT_EQ("a a b c ~b c ", round());
}

TEST_F(ReactorSnapshotTest, ReactorDroppedBeforeANestedRoundIsCalledInIt) {
  make({"a", "b"});
  on("a", [&](Listener& self) {
    self.entry = nullptr;
    drop("b");
    runLazyRound(*list);
  });
  EXPECT_EQ("a a b ~b ", round());
}

TEST_F(ReactorSnapshotTest, NestedRoundOverAnotherListLeavesTheOuterOneAlone) {
  make({"a", "b"});
  Listeners others;
  auto const other = Vyx::ptrFromNew(new Listener("other", &heard));
  other->linkTo(others);
  other->entry = [&](Listener&) { drop("b"); };
  on("a", [&](Listener&) { runLazyRound(others); });
  EXPECT_EQ("a other ~b ", round());
  other->unlink();
}

TEST_F(ReactorSnapshotTest, MoreThanSixteenReactorsAreHeld) {
  std::string expected;
  for (int i = 0; i < 40; ++i) {
    makeOne(std::to_string(i));
    expected += i == 20 || i == 39 ? "~" + std::to_string(i) + " " : std::to_string(i) + " ";
  }
  on("0", [&](Listener&) {
    drop("20");
    drop("39");
    at("30")->unlink();
    makeOne("late");
  });
  EXPECT_EQ(expected, round());
}

TEST_F(ReactorSnapshotTest, HoldsTakenInTheMiddleCoverTheRest) {
  for (int i = 0; i < 20; ++i) makeOne(std::to_string(i));
  on("17", [&](Listener&) {
    drop("18");
    drop("3");
  });
  EXPECT_EQ("0 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 ~3 ~18 19 ", round());
}

TEST_F(ReactorSnapshotTest, RoundThatIsLeftByAnExceptionReleasesTheRest) {
  make({"a", "b", "c"});
  on("a", [&](Listener&) {
    drop("c");
    throw 1;
  });
  EXPECT_THROW(runLazyRound(*list), int);
  EXPECT_FALSE(Vyx::ReactorSnapshot::anyActive());
  EXPECT_EQ("a ~c ", heard);
  EXPECT_EQ(1U, at("b")->references());
}

TEST_F(ReactorSnapshotTest, ReactorThatBecomesDestructibleDuringARoundIsPassedOver) {
  make({"a", "b"});
  Listener* const b = at("b").ptr();
  b->isNondestructingIs(true);
  drop("b");
  on("a", [&](Listener&) { b->isNondestructingIs(false); });
  EXPECT_EQ("a ~b ", round());
}

TEST_F(ReactorSnapshotTest, EveryRoundLetsItsHoldsGo) {
  make({"a", "b", "c"});
  on("a", [&](Listener&) { makeOne("late"); });
  round();
  for (auto const& listener : held) EXPECT_EQ(1U, listener->references());
}

} // namespace
