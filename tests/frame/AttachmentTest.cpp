#include "ShopListeners.h"

#include "Vyx/NboAttrLog/Out.h"
#include "Vyx/StreamAdapter.h"

namespace {

// Two shelves and one reactor, which isn't attached.
class Attachment : public testing::Test {
protected:
  Heard heard;
  Vyx::Ptr<Shop::Shelf> const shelf = Shop::shelfFactory("shelf");
  Vyx::Ptr<Shop::Shelf> const other = Shop::shelfFactory("other");
  Vyx::Ptr<ShelfListener> reactor = make("r");

  Vyx::Ptr<ShelfListener> make(std::string name) { return Vyx::ptrFromNew(new ShelfListener(heard, name)); }
  // RETURNS what is heard of a change of each shelf; those of the other are told as "small".
  std::string changes() {
    shelf->largeIs(shelf->large() + 1);
    other->smallIs(static_cast<unsigned char>(other->small() + 1));
    return heard.take();
  }
  static auto version(Shop::Shelf const& of) { return of.vyxReactors().version(); }
  static auto count(Shop::Shelf const& of) { return of.vyxReactors().count(); }
};

TEST_F(Attachment, UnregisteredReactorHoldsItsNotifierAndHearsNothing) {
  reactor->notifierIs(shelf);
  EXPECT_EQ(shelf, reactor->notifier());
  EXPECT_EQ(2U, shelf->references());
  EXPECT_EQ("", changes());
  EXPECT_EQ(0U, count(*shelf));
  EXPECT_EQ(0U, version(*shelf));
}

TEST_F(Attachment, RegisteredReactorWithoutANotifierIsInNoList) {
  reactor->isRegisteredNotifieeIs(true);
  EXPECT_TRUE(reactor->isRegisteredNotifiee());
  EXPECT_EQ("", changes());
}

TEST_F(Attachment, RegistrationMayComeBeforeOrAfterTheNotifier) {
  reactor->isRegisteredNotifieeIs(true);
  reactor->notifierIs(shelf);
  auto const late = make("l");
  late->notifierIs(shelf);
  late->isRegisteredNotifieeIs(true);
  EXPECT_EQ("r.large l.large", changes());
}

TEST_F(Attachment, SameNotifierAgainChangesNothing) {
  attach(reactor, shelf);
  reactor->notifierIs(shelf);
  EXPECT_EQ(1U, version(*shelf));
  EXPECT_EQ(1U, count(*shelf));
  EXPECT_EQ(2U, shelf->references());
}

TEST_F(Attachment, SameNotifierAgainKeepsTheReactorsPlace) {
  attach(reactor, shelf);
  auto const second = attach(make("s"), shelf);
  reactor->notifierIs(shelf);
  EXPECT_EQ("r.large s.large", changes());
}

TEST_F(Attachment, OtherNotifierTakesTheReactorOver) {
  attach(reactor, shelf);
  reactor->notifierIs(other);
  EXPECT_EQ("r.small", changes());
  EXPECT_EQ(1U, shelf->references());
  EXPECT_EQ(2U, other->references());
  EXPECT_EQ(0U, count(*shelf));
  EXPECT_EQ(2U, version(*shelf));
  EXPECT_EQ(1U, count(*other));
}

TEST_F(Attachment, NoNotifierLetsTheReactorGo) {
  attach(reactor, shelf);
  reactor->notifierIs(nullptr);
  EXPECT_FALSE(reactor->notifier());
  EXPECT_EQ("", changes());
  EXPECT_EQ(1U, shelf->references());
  EXPECT_TRUE(reactor->isRegisteredNotifiee());
}

TEST_F(Attachment, EntityOfAnotherTypeActsAsNone) {
  attach(reactor, shelf);
  reactor->notifierIs(Shop::itemFactory("item"));
  EXPECT_FALSE(reactor->notifier());
  EXPECT_EQ("", changes());
  EXPECT_EQ(1U, shelf->references());
}

TEST_F(Attachment, WhatIsNoEntityActsAsNone) {
  attach(reactor, shelf);
  reactor->notifierIs(make("another reactor"));
  EXPECT_FALSE(reactor->notifier());
  EXPECT_EQ(0U, count(*shelf));
}

TEST_F(Attachment, ReactorThatHoldsTheLastReferenceMayLetGo) {
  Vyx::Ptr<Shop::Shelf> only = Shop::shelfFactory("only");
  attach(reactor, only);
  only = nullptr;
  EXPECT_EQ("only", reactor->name());
  reactor->notifierIs(nullptr);
  EXPECT_EQ("", reactor->name());
}

TEST_F(Attachment, UnregisteringTakesTheReactorOutAndKeepsItsNotifier) {
  attach(reactor, shelf);
  reactor->isRegisteredNotifieeIs(false);
  EXPECT_EQ("", changes());
  EXPECT_EQ(shelf, reactor->notifier());
  EXPECT_EQ(2U, shelf->references());
  reactor->isRegisteredNotifieeIs(true);
  EXPECT_EQ("r.large", changes());
}

TEST_F(Attachment, EqualRegistrationDoesNothing) {
  attach(reactor, shelf);
  auto const second = attach(make("s"), shelf);
  reactor->isRegisteredNotifieeIs(true);
  EXPECT_EQ(2U, version(*shelf));
  EXPECT_EQ("r.large s.large", changes());
  reactor->isRegisteredNotifieeIs(false);
  reactor->isRegisteredNotifieeIs(false);
  EXPECT_EQ(3U, version(*shelf));
}

TEST_F(Attachment, ListIsWholeWhoeverLeaves) {
  for (std::size_t leaver = 0; leaver < 3; ++leaver) {
    std::vector<Vyx::Ptr<ShelfListener>> all{make("a"), make("b"), make("c")};
    for (auto const& one : all) attach(one, shelf);
    all[leaver]->notifierIs(nullptr);
    attach(all[leaver], shelf);
    std::string const names[] = {"b.large c.large a.large", "a.large c.large b.large",
                                 "a.large b.large c.large"};
    EXPECT_EQ(names[leaver], changes());
  }
}

TEST_F(Attachment, NameIsTheNotifiersOrEmpty) {
  EXPECT_EQ("", reactor->name());
  reactor->notifierIs(shelf);
  EXPECT_EQ("shelf", reactor->name());
}

TEST_F(Attachment, EndOfAReactorTakesItOutAndLetsTheNotifierGo) {
  attach(reactor, shelf);
  reactor = nullptr;
  EXPECT_EQ("", changes());
  EXPECT_EQ(0U, count(*shelf));
  EXPECT_EQ(2U, version(*shelf));
  EXPECT_EQ(1U, shelf->references());
}

TEST_F(Attachment, EndOfAnUnregisteredReactorLeavesTheListAlone) {
  reactor->notifierIs(shelf);
  reactor = nullptr;
  EXPECT_EQ(0U, version(*shelf));
  EXPECT_EQ(1U, shelf->references());
}

TEST_F(Attachment, EndOfTheLastReactorMayEndTheEntity) {
  Vyx::Ptr<Shop::Shelf> only = Shop::shelfFactory("only");
  auto const box = only->boxIs("box", Shop::plain);
  attach(reactor, only);
  only = nullptr;
  EXPECT_TRUE(box->parent());
  reactor = nullptr;
  EXPECT_FALSE(box->parent());
}

class WeakAttachment : public Attachment {
protected:
  WeakAttachment() { reactor->isWeakReferenceIs(true); }
};

TEST_F(WeakAttachment, CountsNothing) {
  attach(reactor, shelf);
  EXPECT_EQ(1U, shelf->references());
  EXPECT_EQ(shelf, reactor->notifier());
  EXPECT_EQ("r.large", changes());
}

TEST_F(WeakAttachment, MoveCountsNothingOnEitherSide) {
  attach(reactor, shelf);
  reactor->notifierIs(other);
  EXPECT_EQ(1U, shelf->references());
  EXPECT_EQ(1U, other->references());
  reactor->notifierIs(nullptr);
  EXPECT_EQ(1U, other->references());
}

TEST_F(WeakAttachment, EndOfTheReactorLetsNobodyElsesReferenceGo) {
  attach(reactor, shelf);
  reactor = nullptr;
  EXPECT_EQ(1U, shelf->references());
  EXPECT_EQ(0U, count(*shelf));
}

TEST_F(WeakAttachment, EndOfTheEntityLeavesTheReactorUnattached) {
  attach(reactor, Shop::shelfFactory("short"));
  EXPECT_FALSE(reactor->notifier());
  EXPECT_EQ("", reactor->name());
  attach(reactor, shelf);
  EXPECT_EQ("r.large", changes());
}

TEST_F(WeakAttachment, WeaknessMayComeAndGoWhileAttached) {
  reactor->isWeakReferenceIs(false);
  attach(reactor, shelf);
  EXPECT_EQ(2U, shelf->references());
  reactor->isWeakReferenceIs(true);
  EXPECT_EQ(1U, shelf->references());
  reactor->isWeakReferenceIs(true);
  EXPECT_EQ(1U, shelf->references());
  reactor->isWeakReferenceIs(false);
  EXPECT_EQ(2U, shelf->references());
}

// A reactor that works for a stream adapter, and the adapter.
class ForAdapter : public ShelfListener {
public:
  class Adapter : public Vyx::Entity::VyxNboAttrLogSa {
  public:
    Adapter() : VyxNboAttrLogSa({}, 0, nullptr, nullptr) {}
  };

