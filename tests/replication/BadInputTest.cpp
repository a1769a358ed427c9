#include "TwoProcesses.h"

#include "support/RawMessages.h"

#include <gmock/gmock.h>

namespace replication_test {
namespace {

using support::treeText;
using testing::HasSubstr;
using Vyx::EntityId;

constexpr char kConfig[] = "pbr/config";
EntityId const kRoot = EntityId::fromValue(0x8000000000000003);
EntityId const kActions = EntityId::fromValue(0x8000000000000005);
EntityId const kNew = EntityId::fromValue(0x8000000000000101);

// A peer that writes whatever it likes.
class BadInputTest : public testing::Test, protected RawMessages {
protected:
  BadInputTest() {
    PipePair ends = pipePair();
    raw = std::move(ends.first);
    reader.peer =
        Vyx::ptrFromNew(new Peer(std::move(ends.second), Demuxer::connecting, reader.roots, &reader));
    reader.peer->loopIs(loop);
    reader.peer->mount(kConfig, MountMode::read);
    send(hello());
    bringRoot(kConfig, "Pbr::Config", kRoot);
    child(kRoot, 261, kActions, "Pbr");
    scalar(kRoot, 259, true);
    send(taken());
  }

  void send(std::string const& bytes) {
    std::span const all(reinterpret_cast<unsigned char const*>(bytes.data()), bytes.size());
    raw->write(all, {});
    turns();
  }
  void turns() {
    for (unsigned i = 0; i < 4; ++i) loop.turn(Duration::zero());
  }

  void action(EntityId const& id, std::uint32_t type) {
    child(kActions, 258, id, "web", Kest::UniqueId(1, 2, 3), type);
  }

  Ptr<Pbr::Config> tree() const { return reader.mounted<Pbr::Config>(kConfig); }

  // What was written ends the connection with those words, and has changed nothing.
  void expectEnd(char const* words) { expectEndOf(taken(), words); }
  void expectEndOf(std::string const& bytes, char const* words) {
    ASSERT_EQ("", reader.ended);
    std::string const before = treeText(*tree());
    send(bytes);
    EXPECT_THAT(reader.ended, HasSubstr(words));
    EXPECT_TRUE(reader.peer->hasEnded());
    EXPECT_EQ(before, treeText(*tree()));
  }
  void expectTaken() {
    send(taken());
    EXPECT_EQ("", reader.ended);
  }

