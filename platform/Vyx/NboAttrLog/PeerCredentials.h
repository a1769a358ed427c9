// Who is at the other end of a Unix-domain socket, and what that lets him do.

#pragma once

#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace Vyx::NboAttrLog {

// As they were when the peer connected.
struct PeerCredentials {
  pid_t pid;
  uid_t uid;
  gid_t gid;
  std::vector<gid_t> groups; // Supplementary ones.

  bool isMember(gid_t group) const;
  // RETURNS "pid 4711, uid 1000".
  std::string words() const;
};

// RETURNS nothing for a socket of another kind.
std::optional<PeerCredentials> peerCredentialsOf(int socket);

enum class Access : unsigned char { none, read, write }; // Who may write may read.

// Who may do what with what a process serves: the owner writes, and so does root; the group reads.
struct AccessRule {
  uid_t owner;
  gid_t group;

  // The rule of a server that belongs to whom this process belongs to.
  static AccessRule ofThisProcess();
  Access accessOf(PeerCredentials const& peer) const;
};

} // namespace Vyx::NboAttrLog
