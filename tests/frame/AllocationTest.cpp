// What costs no memory.

#include "ShopListeners.h"

#include "support/Allocations.h"

namespace {

// Counts, and needs no memory for it.
class CountingShelf : public Shop::Shelf::Notifiee {
public:
  explicit CountingShelf(unsigned& calls) : calls_(calls) {}
  void onLarge() override { ++calls_; }
  void onPrice(unsigned) override { ++calls_; }

  using Shop::Shelf::Notifiee::onPrice;

private:
  unsigned& calls_;
};

class CountingDrill : public Shop::Drill::Notifiee {
public:
  explicit CountingDrill(unsigned& calls) : calls_(calls) {}
  void onRunning() override { ++calls_; }

private:
  unsigned& calls_;
};

class Allocation : public testing::Test {
protected:
  unsigned calls = 0;
  Vyx::Ptr<Shop::Shelf> const shelf = Shop::shelfFactory("shelf");
  Vyx::Ptr<Shop::Drill> const drill = Shop::drillFactory("drill");
};

TEST_F(Allocation, TheCounterCounts) {
  EXPECT_EQ(1U, allocations::takenBy([] { Shop::itemFactory("") = nullptr; }));
}

TEST_F(Allocation, UnchangedSetterTakesNone) {
  auto const reactor = listen<CountingShelf>(shelf, calls);
  Vyx::Name const name("a name with its memory");
  shelf->ownerIs(name);
  shelf->priceIs(1, 10);
  shelf->boxIs(name, Shop::plain);
  shelf->toolIs(name, Shop::plain, 1);
  auto setAgain = [&] {
    shelf->largeIs(0);
    shelf->ownerIs(name);
    shelf->priceIs(1, 10);
    shelf->boxIs(name, Shop::plain);
    shelf->toolIs(name, Shop::plain, 1);
    shelf->lentIs(nullptr);
  };
  EXPECT_EQ(0U, allocations::takenBy(setAgain));
}

TEST_F(Allocation, SetterWithoutReactorsTakesNone) {
  Vyx::Name const name("a name with its memory");
  auto setAll = [&] {
    shelf->largeIs(1);
    shelf->ownerIs(name);
    shelf->hugeIs(2);
    drill->runningIs(true);
    drill->placeIs(1);
  };
  EXPECT_EQ(0U, allocations::takenBy(setAll));
}

TEST_F(Allocation, RoundOverSixteenReactorsTakesNone) {
  std::vector<Vyx::Ptr<CountingShelf>> reactors;
  for (int i = 0; i < 16; ++i) reactors.push_back(listen<CountingShelf>(shelf, calls));
  shelf->priceIs(1, 10);
  calls = 0;
  auto change = [&] {
    shelf->largeIs(1);
    shelf->priceIs(1, 11);
  };
  EXPECT_EQ(0U, allocations::takenBy(change));
  EXPECT_EQ(32U, calls);
}

TEST_F(Allocation, RoundOverAListOfTheBaseTakesNone) {
  std::vector<Vyx::Ptr<CountingDrill>> reactors;
  for (int i = 0; i < 16; ++i) reactors.push_back(listen<CountingDrill>(drill, calls));
  EXPECT_EQ(0U, allocations::takenBy([&] { drill->runningIs(true); }));
  EXPECT_EQ(16U, calls);
}

TEST_F(Allocation, RoundInWhichTheListChangesTakesNoneForSixteenReactors) {
  class Leaving : public CountingShelf {
  public:
    using CountingShelf::CountingShelf;
    void onLarge() override { notifierIs(nullptr); }
  };
  auto const leaving = listen<Leaving>(shelf, calls);
  std::vector<Vyx::Ptr<CountingShelf>> reactors;
  for (int i = 0; i < 15; ++i) reactors.push_back(listen<CountingShelf>(shelf, calls));
  EXPECT_EQ(0U, allocations::takenBy([&] { shelf->largeIs(1); }));
  EXPECT_EQ(15U, calls);
}

TEST_F(Allocation, AttachingTakesNone) {
  auto const reactor = Vyx::ptrFromNew(new CountingShelf(calls));
  EXPECT_EQ(0U, allocations::takenBy([&] {
              attach(reactor, shelf);
              reactor->notifierIs(nullptr);
            }));
}

TEST_F(Allocation, ReplacedTextIsGivenBack) {
  shelf->ownerIs("a first owner");
  std::size_t const before = allocations::living();
  shelf->ownerIs("another owner");
  EXPECT_EQ(before, allocations::living());
}

} // namespace
