#include "CutTransport.h"
#include "Ears.h"
#include "Edits.h"
#include "TwoProcesses.h"

#include "support/Invariants.h"

namespace replication_test {
namespace {

constexpr std::size_t kUncut = SIZE_MAX;

class PropertyTest : public TwoProcesses {
protected:
  PropertyTest() {
    disconnect();
    server.roots->offerIs("pbr/config", trees.config);
    server.roots->offerIs("pbr/status", trees.status);
    server.roots->offerIs("pbr/checkpoint", trees.checkpoint);
  }

  // How much room there is on the way.
  struct Way {
    std::size_t out = 256 * 1024;
    std::size_t pipe = 256 * 1024;
    std::size_t cutAfter = kUncut; // What the client reads before the connection breaks.
  };

  void connect(Way const& way) {
    server.ended.clear();
    client.ended.clear();
    LinkOptions options;
    options.outCapacity = way.out;
    PipePair ends = pipePair(way.pipe);
    auto toServer = std::make_unique<CutTransport>(std::move(ends.second), way.cutAfter);
    server.peer =
        Vyx::ptrFromNew(new Peer(std::move(ends.first), Demuxer::accepting, server.roots, &server, options));
    client.peer =
        Vyx::ptrFromNew(new Peer(std::move(toServer), Demuxer::connecting, client.roots, &client, options));
    for (Process* one : {&server, &client}) {
      one->peer->loopIs(loop);
      one->peer->demuxer()->throttleIs(&PropertyTest::mayGoOn, this);
    }
    client.peer->mount("pbr/config", configMode);
    for (char const* path : {"pbr/status", "pbr/checkpoint"}) client.peer->mount(path, MountMode::read);
  }

  Trees copy() const {
    return {client.mounted<Pbr::Config>("pbr/config"), client.mounted<Pbr::Status>("pbr/status"),
            client.mounted<Pbr::CheckpointStatus>("pbr/checkpoint")};
  }

  void turns(unsigned count) {
    for (unsigned i = 0; i < count; ++i) loop.turn(Duration::zero());
  }

  static bool isQuiet(Process const& one) {
    auto const& peer = *one.peer;
    return peer.hasEnded() || (!peer.demuxer()->hasQueued() && peer.link()->out()->pendingBytes() == 0 &&
                               !peer.link()->isReady());
  }

  // Until nothing is on the way any more, and nothing owed.
  void quiesce() {
    for (unsigned i = 0; i < 200000; ++i) {
      loop.turn(Duration::zero());
      if (isQuiet(server) && isQuiet(client) && i > 3) return;
    }
    FAIL() << "no end of it";
  }

  void expectEqual() {
    ASSERT_EQ("", server.ended + client.ended);
    EXPECT_EQ(0U, server.peer->demuxer()->waitingFlowOuts());
    ASSERT_EQ(textOf(trees), textOf(copy()));
    for (Ptr<Vyx::Entity> const& root : {Ptr<Vyx::Entity>(copy().config), Ptr<Vyx::Entity>(copy().status),
                                         Ptr<Vyx::Entity>(copy().checkpoint)})
      checkInvariants(*root);
  }

  static bool mayGoOn(void* test) {
    auto& self = *static_cast<PropertyTest*>(test);
    return self.stopsOneIn == 0 || !self.random.oneIn(self.stopsOneIn);
  }

  Random random;
  MountMode configMode = MountMode::read;
  unsigned stopsOneIn = 0; // How often a walk is stopped although there is room.
  Trees trees = newTrees();
  Edits edits{random, trees};
};

TEST_F(PropertyTest, EveryChangeArrives) {
  connect(Way());
  for (unsigned step = 0; step < 400; ++step) {
    SCOPED_TRACE(step);
    edits.many(1 + random.below(10));
    quiesce();
    expectEqual();
    if (HasFatalFailure()) return;
  }
}

TEST_F(PropertyTest, EveryChangeArrivesUnderStops) {
  stopsOneIn = 3;
  connect({600, 100});
  for (unsigned step = 0; step < 300; ++step) {
    SCOPED_TRACE(step);
    for (unsigned burst = random.below(5); burst > 0; --burst) {
      edits.many(random.below(20));
      turns(random.below(5));
    }
    quiesce();
    expectEqual();
    if (HasFatalFailure()) return;
  }
}

TEST_F(PropertyTest, AResyncOfEqualTreesTellsNothing) {
  for (unsigned step = 0; step < 40; ++step) {
    SCOPED_TRACE(step);
    edits.many(30);
    edits.dropDangling();
    connect(Way());
    quiesce();
    expectEqual();
    if (HasFatalFailure()) return;
    Trees const there = copy();
    Ears config(*there.config), status(*there.status), checkpoint(*there.checkpoint);
    disconnect();
    connect({300 + random.below(4000), 50 + random.below(2000)});
    quiesce();
    expectEqual();
    EXPECT_EQ(0U, config.take() + status.take() + checkpoint.take());
    disconnect();
  }
}

TEST_F(PropertyTest, BothSidesAreEqualAfterEachReconnect) {
  for (unsigned step = 0; step < 150; ++step) {
    SCOPED_TRACE(step);
    stopsOneIn = random.oneIn(3) ? 0 : 2 + random.below(3);
    connect({300 + random.below(4000), 50 + random.below(2000), 1 + random.below(20000)});
    for (unsigned burst = random.below(12); burst > 0; --burst) {
      edits.many(random.below(10));
      turns(random.below(8));
    }
    if (!client.peer->hasEnded() && random.oneIn(2)) client.peer->end("enough");
    turns(20);
    if (!server.peer->hasEnded()) server.peer->end("enough");
    turns(20);
    edits.many(random.below(10));
    connect({300 + random.below(4000), 50 + random.below(2000)});
    quiesce();
    expectEqual();
    if (HasFatalFailure()) return;
    disconnect();
  }
}

// Both sides change the configuration: each makes and removes children of its own, and members of its own in
// everyone's children.
class SharedTest : public PropertyTest {
protected:
  SharedTest() { configMode = MountMode::write; }

