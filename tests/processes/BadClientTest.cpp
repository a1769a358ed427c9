// Clients that write what they shouldn't, or nothing, to a real server that others use.

#include "RawClient.h"

#include "pbrctl/Program.h"
#include "pbrctl/Server.h"
#include "replication/TwoProcesses.h"
#include "support/Allocations.h"
#include "support/RawMessages.h"

#include <gmock/gmock.h>

#include <sstream>

namespace processes_test {
namespace {

using namespace Vyx::NboAttrLog;
using Pbrctl::Program;
using Pbrctl::TestFile;
using replication_test::Process;
using testing::HasSubstr;
using Vyx::EntityId;
using Vyx::Ptr;

constexpr char kConfig[] = "pbr/config";
constexpr Duration kLimit = std::chrono::seconds(20);
EntityId const kRoot = EntityId::fromValue(0x8000000000000003); // What a server gives first.
EntityId const kUnknown = EntityId::fromValue(0x80000000000fff01);
EntityId const kNew = EntityId::fromValue(0x101);

// Somebody who follows the configuration, or changes it.
class Guest : public Process {
public:
  Guest(Loop& loop, Address const& address, MountMode mode) : Process("guest"), loop_(loop) {
    peer = Vyx::ptrFromNew(new Peer(connectWithin(address, kLimit), Demuxer::connecting, roots, this));
    peer->loopIs(loop_);
    peer->mount(kConfig, mode);
    EXPECT_TRUE(loop_.runUntil([this] { return !heard.empty() || !ended.empty(); }, kLimit));
  }
  Ptr<Pbr::Config> config() const { return mounted<Pbr::Config>(kConfig); }

private:
  Loop& loop_;
};

class BadClientTest : public testing::Test, protected RawMessages {
protected:
  BadClientTest() { server.waitFor("serving " + std::string(kConfig) + " at "); }

  std::string start(unsigned char mode) {
    mount(kConfig, mode);
    return hello() + taken();
  }
  // A client that says this is told so, and so is whoever runs the server; nobody else notices.
  void expectEnd(std::string const& bytes, std::string const& words) {
    Guest writer(loop, address, MountMode::write);
    Guest reader(loop, address, MountMode::read);
    RawClient bad(address);
    bad.send(bytes);
    EXPECT_THAT(bad.untilClosed(), HasSubstr(words));
    EXPECT_THAT(errors(words), HasSubstr("pbrctl: note: pid " + std::to_string(::getpid()) + ", uid "));
    expectGoesOn(writer, reader);
  }
  void expectGoesOn(Guest& writer, Guest& reader) {
    bool const value = !writer.config()->bgpPbrRedirect();
    writer.config()->bgpPbrRedirectIs(value);
    EXPECT_TRUE(loop.runUntil(
        [&] { return reader.config()->bgpPbrRedirect() == value || !reader.ended.empty(); }, kLimit));
    EXPECT_EQ("", writer.ended + reader.ended);
  }
  // RETURNS what the server has noted, once those words are in it.
  std::string errors(std::string const& words) const {
    auto const until = Clock::now() + kLimit;
    while (server.errors().find(words) == std::string::npos && Clock::now() < until) ::poll(nullptr, 0, 5);
    EXPECT_THAT(server.errors(), HasSubstr(words));
    return server.errors();
  }

