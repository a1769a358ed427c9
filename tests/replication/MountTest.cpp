#include "Another.h"
#include "Edits.h"

#include "Vyx/NboAttrLog/Exceptions.h"

#include <gmock/gmock.h>

namespace replication_test {
namespace {

using support::treeText;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr char kConfig[] = "pbr/config";
constexpr char kStatus[] = "pbr/status";
Kest::UniqueId const kId(1, 2, 3);

class MountTest : public testing::Test {
protected:
  MountTest() { server.roots->offerIs(kConfig, config); }

  // Until nothing is on its way between anyone.
  void quiesce() {
    for (unsigned i = 0; i < 100000; ++i) {
      loop.turn(Duration::zero());
      if (i > 5 && one.isQuiet() && two.isQuiet()) return;
    }
    FAIL() << "no end of it";
  }
  void mount(Another& who, MountMode mode, char const* path = kConfig) {
    who.process.peer->mount(path, mode);
    quiesce();
  }
  static Ptr<Pbr::Config> copy(Another const& who) { return who.process.mounted<Pbr::Config>(kConfig); }
  void expectAllEqual() {
    quiesce();
    EXPECT_EQ("", one.process.ended + two.process.ended);
    EXPECT_EQ(treeText(*config), treeText(*copy(one)));
    EXPECT_EQ(treeText(*config), treeText(*copy(two)));
  }

