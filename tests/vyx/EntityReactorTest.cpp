// How a reactor holds its notifier, below what the entity types add.

#include "Vyx/NboAttrLog/Out.h"
#include "Vyx/StreamAdapter.h"
#include "support/Reactors.h"

#include <gtest/gtest.h>

namespace {

using Vyx::Ptr;

struct Lamp final : Vyx::Entity {
  Lamp() : Entity("lamp") {}
};

class EntityReactorTest : public testing::Test {
protected:
  void attach(Ptr<Lamp> const& to) { reactor->notifierIs(Ptr<Vyx::PtrInterface const>(to)); }
  Ptr<Lamp> lamp = Vyx::ptrFromNew(new Lamp), other = Vyx::ptrFromNew(new Lamp);
  Ptr<Listener> reactor = Vyx::ptrFromNew(new Listener("reactor"));
};

TEST_F(EntityReactorTest, FreshReactorIsUnattached) {
  EXPECT_EQ(nullptr, reactor->vyxNotifier());
  EXPECT_FALSE(reactor->notifier());
  EXPECT_FALSE(reactor->isRegisteredNotifiee());
  EXPECT_FALSE(reactor->isWeakReference());
}

TEST_F(EntityReactorTest, NotifierIsHeld) {
  attach(lamp);
  EXPECT_EQ(2U, lamp->references());
  EXPECT_EQ(lamp.ptr(), reactor->notifier().ptr());
  attach(other);
  EXPECT_EQ(1U, lamp->references());
  EXPECT_EQ(2U, other->references());
  attach(nullptr);
  EXPECT_EQ(1U, other->references());
}

TEST_F(EntityReactorTest, AttachingToTheSameNotifierKeepsTheCount) {
  attach(lamp);
  attach(lamp);
  EXPECT_EQ(2U, lamp->references());
}

TEST_F(EntityReactorTest, NotifierHeldByTheReactorAloneSurvivesBeingSetAgain) {
  attach(lamp);
  Lamp* const raw = lamp.ptr();
  lamp = nullptr;
  reactor->notifierIs(Ptr<Vyx::PtrInterface const>(raw));
  EXPECT_EQ(1U, raw->references());
}

TEST_F(EntityReactorTest, EndOfTheReactorReleasesTheNotifier) {
  attach(lamp);
  reactor = nullptr;
  EXPECT_EQ(1U, lamp->references());
}

TEST_F(EntityReactorTest, WeakReactorCountsNothing) {
  attach(lamp);
  reactor->isWeakReferenceIs(true);
  EXPECT_EQ(1U, lamp->references());
  reactor->isWeakReferenceIs(true);
  EXPECT_EQ(1U, lamp->references());
  reactor->isWeakReferenceIs(false);
  EXPECT_EQ(2U, lamp->references());
}

TEST_F(EntityReactorTest, EndOfAWeakReactorReleasesNothing) {
  attach(lamp);
  reactor->isWeakReferenceIs(true);
  reactor = nullptr;
  EXPECT_EQ(1U, lamp->references());
}

TEST_F(EntityReactorTest, WeaknessWithoutANotifierIsOnlyAFlag) {
  reactor->isWeakReferenceIs(true);
  EXPECT_TRUE(reactor->isWeakReference());
  reactor->isWeakReferenceIs(false);
  EXPECT_FALSE(reactor->isWeakReference());
}

TEST_F(EntityReactorTest, ZombieIsMarkedAndHearsNothing) {
  attach(lamp);
  reactor->hasNotificationActiveIs(true);
  reactor->vyxDoZombieReactors(true);
  EXPECT_TRUE(reactor->vyxMarkedForDeletion());
  EXPECT_FALSE(reactor->hasNotificationActive());
  reactor->vyxDoZombieReactors(false);
  EXPECT_FALSE(reactor->vyxMarkedForDeletion());
  EXPECT_TRUE(reactor->hasNotificationActive());
}

TEST_F(EntityReactorTest, ZombieTwiceIsZombieOnce) {
  attach(lamp);
  reactor->vyxDoZombieReactors(true);
  reactor->hasNotificationActiveIs(true);
  reactor->vyxDoZombieReactors(true);
  EXPECT_TRUE(reactor->hasNotificationActive());
}

TEST_F(EntityReactorTest, ZombieWithoutANotifierIsOnlyMarked) {
  reactor->hasNotificationActiveIs(true);
  reactor->vyxDoZombieReactors(true);
  EXPECT_TRUE(reactor->hasNotificationActive());
  EXPECT_TRUE(reactor->vyxMarkedForDeletion());
}

TEST_F(EntityReactorTest, StreamAdapterTellsThatItIsOne) {
  struct Adapter final : Vyx::Entity::VyxNboAttrLogSa {
    Adapter() : VyxNboAttrLogSa({}, 0, nullptr, nullptr) {}
  };
  EXPECT_TRUE(Vyx::ptrFromNew(new Adapter)->isStreamAdapter());
  EXPECT_FALSE(reactor->isStreamAdapter());
}

} // namespace
