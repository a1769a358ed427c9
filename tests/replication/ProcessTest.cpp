// Processes of their own over a Unix-domain socket, which are killed whenever it fits least.

#include "Edits.h"
#include "TwoProcesses.h"

#include "Vyx/NboAttrLog/ConnectionException.h"
#include "Vyx/NboAttrLog/Connector.h"
#include "Vyx/NboAttrLog/Listener.h"

#include <csignal>
#include <filesystem>
#include <fstream>
#include <sys/wait.h>
#include <thread>

namespace replication_test {
namespace {

constexpr char const* kPaths[] = {"pbr/config", "pbr/status", "pbr/checkpoint"};
constexpr Duration kLimit = std::chrono::seconds(20);

// Serves three trees on a socket.
class Server {
public:
  explicit Server(std::string const& socket) {
    roots->offerIs(kPaths[0], trees.config);
    roots->offerIs(kPaths[1], trees.status);
    roots->offerIs(kPaths[2], trees.checkpoint);
    listener = Vyx::ptrFromNew(new Listener(UnixAddress{socket}, [this](std::unique_ptr<Transport> taken) {
      std::erase_if(peers, [](auto const& peer) { return peer->hasEnded(); });
      peers.push_back(Vyx::ptrFromNew(new Peer(std::move(taken), Demuxer::accepting, roots)));
      peers.back()->loopIs(loop);
    }));
    loop.sourceIs(listener);
  }

  std::size_t living() const {
    return static_cast<std::size_t>(
        std::count_if(peers.begin(), peers.end(), [](auto const& peer) { return !peer->hasEnded(); }));
  }

  Random random;
  Loop loop;
  Ptr<Roots> roots = Vyx::ptrFromNew(new Roots);
  Trees trees = newTrees();
  Edits edits{random, trees};
  Ptr<Listener> listener;
  std::vector<Ptr<Peer>> peers;
};

// Follows them.
class Reader : public Process {
public:
  Reader() : Process("reader") {}
  // The peer leaves the loop, which ends before it otherwise.
  ~Reader() {
    if (peer) peer->watcherDel();
    peer = nullptr;
  }

  // A new connection, once the server is there.
  void connect(std::string const& socket) {
    if (peer) peer->watcherDel();
    ended.clear();
    peer = Vyx::ptrFromNew(new Peer(reach(socket), Demuxer::connecting, roots, this));
    peer->loopIs(loop);
    for (char const* path : kPaths) peer->mount(path, MountMode::read);
  }
  Trees copy() const {
    return {mounted<Pbr::Config>(kPaths[0]), mounted<Pbr::Status>(kPaths[1]),
            mounted<Pbr::CheckpointStatus>(kPaths[2])};
  }
  // RETURNS whether the trees come to that.
  bool becomes(std::string const& text) {
    for (unsigned i = 0; i < 1000; ++i) {
      loop.turn(std::chrono::milliseconds(10));
      if (textOf(copy()) == text) return true;
      if (peer->hasEnded()) return false;
    }
    return false;
  }

  Loop loop;

private:
  static std::unique_ptr<Transport> reach(std::string const& socket) {
    for (unsigned attempts = 2000;; --attempts) {
      try {
        return connectWithin(UnixAddress{socket}, kLimit);
      } catch (ConnectionException const&) {
        if (attempts == 0) throw;
      }
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
  }
};

class ProcessTest : public testing::Test {
protected:
  ProcessTest() {
    std::string folder = (std::filesystem::temp_directory_path() / "pbrXXXXXX").string();
    if (!::mkdtemp(folder.data())) throw std::runtime_error("no temporary folder");
    folder_ = folder;
  }
  ~ProcessTest() override {
    kill();
    std::filesystem::remove_all(folder_);
  }

  std::string socket() const { return folder_ + "/log"; }
  std::string file(char const* name) const { return folder_ + "/" + name; }

