#include "TwoProcesses.h"

namespace replication_test {
namespace {

using support::treeText;

class TreeTest : public TwoProcesses {
protected:
  TreeTest() { server.roots->offerIs("pbr/config", config); }

  void mount(MountMode mode = MountMode::read) {
    client.peer->mount("pbr/config", mode);
    run([&] { return !client.heard.empty(); });
    ASSERT_EQ("synced pbr/config", client.heard.back());
  }
  Ptr<Pbr::Config> copy() { return client.mounted<Pbr::Config>("pbr/config"); }

  Ptr<Pbr::Config> config = Pbr::configFactory("pbr");
};

TEST_F(TreeTest, AMountedRootIsEqual) {
  config->bgpPbrRedirectIs(true);
  mount();
  ASSERT_TRUE(copy());
  EXPECT_EQ(treeText(*config), treeText(*copy()));
}

TEST_F(TreeTest, AChangeOfAScalarArrives) {
  mount();
  config->bgpPbrRedirectIs(true);
  settle();
  EXPECT_TRUE(copy()->bgpPbrRedirect());
}

TEST_F(TreeTest, WhatCantBeWrittenEndsTheLinkWithItsPlace) {
  mount();
  auto const action = config->pbrActions()->fwdActionIs("web", Kest::UniqueId(1, 2, 3), Pbr::nexthopAction);
  settle();
  EXPECT_EQ(kNever, server.peer->link()->nextDeadline());
  action->nexthopGroupIs(Vyx::Name(std::string(kDefaultMaxLength + 1, 'x')));
  EXPECT_EQ(Instant::min(), server.peer->link()->nextDeadline()) << "the loop would wait for something else";
  loop.turn(std::chrono::seconds(20));
  EXPECT_TRUE(server.peer->hasEnded());
  EXPECT_EQ("pipe: nexthopGroup of pbr.pbrActions.fwdAction[00000001-0002-0003]: message of 1048594 bytes is "
            "longer "
            "than 1048576",
            server.ended);
}

// Only then an entity is found by it without naming a log.
TEST_F(TreeTest, ALogIsReadyForAsLongAsItIsConnected) {
  EXPECT_FALSE(client.peer->link()->in()->inReadyFlag());
  mount();
  EXPECT_TRUE(client.peer->link()->in()->inReadyFlag());
  disconnect();
  EXPECT_FALSE(client.peer->link()->in()->inReadyFlag());
}

TEST_F(TreeTest, AWholeTreeArrives) {
  Kest::UniqueId const id(1, 2, 3);
  auto action = config->pbrActions()->fwdActionIs("web", id, Pbr::nexthopAction);
  action->nexthopIs(Lomu::IpGenAddr("10.0.0.1"), true);
  action->nexthopGroupIs("group");
  mount();
  EXPECT_EQ(treeText(*config), treeText(*copy()));
  config->pbrActions()->dscpActionIs("voice", Kest::UniqueId(4, 5, 6), Pbr::Dscp(46));
  action->nexthopIs(Lomu::IpGenAddr("10.0.0.2"), false);
  action->nexthopDel(Lomu::IpGenAddr("10.0.0.1"));
  settle();
  EXPECT_EQ(treeText(*config), treeText(*copy()));
  config->pbrActions()->fwdActionDel(id);
  settle();
  EXPECT_EQ(treeText(*config), treeText(*copy()));
}

} // namespace
} // namespace replication_test
