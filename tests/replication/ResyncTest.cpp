#include "Ears.h"
#include "TwoProcesses.h"

#include "Vyx/NboAttrLog/Exceptions.h"
#include "support/Invariants.h"

#include <malloc.h>

namespace replication_test {
namespace {

using support::treeText;

constexpr char kConfig[] = "pbr/config";
constexpr char kStatus[] = "pbr/status";
constexpr char kCheckpoint[] = "pbr/checkpoint";
Kest::UniqueId const kId(1, 2, 3);
Kest::UniqueId const kOther(4, 5, 6);
Lomu::IpGenAddr const kAddress("10.0.0.1");

class ResyncTest : public TwoProcesses {
protected:
  ResyncTest() {
    server.roots->offerIs(kConfig, config);
    server.roots->offerIs(kStatus, status);
  }

  void mount(char const* path, MountMode mode = MountMode::read) { mount(client, path, mode); }
  void mount(Process& reader, char const* path, MountMode mode) {
    std::string const synced = "synced " + std::string(path);
    reader.heard.clear();
    reader.peer->mount(path, mode);
    run([&] { return !reader.heard.empty(); });
    ASSERT_EQ(synced, reader.heard.back());
  }
  void reconnect(char const* path, MountMode mode = MountMode::read) {
    disconnect();
    connect();
    mount(path, mode);
    settle();
  }
  Ptr<Pbr::Config> copy() const { return client.mounted<Pbr::Config>(kConfig); }
  Ptr<Pbr::Status> statusCopy() const { return client.mounted<Pbr::Status>(kStatus); }

  // A little of everything.
  void fill() {
    auto const action = config->pbrActions()->fwdActionIs("web", kId, Pbr::nexthopAction);
    action->nexthopIs(kAddress, true);
    action->nexthopGroupIs("group");
    auto const map = config->cmapTypeIs("Pbr")->cmapIs("web");
    map->currentSubConfigIs(map->subconfigIs(kId));
    auto const policy = config->pmapTypeIs("Pbr", PolicyMap::mapPbr)->pmapIs("edge");
    policy->currentSubConfigIs(policy->subconfigIs(kId));
    policy->subconfig(kId)->classActionIs("web")->policyActionIs(action);
  }

