#include "pbrctl/Server.h"

#include "pbrctl/Served.h"

#include <ostream>

namespace Pbrctl {

using namespace Vyx::NboAttrLog;

Server::Server(Loop& loop, Vyx::Ptr<Pbr::Config> const& config, std::ostream& log, AccessRule const& rule)
    : loop_(loop), log_(log), rule_(rule),
      roots_(Vyx::ptrFromNew(new Roots(
          [this](Link const& link, Name const& path, MountMode mode) { return admit(link, path, mode); }))) {
  roots_->offerIs(kConfigPath, config);
  for (ServedRoot const& root : servedRoots())
    if (root.type() != config->fwkType()) roots_->acceptIs(root.path, root.type());
}

Server::~Server() {
  for (auto const& peer : peers_) peer->watcherDel();
}

Address Server::listen(Address const& address, bool mayServeOtherHosts) {
  ListenerOptions options;
  options.mayServeOtherHosts = mayServeOtherHosts;
  listener_ = Vyx::ptrFromNew(new Listener(
      address, [this](std::unique_ptr<Transport> transport) { take(std::move(transport)); }, options));
  loop_.sourceIs(listener_);
  return listener_->address();
}

void Server::end() {
  if (listener_) listener_->end();
  auto const peers = peers_;
  for (auto const& peer : peers) peer->end("the server ends");
}

void Server::take(std::unique_ptr<Transport> transport) {
  peers_.push_back(Vyx::ptrFromNew(new Peer(std::move(transport), Demuxer::accepting, roots_, this)));
  peers_.back()->loopIs(loop_);
}

Access Server::accessOf(Transport const& transport) const {
  if (auto const peer = transport.peer()) return rule_.accessOf(*peer);
  return transport.isLocal() ? Access::write : Access::read;
}

std::string Server::admit(Link const& link, Name const& path, MountMode mode) {
  Access const access = accessOf(link.transport());
  if (access == Access::none) return link.peerName() + " is neither the server's user nor of its group";
  if (mode == MountMode::read) {
    readers_.emplace(path, &link);
    return {};
  }
  if (access != Access::write) return link.peerName() + " may read only";
  if (mode == MountMode::write) return {};
  auto const [other, isFree] = publishers_.emplace(path, &link);
  return isFree ? std::string() : other->second->peerName() + " brings it already";
}

void Server::onSynced(Peer& peer, Name const& path) {
  auto const root = roots_->offered(path);
  auto const before = std::exchange(given_[path], root);
  auto const peers = peers_;
  for (auto const& other : peers) {
    if (other.ptr() == &peer) continue;
    bool const reads = readers_.count({path, other->link().ptr()}) != 0;
    // Who follows the one before has to ask anew.
    if (reads && before && before != root)
      other->end("another " + std::string(path.view()) + " has come");
    else
      other->rootCame(path);
  }
}

void Server::onEnded(Peer& peer, Closing const& closing) {
  Link const* const link = peer.link().ptr();
  std::erase_if(publishers_, [&](auto const& one) { return one.second == link; });
  std::erase_if(readers_, [&](auto const& one) { return one.second == link; });
  bool const isUsual = closing.cause == Closing::Cause::ended || closing.cause == Closing::Cause::peerEnded ||
                       closing.cause == Closing::Cause::peerSaid;
  if (!isUsual) log_ << "pbrctl: note: " << closing.words << std::endl;
  auto const at = std::find_if(peers_.begin(), peers_.end(), [&](auto const& p) { return p.ptr() == &peer; });
  if (at != peers_.end()) ended_.splice(ended_.end(), peers_, at);
}

} // namespace Pbrctl
