#include "Vyx/Ptr.h"
#include "Vyx/String8.h"
#include "support/ThreadSafePointers.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstring>
#include <thread>
#include <vector>

namespace {

constexpr int kThreads = 4;
constexpr int kTurns = 100000;

struct Thing final : Vyx::PtrInterface {
  explicit Thing(std::atomic<int>& deaths) : deaths(deaths) {}
  ~Thing() override { ++deaths; }
  std::atomic<int>& deaths;
};

// Runs the turns on all threads at once, after all have started.
template <class Turn> void onAllThreads(int turns, Turn turn) {
  std::atomic<int> waiting = kThreads;
  std::vector<std::thread> threads;
  for (int i = 0; i < kThreads; ++i)
    threads.emplace_back([&, i] {
      for (--waiting; waiting;) std::this_thread::yield();
      for (int t = 0; t < turns; ++t) turn(i);
    });
  for (std::thread& thread : threads) thread.join();
}

// The share count stands first in a text's storage, in front of its bytes.
std::uint32_t shares(Vyx::Name const& text) {
  std::uint32_t count;
  std::memcpy(&count, text.charPtr() - sizeof(Vyx::Name::Data), sizeof count);
  return count;
}

class ThreadSafePtr : public testing::Test {
protected:
  ThreadSafePointers on;
  std::atomic<int> deaths = 0;
};

TEST_F(ThreadSafePtr, FlagsOfTheWordChangeWithoutLosingACount) {
  Vyx::Ptr<Thing> const thing = Vyx::ptrFromNew(new Thing(deaths));
  onAllThreads(kTurns, [&](int thread) {
    if (thread == 0)
      thing->vyxMarkedForDeletionIs(!thing->vyxMarkedForDeletion());
    else
      Vyx::Ptr<Thing> const copy = thing;
  });
  EXPECT_EQ(1U, thing->references());
}

TEST_F(ThreadSafePtr, CountEndsWhereItBegan) {
  auto const thing = Vyx::ptrFromNew(new Thing(deaths));
  onAllThreads(kTurns, [&](int) { Vyx::Ptr<Thing> const copy = thing; });
  EXPECT_EQ(1U, thing->vyxReferenceWord());
  EXPECT_EQ(0, deaths);
}

TEST_F(ThreadSafePtr, EveryHoldThatStaysIsCounted) {
  auto thing = Vyx::ptrFromNew(new Thing(deaths));
  std::vector<std::vector<Vyx::Ptr<Thing>>> held(kThreads);
  onAllThreads(10000, [&](int i) { held[static_cast<std::size_t>(i)].push_back(thing); });
  EXPECT_EQ(1U + kThreads * 10000U, thing->references());
  thing = nullptr;
  onAllThreads(1, [&](int i) { held[static_cast<std::size_t>(i)].clear(); });
  EXPECT_EQ(1, deaths);
}

TEST_F(ThreadSafePtr, LastReleaseOfAnyThreadDestroysOnce) {
  for (int round = 1; round <= 200; ++round) {
    auto thing = Vyx::ptrFromNew(new Thing(deaths));
    std::vector<Vyx::Ptr<Thing>> held(kThreads, thing);
    thing = nullptr;
    onAllThreads(1, [&](int i) { held[static_cast<std::size_t>(i)] = nullptr; });
    ASSERT_EQ(round, deaths);
  }
}

TEST_F(ThreadSafePtr, ShareCountOfATextEndsWhereItBegan) {
  Vyx::Name const name("shared by all");
  EXPECT_EQ(1U, shares(name));
  onAllThreads(kTurns, [&](int) { Vyx::Name const copy = name; });
  EXPECT_EQ(1U, shares(name));
}

TEST(ThreadSafePointersOff, CountsAreTheSame) {
  ASSERT_FALSE(Vyx::VFPtrInterface::enableThreadSafePointers);
  std::atomic<int> deaths = 0;
  auto const thing = Vyx::ptrFromNew(new Thing(deaths));
  Vyx::Name const name("shared");
  {
    Vyx::Name const other = name;
    EXPECT_EQ(2U, shares(name));
    ThreadSafePointers const on;
    Vyx::Name const third = name;
    Vyx::Ptr<Thing> const copy = thing;
    EXPECT_EQ(3U, shares(name));
    EXPECT_EQ(2U, thing->references());
  }
  EXPECT_EQ(1U, shares(name));
  EXPECT_EQ(1U, thing->references());
}

} // namespace