  Loop loop;
  Process server{"server"};
  Ptr<Pbr::Config> config = Pbr::configFactory("pbr");
  Another one{loop, server, "one"};
  Another two{loop, server, "two"};
};

TEST_F(MountTest, AWritersChangeReachesTheServerAndOthers) {
  mount(one, MountMode::write);
  mount(two, MountMode::read);
  copy(one)->bgpPbrRedirectIs(true);
  copy(one)->pbrActions()->fwdActionIs("web", kId, Pbr::nexthopAction)->nexthopGroupIs("group");
  quiesce();
  EXPECT_TRUE(config->bgpPbrRedirect());
  EXPECT_EQ("group", copy(two)->pbrActions()->fwdAction(kId)->nexthopGroup());
  expectAllEqual();
}

TEST_F(MountTest, AServersChangeReachesAWriterOnce) {
  mount(one, MountMode::write);
  auto const before = one.process.peer->link()->bytesSent();
  config->bgpPbrRedirectIs(true);
  quiesce();
  EXPECT_TRUE(copy(one)->bgpPbrRedirect());
  EXPECT_EQ(before, one.process.peer->link()->bytesSent()) << "what came was sent back";
}

TEST_F(MountTest, RandomChangesOfAWriterReachAll) {
  Random random;
  mount(one, MountMode::write);
  mount(two, MountMode::read);
  Trees trees{copy(one), Pbr::statusFactory("pbr"), Pbr::checkpointStatusFactory("pbr")};
  Edits edits(random, trees);
  for (unsigned step = 0; step < 100; ++step) {
    SCOPED_TRACE(step);
    edits.many(random.below(30));
    expectAllEqual();
    if (HasFailure()) return;
  }
}

TEST_F(MountTest, TwoWritersOfDifferentPartsEndEqual) {
  mount(one, MountMode::write);
  mount(two, MountMode::write);
  for (unsigned i = 0; i < 50; ++i) {
    copy(one)->cmapType()->cmapIs(Name("one" + std::to_string(i)))->subconfigIs(kId);
    copy(two)->cmapType()->cmapIs(Name("two" + std::to_string(i)))->subconfigIs(kId);
    config->cmapType()->cmapIs(Name("server" + std::to_string(i)));
    if (i % 7 == 0) loop.turn(Duration::zero());
  }
  expectAllEqual();
  EXPECT_EQ(150U, config->cmapType()->cmaps());
}

TEST_F(MountTest, TheSameChildMadeByServerAndWriterAtOnceIsTheServers) {
  mount(one, MountMode::write);
  mount(two, MountMode::read);
  config->pbrActions()->fwdActionIs("web", kId, Pbr::nexthopAction)->nexthopGroupIs("server");
  copy(one)->pbrActions()->fwdActionIs("web", kId, Pbr::nexthopAction)->nexthopGroupIs("one");
  expectAllEqual();
  EXPECT_EQ("server", config->pbrActions()->fwdAction(kId)->nexthopGroup());
  config->pbrActions()->fwdAction(kId)->recursiveIs(true);
  expectAllEqual();
  copy(one)->pbrActions()->fwdAction(kId)->nexthopGroupIs("later");
  expectAllEqual();
  EXPECT_EQ("later", config->pbrActions()->fwdAction(kId)->nexthopGroup());
}

TEST_F(MountTest, ChildrenOfOneKeyAndOtherValuesMadeAtOnceEndEqual) {
  mount(one, MountMode::write);
  mount(two, MountMode::write);
  config->pbrActions()->fwdActionIs("a", kId, Pbr::dropAction);
  copy(one)->pbrActions()->fwdActionIs("b", kId, Pbr::nexthopAction);
  expectAllEqual();
  EXPECT_EQ("a", config->pbrActions()->fwdAction(kId)->className());
}

TEST_F(MountTest, TwoWritersThatMakeOneChildAtOnceEndEqual) {
  mount(one, MountMode::write);
  mount(two, MountMode::write);
  copy(one)->pbrActions()->fwdActionIs("web", kId, Pbr::nexthopAction)->nexthopGroupIs("one");
  copy(two)->pbrActions()->fwdActionIs("web", kId, Pbr::nexthopAction)->nexthopGroupIs("two");
  expectAllEqual();
  copy(two)->pbrActions()->fwdAction(kId)->recursiveIs(true);
  expectAllEqual();
  EXPECT_TRUE(copy(one)->pbrActions()->fwdAction(kId)->recursive());
}

TEST_F(MountTest, ASingleChildMadeByBothAtOnceEndsEqual) {
  config->pmapTypeDel();
  mount(one, MountMode::write);
  mount(two, MountMode::read);
  config->pmapTypeIs("Pbr", PolicyMap::mapPbr)->pmapIs("server");
  copy(one)->pmapTypeIs("Pbr", PolicyMap::mapPbr)->pmapIs("one");
  expectAllEqual();
  copy(one)->pmapType()->pmapIs("later");
  expectAllEqual();
  EXPECT_TRUE(config->pmapType()->pmap("later"));
}

TEST_F(MountTest, RootsOfOneNameAreEachWhole) {
  server.roots->offerIs(kStatus, Pbr::statusFactory(config->name()));
  mount(one, MountMode::read);
  mount(one, MountMode::read, kStatus);
  EXPECT_THAT(one.process.heard, ElementsAre("synced pbr/config", "synced pbr/status"));
  EXPECT_EQ(Vyx::Dir::complete, one.process.roots->dir()->find(kStatus)->state());
}

// Refusals.

TEST_F(MountTest, AReadersOwnChangeIsRefused) {
  mount(one, MountMode::read);
  try {
    copy(one)->bgpPbrRedirectIs(true);
    FAIL() << "it was taken";
  } catch (Vyx::ReadOnlyException const& error) {
    EXPECT_THAT(error.what(), HasSubstr("pbr"));
    EXPECT_THAT(error.what(), HasSubstr("bgpPbrRedirect"));
  }
  EXPECT_THROW(copy(one)->pbrActions()->fwdActionIs("web", kId, Pbr::dropAction), Vyx::ReadOnlyException);
  quiesce();
  EXPECT_FALSE(config->bgpPbrRedirect());
  EXPECT_EQ("", one.process.ended);
}

TEST_F(MountTest, WhatIsNotThereIsRefusedWithWords) {
  mount(one, MountMode::read, "pbr/nothing");
  EXPECT_THAT(one.process.heard,
              ElementsAre("refused pbr/nothing: there is no root \"pbr/nothing\" to read"));
  mount(one, MountMode::read);
  EXPECT_EQ("", one.process.ended);
  EXPECT_TRUE(copy(one));
}

TEST_F(MountTest, WhoMayNotWriteIsTold) {
  Process strict{"strict", [](Link const&, Name const&, MountMode mode) {
                   return mode == MountMode::write ? std::string("only the owner may write") : std::string();
                 }};
  strict.roots->offerIs(kConfig, config);
  Another reader(loop, strict, "reader");
  reader.process.peer->mount(kConfig, MountMode::write);
  quiesce();
  EXPECT_THAT(reader.process.heard, ElementsAre("refused pbr/config: only the owner may write"));
  EXPECT_FALSE(copy(reader));
}

TEST_F(MountTest, AnUnwantedRootIsRefusedAndNothingElseHappens) {
  one.process.peer->publish(kStatus, Pbr::statusFactory("pbr"));
  quiesce();
  EXPECT_THAT(one.process.heard,
              ElementsAre("refused pbr/status: there is no root \"pbr/status\" to publish"));
  mount(one, MountMode::read);
  EXPECT_TRUE(copy(one));
}

// Publishing.

class PublishTest : public MountTest {
protected:
  PublishTest() { server.roots->acceptIs(kStatus, Pbr::Status::_fwkType()); }

