// A place where peers connect.

#pragma once

#include "Vyx/NboAttrLog/Address.h"
#include "Vyx/NboAttrLog/Descriptor.h"
#include "Vyx/NboAttrLog/Source.h"
#include "Vyx/NboAttrLog/Transport.h"

#include <functional>
#include <memory>
#include <string>

namespace Vyx::NboAttrLog {

struct ListenerOptions {
  // Whether a TCP address that other hosts can reach is accepted.
  bool mayServeOtherHosts = false;
  // After a failure that would come again at once, such as too many open files.
  Duration pause = std::chrono::milliseconds(100);
  // Peers taken in one turn.
  unsigned batch = 64;
};

// Invariants:
// (1) The socket file of a Unix-domain address has mode 0660 from its first moment, and its peers can connect
//     from its first moment; it goes when the listener ends, unless it was replaced by then.
// (2) A socket file that nobody serves any more is replaced; one that is served, or another kind of file, is
//     not.
class Listener final : public Source {
public:
  using Take = std::function<void(std::unique_ptr<Transport>)>;

  // Listens from now on; `take` gets each peer.
  // THROWS: ConnectionException, which names the address.
  Listener(Address const& address, Take take, ListenerOptions options = {});
  ~Listener() override;

  // With the port that was chosen.
  Address const& address() const { return address_; }
  // Why the last peer couldn't be taken; empty while all is well.
  std::string const& lastFailure() const { return lastFailure_; }
  // Refuses from now on.
  void end();

  int fd() const override { return socket_.get(); }
  bool wantsRead() const override { return pausedUntil_ == kNever; }
  bool hasEnded() const override { return !socket_; }
  void readable() override;
  Instant nextDeadline() const override { return pausedUntil_; }
  void expire(Instant now) override;

private:
  void listenAt(UnixAddress const& address);
  void listenAt(TcpAddress const& address);
  void fileGoes();

  Address address_;
  Take take_;
  ListenerOptions options_;
  Descriptor socket_;
  std::string lastFailure_;
  Instant pausedUntil_ = kNever; // kNever while it isn't paused.
  // The socket file, to know it again, and the process that made it.
  dev_t device_ = 0;
  ino_t inode_ = 0;
  pid_t maker_ = 0;
};

} // namespace Vyx::NboAttrLog