  TestFile place{"server", ""};
  Address const address = UnixAddress{place.path() + ".sock"};
  Program server{{"serve", "--socket", place.path() + ".sock"}};
  Loop loop;
};

TEST_F(BadClientTest, GarbageInsteadOfAHello) {
  expectEnd("GET / HTTP/1.1\r\n", "garbage instead of a hello: 47");
}

TEST_F(BadClientTest, AnotherVersion) {
  std::string bytes = hello();
  bytes[9] = 2;
  expectEnd(bytes, "peer speaks version 2.0 of the attribute log, this side 1.0");
}

TEST_F(BadClientTest, AMessageThatIsTooLong) {
  expectEnd(hello() + "\xff\xff\xff", "at byte 16: message of 16777215 bytes is longer than 1048576");
}

TEST_F(BadClientTest, AMessageThatIsTooShort) {
  expectEnd(hello() + std::string("\0\0\x0c", 3),
            "at byte 16: message of 12 bytes is shorter than its header of 13");
}

TEST_F(BadClientTest, AWrongChecksum) {
  std::string bytes = start(0);
  bytes.back() ^= 1;
  expectEnd(bytes, "at byte 16: checksum 0x");
}

TEST_F(BadClientTest, AValueThatIsCut) {
  std::string const begun = start(1);
  message(kRoot, 261, Vyx::NboAttrLog::kChildAnnouncement, [&] { out << 99U; });
  expectEnd(begun + taken(), "text of 99 bytes in 0 bytes of message");
}

TEST_F(BadClientTest, AnUnknownEntity) {
  std::string const begun = start(1);
  scalar(kUnknown, 259, true);
  expectEnd(begun + taken(), "entity id 80000000000fff01 is unknown");
}

TEST_F(BadClientTest, AnUnknownAttribute) {
  std::string const begun = start(1);
  scalar(kRoot, 999, true);
  expectEnd(begun + taken(), "attribute 999 is unknown to Pbr::Config");
}

TEST_F(BadClientTest, AnUnknownType) {
  std::string const begun = start(1);
  orphan("Pbr::Nothing", kNew);
  expectEnd(begun + taken(), "entity type Pbr::Nothing is unknown");
}

TEST_F(BadClientTest, AnUnknownControlMessage) {
  control(77, [] {});
  expectEnd(hello() + taken(), "control message 77 is unknown");
}

TEST_F(BadClientTest, AChangeByAReader) {
  std::string const begun = start(0);
  scalar(kRoot, 259, true);
  expectEnd(begun + taken(), "write-update from readonly proxy: pbr");
}

TEST_F(BadClientTest, AnOrphanOfAReader) {
  std::string const begun = start(0);
  orphan("Pbr::Config", kNew);
  expectEnd(begun + taken(), "an entity was announced by a peer that may read only");
}

// A newer writer may know more.
TEST_F(BadClientTest, AnUnknownEnumeratorIsNoFault) {
  Guest writer(loop, address, MountMode::write);
  Guest reader(loop, address, MountMode::read);
  auto const action = writer.config()->pbrActions()->fwdActionIs("web", {1, 2, 3}, Pbr::PbrActionType(77));
  expectGoesOn(writer, reader);
  ASSERT_TRUE(reader.config()->pbrActions()->fwdAction({1, 2, 3}));
  EXPECT_EQ(77, reader.config()->pbrActions()->fwdAction({1, 2, 3})->fwdActionType());
}

// That is what happens to every client that is killed.
TEST_F(BadClientTest, AClientThatEndsWithinAMessageChangesNothing) {
  Guest writer(loop, address, MountMode::write);
  Guest reader(loop, address, MountMode::read);
  RawClient bad(address);
  std::string const begun = start(1);
  scalar(kRoot, 260, true);
  std::string const cut = taken();
  bad.send(begun + cut.substr(0, cut.size() - 1));
  bad.untilHolds("Pbr::Config");
  bad.endsSending();
  bad.untilClosed();
  expectGoesOn(writer, reader);
}

TEST_F(BadClientTest, AHundredThatSayNothingAreEndedByTheirBound) {
  Guest writer(loop, address, MountMode::write);
  Guest reader(loop, address, MountMode::read);
  std::vector<std::unique_ptr<RawClient>> silent;
  for (unsigned i = 0; i < 100; ++i) silent.push_back(std::make_unique<RawClient>(address));
  for (unsigned i = 0; i < 100; i += 2) silent[i]->send(hello().substr(0, i % Hello::kBytes));
  expectGoesOn(writer, reader);
  for (auto const& one : silent) EXPECT_THAT(one->untilClosed(), HasSubstr("no hello within 5000 ms"));
  expectGoesOn(writer, reader);
}

TEST_F(BadClientTest, AHundredThatConnectAtOnceAreAllServed) {
  std::vector<std::unique_ptr<Process>> clients;
  auto const connected = [&](std::unique_ptr<Transport> transport, std::string const& failure) {
    ASSERT_TRUE(transport) << failure;
    clients.push_back(std::make_unique<Process>("client"));
    Process& one = *clients.back();
    one.peer = Vyx::ptrFromNew(new Peer(std::move(transport), Demuxer::connecting, one.roots, &one));
    one.peer->loopIs(loop);
    one.peer->mount(kConfig, MountMode::read);
  };
  for (unsigned i = 0; i < 100; ++i)
    loop.sourceIs(Vyx::ptrFromNew(new Connector(address, kLimit, connected)));
  auto const isServed = [](auto const& one) { return !one->heard.empty(); };
  EXPECT_TRUE(loop.runUntil(
      [&] { return clients.size() == 100 && std::all_of(clients.begin(), clients.end(), isServed); },
      kLimit));
  for (auto const& one : clients) EXPECT_EQ("", one->ended);
  clients.clear();
}

// The server in this process, so that its memory can be counted.
class GreedyClientTest : public testing::Test, protected RawMessages {
protected:
  void turn() {
    loop.turn(std::chrono::milliseconds(1));
    server.letGo();
  }
  RawClient client() {
    return RawClient(address, [this] { turn(); });
  }
  std::string probe(unsigned long long number) {
    control(kProbeCode, [&] { out->put(number); });
    return taken();
  }

