#include "Agent.h"
#include "Program.h"
#include "Trees.h"

#include "pbrctl/Server.h"

#include <csignal>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <sys/stat.h>

namespace Pbrctl {
namespace {

using namespace Vyx::NboAttrLog;

constexpr char const* kBase =
    "class-map C\nmatch ip any any dscp 1\npolicy-map P\nclass C\nset nexthop 10.0.0.1\n";
constexpr char const* kEdited =
    "class-map C\nmatch ip any any dscp 1\npolicy-map P\nclass C\nset nexthop 10.0.0.2\n";

// A server, and files to load.
class ServerTest : public testing::Test {
protected:
  ServerTest() { start(); }

  void start() {
    server_ = std::make_unique<Program>(
        std::vector<std::string>{"serve", "--socket", socket(), "--config", base_.path()});
    server_->waitFor("serving pbr/config at " + socket() + "\n");
  }
  std::string socket() const { return place_.path() + ".sock"; }
  Ran load(TestFile const& file) { return run({"load", file.path(), "--socket", socket()}); }
  std::vector<std::string> watch(std::vector<std::string> more) const {
    more.insert(more.begin(), {"watch", "config", "--socket", socket()});
    return more;
  }
  Remote remote() const { return {UnixAddress{socket()}, std::chrono::seconds(20)}; }

