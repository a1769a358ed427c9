// What it costs to bring a tree up to date that is so already: no notification, and nothing
// for an entry.

#include "Ears.h"
#include "TwoProcesses.h"

#include "support/Allocations.h"

namespace replication_test {
namespace {

constexpr char kConfig[] = "pbr/config";
constexpr char kStatus[] = "pbr/status";
constexpr char kCheckpoint[] = "pbr/checkpoint";
Kest::UniqueId const kId(1, 2, 3);

Lomu::IpGenAddr addressOf(unsigned i) {
  return Lomu::IpGenAddr(("10.0." + std::to_string(i / 250) + "." + std::to_string(i % 250)).c_str());
}
Lomu::IntfId interfaceOf(unsigned i) { return Lomu::IntfId("Ethernet" + std::to_string(100 + i)); }

class ResyncCostTest : public TwoProcesses {
protected:
  ResyncCostTest() {
    server.roots->offerIs(kConfig, config);
    server.roots->offerIs(kStatus, status);
    server.roots->offerIs(kCheckpoint, checkpoint);
    mount();
  }

  void mount() {
    client.heard.clear();
    for (char const* path : {kConfig, kStatus, kCheckpoint}) client.peer->mount(path, MountMode::read);
    run([&] { return client.heard.size() == 3; });
  }
  // RETURNS the blocks that both sides take for a resync, from the connection to the last root.
  std::size_t cost() {
    disconnect();
    return allocations::takenBy([this] {
      connect();
      mount();
    });
  }

  // `fill` makes the entries of the numbers from the one to the other.
  template <class Fill> void expectNothingForAnEntry(Fill const& fill) {
    fill(0U, 50U);
    settle();
    cost(); // What is taken once and kept.
    std::size_t const few = cost();
    fill(50U, 500U);
    settle();
    std::vector<std::unique_ptr<Ears>> ears;
    for (char const* path : {kConfig, kStatus, kCheckpoint})
      ears.push_back(std::make_unique<Ears>(*client.roots->dir()->find(path)->entity()));
    EXPECT_LE(cost(), few + kLongerTexts);
    for (auto const& each : ears) EXPECT_EQ(0U, each->take());
  }

  // The storage that texts are read into may have to become longer now and then.
  static constexpr std::size_t kLongerTexts = 8;

  Ptr<Pbr::Config> config = Pbr::configFactory("pbr");
  Ptr<Pbr::Status> status = Pbr::statusFactory("pbr");
  Ptr<Pbr::CheckpointStatus> checkpoint = Pbr::checkpointStatusFactory("pbr");
};

TEST_F(ResyncCostTest, ANextHopTakesNothing) {
  auto const action = config->pbrActions()->fwdActionIs("web", kId, Pbr::nexthopAction);
  expectNothingForAnEntry([&](unsigned i, unsigned end) {
    for (; i < end; ++i) action->nexthopIs(addressOf(i), true);
  });
}

TEST_F(ResyncCostTest, ABindingTakesNothing) {
  expectNothingForAnEntry([&](unsigned i, unsigned end) {
    for (; i < end; ++i) config->pmapType()->intfIs(interfaceOf(i), Name("map" + std::to_string(100 + i)));
  });
}

TEST_F(ResyncCostTest, AMatchRuleTakesNothing) {
  auto const map = config->cmapType()->cmapIs("web")->subconfigIs(kId);
  expectNothingForAnEntry([&](unsigned i, unsigned end) {
    for (; i < end; ++i) {
      PolicyMap::MatchRule rule;
      rule.aclIs(Name("acl" + std::to_string(100 + i)));
      map->matchIs(i, rule);
    }
  });
}

TEST_F(ResyncCostTest, AResultTakesNothing) {
  expectNothingForAnEntry([&](unsigned i, unsigned end) {
    for (; i < end; ++i) status->resultIs({i + 1, 1, 1}, PolicyMap::ApplyState(2));
  });
}

TEST_F(ResyncCostTest, ARefusedInterfaceTakesNothing) {
  expectNothingForAnEntry([&](unsigned i, unsigned end) {
    for (; i < end; ++i)
      status->intfDisallowedIs({interfaceOf(i), PolicyMap::IntfError(1)}, "there is no room for one more");
  });
}

TEST_F(ResyncCostTest, AStatusOfARuleTakesNothing) {
  auto const acl = checkpoint->checkpointAgentStatusIs("agent")
                       ->pmapCkptStatusIs("edge")
                       ->cmapCkptStatusIs("web")
                       ->aclTypeCkptStatusIs(Acl::AclType(1))
                       ->aclIs("acl");
  expectNothingForAnEntry([&](unsigned i, unsigned end) {
    for (; i < end; ++i) acl->ruleStatusIs(Acl::UniqueId(i + 1, 1, 1), {0, 2});
  });
}

// An entity has an adapter on each log, which is made anew on either side.
TEST_F(ResyncCostTest, AChildTakesNoMoreForAllTheOthers) {
  auto const costWith = [&](unsigned from, unsigned to) {
    for (; from < to; ++from) config->cmapType()->cmapIs(Name("map" + std::to_string(from)));
    settle();
    cost(); // What is taken once and kept.
    return cost();
  };
  std::size_t const few = costWith(0, 100);
  std::size_t const some = costWith(100, 200);
  std::size_t const many = costWith(200, 1200);
  std::size_t const growth = 20; // Of the tables that hold the adapters.
  EXPECT_LE(many - some, 10 * (some - few) + growth);
  EXPECT_LE(many - some, 1000 * 7 + growth);
}

} // namespace
} // namespace replication_test