  using ShelfListener::ShelfListener;
  Vyx::Ptr<Vyx::PtrInterface const> vyxReactor() const override { return adapter_; }

private:
  Vyx::Ptr<Adapter> adapter_ = Vyx::ptrFromNew(new Adapter);
};

class AdapterAttachment : public Attachment {
protected:
  Vyx::Ptr<ForAdapter> forAdapter(std::string name) { return listen<ForAdapter>(shelf, heard, name); }
};

TEST_F(AdapterAttachment, AdapterHearsBeforePlainReactorsThatCameEarlier) {
  attach(reactor, shelf);
  auto const adapter = forAdapter("adapter");
  EXPECT_EQ("adapter.large r.large", changes());
}

TEST_F(AdapterAttachment, LaterAdapterStandsBeforeTheEarlierOne) {
  auto const first = forAdapter("first");
  attach(reactor, shelf);
  auto const second = forAdapter("second");
  EXPECT_EQ("second.large first.large r.large", changes());
}

TEST_F(AdapterAttachment, OnlyAdapterIsHeadAndTail) {
  auto const adapter = forAdapter("adapter");
  attach(reactor, shelf);
  EXPECT_EQ("adapter.large r.large", changes());
  EXPECT_EQ(2U, version(*shelf));
  EXPECT_EQ(2U, count(*shelf));
}

TEST_F(AdapterAttachment, RegisteringAgainBringsItBackToTheHead) {
  attach(reactor, shelf);
  auto const adapter = forAdapter("adapter");
  adapter->isRegisteredNotifieeIs(false);
  adapter->isRegisteredNotifieeIs(true);
  EXPECT_EQ("adapter.large r.large", changes());
}

TEST_F(AdapterAttachment, AdapterAddedDuringARoundIsNotCalledInIt) {
  attach(reactor, shelf);
  Vyx::Ptr<ForAdapter> adapter;
  reactor->during = [&] {
    if (!adapter) adapter = forAdapter("adapter");
  };
  EXPECT_EQ("r.large", changes());
  EXPECT_EQ("adapter.large r.large", changes());
}

using Zombie = Attachment;

TEST_F(Zombie, HearsNothing) {
  attach(reactor, shelf);
  auto const second = attach(make("s"), shelf);
  reactor->vyxDoZombieReactors(true);
  EXPECT_TRUE(reactor->vyxMarkedForDeletion());
  EXPECT_EQ("s.large", changes());
}

TEST_F(Zombie, KeepsItsNotifier) {
  attach(reactor, shelf);
  reactor->vyxDoZombieReactors(true);
  EXPECT_EQ(shelf, reactor->notifier());
  EXPECT_EQ(2U, shelf->references());
}

TEST_F(Zombie, HearsAgainWhenItComesBack) {
  attach(reactor, shelf);
  reactor->vyxDoZombieReactors(true);
  reactor->vyxDoZombieReactors(false);
  EXPECT_FALSE(reactor->vyxMarkedForDeletion());
  EXPECT_EQ("r.large", changes());
}

TEST_F(Zombie, EndsWithoutTouchingTheList) {
  attach(reactor, shelf);
  auto const second = attach(make("s"), shelf);
  reactor->vyxDoZombieReactors(true);
  auto const before = version(*shelf);
  reactor = nullptr;
  EXPECT_EQ(before, version(*shelf));
  EXPECT_EQ(1U, count(*shelf));
  EXPECT_EQ("s.large", changes());
  EXPECT_EQ(2U, shelf->references());
}

TEST_F(Zombie, UnregisteredReactorComesBackUnregistered) {
  reactor->notifierIs(shelf);
  reactor->vyxDoZombieReactors(true);
  reactor->vyxDoZombieReactors(false);
  EXPECT_FALSE(reactor->isRegisteredNotifiee());
  EXPECT_EQ("", changes());
}

// Writes down how its notifications are switched.
class Switched : public ShelfListener {
public:
  using ShelfListener::ShelfListener;
  void hasNotificationActiveIs(bool active) override {
    hear(active ? "on" : "off");
    ShelfListener::hasNotificationActiveIs(active);
  }
};

TEST_F(Zombie, NotificationIsSwitchedOffAndOnAgainOncePerChange) {
  auto const one = listen<Switched>(shelf, heard);
  for (bool zombie : {true, true, false, false}) one->vyxDoZombieReactors(zombie);
  EXPECT_EQ("off on", heard.take());
  EXPECT_TRUE(one->hasNotificationActive());
}

TEST_F(Zombie, WithoutANotifierNothingIsSwitched) {
  auto const one = Vyx::ptrFromNew(new Switched(heard));
  one->vyxDoZombieReactors(true);
  EXPECT_EQ("", heard.take());
  EXPECT_TRUE(one->vyxMarkedForDeletion());
}

TEST_F(Zombie, MovedOneHearsItsNewNotifierWhenItComesBack) {
  attach(reactor, shelf);
  reactor->vyxDoZombieReactors(true);
  reactor->notifierIs(other);
  EXPECT_EQ("", changes());
  reactor->vyxDoZombieReactors(false);
  EXPECT_EQ("r.small", changes());
}

TEST_F(Zombie, OneThatMovedEndsWithoutTouchingEitherList) {
  attach(reactor, shelf);
  reactor->vyxDoZombieReactors(true);
  reactor->notifierIs(other);
  reactor = nullptr;
  EXPECT_EQ(0U, count(*shelf));
  EXPECT_EQ(0U, count(*other));
  EXPECT_EQ("", changes());
}

} // namespace
