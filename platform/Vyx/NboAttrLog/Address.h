// Where an attribute log is served: a path in the file system, or a port of this or another host.

#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <variant>

namespace Vyx::NboAttrLog {

struct UnixAddress {
  std::string path;
};

// The host is an address in digits; names are not looked up, since that would wait on others.
struct TcpAddress {
  std::string host = "127.0.0.1";
  std::uint16_t port = 0; // 0, for a listener: the system chooses.
};

using Address = std::variant<UnixAddress, TcpAddress>;

// Reads "tcp:HOST:PORT", "tcp:[HOST]:PORT", "tcp:PORT", "unix:PATH" or just a path.
// THROWS: ConnectionException.
Address addressFromText(std::string_view text);
// RETURNS the path, "127.0.0.1:4711" or "[::1]:4711".
std::string addressText(Address const& address);

// An address as the system's calls take it.
struct SocketAddress {
  sockaddr_storage storage{};
  socklen_t length = 0;

  sockaddr* get() { return reinterpret_cast<sockaddr*>(&storage); }
  sockaddr const* get() const { return reinterpret_cast<sockaddr const*>(&storage); }
  int family() const { return storage.ss_family; }
};

// THROWS: ConnectionException for a path that is empty or too long, or a host that isn't in digits.
SocketAddress socketAddressOf(Address const& address);
// REQUIRES: the address is of TCP.
TcpAddress tcpAddressOf(SocketAddress const& address);
bool isLoopback(SocketAddress const& address);

} // namespace Vyx::NboAttrLog
