#include "LinkFixture.h"

#include <csignal>
#include <fstream>
#include <gmock/gmock.h>
#include <iterator>
#include <random>
#include <sys/wait.h>

namespace attributelog {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

class LinkTest : public LinkFixture {};
INSTANTIATE_TEST_SUITE_P(Over, LinkTest, testing::Values(Carrier::unixSocket, Carrier::tcp, Carrier::pipe),
                         carrierName);

TEST_P(LinkTest, BothHearAHelloBeforeAnyMessage) {
  join();
  say(*near, "from near");
  say(*far, "from far");
  until([&] { return nearNotes.heard.size() == 2 && farNotes.heard.size() == 2; });
  EXPECT_THAT(nearNotes.heard, ElementsAre("hello", "7 from far"));
  EXPECT_THAT(farNotes.heard, ElementsAre("hello", "7 from near"));
}

TEST_P(LinkTest, OnlyTheHelloGoesOutBeforeThePeersHasCome) {
  joinRaw();
  say(*near, "early");
  until([&] { return raw->received().size() >= Hello::kBytes; });
  loop.turn(Duration::zero());
  EXPECT_EQ(helloBytes(), raw->received());
  raw->send(helloBytes());
  until([&] { return raw->received().size() > Hello::kBytes; });
  EXPECT_EQ(helloBytes() + messageBytes("early"), raw->received());
}

TEST_P(LinkTest, HelloMayComeInSingleBytes) {
  joinRaw();
  for (unsigned char const byte : helloBytes()) {
    EXPECT_TRUE(nearNotes.heard.empty());
    raw->send({byte});
    std::uint64_t const before = near->bytesReceived();
    until([&] { return near->bytesReceived() == before + 1; });
  }
  EXPECT_THAT(nearNotes.heard, ElementsAre("hello"));
}

TEST_P(LinkTest, MessagesMayComeInSingleBytes) {
  joinRaw();
  raw->send(helloBytes());
  for (unsigned char const byte : messageBytes("in pieces") + messageBytes("again")) {
    raw->send({byte});
    std::uint64_t const before = near->bytesReceived();
    until([&] { return near->bytesReceived() > before; });
  }
  EXPECT_THAT(nearNotes.heard, ElementsAre("hello", "7 in pieces", "7 again"));
}

TEST_P(LinkTest, AnotherMajorVersionIsRefusedWithWords) {
  joinRaw();
  raw->send(helloBytes({2, 0}));
  untilNearCloses();
  std::string const words = "peer speaks version 2.0 of the attribute log, this side 1.0";
  EXPECT_THAT(nearNotes.closingWords(), EndsWith(": " + words));
  EXPECT_EQ(Closing::Cause::hello, nearNotes.last->cause);
  until([&] { return raw->hasReceived(words); });
  EXPECT_EQ(helloBytes() + byeBytes(words), raw->received());
}

TEST_P(LinkTest, AnotherMinorVersionIsWelcome) {
  joinRaw();
  raw->send(helloBytes({kVersion.major, 99}));
  until([&] { return !nearNotes.heard.empty(); });
  EXPECT_THAT(nearNotes.heard, ElementsAre("hello"));
}

TEST_P(LinkTest, FeaturesThatBothNameAreUsed) {
  join({.features = 0b0110}, {.features = 0b1011});
  meet();
  EXPECT_EQ(0b0010U, near->features());
  EXPECT_EQ(0b0010U, far->features());
}

TEST_P(LinkTest, GarbageIsRefusedAtItsFirstBytes) {
  joinRaw();
  raw->send({'V', 'y', 'G', 'E', 'T'});
  untilNearCloses();
  EXPECT_THAT(nearNotes.closingWords(), EndsWith("garbage instead of a hello: 56 79 47 45 54"));
  until([&] { return raw->hasReceived("garbage instead of a hello"); });
}

TEST_P(LinkTest, SilentPeerIsEndedAtTheLimit) {
  joinRaw({.helloLimit = std::chrono::hours(1)});
  Instant const deadline = near->nextDeadline();
  near->expire(deadline - std::chrono::milliseconds(1));
  EXPECT_FALSE(nearNotes.isClosed());
  near->expire(deadline);
  EXPECT_THAT(nearNotes.closingWords(), EndsWith("no hello within 3600000 ms"));
  EXPECT_EQ(Closing::Cause::timeLimit, nearNotes.last->cause);
}

TEST_P(LinkTest, LoopEndsASilentPeerByItself) {
  joinRaw({.helloLimit = std::chrono::milliseconds(5)});
  untilNearCloses();
  EXPECT_THAT(nearNotes.closingWords(), EndsWith("no hello within 5 ms"));
  until([&] { return loop.sources() == 0; });
}

TEST_P(LinkTest, NoLimitAppliesAfterTheHello) {
  joinRaw();
  raw->send(helloBytes());
  until([&] { return !nearNotes.heard.empty(); });
  EXPECT_EQ(kNever, near->nextDeadline());
  near->expire(Clock::now() + std::chrono::hours(9));
  EXPECT_FALSE(nearNotes.isClosed());
}

TEST_P(LinkTest, CloseWithinTheHelloIsTold) {
  joinRaw();
  raw->send({'V', 'y', 'x'});
  until([&] { return near->bytesReceived() == 3; });
  raw->close();
  untilNearCloses();
  EXPECT_THAT(nearNotes.closingWords(), HasSubstr("closed the connection before its hello was complete"));
  EXPECT_EQ(Closing::Cause::peerEnded, nearNotes.last->cause);
}

TEST_P(LinkTest, CloseWithinAMessageIsToldWithItsPlace) {
  joinRaw();
  Bytes cut = messageBytes("never whole");
  std::size_t const whole = messageBytes("whole").size();
  cut.resize(cut.size() / 2);
  raw->send(helloBytes() + messageBytes("whole") + cut);
  until([&] { return near->bytesReceived() == Hello::kBytes + whole + cut.size(); });
  raw->close();
  untilNearCloses();
  EXPECT_THAT(nearNotes.closingWords(),
              HasSubstr("in the middle of the message at byte " + std::to_string(Hello::kBytes + whole)));
  EXPECT_THAT(nearNotes.heard, ElementsAre("hello", "7 whole", "closed"));
}

TEST_P(LinkTest, CloseBetweenMessagesHasNoPlace) {
  joinRaw();
  raw->send(helloBytes() + messageBytes("whole"));
  until([&] { return nearNotes.heard.size() == 2; });
  raw->close();
  untilNearCloses();
  EXPECT_THAT(nearNotes.closingWords(), HasSubstr(": the peer closed the connection"));
  EXPECT_THAT(nearNotes.closingWords(), Not(HasSubstr("in the middle")));
}

TEST_P(LinkTest, WrongChecksumEndsTheLinkWithItsPlace) {
  joinRaw();
  Bytes broken = messageBytes("broken");
  broken.back() ^= 1;
  raw->send(helloBytes() + messageBytes("fine") + broken + messageBytes("never heard"));
  untilNearCloses();
  std::size_t const place = Hello::kBytes + messageBytes("fine").size();
  EXPECT_THAT(nearNotes.closingWords(), HasSubstr(": at byte " + std::to_string(place) + ": checksum "));
  EXPECT_EQ(Closing::Cause::protocol, nearNotes.last->cause);
  EXPECT_THAT(nearNotes.heard, ElementsAre("hello", "7 fine", "closed"));
  until([&] { return raw->hasReceived("at byte " + std::to_string(place)); });
}

TEST_P(LinkTest, TooLongAMessageEndsTheLinkBeforeItsBytesAreWaitedFor) {
  joinRaw({.maxLength = 1000});
  raw->send(helloBytes() + Bytes{0x00, 0x03, 0xe9});
  untilNearCloses();
  EXPECT_THAT(nearNotes.closingWords(), EndsWith("at byte 16: message of 1001 bytes is longer than 1000"));
}

TEST_P(LinkTest, PayloadThatNobodyReadEndsTheLink) {
  struct Careless : Notes {
    void onMessage(Link&, In& in) override { in.nextU32(); }
  } careless;
  Ends ends = connectedEnds(GetParam(), folder);
  auto const link = Vyx::ptrFromNew(new Link(std::move(ends.near), careless));
  loop.sourceIs(link);
  RawPeer peer(std::move(ends.far));
  peer.send(helloBytes() + messageBytes("text"));
  until([&] { return careless.isClosed(); });
  EXPECT_THAT(careless.closingWords(), HasSubstr(": at byte 16: "));
  EXPECT_EQ(Closing::Cause::protocol, careless.last->cause);
}

TEST_P(LinkTest, ReceiverThatThrowsEndsItsLinkAndNoOther) {
  join();
  TemporaryFolder elsewhere;
  Ends others = connectedEnds(GetParam(), elsewhere);
  Notes bystander;
  auto const other = Vyx::ptrFromNew(new Link(std::move(others.near), bystander));
  loop.sourceIs(other);
  meet();
  nearNotes.afterMessage = [](Link&) { throw Vyx::InternalException("no such entity"); };
  say(*far, "first");
  say(*far, "second");
  until([&] { return nearNotes.isClosed() && farNotes.isClosed(); });
  EXPECT_THAT(nearNotes.heard, ElementsAre("7 first", "closed"));
  EXPECT_THAT(nearNotes.closingWords(), EndsWith("at byte 16: no such entity"));
  EXPECT_EQ(Closing::Cause::receiver, nearNotes.last->cause);
  EXPECT_THAT(farNotes.closingWords(), EndsWith("the peer ended the connection: at byte 16: no such entity"));
  EXPECT_EQ(Closing::Cause::peerSaid, farNotes.last->cause);
  EXPECT_FALSE(bystander.isClosed());
}

TEST_P(LinkTest, EndTellsBothSidesOnce) {
  join();
  meet();
  near->end("enough");
  EXPECT_TRUE(near->hasEnded());
  near->end("more than enough");
  until([&] { return farNotes.isClosed(); });
  loop.turn(Duration::zero());
  EXPECT_THAT(nearNotes.heard, ElementsAre("closed"));
  EXPECT_THAT(nearNotes.closingWords(), EndsWith(": enough"));
  EXPECT_THAT(farNotes.heard, ElementsAre("closed"));
  EXPECT_THAT(farNotes.closingWords(), EndsWith("the peer ended the connection: enough"));
}

TEST_P(LinkTest, WhatWasWrittenBeforeTheEndStillArrives) {
  join();
  meet();
  say(*near, "last words");
  near->end("enough");
  until([&] { return farNotes.isClosed(); });
  EXPECT_THAT(farNotes.heard, ElementsAre("7 last words", "closed"));
}

TEST_P(LinkTest, WordsOfAPeerAreShownWithoutControlCharacters) {
  joinRaw();
  raw->send(helloBytes() + byeBytes("red\x1b[31m\nalert"));
  untilNearCloses();
  EXPECT_THAT(nearNotes.closingWords(), EndsWith("the peer ended the connection: red?[31m?alert"));
}

TEST_P(LinkTest, LastWordsAreHeardThoughSendingFailsFirst) {
  joinRaw();
  raw->send(helloBytes());
  until([&] { return !nearNotes.heard.empty(); });
  near->immediateIs(true);
  raw->send(byeBytes("out of memory"));
  raw->close();
  for (int i = 0; i < 3; ++i) say(*near, "to nobody");
  EXPECT_FALSE(nearNotes.isClosed()); // Not within a write.
  near->turn();
  untilNearCloses();
  EXPECT_THAT(nearNotes.closingWords(), EndsWith("the peer ended the connection: out of memory"));
}

TEST_P(LinkTest, WritingToAPeerThatIsGoneRaisesNoSignal) {
  join();
  meet();
  loop.sourceDel(far);
  far = nullptr;
  for (int i = 0; i < 1000 && !nearNotes.isClosed(); ++i) {
    say(*near, std::string(1000, 'x'));
    near->turn();
  }
  untilNearCloses();
  EXPECT_THAT(nearNotes.closingWords(), HasSubstr("the peer closed the connection"));
}

TEST_P(LinkTest, LinkThatIsDroppedSaysNothingHere) {
  join();
  meet();
  loop.sourceDel(near);
  near = nullptr;
  until([&] { return farNotes.isClosed(); });
  EXPECT_TRUE(nearNotes.heard.empty());
}

TEST_P(LinkTest, WriterMayOutliveTheLink) {
  join();
  Vyx::Ptr<Out> const out = near->out();
  loop.sourceDel(near);
  near = nullptr;
  out->nextHeaderIs(MsgHeader{});
  out << Out::kTransactBegin << Out::kTransactEnd;
  EXPECT_EQ(0U, out->pendingBytes());
}

TEST_P(LinkTest, LinkMayBeDroppedInItsLastCall) {
  join();
  meet();
  nearNotes.atClose = [&](Link& link) {
    loop.sourceDel(Vyx::Ptr<Source>(&link));
    near = nullptr;
  };
  nearNotes.afterMessage = [](Link& link) { link.end("seen it"); };
  say(*far, "go");
  until([&] { return farNotes.isClosed(); });
  EXPECT_EQ(nullptr, near.ptr());
}

TEST_P(LinkTest, ReceiverThatIsTakenAwayHearsNothingMore) {
  join();
  meet();
  near->receiverDel();
  say(*far, "unheard");
  far->end("done");
  until([&] { return near->hasEnded(); });
  EXPECT_TRUE(nearNotes.heard.empty());
}

TEST_P(LinkTest, MessagesOfATurnWaitForItsEnd) {
  join();
  meet();
  std::uint64_t const before = near->bytesSent();
  say(*near, "a");
  say(*near, "b");
  EXPECT_EQ(before, near->bytesSent());
  near->turn();
  EXPECT_EQ(before + (messageBytes("a") + messageBytes("b")).size(), near->bytesSent());
}

TEST_P(LinkTest, ImmediateMessagesWaitForNothing) {
  join();
  meet();
  near->immediateIs(true);
  std::uint64_t const before = near->bytesSent();
  say(*near, "now");
  EXPECT_EQ(before + messageBytes("now").size(), near->bytesSent());
}

TEST_P(LinkTest, WriterThatNeverTurnsStreamsAllTheSame) {
  join({.outCapacity = 1 << 20, .streamAt = 4096});
  meet();
  std::uint64_t const before = near->bytesSent();
  for (int i = 0; i < 8; ++i) say(*near, std::string(1000, 'x'));
  EXPECT_GE(near->bytesSent(), before + 4096);
  EXPECT_LT(near->out()->pendingBytes(), 4096 + messageBytes(std::string(1000, 'x')).size());
}

TEST_P(LinkTest, RoomIsToldOnceItIsThereAndFromTheLoop) {
  join({.outCapacity = 4096});
  meet();
  while (near->out()->hasSufficientBuffer()) say(*near, std::string(100, 'x'));
  EXPECT_TRUE(nearNotes.heard.empty());
  until([&] { return !nearNotes.heard.empty(); });
  loop.turn(Duration::zero());
  EXPECT_THAT(nearNotes.heard, ElementsAre("room"));
  EXPECT_TRUE(near->out()->hasSufficientBuffer());
}

TEST_P(LinkTest, RoomIsToldWhenItWasAskedFor) {
  join();
  meet();
  near->roomWanted();
  EXPECT_TRUE(nearNotes.heard.empty());
  until([&] { return !nearNotes.heard.empty(); });
  loop.turn(Duration::zero());
  EXPECT_THAT(nearNotes.heard, ElementsAre("room"));
}

TEST_P(LinkTest, WalkThatResumesAtEachRoomComesToItsEnd) {
  join({.outCapacity = 1024});
  meet();
  int sent = 0;
  auto const walk = [&](Link& link) {
    while (sent < 2000 && link.out()->hasSufficientBuffer()) say(link, std::to_string(sent++));
  };
  nearNotes.atRoom = walk;
  walk(*near);
  until([&] { return farNotes.heard.size() == 2000; });
  EXPECT_EQ("7 1999", farNotes.heard.back());
}

TEST_P(LinkTest, EndlessWalkLeavesTheTurnToOthers) {
  join({.outCapacity = 1024, .sendBudget = 10000});
  meet();
  nearNotes.atRoom = [](Link& link) {
    while (link.out()->hasSufficientBuffer()) say(link, "more");
    link.roomWanted();
  };
  near->roomWanted();
  for (int turns = 0; turns < 10; ++turns) loop.turn(Duration::zero());
  EXPECT_GT(farNotes.heard.size(), 100U);
}

TEST_P(LinkTest, OneCallReadsNoMoreThanItsBudget) {
  join({}, {.inCapacity = 512, .readBudget = 1000});
  meet();
  for (int i = 0; i < 100; ++i) say(*near, std::string(80, 'x'));
  near->turn();
  std::uint64_t const before = far->bytesReceived();
  far->readable();
  EXPECT_GE(far->bytesReceived(), before + 1000);
  EXPECT_LE(far->bytesReceived(), before + 1000 + 512);
  until([&] { return farNotes.heard.size() == 100; });
}

TEST_P(LinkTest, ReaderThatStopsCostsBoundedMemoryAndGetsEverythingLater) {
  join({.outCapacity = 16384});
  meet();
  far->readingIs(false);
  int sent = 0;
  // Nothing is taken any more when a few turns send nothing.
  for (int idle = 0; idle < 3; ++idle) {
    while (near->out()->hasSufficientBuffer()) {
      say(*near, std::to_string(sent++));
      idle = 0;
    }
    loop.turn(std::chrono::milliseconds(1));
  }
  EXPECT_TRUE(farNotes.heard.empty());
  EXPECT_LE(near->out()->pendingBytes(), 16384U);
  far->readingIs(true);
  until([&] { return farNotes.heard.size() == static_cast<std::size_t>(sent); });
  EXPECT_EQ("7 " + std::to_string(sent - 1), farNotes.heard.back());
}

TEST_P(LinkTest, RecordingsHoldTheBytesAsTheyWere) {
  join();
  near->recordingsAre(nullptr, std::make_unique<Recording>(folder / "sent"));
  far->recordingsAre(std::make_unique<Recording>(folder / "received"), nullptr);
  meet();
  say(*near, "kept");
  until([&] { return !farNotes.heard.empty(); });
  auto const contents = [&](std::string const& name) {
    std::ifstream file(folder / name, std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(file), {});
  };
  EXPECT_EQ(helloBytes() + messageBytes("kept"), contents("sent"));
  EXPECT_EQ(helloBytes() + messageBytes("kept"), contents("received"));
}

TEST_P(LinkTest, ControlMessagesOfOtherCodesReachTheReceiver) {
  join();
  meet();
  near->sendControl(20, [](Vyx::Ptr<Out> const& out) { out << Vyx::String8("pbr/config"); });
  until([&] { return !farNotes.heard.empty(); });
  EXPECT_THAT(farNotes.heard, ElementsAre("20 pbr/config"));
}

TEST_P(LinkTest, ByeWithTheNumberOfAnEntityIsAnyMessage) {
  joinRaw();
  raw->send(helloBytes() + messageBytes("x", kByeCode, kPlain));
  until([&] { return nearNotes.heard.size() == 2; });
  EXPECT_THAT(nearNotes.heard, ElementsAre("hello", "1 x"));
}

// Every message is split, both ways at once.
class SmallBuffersTest : public LinkFixture {
protected:
  Ends smallEnds() {
    if (GetParam() == Carrier::pipe) {
      PipePair pair = pipePair(7);
      return {std::move(pair.first), std::move(pair.second)};
    }
    Ends ends = connectedEnds(GetParam(), folder);
    // The least that the kernel gives; a TCP socket that receives into less would wait for its timers.
    int const toReceive = GetParam() == Carrier::tcp ? 16384 : 1;
    for (auto* end : {ends.near.get(), ends.far.get()})
      dynamic_cast<SocketTransport&>(*end).bufferSizesAre(1, toReceive);
    return ends;
  }
};
INSTANTIATE_TEST_SUITE_P(Over, SmallBuffersTest,
                         testing::Values(Carrier::unixSocket, Carrier::tcp, Carrier::pipe), carrierName);

TEST_P(SmallBuffersTest, MessagesLargerThanTheBuffersArriveWhole) {
  LinkOptions const options{.outCapacity = 1 << 20, .inCapacity = 64};
  joinEnds(smallEnds(), options, options);
  std::mt19937 random(7);
  std::vector<std::string> expected{"hello"};
  std::size_t const largest = GetParam() == Carrier::pipe ? 300 : 20000;
  for (int i = 0; i < 30; ++i) {
    std::string const text(random() % largest, static_cast<char>('a' + i % 26));
    say(*near, text);
    say(*far, text);
    expected.push_back("7 " + text);
  }
  until(
      [&] { return nearNotes.heard.size() == expected.size() && farNotes.heard.size() == expected.size(); });
  EXPECT_EQ(expected, nearNotes.heard);
  EXPECT_EQ(expected, farNotes.heard);
}

// Passes everything on, and counts the writes.
class CountingTransport final : public Transport {
public:
  CountingTransport(std::unique_ptr<Transport> inner, int& writes)
      : inner_(std::move(inner)), writes_(writes) {}
  IoResult read(std::span<unsigned char> room) override { return inner_->read(room); }
  IoResult write(std::span<unsigned char const> first, std::span<unsigned char const> second) override {
    ++writes_;
    return inner_->write(first, second);
  }
  void writeEnds() override { inner_->writeEnds(); }
  int fd() const override { return inner_->fd(); }
  std::string peerName() const override { return inner_->peerName(); }
  bool isLocal() const override { return inner_->isLocal(); }

private:
  std::unique_ptr<Transport> inner_;
  int& writes_;
};

TEST(LinkWritesTest, OneSystemCallCarriesAllMessagesOfATurn) {
  int writes = 0;
  SocketPair pair = socketPair();
  RawPeer peer(std::move(pair.second));
  Notes notes;
  auto const link =
      Vyx::ptrFromNew(new Link(std::make_unique<CountingTransport>(std::move(pair.first), writes), notes));
  peer.send(helloBytes());
  link->readable();
  link->turn();
  writes = 0;
  for (int i = 0; i < 1000; ++i) say(*link, "x");
  link->turn();
  EXPECT_EQ(1, writes);
  link->turn();
  EXPECT_EQ(1, writes);
}

TEST(LinkWritesTest, StreamThatTakesNothingIsNotAskedForEachMessage) {
  int writes = 0;
  SocketPair pair = socketPair();
  RawPeer peer(std::move(pair.second));
  Notes notes;
  auto const link = Vyx::ptrFromNew(new Link(
      std::make_unique<CountingTransport>(std::move(pair.first), writes), notes, {.outCapacity = 1 << 20}));
  peer.send(helloBytes());
  link->readable();
  link->immediateIs(true);
  std::uint64_t sent = ~0ULL;
  while (sent != link->bytesSent()) {
    sent = link->bytesSent();
    say(*link, std::string(1000, 'x'));
  }
  writes = 0;
  for (int i = 0; i < 1000; ++i) say(*link, "x");
  EXPECT_LE(writes, 1);
}

// The peer is a process of its own, which sends that and waits to be killed.
pid_t forkPeer(std::string const& path, Bytes const& bytes) {
  pid_t const child = ::fork();
  if (child != 0) return child;
  auto const transport = connectWithin(UnixAddress{path}, kLimit);
  transport->write(bytes);
  for (;;) ::pause();
}

TEST(LinkProcessTest, PeerThatIsKilledWithinAMessageIsNamed) {
  TemporaryFolder folder;
  Loop loop;
  Notes notes;
  Vyx::Ptr<Link> link;
  auto const take = [&](std::unique_ptr<Transport> transport) {
    link = Vyx::ptrFromNew(new Link(std::move(transport), notes));
    loop.sourceIs(link);
  };
  loop.sourceIs(Vyx::ptrFromNew(new Listener(UnixAddress{folder / "log"}, take)));
  Bytes cut = helloBytes() + messageBytes("whole") + messageBytes("cut");
  cut.pop_back();
  pid_t const child = forkPeer(folder / "log", cut);
  EXPECT_TRUE(loop.runUntil([&] { return link && link->bytesReceived() == cut.size(); }, kLimit));
  ::kill(child, SIGKILL);
  ::waitpid(child, nullptr, 0);
  EXPECT_TRUE(loop.runUntil([&] { return notes.isClosed(); }, kLimit));
  EXPECT_THAT(notes.heard, ElementsAre("hello", "7 whole", "closed"));
  EXPECT_THAT(notes.closingWords(), StartsWith("pid " + std::to_string(child) + ", uid "));
  EXPECT_THAT(notes.closingWords(), HasSubstr("in the middle of the message at byte "));
}

} // namespace
} // namespace attributelog