  template <class Task> void fork(Task const& task) {
    std::fflush(nullptr);
    child_ = ::fork();
    if (child_ != 0) return;
    ::alarm(60);
    try {
      task();
    } catch (std::exception const& error) {
      std::fprintf(stderr, "%s\n", error.what());
    }
    ::_exit(0);
  }
  void kill() {
    if (child_ <= 0) return;
    ::kill(child_, SIGKILL);
    ::waitpid(std::exchange(child_, 0), nullptr, 0);
  }

  // A file comes whole or not at all.
  void write(char const* name, std::string const& text) const {
    std::ofstream(file("new"), std::ios::binary) << text;
    std::filesystem::rename(file("new"), file(name));
  }
  std::string read(char const* name) const {
    std::ifstream from(file(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(from), {}};
  }
  bool has(char const* name) const { return std::filesystem::exists(file(name)); }

  // Changes its trees until it is told to stop, then says what they hold.
  void serve(std::uint32_t seed) const {
    ::setenv("PBR_TEST_SEED", std::to_string(seed).c_str(), 1);
    Server server(socket());
    server.edits.many(500);
    while (!has("stop")) {
      server.edits.many(3);
      server.loop.turn(Duration::zero());
    }
    write("text", textOf(server.trees));
    for (;;) server.loop.turn(std::chrono::seconds(1));
  }

private:
  std::string folder_;
  pid_t child_ = 0;
};

TEST_F(ProcessTest, AServerMayDieAtAnyMoment) {
  Random random;
  Reader reader;
  for (unsigned round = 0; round < 12; ++round) {
    SCOPED_TRACE(round);
    std::uint32_t const seed = random.bits();
    fork([&] { serve(seed); });
    reader.connect(socket());
    auto const enough = random.below(60000);
    ASSERT_TRUE(reader.loop.runUntil(
        [&] { return reader.peer->hasEnded() || reader.peer->link()->bytesReceived() > enough; }, kLimit));
    kill();
    ASSERT_TRUE(reader.loop.runUntil([&] { return reader.peer->hasEnded(); }, kLimit));
    EXPECT_EQ(Vyx::Dir::lost, reader.roots->dir()->entryIs(kPaths[0]).state());
  }
  std::uint32_t const seed = random.bits();
  fork([&] { serve(seed); });
  reader.connect(socket());
  reader.loop.runUntil([&] { return reader.heard.size() >= 3; }, std::chrono::milliseconds(300));
  write("stop", "");
  for (unsigned i = 0; i < 2000 && !has("text"); ++i) reader.loop.turn(std::chrono::milliseconds(5));
  EXPECT_TRUE(reader.becomes(read("text"))) << reader.ended;
}

TEST_F(ProcessTest, AReaderMayDieAtAnyMoment) {
  Server server(socket());
  server.edits.many(500);
  auto follow = [this] {
    Reader reader;
    reader.connect(socket());
    while (!has("text") && !reader.peer->hasEnded()) reader.loop.turn(std::chrono::milliseconds(5));
    write("answer", reader.becomes(read("text")) ? "equal" : "different " + reader.ended);
  };
  for (unsigned round = 0; round < 12; ++round) {
    fork(follow);
    auto const enough = server.random.below(60000);
    ASSERT_TRUE(server.loop.runUntil(
        [&] {
          server.edits.many(3);
          server.loop.wake();
          return server.living() && server.peers.back()->link()->bytesSent() > enough;
        },
        kLimit));
    kill();
    ASSERT_TRUE(server.loop.runUntil([&] { return server.living() == 0; }, kLimit));
    EXPECT_EQ(0U, server.peers.back()->demuxer()->reactors().count());
  }
  fork(follow);
  ASSERT_TRUE(server.loop.runUntil(
      [&] {
        server.edits.one();
        return server.living() == 1;
      },
      kLimit));
  write("text", textOf(server.trees));
  for (unsigned i = 0; i < 4000 && !has("answer"); ++i) server.loop.turn(std::chrono::milliseconds(5));
  EXPECT_EQ("equal", read("answer"));
}

} // namespace
} // namespace replication_test
