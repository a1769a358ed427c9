// Both sides change what is mounted for writing, while a walk of the other one is on its way.

#include "TwoProcesses.h"

#include "Pbr/PbrActionContainerSa.h"
#include "Pbr/PbrFwdActionSa.h"

namespace replication_test {
namespace {

using support::treeText;

constexpr char kConfig[] = "pbr/config";
constexpr int kUnbounded = -1;

Kest::UniqueId id(unsigned number) { return {number, 2, 3}; }
Lomu::IpGenAddr address(unsigned last) { return Lomu::IpGenAddr(("10.0.0." + std::to_string(last)).c_str()); }

class CrossingTest : public TwoProcesses {
protected:
  CrossingTest() {
    server.roots->offerIs(kConfig, config);
    for (unsigned i = 1; i <= 3; ++i) serversActions()->fwdActionIs("first", id(i), Pbr::nexthopAction);
    for (unsigned i = 1; i <= 3; ++i) serversAction(1)->nexthopIs(address(i), true);
    client.peer->mount(kConfig, MountMode::write);
    quiesce();
    client.peer->demuxer()->throttleIs(&CrossingTest::mayGoOn, &clientsMessages);
    server.peer->demuxer()->throttleIs(&CrossingTest::mayGoOn, &serversMessages);
  }

  Ptr<Pbr::Config> clientsConfig() const { return client.mounted<Pbr::Config>(kConfig); }
  Ptr<Pbr::PbrActionContainer> serversActions() const { return config->pbrActions(); }
  Ptr<Pbr::PbrActionContainer> clientsActions() const { return clientsConfig()->pbrActions(); }
  Ptr<Pbr::PbrFwdAction> serversAction(unsigned i) const { return serversActions()->fwdAction(id(i)); }
  Ptr<Pbr::PbrFwdAction> clientsAction(unsigned i) const { return clientsActions()->fwdAction(id(i)); }

  // The first one is removed and made anew.
  static void replace(Ptr<Pbr::PbrActionContainer> const& in, char const* className) {
    in->fwdActionDel(id(1));
    in->fwdActionIs(className, id(1), Pbr::nexthopAction);
  }
  // From now on the changes of that entity go out as walks, or at once again.
  static void walks(Process const& side, Vyx::Entity& entity, bool inWalks = true) {
    auto const adapter = entity.vyxNboAttrLogSa(Ptr<Out const>(side.peer->link()->out()));
    adapter->flagIs(Vyx::StreamAdapter::forceFlowOutFlag, inWalks);
  }
  void clientWalks(Vyx::Entity& entity) { walks(client, entity); }

  void turns(unsigned count) {
    for (unsigned i = 0; i < count; ++i) loop.turn(Duration::zero());
  }
  // The client's walk goes that far; the rest comes with `quiesce`.
  void walkFor(int messages) {
    clientsMessages = messages;
    turns(20);
  }
  // The client reads nothing until `quiesce`.
  void deafen() { client.peer->link()->readingIs(false); }

  static bool isQuiet(Process const& one) {
    return one.peer->hasEnded() ||
           (!one.peer->demuxer()->hasQueued() && one.peer->link()->out()->pendingBytes() == 0 &&
            !one.peer->link()->isReady());
  }
  void quiesce() {
    clientsMessages = serversMessages = kUnbounded;
    client.peer->link()->readingIs(true);
    for (unsigned i = 0; i < 10000; ++i) {
      loop.turn(Duration::zero());
      if (i > 5 && isQuiet(client) && isQuiet(server)) return;
    }
    FAIL() << "no end of it";
  }
  void expectEqual() {
    quiesce();
    EXPECT_EQ("", client.ended + server.ended);
    EXPECT_EQ(0U, client.peer->demuxer()->waitingFlowOuts() + server.peer->demuxer()->waitingFlowOuts());
    EXPECT_EQ(treeText(*config), treeText(*client.mounted<Pbr::Config>(kConfig)));
  }

