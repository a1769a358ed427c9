// A reader that is stopped while very much changes, and others that aren't.

#include "Child.h"

#include "Vyx/NboAttrLog/Connector.h"
#include "Vyx/NboAttrLog/Listener.h"
#include "replication/TwoProcesses.h"
#include "support/Allocations.h"

#include <list>

namespace processes_test {
namespace {

using namespace Vyx::NboAttrLog;
using replication_test::Process;
using support::treeText;
using Vyx::Name;
using Vyx::Ptr;

constexpr char kCheckpoint[] = "pbr/checkpoint";
constexpr Duration kLimit = std::chrono::seconds(20);
constexpr unsigned kAttributes = 1000;
#ifdef __SANITIZE_ADDRESS__
constexpr unsigned kChanges = 100000;
#else
constexpr unsigned kChanges = 1000000;
#endif

class SlowReaderProcessTest : public testing::Test {
protected:
  SlowReaderProcessTest() {
    roots->offerIs(kCheckpoint, checkpoint);
    map = checkpoint->checkpointAgentStatusIs("agent")->pmapCkptStatusIs("edge");
    for (unsigned i = 0; i < kAttributes; ++i)
      counters.push_back(map->cmapCkptStatusIs(Name("class" + std::to_string(i))).ptr());
    listener =
        Vyx::ptrFromNew(new Listener(UnixAddress{folder / "log"}, [this](std::unique_ptr<Transport> taken) {
          Process& one = peers.emplace_back("peer");
          pids.push_back(taken->peer()->pid);
          one.peer = Vyx::ptrFromNew(new Peer(std::move(taken), Demuxer::accepting, roots, &one));
          one.peer->loopIs(loop);
        }));
    loop.sourceIs(listener);
  }

  // Follows until it is told the end, and writes down what it holds then.
  void read(char const* file) const {
    Loop loop;
    Process reader("reader");
    reader.peer = Vyx::ptrFromNew(new Peer(connectWithin(UnixAddress{folder / "log"}, kLimit),
                                           Demuxer::connecting, reader.roots, &reader));
    reader.peer->loopIs(loop);
    reader.peer->mount(kCheckpoint, MountMode::read);
    auto const isTold = [&] {
      auto const tree = reader.mounted<Pbr::CheckpointStatus>(kCheckpoint);
      auto const agent = tree ? tree->checkpointAgentStatus("agent") : nullptr;
      auto const there = agent ? agent->pmapCkptStatus("edge") : nullptr;
      return (there && there->ckptTimestamp() == kEnd) || !reader.ended.empty();
    };
    loop.runUntil(isTold, kLimit * 2);
    folder.write(file, treeText(*reader.mounted<Pbr::CheckpointStatus>(kCheckpoint)));
  }
  void tellTheEnd() { map->ckptTimestampIs(kEnd); }

  Process& peerOf(Child const& child) {
    until([&] { return std::count(pids.begin(), pids.end(), child.pid()) == 1; });
    auto at = peers.begin();
    for (std::size_t i = 0; pids[i] != child.pid(); ++i) ++at;
    return *at;
  }
  template <class Condition> void until(Condition const& condition) {
    ASSERT_TRUE(loop.runUntil(condition, kLimit));
  }
  // Until it has applied all that was written.
  void waitFor(Process& reader) {
    until([&] {
      return !reader.peer->demuxer()->hasQueued() && reader.peer->link()->out()->pendingBytes() == 0;
    });
    auto const number = reader.peer->probe();
    until([&] { return reader.answered >= number; });
  }

  static constexpr double kEnd = 47.11;

  SharedFolder folder;
  Loop loop;
  Ptr<Roots> roots = Vyx::ptrFromNew(new Roots);
  Ptr<Pbr::CheckpointStatus> checkpoint = Pbr::checkpointStatusFactory("pbr");
  Ptr<Pbr::PolicyMapCheckpointStatus> map;
  std::vector<Pbr::ClassMapCheckpointStatus*> counters;
  Ptr<Listener> listener;
  std::list<Process> peers;
  std::vector<pid_t> pids; // Of the peers.
};

TEST_F(SlowReaderProcessTest, CostsLessThanAMegabyteAndHoldsNobodyUp) {
  Child slow([this] { read("slow"); });
  Child other([this] { read("other"); });
  Process& stopped = peerOf(slow);
  Process& going = peerOf(other);
  for (Process* one : {&stopped, &going}) waitFor(*one);
  ::kill(slow.pid(), SIGSTOP);
  std::size_t const before = allocations::livingBytes();
  std::size_t most = before;
  for (unsigned i = 0; i < kChanges; ++i) {
    counters[i % kAttributes]->pktMatchIs(i + 1);
    if (i % kAttributes == 0) loop.turn(Duration::zero());
    if (i % (kChanges / 10) == 0) waitFor(going);
    most = std::max(most, allocations::livingBytes());
  }
  EXPECT_LT(most - before, 1000000U);
  EXPECT_TRUE(stopped.peer->demuxer()->hasQueued()) << "it was never slow";
  ::kill(slow.pid(), SIGCONT);
  for (Process* one : {&stopped, &going}) waitFor(*one);
  tellTheEnd();
  until([&] { return stopped.peer->hasEnded() && going.peer->hasEnded(); });
  EXPECT_EQ(treeText(*checkpoint), folder.read("slow"));
  EXPECT_EQ(treeText(*checkpoint), folder.read("other"));
}

} // namespace
} // namespace processes_test
