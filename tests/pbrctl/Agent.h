// A process's connection to a server by which it brings roots.

#pragma once

#include "Vyx/NboAttrLog/Connector.h"
#include "Vyx/NboAttrLog/Loop.h"
#include "Vyx/NboAttrLog/Peer.h"
#include "pbrctl/Remote.h"

#include <string>

namespace Pbrctl {

class Agent : private Vyx::NboAttrLog::Peer::Watcher {
public:
  // THROWS: ConnectionException.
  explicit Agent(Remote const& remote)
      : limit_(remote.timeout), roots_(Vyx::ptrFromNew(new Vyx::NboAttrLog::Roots)),
        peer_(Vyx::ptrFromNew(new Peer(Vyx::NboAttrLog::connectWithin(remote.address, remote.timeout),
                                       Vyx::NboAttrLog::Demuxer::connecting, roots_, this))) {
    peer_->loopIs(loop_);
  }
  Agent(Remote const& remote, char const* path, Vyx::Ptr<Vyx::Entity> const& root) : Agent(remote) {
    bring(path, root);
  }
  ~Agent() {
    peer_->watcherDel();
    peer_->end("done");
  }
  Agent(Agent const&) = delete;
  Agent& operator=(Agent const&) = delete;

  void bring(char const* path, Vyx::Ptr<Vyx::Entity> const& root) { peer_->publish(path, root); }

  // Until the server has applied what was written, or the connection has ended. RETURNS whether that was in
  // time.
  bool settle() {
    auto const isOver = [&] { return !ended_.empty(); };
    if (!loop_.runUntil([&] { return isOver() || (wasReady_ && !peer_->demuxer()->hasQueued()); }, limit_))
      return false;
    if (isOver()) return true;
    auto const number = peer_->probe();
    return loop_.runUntil([&] { return isOver() || answered_ >= number; }, limit_);
  }
  // What the server has said against a root; empty while it takes them all.
  std::string const& refused() const { return refused_; }
  // Why the connection has ended; empty while it lasts.
  std::string const& ended() const { return ended_; }

private:
  using Peer = Vyx::NboAttrLog::Peer;

  void onReady(Peer&) override { wasReady_ = true; }
  void onAnswer(Peer&, unsigned long long number) override { answered_ = number; }
  void onRefused(Peer&, Vyx::Name const&, std::string const& words) override { refused_ = words; }
  void onEnded(Peer&, Vyx::NboAttrLog::Closing const& closing) override { ended_ = closing.words; }

  Vyx::NboAttrLog::Duration const limit_;
  Vyx::NboAttrLog::Loop loop_;
  Vyx::Ptr<Vyx::NboAttrLog::Roots> roots_;
  Vyx::Ptr<Peer> peer_;
  bool wasReady_ = false;
  unsigned long long answered_ = 0;
  std::string refused_;
  std::string ended_;
};

} // namespace Pbrctl
