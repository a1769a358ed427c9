#include "Sets.h"
#include "StatusListeners.h"

#include "support/Allocations.h"
#include "support/Invariants.h"

namespace {

using Pbr::NexthopIndex;

class AdjKey : public testing::Test {
protected:
  ~AdjKey() override { checkInvariants(*key); }

  Heard heard;
  Vyx::Ptr<Pbr::NexthopIndexAndL2AdjKey> const key =
      Pbr::nexthopIndexAndL2AdjKeyFactory(setOf({{"10.0.0.1", true}, {"10.0.0.2", false}}, 1, "blue"));
  Vyx::Ptr<AdjKeyListener> const listener = listen<AdjKeyListener>(key, heard);

  std::string told() { return heard.take(); }
  void fill() {
    for (char const* via : {"10.0.0.1", "10.0.0.2", "2001:db8::1"}) key->viasUsedIs(via, true);
    told();
  }
  std::string linesInOrder() {
    Heard lines;
    for (auto at = key->viasUsedIterator(); at; ++at)
      lines.note("viasUsed " + std::string(at.key().stringValue().view()));
    return lines.take();
  }
};

TEST_F(AdjKey, StartsWithoutIndexCountsAndVias) {
  EXPECT_EQ(NexthopIndex(), key->nexthopIndex());
  EXPECT_EQ(0U, key->nexthopIndexPublishCounter());
  EXPECT_EQ(0U, key->nexthopIndexDelCounter());
  EXPECT_EQ(0U, key->l2AdjKey());
  EXPECT_EQ(0U, key->viasUseds());
  EXPECT_FALSE(key->viasUsedIterator());
}

TEST_F(AdjKey, HasNeitherNameNorParent) {
  EXPECT_EQ("", key->name());
  EXPECT_FALSE(key->parent());
}

TEST_F(AdjKey, KeepsACopyOfTheSetWithAllFields) {
  auto set = setOf({{"10.0.0.1", true}}, 7, "red");
  auto const one = Pbr::nexthopIndexAndL2AdjKeyFactory(set);
  set.nexthopIs("10.0.0.9", true);
  set.recursiveIs(0);
  set.vrfNameIs("blue");
  EXPECT_EQ(setOf({{"10.0.0.1", true}}, 7, "red"), one->nexthopSet());
}

TEST_F(AdjKey, EqualSetsGiveDistinctEntities) {
  auto const one = Pbr::nexthopIndexAndL2AdjKeyFactory(key->nexthopSet());
  EXPECT_NE(key, one);
  EXPECT_EQ(key->nexthopSet(), one->nexthopSet());
  EXPECT_NE(key->nexthopSet().first(), one->nexthopSet().first());
}

TEST_F(AdjKey, DefaultsStartNoRound) {
  key->nexthopIndexIs(NexthopIndex::nexthopIndexNone);
  key->nexthopIndexPublishCounterIs(0);
  key->nexthopIndexDelCounterIs(0);
  key->l2AdjKeyIs(0);
  EXPECT_EQ("", told());
}

TEST_F(AdjKey, ChangedValuesAreToldOnce) {
  for (int twice : {1, 2}) {
    SCOPED_TRACE(twice);
    key->nexthopIndexIs(0);
    key->nexthopIndexPublishCounterIs(1);
    key->nexthopIndexDelCounterIs(2);
    key->l2AdjKeyIs(3);
  }
  EXPECT_EQ("nexthopIndex publishCounter delCounter l2AdjKey", told());
  EXPECT_EQ(NexthopIndex(0), key->nexthopIndex());
  EXPECT_EQ(1U, key->nexthopIndexPublishCounter());
  EXPECT_EQ(2U, key->nexthopIndexDelCounter());
  EXPECT_EQ(3U, key->l2AdjKey());
}

TEST_F(AdjKey, EitherHalfOfAWideValueIsAChange) {
  key->l2AdjKeyIs(0x100000000ULL);
  EXPECT_EQ("l2AdjKey", told());
  key->l2AdjKeyIs(0x100000001ULL);
  EXPECT_EQ("l2AdjKey", told());
  key->nexthopIndexIs(0xfffffffe00000000ULL);
  key->nexthopIndexIs(0x00000000ffffffffULL);
  key->nexthopIndexIs({});
  EXPECT_EQ("nexthopIndex nexthopIndex nexthopIndex", told());
}

TEST_F(AdjKey, IndexMovesNoCounter) {
  key->nexthopIndexIs(7);
  key->nexthopIndexIs({});
  EXPECT_EQ(0U, key->nexthopIndexPublishCounter());
  EXPECT_EQ(0U, key->nexthopIndexDelCounter());
}

TEST_F(AdjKey, ExceptionsComeBackWithTheAttributesIds) {
  listener->during = [] { throw 1; };
  key->nexthopIndexIs(7);
  key->nexthopIndexPublishCounterIs(1);
  key->nexthopIndexDelCounterIs(1);
  key->l2AdjKeyIs(1);
  key->viasUsedIs("10.0.0.1", true);
  EXPECT_EQ("nexthopIndex !259 publishCounter !260 delCounter !261 l2AdjKey !262 viasUsed 10.0.0.1 !263",
            told());
  EXPECT_EQ(NexthopIndex(7), key->nexthopIndex());
}

TEST_F(AdjKey, ViaIsToldWhenItsFlagChanges) {
  key->viasUsedIs("10.0.0.1", false);
  key->viasUsedIs("10.0.0.1", false);
  EXPECT_EQ("viasUsed 10.0.0.1", told());
  key->viasUsedIs("10.0.0.1", true);
  EXPECT_EQ("viasUsed 10.0.0.1", told());
  EXPECT_TRUE(key->viasUsed("10.0.0.1"));
  EXPECT_FALSE(key->viasUsed("10.0.0.2"));
  EXPECT_EQ(1U, key->viasUseds());
}

TEST_F(AdjKey, NewViaIsToldToNobody) {
  auto const record = key->newViasUsed("10.0.0.1", true);
  EXPECT_EQ("", told());
  EXPECT_EQ(record, key->viasUsedIterator("10.0.0.1").member());
}

TEST_F(AdjKey, RemovedViaGivesItsFlag) {
  fill();
  EXPECT_TRUE(key->viasUsedDel("10.0.0.2"));
  EXPECT_EQ("viasUsed 10.0.0.2", told());
  EXPECT_EQ(2U, key->viasUseds());
}

TEST_F(AdjKey, AbsentViaGivesFalseAndIsNotTold) {
  EXPECT_FALSE(key->viasUsedDel("10.0.0.2"));
  auto at = key->viasUsedIterator();
  EXPECT_FALSE(key->viasUsedDel(at));
  EXPECT_EQ("", told());
}

TEST_F(AdjKey, RemovalOfAllTellsOfEachInOrder) {
  fill();
  std::string const each = linesInOrder();
  key->viasUsedDelAll();
  EXPECT_EQ(each, told());
  EXPECT_EQ(0U, key->viasUseds());
}

TEST_F(AdjKey, NotifyTellsOfAnyVia) {
  key->viasUsedNotify("10.9.9.9");
  EXPECT_EQ("viasUsed 10.9.9.9", told());
}

TEST_F(AdjKey, EndsSilently) {
  auto one = Pbr::nexthopIndexAndL2AdjKeyFactory(key->nexthopSet());
  auto const weak = listen<AdjKeyListener>(one, heard);
  weak->isWeakReferenceIs(true);
  one->viasUsedIs("10.0.0.1", true);
  told();
  one = nullptr;
  EXPECT_EQ("", told());
  EXPECT_FALSE(weak->notifier());
}

TEST_F(AdjKey, EndGivesBackAllThatItTook) {
  auto const make = [this] {
    auto const one = Pbr::nexthopIndexAndL2AdjKeyFactory(key->nexthopSet());
    for (char const* via : {"1.0.0.1", "1.0.0.2", "1.0.0.3", "1.0.0.4", "1.0.0.5"})
      one->viasUsedIs(via, true);
  };
  make(); // What the first use of a type makes for good is made before.
  std::size_t const before = allocations::living();
  make();
  EXPECT_EQ(before, allocations::living());
}

} // namespace
