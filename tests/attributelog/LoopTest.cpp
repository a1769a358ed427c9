#include "LinkFixture.h"

#include <csignal>
#include <gmock/gmock.h>

namespace attributelog {
namespace {

using testing::ElementsAre;
using namespace std::chrono_literals;

class LoopTest : public testing::Test {
protected:
  Loop::Function note(std::string const& text) {
    return [this, text] { heard.push_back(text); };
  }
  // Far less than a test may take, far more than a turn that waits for nothing does.
  static bool isQuick(Instant start) { return Clock::now() - start < kLimit / 2; }

  Loop loop;
  std::vector<std::string> heard;
};

TEST_F(LoopTest, TimersRunInTheOrderOfTheirTimes) {
  Instant const now = Clock::now();
  loop.timerIs(now - 1ms, note("c"));
  loop.timerIs(now - 2ms, note("b"));
  loop.timerIs(now - 3ms, note("a"));
  loop.timerIs(now - 1ms, note("d"));
  loop.turn(0ms);
  EXPECT_THAT(heard, ElementsAre("a", "b", "c", "d"));
}

TEST_F(LoopTest, TimerRunsOnceAndNotBeforeItsTime) {
  Instant const when = Clock::now() + 20ms;
  Instant ran{};
  loop.timerIs(when, [&] {
    ran = Clock::now();
    heard.push_back("ran");
  });
  EXPECT_TRUE(loop.runUntil([&] { return !heard.empty(); }, kLimit));
  EXPECT_GE(ran, when);
  loop.turn(0ms);
  EXPECT_THAT(heard, ElementsAre("ran"));
}

TEST_F(LoopTest, TimerThatIsTakenAwayByAnotherDoesntRun) {
  Loop::TimerId later = 0;
  loop.timerIs(Clock::now() - 2ms, [&] { loop.timerDel(later); });
  later = loop.timerIs(Clock::now() - 1ms, note("never"));
  loop.turn(0ms);
  EXPECT_TRUE(heard.empty());
}

TEST_F(LoopTest, TimerThatMakesItselfAnewHoldsNothingUp) {
  std::function<void()> const again = [&] {
    heard.push_back("again");
    loop.timerIs(Instant::min(), again);
  };
  loop.timerIs(Instant::min(), again);
  loop.turn(0ms);
  loop.turn(0ms);
  EXPECT_THAT(heard, ElementsAre("again", "again"));
}

TEST_F(LoopTest, RunsUntilItsLimitWhenNothingHappens) {
  Instant const start = Clock::now();
  EXPECT_FALSE(loop.runUntil([] { return false; }, 10ms));
  EXPECT_GE(Clock::now() - start, 10ms);
  EXPECT_TRUE(isQuick(start));
}

TEST_F(LoopTest, ConditionThatHoldsIsntWaitedFor) {
  EXPECT_TRUE(loop.runUntil([] { return true; }, 0ms));
}

Loop* interrupted;
void wakeInterrupted(int) { interrupted->wake(); }

TEST_F(LoopTest, SignalHandlerEndsTheWait) {
  interrupted = &loop;
  auto const saved = std::signal(SIGUSR1, wakeInterrupted);
  Instant const start = Clock::now();
  std::raise(SIGUSR1);
  loop.turn(kLimit);
  std::signal(SIGUSR1, saved);
  EXPECT_TRUE(isQuick(start));
}

TEST_F(LoopTest, WakingLastsForOneTurn) {
  loop.wake();
  loop.wake();
  loop.turn(kLimit);
  Instant const start = Clock::now();
  loop.turn(10ms);
  EXPECT_GE(Clock::now() - start, 10ms);
}

TEST_F(LoopTest, EndsOfTurnsComeAfterTimersAndBeforeSending) {
  SocketPair pair = socketPair();
  Notes notes;
  RawPeer peer(std::move(pair.second));
  auto const link = Vyx::ptrFromNew(new Link(std::move(pair.first), notes));
  peer.send(helloBytes());
  loop.sourceIs(link);
  loop.turn(0ms);
  loop.timerIs(Instant::min(), note("timer"));
  auto const id = loop.turnEndIs([&] {
    heard.push_back("end");
    say(*link, "at the end");
  });
  loop.turn(0ms);
  EXPECT_TRUE(peer.hasReceived("at the end"));
  loop.turnEndDel(id);
  loop.turn(0ms);
  EXPECT_THAT(heard, ElementsAre("timer", "end"));
}

TEST_F(LoopTest, SourceThatHasEndedIsLetGo) {
  SocketPair pair = socketPair();
  Notes notes;
  auto const link = Vyx::ptrFromNew(new Link(std::move(pair.first), notes));
  loop.sourceIs(link);
  link->end("done");
  loop.turn(0ms);
  EXPECT_EQ(0U, loop.sources());
  EXPECT_EQ(1U, link->references());
}

TEST_F(LoopTest, SourceThatAnotherTakesAwayIsntServedAnyMore) {
  SocketPair first = socketPair();
  SocketPair second = socketPair();
  Notes heardFirst, heardSecond;
  RawPeer peers[] = {RawPeer(std::move(first.second)), RawPeer(std::move(second.second))};
  Vyx::Ptr<Link> links[] = {Vyx::ptrFromNew(new Link(std::move(first.first), heardFirst)),
                            Vyx::ptrFromNew(new Link(std::move(second.first), heardSecond))};
  heardFirst.afterMessage = [&](Link&) { loop.sourceDel(links[1]); };
  for (int i : {0, 1}) {
    loop.sourceIs(links[i]);
    peers[i].send(helloBytes() + messageBytes("x"));
  }
  loop.turn(kLimit);
  EXPECT_THAT(heardFirst.heard, ElementsAre("hello", "7 x"));
  EXPECT_TRUE(heardSecond.heard.empty());
  EXPECT_EQ(1U, loop.sources());
}

// A server that answers everybody with what he has said.
class CrowdTest : public LinkFixture {
protected:
  CrowdTest() {
    answers.afterMessage = [this](Link& link) { say(link, answers.heard.back()); };
  }
  Address place() {
    return GetParam() == Carrier::tcp ? Address(TcpAddress{}) : Address(UnixAddress{folder / "log"});
  }
  void serve() {
    auto const take = [this](std::unique_ptr<Transport> transport) {
      taken.push_back(Vyx::ptrFromNew(new Link(std::move(transport), answers)));
      loop.sourceIs(taken.back());
    };
    listener = Vyx::ptrFromNew(new Listener(place(), take));
    loop.sourceIs(listener);
  }
  void connect(Notes& notes, std::string const& text) {
    auto const done = [&notes, text, this](std::unique_ptr<Transport> transport, std::string const& failure) {
      ASSERT_TRUE(transport) << failure;
      clients.push_back(Vyx::ptrFromNew(new Link(std::move(transport), notes)));
      say(*clients.back(), text);
      loop.sourceIs(clients.back());
    };
    loop.sourceIs(Vyx::ptrFromNew(new Connector(listener->address(), kLimit, done)));
  }