  Ptr<Pbr::Config> config = Pbr::configFactory("pbr");
  Ptr<Pbr::Status> status = Pbr::statusFactory("pbr");
};

TEST_F(ResyncTest, ATreeOutlivesItsConnection) {
  fill();
  mount(kConfig);
  auto const before = copy();
  std::string const text = treeText(*before);
  disconnect();
  EXPECT_EQ(before.ptr(), copy().ptr());
  EXPECT_EQ(text, treeText(*copy()));
  EXPECT_EQ(Vyx::Dir::lost, client.roots->dir()->find(kConfig)->state());
}

TEST_F(ResyncTest, EntitiesStayTheSame) {
  fill();
  mount(kConfig);
  auto const root = copy();
  auto const action = root->pbrActions()->fwdAction(kId);
  auto const map = root->cmapType()->cmap("web");
  reconnect(kConfig);
  EXPECT_EQ(root.ptr(), copy().ptr());
  EXPECT_EQ(action.ptr(), copy()->pbrActions()->fwdAction(kId).ptr());
  EXPECT_EQ(map.ptr(), copy()->cmapType()->cmap("web").ptr());
  EXPECT_EQ(Vyx::Dir::complete, client.roots->dir()->find(kConfig)->state());
}

TEST_F(ResyncTest, AnEqualTreeTellsNothing) {
  fill();
  mount(kConfig);
  Ears ears(*copy());
  reconnect(kConfig);
  EXPECT_EQ(0U, ears.take());
}

TEST_F(ResyncTest, OnlyDifferencesAreHeard) {
  fill();
  config->pbrActions()->dscpActionIs("voice", kOther, Pbr::Dscp(46));
  mount(kConfig);
  Ears ears(*copy());
  disconnect();
  config->bgpPbrRedirectIs(true);
  config->pbrActions()->fwdAction(kId)->nexthopDel(kAddress);
  config->pbrActions()->dscpActionDel(kOther);
  config->cmapType()->cmapIs("mail");
  connect();
  mount(kConfig);
  settle();
  EXPECT_EQ(4U, ears.take());
  EXPECT_EQ(treeText(*config), treeText(*copy()));
}

TEST_F(ResyncTest, AChildOfOtherValuesIsMadeAnew) {
  fill();
  mount(kConfig);
  auto const before = copy()->pbrActions()->fwdAction(kId);
  disconnect();
  config->pbrActions()->fwdActionDel(kId);
  config->pbrActions()->fwdActionIs("web", kId, Pbr::dropAction);
  connect();
  mount(kConfig);
  settle();
  EXPECT_NE(before.ptr(), copy()->pbrActions()->fwdAction(kId).ptr());
  EXPECT_EQ(Pbr::dropAction, copy()->pbrActions()->fwdAction(kId)->fwdActionType());
}

TEST_F(ResyncTest, ARootOfOtherValuesTakesThePlaceOfTheOldOne) {
  mount(kConfig);
  auto const before = copy();
  disconnect();
  auto const fresh = Pbr::configFactory("other");
  server.roots->offerIs(kConfig, fresh);
  connect();
  mount(kConfig);
  settle();
  EXPECT_NE(before.ptr(), copy().ptr());
  EXPECT_EQ("other", copy()->name());
  fresh->bgpPbrRedirectIs(true);
  settle();
  EXPECT_TRUE(copy()->bgpPbrRedirect());
}

// Peers that are let go without a word.

TEST_F(ResyncTest, AReaderThatIsLetGoEndsItsConnection) {
  fill();
  mount(kConfig);
  auto const before = copy();
  client.peer = nullptr;
  run([&] { return server.peer->hasEnded(); });
  EXPECT_EQ(0U, server.peer->demuxer()->reactors().count());
  EXPECT_EQ(Vyx::Dir::lost, client.roots->dir()->find(kConfig)->state());
  connect();
  mount(kConfig);
  EXPECT_EQ(before.ptr(), copy().ptr());
}

TEST_F(ResyncTest, AWriterMayBeLetGoWhileItOwes) {
  LinkOptions small;
  small.outCapacity = 300;
  disconnect();
  connect(small, 64);
  fill();
  mount(kConfig);
  client.peer->link()->readingIs(false);
  for (unsigned i = 0; i < 100; ++i) config->cmapType()->cmapIs(Name(std::to_string(i)));
  ASSERT_TRUE(server.peer->demuxer()->hasQueued());
  server.peer = nullptr;
  config->cmapType()->cmapIs("later");
  client.peer->link()->readingIs(true);
  run([&] { return client.peer->hasEnded(); });
  connect();
  mount(kConfig);
  settle();
  EXPECT_EQ(treeText(*config), treeText(*copy()));
}

// References.

TEST_F(ResyncTest, AReferenceLeadsToTheReadersOwnEntity) {
  fill();
  mount(kConfig);
  auto const action = copy()->pbrActions()->fwdAction(kId);
  auto const policy = copy()->pmapType()->pmap("edge");
  EXPECT_EQ(action.ptr(),
            policy->subconfig(kId)->classAction("web")->policyAction(PolicyMap::actionPbrForward).ptr());
  EXPECT_EQ(policy->subconfig(kId).ptr(), policy->currentSubConfig().ptr());
}

// Actions, and the class actions that refer to them, are made while the reader takes nothing.
TEST_F(ResyncTest, ReferencesFindTheirEntitiesWhereThereIsLittleRoom) {
  LinkOptions small;
  small.outCapacity = 300;
  disconnect();
  connect(small, 64);
  auto const policy = config->pmapTypeIs("Pbr", PolicyMap::mapPbr)->pmapIs("edge")->subconfigIs(kId);
  mount(kConfig);
  client.peer->link()->readingIs(false);
  std::vector<Ptr<Pbr::PbrFwdAction>> actions;
  for (unsigned i = 0; i < 50; ++i) {
    std::string const name = "class" + std::to_string(i);
    actions.push_back(config->pbrActions()->fwdActionIs(Name(name), {i, 1, 1}, Pbr::nexthopAction));
    policy->classActionIs(Name(name))->policyActionIs(actions.back());
  }
  client.peer->link()->readingIs(true);
  settle();
  EXPECT_EQ(treeText(*config->pbrActions()), treeText(*copy()->pbrActions()));
  auto const there = copy()->pmapType()->pmap("edge")->subconfig(kId);
  ASSERT_EQ(50U, there->classActions());
  for (unsigned i = 0; i < 50; ++i)
    EXPECT_EQ(copy()->pbrActions()->fwdAction({i, 1, 1}).ptr(),
              there->classAction(Name("class" + std::to_string(i)))
                  ->policyAction(PolicyMap::actionPbrForward)
                  .ptr());
}

// Entities without a parent.

class OrphanTest : public ResyncTest {
protected:
  OrphanTest() {
    for (unsigned i = 0; i < 3; ++i) {
      Pbr::NexthopSet set(i, L3::VrfName("default"));
      set.nexthopIs(kAddress, true);
      shared.push_back(Pbr::nexthopIndexAndL2AdjKeyFactory(set));
      shared.back()->l2AdjKeyIs(i);
    }
    for (unsigned i = 0; i < 6; ++i)
      status->pbrClassMapStatusIs("map", {i, 1, 1})->nexthopIndexAndL2AdjKeyIs(shared[i / 2]);
  }
  Vyx::Ptr<Pbr::NexthopIndexAndL2AdjKey const> at(unsigned i) const {
    return statusCopy()->pbrClassMapStatus({i, 1, 1})->nexthopIndexAndL2AdjKey();
  }

