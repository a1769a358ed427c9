#include "pbrctl/Client.h"

#include "Vyx/NboAttrLog/ConnectionException.h"
#include "Vyx/NboAttrLog/Connector.h"
#include "pbrctl/Diagnostics.h"
#include "pbrctl/Io.h"

namespace Pbrctl {

using namespace Vyx::NboAttrLog;

std::string socketText(Address const& address) {
  return (std::holds_alternative<TcpAddress>(address) ? "tcp:" : "") + addressText(address);
}

RemoteError refusal(Vyx::Name const& path, std::string const& words) {
  return {kRefused, "refused by the server: " + escaped(path.view()) + ": " + escaped(words)};
}

Client::Client(Remote const& remote)
    : address_(remote.address), until_(after(Clock::now(), remote.timeout)),
      roots_(Vyx::ptrFromNew(new Roots)) {
  try {
    peer_ =
        Vyx::ptrFromNew(new Peer(connectWithin(address_, remote.timeout), Demuxer::connecting, roots_, this));
  } catch (ConnectionException const& e) {
    throw RemoteError{kUnreachable, e.what()};
  }
  peer_->loopIs(loop_);
}

Client::~Client() {
  peer_->watcherDel();
  peer_->end("done");
}

template <class Condition> bool Client::holdsInTime(Condition condition) {
  auto const decided = [&] { return condition() || refused_ || peer_->hasEnded(); };
  auto const now = Clock::now();
  loop_.runUntil(decided, until_ > now ? until_ - now : Duration::zero());
  if (refused_) throw *refused_;
  if (condition()) return true;
  if (peer_->hasEnded()) throw RemoteError{kUnreachable, "the connection has ended: " + ended_};
  return false;
}

void Client::noAnswer() const {
  throw RemoteError{kUnreachable, "no answer from " + socketText(address_) + " within the time limit"};
}

void Client::onRefused(Peer&, Vyx::Name const& path, std::string const& words) {
  refused_ = refusal(path, words);
}

Vyx::Ptr<Vyx::Entity> Client::mount(ServedRoot const& root, MountMode mode) {
  Vyx::Name const path(root.path);
  peer_->mount(path, mode);
  auto const probe = peer_->probe();
  if (!holdsInTime([&] { return synced_ == path; })) {
    if (answered_ < probe) noAnswer();
    throw RemoteError{kRefused, "nobody has brought " + std::string(root.path) + " yet"};
  }
  return roots_->dir()->entryIs(path).entity();
}

void Client::settle() {
  auto const& out = *peer_;
  bool const isWritten = holdsInTime([&] {
    return !out.demuxer()->hasQueued() && out.demuxer()->waitingFlowOuts() == 0 &&
           out.link()->out()->pendingBytes() == 0;
  });
  if (!isWritten) noAnswer();
  auto const probe = peer_->probe();
  if (!holdsInTime([&] { return answered_ >= probe; })) noAnswer();
}

} // namespace Pbrctl