  TestFile place_{"server", ""};
  TestFile base_{"base.conf", kBase};
  TestFile edited_{"edited.conf", kEdited};
  std::unique_ptr<Program> server_;
};

std::vector<nlohmann::json> eventsOf(std::string const& lines) {
  std::vector<nlohmann::json> events;
  std::istringstream in(lines);
  for (std::string line; std::getline(in, line);) events.push_back(nlohmann::json::parse(line));
  return events;
}

// How many lines begin like that.
std::size_t countOf(std::string const& text, std::string const& part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
  return count;
}

TEST_F(ServerTest, ShowsWhatItHolds) {
  Ran const ran = run({"show", "config", "--socket", socket()});
  EXPECT_EQ(0, ran.exitCode) << ran.err;
  EXPECT_EQ(run({"show", base_.path()}).out, ran.out);
  EXPECT_EQ(run({"show", base_.path(), "--json"}).out,
            run({"show", "config", "--socket", socket(), "--json"}).out);
}

TEST_F(ServerTest, ALoadIsAppliedWhenItReturns) {
  Ran const ran = load(edited_);
  EXPECT_EQ(0, ran.exitCode) << ran.err;
  EXPECT_EQ(run({"show", edited_.path()}).out, run({"show", "config", "--socket", socket()}).out);
  EXPECT_NE(std::string::npos, ran.out.find(".nexthop[10.0.0.2] = true   (class C)\n")) << ran.out;
  EXPECT_NE(std::string::npos, ran.out.find("changed: true\n"));
  EXPECT_EQ("changed: false\n", load(edited_).out);
}

TEST_F(ServerTest, ALoadTellsInJson) {
  Ran const ran = run({"load", edited_.path(), "--socket", socket(), "--json"});
  auto const json = nlohmann::json::parse(ran.out);
  EXPECT_EQ(1, json["version"]);
  EXPECT_EQ(true, json["changed"]);
  EXPECT_EQ(2u, json["notifications"].size());
}

TEST_F(ServerTest, AWrongFileChangesNothing) {
  TestFile const bad("bad.conf", "policy-map P\nclass GONE\n");
  Ran const ran = load(bad);
  EXPECT_EQ(1, ran.exitCode);
  EXPECT_EQ("", ran.out);
  EXPECT_EQ(run({"show", base_.path()}).out, run({"show", "config", "--socket", socket()}).out);
}

TEST_F(ServerTest, AWatcherHearsALoad) {
  Program watcher(watch({"--json"}));
  watcher.waitFor("\"type\":\"end\"");
  load(edited_);
  auto const events = eventsOf(watcher.waitFor("\"key\":\"10.0.0.2\""));
  EXPECT_EQ("begin", events.front()["type"]);
  EXPECT_EQ("pbr/config", events.front()["path"]);
  for (std::size_t i = 0; i < events.size(); ++i) EXPECT_EQ(i + 1, events[i]["seq"]);
  auto const& update = events.back();
  EXPECT_EQ("update", update["type"]);
  EXPECT_EQ("nexthop", update["attribute"]);
  EXPECT_EQ("true", update["value"]);
  EXPECT_EQ(0u, std::string(update["path"]).find("pbr/config.pbrActions.fwdAction["));
  auto const& gone = events[events.size() - 2];
  EXPECT_EQ("delete", gone["type"]);
  EXPECT_EQ("10.0.0.1", gone["key"]);
  EXPECT_EQ(0, watcher.end(SIGTERM));
}

TEST_F(ServerTest, AWatcherConnectsAgainAndTellsOnlyWhatDiffers) {
  Program watcher(watch({}));
  watcher.waitFor("end     pbr/config\n");
  server_->end(SIGKILL);
  watcher.waitFor("lost    pbr/config\n");
  start();
  std::string const text = watcher.waitFor("lost    pbr/config\nbegin   pbr/config\nend     pbr/config\n");
  EXPECT_EQ(2u, countOf(text, "begin"));
  load(edited_);
  watcher.waitFor(".nexthop[10.0.0.2] = true\n");
  EXPECT_EQ(0, watcher.end(SIGINT));
}

TEST_F(ServerTest, WhatChangedMeanwhileIsTold) {
  Program watcher(watch({}));
  watcher.waitFor("end     pbr/config\n");
  server_->end(SIGKILL);
  watcher.waitFor("lost    pbr/config\n");
  Program other({"serve", "--socket", socket(), "--config", edited_.path()});
  std::string text = watcher.waitFor("lost    pbr/config\nbegin   pbr/config\n");
  text = watcher.waitFor(".nexthop[10.0.0.1]\nend     pbr/config\n");
  text = text.substr(text.find("lost"));
  EXPECT_NE(std::string::npos, text.find(".nexthop[10.0.0.2] = true\n"));
  EXPECT_EQ(1u, countOf(text, "update")) << text;
  EXPECT_EQ(1u, countOf(text, "delete")) << text;
}

TEST_F(ServerTest, AWatchMayHaveAnEnd) {
  Ran const ran = runProgram(watch({"--for", "0.3"}));
  EXPECT_EQ(0, ran.exitCode);
  EXPECT_NE(std::string::npos, ran.out.find("end     pbr/config\n"));
}

TEST_F(ServerTest, EndsInGoodOrder) {
  struct stat found {};
  ASSERT_EQ(0, ::stat(socket().c_str(), &found));
  EXPECT_EQ(0660u, found.st_mode & 0777u);
  EXPECT_EQ(0, server_->end(SIGTERM));
  EXPECT_FALSE(std::filesystem::exists(socket()));
  Ran const ran = load(edited_);
  EXPECT_EQ(3, ran.exitCode);
  EXPECT_EQ("pbrctl: error: can't reach " + socket() + ": No such file or directory\n", ran.err);
  EXPECT_EQ(3, run({"show", "config", "--socket", socket()}).exitCode);
  EXPECT_EQ(3, runProgram(watch({})).exitCode);
}

TEST_F(ServerTest, AServerThatDoesNotAnswerIsNotWaitedForLonger) {
  server_->signal(SIGSTOP);
  Ran const ran = run({"show", "config", "--socket", socket(), "--timeout", "0.2"});
  server_->signal(SIGCONT);
  EXPECT_EQ(3, ran.exitCode);
  EXPECT_EQ("pbrctl: error: no answer from " + socket() + " within the time limit\n", ran.err);
}

TEST_F(ServerTest, AStatusThatNobodyHasBroughtIsSaidSo) {
  Ran const ran = run({"show", "status", "--socket", socket(), "--timeout", "0.2"});
  EXPECT_EQ(1, ran.exitCode);
  EXPECT_EQ("pbrctl: error: nobody has brought pbr/status yet\n", ran.err);
}

TEST_F(ServerTest, WrongUseIsToldApart) {
  EXPECT_EQ(2, run({"show", "colour", "--socket", socket()}).exitCode);
  EXPECT_EQ(2, run({"watch", "colour", "--socket", socket()}).exitCode);
  EXPECT_EQ(2, run({"load", base_.path()}).exitCode);
  EXPECT_EQ(2, run({"show", "config", "--socket", "tcp:nowhere"}).exitCode);
}

TEST_F(ServerTest, AStatusThatAnAgentBringsReachesTheWatcher) {
  Program watcher({"watch", "status", "--socket", socket()});
  auto const status = Pbr::statusFactory("pbr");
  auto const classMap = status->pbrClassMapStatusIs("VOICE", Kest::UniqueId(1, 2, 3));
  Pbr::NexthopSet set;
  set.nexthopIs(Lomu::IpGenAddr("10.0.0.1"), true);
  auto const nexthops = Pbr::nexthopIndexAndL2AdjKeyFactory(set);
  nexthops->l2AdjKeyIs(7);
  classMap->nexthopIndexAndL2AdjKeyIs(nexthops);
  Agent agent(remote(), "pbr/status", status);
  EXPECT_TRUE(agent.settle());
  watcher.waitFor("end     pbr/status\n");
  nexthops->l2AdjKeyIs(8);
  classMap->actionTypeIs(Pbr::nexthopAction);
  EXPECT_TRUE(agent.settle());
  std::string const text = watcher.waitFor(".actionType = nexthopAction\n");
  std::string const path = "pbr/status.pbrClassMapStatus[00000001-0002-0003]";
  EXPECT_NE(std::string::npos, text.find("update  " + path + "\n")) << text;
  EXPECT_NE(std::string::npos, text.find(path + ".nexthopIndexAndL2AdjKey = 10.0.0.1\n")) << text;
  EXPECT_NE(std::string::npos, text.find(path + ".nexthopIndexAndL2AdjKey.l2AdjKey = 8\n")) << text;
  Ran const ran = run({"show", "status", "--socket", socket(), "--json"});
  auto const json = nlohmann::json::parse(ran.out);
  EXPECT_EQ(1, json["tree"]["pbrClassMapStatus"]["00000001-0002-0003"]["nexthopIndexAndL2AdjKey"]);
  EXPECT_EQ(8, json["entities"][0]["l2AdjKey"]);
}

// An agent's text may hold anything.
TEST_F(ServerTest, WhatDoesNotPrintIsToldEscaped) {
  Program watcher({"watch", "status", "--socket", socket()});
  auto const status = Pbr::statusFactory("pbr");
  Agent agent(remote(), "pbr/status", status);
  EXPECT_TRUE(agent.settle());
  watcher.waitFor("end     pbr/status\n");
  status->statusIs("a\nb")->messageIs("\x1b[2J");
  EXPECT_TRUE(agent.settle());
  watcher.waitFor("update  pbr/status.status[a\\x0ab].message = \\x1b[2J\n");
}

TEST(Remote, ARefusalIsToldInTheServersWordsFitToBeShown) {
  RemoteError const error = refusal("pbr/config", "no \x1b[2J");
  EXPECT_EQ(1, error.exitCode);
  EXPECT_EQ("refused by the server: pbr/config: no \\x1b[2J", error.text);
}

TEST_F(ServerTest, ACheckpointIsKeptWhenItsAgentHasGone) {
  auto const checkpoint = Pbr::checkpointStatusFactory("pbr");
  {
    Agent agent(remote(), "pbr/checkpoint", checkpoint);
    auto const map = checkpoint->checkpointAgentStatusIs("agent")->pmapCkptStatusIs("P");
    map->ckptTimestampIs(1.5);
    EXPECT_TRUE(agent.settle());
  }
  Ran const ran = run({"show", "checkpoint", "--socket", socket()});
  EXPECT_EQ(0, ran.exitCode) << ran.err;
  EXPECT_NE(std::string::npos, ran.out.find("ckptTimestamp\n")) << ran.out;
  EXPECT_NE(std::string::npos, ran.out.find("P  1.5\n")) << ran.out;
}

TEST_F(ServerTest, WhoFollowsARootThatIsReplacedConnectsAgainAndSeesTheNewOne) {
  Program watcher({"watch", "status", "--socket", socket()});
  auto const first = Pbr::statusFactory("first");
  first->statusIs("old");
  {
    Agent agent(remote(), "pbr/status", first);
    EXPECT_TRUE(agent.settle());
    watcher.waitFor("end     pbr/status\n");
  }
  auto const second = Pbr::statusFactory("second");
  second->statusIs("new");
  Agent agent(remote(), "pbr/status", second);
  EXPECT_TRUE(agent.settle());
  std::string const text = watcher.waitFor("lost    pbr/status\nbegin   pbr/status\n");
  EXPECT_EQ(1u, countOf(text, "lost    "));
  second->statusIs("later");
  EXPECT_TRUE(agent.settle());
  EXPECT_NE(std::string::npos, watcher.waitFor("pbr/status.status[later]").find("pbr/status.status[new]"));
}

TEST_F(ServerTest, ASecondAgentIsRefused) {
  auto const first = Pbr::checkpointStatusFactory("pbr");
  auto const second = Pbr::checkpointStatusFactory("pbr");
  Agent agent(remote(), "pbr/checkpoint", first);
  EXPECT_TRUE(agent.settle());
  Agent other(remote(), "pbr/checkpoint", second);
  EXPECT_TRUE(other.settle());
  EXPECT_NE(std::string::npos, other.refused().find("brings it already")) << other.refused();
  first->checkpointAgentStatusIs("agent");
  EXPECT_TRUE(agent.settle());
  EXPECT_NE(std::string::npos, run({"show", "checkpoint", "--socket", socket()}).out.find("agent"));
}

TEST(Serve, OverTcp) {
  Program server({"serve", "--socket", "tcp:127.0.0.1:0"});
  std::string const ready = server.waitFor("\n");
  std::string const socket =
      ready.substr(std::string("serving pbr/config at ").size(), ready.find('\n') - 22);
  TestFile const file("a.conf", kBase);
  EXPECT_EQ(0, run({"load", file.path(), "--socket", socket}).exitCode) << ready;
  EXPECT_EQ(run({"show", file.path()}).out, run({"show", "config", "--socket", socket}).out);
  EXPECT_EQ(0, server.end(SIGTERM));
}

TEST(Serve, OtherHostsAreLeftOutUnlessAllowed) {
  Ran const ran = runProgram({"serve", "--socket", "tcp:0.0.0.0:0"});
  EXPECT_EQ(1, ran.exitCode);
  EXPECT_NE(std::string::npos, ran.err.find("other hosts could reach it")) << ran.err;
  Program server({"serve", "--socket", "tcp:0.0.0.0:0", "--allow-other-hosts"});
  server.waitFor("serving pbr/config at tcp:0.0.0.0:");
}

TEST(Serve, AWrongConfigurationIsNotServed) {
  TestFile const file("a.conf", "colour red\n");
  Ran const ran = runProgram({"serve", "--socket", file.path() + ".sock", "--config", file.path()});
  EXPECT_EQ(1, ran.exitCode);
  EXPECT_EQ("", ran.out);
  EXPECT_EQ(file.path() + ":1:1: error: unknown statement 'colour'\n", ran.err);
}

} // namespace
} // namespace Pbrctl