  Notes answers;
  Vyx::Ptr<Listener> listener;
  std::vector<Vyx::Ptr<Link>> taken;
  std::vector<Vyx::Ptr<Link>> clients;
};
INSTANTIATE_TEST_SUITE_P(Over, CrowdTest, testing::Values(Carrier::unixSocket, Carrier::tcp), carrierName);

TEST_P(CrowdTest, HundredPeersAtOnceAreAllServed) {
  constexpr std::size_t kPeers = 100;
  serve();
  std::vector<Notes> notes(kPeers);
  for (std::size_t i = 0; i < kPeers; ++i) connect(notes[i], std::to_string(i));
  auto const isServed = [](Notes const& one) { return one.heard.size() == 2; };
  until([&] { return std::all_of(notes.begin(), notes.end(), isServed); });
  for (std::size_t i = 0; i < kPeers; ++i) EXPECT_EQ("7 7 " + std::to_string(i), notes[i].heard.back());
}

TEST_P(CrowdTest, HundredSilentPeersHoldNobodyUp) {
  serve();
  std::vector<std::unique_ptr<Transport>> silent;
  for (int i = 0; i < 100; ++i) silent.push_back(connectWithin(listener->address(), kLimit));
  Notes notes;
  connect(notes, "me");
  until([&] { return notes.heard.size() == 2; });
  EXPECT_EQ("7 7 me", notes.heard.back());
}

} // namespace
} // namespace attributelog
