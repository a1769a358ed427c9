#include "Vyx/LinkQueue.h"
#include "support/Random.h"
#include "support/Walks.h"

#include <algorithm>
#include <vector>

namespace {

using Vyx::Ptr;

// One byte of key, so that every key can be tried and wrapping is near.
using Key = unsigned char;

class Item final : public Vyx::PtrInterface {
public:
  explicit Item(Key key) : key_(key) { ++alive; }
  ~Item() override { --alive; }
  Key fwkQkey() const { return key_; }
  static inline int alive = 0;
  Ptr<Vyx::PtrInterface> fwkQNext_;

private:
  Key key_;
};

using Queue = Vyx::LinkQueue<Item, Key>;

class LinkQueueTest : public testing::Test {
protected:
  void fill(std::vector<int> const& keys) {
    for (int key : keys) queue.enq(Vyx::ptrFromNew(new Item(static_cast<Key>(key))));
  }
  // The key at which the search starts; -1 for none.
  int startAt(int key) const {
    Item const* const at = queue.startAt(static_cast<Key>(key));
    return at ? at->fwkQkey() : -1;
  }
  std::vector<int> keys() const {
    std::vector<int> all;
    for (Item const* at = queue.head(); at; at = Queue::next(at)) all.push_back(at->fwkQkey());
    return all;
  }
  Queue queue;
};

using Keys = std::vector<int>;

TEST_F(LinkQueueTest, NewQueueIsEmpty) {
  EXPECT_EQ(0U, queue.count());
  EXPECT_EQ(nullptr, queue.head());
  EXPECT_EQ(nullptr, queue.tail());
  EXPECT_FALSE(queue.deq());
  EXPECT_EQ(0U, queue.version());
  EXPECT_FALSE(Queue::IteratorConst(queue));
  for (int key : {0, 1, 255}) EXPECT_EQ(-1, startAt(key));
}

TEST_F(LinkQueueTest, MembersLeaveInTheOrderOfTheirComing) {
  fill({3, 5, 9});
  EXPECT_EQ(9, queue.tail()->fwkQkey());
  for (int key : {3, 5, 9}) EXPECT_EQ(key, queue.deq()->fwkQkey());
  EXPECT_EQ(0U, queue.count());
  EXPECT_EQ(nullptr, queue.tail());
}

TEST_F(LinkQueueTest, EveryChangeRaisesTheVersion) {
  fill({3, 5});
  EXPECT_EQ(2U, queue.version());
  EXPECT_EQ(2U, queue.count());
  queue.deq();
  EXPECT_EQ(3U, queue.version());
  EXPECT_EQ(1U, queue.count());
}

TEST_F(LinkQueueTest, MemberLeavesFromAnyPlace) {
  fill({1, 2, 3, 4});
  for (Key key : {Key(2), Key(4), Key(1)}) {
    Ptr<Item> const gone = queue.memberDel(queue.find(key));
    EXPECT_EQ(key, gone->fwkQkey());
    EXPECT_EQ(1U, gone->references());
    EXPECT_FALSE(gone->fwkQNext_);
  }
  EXPECT_EQ((Keys{3}), keys());
  EXPECT_EQ(queue.head(), queue.tail());
  fill({7});
  EXPECT_EQ((Keys{3, 7}), keys());
}

TEST_F(LinkQueueTest, SearchFindsHeadAndTailAtOnce) {
  fill({200, 250, 3, 9});
  EXPECT_EQ(200, startAt(200));
  EXPECT_EQ(9, startAt(9));
}

TEST_F(LinkQueueTest, SearchWithoutAWrapIsALowerBound) {
  fill({10, 20, 30});
  EXPECT_EQ(10, startAt(0));
  EXPECT_EQ(20, startAt(11));
  EXPECT_EQ(20, startAt(20));
  EXPECT_EQ(30, startAt(29));
  EXPECT_EQ(-1, startAt(31));
}

TEST_F(LinkQueueTest, WrappedSearchFromBehindTheHeadEndsWhereTheKeysFall) {
  fill({200, 250, 3, 9});
  EXPECT_EQ(250, startAt(201));
  EXPECT_EQ(250, startAt(250));
  EXPECT_EQ(3, startAt(251));
}

TEST_F(LinkQueueTest, WrappedSearchBelowTheHeadLooksBehindTheFall) {
  fill({200, 250, 3, 9});
  EXPECT_EQ(3, startAt(0));
  EXPECT_EQ(3, startAt(3));
  EXPECT_EQ(9, startAt(4));
}

TEST_F(LinkQueueTest, WrappedSearchBetweenTailAndHeadFindsNone) {
  fill({200, 250, 3, 9});
  EXPECT_EQ(-1, startAt(10));
  EXPECT_EQ(-1, startAt(199));
}

// The queue as two ascending stretches, the keys before the fall and those behind it.
int expectedStart(Keys const& keys, int key) {
  auto const fall = std::is_sorted_until(keys.begin(), keys.end());
  bool const wrapped = fall != keys.end();
  if (!wrapped || key < keys.front()) {
    auto const at = std::lower_bound(fall == keys.end() ? keys.begin() : fall, keys.end(), key);
    return at == keys.end() ? -1 : *at;
  }
  return *std::lower_bound(keys.begin(), fall, key);
}

TEST_F(LinkQueueTest, SearchAgreesWithTheModelForEveryKey) {
  Random random;
  for (int round = 0; round < 300; ++round) {
    while (queue.deq()) {
    }
    std::uint32_t const first = random.below(256);
    Keys rising;
    for (std::uint32_t offset = 0; offset < 256; offset += 1 + random.below(80))
      rising.push_back(static_cast<int>((first + offset) % 256));
    fill(rising);
    for (int key = 0; key < 256; ++key) {
      ASSERT_EQ(expectedStart(rising, key), startAt(key)) << testing::PrintToString(rising) << " at " << key;
      bool const there = std::count(rising.begin(), rising.end(), key);
      ASSERT_EQ(there, queue.find(static_cast<Key>(key)) != nullptr);
    }
  }
}

TEST_F(LinkQueueTest, WalkMeetsEveryMember) {
  fill({250, 255, 0, 4});
  Keys met;
  for (Queue::IteratorConst at(queue); at; ++at) met.push_back(at.key());
  EXPECT_EQ(keys(), met);
}

TEST_F(LinkQueueTest, WalkFromAKeyStartsAtTheSearch) {
  fill({250, 255, 0, 4});
  EXPECT_EQ(0, Queue::IteratorConst(queue, 0).key());
  EXPECT_EQ(4, Queue::IteratorConst(queue, 1).key());
  EXPECT_FALSE(Queue::IteratorConst(queue, 5));
}

TEST_F(LinkQueueTest, DeletingTheCurrentMemberLandsOnTheNext) {
  fill({250, 255, 0, 4});
  Queue::IteratorConst at(queue, 255);
  queue.memberDel(queue.find(255));
  EXPECT_EQ(255, at.key());
  ++at;
  EXPECT_EQ(0, at.key());
  queue.memberDel(queue.find(250));
  ++at;
  EXPECT_EQ(4, at.key());
}

TEST_F(LinkQueueTest, DeletingTheLastMemberLandsOnNone) {
  fill({1, 2});
  Queue::IteratorConst at(queue, 2);
  queue.memberDel(queue.tail());
  EXPECT_FALSE(++at);
}

TEST_F(LinkQueueTest, MemberEnqueuedUnderAnIteratorIsMet) {
  fill({1});
  Queue::IteratorConst at(queue);
  fill({2});
  EXPECT_EQ(2, (++at).key());
  EXPECT_FALSE(++at);
}

TEST_F(LinkQueueTest, KeyZeroIsNoBookmark) {
  fill({255, 0});
  EXPECT_TRUE(Queue::IteratorConst(queue).hasBookmark());
  EXPECT_FALSE(Queue::IteratorConst(queue, 0).hasBookmark());
  EXPECT_FALSE(Queue::IteratorConst().hasBookmark());
}

TEST(LinkQueue, LongQueueIsReleasedByALoop) {
  {
    Vyx::LinkQueue<Item, Key> queue;
    for (int n = 0; n < 200000; ++n) queue.enq(Vyx::ptrFromNew(new Item(1)));
    EXPECT_EQ(200000, Item::alive);
  }
  EXPECT_EQ(0, Item::alive);
}

} // namespace
