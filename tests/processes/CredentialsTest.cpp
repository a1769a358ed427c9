// Who may do what with a server, by who the kernel says that he is.

#include "Child.h"

#include "Vyx/NboAttrLog/ConnectionException.h"
#include "Vyx/NboAttrLog/Connector.h"
#include "pbrctl/Server.h"
#include "replication/TwoProcesses.h"

#include <gmock/gmock.h>

#include <grp.h>
#include <sstream>

namespace processes_test {
namespace {

using namespace Vyx::NboAttrLog;
using replication_test::Process;
using Vyx::Ptr;

constexpr char kConfig[] = "pbr/config";
constexpr char kStatus[] = "pbr/status";
constexpr Duration kLimit = std::chrono::seconds(20);

// What somebody is to the server.
enum class Relation { owner, member, memberBySupplement, stranger };

// A user to become, and what the server is to think of whom. Who can become anybody does so, and the server
// keeps its rule; who can't stays who he is, and the server's rule is that of somebody else.
struct Case {
  AccessRule rule;
  bool becomes;
  uid_t uid;
  gid_t gid;
  std::vector<gid_t> groups;

  void become() const {
    if (!becomes) return;
    if (::setgroups(groups.size(), groups.data()) < 0 || ::setgid(gid) < 0 || ::setuid(uid) < 0)
      throw std::runtime_error("can't become user " + std::to_string(uid));
  }
};

std::vector<gid_t> ownGroups() {
  std::vector<gid_t> groups(static_cast<std::size_t>(::getgroups(0, nullptr)));
  if (!groups.empty()) ::getgroups(static_cast<int>(groups.size()), groups.data());
  return groups;
}

Case caseOfOthers(Relation relation) {
  constexpr uid_t kOwner = 4001, kOther = 4002;
  constexpr gid_t kGroup = 4003, kElse = 4004;
  AccessRule const rule{kOwner, kGroup};
  switch (relation) {
  case Relation::owner:
    return {rule, true, kOwner, kElse, {}};
  case Relation::member:
    return {rule, true, kOther, kGroup, {}};
  case Relation::memberBySupplement:
    return {rule, true, kOther, kElse, {kElse, kGroup}};
  case Relation::stranger:
    break;
  }
  return {rule, true, kOther, kElse, {kElse}};
}

Case caseOfSelf(Relation relation) {
  uid_t const self = ::geteuid();
  gid_t const group = ::getegid();
  auto const groups = ownGroups();
  gid_t unknown = group + 1;
  while (std::count(groups.begin(), groups.end(), unknown)) ++unknown;
  auto const other = std::find_if(groups.begin(), groups.end(), [&](gid_t one) { return one != group; });
  switch (relation) {
  case Relation::owner:
    return {{self, unknown}, false, self, group, groups};
  case Relation::member:
    return {{self + 1, group}, false, self, group, groups};
  case Relation::memberBySupplement:
    return {{self + 1, other == groups.end() ? group : *other}, false, self, group, groups};
  case Relation::stranger:
    break;
  }
  return {{self + 1, unknown}, false, self, group, groups};
}

Case caseOf(Relation relation) { return ::geteuid() == 0 ? caseOfOthers(relation) : caseOfSelf(relation); }

// What somebody hears who wants to write, to read and to bring a root, a line each.
std::string attemptsAt(std::string const& socket) {
  Loop loop;
  Process visitor("visitor");
  try {
    auto transport = connectWithin(UnixAddress{socket}, kLimit);
    visitor.peer =
        Vyx::ptrFromNew(new Peer(std::move(transport), Demuxer::connecting, visitor.roots, &visitor));
  } catch (ConnectionException const& error) {
    return std::string(error.what()) + "\n";
  }
  auto const settle = [&] {
    auto const number = visitor.peer->probe();
    loop.runUntil([&] { return visitor.answered >= number || !visitor.ended.empty(); }, kLimit);
  };
  visitor.peer->loopIs(loop);
  visitor.peer->mount(kConfig, MountMode::write);
  settle();
  if (auto const config = visitor.mounted<Pbr::Config>(kConfig)) config->bgpPbrRedirectIs(true);
  visitor.peer->mount(kConfig, MountMode::read);
  settle();
  visitor.peer->publish(kStatus, Pbr::statusFactory("pbr"));
  settle();
  std::string text = visitor.ended;
  for (auto const& one : visitor.heard) text += one + "\n";
  return text;
}

class CredentialsTest : public testing::Test {
protected:
  CredentialsTest() { folder.openToAll(); }

  // RETURNS what he hears, who is called "he".
  std::string heardBy(Relation relation, mode_t mode = 0666) {
    Case const he = caseOf(relation);
    Pbrctl::Server server(loop, config, log, he.rule);
    server.listen(UnixAddress{socket}, false);
    ::chmod(socket.c_str(), mode);
    int ends[2];
    if (::pipe(ends) < 0) throw std::runtime_error("no pipe");
    Child child([&] {
      he.become();
      std::string const text = attemptsAt(socket);
      if (::write(ends[1], text.data(), text.size()) < 0) throw std::runtime_error("no way to tell");
    });
    EXPECT_TRUE(loop.runUntil([&] { return child.hasEnded() || pause(); }, kLimit));
    std::string const name = "pid " + std::to_string(child.pid()) + ", uid " + std::to_string(he.uid);
    EXPECT_EQ("exit 0", child.wait());
    std::string text(4096, '\0');
    ::close(ends[1]);
    text.resize(static_cast<std::size_t>(std::max<ssize_t>(0, ::read(ends[0], text.data(), text.size()))));
    ::close(ends[0]);
    for (auto at = text.find(name); at != std::string::npos; at = text.find(name))
      text.replace(at, name.size(), "he");
    server.end();
    loop.turn(Duration::zero());
    return text;
  }
  // The end of a child wakes nobody.
  bool pause() {
    loop.timerIn(std::chrono::milliseconds(5), [] {});
    return false;
  }

  SharedFolder folder;
  std::string const socket = folder / "log";
  Loop loop;
  std::ostringstream log;
  Ptr<Pbr::Config> config = Pbr::configFactory("pbr");
};

TEST_F(CredentialsTest, TheOwnerReadsWritesAndBrings) {
  EXPECT_EQ("synced pbr/config\nsynced pbr/config\n", heardBy(Relation::owner));
  EXPECT_TRUE(config->bgpPbrRedirect());
}

TEST_F(CredentialsTest, TheGroupReads) {
  for (auto const relation : {Relation::member, Relation::memberBySupplement}) {
    EXPECT_EQ("refused pbr/config: he may read only\n"
              "synced pbr/config\n"
              "refused pbr/status: he may read only\n",
              heardBy(relation));
    EXPECT_FALSE(config->bgpPbrRedirect());
  }
}

// Though somebody has opened the socket file to all.
TEST_F(CredentialsTest, OthersAreRefusedWithWords) {
  std::string const words = "he is neither the server's user nor of its group\n";
  EXPECT_EQ("refused pbr/config: " + words + "refused pbr/config: " + words + "refused pbr/status: " + words,
            heardBy(Relation::stranger));
  EXPECT_FALSE(config->bgpPbrRedirect());
}

TEST_F(CredentialsTest, WhomTheFileKeepsOutIsToldSo) {
  mode_t const mode = ::geteuid() == 0 ? 0660 : 0; // The file's owner would come in otherwise.
  EXPECT_EQ("can't reach " + socket + ": Permission denied\n", heardBy(Relation::stranger, mode));
}

} // namespace
} // namespace processes_test