  Ptr<Pbr::Config> config = Pbr::configFactory("pbr");
  // How many more messages each side's walks may write.
  int clientsMessages = kUnbounded;
  int serversMessages = kUnbounded;

private:
  static bool mayGoOn(void* messages) {
    int& left = *static_cast<int*>(messages);
    return left < 0 || (left > 0 && left-- > 0);
  }
};

// Children.

TEST_F(CrossingTest, AChildThatWasOnItsWayToTheWalkerStays) {
  clientWalks(*clientsActions());
  deafen();
  clientsActions()->fwdActionIs("client", id(10), Pbr::nexthopAction);
  serversActions()->fwdActionIs("server", id(20), Pbr::nexthopAction)->nexthopGroupIs("group");
  turns(20);
  EXPECT_TRUE(serversAction(10));
  EXPECT_TRUE(serversAction(20));
  expectEqual();
  EXPECT_TRUE(clientsAction(20));
}

TEST_F(CrossingTest, AChildThatIsMadeDuringTheWalkStays) {
  clientWalks(*clientsActions());
  clientsActions()->fwdActionIs("client", id(10), Pbr::nexthopAction);
  walkFor(2);
  auto const made = serversActions()->fwdActionIs("server", id(20), Pbr::nexthopAction);
  made->nexthopGroupIs("group");
  made->nexthopIs(address(7), true);
  expectEqual();
  ASSERT_TRUE(clientsAction(20));
  EXPECT_EQ("group", clientsAction(20)->nexthopGroup());
  EXPECT_EQ(made.ptr(), serversAction(20).ptr());
}

TEST_F(CrossingTest, AChildThatIsStillOwedStaysThroughAWalk) {
  walks(server, *serversActions());
  clientWalks(*clientsActions());
  serversMessages = 0;
  serversActions()->fwdActionIs("server", id(20), Pbr::nexthopAction)->nexthopGroupIs("group");
  clientsActions()->fwdActionIs("client", id(10), Pbr::nexthopAction);
  turns(20);
  ASSERT_TRUE(serversAction(10));
  EXPECT_TRUE(serversAction(20));
  expectEqual();
  EXPECT_EQ("group", clientsAction(20)->nexthopGroup());
}

// The removal of the one before is still owed when the new one is announced.
TEST_F(CrossingTest, AChildThatReplacesOneThatWasKnownIsTaken) {
  clientWalks(*clientsActions());
  clientsMessages = 0;
  clientsActions()->fwdActionDel(id(1));
  walks(client, *clientsActions(), false);
  clientsActions()->fwdActionIs("other", id(1), Pbr::dropAction);
  expectEqual();
  ASSERT_TRUE(serversAction(1));
  EXPECT_EQ("other", serversAction(1)->className());
}

TEST_F(CrossingTest, AChildThatBothMakeDuringTheWalkIsOneChild) {
  clientWalks(*clientsActions());
  clientsActions()->fwdActionIs("client", id(10), Pbr::nexthopAction);
  walkFor(0);
  clientsMessages = 1;
  serversActions()->fwdActionIs("server", id(20), Pbr::nexthopAction)->nexthopGroupIs("server");
  clientsActions()->fwdActionIs("client", id(20), Pbr::dropAction)->nexthopGroupIs("client");
  turns(20);
  expectEqual();
  EXPECT_TRUE(clientsAction(20));
}

TEST_F(CrossingTest, AChildThatIsRemovedWhileItIsWalkedIsGone) {
  clientWalks(*clientsActions());
  deafen();
  clientsActions()->fwdActionIs("client", id(10), Pbr::nexthopAction);
  serversActions()->fwdActionDel(id(1));
  turns(20);
  expectEqual();
  EXPECT_FALSE(serversAction(1));
}

TEST_F(CrossingTest, WhatTheWalkerHasRemovedIsRemoved) {
  clientWalks(*clientsActions());
  walkFor(0);
  clientsActions()->fwdActionDel(id(2));
  serversActions()->fwdActionIs("server", id(20), Pbr::nexthopAction);
  expectEqual();
  EXPECT_FALSE(serversAction(2));
  EXPECT_TRUE(serversAction(20));
}

// While its parent is being walked, a child is on hold until the walk has come to it.
TEST_F(CrossingTest, AChangeOfAChildThatIsOnHoldArrives) {
  clientWalks(*clientsActions());
  clientsActions()->fwdActionIs("client", id(10), Pbr::nexthopAction);
  walkFor(1);
  for (unsigned i = 1; i <= 3; ++i) {
    serversAction(i)->nexthopGroupIs("group");
    serversAction(i)->nexthopIs(address(9), true);
  }
  expectEqual();
  EXPECT_EQ("group", clientsAction(3)->nexthopGroup());
}

// Values.

TEST_F(CrossingTest, AValueThatWasOnItsWayToTheWalkerStays) {
  clientWalks(*clientsAction(1));
  deafen();
  clientsAction(1)->nexthopIs(address(10), true);
  serversAction(1)->nexthopIs(address(20), true);
  turns(20);
  expectEqual();
  EXPECT_TRUE(clientsAction(1)->nexthop(address(20)));
}

TEST_F(CrossingTest, AValueThatIsSetDuringTheWalkStays) {
  clientWalks(*clientsAction(1));
  clientsAction(1)->nexthopIs(address(10), true);
  walkFor(2);
  serversAction(1)->nexthopIs(address(20), true);
  serversAction(1)->nexthopIs(address(2), false);
  expectEqual();
  EXPECT_TRUE(clientsAction(1)->nexthop(address(20)));
}

TEST_F(CrossingTest, AReactorMayChangeWhatTheWalkBrings) {
  struct Turner : Pbr::PbrFwdAction::Notifiee {
    void onNexthop(Lomu::IpGenAddr const& key) override {
      if (action->nexthop(key)) action->nexthopIs(key, false);
    }
    Pbr::PbrFwdAction* action = nullptr;
  };
  auto const turner = Vyx::ptrFromNew(new Turner);
  turner->action = serversAction(1).ptr();
  turner->isRegisteredNotifieeIs(true);
  turner->notifierIs(serversAction(1));
  clientWalks(*clientsAction(1));
  clientsAction(1)->nexthopIs(address(10), true);
  expectEqual();
  EXPECT_FALSE(clientsAction(1)->nexthop(address(10)));
  EXPECT_TRUE(clientsAction(1)->nexthopIteratorConst());
}

TEST_F(CrossingTest, TwoWalksOfOneCollectionPassEachOther) {
  clientWalks(*clientsAction(1));
  clientWalks(*clientsActions());
  walks(server, *serversAction(1));
  walks(server, *serversActions());
  serversMessages = 2;
  clientsAction(1)->nexthopIs(address(10), true);
  serversAction(1)->nexthopIs(address(20), true);
  clientsActions()->fwdActionIs("client", id(10), Pbr::nexthopAction);
  serversActions()->fwdActionIs("server", id(20), Pbr::nexthopAction);
  walkFor(2);
  expectEqual();
  EXPECT_TRUE(serversAction(10));
  EXPECT_TRUE(clientsAction(20));
  EXPECT_TRUE(serversAction(1)->nexthop(address(10)));
  EXPECT_TRUE(clientsAction(1)->nexthop(address(20)));
}

// Changes without a walk: what comes to the accepting side last is what both have.

TEST_F(CrossingTest, OfTwoSingleValuesThatCrossBothHaveOne) {
  deafen();
  config->bgpPbrRedirectIs(true);
  config->bgpPbrRedirectIs(false);
  clientsConfig()->bgpPbrRedirectIs(true);
  expectEqual();
  EXPECT_TRUE(config->bgpPbrRedirect());
}

TEST_F(CrossingTest, OfTwoSingleValuesThatCrossOnTheWayToTheServerBothHaveOne) {
  server.peer->link()->readingIs(false);
  clientsConfig()->bgpPbrRedirectIs(true);
  config->bgpPbrRedirectIs(true);
  config->bgpPbrRedirectIs(false);
  turns(20);
  server.peer->link()->readingIs(true);
  expectEqual();
  EXPECT_TRUE(config->bgpPbrRedirect());
}

TEST_F(CrossingTest, OfTwoTextsThatCrossBothHaveOne) {
  deafen();
  serversAction(1)->nexthopGroupIs("server");
  clientsAction(1)->nexthopGroupIs("client");
  expectEqual();
  EXPECT_EQ("client", serversAction(1)->nexthopGroup());
}

TEST_F(CrossingTest, OfTwoReferencesThatCrossBothHaveOne) {
  auto const map = config->pmapTypeIs("Pbr", PolicyMap::mapPbr)->pmapIs("map");
  auto const first = map->subconfigIs(id(1));
  auto const second = map->subconfigIs(id(2));
  quiesce();
  auto const copy = clientsConfig()->pmapType()->pmap("map");
  deafen();
  map->currentSubConfigIs(first);
  copy->currentSubConfigIs(copy->subconfig(id(2)));
  expectEqual();
  EXPECT_EQ(second, map->currentSubConfig());
}

TEST_F(CrossingTest, AReferenceToWhatIsGoneIsNotTaken) {
  auto const map = config->pmapTypeIs("Pbr", PolicyMap::mapPbr)->pmapIs("map");
  map->subconfigIs(id(1));
  quiesce();
  auto const copy = clientsConfig()->pmapType()->pmap("map");
  deafen();
  map->subconfigDel(id(1));
  copy->currentSubConfigIs(copy->subconfig(id(1)));
  expectEqual();
  EXPECT_FALSE(copy->currentSubConfig());
}

TEST_F(CrossingTest, OfTwoValuesOfAMemberThatCrossBothHaveOne) {
  deafen();
  serversAction(1)->nexthopIs(address(9), false);
  clientsAction(1)->nexthopIs(address(9), true);
  expectEqual();
  EXPECT_TRUE(serversAction(1)->nexthop(address(9)));
}

TEST_F(CrossingTest, AMemberThatIsSetThereWhileItIsRemovedHereIsThere) {
  deafen();
  serversAction(1)->nexthopDel(address(2));
  clientsAction(1)->nexthopIs(address(2), false);
  clientsAction(1)->nexthopIs(address(2), true);
  expectEqual();
  EXPECT_TRUE(serversAction(1)->nexthop(address(2)));
}

TEST_F(CrossingTest, AMemberThatIsRemovedThereWhileItIsSetHereIsGone) {
  deafen();
  serversAction(1)->nexthopIs(address(2), false);
  clientsAction(1)->nexthopDel(address(2));
  expectEqual();
  EXPECT_FALSE(serversAction(1)->nexthop(address(2)));
}

TEST_F(CrossingTest, AChangeOfTheServersOwnStaysIfItIsLast) {
  deafen();
  clientsAction(1)->nexthopGroupIs("client");
  turns(20);
  serversAction(1)->nexthopGroupIs("server");
  expectEqual();
  EXPECT_EQ("server", clientsAction(1)->nexthopGroup());
}

TEST_F(CrossingTest, AChangeThatFollowsWhatWasHeardIsntRestated) {
  serversAction(1)->nexthopGroupIs("server");
  quiesce();
  auto const before = server.peer->link()->out()->messages();
  clientsAction(1)->nexthopGroupIs("client");
  expectEqual();
  EXPECT_EQ(before, server.peer->link()->out()->messages());
}

TEST_F(CrossingTest, WhatWasHeardIsToldOnce) {
  serversAction(1)->nexthopGroupIs("server");
  quiesce();
  auto const before = client.peer->link()->out()->messages();
  clientsAction(1)->nexthopGroupIs("first");
  EXPECT_EQ(before + 2, client.peer->link()->out()->messages());
  clientsAction(1)->nexthopGroupIs("second");
  EXPECT_EQ(before + 3, client.peer->link()->out()->messages());
}

// Children that are removed and made anew.

TEST_F(CrossingTest, ARemovalIsAboutTheChildBeforeTheNewOne) {
  deafen();
  serversActions()->fwdActionDel(id(1));
  replace(clientsActions(), "new");
  expectEqual();
  ASSERT_TRUE(serversAction(1));
  EXPECT_EQ("new", serversAction(1)->className());
}

TEST_F(CrossingTest, AChildThatBothReplaceIsThatOfTheServer) {
  deafen();
  replace(serversActions(), "server");
  replace(clientsActions(), "client");
  expectEqual();
  ASSERT_TRUE(clientsAction(1));
  EXPECT_EQ("server", clientsAction(1)->className());
}

TEST_F(CrossingTest, AChildThatIsMadeThereWhileItIsMadeAndRemovedHereStays) {
  deafen();
  serversActions()->fwdActionIs("server", id(20), Pbr::nexthopAction);
  serversActions()->fwdActionDel(id(20));
  clientsActions()->fwdActionIs("client", id(20), Pbr::nexthopAction);
  turns(20);
  EXPECT_TRUE(serversAction(20));
  expectEqual();
  ASSERT_TRUE(clientsAction(20));
  EXPECT_EQ("client", clientsAction(20)->className());
}

TEST_F(CrossingTest, ASingleChildThatBothReplaceIsThatOfTheServer) {
  deafen();
  auto const fresh = [](Ptr<Pbr::Config> const& of, char const* className) {
    of->pbrActionsDel();
    of->pbrActionsIs("Pbr")->fwdActionIs(className, id(1), Pbr::nexthopAction);
  };
  fresh(config, "server");
  fresh(clientsConfig(), "client");
  expectEqual();
  ASSERT_TRUE(clientsAction(1));
  EXPECT_EQ("server", clientsAction(1)->className());
}

TEST_F(CrossingTest, ASingleChildThatIsMadeThereWhileItIsRemovedHereIsThere) {
  deafen();
  config->pbrActionsDel();
  clientsConfig()->pbrActionsDel();
  clientsConfig()->pbrActionsIs("Pbr");
  expectEqual();
  EXPECT_TRUE(config->pbrActions());
}

// The server has no room to announce what it has made.
TEST_F(CrossingTest, AChildThatTheServerHasYetToAnnounceStays) {
  walks(server, *serversActions());
  serversMessages = 0;
  auto const own = serversActions()->fwdActionIs("server", id(20), Pbr::nexthopAction);
  clientsActions()->fwdActionIs("client", id(20), Pbr::nexthopAction);
  turns(20);
  EXPECT_EQ(own, serversAction(20));
  expectEqual();
  EXPECT_EQ("server", clientsAction(20)->className());
}

// Ids that this side gave say nothing of those that the other one will give.
TEST_F(CrossingTest, AWalkOfWhatIsGoneMakesNoLaterChildLate) {
  deafen();
  clientWalks(*clientsActions());
  clientsActions()->fwdActionDel(id(1));
  config->pbrActionsDel();
  config->pbrActionsIs("Pbr");
  turns(20);
  quiesce();
  clientsActions()->fwdActionIs("client", id(10), Pbr::nexthopAction);
  expectEqual();
  EXPECT_TRUE(serversAction(10));
}

} // namespace
} // namespace replication_test
