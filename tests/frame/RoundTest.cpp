#include "ShopListeners.h"

#include <stdexcept>
#include <vector>

namespace {

// Three reactors a, b, c on one shelf, each held by its slot alone.
class Round : public testing::Test {
protected:
  Heard heard;
  Vyx::Ptr<Shop::Shelf> const shelf = Shop::shelfFactory("shelf");
  std::vector<Vyx::Ptr<ShelfListener>> reactors{make("a"), make("b"), make("c")};

  Vyx::Ptr<ShelfListener> make(std::string name) { return listen<ShelfListener>(shelf, heard, name); }
  ShelfListener& a() { return *reactors[0]; }
  ShelfListener& b() { return *reactors[1]; }
  ShelfListener& c() { return *reactors[2]; }
  // RETURNS what was heard of one change.
  std::string change() {
    shelf->largeIs(shelf->large() + 1);
    return heard.take();
  }
};

TEST_F(Round, ReactorsHearInTheOrderOfRegistration) { EXPECT_EQ("a.large b.large c.large", change()); }

TEST_F(Round, ExceptionGoesBackToItsReactorAndTheRoundGoesOn) {
  a().during = [] { throw std::runtime_error("no"); };
  EXPECT_EQ("a.large a.!261 b.large c.large", change());
  EXPECT_EQ(1U, shelf->large());
}

TEST_F(Round, ExceptionOfAnyKindIsCaught) {
  a().during = [] { throw 1; };
  b().during = [] { throw "text"; };
  c().during = [] { Vyx::throwRangeException("range"); };
  EXPECT_EQ("a.large a.!261 b.large b.!261 c.large c.!261", change());
}

TEST_F(Round, ExceptionFromTheExceptionEntryEndsTheRoundAndReachesTheSetter) {
  a().during = [] { throw 1; };
  a().afterException = [] { throw std::runtime_error("worse"); };
  EXPECT_THROW(shelf->largeIs(7), std::runtime_error);
  EXPECT_EQ("a.large a.!261", heard.take());
  EXPECT_EQ(7U, shelf->large());
}

TEST_F(Round, NextRoundAfterOneThatEndedEarlyIsWhole) {
  a().during = [] { throw 1; };
  a().afterException = [] { throw 2; };
  EXPECT_THROW(shelf->largeIs(7), int);
  a().during = a().afterException = {};
  heard.take();
  EXPECT_EQ("a.large b.large c.large", change());
  for (auto const& reactor : reactors) EXPECT_EQ(1U, reactor->references());
}

TEST_F(Round, ReactorAddedDuringTheRoundIsNotCalledInIt) {
  a().during = [this] {
    if (reactors.size() == 3) reactors.push_back(make("d"));
  };
  EXPECT_EQ("a.large b.large c.large", change());
  EXPECT_EQ("a.large b.large c.large d.large", change());
}

TEST_F(Round, ReactorAddedByTheLastOneIsNotCalledInTheRound) {
  c().during = [this] {
    if (reactors.size() == 3) reactors.push_back(make("d"));
  };
  EXPECT_EQ("a.large b.large c.large", change());
}

TEST_F(Round, ReactorDroppedDuringTheRoundIsPassedOver) {
  a().during = [this] { reactors[1] = nullptr; };
  EXPECT_EQ("a.large c.large", change());
}

TEST_F(Round, AllThatWereDroppedArePassedOver) {
  a().during = [this] { reactors[1] = reactors[2] = nullptr; };
  EXPECT_EQ("a.large", change());
}

TEST_F(Round, LastReactorDroppedDuringTheRoundIsPassedOver) {
  a().during = [this] { reactors[2] = nullptr; };
  EXPECT_EQ("a.large b.large", change());
}

TEST_F(Round, ReactorThatSomebodyStillHoldsIsCalledThoughItLeft) {
  a().during = [this] { b().notifierIs(nullptr); };
  EXPECT_EQ("a.large b.large c.large", change());
  EXPECT_EQ("a.large c.large", change());
}

TEST_F(Round, UnregisteredReactorIsCalledOnceMoreInTheRunningRound) {
  a().during = [this] { b().isRegisteredNotifieeIs(false); };
  EXPECT_EQ("a.large b.large c.large", change());
  EXPECT_EQ("a.large c.large", change());
}

TEST_F(Round, ReactorThatLeftAndWasDroppedIsPassedOver) {
  a().during = [this] {
    if (!reactors[1]) return;
    b().isRegisteredNotifieeIs(false);
    reactors[1] = nullptr;
  };
  EXPECT_EQ("a.large c.large", change());
}

TEST_F(Round, ReactorMayDropItself) {
  a().during = [this] { reactors[0] = nullptr; };
  EXPECT_EQ("a.large b.large c.large", change());
  EXPECT_EQ("b.large c.large", change());
}

TEST_F(Round, ReactorThatWasCalledMayBeDropped) {
  b().during = [this] { reactors[0] = nullptr; };
  EXPECT_EQ("a.large b.large c.large", change());
  EXPECT_EQ("b.large c.large", change());
}

TEST_F(Round, DroppedReactorEndsAtItsTurn) {
  bool ended = false;
  struct Ending : ShelfListener {
    using ShelfListener::ShelfListener;
    ~Ending() override { *flag = true; }
    bool* flag = nullptr;
  };
  auto ending = listen<Ending>(shelf, heard, "d");
  ending->flag = &ended;
  a().during = [&] { ending = nullptr; };
  b().during = [&] { EXPECT_FALSE(ended); };
  change();
  EXPECT_TRUE(ended);
}

TEST_F(Round, ReactorThatMovesToAnotherEntityHearsTheRunningRoundToItsEnd) {
  auto const other = Shop::shelfFactory("other");
  a().during = [&] { b().notifierIs(other); };
  EXPECT_EQ("a.large b.large c.large", change());
  other->largeIs(1);
  EXPECT_EQ("b.large", heard.take());
}

TEST_F(Round, NestedRoundRunsInsideTheOuterOne) {
  b().during = [this] { shelf->litIs(false); };
  EXPECT_EQ("a.large b.large a.lit b.lit c.lit c.large", change());
}

// The outer round still holds the dropped one while the nested round comes to it.
TEST_F(Round, ReactorDroppedInANestedRoundIsPassedOverInTheOuterOne) {
  a().during = [this] { shelf->litIs(false); };
  b().during = [this] { reactors[2] = nullptr; };
  EXPECT_EQ("a.large a.lit b.lit c.lit b.large", change());
}

TEST_F(Round, ReactorAddedInANestedRoundIsNotCalledInTheOuterOne) {
  a().during = [this] {
    shelf->litIs(false);
    if (reactors.size() == 3) reactors.push_back(make("d"));
    shelf->smallIs(1);
  };
  EXPECT_EQ("a.large a.lit a.small b.small c.small d.small b.lit c.lit b.large c.large", change());
}

TEST_F(Round, ExceptionOutOfANestedRoundIsTheOuterReactors) {
  a().during = [this] {
    shelf->litIs(false);
    throw 1;
  };
  EXPECT_EQ("a.large a.lit a.!258 b.lit c.lit a.!261 b.large c.large", change());
}

TEST_F(Round, LastHolderOfTheEntityMayLetGoInIt) {
  auto other = Shop::shelfFactory("other");
  auto const weak = listen<ShelfListener>(other, heard, "w");
  auto const later = listen<ShelfListener>(other, heard, "v");
  weak->isWeakReferenceIs(true);
  later->isWeakReferenceIs(true);
  weak->during = [&] { other = nullptr; };
  other->largeIs(1);
  EXPECT_EQ("w.large v.large", heard.take());
  EXPECT_FALSE(later->notifier());
}

TEST_F(Round, ManyReactorsAreHeldWhenOneIsAddedInTheMiddle) {
  for (int i = 0; i < 40; ++i) reactors.push_back(make(std::to_string(i)));
  a().during = [this] {
    reactors.push_back(make("late"));
    reactors[20] = nullptr;
    reactors[42] = nullptr;
  };
  std::string const text = change();
  EXPECT_EQ(std::string::npos, text.find("late"));
  EXPECT_EQ(std::string::npos, text.find("17.large"));
  EXPECT_EQ(std::string::npos, text.find("39.large"));
  EXPECT_NE(std::string::npos, text.find("38.large"));
}

// The list of a line is typed with the reactor of the line's base.
class LineRound : public testing::Test {
protected:
  Heard heard;
  Vyx::Ptr<Shop::Drill> const drill = Shop::drillFactory("drill");
  Vyx::Ptr<ItemListener> const base = listen<ItemListener>(drill, heard, "item");
  Vyx::Ptr<DrillListener> const derived = listen<DrillListener>(drill, heard, "drill");
};

TEST_F(LineRound, ReactorOfTheBaseIsSkippedForTheDerivedTypesAttributes) {
  drill->runningIs(true);
  drill->speedIs(1, 100);
  EXPECT_EQ("drill.running drill.speed 1", heard.take());
}

TEST_F(LineRound, ReactorsOfBothHearOfTheBasesAttributes) {
  drill->placeIs(3);
  EXPECT_EQ("item.place drill.place", heard.take());
}

TEST_F(LineRound, ExceptionComesBackWithTheIdOfTheAttribute) {
  derived->during = [] { throw 1; };
  drill->placeIs(3);
  drill->runningIs(true);
  drill->speedIs(1, 100);
  EXPECT_EQ("item.place drill.place drill.!258 drill.running drill.!386 drill.speed 1 drill.!387",
            heard.take());
}

TEST_F(LineRound, SkippedReactorMayBeTheOnlyOne) {
  derived->notifierIs(nullptr);
  drill->runningIs(true);
  EXPECT_TRUE(drill->running());
  EXPECT_EQ("", heard.take());
}

TEST_F(LineRound, ReactorOfTheDerivedTypeDoesNotAttachToTheBase) {
  auto const item = Shop::itemFactory("item");
  derived->notifierIs(item);
  EXPECT_FALSE(derived->notifier());
  item->placeIs(1);
  EXPECT_EQ("", heard.take());
}

} // namespace