  Kest::UniqueId idOf(unsigned side) { return {10 * side + random.below(8), 2, 3}; }
  Lomu::IpGenAddr addressOf(unsigned side) {
    return Lomu::IpGenAddr(("10.0." + std::to_string(side) + "." + std::to_string(random.below(6))).c_str());
  }
  void edit(unsigned side, Pbr::Config& config) {
    auto const& actions = config.pbrActions();
    Kest::UniqueId const own = idOf(side);
    switch (random.below(8)) {
    case 0:
      actions->fwdActionDel(own);
      return;
    case 1:
    case 2:
      if (!actions->fwdAction(own)) actions->fwdActionIs("web", own, Pbr::nexthopAction);
      return;
    case 3:
      if (actions->fwdAction(own)) actions->fwdAction(own)->recursiveIs(random.oneIn(2));
      return;
    default:
      editMembers(side, actions->fwdAction(idOf(random.below(2))));
    }
  }
  // What both sides make, remove and change, without regard to each other.
  void editShared(Pbr::Config& config) {
    auto const& actions = config.pbrActions();
    Kest::UniqueId const id = idOf(0);
    auto const action = actions->fwdAction(id);
    switch (random.below(10)) {
    case 0:
      actions->fwdActionDel(id);
      return;
    case 1:
      if (!action) actions->fwdActionIs(random.oneIn(2) ? "web" : "mail", id, Pbr::nexthopAction);
      return;
    case 2:
      return config.pbrEnableNonAgingMacAddrIs(random.oneIn(2));
    case 3:
      if (action) action->recursiveIs(random.oneIn(2));
      return;
    case 4:
      if (action) action->nexthopGroupIs(std::string(1, static_cast<char>('a' + random.below(6))).c_str());
      return;
    default:
      editMembers(0, action);
    }
  }
  void editMembers(unsigned side, Ptr<Pbr::PbrFwdAction> const& action) {
    if (!action) return;
    if (random.oneIn(3))
      action->nexthopDel(addressOf(side));
    else
      action->nexthopIs(addressOf(side), random.oneIn(2));
  }
  template <class Edit> void editBoth(unsigned count, Edit const& edit) {
    for (; count > 0; --count) {
      unsigned const side = random.below(2);
      edit(side, side == 0 ? *trees.config : *copy().config);
    }
  }
  template <class Edit> void roundOfSteps(Edit const& edit) {
    stopsOneIn = 0;
    connect({300 + random.below(2000), 50 + random.below(1000)});
    quiesce();
    for (unsigned step = 0; step < 20; ++step) {
      SCOPED_TRACE(step);
      stopsOneIn = random.below(4);
      if (stopsOneIn == 1) stopsOneIn = 2;
      for (unsigned burst = random.below(8); burst > 0; --burst) {
        editBoth(random.below(20), edit);
        turns(random.below(6));
      }
      quiesce();
      expectEqual();
      if (HasFatalFailure()) return;
    }
    disconnect();
  }
};

TEST_F(SharedTest, BothSidesEndEqual) {
  for (unsigned round = 0; round < 20 && !HasFatalFailure(); ++round) {
    SCOPED_TRACE(round);
    roundOfSteps([this](unsigned side, Pbr::Config& config) { edit(side, config); });
  }
}

TEST_F(SharedTest, BothSidesEndEqualThoughTheyChangeTheSame) {
  for (unsigned round = 0; round < 20 && !HasFatalFailure(); ++round) {
    SCOPED_TRACE(round);
    roundOfSteps([this](unsigned, Pbr::Config& config) { editShared(config); });
  }
}

} // namespace
} // namespace replication_test