  std::vector<Ptr<Pbr::NexthopIndexAndL2AdjKey>> shared;
};

TEST_F(OrphanTest, OneThatSeveralReferToComesOnce) {
  mount(kStatus);
  for (unsigned i = 0; i < 6; ++i) {
    EXPECT_EQ(at(i / 2 * 2).ptr(), at(i).ptr());
    EXPECT_EQ(treeText(*shared[i / 2]), treeText(*at(i)));
  }
  EXPECT_NE(at(0).ptr(), at(2).ptr());
}

TEST_F(OrphanTest, ItsChangesArrive) {
  mount(kStatus);
  shared[1]->l2AdjKeyIs(4711);
  shared[1]->viasUsedIs(kAddress, true);
  settle();
  EXPECT_EQ(4711U, at(2)->l2AdjKey());
  EXPECT_TRUE(at(3)->viasUsed(kAddress));
}

TEST_F(OrphanTest, OneThatEndsGoesFromTheLog) {
  mount(kStatus);
  auto const known = client.peer->demuxer()->reactors().count();
  for (unsigned i = 0; i < 2; ++i) status->pbrClassMapStatus({i, 1, 1})->nexthopIndexAndL2AdjKeyIs(nullptr);
  shared[0] = nullptr;
  settle();
  EXPECT_FALSE(at(0));
  EXPECT_EQ(known - 1, client.peer->demuxer()->reactors().count());
}

TEST_F(OrphanTest, AfterAReconnectItIsTheSameAgain) {
  mount(kStatus);
  std::vector<Pbr::NexthopIndexAndL2AdjKey const*> before;
  for (unsigned i = 0; i < 6; ++i) before.push_back(at(i).ptr());
  Ears ears(*statusCopy());
  reconnect(kStatus);
  for (unsigned i = 0; i < 6; ++i) EXPECT_EQ(before[i], at(i).ptr());
  EXPECT_EQ(0U, ears.take());
}

// A slow reader.

class SlowReaderTest : public ResyncTest {
protected:
  static constexpr unsigned kAttributes = 1000;

  SlowReaderTest() {
    server.roots->offerIs(kCheckpoint, checkpoint);
    auto const map = checkpoint->checkpointAgentStatusIs("agent")->pmapCkptStatusIs("edge");
    for (unsigned i = 0; i < kAttributes; ++i)
      counters.push_back(map->cmapCkptStatusIs(Name("class" + std::to_string(i))).ptr());
  }
  // Turns the loop each thousand changes, as a busy process does.
  void change(unsigned times) {
    for (unsigned i = 0; i < times; ++i) {
      counters[i % kAttributes]->pktMatchIs(++value);
      if (i % 1000 == 999) loop.turn(Duration::zero());
    }
  }
  static std::size_t heap() { return mallinfo2().uordblks; }

  Ptr<Pbr::CheckpointStatus> checkpoint = Pbr::checkpointStatusFactory("pbr");
  std::vector<Pbr::ClassMapCheckpointStatus*> counters;
  unsigned long long value = 0;
};

TEST_F(SlowReaderTest, CostsTheWriterBoundedMemory) {
  mount(kCheckpoint);
  client.peer->link()->readingIs(false);
  change(40000); // What there is room for is full now, and every attribute is owed.
  std::size_t const before = heap();
  change(100000);
  EXPECT_LT(heap(), before + 100000);
  EXPECT_LE(server.peer->link()->out()->bufferBytes(), 1024U * 1024);
  client.peer->link()->readingIs(true);
  settle();
  EXPECT_EQ(treeText(*checkpoint), treeText(*client.mounted<Pbr::CheckpointStatus>(kCheckpoint)));
}

TEST_F(SlowReaderTest, DoesNotHoldUpOthers) {
  mount(kCheckpoint);
  Process other{"other"};
  PipePair ends = pipePair();
  Process second{"second end"};
  auto const serving =
      Vyx::ptrFromNew(new Peer(std::move(ends.first), Demuxer::accepting, server.roots, &second));
  other.peer = Vyx::ptrFromNew(new Peer(std::move(ends.second), Demuxer::connecting, other.roots, &other));
  serving->loopIs(loop);
  other.peer->loopIs(loop);
  mount(other, kCheckpoint, MountMode::read);
  client.peer->link()->readingIs(false);
  for (unsigned round = 0; round < 50; ++round) {
    change(kAttributes);
    loop.turn(Duration::zero());
    loop.turn(Duration::zero());
    auto const there = other.mounted<Pbr::CheckpointStatus>(kCheckpoint);
    ASSERT_EQ(treeText(*checkpoint), treeText(*there)) << round;
  }
  client.peer->link()->readingIs(true);
  settle();
  EXPECT_EQ(treeText(*checkpoint), treeText(*client.mounted<Pbr::CheckpointStatus>(kCheckpoint)));
  serving->watcherDel();
}

} // namespace
} // namespace replication_test