  // A client that asks for something all the time, and takes no answer.
  void expectEndOfGreed(std::string const& more) {
    RawClient greedy = client();
    greedy.send(hello());
    std::string many;
    for (unsigned i = 0; i < 10000; ++i) many += more;
    std::size_t const before = allocations::livingBytes();
    std::size_t most = before;
    for (unsigned i = 0; i < 100 && log.str().empty(); ++i) {
      greedy.send(many);
      turn();
      most = std::max(most, allocations::livingBytes());
    }
    EXPECT_THAT(log.str(), HasSubstr("bytes wait for a peer that asks for more"));
    EXPECT_LT(most, before + kBound);
  }
  // What is asked for again costs nothing more once it is answered.
  template <class Message> void expectNoCost(Message const& message) {
    RawClient one = client();
    one.send(hello());
    auto const ask = [&](unsigned long long from) {
      for (auto i = from; i < from + 500; ++i) one.send(message(i));
      one.send(probe(from));
      one.untilHolds(answer(from));
    };
    ask(1000);
    std::size_t const before = allocations::living();
    ask(2000);
    EXPECT_EQ(before, allocations::living());
  }
  std::string answer(unsigned long long number) {
    control(kAnswerCode, [&] { out->put(number); });
    return taken();
  }

  static constexpr std::size_t kBound = 8 * 1024 * 1024;

  TestFile place{"server", ""};
  Address const address = UnixAddress{place.path() + ".sock"};
  Loop loop;
  std::ostringstream log;
  Pbrctl::Server server{loop, Pbr::configFactory("pbr"), log};
  Address const served = server.listen(address, false);
};

TEST_F(GreedyClientTest, BadClientsLeaveNothingBehind) {
  mount(kConfig, 1);
  std::string const begun = hello() + taken();
  scalar(kRoot, 999, true);
  std::string const bad[] = {"garbage", begun + taken(), hello() + "\xff\xff\xff"};
  auto const many = [&](unsigned count) {
    for (unsigned i = 0; i < count; ++i) {
      RawClient one = client();
      one.send(bad[i % std::size(bad)]);
      one.untilClosed();
      turn();
    }
    log.str("");
  };
  many(60);
  std::size_t const before = allocations::living();
  many(300);
  EXPECT_EQ(before, allocations::living());
}

TEST_F(GreedyClientTest, ProbesWithoutEndAreEnded) { expectEndOfGreed(probe(7)); }

TEST_F(GreedyClientTest, MountsWithoutEndAreEnded) {
  mount(kConfig, 0);
  expectEndOfGreed(taken());
}

TEST_F(GreedyClientTest, RefusalsWithoutEndAreEnded) {
  mount("pbr/nothing", 0);
  expectEndOfGreed(taken());
}

TEST_F(GreedyClientTest, AnotherMountOfOneRootCostsNothing) {
  expectNoCost([this](unsigned long long) {
    mount(kConfig, 0);
    return taken();
  });
}

TEST_F(GreedyClientTest, ARefusedMountCostsNothing) {
  expectNoCost([this](unsigned long long i) {
    mount(("pbr/" + std::to_string(i)).c_str(), 0);
    return taken();
  });
}

} // namespace
} // namespace processes_test
