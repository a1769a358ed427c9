// What one collection is told to have of another one's keys, while it changes.

#include "frame/Beside.h"
#include "support/Random.h"
#include "support/Records.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

template <class Map> class BesideTest : public testing::Test {
protected:
  using Key = typename Map::Key;
  using Found = Vyx::Ptr<typename Map::Member>;

  void enterIfAbsent(Key key) {
    if (!map.find(key)) enter(map, key);
  }
  void anyChange() {
    if (random.oneIn(2))
      enterIfAbsent(random.below(64));
    else
      map._memberDel(random.below(64));
  }
  void clear() {
    for (Key key = 0; key < 64; ++key) map._memberDel(key);
  }
  // Some keys in the order of a walk.
  std::vector<Key> someKeys() {
    Map asked;
    for (Key key = 0; key < 64; ++key)
      if (random.oneIn(2)) enter(asked, key);
    std::vector<Key> keys;
    for (typename Map::Walk at(asked); at; ++at) keys.push_back(at->fwkKey());
    return keys;
  }

  Random random;
  Map map;
};

using Maps = testing::Types<HashOf<unsigned>, TreeOf<unsigned>>;
TYPED_TEST_SUITE(BesideTest, Maps);

TYPED_TEST(BesideTest, AnswersAsALookUpDoes) {
  for (int round = 0; round < 300; ++round) {
    std::uint32_t const changes = this->random.oneIn(2) ? 4 : 1000;
    frame::Beside<TypeParam> beside(this->map);
    for (auto const key : this->someKeys()) {
      if (this->random.oneIn(changes)) this->anyChange();
      ASSERT_EQ(this->map.find(key), beside.find(key).ptr()) << key;
    }
  }
}

TYPED_TEST(BesideTest, WhatIsMadeCountsAsWellAsWhatElseChangesMeanwhile) {
  for (int round = 0; round < 300; ++round) {
    std::uint32_t const changes = this->random.oneIn(2) ? 4 : 1000;
    if (this->random.oneIn(4)) this->clear();
    frame::Beside<TypeParam> beside(this->map);
    for (auto const key : this->someKeys()) {
      if (this->random.oneIn(changes)) this->anyChange();
      auto const* const there = this->map.find(key);
      bool made = false;
      auto const found = beside.findOr(key, [&] {
        made = true;
        auto const fresh = enter(this->map, key);
        if (this->random.oneIn(changes)) this->anyChange();
        return fresh;
      });
      ASSERT_EQ(!there, made) << key;
      EXPECT_EQ(key, found->fwkKey());
      EXPECT_TRUE(made || found.ptr() == there);
    }
  }
}

// A key that counts how often it is looked at.
struct Shy {
  unsigned number;
  static inline int looks = 0;
  std::uint32_t hash() const { return ++looks, number; }
  bool operator==(Shy const& o) const { return ++looks, number == o.number; }
  bool operator<(Shy const& o) const { return ++looks, number < o.number; }
};

template <class Map> int looksAtKeysThatComeInOrder() {
  Map map;
  frame::Beside<Map> beside(map);
  int looks = 0;
  for (unsigned const number : {0U, 2U, 3U}) {
    auto const make = [&] {
      looks += Shy::looks;
      return enter(map, Shy{number});
    };
    Shy::looks = 0;
    beside.findOr(Shy{number}, make);
  }
  return looks;
}

TEST(Beside, NothingIsLookedUpBehindTheLast) {
  EXPECT_EQ(0, looksAtKeysThatComeInOrder<HashOf<Shy>>());
  EXPECT_EQ(0, looksAtKeysThatComeInOrder<TreeOf<Shy>>());
}

} // namespace
