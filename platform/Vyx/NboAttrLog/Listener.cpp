#include "Vyx/NboAttrLog/Listener.h"

#include "Vyx/NboAttrLog/ConnectionException.h"
#include "Vyx/NboAttrLog/SocketTransport.h"

#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>

namespace Vyx::NboAttrLog {

namespace {

constexpr mode_t kMode = 0660;

[[noreturn]] void refuse(Address const& address, std::string const& words) {
  throw ConnectionException("can't listen at " + addressText(address) + ": " + words);
}

[[noreturn]] void refuseFor(Address const& address, int error) {
  refuse(address, std::generic_category().message(error));
}

Descriptor streamSocket(Address const& address, int family) {
  Descriptor socket(::socket(family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
  if (!socket) refuseFor(address, errno);
  return socket;
}

// While it lives, no other listener makes or replaces a socket file in the folder. Waits a second at most,
// since anybody may hold such a lock; without it, two servers that start at once might both believe the file
// stale.
class FolderLock {
public:
  explicit FolderLock(std::string const& path) {
    auto const slash = path.rfind('/');
    std::string const folder = slash == std::string::npos ? "." : path.substr(0, slash + 1);
    folder_ = Descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    constexpr int kStep = 10, kSteps = 100;
    for (int i = 0; folder_ && ::flock(folder_.get(), LOCK_EX | LOCK_NB) < 0 && i < kSteps; ++i)
      ::poll(nullptr, 0, kStep);
  }

private:
  Descriptor folder_;
};

// Makes way at the path.
void replaceStale(UnixAddress const& address, SocketAddress const& place) {
  struct stat found {};
  if (::lstat(address.path.c_str(), &found) < 0) {
    if (errno == ENOENT) return;
    refuseFor(address, errno);
  }
  if (!S_ISSOCK(found.st_mode)) refuse(address, "there is a file which is not a socket");
  Descriptor const probe = streamSocket(address, AF_UNIX);
  int const answer = ::connect(probe.get(), place.get(), place.length) < 0 ? errno : 0;
  if (answer == ENOENT) return;
  if (answer == 0 || answer == EAGAIN) refuse(address, "another server is there");
  if (answer != ECONNREFUSED) refuseFor(address, answer);
  if (::unlink(address.path.c_str()) < 0 && errno != ENOENT) refuseFor(address, errno);
}

} // namespace

Listener::Listener(Address const& address, Take take, ListenerOptions options)
    : address_(address), take_(std::move(take)), options_(options) {
  std::visit([this](auto const& kind) { listenAt(kind); }, address);
}

Listener::~Listener() { fileGoes(); }

void Listener::listenAt(UnixAddress const& address) {
  SocketAddress const place = socketAddressOf(address);
  FolderLock const lock(address.path);
  replaceStale(address, place);
  Descriptor socket = streamSocket(address, AF_UNIX);
  // The file takes its mode from the socket, less the process's mask; what the mask took is given back then.
  if (::fchmod(socket.get(), kMode) < 0) refuseFor(address, errno);
  if (::bind(socket.get(), place.get(), place.length) < 0) refuseFor(address, errno);
  struct stat made {};
  if (::lstat(address.path.c_str(), &made) < 0) refuseFor(address, errno);
  device_ = made.st_dev;
  inode_ = made.st_ino;
  maker_ = ::getpid();
  if (::listen(socket.get(), SOMAXCONN) < 0 || ::chmod(address.path.c_str(), kMode) < 0) {
    int const error = errno;
    fileGoes();
    refuseFor(address, error);
  }
  socket_ = std::move(socket);
}

void Listener::listenAt(TcpAddress const& address) {
  SocketAddress place = socketAddressOf(address);
  if (!options_.mayServeOtherHosts && !isLoopback(place))
    refuse(address, "other hosts could reach it, which is not allowed here");
  Descriptor socket = streamSocket(address, place.family());
  int const on = 1;
  ::setsockopt(socket.get(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
  if (::bind(socket.get(), place.get(), place.length) < 0 || ::listen(socket.get(), SOMAXCONN) < 0)
    refuseFor(address, errno);
  place.length = sizeof place.storage;
  if (::getsockname(socket.get(), place.get(), &place.length) < 0) refuseFor(address, errno);
  address_ = tcpAddressOf(place);
  socket_ = std::move(socket);
}

void Listener::fileGoes() {
  auto const* onThisHost = std::get_if<UnixAddress>(&address_);
  if (!onThisHost || inode_ == 0 || maker_ != ::getpid()) return;
  struct stat found {};
  if (::lstat(onThisHost->path.c_str(), &found) < 0) return;
  if (found.st_dev == device_ && found.st_ino == inode_) ::unlink(onThisHost->path.c_str());
  inode_ = 0;
}

void Listener::end() {
  fileGoes();
  socket_ = Descriptor();
  pausedUntil_ = kNever;
}

void Listener::readable() {
  Ptr<Listener> const self(this);
  for (unsigned i = 0; i < options_.batch && socket_; ++i) {
    Descriptor peer(::accept4(fd(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC));
    if (peer) {
      lastFailure_.clear();
      take_(std::make_unique<SocketTransport>(std::move(peer)));
      continue;
    }
    // One peer that is gone again is no matter; the next one may be there.
    if (errno == ECONNABORTED || errno == EINTR || errno == EPROTO) continue;
    if (errno == EAGAIN) return;
    lastFailure_ = "can't take a peer: " + std::generic_category().message(errno);
    pausedUntil_ = after(Clock::now(), options_.pause);
    return;
  }
}

void Listener::expire(Instant now) {
  if (now >= pausedUntil_) pausedUntil_ = kNever;
}

} // namespace Vyx::NboAttrLog
