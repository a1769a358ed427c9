#include "LinkFixture.h"

#include <gmock/gmock.h>

namespace attributelog {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

// Two links over a pipe, without a loop.
class DirectTest : public testing::Test {
protected:
  void join(std::size_t capacity = PipeEnd::kCapacity) {
    PipePair pair = pipePair(capacity);
    near = Vyx::ptrFromNew(new Link(std::move(pair.first), nearNotes));
    far = Vyx::ptrFromNew(new Link(std::move(pair.second), farNotes));
    for (auto const& link : {near, far}) {
      link->directIs(true);
      link->immediateIs(true);
    }
    near->turn();
    far->turn();
    nearNotes.heard.clear();
    farNotes.heard.clear();
  }

  Notes nearNotes;
  Notes farNotes;
  Vyx::Ptr<Link> near;
  Vyx::Ptr<Link> far;
};

TEST_F(DirectTest, MessageIsHeardBeforeItsWriterGoesOn) {
  join();
  say(*near, "now");
  EXPECT_THAT(farNotes.heard, ElementsAre("7 now"));
}

TEST_F(DirectTest, AnswersComeWithinTheWrite) {
  join();
  farNotes.afterMessage = [](Link& link) { say(link, "pong"); };
  say(*near, "ping");
  EXPECT_THAT(nearNotes.heard, ElementsAre("7 pong"));
}

TEST_F(DirectTest, LongExchangeTakesNoStack) {
  join();
  int left = 200000;
  auto const answer = [&](Link& link) {
    if (left-- > 0) say(link, "x");
  };
  nearNotes.afterMessage = farNotes.afterMessage = answer;
  say(*near, "x");
  EXPECT_LE(left, 0);
}

TEST_F(DirectTest, PipeSmallerThanAMessageHoldsNothingUp) {
  join(5);
  for (int i = 0; i < 10; ++i) say(*near, std::string(100, static_cast<char>('a' + i)));
  ASSERT_EQ(10U, farNotes.heard.size());
  EXPECT_EQ("7 " + std::string(100, 'j'), farNotes.heard.back());
}

TEST_F(DirectTest, PeerThatEndsWithinTheWriteIsBorne) {
  join();
  farNotes.afterMessage = [](Link& link) { link.end("no more"); };
  say(*near, "one");
  EXPECT_FALSE(nearNotes.isClosed()); // Not within a write.
  say(*near, "two");
  near->turn();
  EXPECT_THAT(farNotes.heard, ElementsAre("7 one", "closed"));
  EXPECT_THAT(nearNotes.closingWords(), HasSubstr("no more"));
}

TEST_F(DirectTest, LinkThatIsDroppedWithinItsOwnWriteIsBorne) {
  join();
  farNotes.afterMessage = [&](Link&) { near = nullptr; };
  Vyx::Ptr<Out> const out = near->out();
  say(*near, "one");
  EXPECT_EQ(nullptr, near.ptr());
  EXPECT_EQ(0U, out->pendingBytes());
  EXPECT_TRUE(farNotes.isClosed());
}

TEST_F(DirectTest, LinkThatIsNotDirectIsWoken) {
  join();
  far->directIs(false);
  int woken = 0;
  far->wakeIs([&] { ++woken; });
  say(*near, "later");
  EXPECT_EQ(1, woken);
  EXPECT_TRUE(far->isReady());
  EXPECT_TRUE(farNotes.heard.empty());
  far->readable();
  EXPECT_THAT(farNotes.heard, ElementsAre("7 later"));
  EXPECT_FALSE(far->isReady());
}

TEST(PipeTest, BytesComeOutAsTheyWentInAroundTheEndOfTheRing) {
  PipePair pair = pipePair(10);
  unsigned char next = 0;
  unsigned char expected = 0;
  for (std::size_t size = 1; size < 200; ++size) {
    Bytes bytes(size % 8 + 1);
    for (auto& byte : bytes) byte = next++;
    std::span<unsigned char const> const all(bytes);
    std::size_t const half = bytes.size() / 2;
    ASSERT_EQ(bytes.size(), pair.first->write(all.first(half), all.subspan(half)).count);
    Bytes room(10);
    std::size_t const count = pair.second->read(room).count;
    ASSERT_EQ(bytes.size(), count);
    for (std::size_t i = 0; i < count; ++i) ASSERT_EQ(expected++, room[i]);
  }
}

TEST(PipeTest, NoMoreThanTheCapacityIsTaken) {
  PipePair pair = pipePair(10);
  Bytes const bytes(8);
  EXPECT_EQ(10U, pair.first->write(bytes, bytes).count);
  EXPECT_FALSE(pair.first->isWritable());
  EXPECT_TRUE(pair.first->write(bytes, {}).is(IoResult::Kind::wouldBlock));
}

TEST(PipeTest, WhatWasWrittenBeforeTheEndIsReadBeforeIt) {
  PipePair pair = pipePair();
  pair.first->write(Bytes{1, 2}, {});
  pair.first.reset();
  Bytes room(10);
  EXPECT_EQ(2U, pair.second->read(room).count);
  EXPECT_TRUE(pair.second->read(room).is(IoResult::Kind::closed));
  EXPECT_TRUE(pair.second->write(room, {}).is(IoResult::Kind::closed));
}

} // namespace
} // namespace attributelog