  Loop loop;
  Process reader{"reader"};
  std::unique_ptr<PipeEnd> raw;
};

TEST_F(BadInputTest, GoodInputIsTaken) {
  action(kNew, 2);
  expectTaken();
  ASSERT_TRUE(tree());
  EXPECT_TRUE(tree()->bgpPbrRedirect());
  EXPECT_EQ(Pbr::nexthopAction, tree()->pbrActions()->fwdAction({1, 2, 3})->fwdActionType());
}

TEST_F(BadInputTest, UnknownEntity) {
  scalar(EntityId::fromValue(0x80000000000fff01), 259, false);
  expectEnd("entity id 80000000000fff01 is unknown");
}

TEST_F(BadInputTest, UnknownAttribute) {
  scalar(kRoot, 999, false);
  expectEnd("attribute 999 is unknown to Pbr::Config");
}

TEST_F(BadInputTest, UnknownRemoval) {
  message(kRoot, -999, kPlain, [] {});
  expectEnd("attribute -999 is unknown to Pbr::Config");
}

TEST_F(BadInputTest, UnknownEnumeratorIsKeptAndCounted) {
  action(kNew, 77);
  expectTaken();
  EXPECT_EQ(1U, reader.peer->demuxer()->unknownEnums());
  EXPECT_EQ(static_cast<Pbr::PbrActionType>(77), tree()->pbrActions()->fwdAction({1, 2, 3})->fwdActionType());
}

TEST_F(BadInputTest, TruncatedPayload) {
  message(kActions, 258, kChildAnnouncement, [&] { out << Vyx::String8("web"); });
  expectEnd("8 bytes of message needed and 0 left");
}

TEST_F(BadInputTest, PayloadLeftOver) {
  message(kActions, 258, kChildAnnouncement, [&] {
    out << Vyx::String8("web");
    out->put(Kest::UniqueId(1, 2, 3));
    out << 2U << kNew << 'x';
  });
  expectEnd("1 bytes left over in message");
}

TEST_F(BadInputTest, PayloadOfTheWrongSize) {
  out->nextHeaderIs({kRoot, 259, false, 4, kPlain, 0});
  out << Out::kTransactBegin << 1U << Out::kTransactEnd;
  expectEnd("3 bytes left over in message");
}

TEST_F(BadInputTest, WrongChecksum) {
  scalar(kRoot, 259, false);
  std::string bytes = taken();
  bytes.back() ^= 1;
  expectEndOf(bytes, "checksum 0x");
}

TEST_F(BadInputTest, ALengthOutOfBounds) {
  expectEndOf("\xff\xff\xff", "message of 16777215 bytes is longer than 1048576");
}

TEST_F(BadInputTest, AnEndInTheMiddleOfAMessage) {
  scalar(kRoot, 259, false);
  std::string const bytes = taken();
  std::string const before = treeText(*tree());
  send(bytes.substr(0, bytes.size() - 1));
  raw = nullptr;
  turns();
  EXPECT_THAT(reader.ended, HasSubstr("in the middle of the message at byte"));
  EXPECT_EQ(before, treeText(*tree()));
}

TEST_F(BadInputTest, ABoolThatIsNone) {
  out->nextHeaderIs({kRoot, 259, false, 1, kPlain, 0});
  out << Out::kTransactBegin << static_cast<unsigned char>(2) << Out::kTransactEnd;
  expectEnd("bool of value 2");
}

TEST_F(BadInputTest, AValueOutOfItsRange) {
  child(kActions, 259, kNew, "voice", Kest::UniqueId(1, 2, 3), static_cast<unsigned char>(99));
  expectEnd("at byte");
}

TEST_F(BadInputTest, UnknownTransactionMarker) {
  message(kActions, 258, kTransactionMarker, [&] { out << 7U << 0U; });
  expectEnd("transaction marker 7 is unknown");
}

TEST_F(BadInputTest, UnknownSyncMode) {
  out->nextHeaderIs({kRoot, 135, false, 4, kPlain, 0});
  out << Out::kTransactBegin << 9U << Out::kTransactEnd;
  expectEnd("SyncMode");
}

TEST_F(BadInputTest, AnnouncementWithoutId) {
  action(EntityId(), 2);
  expectEnd("an announced entity has no id");
}

TEST_F(BadInputTest, IdInUse) {
  action(kRoot, 2);
  expectEnd("entity id 8000000000000003 is in use");
}

TEST_F(BadInputTest, OrphanOfUnknownType) {
  orphan("Pbr::Nothing", kNew);
  expectEnd("entity type Pbr::Nothing is unknown");
}

TEST_F(BadInputTest, OrphanOfATypeThatIsNoEntity) {
  orphan("Kest::UniqueId", kNew);
  expectEnd("entity type Kest::UniqueId is unknown");
}

TEST_F(BadInputTest, OrphanWithoutId) {
  orphan("Pbr::Config", EntityId());
  expectEnd("an announced entity has no id");
}

TEST_F(BadInputTest, OrphanOfAnIdInUse) {
  orphan("Pbr::Config", kRoot);
  expectEnd("entity id 8000000000000003 is in use");
}

TEST_F(BadInputTest, RootNotAskedFor) {
  bringRoot("pbr/status", "Pbr::Status", kNew);
  expectEnd("root \"pbr/status\" was not asked for");
  EXPECT_FALSE(reader.roots->dir()->find("pbr/status"));
}

TEST_F(BadInputTest, RootOfATypeThatIsNotAccepted) {
  reader.roots->acceptIs("pbr/status", Pbr::Status::_fwkType());
  mount("pbr/status", 2);
  bringRoot("pbr/status", "Pbr::Config", kNew);
  expectEnd("root \"pbr/status\" can't be a Pbr::Config");
}

TEST_F(BadInputTest, AReferenceToNothingKnown) {
  child(kRoot, 263, kNew, "Pbr", 1U);
  EntityId const map = EntityId::fromValue(0x8000000000000103);
  child(kNew, 259, map, "edge");
  send(taken());
  message(map, 259, kPlain, [&] { out->put(0x8000000000000999ULL); });
  expectEnd("entity id 8000000000000999 is unknown");
}

TEST_F(BadInputTest, AReferenceToAnotherType) {
  child(kRoot, 263, kNew, "Pbr", 1U);
  EntityId const map = EntityId::fromValue(0x8000000000000103);
  child(kNew, 259, map, "edge");
  send(taken());
  message(map, 259, kPlain, [&] { out->put(kActions.value()); });
  expectEnd("where one to PolicyMap::PolicyMapSubConfig is expected");
}

TEST_F(BadInputTest, UnknownMountMode) {
  mount(kConfig, 9);
  expectEnd("mount mode 9 is unknown");
}

TEST_F(BadInputTest, UnknownControlMessage) {
  control(77, [] {});
  expectEnd("control message 77 is unknown");
}

TEST_F(BadInputTest, MoreHeardThanWasSent) {
  control(kHeardCode, [&] { out->put(std::uint64_t{1000}); });
  expectEnd("1000 messages heard, but only 1 sent");
}

TEST_F(BadInputTest, OtherConnectionsGoOn) {
  PipePair ends = pipePair();
  Process server{"server"};
  auto const config = Pbr::configFactory("pbr");
  server.roots->offerIs("other", config);
  server.peer = Vyx::ptrFromNew(new Peer(std::move(ends.first), Demuxer::accepting, server.roots, &server));
  Process second{"second"};
  second.peer = Vyx::ptrFromNew(new Peer(std::move(ends.second), Demuxer::connecting, reader.roots, &second));
  server.peer->loopIs(loop);
  second.peer->loopIs(loop);
  second.peer->mount("other", MountMode::read);
  scalar(kRoot, 999, false);
  expectEnd("attribute 999");
  config->bgpPbrRedirectIs(true);
  turns();
  EXPECT_TRUE(reader.mounted<Pbr::Config>("other")->bgpPbrRedirect());
  EXPECT_EQ("", second.ended + server.ended);
}

// A reader that writes.
TEST_F(BadInputTest, AWriteOfWhatWasGivenForReading) {
  PipePair ends = pipePair();
  Process server{"server"};
  auto const config = Pbr::configFactory("pbr");
  server.roots->offerIs(kConfig, config);
  server.peer = Vyx::ptrFromNew(new Peer(std::move(ends.first), Demuxer::accepting, server.roots, &server));
  server.peer->loopIs(loop);
  raw = std::move(ends.second);
  send(hello());
  mount(kConfig, 0);
  send(taken());
  scalar(kRoot, 259, true);
  send(taken());
  EXPECT_THAT(server.ended, HasSubstr("write-update from readonly proxy: pbr"));
  EXPECT_FALSE(config->bgpPbrRedirect());
}

} // namespace
} // namespace replication_test
