// Whole trees over sockets that hold next to nothing, between ends that have little room themselves.

#include "Child.h"
#include "MeteredTransport.h"

#include "Vyx/NboAttrLog/Connector.h"
#include "Vyx/NboAttrLog/Listener.h"
#include "Vyx/NboAttrLog/SocketTransport.h"
#include "replication/Edits.h"
#include "replication/TwoProcesses.h"
#include "support/Invariants.h"

namespace processes_test {
namespace {

using namespace Vyx::NboAttrLog;
using replication_test::Edits;
using replication_test::Process;
using replication_test::Trees;
using Vyx::Ptr;

constexpr Duration kLimit = std::chrono::seconds(20);
constexpr char const* kPaths[] = {"pbr/config", "pbr/status", "pbr/checkpoint"};

struct Way {
  char const* name;
  bool isTcp;
  std::size_t atOnce; // Bytes that one call moves, at most.
  unsigned steps;
};

class TinySocketsTest : public testing::TestWithParam<Way> {
protected:
  TinySocketsTest() {
    server.roots->offerIs(kPaths[0], trees.config);
    server.roots->offerIs(kPaths[1], trees.status);
    server.roots->offerIs(kPaths[2], trees.checkpoint);
    edits.many(300);
    connect();
  }

  void connect() {
    Address const place = GetParam().isTcp ? Address(TcpAddress{}) : Address(UnixAddress{folder / "log"});
    std::unique_ptr<Transport> taken;
    auto const listener = Vyx::ptrFromNew(
        new Listener(place, [&](std::unique_ptr<Transport> transport) { taken = std::move(transport); }));
    auto made = connectWithin(listener->address(), kLimit);
    listener->readable();
    join(server, Demuxer::accepting, std::move(taken));
    join(client, Demuxer::connecting, std::move(made));
    for (char const* path : kPaths) client.peer->mount(path, MountMode::read);
  }
  // The kernel rounds up to the least that it can work with.
  void join(Process& one, Demuxer::Side side, std::unique_ptr<Transport> transport) {
    // A TCP socket that receives into less would wait for its timers.
    dynamic_cast<SocketTransport&>(*transport).bufferSizesAre(1, GetParam().isTcp ? 16384 : 1);
    meter->atOnce = GetParam().atOnce;
    LinkOptions options;
    options.outCapacity = 300;
    options.inCapacity = 64;
    one.peer = Vyx::ptrFromNew(new Peer(std::make_unique<MeteredTransport>(std::move(transport), meter), side,
                                        one.roots, &one, options));
    one.peer->loopIs(loop);
  }

  Trees copy() const {
    return {client.mounted<Pbr::Config>(kPaths[0]), client.mounted<Pbr::Status>(kPaths[1]),
            client.mounted<Pbr::CheckpointStatus>(kPaths[2])};
  }
  void until(std::function<bool()> const& condition) {
    auto const seen = [&] {
      stops += server.peer->demuxer()->hasQueued();
      meter->read.clear();
      meter->written.clear();
      return condition() || server.peer->hasEnded() || client.peer->hasEnded();
    };
    ASSERT_TRUE(loop.runUntil(seen, kLimit));
    ASSERT_EQ("", server.ended + client.ended);
  }
  // Until everything that either side has written, and owes, has been applied.
  void settle() {
    for (Process* one : {&server, &client, &server}) {
      until([&] { return !one->peer->demuxer()->hasQueued(); });
      auto const number = one->peer->probe();
      until([&] { return one->answered >= number; });
    }
  }
  void expectEqual() {
    ASSERT_EQ(textOf(trees), textOf(copy()));
    checkInvariants(*copy().config);
    checkInvariants(*copy().status);
    checkInvariants(*copy().checkpoint);
  }

  SharedFolder folder;
  Random random;
  Loop loop;
  std::shared_ptr<Meter> meter = std::make_shared<Meter>();
  Trees trees = replication_test::newTrees();
  Edits edits{random, trees};
  Process server{"server"};
  Process client{"client"};
  unsigned stops = 0; // Turns that have left something owed.
};

INSTANTIATE_TEST_SUITE_P(Over, TinySocketsTest,
                         testing::Values(Way{"UnixSocket", false, Meter::kNoLimit, 60},
                                         Way{"Tcp", true, Meter::kNoLimit, 60},
                                         Way{"UnixSocketInDrops", false, 7, 12},
                                         Way{"TcpInDrops", true, 7, 12}),
                         [](auto const& way) { return way.param.name; });

TEST_P(TinySocketsTest, WholeTreesArriveAndFollow) {
  until([&] { return client.heard.size() == std::size(kPaths); });
  ASSERT_FALSE(HasFatalFailure());
  for (unsigned i = 0; i < GetParam().steps; ++i) {
    SCOPED_TRACE(i);
    edits.many(random.below(40));
    settle();
    if (HasFatalFailure()) return;
    expectEqual();
    if (HasFatalFailure()) return;
  }
  EXPECT_GT(stops, GetParam().steps) << "walks never had to stop";
}

} // namespace
} // namespace processes_test
