// Holds the configuration for other processes, and the status and checkpoint that agents bring.
//
// Invariants:
// (1) Who may do what: over a Unix-domain socket as AccessRule says; over TCP, processes of this host may
//     write and those of other hosts may read.
// (2) One peer at a time brings a root; another one is refused until that one's connection has ended. What it
//     has brought is kept, and given to those who ask.

#pragma once

#include "Pbr/Pbr.h"
#include "Vyx/NboAttrLog/Listener.h"
#include "Vyx/NboAttrLog/Loop.h"
#include "Vyx/NboAttrLog/Peer.h"

#include <iosfwd>
#include <list>
#include <set>

namespace Pbrctl {

class Server final : private Vyx::NboAttrLog::Peer::Watcher {
public:
  // Why peers come and go that were not well is told to `log`.
  Server(Vyx::NboAttrLog::Loop& loop, Vyx::Ptr<Pbr::Config> const& config, std::ostream& log,
         Vyx::NboAttrLog::AccessRule const& rule = Vyx::NboAttrLog::AccessRule::ofThisProcess());
  ~Server();
  Server(Server const&) = delete;
  Server& operator=(Server const&) = delete;

  // RETURNS the address, with the port that was chosen. THROWS: ConnectionException.
  Vyx::NboAttrLog::Address listen(Vyx::NboAttrLog::Address const& address, bool mayServeOtherHosts);
  // Belongs behind each turn of the loop.
  void letGo() { ended_.clear(); }
  // Takes nobody any more and tells everybody that it ends.
  void end();

private:
  using Name = Vyx::Name;
  using Peer = Vyx::NboAttrLog::Peer;
  using Link = Vyx::NboAttrLog::Link;

  Vyx::NboAttrLog::Access accessOf(Vyx::NboAttrLog::Transport const& transport) const;
  // RETURNS why the peer may not; empty when it may, which is then remembered.
  std::string admit(Link const& link, Name const& path, Vyx::NboAttrLog::MountMode mode);
  void take(std::unique_ptr<Vyx::NboAttrLog::Transport> transport);
  void onSynced(Peer& peer, Name const& path) override;
  void onEnded(Peer& peer, Vyx::NboAttrLog::Closing const& closing) override;

  Vyx::NboAttrLog::Loop& loop_;
  std::ostream& log_;
  Vyx::NboAttrLog::AccessRule const rule_;
  Vyx::Ptr<Vyx::NboAttrLog::Roots> roots_;
  Vyx::Ptr<Vyx::NboAttrLog::Listener> listener_;
  std::list<Vyx::Ptr<Peer>> peers_;
  std::list<Vyx::Ptr<Peer>> ended_;                // Until the turn is over.
  std::map<Name, Link const*> publishers_;         // Who brings a root now.
  std::set<std::pair<Name, Link const*>> readers_; // Who has asked for a root.
  std::map<Name, Vyx::Ptr<Vyx::Entity>> given_;    // What was last brought whole.
};

} // namespace Pbrctl
