#include "Vyx/NboAttrLog/SocketTransport.h"

#include "Vyx/NboAttrLog/Address.h"
#include "Vyx/NboAttrLog/ConnectionException.h"

#include <cerrno>
#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/uio.h>

namespace Vyx::NboAttrLog {

namespace {

constexpr int kSendFlags = MSG_NOSIGNAL | MSG_DONTWAIT;

void optionIs(int socket, int level, int option, int value) {
  ::setsockopt(socket, level, option, &value, sizeof value);
}

SocketAddress peerAddressOf(int socket) {
  SocketAddress address;
  address.length = sizeof address.storage;
  if (::getpeername(socket, address.get(), &address.length) < 0) address = {};
  return address;
}

bool isTcp(SocketAddress const& address) {
  return address.family() == AF_INET || address.family() == AF_INET6;
}

ssize_t sendBoth(int socket, std::span<unsigned char const> first, std::span<unsigned char const> second) {
  auto const vectorOf = [](std::span<unsigned char const> bytes) {
    return iovec{const_cast<unsigned char*>(bytes.data()), bytes.size()};
  };
  iovec vectors[] = {vectorOf(first), vectorOf(second)};
  msghdr message{};
  message.msg_iov = vectors;
  message.msg_iovlen = std::size(vectors);
  return ::sendmsg(socket, &message, kSendFlags);
}

} // namespace

SocketTransport::SocketTransport(Descriptor socket) : socket_(std::move(socket)) {
  // Each call says whether it may wait.
  ::fcntl(fd(), F_SETFL, ::fcntl(fd(), F_GETFL) & ~O_NONBLOCK);
  ::fcntl(fd(), F_SETFD, FD_CLOEXEC);
  SocketAddress const address = peerAddressOf(fd());
  if (isTcp(address)) {
    optionIs(fd(), IPPROTO_TCP, TCP_NODELAY, 1);
    optionIs(fd(), SOL_SOCKET, SO_KEEPALIVE, 1);
    isLocal_ = isLoopback(address);
    peerName_ = addressText(tcpAddressOf(address));
    return;
  }
  isLocal_ = true;
  peer_ = peerCredentialsOf(fd());
  peerName_ = peer_ ? peer_->words() : "unknown peer";
}

IoResult SocketTransport::read(std::span<unsigned char> room) { return receive(room, MSG_DONTWAIT); }

IoResult SocketTransport::await(std::span<unsigned char> room) { return receive(room, 0); }

IoResult SocketTransport::receive(std::span<unsigned char> room, int flags) {
  auto const count = ::recv(fd(), room.data(), room.size(), flags);
  if (count > 0) return IoResult::moved(static_cast<std::size_t>(count));
  return count == 0 ? IoResult::none(IoResult::Kind::closed) : IoResult::fromErrno(errno);
}

// One run of bytes goes by the plain call, which has less to do than the one for several.
IoResult SocketTransport::write(std::span<unsigned char const> first, std::span<unsigned char const> second) {
  auto const count =
      second.empty() ? ::send(fd(), first.data(), first.size(), kSendFlags) : sendBoth(fd(), first, second);
  if (count > 0) return IoResult::moved(static_cast<std::size_t>(count));
  return count == 0 ? IoResult::none(IoResult::Kind::wouldBlock) : IoResult::fromErrno(errno);
}

void SocketTransport::writeEnds() { ::shutdown(fd(), SHUT_WR); }

void SocketTransport::bufferSizesAre(int toSend, int toReceive) {
  if (toSend > 0) optionIs(fd(), SOL_SOCKET, SO_SNDBUF, toSend);
  if (toReceive > 0) optionIs(fd(), SOL_SOCKET, SO_RCVBUF, toReceive);
}

SocketPair socketPair() {
  int ends[2];
  if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) < 0)
    throw ConnectionException("can't make a pair of sockets: " +
                              IoResult{IoResult::Kind::failed, errno, 0}.words());
  Descriptor first(ends[0]);
  Descriptor second(ends[1]);
  return {std::make_unique<SocketTransport>(std::move(first)),
          std::make_unique<SocketTransport>(std::move(second))};
}

} // namespace Vyx::NboAttrLog
