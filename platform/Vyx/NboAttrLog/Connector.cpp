#include "Vyx/NboAttrLog/Connector.h"

#include "Vyx/NboAttrLog/ConnectionException.h"
#include "Vyx/NboAttrLog/PollTimeout.h"
#include "Vyx/NboAttrLog/SocketTransport.h"

#include <cerrno>
#include <poll.h>
#include <system_error>

namespace Vyx::NboAttrLog {

namespace {

// How long to leave a server alone that has too many peers waiting.
constexpr auto kRetryPause = std::chrono::milliseconds(10);

} // namespace

Connector::Connector(Address address, Duration limit, Done done)
    : address_(std::move(address)), limit_(after(Clock::now(), limit)), retry_(Instant::min()),
      done_(std::move(done)) {}

void Connector::start(Instant now) {
  retry_ = kNever;
  try {
    SocketAddress const place = socketAddressOf(address_);
    socket_ = Descriptor(::socket(place.family(), SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    if (socket_ && ::connect(fd(), place.get(), place.length) == 0) return writable();
  } catch (ConnectionException const& error) {
    return fail(error.what());
  }
  if (socket_ && (errno == EINPROGRESS || errno == EINTR)) return;
  if (socket_ && errno == EAGAIN)
    retry_ = after(now, kRetryPause);
  else
    fail(std::generic_category().message(errno));
  socket_ = Descriptor();
}

void Connector::writable() {
  if (!socket_ || hasEnded()) return;
  int error = 0;
  socklen_t size = sizeof error;
  if (::getsockopt(fd(), SOL_SOCKET, SO_ERROR, &error, &size) < 0) error = errno;
  if (error != 0) return fail(std::generic_category().message(error));
  pollfd ready{fd(), POLLOUT, 0};
  if (::poll(&ready, 1, 0) != 1) return;
  finish(std::make_unique<SocketTransport>(std::move(socket_)), "");
}

void Connector::expire(Instant now) {
  if (hasEnded()) return;
  if (now >= retry_) start(now);
  if (!hasEnded() && now >= limit_) fail("no answer within the time limit");
}

void Connector::fail(std::string const& words) {
  finish(nullptr, "can't reach " + addressText(address_) + ": " + words);
}

void Connector::finish(std::unique_ptr<Transport> transport, std::string const& failure) {
  Ptr<Connector> const self(this);
  Done const done = std::exchange(done_, nullptr);
  socket_ = Descriptor();
  done(std::move(transport), failure);
}

std::unique_ptr<Transport> connectWithin(Address const& address, Duration limit) {
  std::unique_ptr<Transport> made;
  auto const take = [&](std::unique_ptr<Transport> transport, std::string const& failure) {
    if (!transport) throw ConnectionException(failure);
    made = std::move(transport);
  };
  auto const connector = ptrFromNew(new Connector(address, limit, take));
  for (connector->expire(Clock::now()); !connector->hasEnded(); connector->expire(Clock::now())) {
    pollfd waiting{connector->fd(), POLLOUT, 0};
    if (::poll(&waiting, 1, pollTimeout(connector->nextDeadline(), Clock::now())) > 0) connector->writable();
  }
  return made;
}

} // namespace Vyx::NboAttrLog