  void publish(Ptr<Pbr::Status> const& status) {
    one.process.peer->publish(kStatus, status);
    quiesce();
    two.serving.peer->rootCame(kStatus);
    quiesce();
  }
  Ptr<Pbr::Status> seen() const { return two.process.mounted<Pbr::Status>(kStatus); }
};

TEST_F(PublishTest, ARootReachesWhoWaitsForIt) {
  mount(two, MountMode::read, kStatus);
  EXPECT_FALSE(seen());
  auto const status = Pbr::statusFactory("pbr");
  status->statusIs("edge")->messageIs("all is well");
  publish(status);
  ASSERT_TRUE(seen());
  EXPECT_EQ(treeText(*status), treeText(*seen()));
  status->pbrClassMapStatusIs("web", kId)->actionTypeIs(Pbr::dropAction);
  quiesce();
  EXPECT_EQ(treeText(*status), treeText(*seen()));
}

TEST_F(PublishTest, TheServerCantChangeWhatAPublisherBrings) {
  publish(Pbr::statusFactory("pbr"));
  EXPECT_THROW(server.mounted<Pbr::Status>(kStatus)->initializedIs(true), Vyx::ReadOnlyException);
}

TEST_F(PublishTest, ARootOfOtherValuesReplacesTheOldOneForItsReaders) {
  publish(Pbr::statusFactory("pbr"));
  mount(two, MountMode::read, kStatus);
  auto const before = seen();
  auto const fresh = Pbr::statusFactory("other");
  publish(fresh);
  ASSERT_NE(before.ptr(), seen().ptr());
  fresh->initializedIs(true);
  quiesce();
  EXPECT_TRUE(seen()->initialized());
  EXPECT_EQ("", one.process.ended + two.process.ended);
}

// The connection that it had before is found dead only later.
TEST_F(PublishTest, WhatAReturnedPublisherBringsIsNotLostWithItsOldConnection) {
  auto const state = [&] { return server.roots->dir()->find(kStatus)->state(); };
  publish(Pbr::statusFactory("pbr"));
  Another again(loop, server, "again");
  auto const status = Pbr::statusFactory("pbr");
  status->countersPerRuleIs(true);
  again.process.peer->publish(kStatus, status);
  quiesce();
  EXPECT_TRUE(server.mounted<Pbr::Status>(kStatus)->countersPerRule());
  one.process.peer->end("enough");
  quiesce();
  EXPECT_EQ(Vyx::Dir::complete, state());
  status->initializedIs(true);
  quiesce();
  EXPECT_TRUE(server.mounted<Pbr::Status>(kStatus)->initialized());
  again.process.peer->end("enough");
  quiesce();
  EXPECT_EQ(Vyx::Dir::lost, state());
}

TEST_F(PublishTest, ATreeOutlivesItsPublisher) {
  auto const status = Pbr::statusFactory("pbr");
  status->initializedIs(true);
  publish(status);
  one.process.peer->end("enough");
  quiesce();
  mount(two, MountMode::read, kStatus);
  EXPECT_TRUE(seen()->initialized());
}

} // namespace
} // namespace replication_test
