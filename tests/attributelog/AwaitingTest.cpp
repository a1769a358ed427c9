// Waiting for a connection in its read: which turns of a loop do, and what a link makes of it.

#include "LinkFixture.h"

#include <gmock/gmock.h>
#include <thread>

namespace attributelog {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using namespace std::chrono_literals;

// Bytes are always there; notes how they were asked for.
class Ready final : public Source {
public:
  Ready() { pair_.second->write(helloBytes(), {}); }
  int fd() const override { return pair_.first->fd(); }
  bool wantsWrite() const override { return wantsWriting; }
  bool hasEnded() const override { return false; }
  Instant nextDeadline() const override { return deadline; }
  void readable() override { asked.push_back("readable"); }
  bool receive() override {
    asked.push_back("receive");
    return canReceive;
  }

  bool wantsWriting = false;
  bool canReceive = true;
  Instant deadline = kNever;
  std::vector<std::string> asked;

private:
  SocketPair pair_ = socketPair();
};

class AwaitingLoopTest : public testing::Test {
protected:
  // How the source was asked for what it has.
  std::vector<std::string> const& askedIn(Loop& of, Duration limit = Duration::max()) {
    of.sourceIs(source);
    of.turn(limit);
    return source->asked;
  }

  Loop loop{Loop::Waking::never};
  Vyx::Ptr<Ready> source = Vyx::ptrFromNew(new Ready);
};

TEST_F(AwaitingLoopTest, OnlySourceIsAwaitedInItsRead) { EXPECT_THAT(askedIn(loop), ElementsAre("receive")); }

TEST_F(AwaitingLoopTest, SourceThatCantWaitIsPolled) {
  source->canReceive = false;
  EXPECT_THAT(askedIn(loop), ElementsAre("receive", "readable"));
}

TEST_F(AwaitingLoopTest, TurnWithALimitPolls) { EXPECT_THAT(askedIn(loop, kLimit), ElementsAre("readable")); }

TEST_F(AwaitingLoopTest, TurnWithATimerPolls) {
  loop.timerIn(kLimit, [] {});
  EXPECT_THAT(askedIn(loop), ElementsAre("readable"));
}

TEST_F(AwaitingLoopTest, SourceWithADeadlineIsPolled) {
  source->deadline = Clock::now() + kLimit;
  EXPECT_THAT(askedIn(loop), ElementsAre("readable"));
}

TEST_F(AwaitingLoopTest, SourceThatHasSomethingToWriteIsPolled) {
  source->wantsWriting = true;
  EXPECT_THAT(askedIn(loop), ElementsAre("readable"));
}

TEST_F(AwaitingLoopTest, OneOfTwoSourcesIsPolled) {
  auto const other = Vyx::ptrFromNew(new Ready);
  loop.sourceIs(other);
  EXPECT_THAT(askedIn(loop), ElementsAre("readable"));
  EXPECT_THAT(other->asked, ElementsAre("readable"));
}

TEST_F(AwaitingLoopTest, LoopThatMayBeWokenPolls) {
  Loop other;
  EXPECT_THAT(askedIn(other), ElementsAre("readable"));
}

TEST_F(AwaitingLoopTest, TimersOfALoopThatNobodyWakesRun) {
  bool ran = false;
  loop.timerIn(1ms, [&] { ran = true; });
  loop.turn(Duration::max());
  EXPECT_TRUE(ran);
}

class AwaitingLinkTest : public LinkFixture {
protected:
  void joinOpen() {
    joinRaw();
    raw->send(helloBytes());
    until([&] { return !nearNotes.heard.empty(); });
    raw->received();
    nearNotes.heard.clear();
  }
};
INSTANTIATE_TEST_SUITE_P(Over, AwaitingLinkTest, testing::Values(Carrier::unixSocket, Carrier::tcp),
                         carrierName);

TEST_P(AwaitingLinkTest, MessageThatComesLaterIsWaitedForAndHeard) {
  joinOpen();
  std::thread peer([this] {
    std::this_thread::sleep_for(20ms);
    raw->send(messageBytes("late") + messageBytes("with it"));
  });
  EXPECT_TRUE(near->receive());
  peer.join();
  EXPECT_THAT(nearNotes.heard, ElementsAre("7 late", "7 with it"));
}

TEST_P(AwaitingLinkTest, MessageInPiecesIsWaitedForPieceByPiece) {
  joinOpen();
  for (unsigned char const byte : messageBytes("in pieces")) {
    EXPECT_TRUE(nearNotes.heard.empty());
    raw->send({byte});
    EXPECT_TRUE(near->receive());
  }
  EXPECT_THAT(nearNotes.heard, ElementsAre("7 in pieces"));
}

TEST_P(AwaitingLinkTest, EndOfThePeerEndsTheWait) {
  joinOpen();
  raw->close();
  EXPECT_TRUE(near->receive());
  EXPECT_THAT(nearNotes.closingWords(), HasSubstr("the peer closed the connection"));
  EXPECT_FALSE(near->receive());
}

TEST_P(AwaitingLinkTest, LinkBeforeItsPeersHelloDoesntWait) {
  joinRaw();
  EXPECT_FALSE(near->receive());
}

TEST_P(AwaitingLinkTest, LinkThatReadsNothingDoesntWait) {
  joinOpen();
  near->readingIs(false);
  EXPECT_FALSE(near->receive());
}

TEST_P(AwaitingLinkTest, LinkWithBytesToSendDoesntWait) {
  joinOpen();
  say(*near, "first");
  EXPECT_FALSE(near->receive());
  near->turn();
  EXPECT_TRUE(raw->hasReceived("first"));
}

// The peer reads nothing: a write that waited would never come back.
TEST_P(AwaitingLinkTest, WritingNeverWaits) {
  joinOpen();
  std::string const much(60000, 'x');
  for (int i = 0; i < 1000 && near->out()->hasSufficientBuffer(); ++i) {
    say(*near, much);
    near->turn();
  }
  EXPECT_FALSE(near->out()->hasSufficientBuffer());
}

TEST(AwaitingPipeTest, LinkOverMemoryDoesntWait) {
  PipePair ends = pipePair();
  Notes nearNotes, farNotes;
  auto const near = Vyx::ptrFromNew(new Link(std::move(ends.first), nearNotes));
  auto const far = Vyx::ptrFromNew(new Link(std::move(ends.second), farNotes));
  for (int i = 0; i < 2; ++i) {
    for (auto const& link : {near, far}) {
      link->turn();
      link->readable();
    }
  }
  EXPECT_THAT(nearNotes.heard, ElementsAre("hello"));
  EXPECT_FALSE(near->receive());
}

} // namespace
} // namespace attributelog
