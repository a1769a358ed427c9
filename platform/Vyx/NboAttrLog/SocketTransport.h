// A connected stream socket, Unix-domain or TCP.

#pragma once

#include "Vyx/NboAttrLog/Descriptor.h"
#include "Vyx/NboAttrLog/Transport.h"

#include <memory>

namespace Vyx::NboAttrLog {

class SocketTransport final : public Transport {
public:
  // Takes over a connected socket, which then waits only where it is asked to; one of TCP has no delay.
  explicit SocketTransport(Descriptor socket);

  IoResult read(std::span<unsigned char> room) override;
  IoResult await(std::span<unsigned char> room) override;
  bool canAwait() const override { return true; }
  IoResult write(std::span<unsigned char const> first, std::span<unsigned char const> second) override;
  void writeEnds() override;
  int fd() const override { return socket_.get(); }
  std::string peerName() const override { return peerName_; }
  std::optional<PeerCredentials> peer() const override { return peer_; }
  bool isLocal() const override { return isLocal_; }

  // The kernel's buffers, for tests and measurements; 0 leaves one as it is.
  void bufferSizesAre(int toSend, int toReceive);

private:
  IoResult receive(std::span<unsigned char> room, int flags);

  Descriptor socket_;
  std::optional<PeerCredentials> peer_;
  std::string peerName_; // Kept, since a socket forgets its peer when that one ends.
  bool isLocal_ = false;
};

// Two connected ends in this process, through the kernel.
struct SocketPair {
  std::unique_ptr<SocketTransport> first;
  std::unique_ptr<SocketTransport> second;
};
// THROWS: ConnectionException.
SocketPair socketPair();

} // namespace Vyx::NboAttrLog
