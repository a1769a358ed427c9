// The way to a server: a connection in the making.

#pragma once

#include "Vyx/NboAttrLog/Address.h"
#include "Vyx/NboAttrLog/Descriptor.h"
#include "Vyx/NboAttrLog/Source.h"
#include "Vyx/NboAttrLog/Transport.h"

#include <functional>
#include <memory>
#include <string>

namespace Vyx::NboAttrLog {

// Tells once how it ended, from within the loop: by a transport, or by words such as
// "can't reach /run/pbr.sock: No such file or directory".
class Connector final : public Source {
public:
  using Done = std::function<void(std::unique_ptr<Transport> transport, std::string const& failure)>;

  // REQUIRES: a loop, or the caller, calls `expire` at once and then by `nextDeadline`; nothing is tried
  // before.
  Connector(Address address, Duration limit, Done done);

  int fd() const override { return socket_.get(); }
  bool wantsRead() const override { return false; }
  bool wantsWrite() const override { return bool(socket_); }
  bool hasEnded() const override { return !done_; }
  void writable() override;
  Instant nextDeadline() const override { return hasEnded() ? kNever : std::min(retry_, limit_); }
  void expire(Instant now) override;

private:
  void start(Instant now);
  void fail(std::string const& words);
  void finish(std::unique_ptr<Transport> transport, std::string const& failure);

  Address address_;
  Instant limit_;
  Instant retry_; // When to start next; kNever while one try is under way.
  Done done_;     // Null once it was called.
  Descriptor socket_;
};

// Waits, for `limit` at most.
// THROWS: ConnectionException with the words of the failure.
std::unique_ptr<Transport> connectWithin(Address const& address, Duration limit);

} // namespace Vyx::NboAttrLog
