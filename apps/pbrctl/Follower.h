// Follows roots of a server for as long as it is run: connects again by itself, and tells every notification.
//
// Invariants:
// (1) What was brought by a connection that has ended is kept. When a root is brought again, only what
//     differs from it is told.

#pragma once

#include "Vyx/NboAttrLog/Connector.h"
#include "Vyx/NboAttrLog/Loop.h"
#include "Vyx/NboAttrLog/Peer.h"
#include "pbrctl/Remote.h"
#include "pbrctl/TreeWatch.h"

#include <map>
#include <memory>

namespace Pbrctl {

class Follower final : private Vyx::NboAttrLog::Peer::Watcher, private Vyx::Dir::Watcher {
public:
  // What is told. The paths of changes begin with the path of their root.
  class Listener {
  public:
    virtual void onBegin(std::string const& path) = 0;
    virtual void onChange(Change const& change) = 0;
    virtual void onEnd(std::string const& path) = 0;
    // The connection has ended; the root may be brought again.
    virtual void onLost(std::string const& path) = 0;
    // Why a connection has ended, or couldn't be made.
    virtual void onTrouble(std::string const& words) = 0;

  protected:
    ~Listener() = default;
  };

  // REQUIRES: loop and listener outlive it.
  Follower(Vyx::NboAttrLog::Loop& loop, Remote const& remote, std::vector<Vyx::Name> paths,
           Listener& listener);
  ~Follower();
  Follower(Follower const&) = delete;
  Follower& operator=(Follower const&) = delete;

  // Keeps what is received, each connection in a file of its own: FILE, then FILE.2, FILE.3, …
  void recordTo(std::string file) { recordFile_ = std::move(file); }
  // The first attempt. A failure of it, or a refusal by the server at any time, is the end.
  void start() { connect(); }
  bool hasFailed() const { return failure_.has_value(); }
  RemoteError const& failure() const { return *failure_; }

private:
  using Peer = Vyx::NboAttrLog::Peer;
  using Transport = Vyx::NboAttrLog::Transport;

  void connect();
  void connectLater();
  void connected(std::unique_ptr<Transport> transport, std::string const& failure);
  void record();
  void onReady(Peer&) override { wasReady_ = true; }
  void onRefused(Peer&, Vyx::Name const& path, std::string const& words) override;
  void onEnded(Peer&, Vyx::NboAttrLog::Closing const& closing) override;
  void onState(Vyx::Name const& path, Vyx::Dir::State state) override;
  void watch(Vyx::Name const& path);

  struct Followed {
    Vyx::Ptr<Vyx::Entity> root;
    std::unique_ptr<TreeWatch> watch;
  };

  Vyx::NboAttrLog::Loop& loop_;
  Remote const remote_;
  std::vector<Vyx::Name> const paths_;
  Listener& listener_;
  std::string recordFile_;
  unsigned recordings_ = 0;
  Vyx::Ptr<Vyx::NboAttrLog::Roots> roots_;
  Vyx::Ptr<Vyx::NboAttrLog::Connector> connector_;
  Vyx::Ptr<Peer> peer_;
  Vyx::NboAttrLog::Loop::TimerId retry_ = 0;
  bool wasReady_ = false; // A server has answered once.
  std::map<Vyx::Name, Followed> followed_;
  std::optional<RemoteError> failure_;
};

} // namespace Pbrctl
