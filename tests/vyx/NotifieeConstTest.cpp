#include "Vyx/NotifieeConst.h"

#include <gtest/gtest.h>

namespace {

using Reactor = Vyx::PtrInterface::NotifieeConst;

struct Hearer final : Reactor {
  using Reactor::onNotificationException;
  void onNotificationException() override { ++heard; }
  int heard = 0;
};

TEST(NotifieeConst, StandsForItself) {
  auto const hearer = Vyx::ptrFromNew(new Hearer);
  EXPECT_EQ(hearer.ptr(), hearer->vyxReactor().ptr());
  EXPECT_EQ(hearer.ptr(), hearer->vyxRawReactor());
  EXPECT_EQ(1U, hearer->references());
  EXPECT_FALSE(hearer->isStreamAdapter());
}

TEST(NotifieeConst, FailureOfAnEntryEndsInTheHookWithoutArgument) {
  auto const hearer = Vyx::ptrFromNew(new Hearer);
  hearer->onNotificationException(388);
  EXPECT_EQ(1, hearer->heard);
  hearer->handleNotificationException(388);
  hearer->handleNotificationException();
  EXPECT_EQ(3, hearer->heard);
}

TEST(NotifieeConst, AsksForTheRestOfANotification) {
  EXPECT_FALSE(Vyx::ptrFromNew(new Hearer)->vyxOnAttribute(388, nullptr));
}

TEST(NotifieeConst, KeepsItsFlags) {
  auto const hearer = Vyx::ptrFromNew(new Hearer);
  EXPECT_EQ(0U, hearer->vyx_bitSet().word());
  Vyx_BitSet flags;
  flags.bitIs(28, true);
  hearer->vyx_bitSetIs(flags);
  EXPECT_EQ(1U << 28, hearer->vyx_bitSet().word());
}

TEST(NotifieeConst, DefaultsDoNothing) {
  auto const hearer = Vyx::ptrFromNew(new Hearer);
  hearer->notifierIs(hearer);
  hearer->isRegisteredNotifieeIs(true);
  hearer->handleNotification(nullptr);
  hearer->handleDefault(nullptr, 1, true);
  hearer->onCollectionNotification("nexthop");
  EXPECT_EQ(1U, hearer->references());
  EXPECT_TRUE(hearer->name().empty());
  EXPECT_EQ(nullptr, hearer->activityPtr());
  EXPECT_EQ(nullptr, hearer->vyxFwkActivity());
}

} // namespace
