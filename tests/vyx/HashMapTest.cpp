#include "Vyx/HashMap.h"
#include "Lomu/IpGenAddr.h"
#include "Vyx/Entity.h"
#include "support/Records.h"
#include "support/Walks.h"

#include <gtest/gtest.h>

namespace {

using Vyx::Ptr;
using Numbers = HashOf<unsigned>;
using NumberRecord = HashRecord<unsigned>;
using NumberTable = Vyx::HashMapVTable<NumberRecord, unsigned>;

// A number is its own hash, so that 0, 2, 1, 3 ascend by reversed hash; 8 numbers make eight buckets of it.
class HashMapTest : public testing::Test {
protected:
  void fill(unsigned count) {
    for (unsigned key = 0; key < count; ++key) enter(map, key, static_cast<int>(10 * key));
  }
  void TearDown() override {
    map.emptyAllBucketsG(NumberTable::instance(), offsetOfLink(), 0);
    EXPECT_EQ(0, NumberRecord::alive());
  }
  static std::size_t offsetOfLink() {
    auto const record = Vyx::ptrFromNew(new NumberRecord(0));
    return static_cast<std::size_t>(reinterpret_cast<char*>(&record->fwkHmNext_) -
                                    reinterpret_cast<char*>(record.ptr()));
  }
  Numbers map;
};

TEST_F(HashMapTest, NewMapIsEmptyWithOneBucket) {
  EXPECT_EQ(0U, map.count());
  EXPECT_EQ(0U, map.version());
  EXPECT_EQ(1U, map.buckets());
  EXPECT_EQ(nullptr, map.find(0));
  EXPECT_EQ(nullptr, map.head(0));
}

TEST_F(HashMapTest, EmptyMapHasNoFirstMember) {
  Numbers::IteratorConst at(map);
  EXPECT_FALSE(at);
  EXPECT_EQ(-1, at.bucket());
  at.reset();
  EXPECT_FALSE(at);
  EXPECT_EQ(-1, at.bucket());
  EXPECT_EQ(nullptr, map.startAtHash(0));
}

TEST_F(HashMapTest, IteratorOfNoMapStandsNowhere) {
  Numbers::IteratorConst at;
  at.reset();
  EXPECT_FALSE(at);
  EXPECT_EQ(-1, at.bucket());
  EXPECT_EQ(0U, at.version());
  EXPECT_FALSE(at.hasBookmark());
}

TEST_F(HashMapTest, OneBucketTakesEveryKey) {
  for (std::uint32_t reversed : {0U, 1U, 0x80000000U, 0xffffffffU}) EXPECT_EQ(0U, map.bucketOf(reversed));
  fill(4);
  EXPECT_EQ(1U, map.buckets());
  EXPECT_EQ("0 2 1 3", keysOf(map));
}

TEST_F(HashMapTest, FourThenSixteenMembersNeedNoMoreBuckets) {
  std::string buckets;
  for (unsigned key = 0; key < 65; ++key) {
    std::uint32_t const before = map.buckets();
    enter(map, key);
    if (map.buckets() != before)
      buckets += std::to_string(map.count()) + ":" + std::to_string(map.buckets()) + " ";
  }
  EXPECT_EQ("5:8 17:32 33:64 65:128 ", buckets);
}

TEST_F(HashMapTest, EmptyMapMakesRoomAtOnce) {
  for (std::uint32_t members : {0U, 4U, 5U, 16U, 17U, 32U, 33U, 1000U}) {
    Numbers roomy, grown;
    roomy.expect(members);
    std::uint32_t const buckets = roomy.buckets();
    EXPECT_EQ(0U, roomy.version());
    for (unsigned key = 0; key < members; ++key) {
      enter(roomy, key);
      enter(grown, key);
    }
    EXPECT_EQ(buckets, roomy.buckets()) << members;
    EXPECT_EQ(grown.buckets(), roomy.buckets()) << members;
    EXPECT_EQ(keysOf(grown), keysOf(roomy)) << members;
  }
}

TEST_F(HashMapTest, MapWithMembersGrowsByThemAlone) {
  fill(1);
  map.expect(1000);
  EXPECT_EQ(1U, map.buckets());
}

TEST_F(HashMapTest, BucketIsTheTopBitsOfTheReversedHash) {
  fill(8);
  ASSERT_EQ(8U, map.buckets());
  EXPECT_EQ(0U, map.bucketOf(0x1fffffffU));
  EXPECT_EQ(1U, map.bucketOf(0x20000000U));
  EXPECT_EQ(7U, map.bucketOf(0xffffffffU));
  EXPECT_EQ(map.find(4), map.head(1));
}

TEST_F(HashMapTest, InsertionRaisesCountAndVersionByOne) {
  for (unsigned key = 0; key < 40; ++key) {
    enter(map, key);
    EXPECT_EQ(key + 1, map.count());
    EXPECT_EQ(key + 1, map.version());
  }
}

TEST_F(HashMapTest, RemovalLowersCountAndRaisesVersion) {
  fill(6);
  EXPECT_EQ(5U, map._memberDel(5)->fwkKey());
  EXPECT_EQ(5U, map.count());
  EXPECT_EQ(7U, map.version());
}

TEST_F(HashMapTest, RemovalOfAnAbsentKeyChangesNothing) {
  fill(6);
  EXPECT_FALSE(map._memberDel(6));
  EXPECT_EQ(6U, map.count());
  EXPECT_EQ(6U, map.version());
}

TEST_F(HashMapTest, RemovedMemberIsUnlinkedAndMayEnterAgain) {
  fill(3);
  Ptr<NumberRecord> const member = map._memberDel(0);
  EXPECT_FALSE(member->fwkHmNext_);
  EXPECT_EQ(1U, member->references());
  EXPECT_EQ("2 1", keysOf(map));
  map.newMember(member);
  EXPECT_EQ("0 2 1", keysOf(map));
}

TEST_F(HashMapTest, MemberIsHeldByItsPlaceAlone) {
  Ptr<NumberRecord> const member = enter(map, 1);
  fill(1);
  EXPECT_EQ(2U, member->references());
  map.memberDel(member);
  EXPECT_EQ(1U, member->references());
}

TEST_F(HashMapTest, MemberOfAnotherTableIsNotRemoved) {
  fill(2);
  Ptr<NumberRecord> const stranger = Vyx::ptrFromNew(new NumberRecord(1));
  map.memberDel(stranger);
  EXPECT_EQ(2U, map.count());
  EXPECT_EQ(2U, map.version());
}

TEST_F(HashMapTest, LookUpFindsTheMemberOfTheKey) {
  fill(20);
  for (unsigned key = 0; key < 20; ++key) {
    ASSERT_TRUE(map.find(key));
    EXPECT_EQ(static_cast<int>(10 * key), map.find(key)->value());
  }
  EXPECT_EQ(nullptr, map.find(20));
}

TEST_F(HashMapTest, EmptiedMapKeepsItsBuckets) {
  fill(20);
  EXPECT_EQ(32U, map.buckets());
  for (unsigned key = 0; key < 20; ++key) map._memberDel(key);
  EXPECT_EQ(32U, map.buckets());
  EXPECT_EQ(0U, map.count());
  EXPECT_FALSE(Numbers::IteratorConst(map));
}

TEST_F(HashMapTest, SearchFromAKeyIsALowerBound) {
  for (unsigned key : {0U, 2U, 1U, 3U, 7U}) enter(map, key);
  ASSERT_EQ("0 2 1 3 7", keysOf(map));
  EXPECT_EQ("1 3 7", keysFrom(map, 1U));
  EXPECT_EQ("2 1 3 7", keysFrom(map, 4U));
  EXPECT_EQ("1 3 7", keysFrom(map, 6U));
  EXPECT_EQ("", keysFrom(map, 15U));
}

TEST_F(HashMapTest, SearchFromAKeyKnowsItsBucketAndVersion) {
  fill(8);
  Numbers::IteratorConst const found(map, 5);
  EXPECT_EQ(5, found.bucket());
  EXPECT_EQ(map.version(), found.version());
  Numbers::IteratorConst const none(map, 0xffffffffU);
  EXPECT_EQ(-1, none.bucket());
  EXPECT_EQ(0U, none.version());
}

TEST_F(HashMapTest, IteratorKnowsItsBucketOnEveryStep) {
  fill(20);
  Numbers::IteratorConst at(map);
  for (; at; ++at) EXPECT_EQ(map.bucketOf(reversedBits(at.key())), static_cast<std::uint32_t>(at.bucket()));
  EXPECT_EQ(-1, at.bucket());
}

TEST_F(HashMapTest, IteratorFindsItsBucketAgainAfterAChange) {
  fill(8);
  Numbers::IteratorConst at(map, 2);
  map._memberDel(6);
  ++at;
  EXPECT_EQ(1U, at.key());
  EXPECT_EQ(4, at.bucket());
  EXPECT_EQ(map.version(), at.version());
}

TEST_F(HashMapTest, WalkMeetsTheMembersOfTheIterator) {
  fill(20);
  Numbers::IteratorConst at(map);
  for (Numbers::Walk walk(map); walk; ++walk, ++at) EXPECT_EQ(at.member().ptr(), &*walk);
  EXPECT_FALSE(at);
}

TEST_F(HashMapTest, DeletingTheCurrentMemberLandsOnTheNext) {
  for (unsigned count : {4U, 8U}) {
    fill(count);
    Numbers::IteratorConst at(map, 2);
    map._memberDel(2);
    EXPECT_EQ(2U, at.key());
    EXPECT_EQ(20, at.member()->value());
    ++at;
    EXPECT_EQ(count == 4 ? 1U : 6U, at.key());
    map.emptyAllBucketsG(NumberTable::instance(), offsetOfLink(), 0);
  }
}

TEST_F(HashMapTest, DeletingTheLastMemberLandsOnNone) {
  fill(8);
  Numbers::IteratorConst at(map, 7);
  map._memberDel(7);
  ++at;
  EXPECT_FALSE(at);
  EXPECT_EQ(-1, at.bucket());
}

TEST_F(HashMapTest, DeletingTheNextMemberIsSteppedOver) {
  fill(4);
  Numbers::IteratorConst at(map);
  map._memberDel(2);
  ++at;
  EXPECT_EQ(1U, at.key());
}

TEST_F(HashMapTest, DeletingEverythingLandsOnNone) {
  fill(8);
  Numbers::IteratorConst at(map);
  map.emptyAllBucketsG(NumberTable::instance(), offsetOfLink(), 0);
  EXPECT_EQ(0U, map.count());
  EXPECT_EQ(0U, at.key());
  ++at;
  EXPECT_FALSE(at);
}

TEST_F(HashMapTest, MemberInsertedDirectlyBehindIsMet) {
  for (unsigned key : {0U, 1U}) enter(map, key);
  Numbers::IteratorConst at(map);
  enter(map, 2U);
  ++at;
  EXPECT_EQ(2U, at.key());
}

TEST_F(HashMapTest, MemberInsertedBeforeIsNotMet) {
  for (unsigned key : {2U, 3U}) enter(map, key);
  Numbers::IteratorConst at(map, 2U);
  for (unsigned key : {0U, 4U, 8U}) enter(map, key);
  EXPECT_EQ("2 3", keysFrom(at));
}

TEST_F(HashMapTest, GrowthUnderAnIteratorLosesNothing) {
  fill(3);
  Numbers::IteratorConst at(map);
  for (unsigned key = 3; key < 16; ++key) enter(map, key);
  EXPECT_EQ("0 8 4 12 2 10 6 14 1 9 5 13 3 11 7 15", keysFrom(at));
}

TEST_F(HashMapTest, PlaceThatIsNoLongerGoodIsLookedForAgain) {
  fill(4);
  auto const place = map.place(6);
  EXPECT_EQ(nullptr, place.member);
  for (unsigned key = 8; key < 16; ++key) enter(map, key);
  map.newMember(Vyx::ptrFromNew(new NumberRecord(6)), place);
  EXPECT_EQ("0 8 12 2 10 6 14 1 9 13 3 11 15", keysOf(map));
}

TEST_F(HashMapTest, PlaceOfAMemberIsTheMember) {
  fill(8);
  EXPECT_EQ(map.find(5), map.place(5).member);
}

TEST_F(HashMapTest, LoopMayDeleteEveryMember) {
  fill(20);
  unsigned met = 0;
  for (Numbers::IteratorConst at(map); at; ++at, ++met) map._memberDel(at.key());
  EXPECT_EQ(20U, met);
  EXPECT_EQ(0U, map.count());
}

TEST_F(HashMapTest, CopiedIteratorGoesItsOwnWay) {
  fill(4);
  Numbers::IteratorConst at(map);
  Numbers::IteratorConst const copy = at;
  ++at;
  EXPECT_EQ(0U, copy.key());
  EXPECT_EQ(2U, at.key());
}

TEST_F(HashMapTest, IteratorHoldsItsMember) {
  enter(map, 1U);
  {
    Numbers::IteratorConst const at(map);
    map._memberDel(1);
    EXPECT_EQ(1U, at.current()->references());
    EXPECT_EQ(1, NumberRecord::alive());
  }
  EXPECT_EQ(0, NumberRecord::alive());
}

TEST_F(HashMapTest, DefaultKeyIsNoBookmark) {
  for (unsigned key : {0U, 1U}) enter(map, key);
  EXPECT_FALSE(Numbers::IteratorConst(map, 0).hasBookmark());
  EXPECT_TRUE(Numbers::IteratorConst(map, 1).hasBookmark());
  EXPECT_TRUE(Numbers::Iterator(map, 1).hasBookmark());
  EXPECT_FALSE(Numbers::Iterator(map, 3).hasBookmark());
}

TEST_F(HashMapTest, GenericSearchFromNoMemberIsTheFirst) {
  fill(8);
  int bucket = 77;
  auto const& table = NumberTable::instance();
  EXPECT_EQ(map.find(0), map.findNextG(table, offsetOfLink(), 0, nullptr, &bucket, nullptr));
  EXPECT_EQ(0, bucket);
}

TEST_F(HashMapTest, GenericSearchTellsTheBucketOfTheNext) {
  fill(8);
  int bucket = 77;
  unsigned const three = 3, seven = 7;
  auto const& table = NumberTable::instance();
  EXPECT_EQ(map.find(7), map.findNextG(table, offsetOfLink(), 0, map.find(3), &bucket, &three));
  EXPECT_EQ(7, bucket);
  EXPECT_EQ(nullptr, map.findNextG(table, offsetOfLink(), 0, map.find(7), nullptr, &seven));
}

TEST_F(HashMapTest, NextBucketSkipsEmptyOnes) {
  fill(8);
  map._memberDel(4);
  map._memberDel(2);
  int bucket = 0;
  EXPECT_EQ(map.find(6), map.findNextBucketG(&bucket));
  EXPECT_EQ(3, bucket);
  bucket = 7;
  EXPECT_EQ(nullptr, map.findNextBucketG(&bucket));
}

TEST_F(HashMapTest, NullKeySortsBeforeEverything) {
  auto const member = Vyx::ptrFromNew(new NumberRecord(0));
  EXPECT_TRUE(NumberTable::instance().keyLessThan(nullptr, member.ptr()));
}

TEST_F(HashMapTest, TableOperationsLookAtTheMembersKey) {
  auto const member = Vyx::ptrFromNew(new NumberRecord(6));
  unsigned const five = 5, six = 6;
  auto const& table = NumberTable::instance();
  EXPECT_EQ(0x60000000U, table.hash(member.ptr()));
  EXPECT_TRUE(table.keyEquals(&six, member.ptr()));
  EXPECT_FALSE(table.keyEquals(&five, member.ptr()));
  EXPECT_TRUE(table.keyLessThan(&five, member.ptr()));
  EXPECT_FALSE(table.keyLessThan(&six, member.ptr()));
}

TEST_F(HashMapTest, TableOperationsAreMadeOnce) {
  EXPECT_EQ(&NumberTable::instance(), &NumberTable::instance());
}

TEST_F(HashMapTest, SettingTheNextMemberCounts) {
  auto const member = Vyx::ptrFromNew(new NumberRecord(1));
  auto const next = Vyx::ptrFromNew(new NumberRecord(2));
  for (int twice = 0; twice < 2; ++twice) {
    NumberTable::instance().setNext(member.ptr(), next.ptr());
    EXPECT_EQ(2U, next->references());
  }
  NumberTable::instance().setNext(member.ptr(), nullptr);
  EXPECT_EQ(1U, next->references());
}

TEST_F(HashMapTest, DestructorReleasesALongChainByALoop) {
  {
    HashOf<ChosenHash> chained;
    for (int rank = 0; rank < 3000; ++rank) enter(chained, ChosenHash{1, -rank});
    EXPECT_EQ(3000, HashRecord<ChosenHash>::alive());
  }
  EXPECT_EQ(0, HashRecord<ChosenHash>::alive());
}

TEST_F(HashMapTest, MemberHeldElsewhereOutlivesTheMap) {
  auto map = std::make_unique<HashOf<int>>();
  auto const held = enter(*map, 1);
  enter(*map, 2);
  map = nullptr;
  EXPECT_EQ(1, HashRecord<int>::alive());
  EXPECT_EQ(1U, held->references());
  EXPECT_FALSE(held->fwkHmNext_);
}

TEST_F(HashMapTest, KeysOfOneHashComeByTheirOwnOrder) {
  HashOf<ChosenHash> ties;
  for (int rank : {5, 1, 9, 3, 7, 2, 8, 4, 6}) enter(ties, ChosenHash{0x77, rank});
  EXPECT_EQ("119/1 119/2 119/3 119/4 119/5 119/6 119/7 119/8 119/9", keysOf(ties));
  EXPECT_EQ("119/8 119/9", keysFrom(ties, ChosenHash{0x77, 8}));
}

TEST_F(HashMapTest, DeletingAmongEqualHashesFindsTheWayOn) {
  HashOf<ChosenHash> ties;
  for (int rank : {1, 2, 3}) enter(ties, ChosenHash{0x77, rank});
  HashOf<ChosenHash>::IteratorConst at(ties);
  ties._memberDel(ChosenHash{0x77, 1});
  EXPECT_EQ("119/1 119/2 119/3", keysFrom(at));
}

TEST_F(HashMapTest, AddressesOfTwoFamiliesShareTheirChain) {
  using Lomu::IpGenAddr;
  HashOf<IpGenAddr> addresses;
  IpGenAddr const four("10.0.0.1"), six("a00:1::");
  ASSERT_EQ(four.hash(), six.hash());
  enter(addresses, six);
  enter(addresses, four);
  EXPECT_EQ("10.0.0.1 a00:1::", keysOf(addresses));
  EXPECT_EQ(4U, addresses.find(four)->fwkKey().family());
  EXPECT_EQ(6U, addresses.find(six)->fwkKey().family());
  EXPECT_EQ(addresses.find(six), HashOf<IpGenAddr>::next(addresses.find(four)));
}

TEST_F(HashMapTest, ChildHeldElsewhereHasNoParentWhenTheMapEnds) {
  struct Child final : Vyx::Entity {
    explicit Child(Vyx::Name name) : Entity(std::move(name)) {}
    Vyx::Name fwkKey() const { return name(); }
    Vyx::HashLink fwkHmNext_;
  };
  struct Parent final : Vyx::Entity {
    Vyx::HashMap<Child, Vyx::Name> children;
  };
  auto parent = Vyx::ptrFromNew(new Parent);
  auto const child = Vyx::ptrFromNew(new Child("edge"));
  parent->children.newMember(child);
  child->parentIs(Vyx::Ptr<Vyx::Entity>(parent));
  parent = nullptr;
  EXPECT_EQ(nullptr, child->vyxParent());
  EXPECT_EQ(1U, child->references());
}

TEST(HashMapDeathTest, MemberOfAChainIsRefused) {
  Numbers map;
  for (unsigned key : {0U, 1U}) enter(map, key);
  Ptr<NumberRecord> const first(map.find(0));
  EXPECT_DEATH(map.newMember(first), "^Vyx/HashMap:352: assertion failed: t->fwkHmNext\\(\\) == 0\n$");
}

} // namespace
