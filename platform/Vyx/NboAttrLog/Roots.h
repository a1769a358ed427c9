// What a process has to do with others' trees: the roots that it offers, those that it lets others bring, and
// the ones that have come.

#pragma once

#include "Vyx/Dir.h"

#include <functional>
#include <map>
#include <set>
#include <string>

namespace Vyx::NboAttrLog {

class Link;
class Peer;

// What a peer wants of a root. The numbers are on the wire.
enum class MountMode : std::uint8_t {
  read = 0,    // to follow it
  write = 1,   // to follow and to change it
  publish = 2, // to bring it
};
char const* wordOf(MountMode mode);

class Roots : public PtrInterface {
public:
  // RETURNS why a peer may not do that; empty when it may.
  using Refusal = std::function<std::string(Link const&, Name const& path, MountMode)>;

  explicit Roots(Refusal refusal = {});

  // A root of this process. It stays where it is; peers that ask for it get it from now on.
  void offerIs(Name const& path, Ptr<Entity> const& root);
  void offerDel(Name const& path) { offers_.erase(path); }
  // Peers may bring a root of that type, which this process then offers in turn.
  void acceptIs(Name const& path, VyxType const* type) { accepted_[path] = type; }
  // RETURNS null for a path under which nothing is accepted.
  VyxType const* accepted(Name const& path) const;

  // RETURNS the root that is offered: an own one, or one that a peer has brought.
  Ptr<Entity> offered(Name const& path) const;
  // Whether the path means something here, though there may be no root yet.
  bool knows(Name const& path) const { return offers_.count(path) || accepted_.count(path); }
  std::string refusal(Link const& link, Name const& path, MountMode mode) const;

  // The roots that came from peers, with their states.
  Ptr<Dir> const& dir() const { return dir_; }

  // The peer by which the root of that path has come and is kept up to date, or null. Not owned: it takes
  // itself out.
  Peer* bringer(Name const& path) const {
    auto const found = bringers_.find(path);
    return found == bringers_.end() ? nullptr : found->second;
  }
  void bringerIs(Name const& path, Peer* peer) { bringers_[path] = peer; }

  // Entities without a parent of a log that has ended, by what they were made with. One that is announced
  // again is the same entity again.
  void lostIs(std::string const& made, Ptr<Entity> const& entity) { lost_.emplace(made, entity); }
  // RETURNS one that was made so, and forgets it; null when there is none.
  Ptr<Entity> takeLost(std::string const& made);
  void lostDelAll() { lost_.clear(); }

private:
  Refusal refusal_;
  Ptr<Dir> dir_;
  std::map<Name, Ptr<Entity>> offers_;
  std::map<Name, VyxType const*> accepted_;
  std::map<Name, Peer*> bringers_;
  std::multimap<std::string, Ptr<Entity>> lost_;
};

} // namespace Vyx::NboAttrLog
