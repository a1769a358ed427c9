// The hash table under random scripts, against std::map in the table's order.

#include "support/Random.h"
#include "support/Records.h"
#include "support/Walks.h"

#include <map>

namespace {

template <class K> struct Keys;
template <> struct Keys<unsigned> {
  static unsigned random(Random& random) { return random.below(400) * 0x01010101U; }
};
// Few hashes, in one table's bucket after another, and many keys of each.
template <> struct Keys<ChosenHash> {
  static ChosenHash random(Random& random) {
    return {random.below(40) << (random.below(2) * 24), static_cast<int>(random.below(12))};
  }
};

template <class K> class HashMapProperty : public testing::Test {
protected:
  using Map = HashOf<K>;
  using Record = HashRecord<K>;
  using Model = std::map<K, int, TableOrder>;

  ~HashMapProperty() override { EXPECT_EQ(static_cast<int>(map.count()), Record::alive()); }

  K anyKey() { return Keys<K>::random(random); }

  // As a setter does: an absent key enters.
  void insert(K const& key) {
    auto const place = map.place(key);
    EXPECT_EQ(map.find(key), place.member);
    if (!model.emplace(key, ++made).second) return;
    if (random.oneIn(4))
      enter(map, key, made);
    else
      map.newMember(Vyx::ptrFromNew(new Record(key, made)), place);
  }
  void remove(K const& key) {
    Vyx::Ptr<Record> const member = map._memberDel(key);
    EXPECT_EQ(model.erase(key), member ? 1U : 0U);
    if (!member) return;
    EXPECT_EQ(member.ptr() == standing ? 2U : 1U, member->references());
    EXPECT_FALSE(member->fwkHmNext_);
  }
  void change(std::uint32_t insertsInTen) {
    K const key = anyKey();
    if (random.below(10) < insertsInTen)
      insert(key);
    else
      remove(key);
  }

  void check() {
    ASSERT_EQ(model.size(), map.count());
    checkOrderAndLinks();
    for (auto const& [key, value] : model) {
      ASSERT_TRUE(map.find(key));
      ASSERT_EQ(value, map.find(key)->value());
      ASSERT_EQ(map.find(key), map.startAtHash(key));
    }
    K const key = anyKey();
    auto const next = model.lower_bound(key);
    ASSERT_EQ(next == model.end() ? nullptr : map.find(next->first), map.startAtHash(key));
    ASSERT_EQ(model.count(key) != 0, map.find(key) != nullptr);
  }

  // One walk over the buckets meets the model's members in its order, each in its bucket and held once.
  void checkOrderAndLinks() {
    auto expected = model.begin();
    for (std::uint32_t bucket = 0; bucket < map.buckets(); ++bucket)
      for (auto* at = static_cast<Record*>(map.head(bucket)); at; at = Map::next(at), ++expected) {
        ASSERT_TRUE(expected != model.end());
        ASSERT_EQ(expected->first, at->fwkKey());
        ASSERT_EQ(bucket, map.bucketOf(reversedBits(Vyx::keyHash(at->fwkKey()))));
        ASSERT_EQ(1U, at->references());
      }
    ASSERT_TRUE(expected == model.end());
  }

  // A walk in whose body anything may happen to the map; each step goes to the model's next member.
  void walkWithChanges() {
    typename Map::IteratorConst at(map);
    ASSERT_EQ(model.empty(), !at);
    while (at) {
      standing = at.member().ptr();
      K const key = at.key();
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
  Map map;
  Model model;
};

using KeyTypes = testing::Types<unsigned, ChosenHash>;
TYPED_TEST_SUITE(HashMapProperty, KeyTypes);

TYPED_TEST(HashMapProperty, InsertionsAndRemovals) {
  for (int step = 0; step < 1500 && !this->HasFatalFailure(); ++step) {
    this->change(step < 700 ? 8 : 4);
    this->check();
  }
  EXPECT_LE(128U, this->map.buckets());
}

TYPED_TEST(HashMapProperty, WalksWithChangesInTheirBody) {
  for (int walk = 0; walk < 60 && !this->HasFatalFailure(); ++walk) {
    for (int n = 0; n < 15; ++n) this->change(7);
    this->walkWithChanges();
    this->check();
  }
}

TYPED_TEST(HashMapProperty, GrowthKeepsEveryChainSorted) {
  for (int step = 0; step < 3000 && !this->HasFatalFailure(); ++step) {
    std::uint32_t const before = this->map.buckets();
    this->insert(this->anyKey());
    if (this->map.buckets() != before) this->check();
  }
  EXPECT_LE(256U, this->map.buckets());
}

} // namespace
