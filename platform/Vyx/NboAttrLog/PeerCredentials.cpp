#include "Vyx/NboAttrLog/PeerCredentials.h"

#include <algorithm>
#include <cerrno>
#include <sys/socket.h>
#include <unistd.h>

namespace Vyx::NboAttrLog {

namespace {

constexpr uid_t kRoot = 0;
constexpr auto kNobody = static_cast<uid_t>(-1); // What a socket says that knows no peer.

#ifdef SO_PEERGROUPS
// RETURNS none when the kernel doesn't tell; the group rule then goes by the primary group alone.
std::vector<gid_t> groupsOf(int socket) {
  std::vector<gid_t> groups(32);
  for (;;) {
    auto size = static_cast<socklen_t>(groups.size() * sizeof(gid_t));
    int const result = getsockopt(socket, SOL_SOCKET, SO_PEERGROUPS, groups.data(), &size);
    if (result < 0 && errno != ERANGE) return {};
    groups.resize(size / sizeof(gid_t));
    if (result == 0) return groups;
  }
}
#else
std::vector<gid_t> groupsOf(int) { return {}; }
#endif

} // namespace

bool PeerCredentials::isMember(gid_t group) const {
  return gid == group || std::find(groups.begin(), groups.end(), group) != groups.end();
}

std::string PeerCredentials::words() const {
  return "pid " + std::to_string(pid) + ", uid " + std::to_string(uid);
}

std::optional<PeerCredentials> peerCredentialsOf(int socket) {
  ucred found{};
  socklen_t size = sizeof found;
  if (getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &found, &size) < 0) return {};
  if (found.uid == kNobody) return {};
  return PeerCredentials{found.pid, found.uid, found.gid, groupsOf(socket)};
}

AccessRule AccessRule::ofThisProcess() { return {geteuid(), getegid()}; }

Access AccessRule::accessOf(PeerCredentials const& peer) const {
  if (peer.uid == owner || peer.uid == kRoot) return Access::write;
  return peer.isMember(group) ? Access::read : Access::none;
}

} // namespace Vyx::NboAttrLog
