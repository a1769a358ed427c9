// Two processes in one: each with its roots and its end of a connection.

#pragma once

#include "Pbr/Pbr.h"
#include "Vyx/NboAttrLog/Loop.h"
#include "Vyx/NboAttrLog/Peer.h"
#include "Vyx/NboAttrLog/Pipe.h"
#include "support/TreeText.h"

#include <gtest/gtest.h>

namespace replication_test {

using namespace Vyx::NboAttrLog;
using Vyx::Name;
using Vyx::Ptr;

// One of the two.
struct Process : Peer::Watcher {
  explicit Process(char const* name, Roots::Refusal refusal = {})
      : name(name), roots(Vyx::ptrFromNew(new Roots(std::move(refusal)))) {}
  virtual ~Process() {
    if (peer) peer->watcherDel();
  }

  void onSynced(Peer&, Name const& path) override { heard.push_back("synced " + std::string(path.view())); }
  void onRefused(Peer&, Name const& path, std::string const& words) override {
    heard.push_back("refused " + std::string(path.view()) + ": " + words);
  }
  void onAnswer(Peer&, unsigned long long number) override { answered = number; }
  void onEnded(Peer&, Closing const& closing) override { ended = closing.words; }

  // The root that has come under that path.
  template <class X> Ptr<X> mounted(char const* path) const {
    auto* entry = roots->dir()->find(path);
    return entry ? Vyx::dynamicPtrCast<X>(entry->entity()) : nullptr;
  }

  std::string name;
  Ptr<Roots> roots;
  Ptr<Peer> peer;
  std::vector<std::string> heard;
  unsigned long long answered = 0;
  std::string ended;
};

class TwoProcesses : public testing::Test {
protected:
  TwoProcesses() { connect(); }

  // A new connection between the two; the one before must have ended.
  void connect(LinkOptions const& options = {}, std::size_t pipe = PipeEnd::kCapacity) {
    PipePair ends = pipePair(pipe);
    server.peer =
        Vyx::ptrFromNew(new Peer(std::move(ends.first), Demuxer::accepting, server.roots, &server, options));
    client.peer = Vyx::ptrFromNew(
        new Peer(std::move(ends.second), Demuxer::connecting, client.roots, &client, options));
    server.peer->loopIs(loop);
    client.peer->loopIs(loop);
  }

  void disconnect() {
    client.peer->end("enough");
    run([&] { return server.peer->hasEnded() && client.peer->hasEnded(); });
  }

  template <class Condition> void run(Condition const& condition) {
    ASSERT_TRUE(loop.runUntil(condition, std::chrono::seconds(20))) << server.ended << " / " << client.ended;
  }

  // Until everything that either side has written, and owes, has been applied.
  void settle() {
    for (int both = 0; both < 2; ++both) {
      for (Process* one : {&server, &client}) {
        run([&] {
          return one->peer->hasEnded() ||
                 (!one->peer->demuxer()->hasQueued() && one->peer->link()->out()->pendingBytes() == 0);
        });
        if (one->peer->hasEnded()) return;
        auto const number = one->peer->probe();
        run([&] { return one->answered == number || one->peer->hasEnded(); });
      }
    }
  }

  Loop loop;
  Process server{"server"};
  Process client{"client"};
};

} // namespace replication_test
