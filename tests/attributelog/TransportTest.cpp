#include "LinkFixture.h"

#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <system_error>

namespace attributelog {
namespace {

using testing::EndsWith;
using testing::HasSubstr;

template <class Call> std::string refusalOf(Call call) {
  try {
    call();
  } catch (ConnectionException const& error) {
    return error.what();
  }
  return "nothing was thrown";
}

class ListenerTest : public testing::Test {
protected:
  Vyx::Ptr<Listener> listenAt(Address const& address, ListenerOptions const& options = {}) {
    auto const take = [this](std::unique_ptr<Transport> transport) { taken.push_back(std::move(transport)); };
    return Vyx::ptrFromNew(new Listener(address, take, options));
  }
  Vyx::Ptr<Listener> listen() { return listenAt(UnixAddress{path}); }
  unsigned mode() const {
    struct stat found {};
    return ::stat(path.c_str(), &found) == 0 ? found.st_mode & 07777 : 0;
  }
  bool isThere() const { return std::filesystem::exists(path); }

  TemporaryFolder folder;
  std::string path = folder / "log";
  std::vector<std::unique_ptr<Transport>> taken;
};

class MaskTest : public ListenerTest, public testing::WithParamInterface<unsigned> {};
INSTANTIATE_TEST_SUITE_P(Of, MaskTest, testing::Values(0, 022, 077));

TEST_P(MaskTest, SocketFileHasItsModeWhateverTheMask) {
  mode_t const saved = ::umask(GetParam());
  auto const listener = listen();
  ::umask(saved);
  EXPECT_EQ(0660U, mode());
}

TEST_F(ListenerTest, SocketFileGoesWithItsListener) {
  auto listener = listen();
  EXPECT_TRUE(isThere());
  listener = nullptr;
  EXPECT_FALSE(isThere());
}

TEST_F(ListenerTest, FileThatReplacedItStays) {
  auto listener = listen();
  std::filesystem::rename(path, path + ".old");
  auto const successor = listen();
  listener = nullptr;
  EXPECT_TRUE(isThere());
}

TEST_F(ListenerTest, ProcessThatWasForkedLeavesTheFile) {
  auto const listener = listen();
  pid_t const child = ::fork();
  if (child == 0) {
    listener->end();
    ::_exit(0);
  }
  ::waitpid(child, nullptr, 0);
  EXPECT_TRUE(isThere());
}

TEST_F(ListenerTest, FileOfADeadServerIsReplaced) {
  pid_t const child = ::fork();
  if (child == 0) {
    auto const dying = listen();
    ::raise(SIGKILL);
  }
  ::waitpid(child, nullptr, 0);
  ASSERT_TRUE(isThere());
  auto const listener = listen();
  EXPECT_TRUE(connectWithin(UnixAddress{path}, kLimit));
}

TEST_F(ListenerTest, FileOfALiveServerIsNot) {
  auto const first = listen();
  EXPECT_EQ("can't listen at " + path + ": another server is there", refusalOf([&] { listen(); }));
  EXPECT_TRUE(connectWithin(UnixAddress{path}, kLimit));
}

TEST_F(ListenerTest, OtherKindsOfFilesAreNeverReplaced) {
  std::ofstream(path) << "precious";
  EXPECT_EQ("can't listen at " + path + ": there is a file which is not a socket",
            refusalOf([&] { listen(); }));
  EXPECT_EQ(8U, std::filesystem::file_size(path));
}

TEST_F(ListenerTest, PathThatIsTooLongIsRefusedWithItsLength) {
  path = folder / std::string(200, 'x');
  EXPECT_THAT(refusalOf([&] { listen(); }), HasSubstr("is too long for a socket: it has "));
  EXPECT_THAT(refusalOf([&] { listenAt(UnixAddress{""}); }), HasSubstr("is empty"));
}

TEST_F(ListenerTest, FolderThatIsNotThereIsTold) {
  path = folder / "none/log";
  EXPECT_THAT(refusalOf([&] { listen(); }), EndsWith("none/log: No such file or directory"));
}

TEST_F(ListenerTest, TcpTellsThePortThatWasChosen) {
  auto const listener = listenAt(TcpAddress{});
  EXPECT_NE(0, std::get<TcpAddress>(listener->address()).port);
  EXPECT_TRUE(connectWithin(listener->address(), kLimit)->isLocal());
}

TEST_F(ListenerTest, OtherHostsAreServedOnlyIfTheyMay) {
  TcpAddress const everywhere{"0.0.0.0", 0};
  EXPECT_THAT(refusalOf([&] { listenAt(everywhere); }), HasSubstr("other hosts could reach it"));
  EXPECT_TRUE(listenAt(everywhere, {.mayServeOtherHosts = true}));
}

TEST_F(ListenerTest, DescriptorsDontPassToOtherPrograms) {
  auto const listener = listen();
  auto const mine = connectWithin(UnixAddress{path}, kLimit);
  listener->readable();
  ASSERT_EQ(1U, taken.size());
  for (int const fd : {listener->fd(), mine->fd(), taken[0]->fd()})
    EXPECT_TRUE(::fcntl(fd, F_GETFD) & FD_CLOEXEC);
}

TEST_F(ListenerTest, TooManyOpenFilesMakeAPauseAndLoseNobody) {
  auto const listener = listen();
  // The first call through a type makes the sanitizer open files to look at the object; there are none left
  // later.
  listener->readable();
  static_cast<void>(std::generic_category().message(EMFILE));
  auto const mine = connectWithin(UnixAddress{path}, kLimit);
  rlimit saved{};
  ::getrlimit(RLIMIT_NOFILE, &saved);
  rlimit const few{static_cast<rlim_t>(mine->fd()), saved.rlim_max};
  ::setrlimit(RLIMIT_NOFILE, &few);
  listener->readable();
  ::setrlimit(RLIMIT_NOFILE, &saved);
  EXPECT_EQ("can't take a peer: Too many open files", listener->lastFailure());
  EXPECT_FALSE(listener->wantsRead());
  listener->expire(listener->nextDeadline());
  EXPECT_TRUE(listener->wantsRead());
  listener->readable();
  EXPECT_EQ(1U, taken.size());
  EXPECT_EQ("", listener->lastFailure());
}

TEST_F(ListenerTest, PeerIsKnownByItsProcess) {
  auto const listener = listen();
  auto const mine = connectWithin(UnixAddress{path}, kLimit);
  listener->readable();
  ASSERT_EQ(1U, taken.size());
  ASSERT_TRUE(taken[0]->peer());
  EXPECT_EQ(::getpid(), taken[0]->peer()->pid);
  EXPECT_EQ(::geteuid(), taken[0]->peer()->uid);
  EXPECT_EQ(::getegid(), taken[0]->peer()->gid);
  std::vector<gid_t> groups(static_cast<std::size_t>(::getgroups(0, nullptr)));
  if (!groups.empty()) ::getgroups(static_cast<int>(groups.size()), groups.data());
  EXPECT_THAT(taken[0]->peer()->groups, testing::UnorderedElementsAreArray(groups));
}

TEST_F(ListenerTest, PeerOverTcpIsKnownByItsAddress) {
  auto const listener = listenAt(TcpAddress{});
  auto const mine = connectWithin(listener->address(), kLimit);
  listener->readable();
  ASSERT_EQ(1U, taken.size());
  EXPECT_FALSE(taken[0]->peer());
  EXPECT_TRUE(taken[0]->isLocal());
  EXPECT_THAT(taken[0]->peerName(), testing::StartsWith("127.0.0.1:"));
}

TEST(AccessRuleTest, OwnerAndRootWriteTheGroupReads) {
  AccessRule const rule{1000, 500};
  auto const accessOf = [&](uid_t uid, gid_t gid, std::vector<gid_t> groups = {}) {
    return rule.accessOf({1, uid, gid, std::move(groups)});
  };
  EXPECT_EQ(Access::write, accessOf(1000, 9));
  EXPECT_EQ(Access::write, accessOf(0, 9));
  EXPECT_EQ(Access::read, accessOf(1001, 500));
  EXPECT_EQ(Access::read, accessOf(1001, 9, {8, 500}));
  EXPECT_EQ(Access::none, accessOf(1001, 9, {8}));
}

class ConnectorTest : public ListenerTest {
protected:
  std::string refusal(Duration limit = kLimit) {
    return refusalOf([&] { connectWithin(UnixAddress{path}, limit); });
  }
};

TEST_F(ConnectorTest, MissingServerIsToldByItsPath) {
  EXPECT_EQ("can't reach " + path + ": No such file or directory", refusal());
}

TEST_F(ConnectorTest, DeadServerIsToldByItsPath) {
  {
    Descriptor const server(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    SocketAddress place = socketAddressOf(UnixAddress{path});
    ASSERT_EQ(0, ::bind(server.get(), place.get(), place.length));
  }
  EXPECT_EQ("can't reach " + path + ": Connection refused", refusal());
}

TEST_F(ConnectorTest, PortWithoutServerIsTold) {
  auto listener = listenAt(TcpAddress{});
  Address const gone = listener->address();
  listener = nullptr;
  EXPECT_EQ("can't reach " + addressText(gone) + ": Connection refused",
            refusalOf([&] { connectWithin(gone, kLimit); }));
}

TEST_F(ConnectorTest, FullServerIsWaitedForUntilTheLimit) {
  Descriptor const server(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
  SocketAddress place = socketAddressOf(UnixAddress{path});
  ASSERT_EQ(0, ::bind(server.get(), place.get(), place.length));
  ASSERT_EQ(0, ::listen(server.get(), 0));
  std::vector<std::unique_ptr<Transport>> waiting;
  std::string const words = refusalOf([&] {
    for (int i = 0; i < 1000; ++i)
      waiting.push_back(connectWithin(UnixAddress{path}, std::chrono::milliseconds(30)));
  });
  EXPECT_EQ("can't reach " + path + ": no answer within the time limit", words);
}

TEST_F(ConnectorTest, ServerThatTakesSomeoneTakesTheNext) {
  auto const listener = listen();
  ::listen(listener->fd(), 0);
  Loop loop;
  loop.sourceIs(listener);
  int connected = 0;
  for (int i = 0; i < 10; ++i) {
    auto const done = [&](std::unique_ptr<Transport> transport, std::string const&) {
      connected += bool(transport);
    };
    loop.sourceIs(Vyx::ptrFromNew(new Connector(UnixAddress{path}, kLimit, done)));
  }
  EXPECT_TRUE(loop.runUntil([&] { return connected == 10 && taken.size() == 10; }, kLimit));
}

TEST(AddressTest, TextsReadBack) {
  auto const again = [](std::string const& text) { return addressText(addressFromText(text)); };
  EXPECT_EQ("/run/pbr.sock", again("/run/pbr.sock"));
  EXPECT_EQ("/run/pbr.sock", again("unix:/run/pbr.sock"));
  EXPECT_EQ("127.0.0.1:4711", again("tcp:4711"));
  EXPECT_EQ("10.0.0.1:0", again("tcp:10.0.0.1:0"));
  EXPECT_EQ("[::1]:65535", again("tcp:[::1]:65535"));
  EXPECT_EQ("127.0.0.1:80", again("tcp:localhost:80"));
}

TEST(AddressTest, WhatIsNoAddressIsRefused) {
  for (char const* text : {"tcp:", "tcp:65536", "tcp:-1", "tcp:80x", "tcp:127.0.0.1:"})
    EXPECT_THAT(refusalOf([&] { addressFromText(text); }), HasSubstr("has no port of 0 to 65535"));
  EXPECT_EQ("the host \"example.org\" is not an address in digits",
            refusalOf([] { addressFromText("tcp:example.org:80"); }));
}

} // namespace
} // namespace attributelog
